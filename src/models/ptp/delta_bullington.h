// Diffraction loss of a path by the delta-Bullington method (ITU-R P.526, section 4.5): the Bullington part
// over the ground, and what a spherical earth at the ground's mean would lose beyond the Bullington part over
// that earth.
#pragma once

#include "models/ptp/growing_ptp_path.h"
#include "models/ptp/parameters.h"

namespace zel::ptp {

// dB, each 0 or more.
struct DiffractionLoss {
  double bullington = 0;        // L_ba, over the ground
  double smoothBullington = 0;  // L_bs, over the smooth earth; 0 where the spherical earth loses nothing
  double spherical = 0;         // L_sph
  double total = 0;             // L = L_ba + max(L_sph - L_bs, 0)
};

// For a path of at least two samples; the receiver's antenna in metres above its ground, the frequency in
// MHz. Throws ParameterError for inputs outside the limits.
DiffractionLoss deltaBullingtonLoss(const GrowingPtpPath& path, const Ground& ground, double receiverHeight,
                                    double frequency);

}  // namespace zel::ptp
