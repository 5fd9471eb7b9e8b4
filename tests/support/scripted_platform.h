// The platform services of the tests: each records what it was asked and answers as the test has told it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "foundation/runtime_error.h"
#include "platform/dialogs.h"
#include "platform/host_tools.h"
#include "platform/process_runner.h"
#include "platform/process_services.h"
#include "platform/settings_store.h"
#include "zel/automation.h"

namespace zel::test {

// What happened, in order, over several services that share one list.
using Journal = std::vector<std::string>;

class ScriptedDialogs final : public Dialogs {
 public:
  MessageAnswer message(const MessageBoxRequest& request) override {
    if (journal != nullptr) journal->push_back("message: " + request.text);
    messages.push_back(request);
    if (onMessage) onMessage(request);
    return request.buttons == MessageButtons::kOk ? MessageAnswer::kOk : answer;
  }
  std::string input(const InputBoxRequest& request) override {
    inputs.push_back(request);
    if (onInput) onInput(request);
    return inputAnswer.value_or(request.defaultText);
  }
  std::string save(const SaveDialogRequest& request) override {
    saves.push_back(request);
    if (onSave) onSave(request);
    if (!savePath) throw RuntimeError::dialogCancelled();
    return *savePath;
  }

  MessageAnswer answer = MessageAnswer::kYes;
  std::optional<std::string> inputAnswer;
  std::optional<std::string> savePath;  // nothing: cancelled
  std::function<void(const MessageBoxRequest&)> onMessage;
  std::function<void(const InputBoxRequest&)> onInput;
  std::function<void(const SaveDialogRequest&)> onSave;
  std::vector<MessageBoxRequest> messages;
  std::vector<InputBoxRequest> inputs;
  std::vector<SaveDialogRequest> saves;
  Journal* journal = nullptr;
};

class ScriptedPointer final : public Pointer {
 public:
  void set(PointerShape shape) override {
    if (journal != nullptr)
      journal->push_back(shape == PointerShape::kDefault ? "pointer default" : "hourglass");
    if (failing) throw RuntimeError::actionNotSupported();
    shapes.push_back(shape);
  }
  std::vector<PointerShape> shapes;
  bool failing = false;
  Journal* journal = nullptr;
};

class ScriptedEventLoop final : public EventLoop {
 public:
  void postQuit(int exitCode) override { quits.push_back(exitCode); }
  void processPending() override { ++pendingRuns; }
  std::vector<int> quits;
  int pendingRuns = 0;
};

class FixedClock final : public Clock {
 public:
  LocalTime now() const override { return time; }
  LocalTime time{2026, 11, 15, 19, 5, 3};
};

class ScriptedProcess final : public ProcessControl {
 public:
  std::string moduleFileName() const override { return fileName; }
  void endRun() override { ++ends; }
  std::string fileName = "/usr/bin/planner";
  int ends = 0;
};

// Notes the programs it is asked for; what each does is told by onRun.
class ScriptedPrograms final : public ProcessRunner {
 public:
  ProgramOutcome run(const ProgramCall& call, std::int32_t milliseconds,
                     const KeepWaiting& keepWaiting) override {
    runs.push_back(call);
    limits.push_back(milliseconds);
    // What the program does it has done when it is asked for the first time.
    const ProgramOutcome outcome = onRun ? onRun(call) : ProgramOutcome{true, false, 0, {}};
    return !keepWaiting || keepWaiting() ? outcome : ProgramOutcome{};
  }
  void start(const ProgramCall& call) override {
    starts.push_back(call);
    if (onStart) onStart(call);
  }

  std::function<ProgramOutcome(const ProgramCall&)> onRun;
  std::function<void(const ProgramCall&)> onStart;
  std::vector<ProgramCall> runs, starts;
  std::vector<std::int32_t> limits;  // milliseconds, of the runs
};

// What a scripted hard stop throws in place of ending the process.
class HardStopped : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class ScriptedHardStop final : public HardStop {
 public:
  void stop(std::string_view reason) override { throw HardStopped(std::string(reason)); }
};

// Settings in memory.
class MemorySettingsStore final : public SettingsStore {
 public:
  using Key = std::tuple<std::string, std::string, std::string>;  // application, section, key

