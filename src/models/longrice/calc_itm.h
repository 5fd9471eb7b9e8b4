// CalcITM: the irregular terrain model behind the fixed argument list that the component's calculations call.
#pragma once

#include <cstdint>

namespace zel {

// Basic transmission loss over a path, in dB and positive, for every pair of levels.
//
//   points        number of elevations, 2 or more
//   spacing       metres between them
//   elevations    metres above sea level, station 1 first
//   heights       antennas above ground, metres, at station 1 and station 2
//   polarization  0 horizontal, anything else vertical
//   climate       1 to 7; any other code is taken for 5
//   permittivity  of the ground, relative; conductivity in S/m
//   frequency     MHz; refractivity at the surface, Ns, N-units, not reduced for height
//   confidence    `confidences` standard normal deviates (upper tail), situation variability
//   reliability   `reliabilities` standard normal deviates (upper tail), time variability
//   losses        receives confidences x reliabilities values, the confidence running fastest: the loss for
//                 confidence[c] and reliability[r] is losses[c + r * confidences]
//
// Throws ParameterError (a RuntimeError, number 5) naming the argument when no loss can be computed; losses
// is then left as it was. Safe from several threads.
void CalcITM(std::int16_t points, float spacing, const float* elevations, double transmitterHeight,
             double receiverHeight, std::int16_t polarization, std::int16_t climate, double permittivity,
             double conductivity, double frequency, double refractivity, const double* confidence,
             std::int32_t confidences, const double* reliability, std::int32_t reliabilities, double* losses);

}  // namespace zel
