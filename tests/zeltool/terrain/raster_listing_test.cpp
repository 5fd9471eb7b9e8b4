#include "zeltool/terrain/raster_listing.h"

#include <gtest/gtest.h>

#include "platform/terrain.h"
#include "rasters.h"
#include "zeltool/terrain/raster_info.h"
#include "zeltool/terrain/source_index.h"

namespace zel {
namespace {

using test::heightAt;
using test::libraryOf;
using test::TemporaryFolder;
using test::writeBytes;

void writeZip(const std::string& zip, const std::string& entry, const std::string& bytes) {
  const GdalSession session;
  VSILFILE* out = VSIFOpenL(("/vsizip/" + zip + "/" + entry).c_str(), "wb");
  ASSERT_NE(out, nullptr);
  ASSERT_EQ(VSIFWriteL(bytes.data(), 1, bytes.size(), out), bytes.size());
  VSIFCloseL(out);
}

std::string tile(int height) {
  return test::tileBytes(1201, 1201, [height](int, int) { return height; });
}

TEST(RasterListing, AFolderIsSearchedWithItsSubfoldersInOrder) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "b/deep");
  for (const char* name : {"z.tif", "a.tif", "b/deep/m.dt1", "b/n.hgt"}) writeBytes(folder / name, "x");
  EXPECT_EQ(rasterFiles(folder.path().string()),
            (std::vector<std::string>{(folder / "a.tif").string(), (folder / "b/deep/m.dt1").string(),
                                      (folder / "b/n.hgt").string(), (folder / "z.tif").string()}));
}

TEST(RasterListing, FilesThatAccompanyRastersArePassedOver) {
  const TemporaryFolder folder;
  for (const char* name : {"a.tif", "a.tif.aux.xml", "a.prj", "a.tfw", "a.hdr", "a.TXT", "a.csv", "a.tif.ovr",
                           "a.tif.msk", ".hidden.tif", "README", "a.pdf", "a.md", "a.num", "a.swb",
                           "thumbnail.jpg", "E020N40.GIF", "E020N40.SRC", "E020N40.SCH"})
    writeBytes(folder / name, "x");
  EXPECT_EQ(rasterFiles(folder.path().string()), std::vector<std::string>{(folder / "a.tif").string()});
  EXPECT_TRUE(listRasters(folder.path().string()).problems.empty());
}

// As Copernicus, AW3D30, ASTER and TanDEM-X tiles come.
TEST(RasterListing, MasksOfATileBesideItsHeightsArePassedOver) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "AUXFILES");
  std::filesystem::create_directories(folder / "DEM");
  for (const char* name :
       {"AUXFILES/Copernicus_DSM_10_N46_00_E009_00_EDM.tif",
        "AUXFILES/Copernicus_DSM_10_N46_00_E009_00_HEM.tif",
        "AUXFILES/Copernicus_DSM_10_N46_00_E009_00_WBM.tif", "DEM/Copernicus_DSM_10_N46_00_E009_00_DEM.tif",
        "ALPSMLC30_N036W085_DSM.tif", "ALPSMLC30_N036W085_MSK.tif", "ALPSMLC30_N036W085_STK.tif",
        "ASTGTMV003_N36W085_dem.tif", "ASTGTMV003_N36W085_num.tif", "mine_num.tif", "lonely_MSK.tif"})
    writeBytes(folder / name, "x");
  const RasterListing listing = listRasters(folder.path().string());
  std::vector<std::string> names;
  for (const RasterCandidate& raster : listing.rasters) names.push_back(raster.name);
  EXPECT_EQ(names, (std::vector<std::string>{"ALPSMLC30_N036W085_DSM.tif", "ASTGTMV003_N36W085_dem.tif",
                                             "Copernicus_DSM_10_N46_00_E009_00_DEM.tif", "lonely_MSK.tif",
                                             "mine_num.tif"}));
  EXPECT_TRUE(listing.problems.empty());
  const std::string mask = (folder / "ALPSMLC30_N036W085_MSK.tif").string();
  EXPECT_EQ(rasterFiles(mask), std::vector<std::string>{mask}) << "named outright";
}

TEST(RasterListing, AFileThatIsNamedIsTakenWhateverItsEnding) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.txt", "x");
  EXPECT_EQ(rasterFiles((folder / "a.txt").string()), std::vector<std::string>{(folder / "a.txt").string()});
}

