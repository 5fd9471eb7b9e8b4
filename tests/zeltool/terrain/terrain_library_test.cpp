#include "zeltool/terrain/terrain_library.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "platform/terrain.h"
#include "rasters.h"

namespace zel {
namespace {

using test::libraryOf;
using test::TemporaryFolder;

const std::string kSample = std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif";
constexpr GeoPoint kWest{36.3, -84.4}, kEast{36.3, -84.1};

SampleRequest request(GeoPoint from, GeoPoint to, std::int32_t count) {
  return {from, to, count, 0, 3, true};
}

TEST(TerrainLibrary, SamplesRunEvenlyFromOneEndToTheOther) {
  const SampleResult result = libraryOf({kSample}).sample(request(kWest, kEast, 301));
  ASSERT_EQ(result.report.status, kSamplerOk) << result.report.reason;
  EXPECT_EQ(result.heights.size(), 301U);
  ASSERT_EQ(result.positions.size(), 301U);
  EXPECT_EQ(result.positions.front(), kWest);
  EXPECT_EQ(result.positions.back(), kEast);
  // 0.3 degrees of longitude at 36.3 N by the inverse geodesic of GeodSolve 2: 26.9476 km.
  EXPECT_NEAR(result.length, 26.947, 0.01);
  for (const float height : result.heights) {
    EXPECT_GE(height, 236);  // the sample's lowest and highest cell, metres
    EXPECT_LE(height, 1076);
  }
}

TEST(TerrainLibrary, TellsWhatItWasComputedFrom) {
  TerrainLibrary library(
      [](int code) {
        return SourceDefinition{code, "3 second", {kSample}, true};
      },
      1 << 20);
  SampleRequest asked = request(kWest, kEast, 10);
  asked.source = 2;
  const SamplingReport four = library.sample(asked).report;
  EXPECT_EQ(four.sourceCode, 2);
  EXPECT_EQ(four.sourceName, "3 second");
  EXPECT_TRUE(four.bundledSample);
  EXPECT_EQ(four.files, std::vector<std::string>{kSample});
  EXPECT_TRUE(four.warnings.empty());
  EXPECT_EQ(four.method, "FCC 4-Point");
  EXPECT_EQ(four.voids, 0);
  EXPECT_EQ(four.reason, "");
  asked.method = 1;
  EXPECT_EQ(library.sample(asked).report.method, "Bivariate  Interpolation");
  asked.method = 2;
  EXPECT_EQ(library.sample(asked).report.method, "FCC 4-Point");
}

TEST(TerrainLibrary, GivesPositionsOnlyWhenTheyAreWanted) {
  SampleRequest asked = request(kWest, kEast, 10);
  asked.wantPositions = false;
  const SampleResult result = libraryOf({kSample}).sample(asked);
  EXPECT_EQ(result.heights.size(), 10U);
  EXPECT_TRUE(result.positions.empty());
}

TEST(TerrainLibrary, FewerThanTwoSamplesAreUnderRange) {
  const TerrainLibrary library = libraryOf({kSample});
  for (const std::int32_t count : {1, 0, -1, std::numeric_limits<std::int32_t>::min()}) {
    const SampleResult result = library.sample(request(kWest, kEast, count));
    EXPECT_EQ(result.report.status, kSamplerUnderRange);
    EXPECT_TRUE(result.heights.empty());
  }
  EXPECT_EQ(library.sample(request(kWest, kEast, 1)).report.reason,
            "A path needs 2 samples at least, and 1 was asked for; ask for at least 2 samples");
  EXPECT_EQ(library.sample(request(kWest, kEast, 2)).report.status, kSamplerOk);
}

TEST(TerrainLibrary, CoincidentEndsAreUnderRange) {
  const TerrainLibrary library = libraryOf({kSample});
  const SampleResult result = library.sample(request(kWest, kWest, 100));
  EXPECT_EQ(result.report.status, kSamplerUnderRange);
  EXPECT_EQ(result.report.reason,
            "The path has no length: both of its ends are at 36.300000 N, 84.400000 W; give two "
            "different ends");
  EXPECT_EQ(library.sample(request({10, 180}, {10, -180}, 100)).report.status, kSamplerUnderRange);
  EXPECT_EQ(library.sample(request({90, 10}, {90, 50}, 100)).report.status, kSamplerUnderRange);
}

TEST(TerrainLibrary, EndsThatAreNoPlaceOnTheEarthAreUnderRange) {
  const TerrainLibrary library = libraryOf({kSample});
  const double nan = std::numeric_limits<double>::quiet_NaN(),
               infinity = std::numeric_limits<double>::infinity();
  for (const GeoPoint bad : {GeoPoint{nan, 0}, GeoPoint{0, nan}, GeoPoint{infinity, 0},
                             GeoPoint{0, -infinity}, GeoPoint{90.001, 0}, GeoPoint{-91, 0}}) {
    for (const auto& result :
         {library.sample(request(bad, kEast, 100)), library.sample(request(kWest, bad, 100))}) {
      EXPECT_EQ(result.report.status, kSamplerUnderRange);
      EXPECT_EQ(result.report.reason.find("There is no path from "), 0U) << result.report.reason;
      EXPECT_TRUE(
          result.report.reason.ends_with("; give latitudes from -90 to 90 degrees and finite longitudes"));
    }
  }
}

TEST(TerrainLibrary, MoreThan32767SamplesAreOverRange) {
  const TerrainLibrary library = libraryOf({kSample});
  EXPECT_EQ(library.sample(request(kWest, kEast, 32767)).report.status, kSamplerOk);
  const SampleResult result = library.sample(request(kWest, kEast, 32768));
  EXPECT_EQ(result.report.status, kSamplerOverRange);
  EXPECT_EQ(
      result.report.reason,
      "32768 samples are more than the 32767 that a path can have; choose fewer points (at most 32767)");
}

TEST(TerrainLibrary, MoreThanTwoThousandKilometresAreOverRange) {
  const TerrainLibrary library = libraryOf({kSample});
  // Along the equator a degree is 111.3195 km: 17.96 degrees are 1999.3 km, 17.97 degrees 2000.4 km.
  EXPECT_EQ(library.sample(request({0, 0}, {0, 17.96}, 100)).report.status, kSamplerInvalidData);
  const SampleResult result = library.sample(request({0, 0}, {0, 17.97}, 100));
  EXPECT_EQ(result.report.status, kSamplerOverRange);
  EXPECT_EQ(result.report.reason,
            "The path is 2000.4 km long, more than the 2000 km that can be sampled; choose a nearer end");
}

TEST(TerrainLibrary, ASourceWithoutFilesIsAConfigurationError) {
  const SampleResult result = libraryOf({}).sample(request(kWest, kEast, 100));
  EXPECT_EQ(result.report.status, kSamplerConfiguration);
  EXPECT_EQ(result.report.reason,
            "Terrain source 3 \"1 second\" has no usable raster: no file or folder is set for it; set the "
            "source's files or folders (setting Terrain/Source3)");
  const SampleResult missing = libraryOf({"/no/such/folder"}).sample(request(kWest, kEast, 100));
  EXPECT_EQ(missing.report.status, kSamplerConfiguration);
  EXPECT_EQ(missing.report.reason,
            "Terrain source 3 \"1 second\" (/no/such/folder) has no usable raster: /no/such/folder: there is "
            "no such file "
            "or folder; give rasters of heights that GDAL can open: set the source's files or folders "
            "(setting Terrain/Source3)");
  EXPECT_EQ(missing.report.warnings,
            std::vector<std::string>{"/no/such/folder: there is no such file or folder"});
}

TEST(TerrainLibrary, OutsideTheDataTheFirstPositionAndTheTileThatWouldHelpAreNamed) {
  const SampleResult result = libraryOf({kSample}).sample(request({36.3, -84.2}, {36.3, -83.2}, 101));
  EXPECT_EQ(result.report.status, kSamplerInvalidData);
  EXPECT_TRUE(result.heights.empty());
  // A hundredth of a degree a sample; the last post lies at 84.07834 W, one cell more is 84.07750 W: sample
  // 14 is the first beyond, at 84.07 W.
  EXPECT_EQ(result.report.reason.find("Sample 14 of 101, at 36.30"), 0U) << result.report.reason;
  EXPECT_NE(result.report.reason.find("lies outside the terrain data of source 3 \"1 second\" (" + kSample +
                                      "); the tile N36W085.hgt would cover it: set the source's files or "
                                      "folders (setting Terrain/Source3)"),
            std::string::npos)
      << result.report.reason;
}

TEST(TerrainLibrary, WhereTheBundledSampleStandsInAFailureSaysSo) {
  std::string path = kSample;
  const TerrainLibrary library([&](int) { return SourceDefinition{3, "1 second", {path}, true}; }, 1 << 20);
  EXPECT_EQ(
      library.sample(request({50.5, 6.5}, {50.5, 6.6}, 10)).report.reason,
      "Sample 1 of 10, at 50.500000 N, 6.500000 E, lies outside the bundled sample terrain, which stands in "
      "because source 3 \"1 second\" is not set; the tile N50E006.hgt would cover it: set the source's "
      "files or folders (setting Terrain/Source3)");
  path = "/no/such\nfolder";
  EXPECT_EQ(
      library.sample(request(kWest, kEast, 10)).report.reason,
      "The bundled sample terrain, which stands in because source 3 \"1 second\" is not set, has no usable "
      "raster: /no/such folder: there is no such file or folder; give rasters of heights that GDAL can open: "
      "set the source's files or folders (setting Terrain/Source3)");
}

TEST(TerrainLibrary, WhatIsWrongWithTheRequestIsToldBeforeWhatIsWrongWithTheData) {
  const TerrainLibrary none = libraryOf({});
  EXPECT_EQ(none.sample(request({0, 0}, {0, 90}, 1)).report.status, kSamplerUnderRange)
      << "under before over";
  EXPECT_EQ(none.sample(request({0, 0}, {0, 0}, 40000)).report.status, kSamplerUnderRange)
      << "under before over";
  EXPECT_EQ(none.sample(request({0, 0}, {0, 90}, 10)).report.status, kSamplerOverRange)
      << "over before configuration";
  EXPECT_EQ(none.sample(request({0, 0}, {0, 1}, 10)).report.status, kSamplerConfiguration)
      << "configuration before data";
  EXPECT_EQ(libraryOf({kSample}).sample(request({0, 0}, {0, 1}, 10)).report.status, kSamplerInvalidData);
}

TEST(TerrainLibrary, AChangedDefinitionIsIndexedAnew) {
  const TemporaryFolder folder;
  test::writeRaster(folder / "a.tif", {}, [](int, int) { return 1; });
  test::writeRaster(folder / "b.tif", {}, [](int, int) { return 2; });
  std::string name = "a.tif";
  const TerrainLibrary library(
      [&](int) {
        return SourceDefinition{3, "1 second", {(folder / name).string()}, false};
      },
      1 << 20);
  EXPECT_EQ(test::heightAt(library, {50.5, 10.5}).height, 1);
  name = "b.tif";
  EXPECT_EQ(test::heightAt(library, {50.5, 10.5}).height, 2);
}

TEST(TerrainLibrary, SourcesAreKeptApart) {
  const TemporaryFolder folder;
  for (const int code : {1, 9})
    test::writeRaster(folder / (std::to_string(code) + ".tif"), {}, [code](int, int) { return code; });
  const TerrainLibrary library(
      [&](int code) {
        return SourceDefinition{code, "", {(folder / (std::to_string(code) + ".tif")).string()}, false};
      },
      1 << 20);
  const GeoPoint position{50.5, 10.5};
  for (const int code : {1, 9, 1}) {
    float height = 0;
    library.heightsAt({&position, 1}, 0, code, {&height, 1});
    EXPECT_EQ(height, static_cast<float>(code));
  }
}

TEST(TerrainLibrary, HeightsAtGivesEveryHeightThatThereIsAndTellsOfTheFirstThatIsNot) {
  const std::vector<GeoPoint> positions{kWest, {10, 10}, kEast, {std::nan(""), 0}};
  std::vector<float> heights(4, 1);
  const SamplingReport report = libraryOf({kSample}).heightsAt(positions, 0, 3, heights);
  EXPECT_EQ(report.status, kSamplerInvalidData);
  EXPECT_EQ(report.reason.find("Sample 2 of 4, at 10.000000 N, 10.000000 E, lies outside"), 0U)
      << report.reason;
  EXPECT_GT(heights[0], 200);
  EXPECT_EQ(heights[1], kVoidHeight);
  EXPECT_GT(heights[2], 200);
  EXPECT_EQ(heights[3], kVoidHeight);
  EXPECT_EQ(report.voids, 2);
  const SamplingReport bad = libraryOf({kSample}).heightsAt({&positions[3], 1}, 0, 3, {heights.data(), 1});
  EXPECT_EQ(bad.status, kSamplerInvalidData);
  EXPECT_EQ(bad.reason,
            "Sample 1 of 1, at not a number, 0.000000 E, is no place on the earth; give latitudes from -90 "
            "to 90 degrees and finite longitudes");
}

TEST(TerrainLibrary, HeightsAtNeedsAsManyHeightsAsPositions) {
  std::vector<float> heights(3);
  EXPECT_THROW(libraryOf({kSample}).heightsAt({&kWest, 1}, 0, 3, heights), std::invalid_argument);
  EXPECT_EQ(libraryOf({kSample}).heightsAt({}, 0, 3, {}).status, kSamplerOk);
}

TEST(TerrainLibrary, AnyCacheGivesTheSameHeights) {
  const SampleRequest asked = request({36.17, -84.40}, {36.44, -84.09}, 1000);
  const SampleResult large = libraryOf({kSample}).sample(asked);
  for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, std::size_t{600'000}})
    EXPECT_EQ(libraryOf({kSample}, bytes).sample(asked).heights, large.heights);
}

// What the raster library's own program says of single cells: gdallocationinfo -valonly FILE COLUMN ROW.
TEST(TerrainLibrary, PostsOfTheBundledTerrainAreExact) {
  struct Post {
    int column, row;
    float height;  // m
  };
  const TerrainLibrary library = libraryOf({kSample});
  for (const Post& expected :
       {Post{0, 0, 483}, Post{402, 0, 444}, Post{0, 343, 545}, Post{402, 343, 272}, Post{200, 170, 511},
        Post{17, 301, 682}, Post{311, 42, 552}, Post{96, 250, 422}}) {
    const double cell = 1.0 / 1200;
    const GeoPoint post{36.44625 - (expected.row + 0.5) * cell, -84.41375 + (expected.column + 0.5) * cell};
    for (const std::int32_t method : {0, 1})
      EXPECT_EQ(test::heightAt(library, post, method).height, expected.height)
          << expected.column << " " << expected.row;
  }
}

}  // namespace
}  // namespace zel
