// loss: free-space and modeled loss between two stations, as a summary and as JSON.
#include <array>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "command_line/path_output.h"
#include "command_line/provenance.h"
#include "command_line/stations.h"
#include "zel/path_loss.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kLossDecimals = 4;  // what a 32-bit float of some hundred dB holds
constexpr int kMedian = 50;       // percent

struct LossOptions {
  std::string from, to;
  std::optional<double> frequency;
  bool json = false;
};

GroundFigures groundOf(const PathLoss& loss) {
  return {loss.startGroundM, loss.endGroundM, loss.minimumM, loss.maximumM, loss.averageM};
}

Json lossOrNull(const std::optional<double>& loss) {
  return loss ? rounded(*loss, kLossDecimals) : Json(nullptr);
}

Json inputsJson(const PathLoss& loss) {
  Json json;
  json["from"] = stationJson(loss.from, loss.startHeightM);
  json["to"] = stationJson(loss.to, loss.endHeightM);
  json["frequency_mhz"] = rounded(loss.frequencyMhz, 6);
  json["model"] = kRadioModel;
  json["model_spacing_m"] = rounded(loss.modelSpacingM, 4);
  addModelInputs(json, loss.model);
  json["variability"] =
      "reliability is time, confidence is situation; mobile stations, location variability off";
  json["free_space"] =
      "free_space_db is 32.4 + 20 log f + 20 log d (MHz, km); inside modeled_db the model has its own "
      "free-space part, with 32.45 and over the length that it is told";
  json["terrain"] = terrainJson(loss.terrain);
  json["notes"] = loss.notes;
  return json;
}

// What the model made of the ground; null without a modeled loss.
void addTerrainAnalysis(Json& json, const PathLoss& loss) {
  const auto known = [&loss](Json value) { return loss.modeledDb ? std::move(value) : Json(nullptr); };
  const auto both = [&known](const std::array<double, 2>& values, int decimals) {
    return known(Json::array({rounded(values[0], decimals), rounded(values[1], decimals)}));
  };
  json["delta_h_m"] = known(rounded(loss.terrainIrregularityM, 3));
  json["effective_heights_m"] = both(loss.effectiveHeightsM, 3);
  json["horizon_distances_m"] = both(loss.horizonDistancesM, 3);
  json["horizon_angles_rad"] = both(loss.horizonAnglesRad, 8);
  json["reference_attenuation_db"] = known(rounded(loss.referenceAttenuationDb, kLossDecimals));
}

Json lossJson(const PathLoss& loss) {
  Json json;
  json["distance_km"] = rounded(loss.distanceKm, 6);
  json["bearing_deg"] = rounded(loss.bearingDeg, 4);
  json["points"] = loss.points;
  json["spacing_m"] = rounded(loss.spacingM, 4);
  json["ground_m"] = groundJson(groundOf(loss));
  json["free_space_db"] = rounded(loss.freeSpaceDb, kLossDecimals);
  json["modeled_db"] = lossOrNull(loss.modeledDb);
  json["reverse_modeled_db"] = lossOrNull(loss.reverseModeledDb);
  json["method"] = loss.modeledDb ? Json(propagationMethodText(loss.method)) : Json(nullptr);
  json["mode"] = loss.modeledDb ? Json(pathModeText(loss.mode, loss.method)) : Json(nullptr);
  json["warnings"] = loss.warnings;
  json["inputs"] = inputsJson(loss);
  addTerrainAnalysis(json, loss);
  return json;
}

std::string levelsSentence(const PathLossModelInputs& model) {
  const int reliability = percent(model.reliability);
  const int confidence = percent(model.confidence);
  return std::string("basic transmission loss between isotropic antennas, ") +
         (reliability == kMedian && confidence == kMedian ? "median: " : "") + "reliability " +
         std::to_string(reliability) + " %, confidence " + std::to_string(confidence) + " %";
}

std::string horizonSentence(const PathLoss& loss, std::size_t end) {
  return fixed(loss.horizonDistancesM[end] / 1000, 3) + " km away at " +
         fixed(loss.horizonAnglesRad[end], 6) + " rad";
}

