#include "profile/path/path_geometry.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"
#include "support/scripted_terrain.h"

namespace zel {
namespace {

constexpr GeoPoint kStart{10, 20};
constexpr GeoPoint kEnd{11, 21};

PathGeometry pathOf(double distance, int pointsPerKm, int maxPoints, double azimuth = 90) {
  test::ScriptedGeodesy geodesy;
  geodesy.distance = distance;
  geodesy.azimuth = azimuth;
  return computePathGeometry(geodesy, kStart, kEnd, static_cast<std::int16_t>(pointsPerKm),
                             static_cast<std::int16_t>(maxPoints));
}

int errorOf(double distance, int pointsPerKm, int maxPoints) {
  try {
    pathOf(distance, pointsPerKm, maxPoints);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(PathGeometry, APathUnderTwoHundredMetresIsUnderRangeAndNotLaidOut) {
  test::ScriptedGeodesy geodesy;
  geodesy.distance = 0.19;
  const PathGeometry path = computePathGeometry(geodesy, kStart, kEnd, 100, 1000);
  EXPECT_TRUE(path.underRange);
  EXPECT_EQ(path.distance, 0.19);
  EXPECT_EQ(path.intervals, 0);
  EXPECT_EQ(path.samples, 0);
  EXPECT_TRUE(geodesy.requests.empty());
}

TEST(PathGeometry, TwoHundredMetresAreEnough) { EXPECT_FALSE(pathOf(0.2, 100, 1000).underRange); }

TEST(PathGeometry, TenKilometresAtAHundredPointsAreCappedAtAThousandIntervals) {
  const PathGeometry path = pathOf(10, 100, 1000);
  EXPECT_EQ(path.intervals, 1000);  // 1001 before the cap
  EXPECT_EQ(path.extension, 50);
  EXPECT_EQ(path.firstIndex, 50);
  EXPECT_EQ(path.lastIndex, 1050);
  EXPECT_EQ(path.samples, 1100);
  EXPECT_DOUBLE_EQ(path.spacing, 0.01);
  EXPECT_DOUBLE_EQ(path.extendedLength, 11.0);
  EXPECT_EQ(path.pointsPerKm, 100);
  EXPECT_EQ(path.maxPoints, 1000);
}

TEST(PathGeometry, FiveKilometresAtFiftyPointsRoundTheExtensionUp) {
  const PathGeometry path = pathOf(5, 50, 1000);
  EXPECT_EQ(path.intervals, 251);
  EXPECT_EQ(path.extension, 13);  // 12.55
  EXPECT_EQ(path.samples, 277);
  EXPECT_EQ(path.spacing, 5.0 / 251);
}

TEST(PathGeometry, CountsRoundHalfToEven) {
  EXPECT_EQ(pathOf(0.25, 10, 1000).intervals, 4);  // 3.5
  EXPECT_EQ(pathOf(0.35, 10, 1000).intervals, 4);  // 4.5
  EXPECT_EQ(pathOf(4.9, 10, 1000).extension, 2);   // N 50: 2.5
  EXPECT_EQ(pathOf(6.9, 10, 1000).extension, 4);   // N 70: 3.5
}

TEST(PathGeometry, AnExtensionOfNothingBecomesOneSample) {
  const PathGeometry path = pathOf(0.3, 10, 1000);  // N 4: 0.2
  EXPECT_EQ(path.intervals, 4);
  EXPECT_EQ(path.extension, 1);
  EXPECT_EQ(path.firstIndex, 1);
  EXPECT_EQ(path.lastIndex, 5);
  EXPECT_EQ(path.samples, 6);
  EXPECT_EQ(pathOf(0.9, 10, 1000).extension, 1);  // N 10: 0.5, half to even gives 0
}

TEST(PathGeometry, TheExtensionPointsLieOnTheBearingAndOppositeToIt) {
  for (const auto& [azimuth, opposite] :
       {std::pair{90.0, 270.0}, {180.0, 0.0}, {179.5, 359.5}, {300.0, 120.0}}) {
    test::ScriptedGeodesy geodesy;
    geodesy.azimuth = azimuth;
    const PathGeometry path = computePathGeometry(geodesy, kStart, kEnd, 100, 1000);
    ASSERT_EQ(geodesy.requests.size(), 2U);
    EXPECT_EQ(geodesy.requests[0].from, kEnd);
    EXPECT_DOUBLE_EQ(geodesy.requests[0].distance, 0.5);
    EXPECT_EQ(geodesy.requests[0].azimuth, azimuth);
    EXPECT_EQ(geodesy.requests[1].from, kStart);
    EXPECT_DOUBLE_EQ(geodesy.requests[1].distance, 0.5);
    EXPECT_EQ(geodesy.requests[1].azimuth, opposite);
    EXPECT_EQ(path.forward, (GeoPoint{12, 22}));
    EXPECT_EQ(path.back, (GeoPoint{11, 21}));
  }
}

TEST(PathGeometry, OnAPlaneTheExtendedPathIsAStraightLine) {
  const test::PlaneGeodesy geodesy;
  const PathGeometry path = computePathGeometry(geodesy, {40, 8}, {40.3, 8.4}, 20, 1000);  // 50 km
  EXPECT_NEAR(path.distance, 50, 1e-9);
  EXPECT_NEAR(geodesy.DistanceAndBearing(path.back, path.forward).distance, path.extendedLength, 1e-9);
  EXPECT_NEAR(geodesy.DistanceAndBearing(path.back, path.start).distance, path.extension * path.spacing,
              1e-9);
}

TEST(PathGeometry, IndexesBeyondSixteenBitsOverflow) {
  EXPECT_EQ(errorOf(312.06, 100, 32767), 0);  // N 31207, E 1560: 32767
  EXPECT_EQ(errorOf(312.07, 100, 32767), 6);  // one more
  EXPECT_EQ(errorOf(1e9, 32767, 32767), 6) << "the count itself is off 32 bits";
}

TEST(PathGeometry, SettingsThatLeaveNoIntervalFail) {
  EXPECT_EQ(errorOf(10, 100, 0), 11);
  EXPECT_EQ(errorOf(10, 100, -5), 9);
  EXPECT_EQ(errorOf(10, -100, 1000), 9);
  EXPECT_EQ(errorOf(10, 0, 1000), 0) << "one interval remains";
}

TEST(PathGeometry, ADistanceThatIsNoNumberOverflows) { EXPECT_EQ(errorOf(std::nan(""), 100, 1000), 6); }

}  // namespace
}  // namespace zel
