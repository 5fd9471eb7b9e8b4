// Attenuation within the smooth-earth horizons: two rays, one reflected from the ground, blended with the
// diffraction that is extrapolated inwards (Algorithm 4.43 to 4.50).
#pragma once

#include "models/longrice/link.h"

namespace zel::longrice {

// A straight line over distance, dB beyond free space.
struct AttenuationLine {
  double atZero = 0;  // dB
  double slope = 0;   // dB/m
  double at(double distance) const { return atZero + slope * distance; }
};

// A_los at a distance in metres, above 0. The line is that of diffraction, A_ed + m_d d. dB beyond free
// space; negative where the rays add up.
double lineOfSightAttenuation(const Link& link, const AttenuationLine& diffraction, double distance);

// A_t, the two rays alone, dB beyond free space. Distance in metres, above 0.
double twoRayAttenuation(const Link& link, double distance);

}  // namespace zel::longrice