TEST(RasterListing, LinksThatLeadBackAreFollowedOnce) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "a");
  writeBytes(folder / "a/a.tif", "x");
  std::filesystem::create_directory_symlink(folder.path(), folder / "a/back");
  EXPECT_EQ(rasterFiles(folder.path().string()).size(), 1U);
}

TEST(RasterListing, APathWithoutAnythingIsAProblemInWords) {
  const RasterListing listing = listRasters("/no/such/place");
  EXPECT_TRUE(listing.rasters.empty());
  EXPECT_EQ(listing.problems, std::vector<std::string>{"/no/such/place: there is no such file or folder"});
  EXPECT_TRUE(rasterFiles("/no/such/place").empty());
}

TEST(Tiles, AreReadZippedAndUnderEachOfTheirNames) {
  const TemporaryFolder folder;
  writeZip((folder / "N50E010.hgt.zip").string(), "N50E010.hgt", tile(110));
  writeZip((folder / "N50E011.SRTMGL1.hgt.zip").string(), "N50E011.hgt", tile(111));
  writeBytes(folder / "n50e012.hgt", tile(112));
  writeZip((folder / "download.zip").string(), "srtm/N50E013.hgt", tile(113));
  const TerrainLibrary library = libraryOf({folder.path().string()});
  for (int i = 0; i < 4; ++i) {
    const auto result = heightAt(library, {50.5, 10.5 + i});
    EXPECT_EQ(result.height, static_cast<float>(110 + i)) << result.report.reason;
    EXPECT_EQ(result.report.status, 0);
    EXPECT_TRUE(result.report.warnings.empty()) << result.report.warnings[0];
  }
  EXPECT_EQ(heightAt(library, {50.5, 10.5}).report.files,
            std::vector<std::string>{(folder / "N50E010.hgt.zip").string()});
}

TEST(Tiles, OfOneAndOfTwoSecondsAreRead) {
  const TemporaryFolder folder;
  const auto slope = [](int column, int) { return column; };
  test::writeTile(folder / "N50E010.hgt", slope, 3601, 3601);
  test::writeTile(folder / "N60E010.hgt", slope, 1801, 3601);
  const TerrainLibrary library = libraryOf({folder.path().string()});
  EXPECT_EQ(heightAt(library, {50.5, 10.5}).height, 1800);
  EXPECT_EQ(heightAt(library, {60.5, 10.5}).height, 900);
}

std::string packed(const std::string& bytes, const std::filesystem::path& path) {
  const GdalSession session;
  VSILFILE* out = VSIFOpenL(("/vsigzip/" + path.string()).c_str(), "wb");
  if (!out) return "";
  VSIFWriteL(bytes.data(), 1, bytes.size(), out);
  VSIFCloseL(out);
  return test::fileBytes(path);
}

TEST(RasterListing, APackedTileServesUnderItsOwnName) {
  const TemporaryFolder folder;
  packed(tile(321), folder / "N50E010.hgt.gz");
  const RasterListing listing = listRasters(folder.path().string());
  ASSERT_EQ(listing.rasters.size(), 1U);
  EXPECT_EQ(listing.rasters[0].path, "/vsigzip/" + (folder / "N50E010.hgt.gz").string());
  EXPECT_EQ(listing.rasters[0].shownPath, (folder / "N50E010.hgt.gz").string());
  EXPECT_EQ(listing.rasters[0].name, "N50E010.hgt");
  EXPECT_EQ(listing.rasters[0].bytes, 2884802U);
  const auto result = test::heightAt(test::libraryOf({folder.path().string()}), {50.5, 10.5});
  EXPECT_EQ(result.height, 321) << result.report.reason;
  const RasterInfo info = describeRaster((folder / "N50E010.hgt.gz").string());
  EXPECT_EQ(info.problem, "");
  EXPECT_EQ(info.highest, 321);
  EXPECT_EQ(info.west, 10);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1)
      << "nothing is written beside it";
}