  std::string ReadSetting(std::string_view application, std::string_view section, std::string_view key,
                          std::string_view defaultText) const override {
    if (failing) throw RuntimeError::permissionDenied();
    const auto found = values.find({std::string(application), std::string(section), std::string(key)});
    return found == values.end() ? std::string(defaultText) : found->second;
  }
  void WriteSetting(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view value) override {
    if (failing) throw RuntimeError::permissionDenied();
    values[{std::string(application), std::string(section), std::string(key)}] = std::string(value);
  }
  std::vector<StoredSetting> AllSettings(std::string_view application) const override {
    std::vector<StoredSetting> all;
    for (const auto& [key, value] : values)
      if (std::get<0>(key) == application) all.push_back({std::get<1>(key), std::get<2>(key), value});
    return all;
  }

  std::map<Key, std::string> values;
  bool failing = false;
};

// What a hand-over of the client to a scripted tool does: notes it, and fails when told to.
struct ToolScript {
  Journal* journal = nullptr;
  std::string failAt;  // name of the tool whose hand-over fails
  std::string firstText = "/opt/helpers";
  std::string secondText = "DMS";
  DispatchPtr lastClient;

  void handOver(const std::string& tool, const DispatchPtr& client) {
    if (journal != nullptr) journal->push_back(tool);
    if (tool == failAt) throw RuntimeError::permissionDenied();
    lastClient = client;
  }
};

class ScriptedToolApplication final : public ToolApplication {
 public:
  explicit ScriptedToolApplication(std::shared_ptr<ToolScript> script) : script_(std::move(script)) {}
  void SetClientApp(const DispatchPtr& client) override { script_->handOver("ToolApplication", client); }
  std::string HelperProgramFolder() const override { return script_->firstText; }
  std::string CoordinateFormat() const override { return script_->secondText; }

 private:
  std::shared_ptr<ToolScript> script_;
};

class ScriptedWindowPlacement final : public WindowPlacement {
 public:
  explicit ScriptedWindowPlacement(std::shared_ptr<ToolScript> script) : script_(std::move(script)) {}
  void SetClientApp(const DispatchPtr& client) override { script_->handOver("WindowPlacement", client); }
  void Restore(std::string_view, std::int32_t&, std::int32_t&) override {}
  void Store(std::string_view, std::int32_t&, std::int32_t&) override {}

 private:
  std::shared_ptr<ToolScript> script_;
};

class ScriptedLinkBudgetTool final : public LinkBudgetTool {
 public:
  explicit ScriptedLinkBudgetTool(std::shared_ptr<ToolScript> script) : script_(std::move(script)) {}
  void SetClientApp(const DispatchPtr& client) override { script_->handOver("LinkBudgetTool", client); }
  void Open(std::string_view) override {}

 private:
  std::shared_ptr<ToolScript> script_;
};

class ScriptedSourceLists final : public SourceLists {
 public:
  explicit ScriptedSourceLists(std::shared_ptr<ToolScript> script) : script_(std::move(script)) {}
  void SetClientApp(const DispatchPtr& client) override { script_->handOver("SourceLists", client); }
  std::string SourceName(std::int16_t code) const override { return "source " + std::to_string(code); }

 private:
  std::shared_ptr<ToolScript> script_;
};

class ScriptedVersionInfo final : public VersionInfo {
 public:
  explicit ScriptedVersionInfo(std::shared_ptr<ToolScript> script) : script_(std::move(script)) {}
  ~ScriptedVersionInfo() override {
    if (script_->journal != nullptr) script_->journal->push_back("VersionInfo released");
  }
  void SetClientApp(const DispatchPtr& client) override { script_->handOver("VersionInfo", client); }
  std::string Query(std::string_view product) const override {
    return "1.2.3 (" + std::string(product) + ")";
  }

 private:
  std::shared_ptr<ToolScript> script_;
};

}  // namespace zel::test
