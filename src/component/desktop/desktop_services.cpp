#include "component/desktop/desktop_services.h"

#include "component/data_folder.h"
#include "component/desktop/desktop_dialogs.h"
#include "component/desktop/desktop_printing.h"
#include "component/desktop/desktop_process.h"
#include "component/desktop/desktop_programs.h"
#include "component/desktop/desktop_windows.h"
#include "component/own_application.h"
#include "zeltool/coordinates/standard_coordinate_formatter.h"
#include "zeltool/geodesy/proj_datum_shift.h"
#include "zeltool/geodesy/wgs84_geodesy.h"
#include "zeltool/host_tools/component_version_info.h"
#include "zeltool/host_tools/host_tool_application.h"
#include "zeltool/host_tools/terrain_source_lists.h"
#include "zeltool/link_budget/link_budget.h"
#include "zeltool/placement/stored_window_placement.h"
#include "zeltool/settings_store/ini_settings_store.h"

namespace zel {
namespace {

std::shared_ptr<IniSettingsStore> makeSettingsStore(const std::shared_ptr<Dialogs>& dialogs) {
  return std::make_shared<IniSettingsStore>(
      IniSettingsStore::defaultFolder(), [dialogs](const std::string& damage) {
        dialogs->message({damage, "", MessageIcon::kInformation, MessageButtons::kOk});
      });
}

ToolFactory makeTools(const std::shared_ptr<SettingsStore>& settings) {
  return {
      [settings] { return std::make_unique<HostToolApplication>(settings, helperProgramFolder().string()); },
      [settings] { return std::make_unique<StoredWindowPlacement>(settings); },
      [settings] { return std::make_unique<LinkBudget>(settings, canShowWidgets); },
      [] { return std::make_unique<TerrainSourceLists>(); },
      [] { return std::make_unique<ComponentVersionInfo>(componentVersion()); }};
}

}  // namespace

ComponentServices makeDesktopServices() {
  ComponentServices services;
  services.dialogs = std::make_shared<DesktopDialogs>();
  services.pointer = std::make_shared<DesktopPointer>();
  services.eventLoop = std::make_shared<DesktopEventLoop>();
  services.clock = std::make_shared<SystemClock>();
  services.process = std::make_shared<SystemProcess>();
  services.programs = std::make_shared<DesktopPrograms>();
  services.printing = std::make_shared<DesktopPrinting>();
  services.hardStop = std::make_shared<AbortingHardStop>();
  const std::shared_ptr<IniSettingsStore> store = makeSettingsStore(services.dialogs);
  services.settings = store;
  services.settingsFile = [store](const std::string& title) { return store->fileOf(title).string(); };
  services.windows = std::make_shared<DesktopWindows>([]() -> Component& { return Component::instance(); });
  services.tools = makeTools;
  services.ownApplication = makeOwnApplication();
  services.geodesy = std::make_shared<Wgs84Geodesy>();
  services.makeDatumShift = [] { return std::make_shared<ProjDatumShift>(dataFolder() / "grids"); };
  services.makeTerrain = [](TerrainLibrary::Definitions definitions, std::size_t cacheBytes) {
    return std::make_shared<TerrainLibrary>(std::move(definitions), cacheBytes);
  };
  services.makeSampler = makeTerrainSampler;
  services.makeCoordinateFormatter = [] { return std::make_unique<StandardCoordinateFormatter>(); };
  services.terrainSourceName = terrainSourceName;
  services.bundledTerrain = bundledTerrainFolder().string();
  services.pathLoss = [](Component& component) { return component.windowlessLoss().NVCalcPathLoss(); };
  return services;
}

}  // namespace zel
