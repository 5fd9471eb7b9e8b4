// picture: the plot of a path as a PNG, and where everything in it lies as JSON.
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "command_line/path_output.h"
#include "command_line/provenance.h"
#include "command_line/stations.h"
#include "zel/plot_image.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

struct PictureOptions {
  std::string from, to;
  std::string output, geometry;
  std::string size = "1000x500";
  double scale = 1;
  std::string expand, markers, units;
  std::optional<double> frequency;
};

template <typename Number>
bool readWhole(std::string_view text, Number& number) {
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end;
}

void readSize(const std::string& text, PlotImageRequest& request) {
  const std::string_view whole(text);
  const std::size_t cross = whole.find_first_of("xX");
  if (cross == std::string_view::npos || !readWhole(whole.substr(0, cross), request.width) ||
      !readWhole(whole.substr(cross + 1), request.height))
    throw UsageError(quotedOption("--size", text) + "give WIDTHxHEIGHT in pixels, as in --size 1000x500");
  if (request.width < 100 || request.width > 8000 || request.height < 80 || request.height > 8000)
    throw UsageError(quotedOption("--size", text) + "give 100x80 to 8000x8000 pixels");
}

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

std::string scaleProblem(const std::string& text) {
  double value = 0;
  if (readWhole(std::string_view(text), value) && value >= 0.5 && value <= 4) return {};
  return "\"" + text + "\" is not a number from 0.5 to 4";
}

Json rectangleJson(const PlotImageRectangle& rectangle) {
  return {{"x", rectangle.x}, {"y", rectangle.y}, {"width", rectangle.width}, {"height", rectangle.height}};
}

Json labelJson(const PlotImageLabel& label) {
  return {{"kind", label.kind == PlotImageLabelKind::kElevation ? "elevation" : "range"},
          {"text", label.text},
          {"x_km", label.x},
          {"y_m", label.y},
          {"distance_km", rounded(label.distanceKm, 9)},
          {"rectangle", rectangleJson(label.rectangle)}};
}

Json markerJson(const PlotImageMarker& marker) {
  return {{"side", marker.right ? "right" : "left"},
          {"distance_km", rounded(marker.distanceKm, 9)},
          {"x_km", marker.x},
          {"pixel_x", marker.pixelX},
          {"latitude", rounded(marker.position.latitude, 9)},
          {"longitude", rounded(marker.position.longitude, 9)},
          {"ground_m", rounded(marker.groundM, 3)}};
}

Json antennaJson(const PlotImageAntenna& antenna) {
  return {{"x_km", antenna.x},
          {"antenna_m", antenna.heightM},
          {"top_m", antenna.topM},
          {"pixel_x", antenna.pixelX},
          {"pixel_y", antenna.pixelY}};
}

// A loss is shown as a text; a program wants the number.
Json lossJson(const std::string& text) {
  double value = 0;
  return readWhole(std::string_view(text), value) ? Json(value) : Json(nullptr);
}

Json geometryJson(const PlotImage& image) {
  Json json;
  json["world"] = {{"left_km", image.scale.left},
                   {"top_m", image.scale.top},
                   {"right_km", image.scale.right},
                   {"bottom_m", image.scale.bottom}};
  json["pixels"] = rectangleJson(image.rectangle);
  json["pixel_ratio"] = image.pixelRatio;
  json["device_pixels"] = {{"width", image.deviceWidth}, {"height", image.deviceHeight}};
  json["labels"] = Json::array();
  for (const PlotImageLabel& label : image.labels) json["labels"].push_back(labelJson(label));
  json["markers"] = Json::array();
  for (const PlotImageMarker& marker : image.markers) json["markers"].push_back(markerJson(marker));
  json["expanded"] = image.expanded;
  json["units"] = image.units == PlotUnits::kImperial ? "imperial" : "metric";
  json["samples"] = {{"first", image.firstSample},
                     {"last", image.lastSample},
                     {"count", image.samples},
                     {"spacing_km", image.spacingKm},
                     {"x_offset_samples", image.expanded ? 1 : 0},
                     {"from", {{"latitude", image.back.latitude}, {"longitude", image.back.longitude}}},
                     {"to", {{"latitude", image.forward.latitude}, {"longitude", image.forward.longitude}}}};
  json["start"] = antennaJson(image.start);
  json["end"] = antennaJson(image.end);
  json["distance_shift_km"] = image.distanceShiftKm;
  json["distance_km"] = image.distanceKm;
  json["extended_km"] = image.extendedKm;
  json["bearing_deg"] = rounded(image.bearingDeg, 4);
  json["free_space_db"] = lossJson(image.freeSpaceLoss);
  json["modeled_db"] = lossJson(image.modeledLoss);
  json["inputs"] = {{"k", image.k},
                    {"frequency_mhz", image.frequencyMhz},
                    {"fresnel_percent", image.fresnelPercent},
                    {"terrain", terrainJson(image.terrain)}};
  json["notes"] = image.notes;
  json["warnings"] = image.terrain.warnings;
  return json;
}

