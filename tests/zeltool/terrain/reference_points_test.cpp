// Real tiles, in the folder named by the environment variable ZEL_TEST_DATA, against heights computed by
// other means.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "foundation/text.h"
#include "platform/terrain.h"
#include "rasters.h"
#include "zeltool/terrain/raster_info.h"

namespace zel {
namespace {

class RealTiles : public testing::Test {
 protected:
  void SetUp() override {
    const char* folder = std::getenv("ZEL_TEST_DATA");
    if (!folder)
      GTEST_SKIP() << "ZEL_TEST_DATA names no folder of real tiles; their heights are not checked.";
    folder_ = folder;
  }
  std::string path(const std::string& name) const { return folder_ + "/" + name; }
  std::string folder_;
};

// Posts and voids exactly, heights between posts within 1 mm.
TEST_F(RealTiles, GiveTheReferenceHeights) {
  const TerrainLibrary library =
      test::libraryOf({path("N42E001.hgt"), path("N43E007.hgt"), path("S29W072.hgt")});
  std::ifstream file(path("reference_points.csv"));
  std::string line;
  std::getline(file, line);
  int checked = 0;
  while (std::getline(file, line)) {
    std::vector<std::string> fields;
    std::stringstream stream(line);
    for (std::string field; std::getline(stream, field, ',');) fields.push_back(std::string(trimmed(field)));
    ASSERT_EQ(fields.size(), 7U) << line;
    if (fields[6].ends_with('\r')) fields[6].pop_back();
    const GeoPoint position{std::stod(fields[4]), std::stod(fields[5])};
    const auto result = test::heightAt(library, position);
    EXPECT_EQ(result.report.status, 0) << line;
    if (fields[6] == "void") {
      EXPECT_EQ(result.height, kVoidHeight) << line;
    } else {
      EXPECT_NEAR(static_cast<double>(result.height), std::stod(fields[6]),
                  fields[1] == "bilinear" ? 1e-3 : 0)
          << line;
    }
    if (fields[1] != "bilinear" && fields[6] != "void") {
      EXPECT_EQ(test::heightAt(library, position, 1).height, result.height) << line;
    }
    ++checked;
  }
  EXPECT_EQ(checked, 36);
}

TEST_F(RealTiles, AreDescribed) {
  const RasterInfo info = describeRaster(path("N42E001.hgt"));
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.driver, "SRTMHGT");
  EXPECT_EQ(info.columns, 1201);
  EXPECT_EQ(info.voids, 7652);
  EXPECT_EQ(info.highest, 3100);
  EXPECT_TRUE(info.postsOnCorners);
  EXPECT_EQ(info.verticalDatum, "unknown");
  EXPECT_EQ(describeRaster(path("N43E007.hgt")).voids, 1595);
  const RasterInfo dted = describeRaster(path("n43.dt0"));
  EXPECT_EQ(dted.problem, "");
  EXPECT_EQ(dted.horizontalDatum, "World Geodetic System 1984");
  EXPECT_EQ(dted.verticalDatum, "MSL");
  EXPECT_NEAR(dted.south, 43, 1e-9);
  EXPECT_NEAR(dted.west, -80, 1e-9);
  const RasterInfo oregon = describeRaster(path("oregon_10s_4269_float32.tif"));
  EXPECT_EQ(oregon.horizontalDatum, "North American Datum 1983");
  EXPECT_EQ(oregon.dataType, "Float32");
}

TEST_F(RealTiles, OutsideTheBorderOfARasterAreVoids) {
  const TerrainLibrary library = test::libraryOf({path("luxembourg_30s.tif")});
  EXPECT_EQ(test::heightAt(library, {50.1, 5.8}).height, kVoidHeight);
  EXPECT_GT(test::heightAt(library, {49.75, 6.1}).height, 100);
}

}  // namespace
}  // namespace zel
