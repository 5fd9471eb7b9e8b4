// Station options.
#pragma once

#include <string>

#include "command_line/command_error.h"
#include "zel/coordinates.h"

namespace zel::host {

// The option with its text, cut where nobody reads on, to head a message.
inline std::string quotedOption(const char* option, const std::string& text) {
  constexpr std::size_t kLongest = 80;
  return std::string(option) + " \"" + (text.size() > kLongest ? text.substr(0, kLongest) + "..." : text) +
         "\": ";
}

// The station of an option's text. Throws UsageError naming the option and the fault.
inline StationInput stationOption(const char* option, const std::string& text) {
  constexpr double kHighestAntenna = 32767;  // metres
  const ParsedStation parsed = parseStationText(text);
  if (!parsed.station) throw UsageError(quotedOption(option, text) + parsed.error);
  if (parsed.station->height && !(*parsed.station->height >= 0 && *parsed.station->height <= kHighestAntenna))
    throw UsageError(quotedOption(option, text) + "the height is not from 0 to 32767 m");
  return *parsed.station;
}

// The same for a position, which has no height.
inline StationInput positionOption(const char* option, const std::string& text) {
  const ParsedStation parsed = parseStationText(text);
  if (!parsed.station) throw UsageError(quotedOption(option, text) + parsed.error);
  if (parsed.station->height)
    throw UsageError(quotedOption(option, text) + "a position has no height; give LAT,LON");
  return *parsed.station;
}

}  // namespace zel::host
