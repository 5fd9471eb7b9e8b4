// What the irregular terrain model takes at all. These bounds are far wider than the range that the model is
// meant for, which model_warnings.h has; what lies outside would make a step of it not finite, or is no
// place, no ground, no antenna.
#pragma once

#include "models/longrice/parameter_error.h"

namespace zel::longrice {

struct InputLimit {
  Parameter parameter;
  const char* name;  // as messages call it
  const char* unit;  // with its leading blank, or empty
  double low;
  double high;
};

namespace limits {
// Far outside any land, but inside the marks of missing heights: -9999, -32768, 32767.
inline constexpr InputLimit kElevation{Parameter::kElevations, "elevation", " m", -9000, 30000};
inline constexpr InputLimit kSpacing{Parameter::kSpacing, "spacing", " m", 1e-3, 2.1e7};
// Somewhat more than half the way around the earth.
inline constexpr InputLimit kDistance{Parameter::kSpacing, "path's length", " m", 1e-3, 2.1e7};
inline constexpr InputLimit kTransmitterHeight{Parameter::kTransmitterHeight, "transmitter's antenna height",
                                               " m", 0, 100000};
inline constexpr InputLimit kReceiverHeight{Parameter::kReceiverHeight, "receiver's antenna height", " m", 0,
                                            100000};
inline constexpr InputLimit kFrequency{Parameter::kFrequency, "frequency", " MHz", 1, 1e6};
inline constexpr InputLimit kPermittivity{Parameter::kPermittivity, "ground's relative permittivity", "", 1,
                                          1e5};
inline constexpr InputLimit kConductivity{Parameter::kConductivity, "ground's conductivity", " S/m", 0, 1e9};
// At 549.6 N-units a ray follows the earth, and there are no horizons any more.
inline constexpr InputLimit kSurfaceRefractivity{Parameter::kSurfaceRefractivity, "surface refractivity",
                                                 " N-units", 0, 540};
inline constexpr InputLimit kSeaLevelRefractivity{Parameter::kSeaLevelRefractivity, "sea-level refractivity",
                                                  " N-units", 0, 2000};
inline constexpr InputLimit kConfidenceDeviate{Parameter::kConfidence, "confidence's normal deviate", "", -40,
                                               40};
inline constexpr InputLimit kReliabilityDeviate{Parameter::kReliability, "reliability's normal deviate", "",
                                                -40, 40};
}  // namespace limits

// Throws ParameterError with the name, the value and the limits; so also for a value that is not a number.
void requireWithin(const InputLimit& limit, double value);
// The same, with more said about which value it is: "elevation of sample 7".
void requireWithin(const InputLimit& limit, double value, const std::string& name);

// Fractions are above 0 and below 1: the whole population has no deviate.
void requireFraction(Parameter parameter, double value);

}  // namespace zel::longrice
