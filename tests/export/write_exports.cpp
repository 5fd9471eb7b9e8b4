// Writes the exports of one path over the bundled terrain into a folder, each variant into one of its own:
//
//   test_write_exports FOLDER
//
// FOLDER/inputs.json has what a reader needs to compute them again; no result of the profile but the sampled
// heights, which are the terrain's.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "component/services/error_log.h"
#include "export/export_procedures.h"
#include "models/ptp/vexptp/program.h"
#include "profile/view_state/profile_procedures.h"
#include "support/environment_variable.h"
#include "support/recording_settings_store.h"
#include "support/scripted_platform.h"
#include "zeltool/geodesy/wgs84_geodesy.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {
namespace {

constexpr GeoPoint kStart{36.40, -84.35}, kEnd{36.22, -84.12};
constexpr std::int16_t kPointsPerKm = 10, kMaxPoints = 71;
constexpr SignalRequest kSignal{2.5, 6, 4.5};
constexpr double kGraphStart = 1000, kGraphEnd = 24000;     // metres
constexpr float kLeftMarker = 5.3F, kRightMarker = 21.75F;  // km, plot x

// The point-to-point program, called in this process.
ProgramOutcome runPointToPoint(const ProgramCall& call) {
  std::ostringstream output, messages;
  const int status = ptp::runProgram(call.arguments, output, messages);
  return {true, false, status, messages.str()};
}

// What the window's procedures ask of their surroundings. Nothing is expected to be asked of the user.
struct Surroundings {
  Surroundings() {
    sampler = makeTerrainSampler();
    store.set("Profile", "Prf_Per", std::to_string(kPointsPerKm));
    store.set("Profile", "Prf_Max", std::to_string(kMaxPoints));
    store.set("Profile", "Prf_Frez", "60");
    store.set("ITM", "dConfidence", "90");
    store.set("ITM", "dReliability", "0.95");
    module.station1 = kStart;
    module.station2 = kEnd;
    module.antennaHeights = {30, 12};
    module.datumText = "NAD-83";
    module.helperProgramFolder = "/of/the/runner";
    programs.onRun = runPointToPoint;
  }

