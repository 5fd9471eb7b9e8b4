// Stations as lines of text, for the clipboard: "36.400000,-84.350000,30,North ridge".
#pragma once

#include <string>
#include <vector>

#include "planning/plan.h"

namespace zel::host {

// Degrees north and east with six decimals, or as many more as the value has, so that what is cut is pasted
// unchanged; metres above ground, name; without a line end. A name with a comma or a quote in it stands in
// quotes, as in CSV, so that the import of stations reads the line.
std::string stationText(const Station& station);
// A line for each, every one ended by a line feed; stations that the plan does not have are passed over.
std::string stationsText(const Plan& plan, const std::vector<StationId>& ids);

}  // namespace zel::host
