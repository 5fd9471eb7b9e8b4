// From the reference attenuation to its quantiles: how far the attenuation exceeds or falls below it in time,
// and from one comparable path to another (Algorithm section 5).
//
// The mode is that of mobile stations with the location's variability taken out: reliability is the fraction
// of time, to which the location's would be added, and confidence the fraction of situations. A deviate is
// the standard normal z whose upper tail holds the fraction, so it is negative for fractions above one half.
#pragma once

#include <cmath>

#include "models/longrice/link.h"

namespace zel::longrice {

// The quantiles of one path at one reliability, for a reference attenuation. Many confidences cost a division
// and a root each.
class QuantilesOfSituation {
 public:
  // dB; dB of V_med and Y_T off the reference, sigma_S^2 and Y_T^2 in dB^2.
  QuantilesOfSituation(double attenuation, double situationVariance, double timeSquare)
      : attenuation_(attenuation), situationVariance_(situationVariance), timeSquare_(timeSquare) {}

  // As Variability::attenuation.
  double attenuation(double confidenceDeviate) const {
    // Unusual times are less well known, more so for the usual situation (5.11).
    constexpr double kTimeUncertainty = 7.8;
    const double variance =
        situationVariance_ + timeSquare_ / (kTimeUncertainty + confidenceDeviate * confidenceDeviate);
    const double attenuation = attenuation_ - std::sqrt(variance) * confidenceDeviate;  // (5.12)
    return attenuation < 0 ? attenuation * (29 - attenuation) / (29 - 10 * attenuation)
                           : attenuation;  // (5.13)
  }

 private:
  double attenuation_;        // of the usual situation, A_ref - V_med - Y_T, dB
  double situationVariance_;  // dB^2
  double timeSquare_;         // Y_T^2, dB^2
};

// The quantiles of one path. Making it costs some hundred nanoseconds, an evaluation a few.
class Variability {
 public:
  Variability(const Link& link, int climate);

  // The attenuation beyond free space, dB, that is not exceeded with the reliability and confidence of the
  // deviates. Negative when the level is above that of free space, which the last rule keeps small (5.13).
  double attenuation(double reference, double reliabilityDeviate, double confidenceDeviate) const {
    return at(reference, reliabilityDeviate).attenuation(confidenceDeviate);
  }
  // What of it the reliability decides alone.
  QuantilesOfSituation at(double reference, double reliabilityDeviate) const;

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