void printModel(const PathLoss& loss) {
  const auto& line = summaryLine;
  line("Modeled loss", fixed(*loss.modeledDb, 2) + " dB from the start to the end");
  line("Reverse", reverseLossSentence(*loss.modeledDb, loss.reverseModeledDb.value_or(*loss.modeledDb)));
  line("Mode", pathModeText(loss.mode, loss.method));
  line("Method", methodSentence(loss.mode, loss.method));
  line("Reference", fixed(loss.referenceAttenuationDb, 2) + " dB beyond free space");
  line("Irregularity", "delta h " + fixed(loss.terrainIrregularityM, 1) + " m");
  line("Effective heights", "start " + fixed(loss.effectiveHeightsM[0], 1) + " m, end " +
                                fixed(loss.effectiveHeightsM[1], 1) + " m");
  line("Horizons", "start " + horizonSentence(loss, 0) + ", end " + horizonSentence(loss, 1));
  line("Meaning", levelsSentence(loss.model));
}

void printSummary(const PathLoss& loss) {
  const auto& line = summaryLine;
  line("From", stationSentence(loss.from, loss.startHeightM));
  line("To", stationSentence(loss.to, loss.endHeightM));
  line("Distance", fixed(loss.distanceKm, 3) + " km");
  line("Bearing", fixed(loss.bearingDeg, 2) + " degrees");
  line("Points", std::to_string(loss.points) + ", " + fixed(loss.spacingM, 2) + " m apart");
  line("Ground", groundSentence(groundOf(loss)));
  line("Free-space loss", fixed(loss.freeSpaceDb, 2) + " dB");
  if (loss.modeledDb)
    printModel(loss);
  else
    line("Modeled loss", "none at this frequency");
  line("Computed with",
       shortest(loss.frequencyMhz) + " MHz, " + modelInputsSentence(loss.model) + ", " + loss.terrain.method);
  line("Terrain", terrainSentence(loss.terrain));
  for (const std::string& text : loss.notes) line("Note", text);
  for (const std::string& text : loss.warnings) line("Warning", text);
}

void runLoss(const LossOptions& options) {
  const StationInput from = stationOption("--from", options.from);
  const StationInput to = stationOption("--to", options.to);
  const PathLoss loss =
      computePathLoss({from.position, to.position, from.height, to.height, options.frequency});
  if (loss.status != 0) throw CommandFailure(loss.error);
  if (options.json)
    std::cout << lossJson(loss).dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  else
    printSummary(loss);
}

}  // namespace

void addLossCommand(CLI::App& program) {
  auto options = std::make_shared<LossOptions>();
  CLI::App* command =
      program.add_subcommand("loss", "Loss of a path: free space, and Longley-Rice over the terrain");
  command->add_option("--from", options->from, "Start station, the transmitter")
      ->type_name("LAT,LON[,HEIGHT]")
      ->check(valueProblem)
      ->required();
  command->add_option("--to", options->to, "End station, the receiver")
      ->type_name("LAT,LON[,HEIGHT]")
      ->check(valueProblem)
      ->required();
  command->add_option("--frequency", options->frequency, "Frequency; by default the setting Profile/Prf_Freq")
      ->check(positiveNumberProblem)
      ->type_name("MHZ");
  command->add_flag("--json", options->json, "Print the result as JSON");
  command->footer(
      "The loss is the basic transmission loss between isotropic antennas: add antenna gains yourself.\n"
      "Heights are metres above ground; without one the settings Profile/Prf_HtL and Profile/Prf_HtR hold.\n"
      "Climate, ground, refractivity, polarization and percentages are the settings of section ITM.\n"
      "A host's GetPathLoss gives the same number for the same stations, frequency and settings.\n"
      "Examples:\n"
      "  terrain-profiler loss --from 36.40,-84.35,30 --to 36.22,-84.12,30 --frequency 450\n"
      "  terrain-profiler --set ITM/dReliability=0.9 loss --from 36.40,-84.35,30 --to 36.22,-84.12,30 "
      "--json");
  command->callback([options] { runLoss(*options); });
}

}  // namespace zel::host
