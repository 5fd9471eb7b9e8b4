// export: the files of the profile window's "Export" menu, without a window.
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command_line/application.h"
#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/long_work.h"
#include "command_line/output.h"
#include "command_line/passing_file.h"
#include "command_line/path_options.h"
#include "command_line/path_output.h"
#include "command_line/provenance.h"
#include "desktop/gnuplot.h"
#include "zel/path_export.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

struct ExportOptions {
  PathOptions path;
  std::string output;
  bool json = false;
  std::optional<double> erp, longleyRiceClutter, pointToPointClutter;
  std::optional<double> start, end;
  std::string title, size;
};

struct KindOfExport {
  PathExportKind kind;
  const char* command;
  const char* title;
  const char* description;
  const char* file;
  bool toStandardOutput;  // one file, and nothing beside it
  // What of the view is in it; the rest is of the whole path, in units of its own.
  bool hasMarkers, hasStretch, hasUnits;
  const char* footer;
};

const std::vector<KindOfExport>& kinds() {
  static const std::vector<KindOfExport> all{
      {PathExportKind::kHeightProfile, "height", "Height profile",
       "Height profile as CSV: summary, markers, a row for each sample", "FILE.csv", true, true, true, true,
       "Examples:\n"
       "  terrain-profiler export height --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o heights.csv\n"
       "  terrain-profiler export height --from 36.40,-84.35,30 --to 36.22,-84.12,30 --expand 4.5,12 "
       "--units imperial -o part.csv"},
      {PathExportKind::kLossTable, "loss-table", "Loss table",
       "Longley-Rice loss over the whole path by 99 confidences and 99 reliabilities, as CSV", "FILE.csv",
       true, false, false, false,
       "Examples:\n"
       "  terrain-profiler export loss-table --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o table.csv"},
      {PathExportKind::kSignalProfile, "signal", "Signal profile",
       "Signal level at each sample by three methods, as CSV, and the heights as FILE.terrain.txt",
       "FILE.csv", false, false, true, true,
       "Examples:\n"
       "  terrain-profiler export signal --from 36.40,-84.35,30 --to 36.22,-84.12,30 --erp 5 "
       "--longley-rice-clutter 3 -o signal.csv"},
      {PathExportKind::kSignalGraph, "signal-graph", "Signal graph",
       "Signal level against distance, drawn by gnuplot: picture, plot data and script", "FILE.png", false,
       false, false, false,
       "The script FILE.plt, the plot data FILE.dat and the results FILE_PTP.txt lie beside the picture.\n"
       "gnuplot is the one of the setting Settings/gnuPlotEXE, or else the one found along PATH.\n"
       "Examples:\n"
       "  terrain-profiler export signal-graph --from 36.40,-84.35,30 --to 36.22,-84.12,30 --erp 5 "
       "--start 1000 --title \"Jacksboro\" -o signal.png"},
      {PathExportKind::kBitmap, "bitmap", "Bitmap", "The plot as a Windows bitmap", "FILE.bmp", true, true,
       true, true,
       "Examples:\n"
       "  terrain-profiler export bitmap --from 36.40,-84.35,30 --to 36.22,-84.12,30 --size 1000x500 -o "
       "path.bmp"}};
  return all;
}

bool hasSignals(PathExportKind kind) {
  return kind == PathExportKind::kSignalProfile || kind == PathExportKind::kSignalGraph;
}

std::string numberProblem(const std::string& text) {
  double value = 0;
  if (readWhole(std::string_view(text), value) && std::isfinite(value)) return {};
  return "\"" + text + "\" is not a number";
}

// ---- Output ----

std::string decimals(const PathExport& result) {
  return result.decimalPoint == "." ? "a decimal point" : "decimal separator \"" + result.decimalPoint + "\"";
}

std::string samplesSentence(const PathExport& result) {
  return std::to_string(result.samples) + ", " + fixed(result.spacingKm * 1000, 2) + " m apart" +
         (result.expanded ? ", of the expanded stretch" : ", from station to station");
}

