#include "models/longrice/radio_climate.h"

#include <cmath>
#include <cstddef>

namespace zel::longrice {
namespace {

constexpr std::array<std::string_view, 7> kNames{
    "Equatorial",
    "Continental Subtropical",
    "Maritime Tropical",
    "Desert",
    "Continental Temperate",
    "Maritime Temperate, Over Land",
    "Maritime Temperate, Over Sea",
};

// Distances in metres here.
constexpr std::array<RadioClimate, 7> kClimates{{
    {{-9.67, 12.7, 144.9e3, 190.3e3, 133.8e3},
     {2.13, 159.5, 762.2e3, 123.6e3, 94.5e3},
     {2.11, 102.3, 636.9e3, 134.8e3, 95.6e3},
     1.224,
     1.282,
     {1.0, 0, 0},
     {1.0, 0, 0}},
    {{-0.62, 9.19, 228.9e3, 205.2e3, 143.6e3},
     {2.66, 7.67, 100.4e3, 172.5e3, 136.4e3},
     {6.87, 15.53, 138.7e3, 143.7e3, 98.6e3},
     0.801,
     2.161,
     {1.0, 0, 0},
     {0.93, 0.31, 2.00}},
    {{1.26, 15.5, 262.6e3, 185.2e3, 99.8e3},
     {6.11, 6.65, 138.2e3, 242.2e3, 178.6e3},
     {10.08, 9.60, 165.3e3, 225.7e3, 129.7e3},
     1.380,
     1.282,
     {1.0, 0, 0},
     {1.0, 0, 0}},
    {{-9.21, 9.05, 84.1e3, 101.1e3, 98.6e3},
     {1.98, 13.11, 139.1e3, 132.7e3, 193.5e3},
     {3.68, 159.3, 464.4e3, 93.1e3, 94.2e3},
     1.000,
     20.0,
     {1.0, 0, 0},
     {0.93, 0.19, 1.79}},
    {{-0.62, 9.19, 228.9e3, 205.2e3, 143.6e3},
     {2.68, 7.16, 93.7e3, 186.8e3, 133.5e3},
     {4.75, 8.12, 93.2e3, 135.9e3, 113.4e3},
     1.224,
     1.282,
     {0.92, 0.25, 1.77},
     {0.93, 0.31, 2.00}},
    {{-0.39, 2.86, 141.7e3, 315.9e3, 167.4e3},
     {6.86, 10.38, 187.8e3, 169.6e3, 108.9e3},
     {8.58, 13.97, 216.0e3, 152.0e3, 122.7e3},
     1.518,
     1.282,
     {1.0, 0, 0},
     {1.0, 0, 0}},
    {{3.15, 857.9, 2222e3, 164.8e3, 116.3e3},
     {8.51, 169.8, 609.8e3, 119.9e3, 106.6e3},
     {8.43, 8.19, 136.2e3, 188.5e3, 122.9e3},
     1.518,
     1.282,
     {1.0, 0, 0},
     {1.0, 0, 0}},
}};

constexpr double square(double value) { return value * value; }

std::size_t indexOf(int climate) { return static_cast<std::size_t>(climate - 1); }

}  // namespace

bool isRadioClimate(int climate) { return climate >= 1 && climate <= static_cast<int>(kClimates.size()); }

std::string_view radioClimateName(int climate) {
  return isRadioClimate(climate) ? kNames[indexOf(climate)] : std::string_view();
}

double ClimateCurve::at(double effectiveDistance) const {
  const double growth = square(effectiveDistance / x1);
  return (c1 + c2 / (1 + square((effectiveDistance - x2) / x3))) * growth / (1 + growth);
}

double FrequencyFactor::at(double waveNumber) const {
  return c1 + c2 / (1 + square(c3 * std::log(0.133 * waveNumber)));
}

const RadioClimate& radioClimate(int climate) {
  return kClimates[indexOf(isRadioClimate(climate) ? climate : kContinentalTemperate)];
}

}  // namespace zel::longrice
