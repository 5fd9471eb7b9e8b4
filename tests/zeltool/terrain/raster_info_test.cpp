#include "zeltool/terrain/raster_info.h"

#include <gtest/gtest.h>

#include <cmath>

#include "rasters.h"

namespace zel {
namespace {

using test::RasterSpec;
using test::TemporaryFolder;
using test::writeRaster;

TEST(RasterInfo, DescribesTheBundledTerrain) {
  const RasterInfo info = describeRaster(std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif");
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.driver, "GTiff");
  EXPECT_EQ(info.columns, 403);
  EXPECT_EQ(info.rows, 344);
  EXPECT_EQ(info.dataType, "Int16");
  EXPECT_EQ(info.heightUnit, "m");
  EXPECT_EQ(info.lowest, 236);
  EXPECT_EQ(info.highest, 1076);
  EXPECT_EQ(info.voids, 0);
  EXPECT_EQ(info.cellUnit, "degree");
  EXPECT_NEAR(info.cellWidth, 1.0 / 1200, 1e-12);
  EXPECT_NEAR(info.cellHeight, 1.0 / 1200, 1e-12);
  EXPECT_TRUE(info.postsOnCorners);
  // The posts' own extent: half a cell within the cells' edges.
  EXPECT_NEAR(info.north, 36.44625 - 0.5 / 1200, 1e-9);
  EXPECT_NEAR(info.west, -84.41375 + 0.5 / 1200, 1e-9);
  EXPECT_EQ(info.horizontalDatum, "World Geodetic System 1984");
  EXPECT_EQ(info.verticalDatum, "unknown");
}

TEST(RasterInfo, CountsVoidsAndRangesOverTheHeightsInMetres) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.unit = "ft";
  spec.noData = -5;
  writeRaster(folder / "a.tif", spec, [](int column, int row) { return row == 3 ? -5 : 1000 + column; });
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.voids, 100);
  EXPECT_EQ(info.heightUnit, "ft");
  EXPECT_NEAR(info.lowest, 304.8, 1e-4);
  EXPECT_NEAR(info.highest, 1099 * 0.3048, 1e-4);
  EXPECT_FALSE(info.postsOnCorners);
  EXPECT_DOUBLE_EQ(info.south, 50);
  EXPECT_DOUBLE_EQ(info.east, 11);
}

TEST(RasterInfo, WithNothingButVoidsTheRangeIsZero) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, [](int, int) { return -32768; });
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.voids, 10000);
  EXPECT_EQ(info.lowest, 0);
  EXPECT_EQ(info.highest, 0);
}

TEST(RasterInfo, NamesTheDatumsThatTheFileNames) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.corners = {-85, 0.01, 0, 37, 0, -0.01};
  spec.crs = "EPSG:4269+5703";
  writeRaster(folder / "a.tif", spec, [](int, int) { return 1; });
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.horizontalDatum, "North American Datum 1983");
  EXPECT_EQ(info.verticalDatum, "North American Vertical Datum 1988");
  spec.crs = "EPSG:4326+5773";
  writeRaster(folder / "b.tif", spec, [](int, int) { return 1; });
  EXPECT_EQ(describeRaster((folder / "b.tif").string()).verticalDatum, "EGM96 geoid");
}

TEST(RasterInfo, SaysUnknownWhereTheFileNamesNone) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.crs = "";
  writeRaster(folder / "a.tif", spec, [](int, int) { return 1; });
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.horizontalDatum, "unknown");
  EXPECT_EQ(info.verticalDatum, "unknown");
  EXPECT_EQ(info.cellUnit, "degree");
}

TEST(RasterInfo, ProjectedRastersHaveCellsInTheirOwnUnit) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.crs = "EPSG:32616";
  spec.corners = {700000, 30, 0, 4030000, 0, -30};
  writeRaster(folder / "a.tif", spec, [](int, int) { return 1; });
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.cellUnit, "metre");
  EXPECT_EQ(info.cellWidth, 30);
  EXPECT_NEAR(info.north, 36.4, 0.1);
  EXPECT_NEAR(info.west, -84.77, 0.05);
  EXPECT_LT(info.west, info.east);
}

TEST(RasterInfo, ATileNamesNoVerticalDatum) {
  const TemporaryFolder folder;
  test::writeTile(folder / "S29W072.hgt",
                  [](int column, int row) { return column == 7 && row == 9 ? -32768 : row; });
  const RasterInfo info = describeRaster((folder / "S29W072.hgt").string());
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.driver, "SRTMHGT");
  EXPECT_EQ(info.south, -29);
  EXPECT_EQ(info.west, -72);
  EXPECT_EQ(info.north, -28);
  EXPECT_EQ(info.east, -71);
  EXPECT_EQ(info.voids, 1);
  EXPECT_EQ(info.highest, 1200);
  EXPECT_EQ(info.verticalDatum, "unknown");
}

