// Power ratios in decibels.
#pragma once

#include <cmath>

namespace zel::longrice {

// dB of a power ratio.
inline double decibel(double powerRatio) { return 10 * std::log10(powerRatio); }

}  // namespace zel::longrice
