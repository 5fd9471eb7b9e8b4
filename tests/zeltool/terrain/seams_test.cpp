// Two rasters beside each other give what one raster over both would give.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "platform/terrain.h"
#include "rasters.h"

namespace zel {
namespace {

using test::heightAt;
using test::libraryOf;
using test::RasterSpec;
using test::TemporaryFolder;
using test::writeRaster;
using test::writeTile;

constexpr double kCell = 0.01;  // degrees

// Hilly ground on a lattice of posts that goes on over any seam.
double ground(int column, int row) {
  return std::round(500 + 200 * std::sin(column * 0.37) * std::cos(row * 0.23) +
                    30 * std::sin(column * row * 0.011));
}

struct Way {
  std::int32_t method;
  bool points;
};

class Seams : public testing::TestWithParam<Way> {};

void expectSame(const TerrainLibrary& whole, const TerrainLibrary& parts, double south, double west,
                double north, double east, std::int32_t method) {
  const unsigned seed = 4711;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> latitude(south, north), longitude(west, east);
  for (int i = 0; i < 2000; ++i) {
    const GeoPoint position{latitude(random), longitude(random)};
    const auto expected = heightAt(whole, position, method), actual = heightAt(parts, position, method);
    ASSERT_EQ(expected.report.status, 0) << expected.report.reason;
    ASSERT_EQ(actual.report.status, 0) << actual.report.reason;
    ASSERT_NEAR(actual.height, expected.height, 2e-4)
        << "seed " << seed << ": " << position.latitude << ", " << position.longitude;
  }
}

// Four rasters of 50 x 50 cells cut from one of 100 x 100.
TEST_P(Seams, FourAdjoiningRastersGiveWhatTheWholeGives) {
  const auto [method, points] = GetParam();
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.points = points;
  writeRaster(folder / "whole.tif", spec, ground);
  std::filesystem::create_directory(folder / "parts");
  spec.columns = spec.rows = 50;
  for (const int left : {0, 50})
    for (const int top : {0, 50}) {
      spec.corners = {10 + left * kCell, kCell, 0, 51 - top * kCell, 0, -kCell};
      writeRaster(folder / ("parts/" + std::to_string(left) + "_" + std::to_string(top) + ".tif"), spec,
                  [left = left, top = top](int column, int row) { return ground(column + left, row + top); });
    }
  const TerrainLibrary whole = libraryOf({(folder / "whole.tif").string()});
  const TerrainLibrary parts = libraryOf({(folder / "parts").string()});
  expectSame(whole, parts, 50.006, 10.006, 50.994, 10.994, method);
  expectSame(whole, parts, 50.47, 10.47, 50.53, 10.53, method);
}

// Two rasters that share a row of posts.
TEST_P(Seams, RastersThatShareTheirOuterPostsGiveWhatTheWholeGives) {
  const auto [method, points] = GetParam();
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.points = points;
  writeRaster(folder / "whole.tif", spec, ground);
  std::filesystem::create_directory(folder / "parts");
  spec.rows = 51;
  writeRaster(folder / "parts/north.tif", spec, ground);
  spec.rows = 50;
  spec.corners[3] = 51 - 50 * kCell;
  writeRaster(folder / "parts/south.tif", spec, [](int column, int row) { return ground(column, row + 50); });
  const TerrainLibrary whole = libraryOf({(folder / "whole.tif").string()});
  const TerrainLibrary parts = libraryOf({(folder / "parts").string()});
  expectSame(whole, parts, 50.47, 10.006, 50.53, 10.994, method);
}

INSTANTIATE_TEST_SUITE_P(Methods, Seams,
                         testing::Values(Way{0, false}, Way{0, true}, Way{1, false}, Way{1, true}));

// Posts of a tile's edge belong to both tiles: 3 arc-second tiles around 45 N, 7 E.
TEST(Seams, DegreeTilesRunIntoEachOther) {
  const TemporaryFolder folder;
  const auto tile = [&](const char* name, int west, int north) {
    writeTile(folder / name, [=](int column, int row) { return ground(column + west, row + north); });
  };
  tile("N45E006.hgt", 0, 0);
  tile("N45E007.hgt", 1200, 0);
  tile("N44E006.hgt", 0, 1200);
  tile("N44E007.hgt", 1200, 1200);
  RasterSpec spec;
  spec.columns = spec.rows = 201;
  const double cell = 1.0 / 1200;
  spec.corners = {7 - 100.5 * cell, cell, 0, 45 + 100.5 * cell, 0, -cell};
  writeRaster(folder / "whole.tif", spec,
              [](int column, int row) { return ground(column + 1100, row + 1100); });
  std::filesystem::create_directory(folder / "tiles");
  for (const char* name : {"N45E006.hgt", "N45E007.hgt", "N44E006.hgt", "N44E007.hgt"})
    std::filesystem::rename(folder / name, folder / (std::string("tiles/") + name));
  const TerrainLibrary whole = libraryOf({(folder / "whole.tif").string()});
  const TerrainLibrary tiles = libraryOf({(folder / "tiles").string()});
  for (const std::int32_t method : {0, 1}) expectSame(whole, tiles, 44.99, 6.99, 45.01, 7.01, method);
  // The corner post itself, and posts on the seams.
  EXPECT_EQ(heightAt(tiles, {45, 7}).height, static_cast<float>(ground(1200, 1200)));
  EXPECT_EQ(heightAt(tiles, {45, 6.5}).height, static_cast<float>(ground(600, 1200)));
  EXPECT_EQ(heightAt(tiles, {44.5, 7}).height, static_cast<float>(ground(1200, 1800)));
}

TEST(Seams, RastersMeetAtTheAntimeridian) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "tiles");
  writeTile(folder / "tiles/S17E179.hgt", ground);
  writeTile(folder / "tiles/S17W180.hgt", [](int column, int row) { return ground(column + 1200, row); });
  RasterSpec spec;
  spec.columns = 201;
  spec.rows = 1201;
  const double cell = 1.0 / 1200;
  spec.corners = {180 - 100.5 * cell, cell, 0, -16 + 0.5 * cell, 0, -cell};
  writeRaster(folder / "whole.tif", spec, [](int column, int row) { return ground(column + 1100, row); });
  const TerrainLibrary whole = libraryOf({(folder / "whole.tif").string()});
  const TerrainLibrary tiles = libraryOf({(folder / "tiles").string()});
  for (const std::int32_t method : {0, 1}) expectSame(whole, tiles, -16.9, 179.93, -16.1, 180.07, method);
  for (const double longitude : {180.0, -180.0, 540.0})
    EXPECT_EQ(heightAt(tiles, {-16.5, longitude}).height, static_cast<float>(ground(1200, 600)));
  // A path across it.
  const SampleRequest request{{-16.5, 179.95}, {-16.5, -179.95}, 500, 0, 3, true};
  const SampleResult a = whole.sample(request), b = tiles.sample(request);
  ASSERT_EQ(a.report.status, 0) << a.report.reason;
  ASSERT_EQ(b.report.status, 0) << b.report.reason;
  for (std::size_t i = 0; i < 500; ++i) ASSERT_NEAR(a.heights[i], b.heights[i], 2e-4) << i;
}

