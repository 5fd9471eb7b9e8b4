#include "zel/profile_control.h"

#include <cstddef>
#include <memory>

#include "component/component.h"
#include "component/member_table.h"
#include "component/procedure_names.h"
#include "component/services/characters.h"
#include "export/export_limits.h"
#include "foundation/rounding.h"

namespace zel {

struct ProfileControl::Self : std::enable_shared_from_this<Self> {
  Component& component = Component::instance();
  ModuleState& state = component.state();
  TrappedModule module{"ProfileControl", component.trap()};

  template <typename Body>
  auto run(std::string_view procedure, Body&& body) {
    // A box that the body shows handles events, and a host may release its object in one.
    const std::shared_ptr<Self> kept = this->weak_from_this().lock();
    component.thread().check();
    return module.run(procedure, std::forward<Body>(body));
  }

  void storeStations(const StationProfile_Type& sta1, const StationProfile_Type& sta2) {
    state.station1 = {sta1.Lat, sta1.Lon};
    state.station2 = {sta2.Lat, sta2.Lon};
    module.step(1);
    state.antennaHeights[0] = toInt16(static_cast<double>(sta1.AntHt));
    state.antennaHeights[1] = toInt16(static_cast<double>(sta2.AntHt));
  }

  void unloadWindows() {
    run(procedures::kUnloadMainForm, [this] {
      if (state.profileWindowLoaded) component.windows().unloadProfile();
      module.step(1);
      if (state.settingsDialogLoaded) component.windows().unloadSettings();
    });
  }

