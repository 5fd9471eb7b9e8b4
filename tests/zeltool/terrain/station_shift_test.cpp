#include "zeltool/terrain/station_shift.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/runtime_error.h"
#include "rasters.h"
#include "zeltool/terrain/path_positions.h"

namespace zel {
namespace {

// A shift that bends like a correction grid: some 10 m, changing by decimetres over 25 km, with kinks at its
// nodes.
class GridLikeShift : public DatumShift {
 public:
  GeoPoint toNad83(GeoPoint p) const override {
    ++asked;
    const auto kinked = [](double degrees) {
      const double cell = degrees * 4, node = std::floor(cell);
      const auto value = [](double k) { return 1e-4 + 5e-6 * std::sin(k); };  // degrees
      return value(node) + (cell - node) * (value(node + 1) - value(node));
    };
    return {p.latitude + kinked(p.longitude), p.longitude - kinked(p.latitude)};
  }
  DatumOperation operationAt(GeoPoint) const override { return {"grid", 0.15, true}; }
  mutable int asked = 0;
};

class NoShift : public DatumShift {
 public:
  GeoPoint toNad83(GeoPoint) const override { throw RuntimeError(5, "no operation serves the point."); }
  DatumOperation operationAt(GeoPoint) const override { return {}; }
};

TEST(StationShift, IsWithinACentimetreOfTheShiftOfEachPosition) {
  const GridLikeShift shift;
  for (const GeoPoint to : {GeoPoint{36.2001, -84.3}, GeoPoint{37.1, -85.2}, GeoPoint{45, -95}}) {
    const GeodesicPath path({36.2, -84.3}, to);
    std::vector<GeoPoint> positions(5000);
    path.fill(positions);
    const auto shifted = shiftedPath(shift, positions, path.length());
    for (std::size_t i = 0; i < positions.size(); ++i) {
      const GeoPoint exact = shift.toNad83(positions[i]);
      const double metres = 111320 * std::hypot(shifted[i].latitude - exact.latitude,
                                                (shifted[i].longitude - exact.longitude) * 0.8);
      ASSERT_LT(metres, 0.01) << i;
    }
  }
}

TEST(StationShift, AsksForFewPositionsOfALongRow) {
  const GridLikeShift shift;
  const GeodesicPath path({36.2, -84.3}, {36.9, -85.2});
  std::vector<GeoPoint> positions(5000);
  path.fill(positions);
  shiftedPath(shift, positions, path.length());
  EXPECT_LT(shift.asked, 250);
}

TEST(StationShift, ShiftsTheEndsExactly) {
  const GridLikeShift shift;
  const std::vector<GeoPoint> two{{36.2, -84.3}, {36.3, -84.4}};
  const auto shifted = shiftedPath(shift, two, 15);
  EXPECT_EQ(shifted[0], shift.toNad83(two[0]));
  EXPECT_EQ(shifted[1], shift.toNad83(two[1]));
}

TEST(StationShift, HeightsAreReadAtTheShiftedPositionsAndPositionsStayAsTheyWere) {
  const test::TemporaryFolder folder;
  test::RasterSpec spec;
  spec.corners = {-85, 0.01, 0, 37, 0, -0.01};
  // One metre higher for each cell east: 100 m a degree.
  test::writeRaster(folder / "plane.tif", spec, [](int column, int) { return column; });
  TerrainLibrary library = test::libraryOf({(folder / "plane.tif").string()});
  const SampleRequest request{{36.4, -84.6}, {36.6, -84.4}, 100, 0, 3, true};
  const SampleResult plain = library.sample(request);
  EXPECT_FALSE(plain.report.datumShifted);
  const auto shift = std::make_shared<GridLikeShift>();
  library.setStationShift(shift);
  const SampleResult shifted = library.sample(request);
  ASSERT_EQ(shifted.report.status, 0) << shifted.report.reason;
  EXPECT_TRUE(shifted.report.datumShifted);
  EXPECT_EQ(shifted.report.datumOperation.name, "grid");
  EXPECT_EQ(shifted.report.datumOperation.accuracy, 0.15);
  EXPECT_EQ(shifted.positions, plain.positions);
  for (std::size_t i = 0; i < 100; ++i) {
    const double east = shift->toNad83(plain.positions[i]).longitude - plain.positions[i].longitude;
    EXPECT_NEAR(shifted.heights[i] - plain.heights[i], 100 * east, 2e-4) << i;
  }
  library.setStationShift(nullptr);
  EXPECT_EQ(library.sample(request).heights, plain.heights);
}

TEST(StationShift, APositionThatCannotBeShiftedIsToldInWords) {
  const test::TemporaryFolder folder;
  test::writeRaster(folder / "a.tif", {}, [](int, int) { return 1; });
  TerrainLibrary library = test::libraryOf({(folder / "a.tif").string()});
  library.setStationShift(std::make_shared<NoShift>());
  const SampleResult result = library.sample({{50.4, 10.4}, {50.6, 10.6}, 100, 0, 3, true});
  EXPECT_EQ(result.report.status, kSamplerInvalidData);
  EXPECT_EQ(result.report.reason,
            "The positions from 50.400000 N, 10.400000 E on cannot be moved from NAD-27 to NAD-83: no "
            "operation serves "
            "the point; give positions where NAD-27 is in use, or set the datum to NAD-83");
  EXPECT_FALSE(result.report.datumShifted);
}

}  // namespace
}  // namespace zel
