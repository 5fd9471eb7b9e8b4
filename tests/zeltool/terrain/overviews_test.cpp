#include "zeltool/terrain/overviews.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>

#include "rasters.h"
#include "zeltool/terrain/terrain_area.h"

namespace zel {
namespace {

using test::fileBytes;
using test::RasterSpec;
using test::TemporaryFolder;
using test::writeBytes;
using test::writeRaster;
using test::writeTile;

namespace fs = std::filesystem;

TEST(LevelAxis, CellsOfALevelAreWholeCellsOfTheLevelBefore) {
  for (const std::int32_t posts : {1, 2, 3, 7, 33, 1201, 3601, 6143}) {
    std::vector<std::int32_t> before;
    for (int level = 0; level <= 12; ++level) {
      const LevelAxis axis(posts, level);
      std::vector<std::int32_t> starts;
      for (std::int32_t i = 0; i < axis.count(); ++i) {
        starts.push_back(axis.first(i));
        ASSERT_LT(axis.first(i), axis.end(i));
        if (i + 1 < axis.count()) {
          ASSERT_EQ(axis.end(i), axis.first(i + 1));
        }
        ASSERT_NEAR(axis.place(i), 0.5 * (axis.first(i) + axis.end(i) - 1), 1e-12);
        ASSERT_NEAR(axis.cellAt(axis.place(i)), i, 1e-9) << posts << " posts, level " << level;
      }
      ASSERT_EQ(axis.end(axis.count() - 1), posts);
      for (const std::int32_t start : starts)
        if (level > 0) {
          ASSERT_TRUE(std::binary_search(before.begin(), before.end(), start));
        }
      before = starts;
    }
  }
}

TEST(LevelAxis, ARestOfHalfACellIsACellOfItsOwnAndLessGoesToTheLast) {
  EXPECT_EQ(LevelAxis(35, 3).count(), 4);
  EXPECT_EQ(LevelAxis(35, 3).end(3), 35);
  EXPECT_EQ(LevelAxis(36, 3).count(), 5);
  EXPECT_EQ(LevelAxis(36, 3).first(4), 32);
}

TEST(LevelAxis, GoesRoundWhereTheGridDoes) {
  const LevelAxis axis(720, 4, true);
  EXPECT_EQ(axis.count(), 45);
  EXPECT_NEAR(axis.place(45), 720 + 7.5, 1e-12);
  EXPECT_NEAR(axis.place(-1), -8.5, 1e-12);
  EXPECT_NEAR(axis.cellAt(720 + 7.5), 45, 1e-9);
  EXPECT_NEAR(axis.cellAt(-8.5), -1, 1e-9);
  EXPECT_EQ(axis.wrapped(-1), 44);
  EXPECT_EQ(axis.wrapped(46), 1);
}

// A source with caches of its own, as a program's start would have them.
class Start {
 public:
  Start(const std::string& path, const std::string& cache, std::size_t blocks = std::size_t{64} << 20)
      : caches_(std::make_shared<TerrainCaches>(blocks, cache)),
        area_(
            definition(path),
            [path](const std::atomic<bool>*) {
              return std::make_shared<const SourceIndex>(definition(path), std::make_shared<OpenFiles>(8));
            },
            caches_) {}

  std::vector<float> grid(double north, double west, double step, int count = 20) const {
    std::vector<double> latitudes, longitudes;
    for (int i = 0; i < count; ++i) {
      latitudes.push_back(north - step * i);
      longitudes.push_back(west + step * i);
    }
    return area_.grid(latitudes, longitudes, nullptr);
  }
  std::int64_t partsRead() const { return caches_->overviews.partsRead(); }
  const TerrainArea& area() const { return area_; }

 private:
  static SourceDefinition definition(const std::string& path) { return {3, "1 second", {path}, false}; }

  std::shared_ptr<TerrainCaches> caches_;
  TerrainArea area_;
};

class OverviewCache : public testing::Test {
 protected:
  OverviewCache() {
    static const std::string bytes =
        test::tileBytes(1201, 1201, [](int column, int row) { return (column * 7 + row * 3) % 2000; });
    writeBytes(tile_, bytes);
  }
  std::vector<fs::path> kept() const {
    std::vector<fs::path> files;
    if (fs::exists(cache_))
      for (const auto& entry : fs::directory_iterator(cache_)) files.push_back(entry.path());
    return files;
  }