std::string modelSentence(const PathLossModelInputs& model, PathExportKind kind) {
  const std::string text = modelInputsSentence(model);
  if (!hasSignals(kind)) return text;
  return text + ", reliability " + std::to_string(percent(model.reliability)) + " %, confidence " +
         std::to_string(percent(model.confidence)) + " %";
}

std::string pointToPointSentence(const PathExportPointToPoint& model) {
  return std::string("delta-Bullington diffraction, ") + polarizationName(model.polarization) +
         " polarization, ground " + shortest(model.permittivity) + " and " + shortest(model.conductivity) +
         " S/m, " +
         (model.clutterCategory == 0 ? std::string("no clutter")
                                     : "clutter category " + std::to_string(model.clutterCategory) + ", " +
                                           shortest(model.clutterHeightM) + " m high");
}

std::string signalSentence(const PathExport& result) {
  return shortest(result.erpKw) + " kW ERP, clutter " + shortest(result.longleyRiceClutterDb) +
         " dB (Longley-Rice) and " + shortest(result.pointToPointClutterDb) + " dB (point-to-point)";
}

std::string computedSentence(const PathExport& result, PathExportKind kind) {
  if (kind == PathExportKind::kLossTable || kind == PathExportKind::kSignalGraph)
    return shortest(result.frequencyMhz) + " MHz, " + result.terrain.method;
  return viewSentence(result);
}

void printSummary(const PathExport& result, const KindOfExport& kind) {
  const auto& line = summaryLine;
  for (const std::string& file : result.files)
    line(&file == &result.files.front() ? kind.title : "and", file);
  line("From", stationSentence(result.from, result.startHeightM));
  line("To", stationSentence(result.to, result.endHeightM));
  line("Distance", fixed(result.distanceKm, 3) + " km");
  if (kind.kind == PathExportKind::kBitmap)
    line("Size", std::to_string(result.width) + " x " + std::to_string(result.height) + " pixels");
  else
    line("Samples", samplesSentence(result));
  if (!result.markers.empty()) line("Markers", markersSentence(result.markers));
  if (hasSignals(kind.kind)) line("Signal", signalSentence(result));
  if (kind.kind == PathExportKind::kSignalGraph)
    line("Curves", "from " + fixed(result.startM, 0) + " to " + fixed(result.endM, 0) + " m from the start");
  line("Computed with", computedSentence(result, kind.kind));
  if (result.model) line("Longley-Rice", modelSentence(*result.model, kind.kind));
  if (result.pointToPoint) line("Point-to-point", pointToPointSentence(*result.pointToPoint));
  if (kind.kind != PathExportKind::kBitmap) line("Numbers", "with " + decimals(result));
  line("Terrain", terrainSentence(result.terrain));
  for (const std::string& text : result.notes) line("Note", text);
  for (const std::string& text : result.warnings) line("Warning", text);
  for (const std::string& text : result.terrain.warnings) line("Warning", text);
}

Json inputsJson(const PathExport& result, PathExportKind kind) {
  Json json;
  json["from"] = stationJson(result.from, result.startHeightM);
  json["to"] = stationJson(result.to, result.endHeightM);
  json["frequency_mhz"] = rounded(result.frequencyMhz, 6);
  json["k"] = rounded(result.k, 7);
  json["fresnel_percent"] = result.fresnelPercent;
  json["units"] = unitsName(result.units);
  json["decimal_separator"] = result.decimalPoint;
  if (hasSignals(kind)) {
    json["erp_kw"] = result.erpKw;
    json["longley_rice_clutter_db"] = result.longleyRiceClutterDb;
    json["point_to_point_clutter_db"] = result.pointToPointClutterDb;
  }
  if (kind == PathExportKind::kSignalGraph) {
    json["start_m"] = rounded(result.startM, 3);
    json["end_m"] = rounded(result.endM, 3);
  }
  if (result.model) {
    json["longley_rice"] = Json::object();
    addModelInputs(json["longley_rice"], *result.model);
  }
  if (const auto& model = result.pointToPoint)
    json["point_to_point"] = {{"polarization", polarizationName(model->polarization)},
                              {"permittivity", model->permittivity},
                              {"conductivity_s_per_m", model->conductivity},
                              {"clutter_category", model->clutterCategory},
                              {"clutter_height_m", model->clutterHeightM}};
  json["terrain"] = terrainJson(result.terrain);
  return json;
}

