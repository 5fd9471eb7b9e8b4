// Projections, datums, units, data types and formats.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "platform/terrain.h"
#include "rasters.h"
#include "zeltool/terrain/grid_geometry.h"

namespace zel {
namespace {

using test::heightAt;
using test::libraryOf;
using test::RasterSpec;
using test::TemporaryFolder;
using test::writeRaster;

// Coordinates of positions in another system by the transformation of the raster library, axes as x and y.
class Projection {
 public:
  explicit Projection(const std::string& crs) {
    const GdalSession session;
    OGRSpatialReference from, to;
    from.SetWellKnownGeogCS("WGS84");
    to.SetFromUserInput(crs.c_str());
    from.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    to.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    transformation_.reset(OGRCreateCoordinateTransformation(&from, &to));
  }
  GridPoint operator()(GeoPoint position) const {
    GridPoint point{position.longitude, position.latitude};
    EXPECT_TRUE(transformation_ && transformation_->Transform(1, &point.x, &point.y));
    return point;
  }

 private:
  std::unique_ptr<OGRCoordinateTransformation> transformation_;
};

struct System {
  const char* crs;
  GeoPoint middle;
  double cell;  // in the system's unit
};

class Systems : public testing::TestWithParam<System> {};

// A raster of its own x and y as heights tells where it was read: x and y against the transformation, within
// a thousandth of a cell.
TEST_P(Systems, ARasterIsReadWhereItsOwnCoordinatesSay) {
  const System system = GetParam();
  const TemporaryFolder folder;
  const Projection projected(system.crs);
  const GridPoint middle = projected(system.middle);
  RasterSpec spec;
  spec.crs = system.crs;
  spec.columns = spec.rows = 200;
  spec.type = GDT_Float64;
  spec.corners = {middle.x - 100 * system.cell, system.cell, 0,
                  middle.y + 100 * system.cell, 0,           -system.cell};
  writeRaster(folder / "x.tif", spec, [](int column, int) { return column; });
  writeRaster(folder / "y.tif", spec, [](int, int row) { return row; });
  const TerrainLibrary x = libraryOf({(folder / "x.tif").string()}),
                       y = libraryOf({(folder / "y.tif").string()});
  for (const double right : {-60, -7, 0, 33, 80})
    for (const double up : {-80, 0, 41}) {
      const GridPoint wanted{middle.x + (right + 0.25) * system.cell, middle.y + (up - 0.4) * system.cell};
      // The position of that point, by turning the transformation round step by step.
      GeoPoint p = system.middle;
      for (int i = 0; i < 30; ++i) {
        const GridPoint now = projected(p), east = projected({p.latitude, p.longitude + 1e-5}),
                        north = projected({p.latitude + 1e-5, p.longitude});
        const double a = (east.x - now.x) / 1e-5, b = (north.x - now.x) / 1e-5, c = (east.y - now.y) / 1e-5,
                     d = (north.y - now.y) / 1e-5, determinant = a * d - b * c;
        const double dx = wanted.x - now.x, dy = wanted.y - now.y;
        p.longitude += (d * dx - b * dy) / determinant;
        p.latitude += (a * dy - c * dx) / determinant;
      }
      for (const std::int32_t method : {0, 1}) {
        const auto column = heightAt(x, p, method), row = heightAt(y, p, method);
        ASSERT_EQ(column.report.status, 0) << column.report.reason;
        EXPECT_NEAR(column.height, 99.5 + right + 0.25, 1e-3) << system.crs;
        EXPECT_NEAR(row.height, 99.5 - up + 0.4, 1e-3) << system.crs;
      }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Named, Systems,
    testing::Values(System{"EPSG:4326", {36.3, -84.2}, 0.001},
                    System{"EPSG:32616", {36.3, -84.2}, 30},    // UTM 16 north
                    System{"EPSG:32719", {-28.5, -70.5}, 30},   // UTM 19 south
                    System{"EPSG:3413", {89.5, 20}, 500},       // polar stereographic, at the pole
                    System{"EPSG:3031", {-85, 100}, 500},       // the same, south
                    System{"EPSG:5070", {36.3, -84.2}, 100},    // Albers on NAD83
                    System{"EPSG:2274", {36.3, -84.2}, 100},    // state plane in survey feet
                    System{"EPSG:3857", {36.3, -84.2}, 50},     // spherical Mercator
                    System{"EPSG:3832", {10, 179.99}, 100},     // Mercator about 150 east
                    System{"EPSG:32601", {10, -179.9}, 200},    // UTM 1, over the antimeridian
                    System{"EPSG:4267", {36.3, -84.2}, 0.001},  // NAD27
                    System{"EPSG:4807", {48.8, 2.3}, 0.001},    // grads from Paris
                    System{"EPSG:2193", {-41, 174}, 50},        // northing first
                    System{"EPSG:27700", {52, -1}, 50}));       // another ellipsoid

TEST(Datums, NorthAmerican1983IsReadAsItStands) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.crs = "EPSG:4269";
  spec.corners = {-85, 0.01, 0, 37, 0, -0.01};
  writeRaster(folder / "a.tif", spec, [](int column, int) { return column; });
  EXPECT_FLOAT_EQ(heightAt(libraryOf({(folder / "a.tif").string()}), {36.5, -84.5}).height, 49.5);
}

TEST(Datums, ARasterWithoutCoordinateSystemIsInDegrees) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.crs = "";
  writeRaster(folder / "a.tif", spec, [](int column, int) { return column; });
  EXPECT_FLOAT_EQ(heightAt(libraryOf({(folder / "a.tif").string()}), {50.5, 10.5}).height, 49.5);
}

TEST(Datums, ARasterWithoutCoordinateSystemThatFitsNoDegreesIsRefused) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.crs = "";
  spec.corners = {500000, 30, 0, 4100000, 0, -30};
  const std::string path = (folder / "a.tif").string();
  writeRaster(path, spec, [](int, int) { return 1; });
  const auto result = heightAt(libraryOf({path}), {36.5, -84.5});
  EXPECT_EQ(result.report.status, kSamplerConfiguration);
  EXPECT_EQ(
      result.report.reason,
      "Terrain source 3 \"1 second\" (" + path + ") has no usable raster: " + path +
          ": it names no coordinate system, and its extent in degrees is no part of the earth; give rasters "
          "of heights that GDAL can open: set the source's files or folders (setting Terrain/Source3)");
}

