// How the seven radio climates let the received level vary with time: curves over the effective distance
// (Algorithm section 5; NTIA Report 82-100, tables of the climates).
#pragma once

#include <array>
#include <string_view>

namespace zel::longrice {

inline constexpr int kContinentalTemperate = 5;

// "Equatorial" for 1 ... "Maritime Temperate, Over Sea" for 7; empty for a code that is none.
std::string_view radioClimateName(int climate);
bool isRadioClimate(int climate);

// (c_1 + c_2 / (1 + ((d - x_2) / x_3)^2)) (d / x_1)^2 / (1 + (d / x_1)^2), dB (5.4).
struct ClimateCurve {
  double c1, c2;      // dB, dimensionless
  double x1, x2, x3;  // metres
  double at(double effectiveDistance) const;
};

// c_1 + c_2 / (1 + (c_3 ln(0.133 k))^2), dimensionless: what the frequency does to the deviations (5.7).
struct FrequencyFactor {
  double c1, c2, c3;
  double at(double waveNumber) const;
};

struct RadioClimate {
  ClimateCurve median;          // V_med, dB
  ClimateCurve lowerDeviation;  // sigma_T-, dB: for losses above the median, the negative deviates
  ClimateCurve upperDeviation;  // sigma_T+, dB: for losses below it
  double ductingFactor;         // C_D, of the deviation far above the median, dimensionless
  double ductingDeviate;        // z_D, from which deviate on, dimensionless
  FrequencyFactor lowerFactor;  // g_-
  FrequencyFactor upperFactor;  // g_+
};

// The climate of a code; for a code that is none, the continental temperate one.
const RadioClimate& radioClimate(int climate);

}  // namespace zel::longrice
