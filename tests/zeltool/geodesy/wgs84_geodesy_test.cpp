#include "zeltool/geodesy/wgs84_geodesy.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kQuarterMeridian =
    10001.965729;  // km, WGS 84 (published to the millimetre: 10 001 965.729 m)

double degrees(double whole, double minutes, double seconds) {
  return std::copysign(std::abs(whole) + minutes / 60 + seconds / 3600, whole);
}

double longitudeDifference(double a, double b) { return std::abs(std::remainder(a - b, 360.0)); }

struct InverseCase {
  std::string source;
  GeoPoint from;
  GeoPoint to;
  double distance;           // km
  double azimuth;            // degrees
  double distanceTolerance;  // km
  double azimuthTolerance;   // degrees
};

TEST(Geodesy, AgreesWithPublishedGeodesics) {
  const std::vector<InverseCase> cases = {
      // The two worked examples of Karney's geodesic library: New York to London, and New York to Singapore.
      {"JFK-LHR", {40.6, -73.8}, {51.6, -0.5}, 5551.7594, 51.198883, 5e-7, 5e-7},
      {"JFK-SIN",
       {degrees(40, 38, 23), degrees(-73, 46, 44)},
       {degrees(1, 21, 33), degrees(103, 59, 22)},
       15347.628,
       degrees(3, 18, 29.9),
       5e-4,
       0.05 / 3600},
      // Vincenty's formula as Geoscience Australia demonstrates it on GRS 80, which differs by less than 0.1
      // mm here.
      {"Flinders Peak to Buninyon",
       {degrees(-37, 57, 3.72030), degrees(144, 25, 29.52440)},
       {degrees(-37, 39, 10.15610), degrees(143, 55, 35.38390)},
       54.972271,
       degrees(306, 52, 5.37),
       1e-6,
       0.005 / 3600},
      // Closed forms: a quarter of the meridian; an arc of the equator, a x angle.
      {"equator to pole", {0, 0}, {90, 0}, kQuarterMeridian, 0, 5e-7, 1e-12},
      {"pole to equator", {90, 0}, {0, 0}, kQuarterMeridian, 180, 5e-7, 1e-12},
      {"along the equator", {0, 10}, {0, 11}, 6378.137 * M_PI / 180, 90, 1e-9, 1e-12},
      {"back along the equator", {0, 11}, {0, 10}, 6378.137 * M_PI / 180, 270, 1e-9, 1e-12},
      {"over the antimeridian", {0, 179.5}, {0, -179.5}, 6378.137 * M_PI / 180, 90, 1e-9, 1e-12},
      {"over the antimeridian westward", {0, -179.5}, {0, 179.5}, 6378.137 * M_PI / 180, 270, 1e-9, 1e-12},
      {"antipodes go over a pole", {0, 0}, {0, 180}, 2 * kQuarterMeridian, 0, 1e-6, 1e-12},
  };
  const Wgs84Geodesy geodesy;
  for (const InverseCase& c : cases) {
    const DistanceAzimuth result = geodesy.DistanceAndBearing(c.from, c.to);
    EXPECT_NEAR(result.distance, c.distance, c.distanceTolerance) << c.source;
    EXPECT_NEAR(result.azimuth, c.azimuth, c.azimuthTolerance) << c.source;
  }
}

TEST(Geodesy, FollowsThePublishedWaypointsFromNewYorkToSingapore) {
  const GeoPoint start{degrees(40, 38, 23), degrees(-73, 46, 44)};
  const double azimuth = degrees(3, 18, 29.9);
  // Every 2000 km, to 0.1 seconds of arc.
  const std::vector<GeoPoint> waypoints = {
      {degrees(58, 34, 45.1), degrees(-71, 49, 36.7)}, {degrees(76, 22, 28.4), degrees(-65, 32, 17.8)},
      {degrees(84, 50, 28.0), degrees(75, 4, 39.2)},   {degrees(67, 26, 20.3), degrees(98, 0, 51.2)},
      {degrees(49, 33, 3.2), degrees(101, 6, 52.6)},   {degrees(31, 34, 16.5), degrees(102, 30, 46.3)},
      {degrees(13, 31, 56.0), degrees(103, 26, 50.7)}};
  const Wgs84Geodesy geodesy;
  for (std::size_t i = 0; i < waypoints.size(); ++i) {
    const GeoPoint point = geodesy.PointAtDistance(start, 2000.0 * static_cast<double>(i + 1), azimuth);
    EXPECT_NEAR(point.latitude, waypoints[i].latitude, 0.06 / 3600) << i;
    EXPECT_NEAR(point.longitude, waypoints[i].longitude, 0.06 / 3600) << i;
  }
}

