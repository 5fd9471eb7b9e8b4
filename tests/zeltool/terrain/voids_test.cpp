#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/terrain.h"
#include "rasters.h"

namespace zel {
namespace {

using test::heightAt;
using test::libraryOf;
using test::RasterSpec;
using test::TemporaryFolder;
using test::writeRaster;

// Positions of posts of the default raster.
double longitudeOf(double column) { return 10.005 + column * 0.01; }
double latitudeOf(double row) { return 50.995 - row * 0.01; }

struct Hole {
  const char* description;
  GDALDataType type;
  std::optional<double> noData;
  double value;  // of the hole's cell
};

class Holes : public testing::TestWithParam<Hole> {};

TEST_P(Holes, AVoidCellIsNeverAHeight) {
  const Hole hole = GetParam();
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.type = hole.type;
  spec.noData = hole.noData;
  writeRaster(folder / "a.tif", spec,
              [&](int column, int row) { return column == 50 && row == 50 ? hole.value : 100; });
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  for (const std::int32_t method : {0, 1}) {
    const auto on = heightAt(library, {latitudeOf(50), longitudeOf(50)}, method);
    EXPECT_EQ(on.height, kVoidHeight) << hole.description;
    EXPECT_EQ(on.report.status, 0);
    EXPECT_EQ(on.report.voids, 1);
    for (const double right : {-0.9, -0.1, 0.1, 0.9})
      EXPECT_EQ(heightAt(library, {latitudeOf(50.3), longitudeOf(50 + right)}, method).height, kVoidHeight)
          << hole.description;
    EXPECT_EQ(heightAt(library, {latitudeOf(50.3), longitudeOf(51.1)}, method).height, 100);
    // On the post beside it, and on the line between two posts that are no voids, the hole has no weight.
    EXPECT_EQ(heightAt(library, {latitudeOf(50), longitudeOf(51)}, method).height, 100);
    EXPECT_EQ(heightAt(library, {latitudeOf(51), longitudeOf(50.5)}, method).height, 100);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Marks, Holes,
    testing::Values(
        Hole{"declared in 16 bits", GDT_Int16, -32768, -32768},
        Hole{"not declared in 16 bits", GDT_Int16, std::nullopt, -32768},
        Hole{"not declared -9999", GDT_Int16, std::nullopt, -9999}, Hole{"zero", GDT_Int16, 0, 0},
        Hole{"bytes", GDT_Byte, 255, 255}, Hole{"unsigned 16 bits", GDT_UInt16, 65535, 65535},
        Hole{"32 bits", GDT_Int32, -2147483647, -2147483647}, Hole{"64 bits", GDT_Int64, -7777, -7777},
        Hole{"unsigned 32 bits", GDT_UInt32, 4294967295.0, 4294967295.0},
        Hole{"a mark that 32-bit floats round", GDT_Float32, -999.9, -999.9},
        Hole{"lowest 32-bit float", GDT_Float32, -3.4028234663852886e38, -3.4028234663852886e38},
        Hole{"lowest 64-bit float", GDT_Float64, -1.7976931348623157e308, -1.7976931348623157e308},
        Hole{"NaN declared", GDT_Float32, std::numeric_limits<double>::quiet_NaN(),
             std::numeric_limits<double>::quiet_NaN()},
        Hole{"NaN not declared", GDT_Float32, std::nullopt, std::numeric_limits<double>::quiet_NaN()},
        Hole{"infinity", GDT_Float32, std::nullopt, std::numeric_limits<double>::infinity()},
        Hole{"minus infinity", GDT_Float64, std::nullopt, -std::numeric_limits<double>::infinity()},
        Hole{"too high", GDT_Float32, std::nullopt, 12001},
        Hole{"too low", GDT_Int16, std::nullopt, -12001}));

TEST(Voids, SeaLevelIsAHeight) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, [](int, int) { return 0; });
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  EXPECT_EQ(heightAt(library, {50.5, 10.5}).height, 0);
}

TEST(Voids, MaskedCellsAreVoids) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, [](int, int) { return 100; });
  {
    const GdalSession session;
    GDALDataset* file = GDALDataset::Open((folder / "a.tif").c_str(), GDAL_OF_RASTER | GDAL_OF_UPDATE);
    ASSERT_EQ(file->CreateMaskBand(GMF_PER_DATASET), CE_None);
    std::vector<std::uint8_t> mask(std::size_t{100} * 100, 255);
    mask[50 * 100 + 50] = 0;
    ASSERT_EQ(file->GetRasterBand(1)->GetMaskBand()->RasterIO(GF_Write, 0, 0, 100, 100, mask.data(), 100, 100,
                                                              GDT_Byte, 0, 0, nullptr),
              CE_None);
    GDALClose(file);
  }
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  EXPECT_EQ(heightAt(library, {latitudeOf(50), longitudeOf(50)}).height, kVoidHeight);
  EXPECT_EQ(heightAt(library, {latitudeOf(52), longitudeOf(52)}).height, 100);
}

// Cells that a file leaves out read as 0 when no mark is declared.
TEST(Voids, CellsThatWereNeverWrittenAreVoids) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.options = {"SPARSE_OK=TRUE", "TILED=YES", "BLOCKXSIZE=16", "BLOCKYSIZE=16"};
  spec.columns = spec.rows = 64;
  writeRaster(folder / "a.tif", spec, nullptr);
  {
    const GdalSession session;
    GDALDataset* file = GDALDataset::Open((folder / "a.tif").c_str(), GDAL_OF_RASTER | GDAL_OF_UPDATE);
    std::vector<float> heights(std::size_t{16} * 16, 77);
    ASSERT_EQ(file->GetRasterBand(1)->RasterIO(GF_Write, 16, 16, 16, 16, heights.data(), 16, 16, GDT_Float32,
                                               0, 0, nullptr),
              CE_None);
    GDALClose(file);
  }
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  EXPECT_EQ(heightAt(library, {latitudeOf(20), longitudeOf(20)}).height, 77);
  EXPECT_EQ(heightAt(library, {latitudeOf(40), longitudeOf(40)}).height, kVoidHeight);
  EXPECT_EQ(heightAt(library, {latitudeOf(15), longitudeOf(20)}).height, kVoidHeight);
}

