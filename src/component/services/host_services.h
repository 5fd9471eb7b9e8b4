// The component's tie to its host: the bound application object, the tool library's objects, and small
// services that several procedures share (the module "modTerPro").
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "component/services/error_trap.h"
#include "component/services/module_state.h"
#include "platform/dialogs.h"
#include "platform/host_tools.h"
#include "platform/settings_store.h"
#include "zel/automation.h"

namespace zel {

// How the set-up makes the tool library's objects.
struct ToolFactory {
  std::function<std::unique_ptr<ToolApplication>()> toolApplication;
  std::function<std::unique_ptr<WindowPlacement>()> windowPlacement;
  std::function<std::unique_ptr<LinkBudgetTool>()> linkBudgetTool;
  std::function<std::unique_ptr<SourceLists>()> sourceLists;
  std::function<std::unique_ptr<VersionInfo>()> versionInfo;
};

class HostServices {
 public:
  HostServices(ModuleState& state, ErrorTrap& trap, Dialogs& dialogs, SettingsStore& store,
               ToolFactory factory);

  // The bound application object; null before the first binding.
  const DispatchPtr& client() const { return client_; }
  void bind(DispatchPtr client) { client_ = std::move(client); }

  // Read from the client by name each time; they throw as zel::clientText does.
  std::string clientTitle() const;
  std::string clientPath() const;
  std::string clientText(std::string_view property) const;
  // Empty for a client that does not have it: what is only shown need not be there.
  std::string optionalClientText(std::string_view property) const;
  // The component's version as a VersionInfo words it for the client's ProductName.
  std::string versionText() const;

  // The one-time set-up: makes the tool objects and hands each the client. Runs until it has once succeeded.
  void Init();
  bool setUp() const { return setUpDone_; }
  // Lets the tool objects go; the next Init makes them anew.
  void discardSetUp();
  // After every SetClientApp: OptionButtonVisible and the two strings of the ToolApplication.
  void Refresh();
  // Only the two strings; without a ToolApplication they stay as they are.
  void RefreshTexts();

  // Settings under the client's current Title.
  std::string ReadSetting(std::string_view section, std::string_view key, std::string_view defaultText) const;
  void WriteSetting(std::string_view section, std::string_view key, std::string_view value);

  double Min(double a, double b);
  double Max(double a, double b);

  // Save dialogs; empty when the user cancels. A name over 200 characters is cut to 200 and gets the
  // extension.
  std::string GetCSVDialog();
  std::string GetPNGDialog();

  // Null until the set-up has made them.
  ToolApplication* toolApplication() { return toolApplication_.get(); }
  WindowPlacement* windowPlacement() { return windowPlacement_.get(); }
  LinkBudgetTool* linkBudgetTool() { return linkBudgetTool_.get(); }
  SourceLists* sourceLists() { return sourceLists_.get(); }

 private:
  ModuleState& state_;
  Dialogs& dialogs_;
  SettingsStore& store_;
  ToolFactory factory_;
  TrappedModule module_;
  DispatchPtr client_;
  bool setUpDone_ = false;
  std::unique_ptr<ToolApplication> toolApplication_;
  std::unique_ptr<WindowPlacement> windowPlacement_;
  std::unique_ptr<LinkBudgetTool> linkBudgetTool_;
  std::unique_ptr<SourceLists> sourceLists_;
};

}  // namespace zel
