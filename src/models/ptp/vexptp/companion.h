// The scratch file's companion, beside it with ".par" added to its name: what the heights do not say, one
// key=value a line. Every key may be left out, and the whole file.
//
//     spacing_km         distance between samples, km; 0.1
//     tx_amsl_m          transmitting antenna, metres above sea level; 30 m above the first height
//     samples            how many heights the scratch file has; as many as there are
//     polarization       0 horizontal, 1 vertical; 0
//     permittivity       of the ground, relative; 15
//     conductivity       of the ground, S/m; 0.005
//     clutter_category   of the ground cover around both antennas, 0 to 5, 0 none; 0
//     clutter_height_m   of that cover, metres above ground, 0 for what is usual in the category; 0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "models/ptp/parameters.h"

namespace zel::ptp {

inline constexpr std::size_t kMostCompanionBytes = 65536;

struct Companion {
  double spacing = 0.1;                // km
  std::optional<double> transmitter;   // metres above sea level
  std::optional<std::size_t> samples;  // as many as there are when not given
  PtpParameters model;
  // Keys of no meaning here, in order. They are passed over, so that a newer component can say more to an
  // older program; whoever misspelled one is told.
  std::vector<std::string> unknownKeys;
};

// Throws InputError with the line's number for a line that is no key and value, a key that stands twice, and
// a value that is no number or outside its limits.
Companion parseCompanion(std::string_view text);

}  // namespace zel::ptp