TEST(Seams, AreaRastersMeetAtTheAntimeridian) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "parts");
  RasterSpec spec;
  spec.columns = 50;
  spec.corners = {179.5, kCell, 0, 51, 0, -kCell};
  writeRaster(folder / "parts/east.tif", spec, ground);
  spec.corners[0] = -180;
  writeRaster(folder / "parts/west.tif", spec, [](int column, int row) { return ground(column + 50, row); });
  spec.columns = 100;
  spec.corners[0] = 179.5;
  writeRaster(folder / "whole.tif", spec, ground);
  const TerrainLibrary whole = libraryOf({(folder / "whole.tif").string()});
  const TerrainLibrary parts = libraryOf({(folder / "parts").string()});
  for (const std::int32_t method : {0, 1}) expectSame(whole, parts, 50.006, 179.51, 50.994, 180.49, method);
}

// A raster around the whole earth has neighbours across its own edge, whichever meridian that is.
TEST(Seams, ARasterAroundTheEarthRunsIntoItself) {
  for (const double west : {-180.0, 0.0}) {
    const TemporaryFolder folder;
    RasterSpec spec;
    spec.columns = 360;
    spec.rows = 180;
    spec.corners = {west, 1, 0, 90, 0, -1};
    writeRaster(folder / "earth.tif", spec, [](int column, int) { return column % 2 == 0 ? 100 : 200; });
    const TerrainLibrary library = libraryOf({(folder / "earth.tif").string()});
    // Half way between posts of 100 and 200, everywhere.
    for (const double longitude : {-180, -150, -60, -30, 0, 30, 120, 150, 180, 210, 330, 360})
      EXPECT_FLOAT_EQ(heightAt(library, {10.5, longitude}).height, 150) << west << ", " << longitude;
    EXPECT_FLOAT_EQ(heightAt(library, {10.5, west + 0.25}).height, 125);
    EXPECT_FLOAT_EQ(heightAt(library, {10.5, west - 0.25}).height, 175);
    // By the weights at 3/4 over 100, 200, 100, 200: -3/128, 29/128, 111/128, -9/128.
    EXPECT_FLOAT_EQ(heightAt(library, {10.5, west + 0.25}, 1).height, 115.625F);
  }
}