  template <typename Body>
  void exportTo(const std::string& outfile, Body&& body) {
    if (characterCount(outfile) < kShortestExportName) return;
    component.ensureSetUp();
    module.step(1);
    body();
  }
};

ProfileControl::ProfileControl() : self_(std::make_shared<Self>()) {
  self_->component.thread().enter();
  self_->run(procedures::kClassInitialize, [this] { self_->component.bindOwnApplication(); });
}

// Unloads whatever the loaded flags say. A release on a foreign thread leaves the windows, which it must not
// touch.
ProfileControl::~ProfileControl() {
  if (!self_->component.thread().leave()) return;
  self_->module.run(procedures::kClassTerminate, [this] {
    self_->component.bindOwnApplication();
    self_->module.step(1);
    self_->component.windows().unloadSettings();
    self_->module.step(2);
    self_->component.windows().unloadProfile();
  });
}

std::int32_t ProfileControl::dispatchId(std::string_view name) const {
  self_->component.thread().check();
  return memberId(name);
}

AutomationValue ProfileControl::invoke(std::int32_t id, Access access,
                                       std::span<const AutomationValue> arguments) {
  self_->component.thread().check();
  return callMember(*this, id, access, arguments);
}

std::int16_t ProfileControl::get_ElevLines() {
  return self_->run(procedures::kGetElevLines, [this] { return self_->state.elevLines; });
}

void ProfileControl::let_ElevLines(std::int16_t vNewValue) {
  self_->run(procedures::kLetElevLines, [&] { self_->state.elevLines = vNewValue; });
}

void ProfileControl::ExportDataToCSV(const std::string& outfile) {
  self_->run(procedures::kExportDataToCSV,
             [&] { self_->exportTo(outfile, [&] { self_->component.windows().exportData(outfile); }); });
}

void ProfileControl::ExportITMToCSV(const std::string& outfile) {
  self_->run(procedures::kExportITMToCSV,
             [&] { self_->exportTo(outfile, [&] { self_->component.windows().exportPathLoss(outfile); }); });
}

bool ProfileControl::get_OFrmLoaded() {
  return self_->run(procedures::kGetOFrmLoaded, [this] { return self_->state.settingsDialogLoaded; });
}

bool ProfileControl::get_OptionButtonVisible() {
  return self_->run(procedures::kGetOptionButtonVisible, [this] { return self_->state.optionButtonVisible; });
}

void ProfileControl::let_OptionButtonVisible(bool vNewValue) {
  self_->run(procedures::kLetOptionButtonVisible, [&] { self_->state.optionButtonVisible = vNewValue; });
}

void ProfileControl::let_OwnerName(const std::string& vNewValue) {
  self_->run(procedures::kLetOwnerName, [&] { self_->state.ownerName = vNewValue; });
}

DispatchPtr ProfileControl::get_PForm() {
  return self_->run(procedures::kGetPForm, [this] {
    self_->component.ensureSetUp();
    return self_->component.windows().newProfileForm();
  });
}

bool ProfileControl::get_PFrmLoaded() {
  return self_->run(procedures::kGetPFrmLoaded, [this] { return self_->state.profileWindowLoaded; });
}

void ProfileControl::let_PrintDescription(const std::string& vNewValue) {
  self_->run(procedures::kLetPrintDescription, [&] {
    self_->state.printDescription = vNewValue;
    self_->state.printDescriptionSet = true;
  });
}

void ProfileControl::let_PrintLandscape(bool vNewValue) {
  self_->run(procedures::kLetPrintLandscape, [&] { self_->state.printLandscape = vNewValue; });
}

// Does nothing, and is meant to: printing starts from the profile window's menu.
bool ProfileControl::PrintProfile() {
  return self_->run(procedures::kPrintProfile, [] { return false; });
}

void ProfileControl::let_ProgName(const std::string& vNewValue) {
  self_->run(procedures::kLetProgName, [&] { self_->state.progName = vNewValue; });
}

std::int16_t ProfileControl::get_RangeLines() {
  return self_->run(procedures::kGetRangeLines, [this] { return self_->state.rangeLines; });
}

void ProfileControl::let_RangeLines(std::int16_t vNewValue) {
  self_->run(procedures::kLetRangeLines, [&] { self_->state.rangeLines = vNewValue; });
}

void ProfileControl::SetClientApp(const DispatchPtr& ClientApp) {
  self_->run(procedures::kSetClientApp, [&] {
    self_->component.bindClient(ClientApp);
    self_->module.step(1);
    self_->component.host().Refresh();
    self_->module.step(2);
    self_->component.buildTables();
    // Last, because the settings may not be readable: the rest of the binding is done all the same.
    self_->module.step(3);
    self_->component.refreshTerrainSources();
  });
}

float ProfileControl::GetPathLoss(const StationProfile_Type& Sta1, const StationProfile_Type& Sta2) {
  return self_->run(procedures::kGetPathLoss, [&] {
    self_->storeStations(Sta1, Sta2);
    self_->module.step(2);
    self_->component.ensureSetUp();
    return self_->component.pathLoss();
  });
}

void ProfileControl::ShowMainForm(const StationProfile_Type& Sta1, const StationProfile_Type& Sta2) {
  const std::shared_ptr<Self> self = self_;
  self->run(procedures::kShowMainForm, [&] {
    self->storeStations(Sta1, Sta2);
    self->module.step(2);
    self->unloadWindows();
    self->module.step(3);
    self->state.bProfileFailed = false;
    self->module.step(4);
    self->component.ensureSetUp();
    self->component.windows().showProfile();
    self->module.step(5);
    if (self->state.bProfileFailed) self->component.windows().unloadProfile();
  });
}

void ProfileControl::ShowOptionsForm() {
  self_->run(procedures::kShowOptionsForm, [this] {
    self_->component.ensureSetUp();
    self_->component.windows().showSettings();
  });
}

std::int32_t ProfileControl::get_StaDatum() {
  return self_->run(procedures::kGetStaDatum, [this] { return self_->state.datumCode; });
}

void ProfileControl::let_StaDatum(std::int32_t vNewValue) {
  self_->run(procedures::kLetStaDatum, [&] { self_->component.setStationDatum(vNewValue); });
}

void ProfileControl::UnloadMainForm() { std::shared_ptr<Self>(self_)->unloadWindows(); }

std::int32_t ProfileControl::get_hWnd() {
  return self_->run(procedures::kGetHWnd, [this] { return self_->state.profileWindowHandle; });
}

}  // namespace zel
