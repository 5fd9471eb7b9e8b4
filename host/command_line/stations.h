// Station options.
#pragma once

#include <string>

#include "command_line/command_error.h"
#include "zel/coordinates.h"

namespace zel::host {

// The station of an option's text. Throws UsageError naming the option and the fault.
inline StationInput stationOption(const char* option, const std::string& text) {
  const ParsedStation parsed = parseStationText(text);
  if (!parsed.station) throw UsageError(std::string(option) + " \"" + text + "\": " + parsed.error);
  return *parsed.station;
}

}  // namespace zel::host
