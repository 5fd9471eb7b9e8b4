// What the point-to-point model takes at all. The bounds keep every step of it finite, and let through
// whatever is a place, a ground or an antenna; they are wider than what the method was tested for.
#pragma once

#include <string>

#include "models/ptp/parameter_error.h"

namespace zel::ptp {

struct InputLimit {
  const char* name;  // as messages call it
  const char* unit;  // with its leading blank, or empty
  double low;
  double high;
};

namespace limits {
// Far outside any land, but inside the marks of missing heights: -9999, -32768, 32767.
inline constexpr InputLimit kElevation{"elevation", " m", -9000, 30000};
inline constexpr InputLimit kSpacing{"spacing", " km", 1e-6, 2.1e4};
// Somewhat more than half the way around the earth.
inline constexpr InputLimit kDistance{"path's length", " km", 1e-6, 2.1e4};
inline constexpr InputLimit kAntennaHeight{"antenna's height above ground", " m", 0, 100000};
inline constexpr InputLimit kTransmitterTop{"transmitter's antenna height above sea level", " m", -9000,
                                            130000};
// The spherical-earth part holds from 10 MHz on (ITU-R P.526, section 3.2).
inline constexpr InputLimit kFrequency{"frequency", " MHz", 10, 1e6};
inline constexpr InputLimit kPermittivity{"ground's relative permittivity", "", 1, 1e5};
inline constexpr InputLimit kConductivity{"ground's conductivity", " S/m", 0, 1e9};
inline constexpr InputLimit kEffectiveRadius{"earth's effective radius", " km", 100, 1e7};
inline constexpr InputLimit kClutterHeight{"clutter height", " m", 0, 1000};
inline constexpr InputLimit kStreetWidth{"street width", " m", 0.1, 10000};
}  // namespace limits

// Throws ParameterError with the name, the value and the limits; so also for a value that is not a number.
void requireWithin(const InputLimit& limit, double value);
// The same, with more said about which value it is: "elevation of sample 7".
void requireWithin(const InputLimit& limit, double value, const std::string& name);

}  // namespace zel::ptp
