// GetPathLoss over the real parts: settings file, geodesy, bundled terrain, model.
#include <gtest/gtest.h>

#include <vector>

#include "bundled_path.h"
#include "real_component.h"
#include "zel/c_api.h"
#include "zel/longley_rice.h"
#include "zel/terrain.h"

namespace zel {
namespace {

using test::RealComponent;

using test::kEnd;
using test::kStart;

class GetPathLossTest : public RealComponent {
 protected:
  // The same loss by another route: public heights, and the model's public function. Its deviates are exact,
  // so this holds for levels of 50 %.
  static double separately(const StationProfile_Type& from, const StationProfile_Type& to,
                           std::int32_t points, double frequency, std::int32_t method = 0) {
    const SampledTerrain terrain = sampleTerrain({from.Lat, from.Lon}, {to.Lat, to.Lon}, points, method, 3);
    EXPECT_EQ(terrain.status, 0) << terrain.error;
    LongleyRiceRequest request;
    request.elevationsM.assign(terrain.elevations.begin(), terrain.elevations.end());
    request.spacingM = terrain.distanceKm / points * 1000;
    request.transmitterHeightM = static_cast<double>(from.AntHt);
    request.receiverHeightM = static_cast<double>(to.AntHt);
    request.frequencyMhz = frequency;
    const LongleyRiceResult result = computeLongleyRice(request);
    EXPECT_EQ(result.error, "");
    return result.lossDb.at(0).at(0);
  }
};

// One rounding to 32 bits of a loss of some hundred dB, and one of the spacing.
constexpr double kTolerance = 2e-5;  // dB

TEST_F(GetPathLossTest, AgreesWithASeparateRunOfTheModelOverPublicHeights) {
  set("Profile", "Prf_Freq", "950");
  EXPECT_NEAR(control_.GetPathLoss(kStart, kEnd), separately(kStart, kEnd, 1000, 950), kTolerance);
  EXPECT_NEAR(control_.GetPathLoss(kEnd, kStart), separately(kEnd, kStart, 1000, 950), kTolerance);
  set("Profile", "Prf_Per", "10");
  set("Profile", "Prf_Max", "5000");
  set("Profile", "Prf_Freq", "450");
  set("Settings", "CalcMethod", "1");
  // round(10 x 28.7337 + 1) = 288
  EXPECT_NEAR(control_.GetPathLoss(kStart, kEnd), separately(kStart, kEnd, 288, 450, 1), kTolerance);
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(GetPathLossTest, TakesA100MegahertzWhenNoneIsStored) {
  EXPECT_NEAR(control_.GetPathLoss(kStart, kEnd), separately(kStart, kEnd, 1000, 100), kTolerance);
}

TEST_F(GetPathLossTest, IsTheSameFromCAndByLateBinding) {
  set("Profile", "Prf_Freq", "950");
  const float loss = control_.GetPathLoss(kStart, kEnd);
  EXPECT_GT(loss, 121) << "more than free space: the ridge is in the way";
  EXPECT_LT(loss, 250);

  EXPECT_EQ(control_.call("getpathloss", {makeStation(kStart), makeStation(kEnd)}), AutomationValue(loss));

  zelProfiler* profiler = nullptr;
  ASSERT_EQ(zelProfilerCreate(&profiler), ZEL_OK);
  float fromC = 0;
  EXPECT_EQ(zelProfilerGetPathLoss(profiler, &kStart, &kEnd, &fromC), ZEL_OK);
  EXPECT_EQ(fromC, loss);
  zelProfilerRelease(profiler);
}

TEST_F(GetPathLossTest, UsesWholeMetresOfAntennaHeight) {
  set("Profile", "Prf_Freq", "950");
  StationProfile_Type low = kStart;
  low.AntHt = 10.5F;
  StationProfile_Type ten = kStart;
  ten.AntHt = 10;
  EXPECT_EQ(control_.GetPathLoss(low, kEnd), control_.GetPathLoss(ten, kEnd)) << "10.5 is used as 10";
  low.AntHt = 11.5F;
  EXPECT_NE(control_.GetPathLoss(low, kEnd), control_.GetPathLoss(ten, kEnd)) << "11.5 is used as 12";
}

TEST_F(GetPathLossTest, HasNoShortestPath) {
  const StationProfile_Type near{36.40, -84.349, 30};  // 90 m
  EXPECT_GT(control_.GetPathLoss(kStart, near), 40);
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(GetPathLossTest, GivesZeroAndTheSamplersTextForAPathWithoutTerrain) {
  EXPECT_EQ(control_.GetPathLoss({50, 8, 30}, {50.1, 8.1, 30}), 0);
  EXPECT_NE(logged().find("Some or all of the terrain data is invalid!\r\nIn Host Planner::zelProfiler01\r\n"
                          "modTerPro:NVCalcPathLoss:2\r\nError Number: 1002\r\n"),
            std::string::npos)
      << logged();
  EXPECT_EQ(dialogs_->messages.size(), 1U) << "told once, by the calculation itself";
  EXPECT_GT(control_.GetPathLoss(kStart, kEnd), 0);
}

TEST_F(GetPathLossTest, GivesZeroAndUnderRangeForOneAndTheSamePlace) {
  EXPECT_EQ(control_.GetPathLoss(kStart, kStart), 0);
  EXPECT_NE(logged().find("Under Range Error.\r\n"), std::string::npos);
  EXPECT_NE(logged().find("Error Number: 1004\r\n"), std::string::npos);
}

TEST_F(GetPathLossTest, GivesZeroSilentlyForAFrequencyOutsideTheRange) {
  for (const char* frequency : {"19.9", "20001"}) {
    set("Profile", "Prf_Freq", frequency);
    EXPECT_EQ(control_.GetPathLoss(kStart, kEnd), 0);
  }
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(GetPathLossTest, LeavesWindowAndFailureFlagAlone) {
  component_.state().bProfileFailed = true;
  control_.GetPathLoss(kStart, kEnd);
  EXPECT_TRUE(component_.state().bProfileFailed);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  component_.state().bProfileFailed = false;
  control_.GetPathLoss({50, 8, 30}, {50.1, 8.1, 30});
  EXPECT_FALSE(component_.state().bProfileFailed);
}

TEST_F(GetPathLossTest, WorksWithoutAHost) {
  Component fresh(services());
  const ComponentSubstitute substitute(fresh);
  ProfileControl alone;
  EXPECT_GT(alone.GetPathLoss(kStart, kEnd), 100);
}

TEST_F(GetPathLossTest, SeesAChangedSettingAtOnce) {
  set("Profile", "Prf_Freq", "100");
  const float low = control_.GetPathLoss(kStart, kEnd);
  set("Profile", "Prf_Freq", "2000");
  EXPECT_GT(control_.GetPathLoss(kStart, kEnd), low + 20)
      << "20 log (2000 / 100) = 26 dB of free space alone";
  set("ITM", "dReliability", "0.99");
  const float reliable = control_.GetPathLoss(kStart, kEnd);
  set("ITM", "dReliability", "1");
  EXPECT_EQ(control_.GetPathLoss(kStart, kEnd), 0) << "100 % is one past the table";
  EXPECT_NE(logged().find("modTerPro:NVCalcPathLoss:3\r\nError Number: 9\r\n"), std::string::npos);
  set("ITM", "dReliability", "0.5");
  EXPECT_LT(control_.GetPathLoss(kStart, kEnd), reliable);
}

TEST_F(GetPathLossTest, StopsHardOnAnImpossibleHeight) {
  useTile([](int row, int) { return row == 600 ? -300 : 100; });
  EXPECT_EQ(control_.GetPathLoss({36.6, -84.5, 30}, {36.4, -84.5, 30}), 0);
  EXPECT_NE(logged().find("m; heights from -500 m up to -100 m are not carried\r\n"), std::string::npos);
  EXPECT_NE(logged().find("modTerPro:NVCalcPathLoss:2\r\n"), std::string::npos)
      << "the scripted stop fails in place of ending the process";
}

}  // namespace
}  // namespace zel