struct Type {
  GDALDataType type;
  double lowest;
};

class Types : public testing::TestWithParam<Type> {};

TEST_P(Types, EveryTypeOfCellIsRead) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.type = GetParam().type;
  const double lowest = GetParam().lowest;
  writeRaster(folder / "a.tif", spec, [&](int column, int row) { return lowest + column + row; });
  EXPECT_FLOAT_EQ(heightAt(libraryOf({(folder / "a.tif").string()}), {50.5, 10.5}).height,
                  static_cast<float>(lowest + 99));
}

INSTANTIATE_TEST_SUITE_P(Cells, Types,
                         testing::Values(Type{GDT_Byte, 0}, Type{GDT_Int16, -400}, Type{GDT_UInt16, 8000},
                                         Type{GDT_Int32, -400}, Type{GDT_UInt32, 8000}, Type{GDT_Int64, -400},
                                         Type{GDT_UInt64, 8000}, Type{GDT_Float32, -400.5},
                                         Type{GDT_Float64, 8000.25}));

TEST(Units, FeetBecomeMetres) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.unit = "ft";
  writeRaster(folder / "a.tif", spec, [](int, int) { return 1000; });
  EXPECT_FLOAT_EQ(heightAt(libraryOf({(folder / "a.tif").string()}), {50.5, 10.5}).height, 304.8F);
  spec.unit = "US survey foot";
  writeRaster(folder / "b.tif", spec, [](int, int) { return 3937; });
  EXPECT_FLOAT_EQ(heightAt(libraryOf({(folder / "b.tif").string()}), {50.5, 10.5}).height, 1200);
}