TEST(Geodesy, GivesAzimuthsFromZeroUpToButExcluding360) {
  const Wgs84Geodesy geodesy;
  const unsigned seed = 3;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> latitude(-90, 90);
  std::uniform_real_distribution<double> longitude(-180, 180);
  for (int i = 0; i < 2000; ++i) {
    const double azimuth =
        geodesy
            .DistanceAndBearing({latitude(random), longitude(random)}, {latitude(random), longitude(random)})
            .azimuth;
    EXPECT_GE(azimuth, 0) << "seed " << seed;
    EXPECT_LT(azimuth, 360) << "seed " << seed;
  }
  // So little west of north that 360 minus it is 360 in a 64-bit float.
  const double almostNorth = geodesy.DistanceAndBearing({0, 0}, {80, -1e-14}).azimuth;
  EXPECT_GE(almostNorth, 0);
  EXPECT_LT(almostNorth, 360);
}

TEST(Geodesy, ReachesThePointThatDistanceAndBearingWereTakenTo) {
  const Wgs84Geodesy geodesy;
  const unsigned seed = 17;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> latitude(-89.9, 89.9);
  std::uniform_real_distribution<double> longitude(-180, 180);
  for (int i = 0; i < 2000; ++i) {
    const GeoPoint from{latitude(random), longitude(random)};
    const GeoPoint to{latitude(random), longitude(random)};
    const DistanceAzimuth path = geodesy.DistanceAndBearing(from, to);
    const GeoPoint reached = geodesy.PointAtDistance(from, path.distance, path.azimuth);
    // The routines are good to 15 nm; nearly opposite points magnify the azimuth's last bit. 1 mm in degrees.
    EXPECT_LT(geodesy.DistanceAndBearing(reached, to).distance, 1e-6) << "seed " << seed;
  }
}

TEST(Geodesy, MeasuresTheSameDistanceBothWays) {
  const Wgs84Geodesy geodesy;
  const GeoPoint a{36.5365, -84.2};
  const GeoPoint b{36.1, -83.7};
  EXPECT_NEAR(geodesy.DistanceAndBearing(a, b).distance, geodesy.DistanceAndBearing(b, a).distance, 1e-11);
}

TEST(Geodesy, GivesZeroDistanceAndBearingForCoincidentPoints) {
  const Wgs84Geodesy geodesy;
  for (const GeoPoint point : {GeoPoint{36.5, -84.2}, GeoPoint{0, 0}, GeoPoint{90, 0}, GeoPoint{-90, 12}}) {
    const DistanceAzimuth path = geodesy.DistanceAndBearing(point, point);
    EXPECT_EQ(path.distance, 0);
    EXPECT_EQ(path.azimuth, 0);
  }
  EXPECT_EQ(geodesy.DistanceAndBearing({10, 180}, {10, -180}).distance, 0);
  EXPECT_NEAR(geodesy.DistanceAndBearing({90, 10}, {90, 50}).distance, 0, 1e-12)
      << "a pole has every longitude";
}

TEST(Geodesy, GoesBackwardsForANegativeDistance) {
  const Wgs84Geodesy geodesy;
  const GeoPoint from{36.5, -84.2};
  const GeoPoint back = geodesy.PointAtDistance(from, -10, 30);
  const GeoPoint opposite = geodesy.PointAtDistance(from, 10, 210);
  EXPECT_NEAR(back.latitude, opposite.latitude, 1e-12);
  EXPECT_NEAR(back.longitude, opposite.longitude, 1e-12);
}

