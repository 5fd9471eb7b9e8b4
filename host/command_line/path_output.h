// What the commands over a path show alike: stations, ground, losses, and numbers of a JSON summary.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "zel/coordinates.h"
#include "zel/longley_rice.h"
#include "zel/path_export.h"
#include "zel/path_loss.h"
#include "zel/path_view.h"

namespace zel::host {

// To so many decimals; null for a value that is not finite.
nlohmann::ordered_json rounded(double value, int decimals);

nlohmann::ordered_json stationJson(const Position& position, std::int16_t antennaHeight);
// "36-24-00.0 N, 84-21-00.0 W, antenna 30 m above ground"
std::string stationSentence(const Position& position, std::int16_t antennaHeight);

// Metres above sea level; not a number where the terrain has none.
struct GroundFigures {
  double start = 0, end = 0, minimum = 0, maximum = 0, average = 0;
};
nlohmann::ordered_json groundJson(const GroundFigures& ground);
std::string groundSentence(const GroundFigures& ground);

// The loss from the end to the start, in dB, beside that from the start to the end, and why they differ when
// they do.
std::string reverseLossSentence(double forward, double reverse);

inline constexpr const char* kRadioModel = "Longley-Rice irregular terrain model 1.2.2, point-to-point";

// The method of the reference attenuation, and why where it seems at odds with what the antennas see.
std::string methodSentence(PathMode mode, PropagationMethod method);

const char* polarizationName(Polarization polarization);  // "horizontal" or "vertical"

// A level of the model in whole percent.
int percent(double fraction);

// The model's parameters of the settings: as members of a summary, and as
// "horizontal polarization, climate 5 (...), ground 15 and 0.005 S/m, surface refractivity 301 N-units".
void addModelInputs(nlohmann::ordered_json& json, const PathLossModelInputs& model);
std::string modelInputsSentence(const PathLossModelInputs& model);

const char* unitsName(PlotUnits units);  // "metric" or "imperial"

// "left 4.500 km from the start, right 12.000 km from the start"
std::string markersSentence(const std::vector<PathExportMarker>& markers);

// What a view was computed with, of a result that has it:
// "k 1.33, 60 % of the first Fresnel zone, 950 MHz, FCC 4-Point, metric units".
std::string viewSentence(double k, int fresnelPercent, double frequencyMhz, const std::string& method,
                         PlotUnits units);
template <typename Result>
std::string viewSentence(const Result& result) {
  return viewSentence(result.k, result.fresnelPercent, result.frequencyMhz, result.terrain.method,
                      result.units);
}

// A loss as the window shows it, in dB; empty where there is none.
std::string lossSentence(const std::string& loss);

// A line of a summary: the title, then the text in its column. Where standard output is a terminal it is
// broken to the terminal's width, and stays in the column.
std::string summaryText(std::string_view title, const std::string& text);
// The same, on standard output.
void summaryLine(const char* title, const std::string& text);

}  // namespace zel::host
