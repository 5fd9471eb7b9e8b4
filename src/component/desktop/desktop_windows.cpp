#include "component/desktop/desktop_windows.h"

#include <QApplication>
#include <QVariant>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <set>
#include <utility>

#include "component/component.h"
#include "component/desktop/desktop_dialogs.h"
#include "component/desktop/help_file.h"
#include "component/desktop/user_numbers.h"
#include "component/desktop/window_application.h"
#include "component/stored_path_export.h"
#include "foundation/runtime_error.h"
#include "ui/profile_window/profile_form_object.h"
#include "ui/profile_window/window_placement.h"

namespace zel {
namespace {

constexpr const char* kGuarded = "_zel_windowsGuarded";  // a property of the application

// Never destroyed: an application may go after the static objects.
std::set<DesktopWindows*>& everyWindows() {
  static auto& all = *new std::set<DesktopWindows*>;
  return all;
}

// Runs when the application begins to go; later no window can be deleted any more.
void deleteEveryWindow() {
  for (DesktopWindows* windows : everyWindows()) windows->deleteAll();
}

// The process ends under an application that was never deleted. What a profiler that goes later leaves open
// is not touched any more: parts of the toolkit are gone before it.
bool processEnds = false;

void noteEndOfProcess() { processEnds = true; }

void prepareApplication() {
  ensureWindowApplication();
  [[maybe_unused]] static const int noted = std::atexit(noteEndOfProcess);
  if (qApp->property(kGuarded).toBool()) return;
  qApp->setProperty(kGuarded, true);
  qAddPostRoutine(deleteEveryWindow);
}

}  // namespace

DesktopWindows::DesktopWindows(std::function<Component&()> component) : component_(std::move(component)) {
  everyWindows().insert(this);
}

DesktopWindows::~DesktopWindows() {
  everyWindows().erase(this);
  deleteAll();
}

// ---- The profile window ----

void DesktopWindows::showProfile() {
  prepareApplication();
  deleteUnloaded();
  open(std::nullopt, std::nullopt);
}

void DesktopWindows::open(const std::optional<FrmProfile::Path>& path,
                          const std::optional<FrmProfile::Place>& place) {
  const QPointer<FrmProfile> window = makeWindow(true, path);
  profile_ = window;
  window->open(place);
  // A box of the first drawing handles events, and in those the host may have shown another path: that one
  // has been judged already, and a failure of this one must not take it away.
  if (profile_ != window) component_().state().bProfileFailed = false;
}

void DesktopWindows::unloadProfile() {
  if (!profile_.isNull() && !processEnds) profile_->unload();
}

FrmProfile* DesktopWindows::makeWindow(bool shared, const std::optional<FrmProfile::Path>& path) {
  windows_.push_back(
      std::make_unique<FrmProfile>(windowServices(shared), component_().settingsReader(), path));
  return windows_.back().get();
}

ProfileWindowServices DesktopWindows::windowServices(bool shared) {
  Component& component = component_();
  ProfileWindowServices services;
  services.module = &component.state();
  services.shared = shared;
  services.host = &component.host();
  services.trap = &component.trap();
  services.errorLog = &component.log();
  services.dialogs = &component.dialogs();
  services.pointer = &component.pointer();
  services.eventLoop = &component.eventLoop();
  services.programs = component.programs();
  services.printing = component.printing();
  services.clock = &component.clock();
  services.hardStop = &component.hardStop();
  services.units = &component.units();
  services.normalTable = &component.normalTable();
  services.geodesy = &component.geodesy();
  services.datumShift = [&component] { return component.datumShift(); };
  services.makeSampler = [&component] { return component.makeSampler(); };
  services.terrain = [&component] { return component.terrain(); };
  services.makeFormatter = [&component] { return component.makeCoordinateFormatter(); };
  services.numbers = userNumberStyle;
  services.openOptions = [this] { showSettings(); };
  services.openHelp = [&component] { openHelp(component); };
  services.idle = [this] { deleteLater(); };
  return services;
}

// Not now: the call may come from within one of the window's own events.
void DesktopWindows::deleteLater() {
  if (QCoreApplication::instance() == nullptr) return;
  QMetaObject::invokeMethod(
      qApp,
      [this] {
        if (everyWindows().count(this) != 0) deleteUnloaded();
      },
      Qt::QueuedConnection);
}

void DesktopWindows::deleteUnloaded() {
  const auto gone = std::partition(windows_.begin(), windows_.end(), [](const auto& window) {
    return !window->isUnloaded() || window->busy();
  });
  std::vector<std::unique_ptr<FrmProfile>> deleted(std::make_move_iterator(gone),
                                                   std::make_move_iterator(windows_.end()));
  windows_.erase(gone, windows_.end());
}

void DesktopWindows::deleteAll() {
  if (!settings_.isNull()) settings_->reject();
  delete settings_.data();
  std::vector<std::unique_ptr<FrmProfile>> deleted = std::exchange(windows_, {});
}

// ---- The settings dialog ----

void DesktopWindows::showSettings() {
  prepareApplication();
  if (!settings_.isNull() && !settings_->isUnloaded()) {
    settings_->setWindowState(settings_->windowState() & ~Qt::WindowMinimized);
    settings_->raise();
    settings_->activateWindow();
    return;
  }
  const QPointer<QWidget> below = QApplication::activeWindow();
  Component& component = component_();
  // No window's child: the window that it was opened from may be unloaded and deleted under it.
  // One that was unloaded may still be on the stack of the call that showed it.
  const QPointer<FrmOptionsProfile> dialog = new FrmOptionsProfile(
      settingsServices(), component.settingsReader(),
      SettingsWriter(component.settings(), [&component] { return component.host().clientTitle(); }));
  settings_ = dialog;
  dialog->setWindowModality(Qt::ApplicationModal);
  dialog->winId();
  if (!below.isNull() && below->windowHandle() != nullptr && dialog->windowHandle() != nullptr)
    dialog->windowHandle()->setTransientParent(below->windowHandle());
  dialog->exec();
  if (dialog.isNull()) return;  // gone with the application
  const std::optional<SettingsDialogResult> outcome = dialog->outcome();
  delete dialog.data();
  if (outcome) takeSettings(outcome->after);
}

FrmOptionsProfile::Services DesktopWindows::settingsServices() {
  Component& component = component_();
  const auto placement = [&component]() -> WindowPlacement& {
    if (component.host().windowPlacement() == nullptr) throw RuntimeError::objectVariableNotSet();
    return *component.host().windowPlacement();
  };
  FrmOptionsProfile::Services services;
  services.trap = &component.trap();
  services.dialogs = &component.dialogs();
  services.pointer = &component.pointer();
  services.module = &component.state();
  services.sourceName = [&component](std::int16_t code) {
    if (component.host().sourceLists() == nullptr) throw RuntimeError::objectVariableNotSet();
    return component.host().sourceLists()->SourceName(code);
  };
  services.helpFile = [&component] { return helpFile(component); };
  services.restorePlace = [placement](QWidget& window, std::string_view name) {
    restorePlacement(window, name, placement());
  };
  services.storePlace = [placement](const QWidget& window, std::string_view name) {
    storePlacement(window, name, placement());
  };
  services.openHelp = [&component] { openHelp(component); };
  return services;
}

void DesktopWindows::unloadSettings() {
  if (!settings_.isNull() && !processEnds) settings_->reject();
}

void DesktopWindows::takeSettings(const DialogSettings& values) {
  component_().refreshTerrainSources();
  // A window's box handles events, in which another window may go.
  std::vector<QPointer<FrmProfile>> shown;
  for (const auto& window : windows_) shown.emplace_back(window.get());
  for (const QPointer<FrmProfile>& window : shown) {
    if (window.isNull() || !window->isLoaded() || window->isUnloaded()) continue;
    if (!window->samplingChanged()) {
      window->takeSettings(values);
    } else if (window != profile_) {
      window->reload();
    } else {
      // The same path anew, in a new window at the same place.
      const FrmProfile::Path path = window->path();
      const FrmProfile::Place place = window->place();
      window->unload();
      component_().state().bProfileFailed = false;
      open(path, place);
      if (component_().state().bProfileFailed) unloadProfile();
    }
  }
}

// ---- Windows of a host's own ----

DispatchPtr DesktopWindows::newProfileForm() {
  prepareApplication();
  ProfileFormHost host;
  host.make = [this] { return makeWindow(false); };
  host.release = [](FrmProfile* window) { window->unload(); };
  host.checkThread = [this] { component_().thread().checkIfOwned(); };
  host.onOwnThread = [] { return canShowWidgets() && !processEnds; };
  return makeProfileFormObject(std::move(host));
}

// ---- Exports ----

// Without the window there need be no graphical application.
void DesktopWindows::exportData(const std::string& outfile) {
  if (FrmProfile* window = loadedProfile())
    window->lExportDataToCSV(outfile);
  else
    exportStoredPath(component_(), StoredPathExport::kHeightProfile, outfile);
}

void DesktopWindows::exportPathLoss(const std::string& outfile) {
  if (FrmProfile* window = loadedProfile())
    window->lExportITMToCSV(outfile);
  else
    exportStoredPath(component_(), StoredPathExport::kLossTable, outfile);
}

FrmProfile* DesktopWindows::loadedProfile() const {
  const bool loaded = !profile_.isNull() && profile_->isLoaded() && !profile_->isUnloaded();
  return loaded ? profile_.data() : nullptr;
}

}  // namespace zel
