// The fast ways against slow and plain ones.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "rasters.h"
#include "zeltool/terrain/height_reader.h"
#include "zeltool/terrain/interpolation.h"

namespace zel {
namespace {

using test::RasterSpec;
using test::TemporaryFolder;
using test::writeRaster;

double ground(int column, int row) {
  return 800 + 300 * std::sin(column * 0.05) + 150 * std::cos(row * 0.07 + column * 0.01);
}

std::vector<GeoPoint> randomPositions(unsigned seed, std::size_t count, GeoExtent area) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> latitude(area.south, area.north), longitude(area.west, area.east);
  std::vector<GeoPoint> positions(count);
  for (GeoPoint& p : positions) p = {latitude(random), longitude(random)};
  return positions;
}

// The bundled terrain, each height computed from two rows of two cells that the raster library reads for it
// alone.
TEST(Agreement, HeightsAreThoseOfTheFourCellsReadOneByOne) {
  const std::string path = std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif";
  const unsigned seed = 99;
  RecordProperty("seed", std::to_string(seed));
  const auto positions = randomPositions(seed, 5000, {36.161, -84.412, 36.445, -84.080});
  std::vector<float> heights(positions.size());
  const TerrainLibrary library = test::libraryOf({path});
  const SamplingReport report = library.heightsAt(positions, 0, 3, heights);
  ASSERT_EQ(report.status, 0) << report.reason;
  EXPECT_EQ(report.voids, 0);

  const GdalSession session;
  GDALDataset* file = GDALDataset::Open(path.c_str(), GDAL_OF_RASTER);
  ASSERT_NE(file, nullptr);
  std::array<double, 6> t{};
  file->GetGeoTransform(t.data());
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const double column = (positions[i].longitude - t[0]) / t[1] - 0.5,
                 row = (positions[i].latitude - t[3]) / t[5] - 0.5;
    std::array<double, 4> z{};
    ASSERT_EQ(file->GetRasterBand(1)->RasterIO(GF_Read, static_cast<int>(column), static_cast<int>(row), 2, 2,
                                               z.data(), 2, 2, GDT_Float64, 0, 0, nullptr),
              CE_None);
    const double x = column - std::floor(column), y = row - std::floor(row);
    const double plain = (1 - y) * ((1 - x) * z[0] + x * z[1]) + y * ((1 - x) * z[2] + x * z[3]);
    ASSERT_NEAR(heights[i], plain, 1e-3)
        << "seed " << seed << ", " << i;  // metres; 32-bit heights near 1000 m
  }
  GDALClose(file);
}

struct Arrangement {
  const char* description;
  std::vector<RasterSpec> rasters;
  GeoExtent area;
};

RasterSpec spec(std::array<double, 6> corners, int columns, int rows, bool points = false) {
  RasterSpec s;
  s.corners = corners;
  s.columns = columns;
  s.rows = rows;
  s.points = points;
  s.noData = -1;
  return s;
}