TEST(Geodesy, PutsThePointsOfAPathOnItsEndsAndBeyond) {
  const Wgs84Geodesy geodesy;
  const GeoPoint start{36.5, -84.2};
  const GeoPoint end{36.1, -83.7};
  const double length = geodesy.DistanceAndBearing(start, end).distance;
  EXPECT_LT(geodesy.DistanceAndBearing(geodesy.PointOnPath(start, end, 0), start).distance, 1e-9);
  EXPECT_LT(geodesy.DistanceAndBearing(geodesy.PointOnPath(start, end, length), end).distance, 1e-9);
  const GeoPoint before = geodesy.PointOnPath(start, end, -5);
  const GeoPoint beyond = geodesy.PointOnPath(start, end, length + 5);
  EXPECT_NEAR(geodesy.DistanceAndBearing(before, start).distance, 5, 1e-9);
  EXPECT_NEAR(geodesy.DistanceAndBearing(end, beyond).distance, 5, 1e-9);
  EXPECT_NEAR(geodesy.DistanceAndBearing(before, beyond).distance, length + 10, 1e-9) << "one geodesic";
}

TEST(Geodesy, StaysAtTheStartOfAPathWithoutLength) {
  const Wgs84Geodesy geodesy;
  const GeoPoint point{36.5, -84.2};
  EXPECT_EQ(geodesy.PointOnPath(point, point, 0), point);
  EXPECT_EQ(geodesy.PointOnPath(point, point, 7), point);
}

TEST(Geodesy, GivesLongitudesFromMinus180UpToButExcluding180) {
  const Wgs84Geodesy geodesy;
  EXPECT_NEAR(geodesy.PointAtDistance({0, 179.9}, 50, 90).longitude, -179.650842, 5e-7);
  EXPECT_NEAR(geodesy.PointAtDistance({0, -179.9}, 50, 270).longitude, 179.650842, 5e-7);
  EXPECT_EQ(geodesy.PointAtDistance({10, 180}, 0, 0).longitude, -180);
  EXPECT_NEAR(longitudeDifference(geodesy.PointAtDistance({10, 370}, 1, 0).longitude, 10), 0, 1e-9);
}

TEST(Geodesy, CrossesAPole) {
  const Wgs84Geodesy geodesy;
  const GeoPoint point = geodesy.PointAtDistance({89, 0}, 2 * 111.69397, 0);
  // A degree of latitude at the pole is 111.69 km: the point mirrors the start.
  EXPECT_NEAR(point.latitude, 89, 1e-4);
  EXPECT_NEAR(longitudeDifference(point.longitude, 180), 0, 1e-9);
}

TEST(Geodesy, RaisesOverflowForWhatIsNoPositionOrDistance) {
  const Wgs84Geodesy geodesy;
  const GeoPoint good{10, 10};
  for (const GeoPoint bad : {GeoPoint{kNan, 0}, GeoPoint{0, kNan}, GeoPoint{90.001, 0}, GeoPoint{-91, 0},
                             GeoPoint{0, kInfinity}, GeoPoint{-kInfinity, 0}}) {
    EXPECT_THROW(geodesy.DistanceAndBearing(bad, good), RuntimeError);
    EXPECT_THROW(geodesy.DistanceAndBearing(good, bad), RuntimeError);
    EXPECT_THROW(geodesy.PointAtDistance(bad, 1, 1), RuntimeError);
  }
  EXPECT_THROW(geodesy.PointAtDistance(good, kNan, 1), RuntimeError);
  EXPECT_THROW(geodesy.PointAtDistance(good, 1, kInfinity), RuntimeError);
  EXPECT_THROW(geodesy.PointOnPath(good, {11, 11}, kNan), RuntimeError);
}

}  // namespace
}  // namespace zel
