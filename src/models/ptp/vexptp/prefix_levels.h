// The point-to-point model from the transmitter to one sample after the other.
#pragma once

#include <span>
#include <vector>

#include "models/ptp/vexptp/arguments.h"
#include "models/ptp/vexptp/companion.h"

namespace zel::ptp {

struct PrefixLevel {
  double distance = 0;  // km from the transmitter
  // dB beyond free space, and dB above 1 microvolt per metre; PtpCalculator::kNoLoss where there is no value.
  double diffraction = 0;
  double clutter = 0;
  double level = 0;
};

// Of every sample from the first, whose path has no length and so no loss. A sample without one of its losses
// has none of the three values. The numbers are those of a signal profile over the same heights, to the last
// bit.
//
// A transmitter up to a centimetre below the first height stands on it: the heights are rounded, the
// transmitter is not. Throws ParameterError for inputs that the model does not take.
//
// The cost grows with the number of samples and a little more: 5,000 take some 30 ms.
std::vector<PrefixLevel> prefixLevels(std::span<const float> heights, const Companion& companion,
                                      const Arguments& arguments);

}  // namespace zel::ptp
