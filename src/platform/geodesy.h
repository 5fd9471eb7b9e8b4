// Distances, bearings and points on the earth's figure.
#pragma once

#include "foundation/geo_point.h"

namespace zel {

struct DistanceAzimuth {
  double distance = 0;  // km
  double azimuth = 0;   // degrees clockwise from north, 0 up to but excluding 360
};

class Geodesy {
 public:
  virtual ~Geodesy() = default;
  virtual DistanceAzimuth DistanceAndBearing(GeoPoint from, GeoPoint to) const = 0;
  // The point reached from `from` after `distance` km along the geodesic that starts at `azimuth` degrees.
  virtual GeoPoint PointAtDistance(GeoPoint from, double distance, double azimuth) const = 0;
  // The point `distance` km from `start` along the geodesic from `start` to `end`; outside 0 to its length
  // too.
  virtual GeoPoint PointOnPath(GeoPoint start, GeoPoint end, double distance) const = 0;
};

}  // namespace zel
