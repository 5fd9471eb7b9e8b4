// From the reference attenuation to its quantiles: how far the attenuation exceeds or falls below it in time,
// and from one comparable path to another (Algorithm section 5).
//
// The mode is that of mobile stations with the location's variability taken out: reliability is the fraction
// of time, to which the location's would be added, and confidence the fraction of situations. A deviate is
// the standard normal z whose upper tail holds the fraction, so it is negative for fractions above one half.
#pragma once

#include "models/longrice/link.h"

namespace zel::longrice {

// The quantiles of one path. Making it costs some hundred nanoseconds, an evaluation a few.
class Variability {
 public:
  Variability(const Link& link, int climate);

  // The attenuation beyond free space, dB, that is not exceeded with the reliability and confidence of the
  // deviates. Negative when the level is above that of free space, which the last rule keeps small (5.13).
  double attenuation(double reference, double reliabilityDeviate, double confidenceDeviate) const;

  double median() const { return median_; }  // V_med, dB, taken off the reference attenuation

 private:
  double timeDeviation(double deviate) const;

  double median_;             // V_med, dB
  double lower_;              // sigma_T-, dB
  double upper_;              // sigma_T+, dB
  double ducting_;            // sigma_TD, dB
  double ductingDeviate_;     // z_D, dimensionless
  double situationVariance_;  // sigma_S^2, dB^2
};

// d_e: the distance as the climates' curves read it, metres (Algorithm 5.1 to 5.3).
double effectiveDistance(const Link& link);

}  // namespace zel::longrice
