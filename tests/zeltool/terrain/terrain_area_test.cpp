#include "zeltool/terrain/terrain_area.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <thread>

#include "platform/terrain.h"
#include "rasters.h"
#include "support/environment_variable.h"

namespace zel {
namespace {

using test::EnvironmentVariable;
using test::libraryOf;
using test::RasterSpec;
using test::TemporaryFolder;
using test::writeRaster;
using test::writeTile;

// `count` values from `first` on, evenly.
std::vector<double> values(double first, double step, int count) {
  std::vector<double> all;
  for (int i = 0; i < count; ++i) all.push_back(first + step * i);
  return all;
}

// The overviews of each test are in a folder of its own.
class Area : public testing::Test {
 protected:
  std::shared_ptr<const TerrainArea> open(const std::vector<std::string>& paths) {
    library_ = std::make_unique<TerrainLibrary>(libraryOf(paths));
    return library_->area(3);
  }
  std::string file(const std::string& name) const { return (folder_ / name).string(); }

  TemporaryFolder folder_, cache_;
  EnvironmentVariable home_{"XDG_CACHE_HOME", cache_.path().string()};
  std::unique_ptr<TerrainLibrary> library_;
};

std::vector<float> gridOf(const TerrainArea& area, const std::vector<double>& latitudes,
                          const std::vector<double>& longitudes) {
  return area.grid(latitudes, longitudes, nullptr);
}

// The heights of a plane that rises to the east and falls to the south, metres at a position.
struct Plane {
  double east = 100, south = -40, base = 700;  // metres a degree, at 0, 0
  double at(double latitude, double longitude) const { return base + east * longitude - south * latitude; }
};

void expectPlane(const Plane& plane, const std::vector<float>& grid, const std::vector<double>& latitudes,
                 const std::vector<double>& longitudes, double tolerance) {
  ASSERT_EQ(grid.size(), latitudes.size() * longitudes.size());
  for (std::size_t j = 0; j < latitudes.size(); ++j)
    for (std::size_t i = 0; i < longitudes.size(); ++i)
      ASSERT_NEAR(static_cast<double>(grid[j * longitudes.size() + i]), plane.at(latitudes[j], longitudes[i]),
                  tolerance)
          << "row " << j << ", column " << i;
}

// 32-bit heights of some thousands of metres are rounded to 0.0005 m; sums of a few of them to a little more.
constexpr double kRounding = 0.004;

RasterSpec degreeRaster(double west, double north, double cell, int columns, int rows) {
  RasterSpec spec;
  spec.columns = columns;
  spec.rows = rows;
  spec.corners = {west, cell, 0, north, 0, -cell};
  return spec;
}

void writePlane(const std::string& path, const RasterSpec& spec, const Plane& plane) {
  writeRaster(path, spec, [&](int column, int row) {
    const double x = spec.corners[0] + spec.corners[1] * (column + 0.5),
                 y = spec.corners[3] + spec.corners[5] * (row + 0.5);
    return plane.at(y, x);
  });
}

TEST_F(Area, GivesAPlaneBackExactlyAtEveryResolution) {
  const Plane plane;
  // 777 x 913 posts: no size that halves evenly.
  writePlane(file("plane.tif"), degreeRaster(10, 51, 0.001, 777, 913), plane);
  const auto area = open({file("plane.tif")});
  // Grid cells from a third of a post to 60 posts, none on a post.
  for (const double cells : {0.3, 1.0, 1.4, 2.0, 2.7, 4.0, 7.9, 16.0, 33.0, 60.0}) {
    SCOPED_TRACE(cells);
    const double step = cells * 0.001;
    const int count = std::min(40, static_cast<int>(0.75 / step));
    const auto latitudes = values(50.9953, -step, count), longitudes = values(10.0013, step, count);
    expectPlane(plane, gridOf(*area, latitudes, longitudes), latitudes, longitudes, kRounding);
  }
}

TEST_F(Area, GivesAPlaneBackOnRowsOfAMercatorMap) {
  const Plane plane;
  writePlane(file("plane.tif"), degreeRaster(10, 71, 0.001, 900, 900), plane);
  const auto area = open({file("plane.tif")});
  const auto longitudes = values(10.05, 0.01, 80);
  std::vector<double> latitudes;
  for (int i = 0; i < 200; ++i) {
    const double y = std::asinh(std::tan(70.95 * M_PI / 180)) - i * 0.01 * M_PI / 180;
    if (const double latitude = std::atan(std::sinh(y)) * 180 / M_PI; latitude > 70.11)
      latitudes.push_back(latitude);
  }
  ASSERT_GT(latitudes.size(), 100U);
  expectPlane(plane, gridOf(*area, latitudes, longitudes), latitudes, longitudes, kRounding);
}

TEST_F(Area, ReadsPointCellsAtTheirPlace) {
  const Plane plane{1200, -1200, -72700};
  RasterSpec spec = degreeRaster(10 - 0.0005, 51 + 0.0005, 0.001, 801, 801);
  spec.points = true;
  writePlane(file("points.tif"), spec, plane);
  const auto area = open({file("points.tif")});
  for (const double cells : {0.5, 3.0, 20.0}) {
    const auto latitudes = values(51, -cells * 0.001, 38), longitudes = values(10, cells * 0.001, 38);
    expectPlane(plane, gridOf(*area, latitudes, longitudes), latitudes, longitudes, 0.02);
  }
}

TEST_F(Area, KeepsAPlaneWholeOverTheSeamsOfAFolderOfTiles) {
  // Whole metres at each post, so that the tiles' 16 bits hold the plane.
  const Plane plane{1200, -1200, -13200};
  std::filesystem::create_directory(folder_ / "tiles");
  for (int south = 0; south < 2; ++south)
    for (int west = 10; west < 12; ++west) {
      char name[32];
      std::snprintf(name, sizeof name, "tiles/N%02dE%03d.hgt", south, west);
      writeTile(folder_ / name, [&](int column, int row) {
        return plane.at(south + 1 - row / 1200.0, west + column / 1200.0);
      });
    }
  const auto area = open({file("tiles")});
  for (const double cells : {0.5, 1.5, 4.0, 11.0, 32.0, 70.0}) {
    SCOPED_TRACE(cells);
    const double step = cells / 1200;
    const int count = std::min(60, static_cast<int>(1.9 / step));
    const auto latitudes = values(1 + step * (count / 2) + 0.3 * step, -step, count),
               longitudes = values(11 - step * (count / 2) + 0.2 * step, step, count);
    expectPlane(plane, gridOf(*area, latitudes, longitudes), latitudes, longitudes, 0.02);
  }
}

TEST_F(Area, ShowsNoSeamBetweenRoughTilesThatMeet) {
  // The same ground in one raster and in two that share a row of posts.
  const auto ground = [](double latitude, double longitude) {
    return 800 + 300 * std::sin(latitude * 41) * std::cos(longitude * 37) + 60 * std::sin(latitude * 397);
  };
  RasterSpec whole = degreeRaster(10 - 0.0005, 52 + 0.0005, 0.001, 1001, 2001);
  whole.points = true;
  RasterSpec north = whole, south = whole;
  north.rows = south.rows = 1001;
  south.corners[3] = 51 + 0.0005;
  for (const auto& [name, spec] :
       {std::pair{"whole", whole}, std::pair{"two/north", north}, std::pair{"two/south", south}}) {
    std::filesystem::create_directories((folder_ / name).parent_path());
    writeRaster(folder_ / (std::string(name) + ".tif"), spec,
                [&, top = spec.corners[3] - 0.0005](int column, int row) {
                  return ground(top - row * 0.001, 10 + column * 0.001);
                });
  }
  const auto one = open({file("whole.tif")});
  const auto kept = std::move(library_);
  const auto two = open({file("two")});
  for (const double cells : {0.5, 3.0, 8.0}) {
    const auto latitudes = values(51 + cells * 0.02, -cells * 0.001, 40),
               longitudes = values(10.2, cells * 0.001, 40);
    const auto a = gridOf(*one, latitudes, longitudes), b = gridOf(*two, latitudes, longitudes);
    double worst = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
      worst = std::max(worst, std::abs(static_cast<double>(a[i]) - static_cast<double>(b[i])));
    // Cells at the seam are made of other posts: a part of what the ground changes from one cell to the next.
    EXPECT_LT(worst, cells < 1 ? 0.001 : 9.0) << cells;
  }
}

// 64 x 64 posts around 51 N, 10 E, one of them void.
TEST_F(Area, TakesMeansOfEveryPostInAnEvenCoarseGrid) {
  RasterSpec spec = degreeRaster(10, 51, 1.0 / 64, 64, 64);
  spec.noData = -1;
  const auto post = [](int column, int row) {
    return column == 9 && row == 3 ? -1.0 : (column * 37 + row * 91) % 500;
  };
  writeRaster(folder_ / "r.tif", spec, post);
  const auto area = open({file("r.tif")});
  // Each grid cell is a cell of the third overview: 8 x 8 posts.
  const auto latitudes = values(51 - 0.5 / 8, -1.0 / 8, 8), longitudes = values(10 + 0.5 / 8, 1.0 / 8, 8);
  const auto grid = gridOf(*area, latitudes, longitudes);
  for (int j = 0; j < 8; ++j)
    for (int i = 0; i < 8; ++i) {
      double sum = 0;
      int count = 0;
      for (int row = 8 * j; row < 8 * j + 8; ++row)
        for (int column = 8 * i; column < 8 * i + 8; ++column)
          if (post(column, row) >= 0) {
            sum += post(column, row);
            ++count;
          }
      EXPECT_NEAR(static_cast<double>(grid[static_cast<std::size_t>(8 * j + i)]), sum / count, 1e-3)
          << i << ", " << j;
    }
}

TEST_F(Area, AFineGridOnPostsHasTheirHeights) {
  RasterSpec spec = degreeRaster(10, 51, 0.01, 100, 100);
  writeRaster(folder_ / "r.tif", spec, [](int column, int row) { return (column * 37 + row * 91) % 500; });
  const auto area = open({file("r.tif")});
  const auto latitudes = values(50.995, -0.01, 100), longitudes = values(10.005, 0.01, 100);
  const auto grid = gridOf(*area, latitudes, longitudes);
  for (int row = 0; row < 100; ++row)
    for (int column = 0; column < 100; ++column)
      ASSERT_NEAR(grid[static_cast<std::size_t>(row * 100 + column)],
                  static_cast<float>((column * 37 + row * 91) % 500), 1e-3F);
}

TEST_F(Area, AFineGridIsWhatASamplingReads) {
  RasterSpec spec = degreeRaster(10, 51, 0.01, 100, 100);
  writeRaster(folder_ / "r.tif", spec, [](int column, int row) { return (column * 37 + row * 91) % 500; });
  const auto area = open({file("r.tif")});
  // To the outer edges, where the outer posts are repeated.
  const auto latitudes = values(50.9999, -0.0033, 303), longitudes = values(10.0001, 0.0033, 303);
  const auto grid = gridOf(*area, latitudes, longitudes);
  std::vector<GeoPoint> positions;
  for (const double latitude : latitudes)
    for (const double longitude : longitudes) positions.push_back({latitude, longitude});
  const auto sampled = area->heightsAt(positions, 0);
  for (std::size_t i = 0; i < grid.size(); ++i) ASSERT_NEAR(grid[i], sampled[i], 1e-3F) << i;
}

TEST_F(Area, TellsVoidFromOutside) {
  RasterSpec spec = degreeRaster(10, 51, 0.01, 100, 100);
  spec.noData = -1;
  writeRaster(folder_ / "r.tif", spec, [](int column, int row) {
    return column >= 20 && column < 60 && row >= 20 && row < 60 ? -1 : 300;
  });
  const auto area = open({file("r.tif")});
  for (const double step : {0.004, 0.01, 0.05}) {
    const auto at = [&](double latitude, double longitude) {
      return gridOf(*area, values(latitude, -step, 3), values(longitude, step, 3))[0];
    };
    EXPECT_EQ(at(50.6, 10.4), kVoidHeight) << step;
    EXPECT_EQ(at(50.9, 10.9), 300) << step;
    EXPECT_EQ(at(49.5, 10.4), kOutsideHeight) << step;
    EXPECT_EQ(at(50.5, 9.2), kOutsideHeight) << step;
  }
}

TEST_F(Area, APlaceNearestToAVoidIsVoidAndNoOther) {
  RasterSpec spec = degreeRaster(10, 51, 0.1, 10, 10);
  spec.noData = -1;
  writeRaster(folder_ / "r.tif", spec,
              [](int column, int row) { return column == 5 && row == 5 ? -1 : 300; });
  const auto area = open({file("r.tif")});
  // The void's cell is 10.5 to 10.6 E, 50.4 to 50.5 N.
  const auto latitudes = values(50.62, -0.013, 26), longitudes = values(10.41, 0.013, 26);
  const auto grid = gridOf(*area, latitudes, longitudes);
  for (std::size_t j = 0; j < latitudes.size(); ++j)
    for (std::size_t i = 0; i < longitudes.size(); ++i) {
      const bool inside =
          latitudes[j] > 50.4 && latitudes[j] < 50.5 && longitudes[i] > 10.5 && longitudes[i] < 10.6;
      EXPECT_EQ(grid[j * longitudes.size() + i], inside ? kVoidHeight : 300)
          << latitudes[j] << ", " << longitudes[i];
    }
}

TEST_F(Area, VoidsOfOneRasterAreFilledFromTheNextOne) {
  RasterSpec fine = degreeRaster(10.2, 50.8, 0.001, 400, 400), coarse = degreeRaster(10, 51, 0.01, 100, 100);
  fine.noData = -1;
  writeRaster(folder_ / "fine.tif", fine,
              [](int column, int row) { return column < 200 && row < 200 ? -1 : 900; });
  writeRaster(folder_ / "coarse.tif", coarse, [](int, int) { return 100; });
  const auto area = open({file("fine.tif"), file("coarse.tif")});
  for (const double step : {0.0004, 0.02}) {
    const auto at = [&](double latitude, double longitude) {
      return gridOf(*area, values(latitude, -step, 2), values(longitude, step, 2))[0];
    };
    EXPECT_EQ(at(50.7, 10.3), 100) << step;
    EXPECT_EQ(at(50.5, 10.5), 900) << step;
    EXPECT_EQ(at(50.1, 10.1), 100) << step;
  }
}

TEST_F(Area, TheFirstRasterThatCoversAPlaceServesIt) {
  writeRaster(folder_ / "a.tif", degreeRaster(10, 51, 0.01, 100, 100), [](int, int) { return 1; });
  writeRaster(folder_ / "b.tif", degreeRaster(10.5, 51, 0.001, 1000, 1000), [](int, int) { return 2; });
  for (const double step : {0.0005, 0.03}) {
    const auto first = open({file("a.tif"), file("b.tif")});
    const auto kept = std::move(library_);
    const auto second = open({file("b.tif"), file("a.tif")});
    const auto latitudes = values(50.5, -step, 2), longitudes = values(10.7, step, 2);
    EXPECT_EQ(gridOf(*first, latitudes, longitudes)[0], 1);
    EXPECT_EQ(gridOf(*second, latitudes, longitudes)[0], 2);
  }
}

TEST_F(Area, ClosesTheGapOfOneCellBetweenPointRastersThatAdjoin) {
  const Plane plane;
  for (const double west : {10.0, 10.5}) {
    RasterSpec spec = degreeRaster(west, 51, 0.005, 100, 100);
    spec.points = true;
    writePlane(file(west < 10.4 ? "a.tif" : "b.tif"), spec, plane);
  }
  const auto area = open({file("a.tif"), file("b.tif")});
  const auto latitudes = values(50.9, -0.02, 10), longitudes = values(10.4, 0.0007, 250);
  expectPlane(plane, gridOf(*area, latitudes, longitudes), latitudes, longitudes, kRounding);
}

TEST_F(Area, ReadsProjectedRastersThroughTheirTransformation) {
  // A plane in the projection's own metres.
  RasterSpec spec;
  spec.crs = "EPSG:32632";
  spec.columns = spec.rows = 700;
  spec.corners = {480000, 100, 0, 5600000, 0, -100};
  writeRaster(folder_ / "utm.tif", spec, [](int column, int row) { return 200 + column * 0.5 + row * 0.25; });
  const auto area = open({file("utm.tif")});
  std::string problem;
  OGRSpatialReference crs;
  crs.SetFromUserInput("EPSG:32632");
  const auto transform = CrsTransform::make(crs, problem);
  ASSERT_NE(transform, nullptr);
  for (const double step : {0.0004, 0.0021, 0.009}) {
    const auto latitudes = values(50.48, -step, 45), longitudes = values(9.02, step, 45);
    const auto grid = gridOf(*area, latitudes, longitudes);
    for (std::size_t j = 0; j < 45; ++j)
      for (std::size_t i = 0; i < 45; ++i) {
        double x = longitudes[i], y = latitudes[j];
        transform->fromWgs84({&x, 1}, {&y, 1});
        const double expected = 200 + ((x - 480000) / 100 - 0.5) * 0.5 + ((5600000 - y) / 100 - 0.5) * 0.25;
        // Places are within a hundredth of a grid's cell.
        ASSERT_NEAR(static_cast<double>(grid[j * 45 + i]), expected, 0.01 * std::max(1.0, step / 0.001))
            << step << ": " << i << ", " << j;
      }
  }
}

TEST_F(Area, ReadsARasterTurnedAgainstTheMeridians) {
  RasterSpec spec;
  spec.columns = spec.rows = 500;
  spec.corners = {10, 0.0008, 0.0006, 51, 0.0006, -0.0008};
  const Plane plane;
  writeRaster(folder_ / "askew.tif", spec, [&](int column, int row) {
    const double c = column + 0.5, r = row + 0.5;
    return plane.at(51 + 0.0006 * c - 0.0008 * r, 10 + 0.0008 * c + 0.0006 * r);
  });
  const auto area = open({file("askew.tif")});
  for (const double step : {0.0003, 0.005}) {
    const auto latitudes = values(51.0, -step, 20), longitudes = values(10.3, step, 20);
    expectPlane(plane, gridOf(*area, latitudes, longitudes), latitudes, longitudes, 0.02);
  }
}

TEST_F(Area, ReadsARasterAcrossTheAntimeridianFromEitherTurn) {
  const Plane plane{10, -10, -1000};
  writePlane(file("fiji.tif"), degreeRaster(179, -16, 0.005, 400, 400), plane);
  const auto area = open({file("fiji.tif")});
  for (const double step : {0.002, 0.03}) {
    const auto latitudes = values(-16.2, -step, 30), longitudes = values(179.4, step, 30);
    const auto grid = gridOf(*area, latitudes, longitudes);
    expectPlane(plane, grid, latitudes, longitudes, kRounding);
    std::vector<double> turned = longitudes;
    for (double& longitude : turned) longitude -= 360;
    EXPECT_EQ(gridOf(*area, latitudes, turned), grid);
  }
}

TEST_F(Area, ReadsARasterOfTheWholeEarthRoundAndRound) {
  writeRaster(folder_ / "earth.tif", degreeRaster(-180, 90, 0.5, 720, 360),
              [](int column, int row) { return 100 * std::cos((column + 0.5) * M_PI / 360) + row; });
  const auto area = open({file("earth.tif")});
  for (const double step : {0.2, 2.0}) {
    const auto latitudes = values(40, -step, 20), longitudes = values(180 - 10 * step, step, 20);
    const auto grid = gridOf(*area, latitudes, longitudes);
    for (std::size_t i = 0; i < 20; ++i) {
      const double column = (longitudes[i] + 180) / 0.5 - 0.5, row = (90 - latitudes[3]) / 0.5 - 0.5;
      EXPECT_NEAR(static_cast<double>(grid[3 * 20 + i]), 100 * std::cos((column + 0.5) * M_PI / 360) + row,
                  0.2);
    }
  }
  // One and a half turns in a grid.
  const auto wide = gridOf(*area, values(60, -30, 5), values(-270, 4.5, 121));
  EXPECT_EQ(std::count(wide.begin(), wide.end(), kOutsideHeight), 0);
  for (std::size_t i = 0; i + 80 < 121; ++i) EXPECT_NEAR(wide[i], wide[i + 80], 1e-3F);
}

TEST_F(Area, RowsAndColumnsMayRunEitherWay) {
  writePlane(file("plane.tif"), degreeRaster(10, 51, 0.001, 700, 700), Plane{});
  const auto area = open({file("plane.tif")});
  for (const double step : {0.0005, 0.01}) {
    const auto latitudes = values(50.4, step, 50), longitudes = values(10.6, -step, 50);
    expectPlane(Plane{}, gridOf(*area, latitudes, longitudes), latitudes, longitudes, kRounding);
  }
}

TEST_F(Area, ServesGridsOfOneCellAndOfNone) {
  writePlane(file("plane.tif"), degreeRaster(10, 51, 0.001, 700, 700), Plane{});
  const auto area = open({file("plane.tif")});
  EXPECT_TRUE(gridOf(*area, {}, {10.5}).empty());
  EXPECT_TRUE(gridOf(*area, {50.5}, {}).empty());
  expectPlane(Plane{}, gridOf(*area, {50.5}, {10.5}), {50.5}, {10.5}, kRounding);
  const auto row = values(10.1, 0.01, 40);
  expectPlane(Plane{}, gridOf(*area, {50.5}, row), {50.5}, row, kRounding);
}

TEST_F(Area, PlacesThatAreNoneOnTheEarthAreOutside) {
  writePlane(file("plane.tif"), degreeRaster(10, 51, 0.001, 700, 700), Plane{});
  const auto area = open({file("plane.tif")});
  for (const double bad : {std::nan(""), double{INFINITY}, 91.0}) {
    for (const float height : gridOf(*area, {bad, bad}, {10.1, 10.2})) EXPECT_EQ(height, kOutsideHeight);
    EXPECT_EQ(area->heightsAt(std::vector<GeoPoint>{{bad, 10.5}}, 0)[0], kOutsideHeight);
  }
  for (const float height : gridOf(*area, {50.5, 50.4}, {std::nan(""), std::nan("")}))
    EXPECT_EQ(height, kOutsideHeight);
}

TEST_F(Area, HeightsAtPositionsTellVoidFromOutside) {
  RasterSpec spec = degreeRaster(10, 51, 0.01, 100, 100);
  spec.noData = -1;
  writeRaster(folder_ / "r.tif", spec, [](int column, int) { return column < 50 ? -1 : 300; });
  const auto area = open({file("r.tif")});
  const auto heights = area->heightsAt(std::vector<GeoPoint>{{50.5, 10.2}, {50.5, 10.8}, {50.5, 12}}, 0);
  EXPECT_EQ(heights, (std::vector<float>{kVoidHeight, 300, kOutsideHeight}));
}

TEST_F(Area, GivesUpWhenCancelled) {
  writeTile(folder_ / "N36W085.hgt", [](int column, int row) { return column + row; });
  const auto area = open({file("N36W085.hgt")});
  std::atomic<bool> cancelled{true};
  const auto latitudes = values(36.9, -0.01, 80), longitudes = values(-84.9, 0.01, 80);
  EXPECT_TRUE(area->grid(latitudes, longitudes, &cancelled).empty());
  EXPECT_EQ(area->progress().wanted, area->progress().made);
  cancelled = false;
  EXPECT_EQ(area->grid(latitudes, longitudes, &cancelled).size(), 6400U);
}

TEST_F(Area, AnUnusableRasterIsAProblemAndTheOthersServe) {
  test::writeBytes(folder_ / "N36W085.hgt", "too short");
  writePlane(file("plane.tif"), degreeRaster(10, 51, 0.001, 100, 100), Plane{});
  const auto area = open({folder_.path().string()});
  ASSERT_EQ(area->problems().size(), 1U);
  EXPECT_NE(area->problems()[0].find("N36W085.hgt: its size"), std::string::npos) << area->problems()[0];
  EXPECT_NE(gridOf(*area, {50.95}, {10.05})[0], kOutsideHeight);
}

TEST_F(Area, NoticesAtOnceThatAFileWasAdded) {
  std::filesystem::create_directory(folder_ / "tiles");
  writePlane(file("tiles/a.tif"), degreeRaster(10, 51, 0.01, 100, 100), Plane{});
  const auto before = open({file("tiles")});
  EXPECT_EQ(before->index().files().size(), 1U);
  EXPECT_FALSE(before->index().outdated());
  writePlane(file("tiles/b.tif"), degreeRaster(12, 51, 0.01, 100, 100), Plane{});
  EXPECT_TRUE(before->index().outdated());
  const auto after = library_->area(3);
  EXPECT_EQ(after->index().files().size(), 2U);
  EXPECT_FALSE(after->index().outdated());
  EXPECT_EQ(before->index().files().size(), 1U);
}

// What a program that replaces a tile in place, or is still copying it, does to the file of a running map.
TEST_F(Area, AFileThatIsCutWhileItIsInUseIsVoidAndAProblemAndNeverOtherHeights) {
  writeTile(folder_ / "N50E010.hgt", [](int column, int row) { return 100 + column + row; });
  const auto area = open({folder_.path().string()});
  // A corner of the tile, so that the rest of it is read later.
  EXPECT_FLOAT_EQ(gridOf(*area, {51}, {10})[0], 100);
  std::filesystem::resize_file(folder_ / "N50E010.hgt", 100'000);
  EXPECT_TRUE(area->index().outdated());
  for (const float height : gridOf(*area, values(50.05, 0.01, 90), values(10.05, 0.01, 90)))
    ASSERT_EQ(height, kVoidHeight);
  ASSERT_EQ(area->problems().size(), 1U);
  EXPECT_NE(area->problems()[0].find("N50E010.hgt: the file was changed while it was in use"),
            std::string::npos)
      << area->problems()[0];
}

TEST_F(Area, AFileThatIsReplacedInPlaceIsOutdatedAndReadAnew) {
  const auto write = [this](int height) {
    writeTile(folder_ / "N50E010.hgt", [height](int, int) { return height; });
  };
  write(100);
  const auto before = open({folder_.path().string()});
  EXPECT_FLOAT_EQ(gridOf(*before, {50.5}, {10.5})[0], 100);
  EXPECT_FALSE(before->index().outdated());
  write(200);
  // Within the same tick of the file system's clock it could not be told.
  std::filesystem::last_write_time(folder_ / "N50E010.hgt",
                                   std::filesystem::file_time_type::clock::now() + std::chrono::seconds(2));
  EXPECT_TRUE(before->index().outdated());
  EXPECT_FLOAT_EQ(gridOf(*library_->area(3), {50.5}, {10.5})[0], 200);
}

TEST_F(Area, AFileThatWasNotYetWholeIsLookedAtAgain) {
  for (const std::string begun : {"", "the first bytes"}) {
    test::writeBytes(folder_ / "N50E010.hgt", begun);
    const auto before = open({folder_.path().string()});
    EXPECT_EQ(before->problems().size(), 1U);
    EXPECT_FALSE(before->index().outdated());
    writeTile(folder_ / "N50E010.hgt", [](int, int) { return 100; });
    EXPECT_TRUE(before->index().outdated());
    const auto after = library_->area(3);
    EXPECT_TRUE(after->problems().empty());
    EXPECT_FLOAT_EQ(gridOf(*after, {50.5}, {10.5})[0], 100);
  }
}

TEST_F(Area, ALookAtItsFilesThatIsCancelledAgainAndAgainGoesOnWhereItWas) {
  constexpr int kFiles = 5;
  for (int i = 0; i < kFiles; ++i)
    writePlane(file("plane" + std::to_string(i) + ".tif"), degreeRaster(10 + i, 51, 0.01, 100, 100), Plane{});
  const auto area = open({folder_.path().string()});
  const std::atomic<bool> cancelled = true;
  for (int i = 0; i < kFiles; ++i) EXPECT_THROW(area->index(&cancelled), IndexCancelled) << i;
  // Nothing is left to cancel.
  EXPECT_EQ(area->index(&cancelled).files().size(), std::size_t{kFiles});
  EXPECT_NE(gridOf(*area, {50.5}, {14.5})[0], kOutsideHeight);
}

TEST_F(Area, AGridIsCancelledAlreadyInTheLookAtItsFiles) {
  for (const char* name : {"a.tif", "b.tif"})
    writePlane(file(name), degreeRaster(10, 51, 0.01, 100, 100), Plane{});
  const auto area = open({folder_.path().string()});
  const std::atomic<bool> cancelled = true;
  EXPECT_TRUE(area->grid(values(50.5, 0.01, 2), values(10.5, 0.01, 2), &cancelled).empty());
  EXPECT_NE(gridOf(*area, {50.5}, {10.5})[0], kOutsideHeight);
}

TEST_F(Area, ServesSeveralThreadsAtOnce) {
  std::filesystem::create_directory(folder_ / "tiles");
  for (int west = 10; west < 13; ++west)
    writeTile(folder_ / ("tiles/N50E0" + std::to_string(west) + ".hgt"),
              [](int column, int row) { return (column * 7 + row * 3) % 2000; });
  const auto latitudes = values(50.98, -0.012, 80), longitudes = values(10.02, 0.036, 80);
  const auto expected = gridOf(*open({file("tiles")}), latitudes, longitudes);
  std::filesystem::remove_all(cache_.path() / "zelprofiler");
  const auto area = open({file("tiles")});
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int round = 0; round < 6; ++round) {
        std::atomic<bool> cancelled{t == 3 && round % 2 == 0};
        const auto grid = area->grid(latitudes, longitudes, &cancelled);
        if (!cancelled && grid != expected) ++wrong;
        area->problems();
        area->progress();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong.load(), 0);
  EXPECT_EQ(area->progress().wanted, area->progress().made);
  EXPECT_EQ(area->progress().made, 3);
}

}  // namespace
}  // namespace zel