  TemporaryFolder folder_;
  const std::string tile_ = (folder_ / "N36W085.hgt").string(), cache_ = (folder_ / "cache").string();
  static constexpr double kCoarse = 0.02;  // degrees, 24 posts
};

TEST_F(OverviewCache, ARasterIsReadOnceAndTheNextStartTakesItFromDisk) {
  const Start first(tile_, cache_);
  const auto grid = first.grid(36.9, -84.9, kCoarse);
  EXPECT_EQ(first.grid(36.9, -84.9, kCoarse), grid);
  EXPECT_EQ(first.partsRead(), 1);
  EXPECT_EQ(first.area().progress().wanted, 1);
  EXPECT_EQ(first.area().progress().made, 1);
  ASSERT_EQ(kept().size(), 1U);

  const Start second(tile_, cache_);
  EXPECT_EQ(second.grid(36.9, -84.9, kCoarse), grid);
  EXPECT_EQ(second.partsRead(), 0);
}

TEST_F(OverviewCache, FineGridsNeedNoOverview) {
  const Start start(tile_, cache_);
  start.grid(36.9, -84.9, 0.0005);
  EXPECT_EQ(start.partsRead(), 0);
  EXPECT_TRUE(kept().empty());
}

TEST_F(OverviewCache, ADamagedFileIsMadeAnewWithoutAWord) {
  const auto grid = Start(tile_, cache_).grid(36.9, -84.9, kCoarse);
  const std::string good = fileBytes(kept().at(0));
  for (const std::string& bad :
       {std::string(), good.substr(0, good.size() / 2), good + "x", std::string(good.size(), 'x'),
        std::string(good).replace(good.size() / 2, 1, 1, static_cast<char>(good[good.size() / 2] ^ 1))}) {
    writeBytes(kept().at(0), bad);
    const Start start(tile_, cache_);
    EXPECT_EQ(start.grid(36.9, -84.9, kCoarse), grid);
    EXPECT_EQ(start.partsRead(), 1);
    EXPECT_TRUE(start.area().problems().empty());
    EXPECT_EQ(fileBytes(kept().at(0)), good);
  }
}

TEST_F(OverviewCache, AChangedRasterIsReadAnew) {
  Start(tile_, cache_).grid(36.9, -84.9, kCoarse);
  writeTile(tile_, [](int, int) { return 1234; });
  fs::last_write_time(tile_, fs::file_time_type::clock::now() + std::chrono::seconds(10));
  const Start start(tile_, cache_);
  for (const float height : start.grid(36.9, -84.9, kCoarse)) EXPECT_EQ(height, 1234);
  EXPECT_EQ(start.partsRead(), 1);
}

TEST_F(OverviewCache, AVirtualRasterIsReadAnewWhenAFileThatItNamesHasChanged) {
  const std::string part = (folder_ / "part.tif").string(), whole = (folder_ / "whole.vrt").string();
  RasterSpec spec;
  writeRaster(part, spec, [](int, int) { return 10; });
  writeBytes(whole,
             "<VRTDataset rasterXSize=\"100\" rasterYSize=\"100\"><SRS>EPSG:4326</SRS><GeoTransform>10, "
             "0.01, 0, 51, 0, -0.01"
             "</GeoTransform><VRTRasterBand dataType=\"Float32\" band=\"1\"><SimpleSource><SourceFilename "
             "relativeToVRT=\"1\">"
             "part.tif</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
  EXPECT_EQ(Start(whole, cache_).grid(50.9, 10.1, 0.1, 3)[0], 10);
  fs::remove(part);
  writeRaster(part, spec, [](int, int) { return 20; });
  fs::last_write_time(part, fs::file_time_type::clock::now() + std::chrono::seconds(10));
  EXPECT_EQ(Start(whole, cache_).grid(50.9, 10.1, 0.1, 3)[0], 20);
}

TEST_F(OverviewCache, AFolderThatCannotBeUsedOnlyMeansNoCache) {
  writeBytes(cache_, "a file in the folder's place");
  const auto expected = Start(tile_, "").grid(36.9, -84.9, kCoarse);
  const Start start(tile_, cache_ + "/below");
  EXPECT_EQ(start.grid(36.9, -84.9, kCoarse), expected);
  EXPECT_TRUE(start.area().problems().empty());
  EXPECT_EQ(fileBytes(cache_), "a file in the folder's place");
}

TEST_F(OverviewCache, APipeInAFilesPlaceIsNotWaitedFor) {
  const auto grid = Start(tile_, cache_).grid(36.9, -84.9, kCoarse);
  const fs::path file = kept().at(0);
  fs::remove(file);
  ASSERT_EQ(std::system(("mkfifo '" + file.string() + "'").c_str()), 0);
  EXPECT_EQ(Start(tile_, cache_).grid(36.9, -84.9, kCoarse), grid);
}

TEST_F(OverviewCache, LiesInTheUsersCacheFolder) {
  EXPECT_TRUE(userOverviewFolder().ends_with("/zelprofiler/overviews")) << userOverviewFolder();
}

// 6,200 posts each way are two parts each way; the file is sparse and declares its holes.
TEST_F(OverviewCache, OnlyThePartsOfALargeRasterThatAreAskedForAreRead) {
  RasterSpec spec;
  spec.columns = spec.rows = 6200;
  spec.corners = {10, 0.0001, 0, 51, 0, -0.0001};
  spec.type = GDT_Int16;
  spec.noData = -32768;
  spec.options = {"SPARSE_OK=TRUE", "TILED=YES", "COMPRESS=DEFLATE"};
  const std::string large = (folder_ / "large.tif").string();
  writeRaster(large, spec, nullptr);
  const Start start(large, cache_);
  start.grid(50.99, 10.01, 0.004, 20);
  EXPECT_EQ(start.partsRead(), 1);
  start.grid(50.99, 10.01, 0.04, 21);
  EXPECT_EQ(start.partsRead(), 4);
  // The finer levels are not kept on disk, and the part is read again for them.
  start.grid(50.99, 10.01, 0.0002, 20);
  EXPECT_EQ(start.partsRead(), 5);
}

TEST_F(OverviewCache, AMemoryTooSmallForAPartOnlyCostsTime) {
  const SourceIndex index({3, "1 second", {tile_}, false}, std::make_shared<OpenFiles>(8));
  Overviews overviews("", 1000);
  const RasterFile& file = *index.files().at(0);
  for (int round = 0; round < 2; ++round) {
    const HeightBlockPtr block = overviews.part(file, {0, 0}, 3, nullptr);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->window.columns, 150);
  }
  EXPECT_EQ(overviews.partsRead(), 2);
}

class OverviewFile : public testing::Test {
 protected:
  static OverviewLevels levels(float height) {
    return {{{0, 0, 3, 2}, std::vector<float>(6, height)}, {{0, 0, 2, 1}, std::vector<float>(2, height)}};
  }
  const std::vector<PostWindow> windows_{{0, 0, 3, 2}, {0, 0, 2, 1}};
  TemporaryFolder folder_;
};

TEST_F(OverviewFile, ReadsBackWhatWasWritten) {
  const auto back = parseOverview(overviewBytes("key", levels(7)), "key", windows_);
  ASSERT_TRUE(back);
  ASSERT_EQ(back->size(), 2U);
  EXPECT_EQ(back->at(0).heights, std::vector<float>(6, 7));
  EXPECT_EQ(back->at(1).window.columns, 2);
}

TEST_F(OverviewFile, IsNoneWhenCutOrOfAnotherRasterOrSize) {
  const std::string bytes = overviewBytes("key", levels(7));
  for (std::size_t size = 0; size < bytes.size(); ++size)
    EXPECT_FALSE(parseOverview(bytes.substr(0, size), "key", windows_)) << size;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::string changed = bytes;
    changed[i] = static_cast<char>(changed[i] ^ 0x10);
    EXPECT_FALSE(parseOverview(changed, "key", windows_)) << i;
  }
  EXPECT_FALSE(parseOverview(bytes, "kez", windows_));
  EXPECT_FALSE(parseOverview(bytes, "key", {{0, 0, 3, 2}}));
  EXPECT_FALSE(parseOverview(bytes, "key", {{0, 0, 2, 3}, {0, 0, 2, 1}}));
}

TEST_F(OverviewFile, ManySmallOnesStayWithinTheBound) {
  const std::size_t one = overviewBytes("k0000", levels(0)).size();
  const OverviewFiles files(folder_.path().string(), 100 * one);
  for (int i = 0; i < 300; ++i) {
    files.write("k" + std::to_string(1000 + i), levels(0));
    const auto count = std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator());
    EXPECT_LE(count, 100 + 1) << i;  // the one that tips it is written first
    if (i > 100) {
      EXPECT_GE(count, 92) << i;
    }
  }
}

