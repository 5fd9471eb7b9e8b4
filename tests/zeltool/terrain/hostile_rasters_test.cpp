// Files that are damaged, foreign or made to do harm: a reason in words or voids, never a crash, never sea
// level.
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <set>

#include "platform/terrain.h"
#include "rasters.h"
#include "zeltool/terrain/raster_info.h"

namespace zel {
namespace {

using test::heightAt;
using test::libraryOf;
using test::RasterSpec;
using test::TemporaryFolder;
using test::writeBytes;
using test::writeRaster;

class HostileRasters : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  // The only file of a source: status 1, and the reason names source, file and why.
  void expectRefused(const std::string& name, const std::string& why) const {
    const auto result = heightAt(libraryOf({path(name)}), {50.5, 10.5});
    EXPECT_EQ(result.report.status, kSamplerConfiguration) << name;
    EXPECT_EQ(result.height, kVoidHeight);
    EXPECT_NE(result.report.reason.find("source 3 \"1 second\""), std::string::npos) << result.report.reason;
    EXPECT_NE(result.report.reason.find(path(name) + ": "), std::string::npos) << result.report.reason;
    EXPECT_NE(result.report.reason.find(why), std::string::npos) << result.report.reason;
    EXPECT_EQ(result.report.warnings.size(), 1U);
  }
  std::string virtualRaster(const std::string& source) const {
    return "<VRTDataset rasterXSize=\"100\" rasterYSize=\"100\"><SRS>EPSG:4326</SRS><GeoTransform>10, 0.01, "
           "0, 51, 0, "
           "-0.01</GeoTransform><VRTRasterBand dataType=\"Float32\" band=\"1\"><SimpleSource><SourceFilename "
           "relativeToVRT=\"0\">" +
           source + "</SourceFilename><SourceBand>1</SourceBand></SimpleSource></VRTRasterBand></VRTDataset>";
  }

