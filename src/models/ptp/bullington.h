// The Bullington part of the delta-Bullington method: the whole path as one knife edge, and what many
// obstacles cost beyond it (ITU-R P.526, section 4.5).
#pragma once

#include <cstddef>

namespace zel::ptp {

// L_b = L_uc + [1 - exp(-L_uc / 6)] (10 + 0.02 d), dB, of the knife edge's loss L_uc = J(nu); d in km.
double bullingtonLoss(double nu, double distance);

// A path over the bare effective earth, sampled as the real one is: last + 1 samples, i spacings from the
// transmitter each.
struct SmoothPath {
  std::size_t last;        // number of the receiver's sample, from 0
  double spacing;          // km
  double effectiveRadius;  // a_e, km
  double transmitter;      // h'_ts, metres above the smooth earth
  double receiver;         // h'_rs
};

// nu of the Bullington part for such a path and a wavelength in metres; kLeastNu when it is not above that.
// The cost grows with the logarithm of the number of samples.
double smoothBullingtonNu(const SmoothPath& path, double wavelength);

}  // namespace zel::ptp
