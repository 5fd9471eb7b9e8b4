#include "command_line/path_output.h"

#include <cmath>
#include <iostream>
#include <optional>
#include <string_view>

#include "command_line/output.h"
#include "command_line/wrapped_text.h"

namespace zel::host {
namespace {

std::string metres(double height) { return std::isnan(height) ? "unknown" : fixed(height, 1) + " m"; }

}  // namespace

nlohmann::ordered_json rounded(double value, int decimals) {
  if (!std::isfinite(value)) return nullptr;
  return std::stod(fixed(value, decimals));
}

nlohmann::ordered_json stationJson(const Position& position, std::int16_t antennaHeight) {
  return {{"latitude", position.latitude}, {"longitude", position.longitude}, {"antenna_m", antennaHeight}};
}

std::string stationSentence(const Position& position, std::int16_t antennaHeight) {
  return latitudeText(position.latitude) + ", " + longitudeText(position.longitude) + ", antenna " +
         std::to_string(antennaHeight) + " m above ground";
}

nlohmann::ordered_json groundJson(const GroundFigures& ground) {
  return {{"start", rounded(ground.start, 3)},
          {"end", rounded(ground.end, 3)},
          {"minimum", rounded(ground.minimum, 3)},
          {"maximum", rounded(ground.maximum, 3)},
          {"average", rounded(ground.average, 3)}};
}

std::string groundSentence(const GroundFigures& ground) {
  if (std::isnan(ground.minimum)) return "unknown: the terrain has no height anywhere on the path";
  return "start " + metres(ground.start) + ", end " + metres(ground.end) + ", lowest " +
         metres(ground.minimum) + ", highest " + metres(ground.maximum) + ", average " +
         metres(ground.average) + " above sea level";
}

std::string reverseLossSentence(double forward, double reverse) {
  const std::string both = fixed(reverse, 2) + " dB from the end to the start";
  const std::string difference = fixed(std::abs(reverse - forward), 2);
  if (difference == "0.00") return both + ", the same: the model treats both ends alike";
  return both + ", " + difference + " dB " + (reverse > forward ? "more" : "less") +
         ": samples, horizons and fitted ground are taken from the transmitter on, and fall a little "
         "differently from the other end";
}

std::string methodSentence(PathMode mode, PropagationMethod method) {
  const std::string text = propagationMethodText(method);
  const bool inSight = mode == PathMode::kLineOfSight;
  const bool withinHorizons = method == PropagationMethod::kLineOfSight;
  if (!inSight && withinHorizons)
    return text +
           ": obstructed, but within the smooth-earth horizons, where the model's line-of-sight formulas "
           "hold";
  if (inSight && !withinHorizons)
    return text + ": no ground is in the way, but the path is longer than the smooth-earth horizons";
  return text;
}

const char* polarizationName(Polarization polarization) {
  return polarization == Polarization::kHorizontal ? "horizontal" : "vertical";
}

int percent(double fraction) { return static_cast<int>(std::lround(fraction * 100)); }

void addModelInputs(nlohmann::ordered_json& json, const PathLossModelInputs& model) {
  json["polarization"] = polarizationName(model.polarization);
  json["climate"] = model.climate;
  json["climate_name"] = radioClimateName(model.climate);
  json["permittivity"] = model.permittivity;
  json["conductivity_s_per_m"] = model.conductivity;
  json["surface_refractivity"] = model.surfaceRefractivity;
  json["confidence_percent"] = percent(model.confidence);
  json["reliability_percent"] = percent(model.reliability);
  json["confidence_deviate"] = model.confidenceDeviate;
  json["reliability_deviate"] = model.reliabilityDeviate;
}

std::string modelInputsSentence(const PathLossModelInputs& model) {
  return std::string(polarizationName(model.polarization)) + " polarization, climate " +
         std::to_string(model.climate) + " (" + radioClimateName(model.climate) + "), ground " +
         shortest(model.permittivity) + " and " + shortest(model.conductivity) +
         " S/m, surface refractivity " + shortest(model.surfaceRefractivity) + " N-units";
}

const char* unitsName(PlotUnits units) { return units == PlotUnits::kImperial ? "imperial" : "metric"; }

std::string markersSentence(const std::vector<PathExportMarker>& markers) {
  std::string text;
  for (const PathExportMarker& marker : markers)
    text += (text.empty() ? "" : ", ") + std::string(marker.right ? "right " : "left ") +
            fixed(marker.distanceKm, 3) + " km from the start";
  return text;
}

std::string viewSentence(double k, int fresnelPercent, double frequencyMhz, const std::string& method,
                         PlotUnits units) {
  return "k " + shortest(k) + ", " + std::to_string(fresnelPercent) + " % of the first Fresnel zone, " +
         shortest(frequencyMhz) + " MHz, " + method + ", " + unitsName(units) + " units";
}

std::string lossSentence(const std::string& loss) { return loss.empty() ? "none" : loss + " dB"; }

std::string summaryText(std::string_view title, const std::string& text) {
  constexpr std::size_t kColumn = 18;
  const std::optional<std::size_t> width = terminalWidth();
  return std::string(title) + std::string(kColumn - title.size(), ' ') +
         (width ? wrapped(text, *width, kColumn) : text) + '\n';
}

void summaryLine(const char* title, const std::string& text) { std::cout << summaryText(title, text); }

}  // namespace zel::host
