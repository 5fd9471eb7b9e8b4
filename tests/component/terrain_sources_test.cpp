#include "component/terrain_sources.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>

namespace zel {
namespace {

class TerrainSourcesTest : public testing::Test {
 protected:
  std::map<int, std::string> stored_;
  int reads_ = 0;
  TerrainSources sources_{[this](int code) {
                            ++reads_;
                            return stored_[code];
                          },
                          [](int code) { return "source " + std::to_string(code); }, "/share/terrain"};
};

TEST_F(TerrainSourcesTest, StandsTheBundledSampleInForASourceThatIsNotSet) {
  for (const int code : kTerrainSourceCodes) {
    const SourceDefinition source = sources_.definition(code);
    EXPECT_EQ(source.code, code);
    EXPECT_EQ(source.name, "source " + std::to_string(code));
    EXPECT_EQ(source.paths, std::vector<std::string>{"/share/terrain"});
    EXPECT_TRUE(source.bundledSample);
  }
}

TEST_F(TerrainSourcesTest, SplitsTheStoredPathsAtSemicolons) {
  stored_[2] = "/srtm; /my tiles/a.tif ;;";
  const SourceDefinition source = sources_.definition(2);
  EXPECT_EQ(source.paths, (std::vector<std::string>{"/srtm", "/my tiles/a.tif"}));
  EXPECT_FALSE(source.bundledSample);
  EXPECT_TRUE(sources_.definition(1).bundledSample);
}

TEST_F(TerrainSourcesTest, TakesNothingButSeparatorsForNotSet) {
  stored_[3] = " ; ";
  EXPECT_TRUE(sources_.definition(3).bundledSample);
}

TEST_F(TerrainSourcesTest, GivesNoPathsForAnUnknownCode) {
  for (const int code : {0, -1, 4, 5, 6, 8, 10}) {
    EXPECT_TRUE(sources_.definition(code).paths.empty()) << code;
    EXPECT_FALSE(sources_.definition(code).bundledSample) << code;
  }
  EXPECT_EQ(reads_, 0);
}

TEST_F(TerrainSourcesTest, SeesAChangedSettingAtOnceOnItsOwnThread) {
  EXPECT_TRUE(sources_.definition(3).bundledSample);
  stored_[3] = "/ned";
  EXPECT_EQ(sources_.definition(3).paths, std::vector<std::string>{"/ned"});
}

TEST_F(TerrainSourcesTest, GivesTheLastReadDefinitionOnAnotherThread) {
  stored_[3] = "/ned";
  sources_.refresh();
  stored_[3] = "/changed";
  reads_ = 0;
  SourceDefinition seen;
  std::thread([&] { seen = sources_.definition(3); }).join();
  EXPECT_EQ(seen.paths, std::vector<std::string>{"/ned"});
  EXPECT_EQ(reads_, 0);
  sources_.definition(3);
  std::thread([&] { seen = sources_.definition(3); }).join();
  EXPECT_EQ(seen.paths, std::vector<std::string>{"/changed"});
}

TEST_F(TerrainSourcesTest, ReadsEverySourceFromThePathsForThisRun) {
  stored_[2] = "/srtm";
  sources_.useForThisRun({"/a.tif", "/b"});
  for (const int code : kTerrainSourceCodes) {
    EXPECT_EQ(sources_.definition(code).paths, (std::vector<std::string>{"/a.tif", "/b"})) << code;
    EXPECT_FALSE(sources_.definition(code).bundledSample);
  }
  EXPECT_TRUE(sources_.definition(4).paths.empty()) << "an unknown code stays unknown";
  sources_.useForThisRun({});
  EXPECT_EQ(sources_.definition(2).paths, std::vector<std::string>{"/srtm"});
  EXPECT_TRUE(sources_.definition(1).bundledSample);
}

}  // namespace
}  // namespace zel
