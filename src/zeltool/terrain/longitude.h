// Longitudes that mean the same place brought to one range. Degrees.
#pragma once

#include <cmath>

namespace zel {

// -180 up to but excluding 180. Any finite longitude.
inline double normalLongitude(double longitude) {
  if (longitude >= -180 && longitude < 180) return longitude;
  const double rest = std::remainder(longitude, 360.0);
  return rest >= 180 ? rest - 360 : rest;
}

// The longitude of the same place that is within 180 degrees of `reference`.
inline double longitudeNear(double longitude, double reference) {
  const double difference = longitude - reference;
  if (difference >= -180 && difference <= 180) return longitude;
  return reference + std::remainder(difference, 360.0);
}

}  // namespace zel
