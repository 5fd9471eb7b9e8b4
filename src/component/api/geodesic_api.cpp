// Public functions of lines and datums over the tool library's geodesics and the component's datum shift.
#include <cmath>
#include <limits>

#include "component/api/ready_component.h"
#include "foundation/runtime_error.h"
#include "zel/geodesic.h"
#include "zeltool/geodesy/wgs84_geodesy.h"
#include "zeltool/terrain/longitude.h"
#include "zeltool/terrain/path_positions.h"

namespace zel {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kSameDegrees = 1e-9;  // 0.1 mm on the ground
constexpr int kMostRounds = 20;        // each takes off all but a millionth or so of what remains

bool isPlace(Position p) {
  return std::isfinite(p.latitude) && std::isfinite(p.longitude) && std::abs(p.latitude) <= 90;
}

GeoPoint pointOf(Position p) { return {p.latitude, p.longitude}; }
Position positionOf(GeoPoint p) { return {p.latitude, p.longitude}; }

// Only once the host has said so: before the datum is set nothing is shifted.
bool stationsAreNad27(Component& component) {
  return !component.state().datumText.empty() && component.state().datumCode == 0;
}

// The NAD-27 position that is shifted to `nad83`.
GeoPoint toNad27(const DatumShift& shift, GeoPoint nad83) {
  GeoPoint guess = nad83;
  for (int round = 0; round < kMostRounds; ++round) {
    const GeoPoint reached = shift.toNad83(guess);
    const double north = nad83.latitude - reached.latitude;
    const double east = longitudeNear(nad83.longitude, reached.longitude) - reached.longitude;
    if (std::abs(north) < kSameDegrees && std::abs(east) < kSameDegrees) return guess;
    guess = {guess.latitude + north, normalLongitude(guess.longitude + east)};
  }
  throw RuntimeError(5, "no NAD-27 position leads to this one");
}

template <typename Convert>
DatumPosition converted(Position given, Convert&& convert) {
  Component& component = readyComponent();
  if (!isPlace(given)) return {given, "it is no place on the earth"};
  try {
    if (!stationsAreNad27(component)) return {given, ""};
    return {positionOf(convert(*component.datumShift(), pointOf(given))), ""};
  } catch (...) {
    return {given, currentError().description};
  }
}

}  // namespace

GeodesicLine geodesicLine(Position from, Position to, std::int32_t points) {
  if (!isPlace(from) || !isPlace(to)) return {kNone, kNone, kNone, {}};
  const Wgs84Geodesy geodesy;
  const DistanceAzimuth there = geodesy.DistanceAndBearing(pointOf(from), pointOf(to));
  const DistanceAzimuth back = geodesy.DistanceAndBearing(pointOf(to), pointOf(from));
  GeodesicLine line{there.distance, there.azimuth, back.azimuth, {}};
  if (points < 2) return line;
  std::vector<GeoPoint> positions(static_cast<std::size_t>(points));
  GeodesicPath(pointOf(from), pointOf(to)).fill(positions);
  line.positions.reserve(positions.size());
  for (const GeoPoint& p : positions) line.positions.push_back(positionOf(p));
  return line;
}

Position geodesicDestination(Position from, double bearingDeg, double distanceKm) {
  if (!isPlace(from) || !std::isfinite(bearingDeg) || !std::isfinite(distanceKm)) return {kNone, kNone};
  return positionOf(Wgs84Geodesy().PointAtDistance(pointOf(from), distanceKm, bearingDeg));
}

DatumPosition mapPosition(Position station) {
  return converted(station, [](const DatumShift& shift, GeoPoint p) { return shift.toNad83(p); });
}

DatumPosition stationPosition(Position map) { return converted(map, toNad27); }

}  // namespace zel
