// From two stations to the layout of their path: how long it is, how many samples it gets, and where they
// begin and end.
//
// N intervals of D / N kilometres lie between the stations, and E more beyond each end, so that the plot
// shows a little of what lies behind the antennas. The start antenna stands on sample E, the end antenna on
// sample N + E, of T = N + 2E samples that are counted from 1.
#pragma once

#include <cstdint>

#include "foundation/geo_point.h"
#include "platform/geodesy.h"

namespace zel {

// A path shorter than this is not profiled.
inline constexpr double kShortestPath = 0.2;  // km

struct PathGeometry {
  GeoPoint start;
  GeoPoint end;
  double distance = 0;      // D, km
  double azimuth = 0;       // degrees, from start to end
  bool underRange = false;  // D is below kShortestPath; nothing below is computed

  std::int16_t pointsPerKm = 0;  // as used
  std::int16_t maxPoints = 0;    // as used
  std::int32_t intervals = 0;    // N
  std::int16_t extension = 0;    // E, samples beyond each end
  std::int16_t firstIndex = 0;   // E: the start antenna's sample
  std::int16_t lastIndex = 0;    // N + E: the end antenna's sample
  std::int32_t samples = 0;      // T
  double spacing = 0;            // D / N, km
  double extendedLength = 0;     // L = D + 2E spacings, km
  GeoPoint back;                 // E spacings behind the start
  GeoPoint forward;              // E spacings beyond the end

  friend bool operator==(const PathGeometry&, const PathGeometry&) = default;
};

// Distance and bearing, and whether the path is too short; the layout is left empty.
PathGeometry measurePath(const Geodesy& geodesy, GeoPoint start, GeoPoint end);

// Completes a measured path that is not under range. Throws RuntimeError 6 when a count or an index does not
// fit its type, 11 for a maximum of 0 points and 9 for a negative count.
PathGeometry layOutPath(const Geodesy& geodesy, PathGeometry measured, std::int16_t pointsPerKm,
                        std::int16_t maxPoints);

// Both in one; a path under range comes back measured only.
PathGeometry computePathGeometry(const Geodesy& geodesy, GeoPoint start, GeoPoint end,
                                 std::int16_t pointsPerKm, std::int16_t maxPoints);

}  // namespace zel
