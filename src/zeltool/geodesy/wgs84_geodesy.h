// Geodesics on the WGS 84 ellipsoid (equatorial radius 6378137 m, flattening 1 / 298.257223563), accurate to
// 15 nm for any two points (C. F. F. Karney, "Algorithms for geodesics", J. Geodesy 87, 2013, as the geodesic
// routines of PROJ).
//
// Positions are degrees on the ellipsoid, longitudes that come back lie in -180 up to but excluding 180.
// Distances are kilometres; a negative one goes backwards along the same geodesic. Coincident points are 0 km
// apart; the azimuth is then 0. Values that are not finite, and latitudes beyond 90, throw RuntimeError 6.
#pragma once

#include "platform/geodesy.h"

namespace zel {

class Wgs84Geodesy : public Geodesy {
 public:
  DistanceAzimuth DistanceAndBearing(GeoPoint from, GeoPoint to) const override;
  GeoPoint PointAtDistance(GeoPoint from, double distance, double azimuth) const override;
  // Coincident ends have no geodesic between them: the start, whatever the distance.
  GeoPoint PointOnPath(GeoPoint start, GeoPoint end, double distance) const override;
};

}  // namespace zel
