#include "profile/sampling/ground_heights.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/runtime_error.h"
#include "support/scripted_platform.h"
#include "support/scripted_terrain.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

struct CountingHardStop final : HardStop {
  void stop(std::string_view text) override { reasons.emplace_back(text); }
  std::vector<std::string> reasons;
};

struct GroundHeights : testing::Test {
  test::TemporaryFolder folder;
  test::FixedClock clock;
  test::ScriptedDialogs dialogs;
  test::ScriptedTerrainSampler sampler;
  CountingHardStop hardStop;
  ErrorLog log{[this] { return folder.path().string(); }, clock, dialogs};

  SampleArray<float> ground(std::vector<float> raw) {
    return groundHeights(SampleArray<float>(std::move(raw)), sampler, log, hardStop);
  }
};

TEST_F(GroundHeights, AreTheCleanedOnes) {
  EXPECT_EQ(ground({100, -9999, -600, -50, -100}), SampleArray<float>({100, 0, 0, -50, -100}));
  EXPECT_TRUE(hardStop.reasons.empty());
  EXPECT_EQ(test::fileBytes(folder / "zelErrorLog.txt"), "");
}

TEST_F(GroundHeights, StopTheProcessOnceForAnImpossibleHeightAfterLoggingIt) {
  EXPECT_THROW(ground({100, -300, -400}), RuntimeError) << "nothing is computed should the stop return";
  ASSERT_EQ(hardStop.reasons.size(), 1U);
  EXPECT_EQ(hardStop.reasons[0],
            "The terrain height of sample 2 is -300 m; heights from -500 m up to -100 m are not carried");
  EXPECT_EQ(test::fileBytes(folder / "zelErrorLog.txt"), "11/15/26 19:05:03 " + hardStop.reasons[0] + "\r\n");
}

TEST_F(GroundHeights, NameThePlaceWhenTheSamplerKnowsIt) {
  sampler.places = {{36, -84}, {36.5, -84.25}};
  EXPECT_THROW(ground({100, -500}), RuntimeError);
  EXPECT_NE(hardStop.reasons.at(0).find("sample 2 at 36.500000, -84.250000 is -500 m"), std::string::npos);
}

}  // namespace
}  // namespace zel
