// Free-space path loss between isotropic antennas, and the decimal logarithm that the component's loss rules
// use.
#pragma once

namespace zel {

// ln x / ln 10 for x above 0, else (NaN included) the sentinel -999.
double LOG10(double x);

// dB for a frequency in MHz and a distance in km: 20 log f + 32.4 + 20 log d, the constant held in single
// precision. 0 unless both are above 0.
float FreeSpaceLoss(float frequency, float distance);

}  // namespace zel
