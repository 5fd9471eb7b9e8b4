// show: the profile window of a path, until it is closed.
#include <memory>
#include <string>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/path_options.h"
#include "command_line/stations.h"
#include "desktop/gnuplot.h"
#include "zel/c_api.h"
#include "zel/plot_image.h"
#include "zel/profile_control.h"
#include "zel/windows.h"

namespace zel::host {
namespace {

struct ShowOptions {
  std::string from, to;
};

constexpr float kHeightOfTheSettings = -1;

StationProfile_Type stationOf(const StationInput& input) {
  return {input.position.latitude, input.position.longitude,
          input.height ? static_cast<float>(*input.height) : kHeightOfTheSettings};
}

void runShow(const ShowOptions& options, ProfileControl& control) {
  const StationInput from = stationOption("--from", options.from);
  const StationInput to = stationOption("--to", options.to);
  if (const std::string problem = windowsProblem(); !problem.empty())
    throw CommandFailure(problem + "; 'terrain-profiler picture' draws the same plot into a file");
  // What the window would tell in a box is told here, and ground that it refuses to carry is never handed to
  // it.
  PlotImageRequest path;
  path.from = from.position;
  path.to = to.position;
  path.fromHeight = from.height;
  path.toHeight = to.height;
  const PlotImage checked = checkPlotPath(path);
  if (checked.status != 0) throw CommandFailure(checked.error);
  provideGnuplot();  // for the window's signal graph; without one it writes the script alone
  control.ShowMainForm(stationOf(from), stationOf(to));
  if (!control.get_PFrmLoaded()) throw CommandFailure("the profile cannot be shown");
  int exitCode = 0;
  if (zelProfilerRun(&exitCode) != ZEL_OK) throw CommandFailure(zelProfilerLastError());
  if (exitCode != 0) throw CommandFailure("ended after error " + std::to_string(exitCode));
}

}  // namespace

void addShowCommand(CLI::App& program, ProfileControl& control) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App* command = program.add_subcommand("show", "Open the profile window of a path");
  addStationOptions(*command, options->from, options->to);
  command->footer(
      "Frequency, k, part of the Fresnel zone, units and heights that are not given are those of the "
      "settings;\n"
      "--set changes them for this run. The command ends when the window is closed.\n"
      "Example:\n"
      "  terrain-profiler show --from 36.40,-84.35,30 --to 36.22,-84.12,30 --set Profile/Prf_Freq=450");
  command->callback([options, &control] { runShow(*options, control); });
}

}  // namespace zel::host
