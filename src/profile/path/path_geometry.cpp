#include "profile/path/path_geometry.h"

#include <algorithm>

#include "foundation/rounding.h"

namespace zel {
namespace {

// The interval count, bounded. The + 1 belongs to the rule, although the result counts intervals and not
// points.
std::int32_t intervalCount(double distance, std::int16_t pointsPerKm, std::int16_t maxPoints) {
  const std::int32_t count = std::min<std::int32_t>(toInt32(pointsPerKm * distance + 1.0), maxPoints);
  if (count == 0) throw RuntimeError::divisionByZero();
  if (count < 0) throw RuntimeError::subscriptOutOfRange();
  return count;
}

double oppositeAzimuth(double azimuth) {
  const double opposite = azimuth + 180.0;
  return opposite >= 360.0 ? opposite - 360.0 : opposite;
}

}  // namespace

PathGeometry measurePath(const Geodesy& geodesy, GeoPoint start, GeoPoint end) {
  PathGeometry path;
  path.start = start;
  path.end = end;
  const DistanceAzimuth measured = geodesy.DistanceAndBearing(start, end);
  path.distance = measured.distance;
  path.azimuth = measured.azimuth;
  path.underRange = path.distance < kShortestPath;
  return path;
}

PathGeometry layOutPath(const Geodesy& geodesy, PathGeometry path, std::int16_t pointsPerKm,
                        std::int16_t maxPoints) {
  path.pointsPerKm = pointsPerKm;
  path.maxPoints = maxPoints;
  path.intervals = intervalCount(path.distance, pointsPerKm, maxPoints);
  // Very short paths would get no extension; one sample makes sure that the start antenna's sample exists.
  path.extension = std::max<std::int16_t>(toInt16(path.intervals * 0.05), 1);
  path.firstIndex = path.extension;
  path.lastIndex = toInt16(path.intervals + path.extension);
  path.samples = path.intervals + 2 * path.extension;
  path.spacing = path.distance / path.intervals;
  path.extendedLength = 2 * path.extension * path.spacing + path.distance;

  const double reach = path.extension * path.spacing;
  path.forward = geodesy.PointAtDistance(path.end, reach, path.azimuth);
  path.back = geodesy.PointAtDistance(path.start, reach, oppositeAzimuth(path.azimuth));
  return path;
}

PathGeometry computePathGeometry(const Geodesy& geodesy, GeoPoint start, GeoPoint end,
                                 std::int16_t pointsPerKm, std::int16_t maxPoints) {
  const PathGeometry measured = measurePath(geodesy, start, end);
  return measured.underRange ? measured : layOutPath(geodesy, measured, pointsPerKm, maxPoints);
}

}  // namespace zel