std::string lossSentence(const std::string& loss) { return loss.empty() ? "none" : loss + " dB"; }

void printSummary(const PlotImage& image, const PictureOptions& options) {
  const auto& line = summaryLine;
  line("Picture", options.output + " (" + std::to_string(image.deviceWidth) + " x " +
                      std::to_string(image.deviceHeight) + " pixels)");
  if (!options.geometry.empty()) line("Geometry", options.geometry);
  line("Distance", fixed(image.distanceKm, 3) + " km");
  line("Free-space loss", lossSentence(image.freeSpaceLoss));
  line("Modeled loss", lossSentence(image.modeledLoss));
  line("Terrain", terrainSentence(image.terrain));
  for (const std::string& text : image.notes) line("Note", text);
  for (const std::string& text : image.terrain.warnings) line("Warning", text);
}

void checkOutputs(const PictureOptions& options) {
  if (options.geometry.empty()) return;
  if (options.output == "-" && options.geometry == "-")
    throw UsageError("-o - and --geometry - both want standard output; give one of them a file");
  if (isSameFile(options.output, options.geometry))
    throw UsageError("-o and --geometry name the same file; give two");
}

PlotImageRequest requestOf(const PictureOptions& options) {
  const StationInput from = stationOption("--from", options.from);
  const StationInput to = stationOption("--to", options.to);
  PlotImageRequest request;
  request.from = from.position;
  request.to = to.position;
  request.fromHeight = from.height;
  request.toHeight = to.height;
  request.frequencyMhz = options.frequency;
  readSize(options.size, request);
  request.pixelRatio = options.scale;
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

void runPicture(const PictureOptions& options) {
  checkOutputs(options);
  const PlotImageRequest request = requestOf(options);
  // Nothing is shown, so no display is asked for, also where one is set that cannot be reached.
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const PlotImage image = renderPlotImage(request);
  if (image.status != 0) throw CommandFailure(image.error);
  std::vector<FileToWrite> files{{options.output, [&image](std::ostream& out) {
                                    out.write(image.png.data(),
                                              static_cast<std::streamsize>(image.png.size()));
                                  }}};
  if (!options.geometry.empty())
    files.push_back({options.geometry, [&image](std::ostream& out) {
                       out << geometryJson(image).dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
                     }});
  writeFiles(files);
  // Standard output is the picture's or the geometry's.
  if (options.output != "-" && options.geometry != "-") printSummary(image, options);
}

}  // namespace

void addPictureCommand(CLI::App& program) {
  auto options = std::make_shared<PictureOptions>();
  CLI::App* command = program.add_subcommand("picture", "Plot of a path as a PNG, without a display");
  command->add_option("--from", options->from, "Start station")
      ->type_name("LAT,LON[,HEIGHT]")
      ->check(valueProblem)
      ->required();
  command->add_option("--to", options->to, "End station")
      ->type_name("LAT,LON[,HEIGHT]")
      ->check(valueProblem)
      ->required();
  command->add_option("-o,--output", options->output, "Write the picture to this file; - is standard output")
      ->type_name("FILE.png")
      ->check(valueProblem)
      ->required();
  command->add_option("--size", options->size, "Width and height in pixels, 1000x500 unless given")
      ->type_name("WxH")
      ->check(valueProblem);
  command->add_option("--scale", options->scale, "Device pixels to each of them, 0.5 to 4, 1 unless given")
      ->type_name("F")
      ->check(scaleProblem);
  command->add_option("--expand", options->expand, "Show this stretch alone, kilometres from the start")
      ->type_name("KM,KM")
      ->check(valueProblem);
  command->add_option("--markers", options->markers, "One or two markers, kilometres from the start")
      ->type_name("KM[,KM]")
      ->check(valueProblem);
  command
      ->add_option("--units", options->units,
                   "Units of the labels; by default the setting Settings/DispUnits")
      ->type_name("metric|imperial")
      ->check(CLI::IsMember({"metric", "imperial"}));
  command->add_option("--frequency", options->frequency, "Frequency; by default the setting Profile/Prf_Freq")
      ->type_name("MHZ")
      ->check(positiveNumberProblem);
  command
      ->add_option("--geometry", options->geometry,
                   "Write where everything lies in the picture as JSON; - is standard output")
      ->type_name("FILE.json")
      ->check(valueProblem);
  command->footer(
      "The plot is the one of the profile window: colours, reference lines, k and the part of the Fresnel\n"
      "zone are those of the settings. Distances that run backwards are put into the order of the path.\n"
      "Examples:\n"
      "  terrain-profiler picture --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o path.png\n"
      "  terrain-profiler picture --from 36.40,-84.35,30 --to 36.22,-84.12,30 --expand 4.5,12 --scale 2 "
      "-o part.png --geometry part.json");
  command->callback([options] { runPicture(*options); });
}

}  // namespace zel::host