Json exportJson(const PathExport& result, const KindOfExport& kind) {
  Json json;
  json["export"] = kind.command;
  json["files"] = result.files;
  json["distance_km"] = rounded(result.distanceKm, 6);
  json["bearing_deg"] = rounded(result.bearingDeg, 4);
  if (kind.kind == PathExportKind::kBitmap) {
    json["pixels"] = {{"width", result.width}, {"height", result.height}};
  } else {
    json["samples"] = result.samples;
    json["spacing_km"] = result.spacingKm;
  }
  json["expanded"] = result.expanded;
  json["markers"] = Json::array();
  for (const PathExportMarker& marker : result.markers)
    json["markers"].push_back(
        {{"side", marker.right ? "right" : "left"}, {"distance_km", rounded(marker.distanceKm, 9)}});
  json["inputs"] = inputsJson(result, kind.kind);
  json["notes"] = result.notes;
  json["warnings"] = result.warnings;
  for (const std::string& text : result.terrain.warnings) json["warnings"].push_back(text);
  return json;
}

// ---- Work ----

void checkOutput(const ExportOptions& options, const KindOfExport& kind) {
  if (options.output != "-") return;
  if (!kind.toStandardOutput)
    throw UsageError("-o -: this export writes several files, which cannot go to standard output; name one");
  if (options.json) throw UsageError("--json and -o - both want standard output; give the export a file");
}

// One command line may serve every kind, so what changes nothing in this one is told and passed over.
void leaveOutOfTheView(const KindOfExport& kind, PathViewRequest& view, std::vector<std::string>& notes) {
  const auto left = [&](const char* option) {
    notes.push_back(std::string(option) + " is left out, because it changes nothing in this export");
  };
  if (!kind.hasMarkers && !view.markersKm.empty()) {
    view.markersKm.clear();
    left("--markers");
  }
  if (!kind.hasStretch && view.expanded) {
    view.expanded.reset();
    left("--expand");
  }
  if (!kind.hasUnits && view.units) {
    view.units.reset();
    left("--units");
  }
}

PathExportRequest requestOf(const ExportOptions& options, const KindOfExport& kind,
                            std::vector<std::string>& notes) {
  PathExportRequest request;
  static_cast<PathViewRequest&>(request) = viewRequestOf(options.path);
  leaveOutOfTheView(kind, request, notes);
  request.kind = kind.kind;
  request.file = options.output;
  request.erpKw = options.erp;
  request.longleyRiceClutterDb = options.longleyRiceClutter;
  request.pointToPointClutterDb = options.pointToPointClutter;
  request.startM = options.start;
  request.endM = options.end;
  request.title = options.title;
  if (!options.size.empty()) {
    const PictureSize size = pictureSize(options.size);
    request.width = size.width;
    request.height = size.height;
  }
  return request;
}

// What a failure has left, to follow its reason.
std::string whatIsThere(const PathExport& result) {
  std::string names;
  for (const std::string& file : result.files)
    names += (names.empty() ? "; what was written up to there is in " : ", ") + file;
  return names;
}

PathExport exported(PathExportRequest request, const KindOfExport& kind) {
  if (!hasSignals(kind.kind)) return exportPath(request);
  // Long enough to be waited for, and to be given up.
  LongWork work(kind.title);
  request.progress = [&work](std::int32_t done, std::int32_t all) { return work.advance(done, all); };
  PathExport result = exportPath(request);
  if (result.status != 0 && LongWork::interrupted()) {
    const std::string left = whatIsThere(result);
    throw CommandInterrupted("interrupted" + (left.empty() ? "; the files are as they were" : left),
                             LongWork::askedBy());
  }
  return result;
}

