#include "command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "command_line/application.h"
#include "command_line/command_error.h"
#include "command_line/command_tree.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "desktop/bench_map.h"
#include "desktop/desktop.h"
#include "zel/settings.h"
#include "zel/terrain.h"
#include "zel/windows.h"

namespace zel::host {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

struct RunOptions {
  std::vector<std::string> terrain;
  std::vector<std::string> settings;
  std::string datum;
  std::string file;
  bool benchMap = false;
  // Said after the command has done its work: a failure is one line.
  std::vector<std::string> remarks;
};

void addRunOptions(CLI::App& program, RunOptions& options) {
  program.add_option("--terrain", options.terrain, "Raster or folder of rasters for this run (repeatable)")
      ->type_name("PATH")
      ->check(valueProblem)
      ->allow_extra_args(false);
  program.add_option("--set", options.settings, "Setting for this run (repeatable)")
      ->type_name("SECTION/KEY=VALUE")
      ->check(valueProblem)
      ->allow_extra_args(false);
  program
      .add_option("--datum", options.datum, "Datum of the positions: nad83 (as WGS 84, the default) or nad27")
      ->type_name("DATUM")
      ->check(CLI::IsMember({"nad27", "nad83"}, CLI::ignore_case));
}

// What the program is without a command.
void addDesktopOptions(CLI::App& program, RunOptions& options) {
  program.add_option("FILE", options.file, "Plan, list of stations or raster to open in the desktop program")
      ->type_name("PATH");
  program.add_flag("--bench-map", options.benchMap, "Measure how long the map takes for a frame");
}

// What is left over behind a command must not be taken for the program's own.
void refuseDesktopOptions(const RunOptions& options) {
  if (!options.file.empty()) throw UsageError("the argument \"" + options.file + "\" was not expected");
  if (options.benchMap) throw UsageError("--bench-map is a run of its own, without a command");
}

// The exit status.
int runWithoutCommand(const RunOptions& options, ProfileControl& component) {
  if (options.benchMap) {
    withoutDisplay();
    if (const std::string problem = windowsProblem(); !problem.empty()) throw CommandFailure(problem);
    std::cout << benchMap().text();
    return 0;
  }
  std::error_code none;
  if (!options.file.empty() && !std::filesystem::exists(options.file, none))
    throw UsageError("\"" + options.file +
                     "\" is neither a command nor a file; 'terrain-profiler --help' shows the commands");
  if (const std::string problem = windowsProblem(); !problem.empty())
    throw CommandFailure(problem + "; 'terrain-profiler --help' shows the commands that need no window");
  for (const std::string& remark : options.remarks) note(remark);
  return runDesktop(component, options.file);
}

void applyRunOptions(RunOptions& options, ProfileControl& component) {
  for (const std::string& text : options.settings) {
    const std::size_t slash = text.find('/');
    const std::size_t equals = text.find('=');
    if (slash == std::string::npos || equals == std::string::npos || slash > equals || slash == 0 ||
        equals == slash + 1)
      throw UsageError("--set \"" + text + "\" is not SECTION/KEY=VALUE, as in --set Profile/Prf_Crv=1.333");
    std::string section = text.substr(0, slash);
    std::string key = text.substr(slash + 1, equals - slash - 1);
    const std::string value = text.substr(equals + 1);
    if (const auto known = knownSetting(section, key)) {
      section = known->section;
      key = known->key;
    } else {
      options.remarks.push_back(
          section + "/" + key +
          " is not a setting that the profiler reads; 'terrain-profiler settings list' shows those");
    }
    if (const auto problem = settingProblem(section, key, value))
      options.remarks.push_back("--set " + text + ": " + *problem);
    overrideSetting(section, key, value);
  }
  if (!options.terrain.empty()) useTerrainForThisRun(options.terrain);
  component.let_StaDatum(options.datum.find("27") != std::string::npos ? 0 : 1);
}

// Every command and option. What is parsed goes into `options`, which outlives the result, as does
// `component`.
std::unique_ptr<CLI::App> makeProgram(RunOptions& options, ProfileControl& component) {
  auto owned = std::make_unique<CLI::App>(
      "Terrain path profiler: the ground between two radio stations, and what it does to the signal.\n"
      "Without a command it opens the desktop program: a map on which stations are placed.",
      "terrain-profiler");
  CLI::App& program = *owned;
  program.footer(
      "Positions are LAT,LON[,HEIGHT]: decimal degrees with a sign or N/S/E/W, or degrees-minutes-seconds\n"
      "(\"36-24-00 N,84-21-00 W,30\"); heights are metres above ground.\n\n"
      "Examples:\n"
      "  terrain-profiler profile --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o profile.csv\n"
      "  terrain-profiler sample --from 36.40,-84.35 --to 36.22,-84.12 --points 11\n"
      "  terrain-profiler --terrain ~/tiles profile --from 42.7,1.4,20 --to 42.5,1.7,20 --json\n"
      "  terrain-profiler settings set Profile/Prf_Freq 450\n\n"
      "'terrain-profiler COMMAND --help' explains a command. Exit codes: 0 done, 1 failed, 2 wrong "
      "usage,\n130 interrupted, 143 asked to end.");
  program.set_version_flag("--version", std::string("terrain-profiler ") + ZEL_VERSION);
  program.fallthrough();  // --terrain and --set are understood before and after the command
  addRunOptions(program, options);
  addDesktopOptions(program, options);
  // Runs after everything is parsed and before the command itself.
  program.parse_complete_callback([&program, &options, &component] {
    if (!program.get_subcommands().empty()) refuseDesktopOptions(options);
    applyRunOptions(options, component);
  });
  addShowCommand(program, component);
  addProfileCommand(program);
  addPictureCommand(program);
  addPrintCommand(program);
  addExportCommand(program);
  addLossCommand(program);
  addLinksCommand(program, component);
  addLongleyRiceCommand(program);
  addReportCommand(program, component);
  addSampleCommand(program);
  addTerrainCommand(program);
  addSettingsCommand(program);
  return owned;
}

int run(int argc, char** argv, ProfileControl& component) {
  RunOptions options;
  const std::unique_ptr<CLI::App> program = makeProgram(options, component);
  try {
    program->parse(argc, argv);
    if (program->get_subcommands().empty()) return runWithoutCommand(options, component);
    for (const std::string& remark : options.remarks) note(remark);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return program->exit(error);  // help and version
    note(std::string(error.what()) + "; 'terrain-profiler --help' shows how to call it");
    return kWrongUsage;
  }
  return 0;
}

}  // namespace

std::string describedCommandLine() {
  RunOptions options;
  ProfileControl component;  // no command runs, so it stays without an application
  return commandTree(*makeProgram(options, component), ZEL_VERSION);
}

int runCommandLine(int argc, char** argv) {
  try {
    // Asked before anything is bound, so that an unusable store is told once and in one line.
    if (const auto problem = settingsProblem(kApplicationTitle))
      throw CommandFailure(*problem + "; see that the file and its folder may be read and written");
    const auto component = bindComponent();
    const int exitCode = run(argc, argv, *component);
    finishStandardOutput();
    return exitCode;
  } catch (const UsageError& error) {
    note(error.what());
    return kWrongUsage;
  } catch (const CommandInterrupted& error) {
    note(error.what());
    return error.exitCode();
  } catch (const std::bad_alloc&) {
    note("out of memory; ask for fewer points or smaller rasters");
  } catch (const std::exception& error) {
    note(error.what());
  }
  return kFailed;
}

}  // namespace zel::host
