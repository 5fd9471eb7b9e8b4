#include "zeltool/terrain/path_positions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace zel {
namespace {

// Metres between two near positions, on the WGS 84 ellipsoid.
double apart(GeoPoint a, GeoPoint b) {
  geod_geodesic figure;
  geod_init(&figure, 6378137, 1 / 298.257223563);
  double metres = 0;
  geod_inverse(&figure, a.latitude, a.longitude, b.latitude, b.longitude, &metres, nullptr, nullptr);
  return metres;
}

struct PathCase {
  const char* description;
  GeoPoint from, to;
};

class PathPositions : public testing::TestWithParam<PathCase> {};

// The exact point of each sample by the library's direct solution; the promise is 1 mm.
TEST_P(PathPositions, AreWithinAMillimetreOfExact) {
  const auto [description, from, to] = GetParam();
  const GeodesicPath path(from, to);
  for (const std::size_t count : {2U, 3U, 33U, 34U, 35U, 100U, 1000U, 5500U, 32767U}) {
    std::vector<GeoPoint> positions(count);
    path.fill(positions);
    EXPECT_EQ(positions.front(), from);
    EXPECT_EQ(positions.back(), to);
    double worst = 0;
    for (std::size_t i = 1; i + 1 < count; ++i) {
      const GeoPoint exact = path.at(static_cast<double>(i) / static_cast<double>(count - 1));
      worst = std::max(worst, apart(positions[i], exact));
      EXPECT_GE(positions[i].longitude, -180);
      EXPECT_LT(positions[i].longitude, 180);
      EXPECT_LE(std::abs(positions[i].latitude), 90);
    }
    EXPECT_LT(worst, 0.001) << description << ", " << count << " samples";
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, PathPositions,
                         testing::Values(PathCase{"a metre", {36.3, -84.2}, {36.300009, -84.2}},
                                         PathCase{"a hundred kilometres", {36.3, -84.2}, {37, -85}},
                                         PathCase{"two thousand kilometres east", {45, 0}, {46, 25.5}},
                                         PathCase{"two thousand kilometres north", {40, 10}, {58, 10.1}},
                                         PathCase{"along the equator", {0, -5}, {0, 12}},
                                         PathCase{"along a meridian", {-10, 20}, {7, 20}},
                                         PathCase{
                                             "across the antimeridian eastward", {-17, 175}, {-15, -176}},
                                         PathCase{"across the antimeridian westward", {52, -175}, {51, 178}},
                                         PathCase{"from the antimeridian", {10, 180}, {12, 178}},
                                         PathCase{"to the antimeridian", {10, 177}, {12, -180}},
                                         PathCase{"over the north pole", {85, 0}, {86, 180}},
                                         PathCase{"close by the north pole", {85, 0}, {86, 179.9}},
                                         PathCase{"past the south pole", {-88, 10}, {-87, 100}},
                                         PathCase{"from the pole", {90, 0}, {85, 33}},
                                         PathCase{"to the south pole", {-85, 33}, {-90, 0}}));

TEST(GeodesicPath, RandomPathsAreWithinAMillimetreOfExact) {
  const unsigned seed = 20240817;
  RecordProperty("seed", std::to_string(seed));
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> sine(-1, 1), turn(-180, 180), step(-8, 8);
  for (int i = 0; i < 300; ++i) {
    const GeoPoint from{std::asin(sine(random)) * 180 / std::numbers::pi, turn(random)};
    const GeoPoint to{std::clamp(from.latitude + step(random), -90.0, 90.0), from.longitude + step(random)};
    const GeodesicPath path(from, to);
    std::vector<GeoPoint> positions(777);
    path.fill(positions);
    for (std::size_t k = 1; k + 1 < positions.size(); ++k)
      ASSERT_LT(apart(positions[k], path.at(static_cast<double>(k) / 776)), 0.001)
          << "seed " << seed << ", path " << i << ", sample " << k;
  }
}

// A quarter of a WGS 84 meridian is 10,001.965729 km; on the equator a degree is 2 pi a / 360 = 111.319491
// km.
TEST(GeodesicPath, LengthIsTheGeodesicsOwn) {
  EXPECT_NEAR(GeodesicPath({0, 20}, {90, 20}).length(), 10001.965729, 1e-6);
  EXPECT_NEAR(GeodesicPath({0, 20}, {0, 21}).length(), 111.319491, 1e-6);
  EXPECT_EQ(GeodesicPath({40, 10}, {40, 10}).length(), 0);
}

TEST(GeodesicPath, SpacingIsEven) {
  const GeodesicPath path({36.2, -84.3}, {36.4, -84.1});
  std::vector<GeoPoint> positions(1000);
  path.fill(positions);
  const double spacing = path.length() * 1000 / 999;  // metres
  for (std::size_t i = 1; i < positions.size(); ++i)
    ASSERT_NEAR(apart(positions[i - 1], positions[i]), spacing, 0.001) << i;
}

}  // namespace
}  // namespace zel
