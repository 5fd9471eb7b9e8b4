// Lines of text, as the clipboard has them, read as stations.
#pragma once

#include <string>
#include <vector>

#include "planning/plan.h"

namespace zel::host {

struct StationLines {
  std::vector<Station> stations;
  std::size_t refused = 0;   // lines that are no station
  std::string firstProblem;  // "line 3: ..."
};
// "LAT,LON[,HEIGHT][,NAME]" each, the name in quotes or not; heights in metres, or feet with "ft" behind
// them; tabs serve as commas. Lines without a name get one that the plan does not have. Empty lines are
// passed over.
StationLines parseStationLines(const std::string& text, const Plan& plan);

}  // namespace zel::host
