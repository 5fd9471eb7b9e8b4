// What the commands over a path show alike: stations, ground, losses, and numbers of a JSON summary.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "zel/coordinates.h"

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

// A line of a summary on standard output: the title, then the text in its column.
void summaryLine(const char* title, const std::string& text);

}  // namespace zel::host
