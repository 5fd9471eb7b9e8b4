#include "zeltool/geodesy/wgs84_geodesy.h"

#include <geodesic.h>

#include <cmath>
#include <string>

#include "foundation/runtime_error.h"

namespace zel {

namespace {

constexpr double kEquatorialRadius = 6378137.0;    // metres, WGS 84
constexpr double kFlattening = 1 / 298.257223563;  // dimensionless, WGS 84
constexpr double kMetresPerKilometre = 1000.0;
constexpr double kFullCircle = 360.0;  // degrees

const geod_geodesic& ellipsoid() {
  static const geod_geodesic wgs84 = [] {
    geod_geodesic geodesic;
    geod_init(&geodesic, kEquatorialRadius, kFlattening);
    return geodesic;
  }();
  return wgs84;
}

void checkFinite(double value) {
  if (!std::isfinite(value)) throw RuntimeError::overflow();
}

void check(GeoPoint point) {
  checkFinite(point.longitude);
  if (!(std::abs(point.latitude) <= 90))
    throw RuntimeError(RuntimeError::overflow().number(), RuntimeError::overflow().description() +
                                                              ": latitude " + std::to_string(point.latitude) +
                                                              " is beyond 90 degrees");
}

// 0 up to but excluding 360; a tiny negative angle would round to 360.
double compassAzimuth(double azimuth) {
  const double turned = azimuth < 0 ? azimuth + kFullCircle : azimuth;
  return turned < kFullCircle ? turned : 0;
}

GeoPoint pointOf(double latitude, double longitude) {
  return {latitude, longitude >= kFullCircle / 2 ? longitude - kFullCircle : longitude};
}

}  // namespace

DistanceAzimuth Wgs84Geodesy::DistanceAndBearing(GeoPoint from, GeoPoint to) const {
  check(from);
  check(to);
  double metres = 0;
  double azimuth = 0;
  double azimuthAtEnd = 0;
  geod_inverse(&ellipsoid(), from.latitude, from.longitude, to.latitude, to.longitude, &metres, &azimuth,
               &azimuthAtEnd);
  return {metres / kMetresPerKilometre, metres > 0 ? compassAzimuth(azimuth) : 0};
}

GeoPoint Wgs84Geodesy::PointAtDistance(GeoPoint from, double distance, double azimuth) const {
  check(from);
  checkFinite(distance);
  checkFinite(azimuth);
  GeoPoint to;
  geod_direct(&ellipsoid(), from.latitude, from.longitude, azimuth, distance * kMetresPerKilometre,
              &to.latitude, &to.longitude, nullptr);
  return pointOf(to.latitude, to.longitude);
}

GeoPoint Wgs84Geodesy::PointOnPath(GeoPoint start, GeoPoint end, double distance) const {
  checkFinite(distance);
  const DistanceAzimuth path = DistanceAndBearing(start, end);
  return path.distance > 0 ? PointAtDistance(start, distance, path.azimuth) : start;
}

}  // namespace zel
