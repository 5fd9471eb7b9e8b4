// Diffraction over the smooth spherical earth (ITU-R P.526, sections 3.1.1 and 3.2): the first term of the
// residue series beyond the horizon, and an interpolation from there to the loss-free path within it.
//
// Range: 10 MHz and above. Beyond the horizon the first term is meant to be within 2 dB of the whole series,
// except near the horizon.
#pragma once

#include "models/ptp/parameters.h"

namespace zel::ptp {

class SphericalEarth {
 public:
  // Frequency in MHz, effective radius a_e in km. Throws ParameterError for a ground that is like empty
  // space.
  SphericalEarth(const Ground& ground, double frequency, double effectiveRadius);

  // L_sph, dB, 0 or more. Kilometres; metres above the smooth earth, 0 or more.
  double loss(double distance, double firstHeight, double secondHeight) const;

  // The first term alone, for an earth of another radius in km; dB, negative where the antennas gain. Section
  // 3.1.1.2.
  double firstTermLoss(double distance, double firstHeight, double secondHeight, double radius) const;

  // K, the normalized surface admittance for an earth of a radius in km, dimensionless. Section 3.1.1.1.
  double surfaceAdmittance(double radius) const;

 private:
  Ground ground_;
  double frequency_;   // f, MHz
  double wavelength_;  // lambda, metres
  double radius_;      // a_e, km
};

}  // namespace zel::ptp
