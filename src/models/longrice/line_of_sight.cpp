#include "models/longrice/line_of_sight.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "models/longrice/decibel.h"
#include "models/longrice/terrain_irregularity.h"

namespace zel::longrice {
namespace {

// R_e: the ground's reflection, weakened where it is rough, but never below what grazing incidence leaves
// (4.46 to 4.48).
std::complex<double> effectiveReflection(const Link& link, double distance, double sinGrazing) {
  constexpr double kMostDamping = 10;
  const double roughness = terrainRoughnessOver(distance, link.terrain.deltaH);
  const double damping = std::min(kMostDamping, link.environment.waveNumber * roughness * sinGrazing);
  const std::complex<double>& impedance = link.environment.surfaceImpedance;
  const std::complex<double> reflection =
      (sinGrazing - impedance) / (sinGrazing + impedance) * std::exp(-damping);
  const double power = std::norm(reflection);
  if (power >= 0.25 && power >= sinGrazing) return reflection;
  return reflection * std::sqrt(sinGrazing / power);
}

// delta: the phase by which the reflected ray lags, radians, kept below pi so that the far side of the last
// lobe is followed and the lobes before it are not (4.49, 4.50).
double phaseLag(const Link& link, double distance) {
  constexpr double kQuarter = std::numbers::pi / 2;
  const double lag = 2 * link.environment.waveNumber * link.terrain.effectiveHeights[0] *
                     link.terrain.effectiveHeights[1] / distance;
  return lag <= kQuarter ? lag : std::numbers::pi - kQuarter * kQuarter / lag;
}

}  // namespace

double twoRayAttenuation(const Link& link, double distance) {
  const double height = link.terrain.effectiveHeights[0] + link.terrain.effectiveHeights[1];
  const double sinGrazing = height / std::hypot(distance, height);
  const std::complex<double> reflected =
      effectiveReflection(link, distance, sinGrazing) * std::polar(1.0, phaseLag(link, distance));
  return -decibel(std::norm(1.0 + reflected));
}

double lineOfSightAttenuation(const Link& link, const AttenuationLine& diffraction, double distance) {
  // w: the smoother the ground in wavelengths and the shorter the path, the more the two rays count
  // (4.43, 4.44).
  constexpr double kShortestScale = 10e3;  // D_2, metres
  const double roughness = kFrequencyOfUnitWaveNumber * link.environment.waveNumber * link.terrain.deltaH;
  const double w = 1 / (1 + roughness / std::max(kShortestScale, link.smoothHorizonDistance));
  return (1 - w) * diffraction.at(distance) + w * twoRayAttenuation(link, distance);
}

}  // namespace zel::longrice
