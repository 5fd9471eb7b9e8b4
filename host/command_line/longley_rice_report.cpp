#include "command_line/longley_rice_report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "command_line/output.h"
#include "command_line/path_output.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

// The published modes of variability have numbers; this is their mobile mode, 2, with 10 for a location that
// does not vary.
constexpr const char* kVariability = "mobile, location variability off (mode 12)";

const char* polarizationText(Polarization polarization) {
  return polarization == Polarization::kHorizontal ? "horizontal" : "vertical";
}

Json inputsJson(const LongleyRiceTask& task) {
  const LongleyRiceRequest& request = task.request;
  Json json;
  json["model"] = kRadioModel;
  json["profile"] = task.profile.empty() ? Json(nullptr) : Json(task.profile);
  json["points"] = request.elevationsM.size();
  json["spacing_m"] = request.spacingM;
  json["tx_m"] = request.transmitterHeightM;
  json["rx_m"] = request.receiverHeightM;
  json["frequency_mhz"] = request.frequencyMhz;
  json["polarization"] = polarizationText(request.polarization);
  json["climate"] = request.climate;
  json["climate_name"] = radioClimateName(request.climate);
  json["permittivity"] = request.permittivity;
  json["conductivity_s_per_m"] = request.conductivity;
  if (request.seaLevelRefractivity)
    json["sea_level_refractivity"] = *request.seaLevelRefractivity;
  else
    json["surface_refractivity"] = request.surfaceRefractivity;
  json["confidence"] = request.confidence;
  json["reliability"] = request.reliability;
  return json;
}

std::string percent(double fraction) { return significant(100 * fraction, 12) + " %"; }

std::string rightAligned(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

void printTable(std::ostream& out, const LongleyRiceRequest& request, const LongleyRiceResult& result) {
  std::size_t width = 0;
  for (const auto* levels : {&request.confidence, &request.reliability})
    for (const double level : *levels) width = std::max(width, percent(level).size());
  width = std::max(width + 2, std::size_t{10});
  out << "\nLoss in dB, rows by reliability, columns by confidence\n" << std::string(width, ' ');
  for (const double confidence : request.confidence) out << rightAligned(percent(confidence), width);
  out << '\n';
  for (std::size_t row = 0; row < result.lossDb.size(); ++row) {
    out << rightAligned(percent(request.reliability[row]), width);
    for (const double loss : result.lossDb[row]) out << rightAligned(fixed(loss, 2), width);
    out << '\n';
  }
}

}  // namespace

Json longleyRiceJson(const LongleyRiceTask& task, const LongleyRiceResult& result) {
  const LongleyRiceRequest& request = task.request;
  Json json;
  json["distance_km"] = result.distanceKm;
  json["points"] = request.elevationsM.size();
  json["free_space_db"] = result.freeSpaceDb;
  json["method"] = propagationMethodText(result.method);
  json["mode"] = pathModeText(result.mode, result.method);
  json["warnings"] = result.warnings;
  json["delta_h_m"] = result.terrainIrregularityM;
  json["effective_heights_m"] = result.effectiveHeightsM;
  json["horizon_distances_m"] = result.horizonDistancesM;
  json["horizon_angles_rad"] = result.horizonAnglesRad;
  json["surface_refractivity"] = result.surfaceRefractivity;
  json["reference_attenuation_db"] = result.referenceAttenuationDb;
  json["variability"] = kVariability;
  json["confidence"] = request.confidence;
  json["reliability"] = request.reliability;
  json["loss_db"] = result.lossDb;
  json["inputs"] = inputsJson(task);
  json["notes"] = task.notes;
  return json;
}

void printLongleyRice(std::ostream& out, const LongleyRiceTask& task, const LongleyRiceResult& result) {
  const LongleyRiceRequest& request = task.request;
  const auto line = [&out](const char* title, const std::string& text) { out << summaryText(title, text); };
  const auto antenna = [&result](std::size_t end, double height) {
    return shortest(height) + " m above ground, effective height " + fixed(result.effectiveHeightsM[end], 1) +
           " m, horizon " + fixed(result.horizonDistancesM[end] / 1000, 3) + " km away at " +
           fixed(result.horizonAnglesRad[end], 6) + " rad";
  };
  line("Profile", task.profile == "-" ? "standard input" : task.profile);
  line("Distance", fixed(result.distanceKm, 3) + " km, " + std::to_string(request.elevationsM.size()) +
                       " elevations " + shortest(request.spacingM) + " m apart");
  line("Transmitter", antenna(0, request.transmitterHeightM));
  line("Receiver", antenna(1, request.receiverHeightM));
  line("Frequency",
       shortest(request.frequencyMhz) + " MHz, " + polarizationText(request.polarization) + " polarization");
  line("Ground", "permittivity " + shortest(request.permittivity) + ", conductivity " +
                     shortest(request.conductivity) + " S/m, terrain irregularity (delta h) " +
                     fixed(result.terrainIrregularityM, 1) + " m");
  line("Atmosphere",
       "surface refractivity " + fixed(result.surfaceRefractivity, 2) + " N-units" +
           (request.seaLevelRefractivity ? ", of " + shortest(*request.seaLevelRefractivity) + " at sea level"
                                         : std::string()) +
           ", climate " + std::to_string(request.climate) + " (" + radioClimateName(request.climate) + ")");
  line("Variability", kVariability);
  line("Mode", pathModeText(result.mode, result.method));
  line("Method", methodSentence(result.mode, result.method));
  line("Free-space loss", fixed(result.freeSpaceDb, 2) + " dB");
  line("Reference", fixed(result.referenceAttenuationDb, 2) + " dB beyond free space");
  for (const std::string& text : task.notes) line("Note", text);
  for (const std::string& text : result.warnings) line("Warning", text);
  printTable(out, request, result);
}

}  // namespace zel::host
