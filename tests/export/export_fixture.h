// What the exports' procedures stand on in tests.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "component/services/error_log.h"
#include "export/export_procedures.h"
#include "export_state.h"
#include "support/recording_settings_store.h"
#include "support/scripted_platform.h"
#include "support/temporary_folder.h"

namespace zel::test {

// Answers the input boxes in turn.
class AnsweringDialogs final : public Dialogs {
 public:
  explicit AnsweringDialogs(Journal& journal) : journal_(journal) {}
  MessageAnswer message(const MessageBoxRequest& request) override {
    journal_.push_back("message: " + request.text);
    messages.push_back(request);
    return request.buttons == MessageButtons::kYesNo ? MessageAnswer::kYes : MessageAnswer::kOk;
  }
  std::string input(const InputBoxRequest& request) override {
    journal_.push_back("input: " + request.prompt);
    inputs.push_back(request);
    if (onInput) onInput();
    return inputs.size() <= answers.size() ? answers[inputs.size() - 1] : std::string();
  }
  std::string save(const SaveDialogRequest&) override { throw RuntimeError::dialogCancelled(); }

  std::vector<std::string> answers;
  std::function<void()> onInput;
  std::vector<MessageBoxRequest> messages;
  std::vector<InputBoxRequest> inputs;

 private:
  Journal& journal_;
};

class NotingEventLoop final : public EventLoop {
 public:
  void postQuit(int) override {}
  void processPending() override {
    ++runs;
    if (onEvents) onEvents();
  }
  int runs = 0;
  std::function<void()> onEvents;
};

// The procedures over exportableState(), with everything around them scripted.
struct ExportFixture : testing::Test {
  TemporaryFolder folder;
  Journal journal;
  AnsweringDialogs dialogs{journal};
  ScriptedPointer pointer;
  NotingEventLoop eventLoop;
  ScriptedProcess process;
  FixedClock clock;
  PlaneGeodesy geodesy;
  RecordingSettingsStore store;
  ModuleState module;
  NormalTable normalTable = InitNormalDist();
  ErrorLog log{[this] { return logFolder.path().string(); }, clock, dialogs};
  ErrorTrap trap{{[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer, &dialogs, &eventLoop,
                  &process, &log}};
  TrappedModule window{"frmProfile", trap};
  HostServices host{module, trap, dialogs, store, {}};
  ScriptedPrograms programs;
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};
  ProfileViewState state = exportableState();
  std::function<bool(std::int32_t, std::int32_t)> progress;
  NumberStyle numbers;
  TemporaryFolder logFolder;

  void SetUp() override {
    pointer.journal = &journal;
    module.datumText = "NAD-83";
  }
  ExportProcedures procedures() {
    ExportProcedures::Services all;
    all.geodesy = &geodesy;
    all.dialogs = &dialogs;
    all.pointer = &pointer;
    all.eventLoop = &eventLoop;
    all.module = &module;
    all.trapped = &window;
    all.normalTable = &normalTable;
    all.host = &host;
    all.errorLog = &log;
    all.programs = &programs;
    all.numbers = numbers;
    all.progress = progress;
    return {all, reader, state};
  }
  std::string file(const std::string& name = "out.csv") const { return (folder / name).string(); }
  bool nothingWritten() const { return std::filesystem::is_empty(folder.path()); }
};

}  // namespace zel::test
