// Attenuation by scatter from the atmosphere (Algorithm 4.60 to 4.67; the functions H_0 and F are those of
// NBS Technical Note 101, section 9, approximated as in Algorithm 6).
#pragma once

#include <optional>

#include "models/longrice/link.h"

namespace zel::longrice {

// F(theta d), dB, of the product of the angular distance in radians and the distance in metres
// (Algorithm 6.9): the three pieces of Technical Note 101 in this model's units, joined at 10 km and 70 km.
double scatterDistanceFunction(double thetaD);

// H_01(r, eta), dB: the frequency gain of one antenna, for r of 0.2 or more and the scatter efficiency eta,
// read between 1 and 5 (Algorithm 6.12 to 6.14). Both dimensionless.
double frequencyGain(double r, double eta);

struct Scatter {
  double attenuation = 0;    // A_scat, dB beyond free space
  double frequencyGain = 0;  // H_0, dB
};

// At a distance in metres beyond the horizon distance. Without a value where both antennas are so low in
// wavelengths that the function is not defined. Where the frequency gain of a point farther away is handed
// over and large, it is kept: the approximation fails for very low antennas.
std::optional<Scatter> troposcatter(const Link& link, double distance,
                                    std::optional<double> fartherFrequencyGain = std::nullopt);

}  // namespace zel::longrice
