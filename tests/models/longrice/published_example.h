// The published point-to-point example of the irregular terrain model, version 1.2.2: Crystal Palace to
// Mursley, path 2200 of the television measurements of 1964. Its table of losses is rounded to 0.1 dB, its
// heights to 0.1 m and its delta h to a metre.
#pragma once

#include <array>

#include "grounds.h"
#include "models/longrice/environment.h"

namespace zel::longrice::published {

inline constexpr double kDistance = 77.8e3;                             // metres
inline constexpr double kTransmitterHeight = 143.9;                     // metres above ground
inline constexpr double kReceiverHeight = 8.5;                          // metres above ground
inline constexpr double kFreeSpaceLoss = 102.6;                         // dB
inline constexpr double kDeltaH = 89;                                   // metres
inline constexpr std::array<double, 2> kEffectiveHeights{240.5, 18.4};  // metres

inline Parameters parameters() {
  Parameters parameters;
  parameters.frequency = 41.5;
  parameters.polarization = Polarization::kHorizontal;
  parameters.climate = 5;
  parameters.permittivity = 15;
  parameters.conductivity = 0.005;
  parameters.surfaceRefractivity = 314;
  return parameters;
}

inline constexpr std::array<double, 5> kReliability{0.01, 0.1, 0.5, 0.9, 0.99};
inline constexpr std::array<double, 3> kConfidence{0.5, 0.9, 0.1};
// dB; rows by reliability, columns by confidence.
inline constexpr std::array<std::array<double, 3>, 5> kLoss{{{128.6, 137.6, 119.6},
                                                             {132.2, 140.8, 123.5},
                                                             {135.8, 144.3, 127.2},
                                                             {138.0, 146.5, 129.4},
                                                             {139.7, 148.4, 131.0}}};

// Metres above sea level, 157 samples at even distances.
inline const Ground& ground() {
  static const Ground elevations{
      96,  84,  65,  46,  46,  46,  61,  41,  33,  27,  23,  19,  15,  15,  15,  15,  15,  15,  15,  15,
      15,  15,  15,  15,  17,  19,  21,  23,  25,  27,  29,  35,  46,  41,  35,  30,  33,  35,  37,  40,
      35,  30,  51,  62,  76,  46,  46,  46,  46,  46,  46,  50,  56,  67,  106, 83,  95,  112, 137, 137,
      76,  103, 122, 122, 83,  71,  61,  64,  67,  71,  74,  77,  79,  86,  91,  83,  76,  68,  63,  76,
      107, 107, 107, 119, 127, 133, 135, 137, 142, 148, 152, 152, 107, 137, 104, 91,  99,  120, 152, 152,
      137, 168, 168, 122, 137, 137, 170, 183, 183, 187, 194, 201, 192, 152, 152, 166, 177, 198, 156, 127,
      116, 107, 104, 101, 98,  95,  103, 91,  97,  102, 107, 107, 107, 103, 98,  94,  91,  105, 122, 122,
      122, 122, 122, 137, 137, 137, 137, 137, 137, 137, 137, 140, 144, 147, 150, 152, 159};
  return elevations;
}

inline double spacing() { return kDistance / static_cast<double>(ground().size() - 1); }

}  // namespace zel::longrice::published
