// Boxes around terrain that is too small on the map to be found.
#include "map/coverage_marks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace zel::host {
namespace {

// The world is 1024 pixels wide: a degree is 2.84 pixels.
MapFrame frameAt(double longitude) {
  MapFrame frame(800, 600);
  frame.setLevel(2);
  frame.setCentre({0, longitude});
  return frame;
}

std::vector<PixelBox> marksOf(const std::vector<TerrainExtent>& extents, double longitude = 0) {
  std::vector<WorldArea> areas;
  for (const TerrainExtent& extent : extents) areas.push_back(worldArea(extent));
  return coverageMarks(frameAt(longitude), areas, 12);
}

TEST(CoverageMarks, ASmallRasterHasABoxAroundItsMiddle) {
  const std::vector<PixelBox> marks = marksOf({{-0.5, 9.5, 0.5, 10.5}});
  ASSERT_EQ(marks.size(), 1U);
  EXPECT_EQ(marks[0].width, 12);
  EXPECT_EQ(marks[0].height, 12);
  EXPECT_NEAR(marks[0].left + 6, 400 + 10 * 1024 / 360.0, 1e-9);
  EXPECT_NEAR(marks[0].top + 6, 300, 1e-9);
}

TEST(CoverageMarks, ARasterThatIsSeenHasNone) {
  EXPECT_TRUE(marksOf({{-1, 10, 1, 14.5}}).empty());  // 12.8 pixels wide, and lower
  EXPECT_EQ(marksOf({{-1, 10, 1, 14}}).size(), 1U);   // 11.4
}

TEST(CoverageMarks, RastersSideBySideAreSeenTogetherAndHaveNone) {
  std::vector<TerrainExtent> tiles;
  for (int row = 0; row < 10; ++row)
    for (int column = 0; column < 10; ++column)
      tiles.push_back({row + 0.0, column + 0.0, row + 1.0, column + 1.0});
  EXPECT_TRUE(marksOf(tiles).empty());
}

TEST(CoverageMarks, AFewNeighboursHaveOneBoxWhereverTheyLie) {
  for (double west = 0; west < 5; west += 0.25) {
    const std::vector<PixelBox> marks = marksOf({{0, west, 1, west + 1}, {0, west + 1, 1, west + 2}});
    ASSERT_EQ(marks.size(), 1U) << west;
    EXPECT_NEAR(marks[0].left + 6, 400 + (west + 1) * 1024 / 360, 1e-9) << west;
  }
}

TEST(CoverageMarks, RastersFarApartHaveABoxEach) {
  EXPECT_EQ(marksOf({{0, -80, 1, -79}, {0, 0, 1, 1}, {50, 100, 51, 101}}).size(), 3U);
}

TEST(CoverageMarks, ARasterAcrossTheDateLineIsMarkedAtTheTurnThatIsSeen) {
  for (const double west : {-180.5, 179.5}) {
    const std::vector<PixelBox> marks = marksOf({{-0.5, west, 0.5, west + 1}}, 175);
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_NEAR(marks[0].left + 6, 400 + 5 * 1024 / 360.0, 1e-9);
  }
}

TEST(CoverageMarks, WhatIsOutsideTheMapHasNone) {
  EXPECT_TRUE(marksOf({{-0.5, 150, 0.5, 151}}).empty());  // 426 pixels to the right
  EXPECT_TRUE(coverageMarks(frameAt(0), {}, 12).empty());
  const std::vector<WorldArea> one{worldArea({0, 0, 1, 1})};
  EXPECT_TRUE(coverageMarks(frameAt(0), one, 0).empty());
  EXPECT_TRUE(coverageMarks(frameAt(0), one, std::numeric_limits<double>::quiet_NaN()).empty());
}

}  // namespace
}  // namespace zel::host
