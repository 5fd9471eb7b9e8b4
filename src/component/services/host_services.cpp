#include "component/services/host_services.h"

#include <algorithm>
#include <utility>

#include "automation/client_text.h"
#include "component/services/save_path.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

// Assigned before it is handed the client: an object whose hand-over fails has been made all the same.
template <typename Tool>
void make(std::unique_ptr<Tool>& tool, const std::function<std::unique_ptr<Tool>()>& factory,
          const DispatchPtr& client) {
  tool = factory();
  if (tool == nullptr) throw RuntimeError::objectVariableNotSet();
  tool->SetClientApp(client);
}

}  // namespace

HostServices::HostServices(ModuleState& state, ErrorTrap& trap, Dialogs& dialogs, SettingsStore& store,
                           ToolFactory factory)
    : state_(state),
      dialogs_(dialogs),
      store_(store),
      factory_(std::move(factory)),
      module_("modTerPro", trap) {}

std::string HostServices::clientTitle() const { return clientText("Title"); }
std::string HostServices::clientPath() const { return clientText("Path"); }

std::string HostServices::clientText(std::string_view property) const {
  return zel::clientText(client_, property);
}

std::string HostServices::optionalClientText(std::string_view property) const {
  try {
    return clientText(property);
  } catch (const std::exception&) {
    return {};
  }
}

std::string HostServices::versionText() const {
  std::unique_ptr<VersionInfo> versionInfo;
  make(versionInfo, factory_.versionInfo, client_);
  return versionInfo->Query(optionalClientText("ProductName"));
}

void HostServices::Init() {
  if (setUpDone_) return;
  module_.run(":Init:", [this] {
    make(toolApplication_, factory_.toolApplication, client_);
    module_.step(1);
    make(windowPlacement_, factory_.windowPlacement, client_);
    module_.step(2);
    make(linkBudgetTool_, factory_.linkBudgetTool, client_);
    module_.step(3);
    make(sourceLists_, factory_.sourceLists, client_);
    module_.step(4);
    std::unique_ptr<VersionInfo> versionInfo;
    make(versionInfo, factory_.versionInfo, client_);
    setUpDone_ = true;
  });
}

void HostServices::discardSetUp() {
  toolApplication_.reset();
  windowPlacement_.reset();
  linkBudgetTool_.reset();
  sourceLists_.reset();
  setUpDone_ = false;
}

void HostServices::Refresh() {
  state_.optionButtonVisible = true;
  RefreshTexts();
}

void HostServices::RefreshTexts() {
  module_.run(":Refresh:", [this] {
    // Before the set-up, and after one that failed at once (and said so), there is nothing to read.
    if (toolApplication_ == nullptr) return;
    state_.helperProgramFolder = toolApplication_->HelperProgramFolder();
    state_.coordinateFormat = toolApplication_->CoordinateFormat();
  });
}

std::string HostServices::ReadSetting(std::string_view section, std::string_view key,
                                      std::string_view defaultText) const {
  return store_.ReadSetting(clientTitle(), section, key, defaultText);
}

void HostServices::WriteSetting(std::string_view section, std::string_view key, std::string_view value) {
  store_.WriteSetting(clientTitle(), section, key, value);
}

double HostServices::Min(double a, double b) {
  return module_.run(":Min:", [&] { return std::min(a, b); });
}

double HostServices::Max(double a, double b) {
  return module_.run(":Max:", [&] { return std::max(a, b); });
}

std::string HostServices::GetCSVDialog() {
  return module_.run(":GetCSVDialog:", [this] {
    return chosenSavePath(dialogs_, {"Save to 'Comma Separated Value' File", ".csv",
                                     "Comma Separated Value (*.csv)|*.csv", true, true});
  });
}

std::string HostServices::GetPNGDialog() {
  return module_.run(":GetPNGDialog:", [this] {
    // The word Bitmap beside the extension .png is meant.
    return chosenSavePath(dialogs_, {"Save to Bitmap File", ".png", "Bitmap (*.png)|*.png", true, true});
  });
}

}  // namespace zel