TEST(RasterInfo, AnUnknownHeightUnitIsARemark) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.unit = "cubits";
  writeRaster(folder / "a.tif", spec, [](int, int) { return 5; });
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.remark, "its heights are in \"cubits\", an unknown unit, and are taken as metres");
  EXPECT_EQ(info.highest, 5);
}

// A shaded relief looks like heights from 0 to 255.
TEST(RasterInfo, CellsOf8BitsAreARemark) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.type = GDT_Byte;
  writeRaster(folder / "a.tif", spec, [](int, int) { return 1; });
  EXPECT_EQ(describeRaster((folder / "a.tif").string()).remark,
            "its cells have 8 bits: either heights from 0 to 255, or a picture and no heights");
}

TEST(RasterInfo, APartThatCannotBeReadIsARemarkOnAUsableRaster) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.columns = spec.rows = 256;
  spec.corners = {10, 1.0 / 256, 0, 51, 0, -1.0 / 256};
  spec.type = GDT_Int16;
  spec.options = {"TILED=YES", "BLOCKXSIZE=64", "BLOCKYSIZE=64", "COMPRESS=DEFLATE"};
  writeRaster(folder / "a.tif", spec,
              [](int column, int row) { return 100 + (column * 31 + row * 17) % 50; });
  std::string bytes = test::fileBytes(folder / "a.tif");
  for (std::size_t i = bytes.size() - 60; i < bytes.size(); ++i) bytes[i] = '\x55';
  test::writeBytes(folder / "a.tif", bytes);
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.remark.find("part of it cannot be read: "), 0U) << info.remark;
  EXPECT_EQ(info.remark.find("rows of blocks"), std::string::npos) << info.remark;
  EXPECT_GT(info.voids, 0);
  EXPECT_EQ(info.lowest, 100);
  EXPECT_EQ(info.highest, 149);
}

TEST(RasterInfo, OfAVeryLargeRasterThePartThatWasReadIsTold) {
  const TemporaryFolder folder;
  // One window of 512 rows more than the 8192 windows that are read.
  test::writeBytes(folder / "a.vrt",
                   "<VRTDataset rasterXSize=\"16\" rasterYSize=\"4194305\"><GeoTransform>10, 0.00001, 0, 51, "
                   "0, -0.00001</GeoTransform><VRTRasterBand dataType=\"Int16\" band=\"1\"/></VRTDataset>");
  const RasterInfo info = describeRaster((folder / "a.vrt").string());
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.remark, "heights and voids are of 8192 of 8193 rows of blocks");
}

TEST(RasterInfo, ReadingEndsAfter64PartsThatCannotBeRead) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.columns = 512 * 40;
  spec.rows = 512 * 3;
  spec.corners = {10, 1e-5, 0, 51, 0, -1e-5};
  spec.type = GDT_Byte;
  spec.options = {"TILED=YES", "BLOCKXSIZE=512", "BLOCKYSIZE=512"};
  writeRaster(folder / "a.tif", spec, [](int, int) { return 1; });
  std::filesystem::resize_file(folder / "a.tif", 5000);
  const RasterInfo info = describeRaster((folder / "a.tif").string());
  EXPECT_EQ(info.problem, "");
  EXPECT_NE(
      info.remark.find("; reading ended after 64 parts that cannot be read; heights and voids are of 2 of "
                       "3 rows of blocks"),
      std::string::npos)
      << info.remark;
  EXPECT_EQ(info.voids, 64 * 512 * 512);
  EXPECT_TRUE(std::isnan(info.lowest));
}

TEST(RasterInfo, TellsWhyAFileIsNoTerrain) {
  const TemporaryFolder folder;
  test::writeBytes(folder / "a.tif", "no raster");
  EXPECT_EQ(describeRaster((folder / "a.tif").string()).problem.find("it cannot be opened: "), 0U);
  EXPECT_EQ(describeRaster((folder / "none.tif").string()).problem, "there is no such file or folder");
  test::writeBytes(folder / "N50E010.hgt", "short");
  EXPECT_EQ(
      describeRaster((folder / "N50E010.hgt").string()).problem.find("its size of 5 bytes is none of a tile"),
      0U);
  EXPECT_EQ(describeRaster("").problem, "there is no such file or folder");
}

}  // namespace
}  // namespace zel
