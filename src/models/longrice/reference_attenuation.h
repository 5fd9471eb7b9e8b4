// A_ref, the median attenuation relative to free space in a reference atmosphere: three functions of
// distance, joined (Algorithm 4.1 to 4.8, 4.27 to 4.42, 4.52 to 4.59).
//
// Within the smooth-earth horizons a curve through two-ray values; beyond them the straight line of
// diffraction; and from the distance d_x on the straight line of scatter, which loses less there.
#pragma once

#include "models/longrice/link.h"

namespace zel::longrice {

// Which of the functions the path's distance falls into.
enum class PropagationMethod { kLineOfSight, kDiffraction, kTroposcatter };

struct ReferenceAttenuation {
  double attenuation = 0;  // A_ref, dB beyond free space, 0 or more
  PropagationMethod method = PropagationMethod::kLineOfSight;
};

// Throws ParameterError when the ground's constants leave diffraction without a value.
ReferenceAttenuation referenceAttenuation(const Link& link);
// The same environment and terrain as a function of distance, metres, above 0.
ReferenceAttenuation referenceAttenuation(const Link& link, double distance);

}  // namespace zel::longrice
