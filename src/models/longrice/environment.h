// The medium that a path lies in: what frequency, atmosphere and ground are to the irregular terrain model.
//
// Source: Hufford, "The ITS Irregular Terrain Model, version 1.2.2: The Algorithm", section 1; cited in this
// folder as "Algorithm".
#pragma once

#include <complex>

namespace zel::longrice {

enum class Polarization { kHorizontal, kVertical };

// What a prediction is made for, as its user gives it.
struct Parameters {
  double frequency = 0;  // MHz
  Polarization polarization = Polarization::kHorizontal;
  int climate = 5;                   // radio climate code, 1 to 7
  double permittivity = 15;          // of the ground, relative, dimensionless
  double conductivity = 0.005;       // of the ground, S/m
  double surfaceRefractivity = 301;  // Ns, N-units
};

struct Environment {
  double waveNumber = 0;                  // k, 1/m
  double surfaceRefractivity = 0;         // Ns, N-units
  double effectiveCurvature = 0;          // gamma_e, of the effective earth, 1/m
  std::complex<double> surfaceImpedance;  // Z_g, relative to free space, dimensionless
};

// MHz of a wave number in 1/m and back: f = f_0 k with f_0 = 47.70 MHz m (Algorithm 1.1).
inline constexpr double kFrequencyOfUnitWaveNumber = 47.70;

// Ns at a height in metres above sea level, of N0 (both N-units): Ns = N0 exp(-z / 9460 m) (Algorithm 1.2).
double surfaceRefractivityAt(double height, double seaLevelRefractivity);

// 1/m; falls with Ns, and reaches 0 near Ns = 549.6, where the earth is flat to a ray (Algorithm 1.3).
double effectiveEarthCurvature(double surfaceRefractivity);

// Z_g of the ground for a wave number in 1/m (Algorithm 1.4 and 1.5).
std::complex<double> surfaceTransferImpedance(double waveNumber, Polarization polarization,
                                              double permittivity, double conductivity);

// Throws ParameterError for what no loss can be computed from.
Environment environmentOf(const Parameters& parameters);

}  // namespace zel::longrice
