// Loss in the ground cover around an antenna that stands below its top: the height-gain terminal correction
// of ITU-R P.2108, section 3.1.
//
// Range: 0.03 to 3 GHz. The path between the antennas is then one between the tops of the cover.
#pragma once

#include <optional>

#include "models/ptp/parameters.h"

namespace zel::ptp {

// R, metres above ground: the height that is given, else the category's. Throws ParameterError for a category
// that is none of them and for a height or a street width outside its limits. 0 without cover.
double clutterHeight(const Clutter& clutter);

// A_h, dB, 0 or more, for an antenna in metres above ground and a frequency in MHz. 0 without cover. None
// where the correction has no value: outside its frequencies, and for an antenna on open ground or water,
// whose height gain has no bound.
std::optional<double> clutterLoss(const Clutter& clutter, double antennaHeight, double frequency);

// Where the far end of the path is, metres above ground: the antenna, or the top of the cover above it where
// the correction holds.
double terminalHeight(const Clutter& clutter, double antennaHeight, double frequency);

}  // namespace zel::ptp