TEST(Voids, HolesOfAVirtualRasterAreVoids) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, [](int, int) { return 100; });
  test::writeBytes(folder / "holes.vrt",
                   R"(<VRTDataset rasterXSize="300" rasterYSize="100"><SRS>EPSG:4326</SRS>
<GeoTransform>10, 0.01, 0, 51, 0, -0.01</GeoTransform><VRTRasterBand dataType="Float32" band="1">
<SimpleSource><SourceFilename relativeToVRT="1">a.tif</SourceFilename><SourceBand>1</SourceBand>
<SrcRect xOff="0" yOff="0" xSize="100" ySize="100"/><DstRect xOff="0" yOff="0" xSize="100" ySize="100"/></SimpleSource>
<SimpleSource><SourceFilename relativeToVRT="1">a.tif</SourceFilename><SourceBand>1</SourceBand>
<SrcRect xOff="0" yOff="0" xSize="100" ySize="100"/><DstRect xOff="200" yOff="0" xSize="100" ySize="100"/></SimpleSource>
</VRTRasterBand></VRTDataset>)");
  const TerrainLibrary library = libraryOf({(folder / "holes.vrt").string()});
  EXPECT_EQ(heightAt(library, {50.5, longitudeOf(99)}).height, 100)
      << heightAt(library, {50.5, 10.5}).report.reason;
  EXPECT_EQ(heightAt(library, {50.5, longitudeOf(100)}).height, kVoidHeight);
  EXPECT_EQ(heightAt(library, {50.5, longitudeOf(150)}).height, kVoidHeight);
  EXPECT_EQ(heightAt(library, {50.5, longitudeOf(199)}).height, kVoidHeight);
  EXPECT_EQ(heightAt(library, {50.5, longitudeOf(200)}).height, 100);
}

TEST(Voids, TheOuterHalfCellOfAnAreaRasterRepeatsItsEdge) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, [](int column, int row) { return column + 100 * row; });
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  EXPECT_FLOAT_EQ(heightAt(library, {50.995, 10}).height, 0);
  EXPECT_FLOAT_EQ(heightAt(library, {51, 10.995}).height, 99);
  EXPECT_FLOAT_EQ(heightAt(library, {50, 11}).height, 9999);
}

TEST(Voids, WithinACellOfARasterIsAVoidAndFurtherIsOutside) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, [](int, int) { return 100; });
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  const auto near = heightAt(library, {50.5, 11.0099});
  EXPECT_EQ(near.height, kVoidHeight);
  EXPECT_EQ(near.report.status, kSamplerOk);
  EXPECT_EQ(near.report.voids, 1);
  const auto far = heightAt(library, {50.5, 11.0101});
  EXPECT_EQ(far.height, kVoidHeight);
  EXPECT_EQ(far.report.status, kSamplerInvalidData);
  EXPECT_EQ(heightAt(library, {51.0099, 11.0099}).report.status, kSamplerOk);
  EXPECT_EQ(heightAt(library, {51.0101, 10.5}).report.status, kSamplerInvalidData);
  EXPECT_EQ(heightAt(library, {49.9899, 10.5}).report.status, kSamplerInvalidData);
}

TEST(Voids, BeyondTheOuterPostsOfAPointRasterIsAVoidForOneCell) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.points = true;
  writeRaster(folder / "a.tif", spec, [](int, int) { return 100; });
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  EXPECT_EQ(heightAt(library, {50.995, 10.005}).height, 100);
  EXPECT_EQ(heightAt(library, {50.995, 10.004}).height, kVoidHeight);
  EXPECT_EQ(heightAt(library, {50.995, 9.9951}).report.status, kSamplerOk);
  EXPECT_EQ(heightAt(library, {50.995, 9.9949}).report.status, kSamplerInvalidData);
}

TEST(Voids, BesideAVoidTheBivariateMethodFallsBackToFourPosts) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.noData = -1;
  const auto hill = [](int column, int row) {
    return 0.1 * (column - 50) * (column - 50) * (column - 50) + row + 300;
  };
  writeRaster(folder / "whole.tif", spec, hill);
  writeRaster(folder / "hole.tif", spec,
              [&](int column, int row) { return column == 49 && row == 50 ? -1 : hill(column, row); });
  const TerrainLibrary whole = libraryOf({(folder / "whole.tif").string()});
  const TerrainLibrary hole = libraryOf({(folder / "hole.tif").string()});
  const GeoPoint beside{latitudeOf(50.5),
                        longitudeOf(50.5)};  // its sixteen posts hold the hole, its four do not
  EXPECT_NE(heightAt(whole, beside, 1).height, heightAt(whole, beside, 0).height);
  EXPECT_EQ(heightAt(hole, beside, 1).height, heightAt(whole, beside, 0).height);
  // At the edge too.
  const GeoPoint edge{latitudeOf(0.5), longitudeOf(20.5)};
  EXPECT_EQ(heightAt(whole, edge, 1).height, heightAt(whole, edge, 0).height);
}

}  // namespace
}  // namespace zel