  TemporaryFolder folder_;
};

TEST_F(HostileRasters, AMissingFile) { expectRefused("none.tif", "there is no such file or folder"); }

TEST_F(HostileRasters, AFileOfZeroSize) {
  writeBytes(folder_ / "a.tif", "");
  writeBytes(folder_ / "N50E010.hgt", "");
  expectRefused("a.tif", "it is empty");
  expectRefused("N50E010.hgt", "it is empty");
}

TEST_F(HostileRasters, AForeignFile) {
  writeBytes(folder_ / "a.tif", "This is a letter.\n");
  expectRefused("a.tif", "it cannot be opened: ");
  writeBytes(folder_ / "a.txt", "This is a letter.\n");
  expectRefused("a.txt", "it cannot be opened: ");
}

TEST_F(HostileRasters, ATileOfAWrongName) {
  test::writeTile(folder_ / "tile.hgt", [](int, int) { return 5; });
  expectRefused("tile.hgt", "its name does not say where it lies, as N36W085.hgt does");
  test::writeTile(folder_ / "N95E010.hgt", [](int, int) { return 5; });
  expectRefused("N95E010.hgt", "its name does not say where it lies, as N36W085.hgt does");
}

TEST_F(HostileRasters, ATileOfAWrongSize) {
  writeBytes(folder_ / "N50E010.hgt", std::string(2884800, '\1'));
  expectRefused("N50E010.hgt",
                "its size of 2884800 bytes is none of a tile: 1201 x 1201, 3601 x 3601 or 1801 x 3601");
}

TEST_F(HostileRasters, ATruncatedRasterHasVoidsAndAWarning) {
  RasterSpec spec;
  spec.columns = spec.rows = 600;
  spec.corners = {10, 1.0 / 600, 0, 51, 0, -1.0 / 600};
  writeRaster(folder_ / "a.tif", spec, [](int, int) { return 100; });
  std::filesystem::resize_file(folder_ / "a.tif", std::filesystem::file_size(folder_ / "a.tif") / 2);
  const TerrainLibrary library = libraryOf({path("a.tif")});
  const auto north = heightAt(library, {50.9, 10.5}), south = heightAt(library, {50.1, 10.5});
  if (north.report.status != 0) {
    // The directory of cells itself may be lost with the end.
    EXPECT_EQ(north.report.status, kSamplerConfiguration);
  } else {
    EXPECT_EQ(north.height, 100);
    EXPECT_EQ(south.height, kVoidHeight);
    EXPECT_EQ(south.report.status, kSamplerOk);
    ASSERT_EQ(south.report.warnings.size(), 1U);
    EXPECT_EQ(south.report.warnings[0].find(path("a.tif") + ": part of it cannot be read: "), 0U)
        << south.report.warnings[0];
  }
}

TEST_F(HostileRasters, ABrokenTileOfARasterSparesTheOthers) {
  RasterSpec spec;
  spec.columns = spec.rows = 256;
  spec.corners = {10, 1.0 / 256, 0, 51, 0, -1.0 / 256};
  spec.type = GDT_Int16;
  spec.options = {"TILED=YES", "BLOCKXSIZE=64", "BLOCKYSIZE=64", "COMPRESS=DEFLATE"};
  writeRaster(folder_ / "a.tif", spec,
              [](int column, int row) { return 100 + (column * 31 + row * 17) % 50; });
  std::string bytes = test::fileBytes(folder_ / "a.tif");
  for (std::size_t i = bytes.size() - 60; i < bytes.size(); ++i) bytes[i] = '\x55';
  writeBytes(folder_ / "a.tif", bytes);
  const TerrainLibrary library = libraryOf({path("a.tif")});
  const auto broken = heightAt(library, {50.05, 10.95}), whole = heightAt(library, {50.95, 10.05});
  EXPECT_EQ(broken.height, kVoidHeight);
  EXPECT_EQ(broken.report.warnings.size(), 1U);
  EXPECT_GE(whole.height, 100);
}

TEST_F(HostileRasters, TwoThousandMillionColumns) {
  writeBytes(folder_ / "huge.vrt",
             R"(<VRTDataset rasterXSize="2147483647" rasterYSize="2147483647"><SRS>EPSG:4326</SRS>
<GeoTransform>10, 0.000000001, 0, 51, 0, -0.000000001</GeoTransform><VRTRasterBand dataType="Float32" band="1"/></VRTDataset>)");
  expectRefused("huge.vrt", "its size of 2147483647 x 2147483647 cells is not credible");
  writeBytes(folder_ / "huge.asc",
             "ncols 2147483647\nnrows 2147483647\nxllcorner 10\nyllcorner 50\ncellsize 0.0000001\n1 2 3\n");
  expectRefused("huge.asc", "");
}

// A TIFF of a few bytes that claims 100,000 x 100,000 cells in one strip.
TEST_F(HostileRasters, AnAbsurdBlockSize) {
  const auto entry = [](int tag, int type, unsigned value) {
    std::string e;
    for (const unsigned part : {static_cast<unsigned>(tag), static_cast<unsigned>(type)})
      for (int i = 0; i < 2; ++i) e.push_back(static_cast<char>(part >> (8 * i)));
    for (const unsigned part : {1U, value})
      for (int i = 0; i < 4; ++i) e.push_back(static_cast<char>(part >> (8 * i)));
    return e;
  };
  std::string tiff("II*\0\x08\0\0\0\x09\0", 10);
  tiff += entry(256, 4, 100000) + entry(257, 4, 100000) + entry(258, 3, 16) + entry(259, 3, 1) +
          entry(262, 3, 1) + entry(273, 4, 8) + entry(277, 3, 1) + entry(278, 4, 100000) +
          entry(279, 4, 4000000000U);
  tiff += std::string(4, '\0');
  writeBytes(folder_ / "a.tif", tiff);
  expectRefused("a.tif", "");
}

// Each window of 512 rows would have to decode 512 whole rows: 614 MB.
TEST_F(HostileRasters, RowsTooLongToReadInWindows) {
  CPLStringList options;
  options.AddNameValue("SPARSE_OK", "TRUE");
  GDALAllRegister();
  GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
  GDALDataset* dataset = driver->Create(path("a.tif").c_str(), 600'000, 16, 1, GDT_UInt16, options.List());
  std::array<double, 6> placed{10, 1e-6, 0, 51, 0, -1e-6};
  dataset->SetGeoTransform(placed.data());
  GDALClose(dataset);
  expectRefused("a.tif", "its rows of 600000 cells are too long to read");
}

TEST_F(HostileRasters, APositionThatIsNotFinite) {
  for (const char* numbers : {"nan, 0.01, 0, 51, 0, -0.01", "10, inf, 0, 51, 0, -0.01", "10, 0, 0, 51, 0, 0",
                              "10, 1e-300, 0, 51, 0, -1e-300"}) {
    writeBytes(folder_ / "a.vrt",
               "<VRTDataset rasterXSize=\"100\" rasterYSize=\"100\"><SRS>EPSG:4326</SRS><GeoTransform>" +
                   std::string(numbers) +
                   "</GeoTransform><VRTRasterBand dataType=\"Float32\" band=\"1\"/></VRTDataset>");
    expectRefused("a.vrt", "its ");
  }
}

TEST_F(HostileRasters, ARasterThatDoesNotSayWhereItLies) {
  writeBytes(folder_ / "a.vrt",
             "<VRTDataset rasterXSize=\"10\" rasterYSize=\"10\"><VRTRasterBand dataType=\"Float32\" "
             "band=\"1\"/></VRTDataset>");
  expectRefused("a.vrt", "it does not say where it lies");
}

// Grads that lie far off the earth come back from the transformation as degrees that mean nothing; such an
// extent once overran the index.
TEST_F(HostileRasters, AnExtentThatTheTransformationMakesNonsenseOf) {
  RasterSpec spec;
  spec.crs = "EPSG:4807";
  spec.corners = {1e19, 1e17, 0, 1e21, 0, -1e17};
  writeRaster(folder_ / "a.tif", spec, [](int, int) { return 1; });
  expectRefused("a.tif", "its extent has no place on the earth");
}

TEST_F(HostileRasters, CellsOfInfinityAndNaNAreVoids) {
  writeRaster(folder_ / "a.tif", {}, [](int column, int row) {
    return (column + row) % 2 == 0 ? std::numeric_limits<double>::infinity()
                                   : std::numeric_limits<double>::quiet_NaN();
  });
  const auto result = heightAt(libraryOf({path("a.tif")}), {50.5, 10.5});
  EXPECT_EQ(result.height, kVoidHeight);
  EXPECT_EQ(result.report.status, kSamplerOk);
}

TEST_F(HostileRasters, AScaleOfNothingIsRefused) {
  writeBytes(folder_ / "a.vrt",
             "<VRTDataset rasterXSize=\"10\" rasterYSize=\"10\"><GeoTransform>10, 0.01, 0, 51, 0, "
             "-0.01</GeoTransform><VRTRasterBand dataType=\"Float32\" "
             "band=\"1\"><Scale>0</Scale></VRTRasterBand></VRTDataset>");
  expectRefused("a.vrt", "its scale and offset of heights are not usable");
}

TEST_F(HostileRasters, AVirtualRasterThatRefersToItself) {
  writeBytes(folder_ / "a.vrt", virtualRaster(path("a.vrt")));
  expectRefused("a.vrt", "it refers to itself");
  writeBytes(folder_ / "b.vrt", virtualRaster(path("c.vrt")));
  writeBytes(folder_ / "c.vrt", virtualRaster(path("b.vrt")));
  expectRefused("b.vrt", "it refers to itself");
}

TEST_F(HostileRasters, AVirtualRasterThatRefersToTheNetwork) {
  for (const char* address :
       {"/vsicurl/http://127.0.0.1:9/a.tif", "http://127.0.0.1:9/a.tif", "https://127.0.0.1:9/a.tif",
        "/vsis3/bucket/a.tif", "WMS:http://127.0.0.1:9/?", "PG:host=127.0.0.1", "/vsigzip//vsicurl/http://a",
        "/vsizip//vsicurl/http://127.0.0.1:9/a.zip", "&lt;GDAL_WMS&gt;", "", "/vsistdin/"}) {
    writeBytes(folder_ / "a.vrt", virtualRaster(address));
    expectRefused("a.vrt", "which is no file on this machine");
  }
}

TEST_F(HostileRasters, AVirtualRasterThatRefersToTheNetworkThroughAnotherFile) {
  writeBytes(folder_ / "inner.vrt", virtualRaster("/vsicurl/http://127.0.0.1:9/a.tif"));
  writeBytes(folder_ / "outer.vrt", virtualRaster(path("inner.vrt")));
  expectRefused("outer.vrt", "which is no file on this machine");
  writeBytes(
      folder_ / "service.xml",
      "<GDAL_WMS><Service name=\"TMS\"><ServerUrl>http://127.0.0.1:9/</ServerUrl></Service></GDAL_WMS>");
  writeBytes(folder_ / "service.vrt", virtualRaster(path("service.xml")));
  expectRefused("service.vrt", "whose format (WMS) is not read");
  expectRefused("service.xml", "its format (WMS) is not read");
}

TEST_F(HostileRasters, AVirtualRasterOverAMissingFileIsVoid) {
  writeBytes(folder_ / "a.vrt", virtualRaster(path("gone.tif")));
  const auto result = heightAt(libraryOf({path("a.vrt")}), {50.5, 10.5});
  EXPECT_EQ(result.height, kVoidHeight);
  ASSERT_EQ(result.report.warnings.size(), 1U);
  EXPECT_NE(result.report.warnings[0].find(path("a.vrt")), std::string::npos);
}

TEST_F(HostileRasters, AVirtualRasterWhoseTextIsBroken) {
  writeBytes(folder_ / "a.vrt", "<VRTDataset rasterXSize=\"10\"");
  expectRefused("a.vrt", "its text cannot be read");
}

TEST_F(HostileRasters, PicturesAreNoTerrain) {
  RasterSpec spec;
  spec.type = GDT_Byte;
  spec.bands = 3;
  writeRaster(folder_ / "photo.tif", spec, [](int, int) { return 100; });
  expectRefused("photo.tif", "it is a colour picture, not heights");
  spec.bands = 1;
  spec.options = {"PHOTOMETRIC=PALETTE"};
  writeRaster(folder_ / "map.tif", spec, [](int, int) { return 1; });
  expectRefused("map.tif", "it is a picture with a palette, not heights");
}

TEST_F(HostileRasters, ComplexNumbersAreNoTerrain) {
  RasterSpec spec;
  spec.type = GDT_CFloat32;
  writeRaster(folder_ / "a.tif", spec, [](int, int) { return 1; });
  expectRefused("a.tif", "its cells are complex numbers, not heights");
}

TEST_F(HostileRasters, AFolderWithoutRasters) {
  std::filesystem::create_directory(folder_ / "empty");
  writeBytes(folder_ / "empty/readme.txt", "nothing");
  expectRefused("empty", "the folder holds no raster");
}

TEST_F(HostileRasters, APipeOrADeviceIsNotOpened) {
  ASSERT_EQ(::mkfifo((folder_ / "pipe.tif").c_str(), 0600), 0);
  expectRefused("pipe.tif", "it is no ordinary file");
}

// Ends the tests when reading waits at a pipe.
class Deadline {
 public:
  Deadline() { ::alarm(60); }
  ~Deadline() { ::alarm(0); }
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
};

TEST_F(HostileRasters, APipeThatAVirtualRasterNamesIsNotOpened) {
  const Deadline deadline;
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  writeBytes(folder_ / "a.vrt", virtualRaster(path("pipe")));
  expectRefused("a.vrt", "it refers to " + path("pipe") + ", which is no ordinary file");
  writeBytes(folder_ / "b.vrt", virtualRaster("/dev/zero"));
  expectRefused("b.vrt", "it refers to /dev/zero, which is no ordinary file");
  writeBytes(folder_ / "outer.vrt", virtualRaster(path("a.vrt")));
  expectRefused("outer.vrt", "which is no ordinary file");
}

TEST_F(HostileRasters, APipeBesideARasterIsNotOpened) {
  const Deadline deadline;
  for (const char* companion : {"a.tif.aux.xml", "a.tif.msk", "a.tif.ovr", "a.aux", "a.AUX", "a.tfw", "a.TFW",
                                "a.prj", "a.tif.xml", "a.tab", "a.wld", "a.hdr"}) {
    const TemporaryFolder other;
    writeRaster(other / "a.tif", {}, [](int, int) { return 100; });
    ASSERT_EQ(::mkfifo((other / companion).c_str(), 0600), 0);
    const RasterInfo info = describeRaster((other / "a.tif").string());
    EXPECT_EQ(info.problem, "its companion " + std::string(companion) + " is no ordinary file");
  }
  writeBytes(folder_ / "b.asc", "ncols 2\nnrows 2\nxllcorner 10\nyllcorner 50\ncellsize 0.5\n1 2\n3 4\n");
  EXPECT_EQ(describeRaster(path("b.asc")).problem, "");
  ASSERT_EQ(::mkfifo(path("b.prj").c_str(), 0600), 0);
  expectRefused("b.asc", "its companion b.prj is no ordinary file");
}

TEST_F(HostileRasters, APipeBesideARasterThatAVirtualOneNamesIsNotOpened) {
  const Deadline deadline;
  writeRaster(folder_ / "a.tif", {}, [](int, int) { return 100; });
  writeBytes(folder_ / "a.vrt", virtualRaster(path("a.tif")));
  EXPECT_EQ(describeRaster(path("a.vrt")).problem, "");
  ASSERT_EQ(::mkfifo(path("a.tif.msk").c_str(), 0600), 0);
  expectRefused("a.vrt", "its companion a.tif.msk is no ordinary file");
}

TEST_F(HostileRasters, ACompanionMaskIsHeldToTheSameRules) {
  writeRaster(folder_ / "a.tif", {}, [](int, int) { return 100; });
  writeBytes(folder_ / "a.tif.msk", virtualRaster("/vsicurl/http://127.0.0.1:9/a.tif"));
  expectRefused("a.tif", "which is no file on this machine");
  writeBytes(folder_ / "a.tif.msk", "<GDAL_WMS><Service name=\"TMS\"></Service></GDAL_WMS>");
  expectRefused("a.tif", "whose format (WMS) is not read");
}

// Opened, such a file would be given an index and its data, or be filled as a cache.
TEST_F(HostileRasters, AFormatThatWritesBesideItsFilesIsNotRead) {
  RasterSpec spec;
  spec.driver = "MRF";
  spec.type = GDT_Byte;
  writeRaster(folder_ / "a.mrf", spec, [](int, int) { return 100; });
  std::filesystem::remove(folder_ / "a.idx");
  const auto contents = [this] {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
      files[entry.path().filename().string()] = test::fileBytes(entry.path());
    return files;
  };
  const auto before = contents();
  expectRefused("a.mrf", "its format (MRF) is not read");
  EXPECT_EQ(describeRaster(path("a.mrf")).problem, "its format (MRF) is not read");
  EXPECT_EQ(contents(), before);
  writeBytes(folder_ / "b.vrt", virtualRaster(path("a.mrf")));
  expectRefused("b.vrt", "whose format (MRF) is not read");
}

TEST_F(HostileRasters, FormatsThatFollowAddressesInTheirTextAreNotRead) {
  writeBytes(folder_ / "a.kml",
             "<?xml version=\"1.0\"?><kml><Document><Region><LatLonAltBox><north>51</north><south>50</south>"
             "<east>11</east><west>10</west></LatLonAltBox></Region><NetworkLink><href>/vsicurl/"
             "http://127.0.0.1:9/a.kml</href></NetworkLink><GroundOverlay><Icon><href>/vsicurl/"
             "http://127.0.0.1:9/a.png</href></Icon></GroundOverlay></Document></kml>");
  expectRefused("a.kml", "its format (KMLSUPEROVERLAY) is not read");
  writeBytes(
      folder_ / "a.ers",
      "DatasetHeader Begin\n DataFile = \"/vsicurl/http://127.0.0.1:9/a\"\n RasterInfo Begin\n  "
      "CellType = IEEE4ByteReal\n  NrOfLines = 2\n  NrOfCellsPerLine = 2\n  NrOfBands = 1\n RasterInfo "
      "End\nDatasetHeader End\n");
  expectRefused("a.ers", "its format (ERS) is not read");
}

TEST_F(HostileRasters, PositionsOutOfOtherFilesAreNotFollowed) {
  std::string text = virtualRaster(path("gone.tif"));
  text.insert(text.find("<VRTRasterBand"),
              "<Metadata domain=\"GEOLOCATION\"><MDI key=\"X_DATASET\">/vsicurl/http://127.0.0.1:9/x</MDI>"
              "</Metadata>");
  writeBytes(folder_ / "a.vrt", text);
  expectRefused("a.vrt", "it takes positions from other files");
}

TEST(GdalSession, FetchesNothingWhileItLastsAndPutsTheThreadsSettingsBack) {
  const char* const key = "CPL_VSIL_CURL_ALLOWED_FILENAME";
  CPLSetThreadLocalConfigOption(key, "/vsicurl/x");
  {
    const GdalSession session;
    EXPECT_STREQ(CPLGetConfigOption(key, ""), "none");
    EXPECT_EQ(VSIFOpenL("/vsicurl/http://127.0.0.1:9/a.tif", "rb"), nullptr);
    const GdalSession inner;
    EXPECT_STREQ(CPLGetConfigOption(key, ""), "none");
  }
  EXPECT_STREQ(CPLGetConfigOption(key, ""), "/vsicurl/x");
  CPLSetThreadLocalConfigOption(key, nullptr);
}

TEST(GdalSession, KeepsTheLibrarysOwnCacheOfBlocksSmall) {
  const GdalSession session;
  EXPECT_LE(GDALGetCacheMax64(), GIntBig{128} << 20);
}

TEST(GdalSession, ReadsTheFormatsThatItAllows) {
  std::set<std::string> names;
  for (const char* const* name = localRasterDrivers(); *name; ++name) names.insert(*name);
  for (const char* name : {"GTiff", "SRTMHGT", "DTED", "VRT", "AAIGrid", "EHdr", "ENVI", "HFA", "USGSDEM"})
    EXPECT_EQ(names.count(name), 1U) << name;
  for (const char* name : {"MRF", "ERS", "PDS", "PDS4", "ISIS3", "KMLSUPEROVERLAY", "WMS", "HTTP", "GPKG",
                           "STACTA", "DERIVED", "HDF5", "Zarr"})
    EXPECT_EQ(names.count(name), 0U) << name;
}

TEST_F(HostileRasters, ADamagedArchive) {
  writeBytes(folder_ / "N50E010.hgt.zip", "PK\3\4 and no more");
  expectRefused("N50E010.hgt.zip", "the archive ");
}

TEST_F(HostileRasters, OneBadFileIsOneWarningAndTheOthersServe) {
  writeRaster(folder_ / "good.tif", {}, [](int, int) { return 100; });
  writeBytes(folder_ / "bad.tif", "bad");
  writeBytes(folder_ / "S99E010.hgt", "bad");
  const TerrainLibrary library = libraryOf({folder_.path().string()});
  const SampleResult result = library.sample({{50.4, 10.4}, {50.6, 10.6}, 50, 0, 3, true});
  EXPECT_EQ(result.report.status, kSamplerOk) << result.report.reason;
  EXPECT_EQ(result.report.warnings.size(), 2U);
  EXPECT_EQ(result.report.files, std::vector<std::string>{path("good.tif")});
}

TEST_F(HostileRasters, ManyBadFilesAreCountedNotListed) {
  writeRaster(folder_ / "good.tif", {}, [](int, int) { return 100; });
  for (int i = 0; i < 30; ++i) writeBytes(folder_ / ("bad" + std::to_string(i) + ".tif"), "bad");
  const auto result = heightAt(libraryOf({folder_.path().string()}), {50.5, 10.5});
  ASSERT_EQ(result.report.warnings.size(), 21U);
  EXPECT_EQ(result.report.warnings.back(), "and 10 more files that could not be used");
}

TEST_F(HostileRasters, NothingIsWrittenToStandardError) {
  writeBytes(folder_ / "bad.tif", "II*garbage garbage garbage");
  writeBytes(folder_ / "bad.vrt", "<VRTDataset><bad");
  writeBytes(folder_ / "N50E010.hgt", "bad");
  testing::internal::CaptureStderr();
  heightAt(libraryOf({folder_.path().string()}), {50.5, 10.5});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(HostileRasters, AnUnreadableFileOfTheRightSizeIsNoSource) {
  // An archive whose directory is whole and whose content is not.
  const GdalSession session;
  const std::string zip = path("N50E010.hgt.zip");
  VSILFILE* out = VSIFOpenL(("/vsizip/" + zip + "/N50E010.hgt").c_str(), "wb");
  ASSERT_NE(out, nullptr);
  std::string tile =
      test::tileBytes(1201, 1201, [](int column, int row) { return (column * 7919 + row * 104729) % 3000; });
  ASSERT_EQ(VSIFWriteL(tile.data(), 1, tile.size(), out), tile.size());
  VSIFCloseL(out);
  std::string bytes = test::fileBytes(zip);
  for (std::size_t i = 60; i < bytes.size() - 200; ++i) bytes[i] = static_cast<char>(0xFF);
  writeBytes(zip, bytes);
  const auto result = heightAt(libraryOf({zip}), {50.5, 10.5});
  EXPECT_EQ(result.height, kVoidHeight);
  EXPECT_FALSE(result.report.warnings.empty());
}

}  // namespace
}  // namespace zel
