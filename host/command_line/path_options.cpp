#include "command_line/path_options.h"

#include <vector>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/stations.h"

namespace zel::host {
namespace {

// One or two numbers with a comma between.
std::vector<double> kilometres(const char* option, const std::string& text, std::size_t least) {
  std::vector<double> values;
  std::string_view rest(text);
  bool good = true;
  for (bool more = true; more && good;) {
    const std::size_t comma = rest.find(',');
    more = comma != std::string_view::npos;
    double value = 0;
    good = readWhole(rest.substr(0, comma), value) && value - value == 0;
    values.push_back(value);
    rest.remove_prefix(more ? comma + 1 : rest.size());
  }
  if (!good || values.size() < least || values.size() > 2)
    throw UsageError(quotedOption(option, text) + "give " + (least == 2 ? "two" : "one or two") +
                     " distances from the start in kilometres, as in " + option + " 4.5,12");
  return values;
}

}  // namespace

void addStationOptions(CLI::App& command, std::string& from, std::string& to) {
  command.add_option("--from", from, "Start station")
      ->type_name("LAT,LON[,HEIGHT]")
      ->check(valueProblem)
      ->required();
  command.add_option("--to", to, "End station")
      ->type_name("LAT,LON[,HEIGHT]")
      ->check(valueProblem)
      ->required();
}

void addViewOptions(CLI::App& command, PathOptions& options) {
  command.add_option("--expand", options.expand, "Show this stretch alone, kilometres from the start")
      ->type_name("KM,KM")
      ->check(valueProblem);
  command.add_option("--markers", options.markers, "One or two markers, kilometres from the start")
      ->type_name("KM[,KM]")
      ->check(valueProblem);
  command
      .add_option("--units", options.units, "Units that are shown; by default the setting Settings/DispUnits")
      ->type_name("metric|imperial")
      ->check(CLI::IsMember({"metric", "imperial"}));
  command.add_option("--frequency", options.frequency, "Frequency; by default the setting Profile/Prf_Freq")
      ->type_name("MHZ")
      ->check(positiveNumberProblem);
}

PathViewRequest viewRequestOf(const PathOptions& options) {
  const StationInput from = stationOption("--from", options.from);
  const StationInput to = stationOption("--to", options.to);
  PathViewRequest request;
  request.from = from.position;
  request.to = to.position;
  request.fromHeight = from.height;
  request.toHeight = to.height;
  request.frequencyMhz = options.frequency;
  if (!options.expand.empty()) {
    const std::vector<double> ends = kilometres("--expand", options.expand, 2);
    request.expanded = PlotStretch{ends[0], ends[1]};
  }
  if (!options.markers.empty()) request.markersKm = kilometres("--markers", options.markers, 1);
  if (request.expanded && !request.markersKm.empty())
    throw UsageError("--expand shows what lies between its two ends as markers; leave --markers out");
  if (!options.units.empty())
    request.units = options.units == "imperial" ? PlotUnits::kImperial : PlotUnits::kMetric;
  return request;
}

PictureSize pictureSize(const std::string& text) {
  PictureSize size;
  const std::string_view whole(text);
  const std::size_t cross = whole.find_first_of("xX");
  if (cross == std::string_view::npos || !readWhole(whole.substr(0, cross), size.width) ||
      !readWhole(whole.substr(cross + 1), size.height))
    throw UsageError(quotedOption("--size", text) + "give WIDTHxHEIGHT in pixels, as in --size 1000x500");
  if (size.width < 100 || size.width > 8000 || size.height < 80 || size.height > 8000)
    throw UsageError(quotedOption("--size", text) + "give 100x80 to 8000x8000 pixels");
  return size;
}

}  // namespace zel::host
