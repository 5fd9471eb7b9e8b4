#include "zeltool/terrain/grid_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zel {
namespace {

std::optional<GridGeometry> grid(std::array<double, 6> corners, int columns = 100, int rows = 100,
                                 bool points = false, bool degrees = true) {
  std::string problem;
  auto made = GridGeometry::make(corners, columns, rows, points, degrees, problem);
  EXPECT_EQ(made.has_value(), problem.empty());
  return made;
}

TEST(GridGeometry, APostLiesInTheMiddleOfItsCell) {
  const auto g = grid({10, 0.01, 0, 51, 0, -0.01});
  EXPECT_NEAR(g->pointOf({0, 0}).x, 10.005, 1e-12);
  EXPECT_NEAR(g->pointOf({0, 0}).y, 50.995, 1e-12);
  EXPECT_NEAR(g->placeOf({10.5, 50.5}).column, 49.5, 1e-9);
  EXPECT_NEAR(g->placeOf({10.5, 50.5}).row, 49.5, 1e-9);
}

TEST(GridGeometry, AreaCellsCoverTheirOuterHalvesAndPointCellsDoNot) {
  const auto area = grid({10, 0.01, 0, 51, 0, -0.01}, 100, 100, false);
  const auto points = grid({10, 0.01, 0, 51, 0, -0.01}, 100, 100, true);
  EXPECT_TRUE(area->covers({-0.5, 99.5}));
  EXPECT_FALSE(area->covers({-0.51, 50}));
  EXPECT_TRUE(points->covers({0, 99}));
  EXPECT_FALSE(points->covers({-0.4, 50}));
  EXPECT_TRUE(points->covers({-0.4, 50}, 1));
  EXPECT_FALSE(area->covers({-1.51, 50}, 1));
}

TEST(GridGeometry, RowsMayRunNorthAndColumnsWest) {
  const auto g = grid({11, -0.01, 0, 50, 0, 0.01});
  EXPECT_NEAR(g->placeOf({10.995, 50.005}).column, 0, 1e-9);
  EXPECT_NEAR(g->placeOf({10.995, 50.005}).row, 0, 1e-9);
  EXPECT_NEAR(g->extent().west, 10, 1e-12);
  EXPECT_NEAR(g->extent().north, 51, 1e-12);
}

TEST(GridGeometry, ARotatedGridFindsItsPostsAgain) {
  const auto g = grid({10, 0.01, 0.003, 51, -0.002, -0.01});
  EXPECT_FALSE(g->alongMeridians());
  const GridPlace place = g->placeOf(g->pointOf({12.25, 80.75}));
  EXPECT_NEAR(place.column, 12.25, 1e-9);
  EXPECT_NEAR(place.row, 80.75, 1e-9);
}

TEST(GridGeometry, AnyWayToStateALongitudeIsUnderstood) {
  const auto east = grid({190, 0.01, 0, 51, 0, -0.01});
  EXPECT_NEAR(east->placeOf({-169.5, 50.5}).column, 49.5, 1e-9);
  EXPECT_NEAR(east->placeOf({190.5, 50.5}).column, 49.5, 1e-9);
  EXPECT_NEAR(east->extent().west, -170, 1e-12);
  const auto across = grid({179.5, 0.01, 0, 51, 0, -0.01});
  EXPECT_NEAR(across->placeOf({-180, 50.5}).column, 49.5, 1e-9);
  EXPECT_NEAR(across->placeOf({-179.6, 50.5}).column, 89.5, 1e-9);
  EXPECT_NEAR(across->extent().east, 180.5, 1e-12);
}

TEST(GridGeometry, AGridAroundTheEarthHasAPeriod) {
  EXPECT_EQ(grid({-180, 1, 0, 90, 0, -1}, 360, 180)->period(), 360);
  EXPECT_EQ(grid({0, 1, 0, 90, 0, -1}, 360, 180)->period(), 360);
  EXPECT_EQ(grid({-180.5, 1, 0, 90.5, 0, -1}, 361, 181, true)->period(), 360);
  EXPECT_EQ(grid({-180, 1, 0, 90, 0, -1}, 359, 180)->period(), 0);
  EXPECT_TRUE(grid({-180, 1, 0, 90, 0, -1}, 360, 180)->covers({-3, 0}));
}

TEST(GridGeometry, ADegreeTileHasItsOuterPostsOnWholeDegrees) {
  const GridGeometry g = GridGeometry::degreeTile(-29, -72, 1201, 1201);
  EXPECT_EQ(g.pointOf({0, 0}).x, -72);
  EXPECT_EQ(g.pointOf({0, 0}).y, -28);
  EXPECT_NEAR(g.pointOf({1200, 1200}).x, -71, 1e-12);
  EXPECT_NEAR(g.pointOf({1200, 1200}).y, -29, 1e-12);
  EXPECT_TRUE(g.covers(g.placeOf({-71, -28})));
}

TEST(GridGeometry, RefusesWhatPlacesNoGrid) {
  const double nan = std::numeric_limits<double>::quiet_NaN(),
               infinity = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(grid({nan, 0.01, 0, 51, 0, -0.01}));
  EXPECT_FALSE(grid({10, infinity, 0, 51, 0, -0.01}));
  EXPECT_FALSE(grid({10, 0, 0, 51, 0, -0.01}));
  EXPECT_FALSE(grid({10, 1, 1, 51, 1, 1}));
  EXPECT_FALSE(grid({10, 1e-200, 0, 51, 0, -1e-200}));
  EXPECT_FALSE(grid({1e308, 1e308, 0, 51, 0, -1}, 100, 100, false, false));
}

TEST(GridGeometry, RefusesDegreesThatAreNoPartOfTheEarth) {
  EXPECT_FALSE(grid({500000, 30, 0, 4100000, 0, -30}));
  EXPECT_FALSE(grid({0, 0.01, 0, 92, 0, -0.01}));
  EXPECT_FALSE(grid({-180, 4, 0, 51, 0, -0.01}));
  EXPECT_FALSE(grid({10000, 0.01, 0, 51, 0, -0.01}));
}

}  // namespace
}  // namespace zel