TEST(RasterListing, APackedTileOfAWrongSizeIsAProblem) {
  const TemporaryFolder folder;
  packed("short", folder / "N50E010.hgt.gz");
  EXPECT_EQ(describeRaster((folder / "N50E010.hgt.gz").string())
                .problem.find("its size of 5 bytes is none of a tile"),
            0U);
  // The end states a tile's length, and the content has another.
  std::string bytes = packed("short", folder / "N50E011.hgt.gz");
  bytes.replace(bytes.size() - 4, 4, {'\xC2', '\x04', '\x2C', '\0'});
  writeBytes(folder / "N50E011.hgt.gz", bytes);
  EXPECT_EQ(listRasters((folder / "N50E011.hgt.gz").string()).rasters.at(0).bytes, 2884802U);
  EXPECT_NE(describeRaster((folder / "N50E011.hgt.gz").string()).problem, "");
  const auto result = test::heightAt(test::libraryOf({(folder / "N50E011.hgt.gz").string()}), {50.5, 11.5});
  EXPECT_EQ(result.report.status, 1);
  writeBytes(folder / "N50E012.hgt.gz", "no");
  EXPECT_EQ(describeRaster((folder / "N50E012.hgt.gz").string()).problem.find("its size of 0 bytes"), 0U);
}

TEST(SourceIndex, NoticesThatAFolderChanged) {
  const TemporaryFolder folder;
  test::writeRaster(folder / "a.tif", {}, [](int, int) { return 1; });
  std::filesystem::create_directory(folder / "sub");
  const SourceDefinition definition{3, "", {folder.path().string()}, false};
  const auto openFiles = std::make_shared<OpenFiles>(4);
  const SourceIndex before(definition, openFiles);
  EXPECT_FALSE(before.outdated());
  writeBytes(folder / "sub/N50E010.hgt", tile(5));
  // Clocks of file systems are coarse; the change shall not hide in the same tick.
  std::filesystem::last_write_time(folder / "sub",
                                   std::filesystem::file_time_type::clock::now() + std::chrono::seconds(2));
  EXPECT_TRUE(before.outdated());
  const SourceIndex after(definition, openFiles, &before);
  EXPECT_EQ(after.files().size(), 2U);
  EXPECT_EQ(after.files()[0], before.files()[0]) << "an unchanged raster is taken over with its blocks";
}

TEST(SourceIndex, NoticesThatAMissingFileCameAndThatAFileChanged) {
  const TemporaryFolder folder;
  const SourceDefinition definition{3, "", {(folder / "N50E010.hgt").string()}, false};
  const auto openFiles = std::make_shared<OpenFiles>(4);
  const SourceIndex none(definition, openFiles);
  EXPECT_EQ(none.files().size(), 0U);
  EXPECT_EQ(none.problems().size(), 1U);
  writeBytes(folder / "N50E010.hgt", tile(5));
  EXPECT_TRUE(none.outdated());
  const SourceIndex one(definition, openFiles, &none);
  ASSERT_EQ(one.files().size(), 1U);
  writeBytes(folder / "N50E010.hgt", "short");
  EXPECT_TRUE(one.outdated());
}

TEST(SourceIndex, AFileNamedTwiceCountsOnce) {
  const TemporaryFolder folder;
  writeBytes(folder / "N50E010.hgt", tile(5));
  const std::string path = (folder / "N50E010.hgt").string();
  const SourceIndex index({3, "", {path, folder.path().string(), path}, false},
                          std::make_shared<OpenFiles>(4));
  EXPECT_EQ(index.files().size(), 1U);
  EXPECT_TRUE(index.problems().empty());
}

TEST(SourceIndex, KeepsOnlyAFewFilesOpen) {
  const TemporaryFolder folder;
  for (int i = 0; i < 20; ++i) {
    test::RasterSpec spec;
    spec.corners[0] = 10 + i;
    test::writeRaster(folder / ("t" + std::to_string(10 + i) + ".tif"), spec, [i](int, int) { return i; });
  }
  const auto openFiles = std::make_shared<OpenFiles>(4);
  const SourceIndex index({3, "", {folder.path().string()}, false}, openFiles);
  BlockCache cache(0);
  ASSERT_EQ(index.files().size(), 20U);
  for (int round = 0; round < 2; ++round)
    for (int i = 0; i < 20; ++i) {
      EXPECT_EQ(index.files()[static_cast<std::size_t>(i)]->block({0, 0, 0}, cache)->at(50, 50),
                static_cast<float>(i));
      EXPECT_LE(openFiles->count(), 4U);
    }
}

}  // namespace
}  // namespace zel