  Wgs84Geodesy geodesy;
  SourceDefinition bundled{3, "1 second", {ZEL_SOURCE_DIR "/data/terrain"}, true};
  std::shared_ptr<TerrainLibrary> terrain =
      std::make_shared<TerrainLibrary>([this](int) { return bundled; }, std::size_t{64} << 20U);
  std::unique_ptr<TerrainSampler> sampler;
  test::ScriptedDialogs dialogs;
  test::ScriptedPointer pointer;
  test::ScriptedEventLoop eventLoop;
  test::ScriptedProcess process;
  test::FixedClock clock;
  test::ScriptedHardStop hardStop;
  test::RecordingSettingsStore store;
  KeptReadouts readouts;
  ModuleState module;
  NormalTable normalTable = InitNormalDist();
  ErrorLog log{[] { return std::string(); }, clock, dialogs};
  ErrorTrap trap{{[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer, &dialogs, &eventLoop,
                  &process, &log}};
  TrappedModule window{"frmProfile", trap};
  HostServices host{module, trap, dialogs, store, {}};
  test::ScriptedPrograms programs;
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};
};

void placeMarker(const Surroundings& all, const ProfileViewState& state, ProfileMarker& marker, float x) {
  const PlotIndex index = state.plotIndex();
  const PointerHeights heights =
      PlotIndex::heightsAt(*index.pointerAt(double{x}), state.elevation, state.curve);
  marker.x = marker.keptX = x;
  marker.shown = true;
  marker.groundHeight = static_cast<float>(heights.ground - heights.rise);
  marker.position = all.geodesy.PointOnPath(kStart, kEnd, index.distanceFromStart(double{x}));
}

ProfileViewState profileState(Surroundings& all, std::int32_t dispUnits) {
  ProfileProcedures::Services services;
  services.geodesy = &all.geodesy;
  services.sampler = all.sampler.get();
  services.terrain = all.terrain;
  services.dialogs = &all.dialogs;
  services.hardStop = &all.hardStop;
  services.errorLog = &all.log;
  services.readouts = &all.readouts;
  services.module = &all.module;
  services.trapped = &all.window;
  services.normalTable = &all.normalTable;
  ProfileProcedures profile(services, all.reader);
  all.store.set("Settings", "DispUnits", std::to_string(dispUnits));
  ProfileViewState state = loadedViewState(all.module, all.reader, Init_GUC(), false);
  profile.InitITM(state);
  profile.DoPreCalc(state);
  profile.refreshProfile(state);
  placeMarker(all, state, state.leftMarker, kLeftMarker);
  placeMarker(all, state, state.rightMarker, kRightMarker);
  return state;
}

bool writeVariant(Surroundings& all, const std::filesystem::path& folder, const ProfileViewState& state,
                  const NumberStyle& numbers) {
  std::filesystem::create_directories(folder);
  ExportProcedures::Services services;
  services.geodesy = &all.geodesy;
  services.dialogs = &all.dialogs;
  services.pointer = &all.pointer;
  services.eventLoop = &all.eventLoop;
  services.module = &all.module;
  services.trapped = &all.window;
  services.normalTable = &all.normalTable;
  services.host = &all.host;
  services.errorLog = &all.log;
  services.programs = &all.programs;
  services.numbers = numbers;
  ExportProcedures exports(services, all.reader, state);
  return exports.lExportDataToCSV((folder / "height.csv").string()) == ExportOutcome::kWritten &&
         exports.lExportITMToCSV((folder / "loss.csv").string()) == ExportOutcome::kWritten &&
         exports.lExportSignalProfileToCSV((folder / "signal.csv").string(), kSignal) ==
             ExportOutcome::kWritten &&
         exports.lMakeGNUSignalPlot((folder / "graph.png").string(),
                                    {kSignal, kGraphStart, kGraphEnd, "Ridge to valley", false}) ==
             ExportOutcome::kWritten;
}

void writeInputs(const std::filesystem::path& path, const ProfileViewState& state) {
  std::ofstream file(path);
  file.precision(17);
  file << "{\"start\": [" << kStart.latitude << ", " << kStart.longitude << "], \"end\": [" << kEnd.latitude
       << ", " << kEnd.longitude << "],\n \"points_per_km\": " << kPointsPerKm
       << ", \"max_points\": " << kMaxPoints << ", \"antennas\": [30, 12], \"k\": 1.33, \"frequency\": 950, "
       << "\"fresnel_percent\": 60, \"confidence\": 0.9, \"reliability\": 0.95,\n \"markers\": ["
       << double{kLeftMarker} << ", " << double{kRightMarker} << "], \"erp\": " << kSignal.erp
       << ", \"lr_clutter\": " << kSignal.longleyRiceClutter
       << ", \"ptp_clutter\": " << kSignal.pointToPointClutter << ",\n \"graph\": [" << kGraphStart << ", "
       << kGraphEnd << "], \"title\": \"Ridge to valley\",\n \"heights\": [";
  const auto heights = state.elevation.span();
  for (std::size_t i = 0; i < heights.size(); ++i) file << (i == 0 ? "" : ", ") << double{heights[i]};
  file << "]}\n";
}

int run(const std::filesystem::path& folder) {
  std::filesystem::current_path(folder);  // the script names its files: the same ones wherever the folder is
  const test::EnvironmentVariable scratch("tmp", folder.string());
  Surroundings all;
  const NumberStyle point, comma{",", "."};
  const ProfileViewState metric = profileState(all, 0);
  const ProfileViewState imperial = profileState(all, 1);
  ProfileViewState expanded = metric;
  expanded.expanded = true;
  const bool written =
      writeVariant(all, "metric", metric, point) && writeVariant(all, "imperial", imperial, point) &&
      writeVariant(all, "comma", metric, comma) && writeVariant(all, "expanded", expanded, point);
  writeInputs("inputs.json", metric);
  for (const MessageBoxRequest& message : all.dialogs.messages) std::cerr << message.text << '\n';
  return written && all.dialogs.messages.empty() ? 0 : 1;
}

}  // namespace
}  // namespace zel

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: test_write_exports FOLDER\n";
    return 2;
  }
  return zel::run(arguments[1]);
}