void runExport(const ExportOptions& options, const KindOfExport& kind) {
  checkOutput(options, kind);
  std::vector<std::string> notes;
  PathExportRequest request = requestOf(options, kind, notes);
  withoutDisplay();
  if (kind.kind == PathExportKind::kSignalGraph)
    if (const auto gnuplot = provideGnuplot()) notes.push_back(*gnuplot);
  std::optional<PassingFile> passing;
  if (options.output == "-") request.file = passing.emplace().path();
  PathExport result = exported(request, kind);
  if (result.status != 0)
    throw CommandFailure(result.error + (passing ? std::string() : whatIsThere(result)));
  result.notes.insert(result.notes.end(), notes.begin(), notes.end());
  if (passing)
    passing->send();  // standard output is the file's
  else if (options.json)
    std::cout << exportJson(result, kind).dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  else
    printSummary(result, kind);
}

// ---- Options ----

void addSignalOptions(CLI::App& command, ExportOptions& options) {
  command.add_option("--erp", options.erp, "Effective radiated power, 1 kW unless given")
      ->type_name("KW")
      ->check(positiveNumberProblem);
  command
      .add_option("--longley-rice-clutter", options.longleyRiceClutter,
                  "Taken off the Longley-Rice level, 0 dB unless given")
      ->type_name("DB")
      ->check(numberProblem);
  command
      .add_option("--ptp-clutter", options.pointToPointClutter,
                  "Taken off the point-to-point level, 0 dB unless given")
      ->type_name("DB")
      ->check(numberProblem);
}

void addGraphOptions(CLI::App& command, ExportOptions& options) {
  command
      .add_option("--start", options.start, "Where the curves begin, metres from the start; 0 unless given")
      ->type_name("M")
      ->check(numberProblem);
  command
      .add_option("--end", options.end,
                  "Where they end, metres from the start; the end of the path unless given")
      ->type_name("M")
      ->check(numberProblem);
  command.add_option("--title", options.title, "Title of the graph")->type_name("TEXT");
}

void addOptionsOf(PathExportKind kind, CLI::App& command, ExportOptions& options) {
  addViewOptions(command, options.path);
  if (hasSignals(kind)) addSignalOptions(command, options);
  if (kind == PathExportKind::kSignalGraph) addGraphOptions(command, options);
  if (kind == PathExportKind::kBitmap)
    command.add_option("--size", options.size, "Width and height in pixels, 621x164 unless given")
        ->type_name("WxH")
        ->check(valueProblem);
}

}  // namespace

void addExportCommand(CLI::App& program) {
  CLI::App* exports =
      program.add_subcommand("export", "Files of the profile window's Export menu, without it");
  exports->require_subcommand(1);
  exports->fallthrough();
  exports->footer(
      "The files are those of the window for the same path, settings and locale: numbers in CSV files have\n"
      "the locale's decimal separator. A file that is there is replaced. Ctrl+C ends a signal profile or\n"
      "graph and leaves the files as they were; while gnuplot draws, its new data and script stay.\n"
      "Example:\n"
      "  terrain-profiler export height --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o heights.csv");
  for (const KindOfExport& kind : kinds()) {
    auto options = std::make_shared<ExportOptions>();
    CLI::App* command = exports->add_subcommand(kind.command, kind.description);
    addStationOptions(*command, options->path.from, options->path.to);
    command
        ->add_option("-o,--output", options->output,
                     std::string("Write to this file") +
                         (kind.toStandardOutput ? "; - is standard output" : ", and beside it"))
        ->type_name(kind.file)
        ->check(valueProblem)
        ->required();
    addOptionsOf(kind.kind, *command, *options);
    command->add_flag("--json", options->json, "Print the summary as JSON");
    command->footer(kind.footer);
    command->callback([options, &kind] { runExport(*options, kind); });
  }
}

}  // namespace zel::host