TEST(Agreement, TheShortWayWithinABlockGivesWhatTheLongWayGives) {
  const std::vector<Arrangement> arrangements = {
      {"one raster of many blocks",
       {spec({10, 0.001, 0, 52, 0, -0.001}, 2000, 2000)},
       {49.99, 9.99, 52.01, 12.01}},
      {"rows from south to north", {spec({10, 0.001, 0, 50, 0, 0.001}, 1500, 1500)}, {50, 10, 51.5, 11.5}},
      {"columns from east to west",
       {spec({11.5, -0.001, 0, 51.5, 0, -0.001}, 1500, 1500)},
       {50, 10, 51.5, 11.5}},
      {"overlapping rasters of different cells",
       {spec({10.3, 0.002, 0, 50.7, 0, -0.002}, 200, 200), spec({10, 0.001, 0, 51, 0, -0.001}, 600, 1000),
        spec({10.4, 0.0007, 0, 51, 0, -0.0007}, 1000, 1000, true)},
       {50, 10, 51, 11}},
      {"over the antimeridian",
       {spec({179.2, 0.001, 0, 1, 0, -0.001}, 1600, 2000)},
       {-0.99, 179.21, 0.99, 180.79}},
      {"longitudes from 0 to 360", {spec({0, 0.5, 0, 90, 0, -0.5}, 720, 360)}, {-90, -180, 90, 180}},
      {"rotated", {spec({10, 0.001, 0.0002, 51, -0.0003, -0.001}, 900, 900)}, {50, 10, 51, 11}},
  };
  for (const Arrangement& arrangement : arrangements) {
    const TemporaryFolder folder;
    for (std::size_t i = 0; i < arrangement.rasters.size(); ++i)
      writeRaster(folder / (std::to_string(i) + ".tif"), arrangement.rasters[i], [&](int column, int row) {
        return (column * 7 + row * 13) % 501 == 0 ? -1 : ground(column, row) + 10 * static_cast<double>(i);
      });
    const SourceIndex index({3, "", {folder.path().string()}, false}, std::make_shared<OpenFiles>(8));
    ASSERT_TRUE(index.problems().empty()) << index.problems().front();
    BlockCache cache(std::size_t{64} << 20);
    for (const unsigned seed : {1U, 2U, 3U})
      for (const bool cubic : {false, true}) {
        auto positions = randomPositions(seed, 3000, arrangement.area);
        // Neighbouring positions as on a path, too.
        std::sort(positions.begin(), positions.begin() + 1500,
                  [](GeoPoint a, GeoPoint b) { return a.longitude < b.longitude; });
        std::vector<float> fast(positions.size()), slow(positions.size());
        HeightReader quick(index, cache, cubic), plain(index, cache, cubic, false);
        quick.read(positions, fast);
        plain.read(positions, slow);
        EXPECT_EQ(quick.voids(), plain.voids());
        EXPECT_EQ(quick.firstOutside(), plain.firstOutside());
        for (std::size_t i = 0; i < positions.size(); ++i)
          ASSERT_NEAR(fast[i], slow[i], 5e-4) << arrangement.description << ", seed " << seed << ", "
                                              << positions[i].latitude << ", " << positions[i].longitude;
      }
  }
}

TEST(Agreement, TheCubicMethodIsTheKernelOverSixteenCells) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, ground);
  const TerrainLibrary library = test::libraryOf({(folder / "a.tif").string()});
  for (const GeoPoint p : randomPositions(5, 500, {50.02, 10.02, 50.98, 10.98})) {
    const double column = (p.longitude - 10) * 100 - 0.5, row = (51 - p.latitude) * 100 - 0.5;
    const int c = static_cast<int>(column), r = static_cast<int>(row);
    std::array<double, 16> z{};
    for (int k = 0; k < 16; ++k)
      z[static_cast<std::size_t>(k)] =
          static_cast<double>(static_cast<float>(ground(c - 1 + k % 4, r - 1 + k / 4)));
    ASSERT_NEAR(test::heightAt(library, p, 1).height, bicubicLimited(z, column - c, row - r), 2e-4);
  }
}

TEST(Agreement, ASamplesHeightIsTheHeightAtItsPosition) {
  const TerrainLibrary library =
      test::libraryOf({std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif"});
  for (const std::int32_t method : {0, 1}) {
    const SampleResult result = library.sample({{36.17, -84.40}, {36.44, -84.09}, 1000, method, 3, true});
    ASSERT_EQ(result.report.status, 0) << result.report.reason;
    std::vector<float> heights(1000);
    library.heightsAt(result.positions, method, 3, heights);
    EXPECT_EQ(heights, result.heights);
  }
}

TEST(Agreement, ThereAndBackGiveTheSameHeights) {
  const TerrainLibrary library =
      test::libraryOf({std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif"});
  const SampleResult there = library.sample({{36.17, -84.40}, {36.44, -84.09}, 801, 0, 3, false});
  SampleResult back = library.sample({{36.44, -84.09}, {36.17, -84.40}, 801, 0, 3, false});
  std::reverse(back.heights.begin(), back.heights.end());
  for (std::size_t i = 0; i < 801; ++i) ASSERT_NEAR(there.heights[i], back.heights[i], 1e-3) << i;
}

}  // namespace
}  // namespace zel
