// Everything behind the public class, one for the process: the module state, the shared services, and the
// tool library's objects.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "component/profile_windows.h"
#include "component/services/display_units.h"
#include "component/services/error_log.h"
#include "component/services/error_trap.h"
#include "component/services/host_services.h"
#include "component/services/module_state.h"
#include "component/services/normal_table.h"
#include "component/terrain_sources.h"
#include "platform/coordinate_formatter.h"
#include "platform/datum_shift.h"
#include "platform/dialogs.h"
#include "platform/geodesy.h"
#include "platform/print_service.h"
#include "platform/process_runner.h"
#include "platform/process_services.h"
#include "platform/settings_store.h"
#include "platform/terrain.h"
#include "profile/path_loss/windowless_loss.h"
#include "profile/settings/overlay_settings_store.h"
#include "profile/settings/settings_access.h"
#include "zel/automation.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {

class Component;

// What a Component is made of. Everything is needed but what says otherwise.
struct ComponentServices {
  std::shared_ptr<Dialogs> dialogs;
  std::shared_ptr<Pointer> pointer;
  std::shared_ptr<EventLoop> eventLoop;
  std::shared_ptr<Clock> clock;
  std::shared_ptr<ProcessControl> process;
  std::shared_ptr<ProcessRunner> programs;  // may be null: programs then cannot be started
  std::shared_ptr<PrintService> printing;   // may be null: nothing can be printed then
  std::shared_ptr<HardStop> hardStop;
  std::shared_ptr<SettingsStore> settings;
  std::shared_ptr<ProfileWindows> windows;
  // How the tool objects are made over the component's settings.
  std::function<ToolFactory(const std::shared_ptr<SettingsStore>& settings)> tools;
  DispatchPtr ownApplication;

  // Made when they are first needed; null when the component is to do without.
  std::shared_ptr<const Geodesy> geodesy;
  std::function<std::shared_ptr<const DatumShift>()> makeDatumShift;
  std::function<std::shared_ptr<TerrainLibrary>(TerrainLibrary::Definitions, std::size_t cacheBytes)>
      makeTerrain;
  std::function<std::unique_ptr<TerrainSampler>()> makeSampler;
  std::function<std::unique_ptr<CoordinateFormatter>()> makeCoordinateFormatter;
  std::function<std::string(int code)> terrainSourceName;
  std::string bundledTerrain;                                         // folder
  std::function<std::string(const std::string& title)> settingsFile;  // where a host's settings stand

  // The modeled loss of the component's stored stations, dB.
  std::function<float(Component&)> pathLoss;
};

// Which thread the component belongs to: that of the first user that is alive.
class OwnerThread {
 public:
  void enter();           // one more user. Throws AutomationError kWrongThread on another's thread.
  bool leave() noexcept;  // one less; whether this is the owning thread
  void check() const;     // throws AutomationError kWrongThread
  // As check(), but anyone's while there is no user: for what can be called without one.
  void checkIfOwned() const;

 private:
  mutable std::mutex mutex_;
  std::thread::id owner_;
  std::size_t users_ = 0;
};

class Component {
 public:
  explicit Component(ComponentServices services);
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  // The process's one, made at the first call over the desktop's services and never destroyed.
  static Component& instance();

  ModuleState& state() { return state_; }
  ErrorTrap& trap() { return trap_; }
  ErrorLog& log() { return log_; }
  HostServices& host() { return host_; }
  const UnitsTable& units() const { return units_; }
  const NormalTable& normalTable() const { return normalTable_; }
  OwnerThread& thread() { return thread_; }

  Dialogs& dialogs() { return *services_.dialogs; }
  Pointer& pointer() { return *services_.pointer; }
  EventLoop& eventLoop() { return *services_.eventLoop; }
  HardStop& hardStop() { return *services_.hardStop; }
  ProfileWindows& windows() { return *services_.windows; }
  ProcessRunner* programs() { return services_.programs.get(); }
  PrintService* printing() { return services_.printing.get(); }
  const Clock& clock() const { return *services_.clock; }

  // The settings of every application, with the values set for this run in front of the stored ones.
  OverlaySettingsStore& settings() { return *settings_; }
  SettingsStore& storedSettings() { return *services_.settings; }
  // Where the settings of a title stand; empty in a component without files.
  std::string settingsFile(const std::string& title) const;
  // Reads the bound application's settings.
  SettingsReader settingsReader();

  // The objects of the tool library. Each throws RuntimeError 91 in a component made without it.
  const Geodesy& geodesy() const;
  std::shared_ptr<const DatumShift> datumShift();
  std::shared_ptr<TerrainLibrary> terrain();
  // A sampler over terrain().
  std::unique_ptr<TerrainSampler> makeSampler();
  // Makes samplers without terrain, on any thread.
  const std::function<std::unique_ptr<TerrainSampler>()>& samplerMaker() const;
  // With the coordinate format of the ToolApplication.
  std::unique_ptr<CoordinateFormatter> makeCoordinateFormatter();
  TerrainSources& terrainSources() { return terrainSources_; }

  // Binds the component's own application object when none is bound.
  void bindOwnApplication();
  // Binds a host; null binds nothing new. Sets up the services until that has once succeeded; a set-up for
  // the component's own application does not count for a host.
  void bindClient(const DispatchPtr& client);
  // Reads the terrain sources anew for the bound application, when there is terrain already.
  void refreshTerrainSources();
  // The set-up of a component that is used without a host.
  void ensureSetUp();
  // Builds the units and normal tables (the module "modConstants").
  void buildTables();
  // The datum of the stations; terrain is read at the shifted position for NAD-27.
  void setStationDatum(std::int32_t code);
  // The modeled loss of the stored stations, dB, as the services compute it.
  float pathLoss();
  // The calculation without a window, over this component's parts.
  WindowlessLoss& windowlessLoss();

 private:
  bool stationsAreNad27() const;
  std::string logFolder();

  ComponentServices services_;
  OwnerThread thread_;
  ModuleState state_;
  std::shared_ptr<OverlaySettingsStore> settings_;
  ErrorLog log_;
  ErrorTrap trap_;
  HostServices host_;
  TrappedModule constants_;
  UnitsTable units_;
  NormalTable normalTable_;
  TerrainSources terrainSources_;
  std::recursive_mutex firstUse_;  // guards what is made or bound when it is first needed
  std::shared_ptr<const DatumShift> datumShift_;
  std::shared_ptr<TerrainLibrary> terrain_;
  std::unique_ptr<WindowlessLoss> windowlessLoss_;
};

// Puts another component in the process's place for as long as it lives.
class ComponentSubstitute {
 public:
  explicit ComponentSubstitute(Component& component);
  ~ComponentSubstitute();
  ComponentSubstitute(const ComponentSubstitute&) = delete;
  ComponentSubstitute& operator=(const ComponentSubstitute&) = delete;

 private:
  Component* before_;
};

}  // namespace zel
