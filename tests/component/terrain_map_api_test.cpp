#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <thread>

#include "real_component.h"
#include "support/environment_variable.h"
#include "zel/geodesic.h"
#include "zel/settings.h"
#include "zel/terrain_map.h"

namespace zel {
namespace {

using test::EnvironmentVariable;
using test::RealComponent;

class TerrainMapApi : public RealComponent {
 protected:
  EnvironmentVariable cache_{"XDG_CACHE_HOME", (folder_ / "cache").string()};
};

TEST_F(TerrainMapApi, OpensTheBundledSample) {
  const auto map = TerrainMap::open(3);
  EXPECT_EQ(map->source().code, 3);
  EXPECT_TRUE(map->source().bundledSample);
  ASSERT_EQ(map->rasters().size(), 1U);
  const TerrainCoverage& raster = map->rasters()[0];
  EXPECT_TRUE(raster.path.ends_with("jacksboro_3s.tif")) << raster.path;
  const TerrainRaster described = terrainRasters(raster.path).at(0);
  EXPECT_NEAR(raster.extent.south, described.south, 1e-9);
  EXPECT_NEAR(raster.extent.west, described.west, 1e-9);
  EXPECT_NEAR(raster.extent.north, described.north, 1e-9);
  EXPECT_NEAR(raster.extent.east, described.east, 1e-9);
  EXPECT_NEAR(raster.cellDegrees, 3 / 3600.0, 1e-9);
  EXPECT_TRUE(map->problems().empty());
  EXPECT_FALSE(map->outdated());
}

TEST_F(TerrainMapApi, AFineGridIsWhatASamplingReads) {
  const auto map = TerrainMap::open(3);
  const TerrainExtent& extent = map->rasters()[0].extent;
  const Position from{extent.south + 0.01, extent.west + 0.01}, to{extent.north - 0.01, extent.east - 0.01};
  const SampledTerrain sampled = sampleTerrain(from, to, 50, 0, 3);
  ASSERT_EQ(sampled.status, 0) << sampled.error;
  EXPECT_EQ(map->heightsAt(sampled.positions, 0), sampled.elevations);
  for (std::size_t i = 0; i < sampled.positions.size(); ++i) {
    const auto grid = map->grid(std::vector<double>{sampled.positions[i].latitude},
                                std::vector<double>{sampled.positions[i].longitude});
    // 32-bit heights of a few hundred metres.
    EXPECT_NEAR(grid.at(0), sampled.elevations[i], 1e-3F);
  }
}

TEST_F(TerrainMapApi, ACoarseGridIsTheMeanOfTheGround) {
  const auto map = TerrainMap::open(3);
  // Cells of 16 x 16 posts, told from one height a post.
  const double cell = 3 / 3600.0;
  const TerrainExtent& extent = map->rasters()[0].extent;
  // From the edge to the first post.
  const double outer = terrainRasters(map->rasters()[0].path).at(0).postsOnCorners ? 0 : 0.5;
  const auto along = [&](double first, double step, int count) {
    std::vector<double> values;
    for (int i = 0; i < count; ++i) values.push_back(first + step * i);
    return values;
  };
  const auto coarse = map->grid(along(extent.north - (7.5 + outer) * cell, -16 * cell, 10),
                                along(extent.west + (7.5 + outer) * cell, 16 * cell, 10));
  const auto fine =
      map->grid(along(extent.north - outer * cell, -cell, 160), along(extent.west + outer * cell, cell, 160));
  for (std::size_t j = 0; j < 10; ++j)
    for (std::size_t i = 0; i < 10; ++i) {
      double sum = 0;
      for (std::size_t row = 16 * j; row < 16 * j + 16; ++row)
        for (std::size_t column = 16 * i; column < 16 * i + 16; ++column)
          sum += static_cast<double>(fine[row * 160 + column]);
      // The corners of the raster are told in its own last digits.
      EXPECT_NEAR(static_cast<double>(coarse[j * 10 + i]), sum / 256, 0.05);
    }
  EXPECT_EQ(map->progress().made, 1);
  EXPECT_EQ(map->progress().wanted, 1);
}

TEST_F(TerrainMapApi, TheLookAtItsFilesCanBeCancelledAndGoesOnLater) {
  const auto map = TerrainMap::open(3);
  const std::atomic<bool> cancelled = true;
  EXPECT_FALSE(map->prepare(&cancelled));
  EXPECT_TRUE(map->prepare());
  EXPECT_EQ(map->rasters().size(), 1U);
}

TEST_F(TerrainMapApi, RefusesAnUnknownSourceAndAForeignThread) {
  EXPECT_THROW(TerrainMap::open(4), SettingsError);
  bool refused = false;
  std::thread([&] {
    try {
      TerrainMap::open(3);
    } catch (const AutomationError&) {
      refused = true;
    }
  }).join();
  EXPECT_TRUE(refused);
}

TEST_F(TerrainMapApi, BelongsToTheSourceAsItWasDefined) {
  const auto before = TerrainMap::open(3);
  useTile([](int, int) { return 1234; });
  const auto after = TerrainMap::open(3);
  EXPECT_EQ(after->grid(std::vector<double>{36.7}, std::vector<double>{-84.2}).at(0), 1234);
  EXPECT_EQ(before->grid(std::vector<double>{36.7}, std::vector<double>{-84.2}).at(0), kTerrainOutside);
  useTerrainForThisRun({folder_.path().string() + "/nothing"});
  const auto run = TerrainMap::open(3);
  EXPECT_EQ(run->source().name, "terrain given for this run");
  EXPECT_FALSE(run->source().bundledSample);
  EXPECT_TRUE(run->rasters().empty());
  EXPECT_FALSE(run->problems().empty());
}

TEST_F(TerrainMapApi, ServesOtherThreads) {
  const auto map = TerrainMap::open(3);
  std::vector<float> grid;
  std::thread([&] { grid = map->grid(std::vector<double>{36.3}, std::vector<double>{-84.3}); }).join();
  ASSERT_EQ(grid.size(), 1U);
  EXPECT_GT(grid[0], 200);
}

// Flinders Peak to Buninyong: Geocentric Datum of Australia Technical Manual, table of the worked example of
// Vincenty's formulae, given to 1 mm and 0.01 arc-seconds. Its ellipsoid differs by 0.1 mm in the polar axis.
TEST(GeodesicApi, AgreesWithAPublishedLine) {
  const Position flinders{-(37 + 57 / 60.0 + 3.7203 / 3600), 144 + 25 / 60.0 + 29.5244 / 3600};
  const Position buninyong{-(37 + 39 / 60.0 + 10.1561 / 3600), 143 + 55 / 60.0 + 35.3839 / 3600};
  const GeodesicLine line = geodesicLine(flinders, buninyong, 3);
  EXPECT_NEAR(line.distanceKm, 54.972271, 2e-6);
  EXPECT_NEAR(line.bearingDeg, 306 + 52 / 60.0 + 5.37 / 3600, 5e-6);
  EXPECT_NEAR(line.reverseBearingDeg, 127 + 10 / 60.0 + 25.07 / 3600, 5e-6);
  ASSERT_EQ(line.positions.size(), 3U);
  EXPECT_EQ(line.positions[0], flinders);
  EXPECT_EQ(line.positions[2], buninyong);
  const Position there = geodesicDestination(flinders, line.bearingDeg, line.distanceKm);
  EXPECT_NEAR(there.latitude, buninyong.latitude, 1e-9);
  EXPECT_NEAR(there.longitude, buninyong.longitude, 1e-9);
}

TEST(GeodesicApi, CoincidentEndsHaveNoBearing) {
  const GeodesicLine line = geodesicLine({36, -84}, {36, -84}, 4);
  EXPECT_EQ(line.distanceKm, 0);
  EXPECT_EQ(line.bearingDeg, 0);
  EXPECT_EQ(line.reverseBearingDeg, 0);
  ASSERT_EQ(line.positions.size(), 4U);
  for (const Position& p : line.positions) EXPECT_NEAR(p.latitude, 36, 1e-12);
}

TEST(GeodesicApi, WhatIsNoPlaceGivesNoNumber) {
  for (const Position bad : {Position{91, 0}, Position{NAN, 0}, Position{0, INFINITY}}) {
    const GeodesicLine line = geodesicLine(bad, {36, -84}, 5);
    EXPECT_TRUE(std::isnan(line.distanceKm) && std::isnan(line.bearingDeg) &&
                std::isnan(line.reverseBearingDeg));
    EXPECT_TRUE(line.positions.empty());
    EXPECT_TRUE(geodesicLine({36, -84}, bad, 5).positions.empty());
    EXPECT_TRUE(std::isnan(geodesicDestination(bad, 0, 1).latitude));
  }
  EXPECT_TRUE(std::isnan(geodesicDestination({36, -84}, NAN, 1).latitude));
}

TEST(GeodesicApi, CrossesTheAntimeridian) {
  const GeodesicLine line = geodesicLine({-17, 179}, {-17, -179}, 5);
  EXPECT_LT(line.distanceKm, 220);
  EXPECT_NEAR(std::abs(line.positions[2].longitude), 180, 1e-9);
}

class DatumApi : public RealComponent {};

TEST_F(DatumApi, NothingIsShiftedBeforeTheHostHasSaidNad27) {
  const Position station{36.2, -84.3};
  EXPECT_EQ(mapPosition(station).position, station);
  EXPECT_EQ(stationPosition(station).position, station);
  control_.let_StaDatum(1);
  EXPECT_EQ(mapPosition(station).position, station);
}

TEST_F(DatumApi, ShiftsThereAndBackToAMillimetre) {
  control_.let_StaDatum(0);
  for (const Position station : {Position{36.2, -84.3}, Position{48, -122}, Position{30.1, -90}}) {
    const DatumPosition map = mapPosition(station);
    ASSERT_EQ(map.problem, "");
    // NAD-27 is some 10 to 100 m off in these states.
    const double moved = geodesicLine(station, map.position, 2).distanceKm;
    EXPECT_GT(moved, 0.005);
    EXPECT_LT(moved, 0.2);
    const DatumPosition back = stationPosition(map.position);
    ASSERT_EQ(back.problem, "");
    EXPECT_LT(geodesicLine(station, back.position, 2).distanceKm, 1e-6);
  }
}

TEST_F(DatumApi, APositionThatCannotBeShiftedSaysWhy) {
  control_.let_StaDatum(0);
  for (const Position bad : {Position{50, 10}, Position{91, -84}}) {
    for (const DatumPosition& result : {mapPosition(bad), stationPosition(bad)}) {
      EXPECT_NE(result.problem, "") << bad.latitude;
      EXPECT_EQ(result.position, bad);
    }
  }
}

}  // namespace
}  // namespace zel