TEST_F(OverviewFile, TheOldestGoWhenTheFolderIsFull) {
  const std::size_t one = overviewBytes("k0", levels(0)).size();
  const OverviewFiles files(folder_.path().string(), 3 * one);
  writeBytes(folder_ / "foreign.txt", std::string(4 * one, 'x'));
  writeBytes(folder_ / "mine.overview.abc.part", "left by a program that was ended");
  fs::last_write_time(folder_ / "mine.overview.abc.part",
                      fs::file_time_type::clock::now() - std::chrono::hours(2));
  for (int i = 0; i < 4; ++i) {
    files.write("k" + std::to_string(i), levels(static_cast<float>(i)));
    // Times of their own, in the order of writing; the first is used once more.
    for (const auto& entry : fs::directory_iterator(folder_.path()))
      if (entry.path().extension() == ".overview")
        fs::last_write_time(entry.path(), entry.last_write_time() - std::chrono::minutes(1));
    if (i == 2) files.read("k0", windows_);
  }
  EXPECT_TRUE(files.read("k0", windows_));
  EXPECT_FALSE(files.read("k1", windows_));
  EXPECT_TRUE(files.read("k3", windows_));
  EXPECT_TRUE(fs::exists(folder_ / "foreign.txt"));
  EXPECT_FALSE(fs::exists(folder_ / "mine.overview.abc.part"));
}

}  // namespace
}  // namespace zel