// The last column of posts repeats the first one.
TEST(Seams, ARasterOfPostsAroundTheEarthRunsIntoItself) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.columns = 361;
  spec.rows = 181;
  spec.points = true;
  spec.corners = {-180.5, 1, 0, 90.5, 0, -1};
  writeRaster(folder / "earth.tif", spec, [](int column, int) { return std::abs(column - 180); });
  const TerrainLibrary library = libraryOf({(folder / "earth.tif").string()});
  EXPECT_FLOAT_EQ(heightAt(library, {10.5, 180}).height, 180);
  EXPECT_FLOAT_EQ(heightAt(library, {10.5, -179.75}).height, 179.75);
  EXPECT_FLOAT_EQ(heightAt(library, {10.5, 179.75}).height, 179.75);
  // By the weights half way over 179, 180, 179, 178.
  EXPECT_FLOAT_EQ(heightAt(library, {10.5, -179.5}, 1).height, 179.625F);
}

// Between the outermost rows and a pole the posts on its other side serve.
TEST(Seams, ARasterAroundTheEarthRunsOverThePoles) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.columns = 360;
  spec.rows = 180;
  spec.corners = {-180, 1, 0, 90, 0, -1};
  writeRaster(folder / "earth.tif", spec,
              [](int column, int row) { return row == 0 || row == 179 ? (column < 180 ? 100 : 200) : 0; });
  const TerrainLibrary library = libraryOf({(folder / "earth.tif").string()});
  for (const double pole : {90.0, -90.0}) {
    EXPECT_FLOAT_EQ(heightAt(library, {pole, 45.5}).height, 150) << pole;
    EXPECT_FLOAT_EQ(heightAt(library, {pole * 89.75 / 90, 45.5}).height, 175) << pole;
    EXPECT_FLOAT_EQ(heightAt(library, {pole * 89.75 / 90, -45.5}).height, 125) << pole;
  }
  const SampleResult path = library.sample({{88, 10.5}, {88, -169.5}, 101, 0, 3, true});
  ASSERT_EQ(path.report.status, 0) << path.report.reason;
  EXPECT_NEAR(path.heights[50], 150, 0.5);
}

TEST(Seams, ATileNearThePoleIsReadLikeAnyOther) {
  const TemporaryFolder folder;
  writeTile(folder / "N89E010.hgt", ground);
  writeTile(folder / "S90W010.hgt", ground);
  const TerrainLibrary library = libraryOf({folder.path().string()});
  EXPECT_EQ(heightAt(library, {90, 10.5}).height, static_cast<float>(ground(600, 0)));
  EXPECT_EQ(heightAt(library, {89.5, 10.5}).height, static_cast<float>(ground(600, 600)));
  EXPECT_EQ(heightAt(library, {-90, -9.5}).height, static_cast<float>(ground(600, 1200)));
}

// A coarse raster beside a fine one: heights on the plane that both hold stay on it across the seam.
TEST(Seams, NeighboursOfAnotherCellSizeAreInterpolated) {
  const TemporaryFolder folder;
  const auto plane = [](double longitude, double latitude) {
    return 1000 * (longitude - 10) + 500 * (latitude - 50);
  };
  RasterSpec spec;
  spec.columns = 50;
  spec.corners = {10, 0.01, 0, 51, 0, -0.01};
  writeRaster(folder / "fine.tif", spec,
              [&](int column, int row) { return plane(10.005 + column * 0.01, 50.995 - row * 0.01); });
  spec.columns = 30;
  spec.rows = 60;
  spec.corners = {10.45, 0.03, 0, 51.4, 0, -0.03};
  writeRaster(folder / "coarse.tif", spec,
              [&](int column, int row) { return plane(10.465 + column * 0.03, 51.385 - row * 0.03); });
  const TerrainLibrary library =
      libraryOf({(folder / "fine.tif").string(), (folder / "coarse.tif").string()});
  for (int i = 0; i < 243; ++i)
    for (const std::int32_t method : {0, 1}) {
      const double longitude = 10.4 + 0.0037 * i;
      ASSERT_NEAR(heightAt(library, {50.503, longitude}, method).height, plane(longitude, 50.503), 1e-3)
          << longitude;
    }
}

TEST(Seams, TheFirstNamedRasterIsPreferredAndTheNextFillsItsVoids) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.noData = -1;
  writeRaster(folder / "a.tif", spec, [](int column, int row) {
    return column >= 40 && column < 60 && row >= 40 && row < 60 ? -1 : 100;
  });
  writeRaster(folder / "b.tif", spec, [](int, int) { return 200; });
  const std::string a = (folder / "a.tif").string(), b = (folder / "b.tif").string();
  const TerrainLibrary first = libraryOf({a, b}), second = libraryOf({b, a}),
                       folderOrder = libraryOf({folder.path().string()});
  EXPECT_EQ(heightAt(first, {50.2, 10.2}).height, 100);
  EXPECT_EQ(heightAt(first, {50.5, 10.5}).height, 200);
  EXPECT_EQ(heightAt(second, {50.2, 10.2}).height, 200);
  EXPECT_EQ(heightAt(folderOrder, {50.2, 10.2}).height, 100);
  const auto both = first.sample({{50.2, 10.2}, {50.5, 10.5}, 50, 0, 3, true}).report;
  EXPECT_EQ(both.files, (std::vector<std::string>{a, b}));
}

}  // namespace
}  // namespace zel
