// picture: the plot of a path, or its losses by confidence and reliability, as a PNG or an SVG, and where
// everything in it lies as JSON.
#include <cstdlib>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "command_line/application.h"
#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "command_line/path_options.h"
#include "command_line/path_output.h"
#include "command_line/provenance.h"
#include "command_line/stations.h"
#include "zel/loss_table_image.h"
#include "zel/plot_image.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

struct PictureOptions {
  PathOptions path;
  std::string output, geometry, format;
  std::string size = "1000x500";
  double scale = 1;
  bool lossTable = false;
};

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

Json lossTableJson(const LossTableImage& image) {
  Json json;
  json["cells"] = rectangleJson(image.cells);
  json["colour_bar"] = rectangleJson(image.colourBar);
  json["pixel_ratio"] = image.pixelRatio;
  json["device_pixels"] = {{"width", image.deviceWidth}, {"height", image.deviceHeight}};
  json["lowest_db"] = image.lowestDb;
  json["highest_db"] = image.highestDb;
  json["contours_db"] = image.contoursDb;
  json["losses_db"] = Json::array();
  for (int confidence = 1; confidence <= LossTableImage::kPercentages; ++confidence) {
    Json row = Json::array();
    for (int reliability = 1; reliability <= LossTableImage::kPercentages; ++reliability)
      row.push_back(image.lossDb(confidence, reliability));
    json["losses_db"].push_back(std::move(row));
  }
  json["losses_comment"] = "a row for each confidence from 1 to 99 %, in it a loss for each reliability";
  json["from"] = stationJson(image.from, image.startHeightM);
  json["to"] = stationJson(image.to, image.endHeightM);
  json["distance_km"] = image.distanceKm;
  json["bearing_deg"] = rounded(image.bearingDeg, 4);
  json["samples"] = image.samples;
  json["units"] = image.units == PlotUnits::kImperial ? "imperial" : "metric";
  json["model"] = kRadioModel;
  json["inputs"] = {{"frequency_mhz", image.frequencyMhz},
                    {"polarization", polarizationName(image.model.polarization)},
                    {"climate", image.model.climate},
                    {"climate_name", radioClimateName(image.model.climate)},
                    {"permittivity", image.model.permittivity},
                    {"conductivity_s_per_m", image.model.conductivity},
                    {"surface_refractivity", image.model.surfaceRefractivity},
                    {"terrain", terrainJson(image.terrain)}};
  json["notes"] = image.notes;
  json["warnings"] = image.warnings;
  return json;
}

template <typename Image>
void printPicture(const Image& image, const PictureOptions& options) {
  summaryLine("Picture", options.output + " (" + std::to_string(image.deviceWidth) + " x " +
                             std::to_string(image.deviceHeight) + " pixels)");
  if (!options.geometry.empty()) summaryLine("Geometry", options.geometry);
  summaryLine("Distance", fixed(image.distanceKm, 3) + " km");
}

template <typename Image>
void printRemarks(const Image& image, const std::vector<std::string>& warnings) {
  summaryLine("Terrain", terrainSentence(image.terrain));
  for (const std::string& text : image.notes) summaryLine("Note", text);
  for (const std::string& text : warnings) summaryLine("Warning", text);
}

void printSummary(const PlotImage& image, const PictureOptions& options) {
  printPicture(image, options);
  summaryLine("Free-space loss", lossSentence(image.freeSpaceLoss));
  summaryLine("Modeled loss", lossSentence(image.modeledLoss));
  printRemarks(image, image.terrain.warnings);
}

void printSummary(const LossTableImage& image, const PictureOptions& options) {
  const auto decibels = [](double loss) { return fixed(loss, 2) + " dB"; };
  printPicture(image, options);
  summaryLine("From", stationSentence(image.from, image.startHeightM));
  summaryLine("To", stationSentence(image.to, image.endHeightM));
  summaryLine("Losses", decibels(image.lowestDb) + " to " + decibels(image.highestDb) + ", " +
                            decibels(image.lossDb(50, 50)) + " at 50 % of confidence and reliability");
  summaryLine("Computed with", shortest(image.frequencyMhz) + " MHz, " + modelInputsSentence(image.model));
  printRemarks(image, image.warnings);
}

void checkOutputs(const PictureOptions& options) {
  if (options.geometry.empty()) return;
  if (options.output == "-" && options.geometry == "-")
    throw UsageError("-o - and --geometry - both want standard output; give one of them a file");
  if (isSameFile(options.output, options.geometry))
    throw UsageError("-o and --geometry name the same file; give two");
}