TEST(Units, TheHeightSystemsUnitCountsWhereTheBandNamesNone) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.corners = {-85, 0.01, 0, 37, 0, -0.01};
  spec.crs = "EPSG:4269+6360";  // NAVD88 in survey feet
  writeRaster(folder / "a.tif", spec, [](int, int) { return 3937; });
  EXPECT_FLOAT_EQ(heightAt(libraryOf({(folder / "a.tif").string()}), {36.5, -84.5}).height, 1200);
}

TEST(Units, ScaleAndOffsetAreApplied) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.type = GDT_Int16;
  spec.scale = 0.1;
  spec.offset = 200;
  spec.unit = "ft";
  spec.noData = 0;
  writeRaster(folder / "a.tif", spec, [](int column, int) { return column == 50 ? 0 : 5000; });
  const TerrainLibrary library = libraryOf({(folder / "a.tif").string()});
  EXPECT_FLOAT_EQ(heightAt(library, {50.5, 10.2}).height, 700 * 0.3048F);
  EXPECT_EQ(heightAt(library, {50.5, 10.505}).height, kVoidHeight);
}

TEST(Units, AnUnknownUnitIsTakenAsMetresAndSaid) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.unit = "cubit";
  const std::string path = (folder / "a.tif").string();
  writeRaster(path, spec, [](int, int) { return 10; });
  const auto result = heightAt(libraryOf({path}), {50.5, 10.5});
  EXPECT_EQ(result.height, 10);
  EXPECT_EQ(result.report.warnings,
            std::vector<std::string>{
                path + ": its heights are in \"cubit\", an unknown unit, and are taken as metres"});
}

TEST(Formats, TheRowsOfATextGridAreRead) {
  const TemporaryFolder folder;
  test::writeBytes(
      folder / "a.asc",
      "ncols 3\nnrows 2\nxllcorner 10\nyllcorner 50\ncellsize 1\nNODATA_value -9999\n1 2 3\n4 -9999 6\n");
  const TerrainLibrary library = libraryOf({folder.path().string()});
  EXPECT_EQ(heightAt(library, {51.5, 10.5}).height, 1) << heightAt(library, {51.5, 10.5}).report.reason;
  EXPECT_EQ(heightAt(library, {50.5, 12.5}).height, 6);
  EXPECT_EQ(heightAt(library, {50.5, 11.5}).height, kVoidHeight);
}

TEST(Formats, BinaryGridsBesideTheirHeadersAreRead) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.driver = "EHdr";
  spec.type = GDT_Int16;
  writeRaster(folder / "a.bil", spec, [](int column, int) { return column; });
  EXPECT_TRUE(std::filesystem::exists(folder / "a.hdr"));
  const auto result = heightAt(libraryOf({folder.path().string()}), {50.5, 10.5});
  EXPECT_FLOAT_EQ(result.height, 49.5) << result.report.reason;
  EXPECT_TRUE(result.report.warnings.empty());
}

TEST(Formats, VirtualRastersOverLocalFilesAreRead) {
  const TemporaryFolder folder;
  writeRaster(folder / "a.tif", {}, [](int column, int) { return column; });
  test::writeBytes(folder / "a.vrt", R"(<VRTDataset rasterXSize="100" rasterYSize="100"><SRS>EPSG:4326</SRS>
<GeoTransform>10, 0.01, 0, 51, 0, -0.01</GeoTransform><VRTRasterBand dataType="Float32" band="1"><SimpleSource>
<SourceFilename relativeToVRT="1">a.tif</SourceFilename><SourceBand>1</SourceBand></SimpleSource></VRTRasterBand></VRTDataset>)");
  const auto result = heightAt(libraryOf({(folder / "a.vrt").string()}), {50.5, 10.5});
  EXPECT_FLOAT_EQ(result.height, 49.5) << result.report.reason;
}

TEST(Formats, OnlyTheFirstBandIsRead) {
  const TemporaryFolder folder;
  RasterSpec spec;
  spec.bands = 2;
  writeRaster(folder / "a.tif", spec, [](int, int) { return 5; });
  EXPECT_EQ(heightAt(libraryOf({(folder / "a.tif").string()}), {50.5, 10.5}).height, 5);
}

}  // namespace
}  // namespace zel
