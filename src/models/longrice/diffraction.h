// Attenuation by diffraction beyond the horizons: knife edges and a rounded earth, weighted by how rough the
// ground is (Algorithm 4.9 to 4.21; the rounded earth after Vogler 1964, whose functions are approximated as
// in Algorithm 6).
#pragma once

#include "models/longrice/link.h"

namespace zel::longrice {

// Fn(v), dB: a single knife edge with the Fresnel parameter v of 0 or more, dimensionless (Algorithm 6.1).
// Within 0.1 dB of the Fresnel integral; the join at v = 2.4 has a step of 0.012 dB.
double knifeEdgeAttenuation(double v);

// F(x, K), dB: the height-gain of the rounded earth at the normalised distance x for the ground's constant
// |K|, both dimensionless (Algorithm 6.4 to 6.7).
double heightGain(double x, double k);

// G(x), dB: the attenuation of the rounded earth with the normalised distance x, dimensionless
// (Algorithm 6.3).
double distanceAttenuation(double x);

// A_diff as a function of distance for one link. What does not depend on the distance is computed once.
class Diffraction {
 public:
  explicit Diffraction(const Link& link);

  // dB beyond free space; distance in metres, beyond the horizon distance d_L. Throws ParameterError when the
  // ground's constants leave the rounded earth without a value.
  double attenuation(double distance) const;

 private:
  double knifeEdges(double distance) const;
  double roundedEarth(double distance) const;
  double roundedEarthWeight(double distance) const;

  Link link_;
  double impedance_;           // |Z_g|, dimensionless
  double clutter_;             // A_fo, dB
  double heightFactor_;        // of the weight w, dimensionless
  double pathFactor_;          // of the weight w, metres
  double foregroundDistance_;  // x_1 + x_2, dimensionless
  double foregroundGain_;      // F(x_1, K_1) + F(x_2, K_2) + C_1, dB
};

}  // namespace zel::longrice