// By the file's extension. Standard output has none, and gets a PNG unless the format is given.
PictureFormat formatOf(const PictureOptions& options) {
  const std::string extension = options.output == "-" ? std::string() : extensionOf(options.output);
  const bool known = extension == ".png" || extension == ".svg";
  if (!options.format.empty()) {
    if (known && extension != "." + options.format)
      throw UsageError("-o \"" + options.output + "\" and --format " + options.format +
                       " ask for two formats; leave --format out, or name the file otherwise");
    return options.format == "svg" ? PictureFormat::kSvg : PictureFormat::kPng;
  }
  if (!known && options.output != "-")
    throw UsageError(quotedOption("-o", options.output) +
                     "the extension says the format; give a file that ends in .png or .svg, or --format");
  return extension == ".svg" ? PictureFormat::kSvg : PictureFormat::kPng;
}

template <typename Request>
Request requestOf(const PictureOptions& options) {
  Request request;
  static_cast<PathViewRequest&>(request) = viewRequestOf(options.path);
  const PictureSize size = pictureSize(options.size);
  request.width = size.width;
  request.height = size.height;
  request.pixelRatio = options.scale;
  request.format = formatOf(options);
  if (request.format == PictureFormat::kSvg && options.scale != 1)
    throw UsageError("--scale counts device pixels, which an SVG has none of; leave it out, or give a PNG");
  return request;
}

template <typename Image>
void writePicture(const Image& image, const PictureOptions& options, Json (*geometry)(const Image&)) {
  if (image.status != 0) throw CommandFailure(image.error);
  const std::string& bytes = image.svg.empty() ? image.png : image.svg;
  std::vector<FileToWrite> files{{options.output, [&bytes](std::ostream& out) {
                                    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
                                  }}};
  if (!options.geometry.empty())
    files.push_back({options.geometry, [&image, geometry](std::ostream& out) {
                       out << geometry(image).dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
                     }});
  writeFiles(files);
  // Standard output is the picture's or the geometry's.
  if (options.output != "-" && options.geometry != "-") printSummary(image, options);
}

void checkLossTableOptions(const PathOptions& path) {
  for (const auto& [option, value] : {std::pair("--markers", &path.markers), {"--expand", &path.expand}})
    if (!value->empty())
      throw UsageError(std::string("--loss-table is of the whole path; leave ") + option + " out");
}

void runPicture(const PictureOptions& options) {
  checkOutputs(options);
  if (options.lossTable) checkLossTableOptions(options.path);
  withoutDisplay();
  if (options.lossTable)
    writePicture(renderLossTableImage(requestOf<LossTableImageRequest>(options)), options, &lossTableJson);
  else
    writePicture(renderPlotImage(requestOf<PlotImageRequest>(options)), options, &geometryJson);
}

}  // namespace

void addPictureCommand(CLI::App& program) {
  auto options = std::make_shared<PictureOptions>();
  CLI::App* command =
      program.add_subcommand("picture", "Plot or loss table of a path as a PNG or SVG, without a display");
  addStationOptions(*command, options->path.from, options->path.to);
  command->add_option("-o,--output", options->output, "Write the picture to this file; - is standard output")
      ->type_name("FILE.png|FILE.svg")
      ->check(valueProblem)
      ->required();
  command->add_option("--format", options->format, "By the file's extension unless given; png for -o -")
      ->type_name("png|svg")
      ->check(CLI::IsMember({"png", "svg"}));
  command->add_flag("--loss-table", options->lossTable,
                    "Instead of the plot: the modeled loss by confidence and reliability, in colours");
  command->add_option("--size", options->size, "Width and height in pixels, 1000x500 unless given")
      ->type_name("WxH")
      ->check(valueProblem);
  command
      ->add_option("--scale", options->scale,
                   "Device pixels of a PNG to each of them, 0.5 to 4, 1 unless given")
      ->type_name("F")
      ->check(scaleProblem);
  addViewOptions(*command, options->path);
  command
      ->add_option("--geometry", options->geometry,
                   "Write where everything lies in the picture as JSON; - is standard output")
      ->type_name("FILE.json")
      ->check(valueProblem);
  command->footer(
      "The plot is the one of the profile window: colours, reference lines, k and the part of the Fresnel\n"
      "zone are those of the settings. Distances that run backwards are put into the order of the path.\n"
      "The loss table is the one that the profile window exports: 99 percentages each way, of the whole "
      "path.\n"
      "Examples:\n"
      "  terrain-profiler picture --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o path.png\n"
      "  terrain-profiler picture --from 36.40,-84.35,30 --to 36.22,-84.12,30 --expand 4.5,12 --scale 2 "
      "-o part.png --geometry part.json\n"
      "  terrain-profiler picture --from 36.40,-84.35,30 --to 36.22,-84.12,30 --loss-table -o losses.svg");
  command->callback([options] { runPicture(*options); });
}

}  // namespace zel::host
