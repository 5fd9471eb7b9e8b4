#include "models/longrice/environment.h"

#include <cmath>

#include "models/longrice/input_limits.h"

namespace zel::longrice {

double surfaceRefractivityAt(double height, double seaLevelRefractivity) {
  constexpr double kScaleHeight = 9460;  // z_1, metres
  return seaLevelRefractivity * std::exp(-height / kScaleHeight);
}

double effectiveEarthCurvature(double surfaceRefractivity) {
  constexpr double kActualCurvature = 157e-9;   // gamma_a, 1/m: an earth of 6370 km
  constexpr double kRefractivityScale = 179.3;  // N_1, N-units
  return kActualCurvature * (1 - 0.04665 * std::exp(surfaceRefractivity / kRefractivityScale));
}

std::complex<double> surfaceTransferImpedance(double waveNumber, Polarization polarization,
                                              double permittivity, double conductivity) {
  constexpr double kImpedanceOfFreeSpace = 376.62;  // Z_0, ohm
  const std::complex<double> complexPermittivity(permittivity,
                                                 kImpedanceOfFreeSpace * conductivity / waveNumber);
  const std::complex<double> horizontal = std::sqrt(complexPermittivity - 1.0);
  return polarization == Polarization::kHorizontal ? horizontal : horizontal / complexPermittivity;
}

Environment environmentOf(const Parameters& parameters) {
  requireWithin(limits::kFrequency, parameters.frequency);
  requireWithin(limits::kPermittivity, parameters.permittivity);
  requireWithin(limits::kConductivity, parameters.conductivity);
  requireWithin(limits::kSurfaceRefractivity, parameters.surfaceRefractivity);
  Environment result;
  result.waveNumber = parameters.frequency / kFrequencyOfUnitWaveNumber;
  result.surfaceRefractivity = parameters.surfaceRefractivity;
  result.effectiveCurvature = effectiveEarthCurvature(parameters.surfaceRefractivity);
  result.surfaceImpedance = surfaceTransferImpedance(result.waveNumber, parameters.polarization,
                                                     parameters.permittivity, parameters.conductivity);
  return result;
}

}  // namespace zel::longrice
