// A component over scripted services, in the place of the process's own.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "component/component.h"
#include "component/profile_windows.h"
#include "support/scripted_platform.h"
#include "support/temporary_folder.h"
#include "zel/profile_control.h"

namespace zel::test {

// Windows that keep the loaded flags as real ones do and note what they were asked.
class ScriptedWindows final : public ProfileWindows {
 public:
  void showProfile() override {
    note("show profile");
    if (onShow) onShow();
    state->profileWindowLoaded = true;
    state->profileWindowHandle = 77;
    if (rejectProfile) state->bProfileFailed = true;
  }
  void unloadProfile() override {
    note("unload profile");
    state->profileWindowLoaded = false;
    state->profileWindowHandle = 0;
  }
  void showSettings() override { note("show settings"); }
  void unloadSettings() override {
    note("unload settings");
    state->settingsDialogLoaded = false;
  }
  DispatchPtr newProfileForm() override {
    note("new form");
    return makePropertyBag({{"Caption", "Terrain Profile"}});
  }
  void exportData(const std::string& outfile) override {
    note("export data " + outfile);
    if (onExport) onExport();
  }
  void exportPathLoss(const std::string& outfile) override { note("export loss " + outfile); }

  ModuleState* state = nullptr;
  bool rejectProfile = false;
  std::string failAt;  // what throws
  std::function<void()> onShow;
  std::function<void()> onExport;
  Journal calls;

 private:
  void note(const std::string& call) {
    calls.push_back(call);
    if (call == failAt) throw RuntimeError::actionNotSupported();
  }
};

class ComponentFixture : public testing::Test {
 protected:
  ComponentFixture() { windows_->state = &component_.state(); }

  ComponentServices services() {
    ComponentServices services;
    services.dialogs = dialogs_;
    services.pointer = pointer_;
    services.eventLoop = eventLoop_;
    services.clock = std::make_shared<FixedClock>();
    services.process = process_;
    services.hardStop = std::make_shared<ScriptedHardStop>();
    services.settings = store_;
    services.windows = windows_;
    services.tools = [this](const std::shared_ptr<SettingsStore>&) -> ToolFactory {
      return {[this] { return std::make_unique<ScriptedToolApplication>(tools_); },
              [this] { return std::make_unique<ScriptedWindowPlacement>(tools_); },
              [this] { return std::make_unique<ScriptedLinkBudgetTool>(tools_); },
              [this] { return std::make_unique<ScriptedSourceLists>(tools_); },
              [this] { return std::make_unique<ScriptedVersionInfo>(tools_); }};
    };
    services.ownApplication = ownApplication_;
    services.terrainSourceName = [](int code) { return "source " + std::to_string(code); };
    services.bundledTerrain = "/bundled";
    services.pathLoss = [this](Component&) { return pathLoss_(); };
    return services;
  }

  std::string logged() const { return fileBytes(folder_ / "zelErrorLog.txt"); }
  bool loggedLocation(const std::string& location) const {
    return logged().find("\r\n" + location + "\r\n") != std::string::npos;
  }

  TemporaryFolder folder_;
  Journal journal_;
  std::shared_ptr<ToolScript> tools_ = [this] {
    auto script = std::make_shared<ToolScript>();
    script->journal = &journal_;
    return script;
  }();
  std::shared_ptr<ScriptedDialogs> dialogs_ = std::make_shared<ScriptedDialogs>();
  std::shared_ptr<ScriptedPointer> pointer_ = std::make_shared<ScriptedPointer>();
  std::shared_ptr<ScriptedEventLoop> eventLoop_ = std::make_shared<ScriptedEventLoop>();
  std::shared_ptr<ScriptedProcess> process_ = std::make_shared<ScriptedProcess>();
  std::shared_ptr<MemorySettingsStore> store_ = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<ScriptedWindows> windows_ = std::make_shared<ScriptedWindows>();
  DispatchPtr ownApplication_ =
      makePropertyBag({{"Title", "zelProfiler01"}, {"Path", (folder_ / "own").string()}});
  DispatchPtr host_ = makePropertyBag({{"Title", "Host Planner"}, {"Path", folder_.path().string()}});
  std::function<float()> pathLoss_ = [] { return 123.5F; };
  Component component_{services()};
  ComponentSubstitute substitute_{component_};
};

inline constexpr StationProfile_Type kStation1{36.30, -84.20, 30.0F};
inline constexpr StationProfile_Type kStation2{36.40, -84.10, 20.0F};

}  // namespace zel::test
