#include "models/longrice/variability.h"

#include <cmath>

#include "models/longrice/radio_climate.h"

namespace zel::longrice {

double effectiveDistance(const Link& link) {
  constexpr double kDiameter = 18e6;  // 2 a_1, metres: the earth of the curves has a radius of 9000 km
  constexpr double kFrequencyTerm = 575.7e12;  // D_x^3 k, m^2
  constexpr double kHorizon = 130e3;           // d_0, metres
  const PathTerrain& terrain = link.terrain;
  const double reach = std::sqrt(kDiameter * terrain.effectiveHeights[0]) +
                       std::sqrt(kDiameter * terrain.effectiveHeights[1]) +
                       std::cbrt(kFrequencyTerm / link.environment.waveNumber);
  return terrain.distance < reach ? kHorizon * terrain.distance / reach : kHorizon + terrain.distance - reach;
}

Variability::Variability(const Link& link, int climate) {
  const RadioClimate& curves = radioClimate(climate);
  const double distance = effectiveDistance(link);
  const double k = link.environment.waveNumber;
  median_ = curves.median.at(distance);
  lower_ = curves.lowerDeviation.at(distance) * curves.lowerFactor.at(k);  // (5.5)
  upper_ = curves.upperDeviation.at(distance) * curves.upperFactor.at(k);  // (5.6)
  ducting_ = upper_ * curves.ductingFactor;
  ductingDeviate_ = curves.ductingDeviate;
  const double situation = 5 + 3 * std::exp(-distance / 100e3);  // sigma_S (5.10)
  situationVariance_ = situation * situation;
}

// sigma_T for a deviate: the two halves of the distribution differ, and ducts change the far end of one
// (5.8).
double Variability::timeDeviation(double deviate) const {
  if (deviate < 0) return lower_;
  if (deviate <= ductingDeviate_) return upper_;
  return ducting_ + (upper_ - ducting_) * ductingDeviate_ / deviate;
}

QuantilesOfSituation Variability::at(double reference, double reliabilityDeviate) const {
  const double time = timeDeviation(reliabilityDeviate) * reliabilityDeviate;  // Y_T
  return {reference - median_ - time, situationVariance_, time * time};
}

}  // namespace zel::longrice
