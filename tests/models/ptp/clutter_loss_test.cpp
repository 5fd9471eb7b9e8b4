#include "models/ptp/clutter_loss.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "models/ptp/parameter_error.h"

namespace zel::ptp {
namespace {

constexpr ClutterCategory kEvery[] = {ClutterCategory::kWaterOrSea, ClutterCategory::kOpenOrRural,
                                      ClutterCategory::kSuburban, ClutterCategory::kUrbanOrForest,
                                      ClutterCategory::kDenseUrban};

TEST(ClutterLoss, IsNoneWithoutACategoryWhateverTheFrequency) {
  for (const double frequency : {20.0, 1000.0, 20000.0}) {
    EXPECT_EQ(clutterLoss({}, 1.5, frequency), 0);
    EXPECT_EQ(clutterLoss({ClutterCategory::kNone, 30}, 1.5, frequency), 0);
    EXPECT_EQ(terminalHeight({ClutterCategory::kNone, 30}, 1.5, frequency), 1.5);
  }
}

TEST(ClutterLoss, TakesTheHeightOfItsCategoryUnlessOneIsGiven) {
  const double heights[] = {10, 10, 10, 15, 20};  // metres, the section's table
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(clutterHeight({kEvery[i]}), heights[i]);
    EXPECT_EQ(clutterHeight({kEvery[i], 7.5}), 7.5);
    EXPECT_EQ(clutterLoss({kEvery[i]}, heights[i], 1000), 0);
    EXPECT_GT(clutterLoss({kEvery[i]}, heights[i] - 1, 1000), 0);
    EXPECT_EQ(clutterLoss({kEvery[i], 7.5}, 7.5, 1000), 0);
  }
}

TEST(ClutterLoss, IsThatOfAnEdgeAcrossTheStreetAmongBuildingsAndTrees) {
  // By hand, 1 GHz, 1.5 m: suburban, atan(8.5 / 27) = 17.476 degrees, nu = 0.342 sqrt(8.5 x 17.476) = 4.168,
  // J = 25.24 dB; dense urban, atan(18.5 / 27) = 34.418 degrees, nu = 8.630, J = 31.57 dB.
  EXPECT_NEAR(*clutterLoss({ClutterCategory::kSuburban}, 1.5, 1000), 25.24 - 6.03, 0.01);
  EXPECT_NEAR(*clutterLoss({ClutterCategory::kDenseUrban}, 1.5, 1000), 31.57 - 6.03, 0.06);
  // Half the street's width: atan(8.5 / 13.5) = 32.196 degrees, nu = 5.658, J = 27.88 dB.
  EXPECT_NEAR(*clutterLoss({ClutterCategory::kSuburban, 0, 13.5}, 1.5, 1000), 27.88 - 6.03, 0.05);
}

TEST(ClutterLoss, IsThatOfTheHeightGainOnOpenGround) {
  // (21.8 + 6.2 log f) log(R / h): 1 GHz, 1 m under 10 m; 0.1 GHz, 2 m under 10 m.
  EXPECT_NEAR(*clutterLoss({ClutterCategory::kOpenOrRural}, 1, 1000), 21.8, 1e-9);
  EXPECT_NEAR(*clutterLoss({ClutterCategory::kWaterOrSea}, 2, 100), 15.6 * 0.698970004336, 1e-9);
}

TEST(ClutterLoss, GrowsWithTheDepthBelowTheCoverAndIsNeverNegative) {
  for (const ClutterCategory category : kEvery)
    for (const double frequency : {30.0, 300.0, 3000.0}) {
      double before = 0;
      for (int half = 60; half > 0; --half) {
        const double height = 0.5 * half;
        const double loss = *clutterLoss({category}, height, frequency);
        ASSERT_GE(loss, before) << height;
        before = loss;
      }
      EXPECT_GT(before, 5) << frequency;
    }
}

TEST(ClutterLoss, HasNoValueOutsideItsFrequencies) {
  for (const ClutterCategory category : kEvery) {
    for (const double frequency : {29.999, 3000.001, 20000.0}) {
      EXPECT_FALSE(clutterLoss({category}, 1.5, frequency)) << frequency;
      // Also high above the cover; the path is then between the antennas as they stand.
      EXPECT_FALSE(clutterLoss({category}, 100, frequency)) << frequency;
      EXPECT_EQ(terminalHeight({category}, 1.5, frequency), 1.5);
    }
    for (const double frequency : {30.0, 3000.0}) EXPECT_TRUE(clutterLoss({category}, 1.5, frequency));
  }
}

TEST(ClutterLoss, HasNoValueForAnAntennaOnOpenGround) {
  EXPECT_FALSE(clutterLoss({ClutterCategory::kOpenOrRural}, 0, 1000));
  EXPECT_FALSE(clutterLoss({ClutterCategory::kWaterOrSea}, 0, 1000));
  EXPECT_TRUE(clutterLoss({ClutterCategory::kSuburban}, 0, 1000));
}

TEST(ClutterLoss, LiftsTheEndOfThePathToTheTopOfTheCover) {
  EXPECT_EQ(terminalHeight({ClutterCategory::kUrbanOrForest}, 1.5, 450), 15);
  EXPECT_EQ(terminalHeight({ClutterCategory::kUrbanOrForest, 25}, 1.5, 450), 25);
  EXPECT_EQ(terminalHeight({ClutterCategory::kUrbanOrForest}, 40, 450), 40);
}

TEST(ClutterLoss, RefusesACategoryOrASizeThatIsNone) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THROW(clutterLoss({static_cast<ClutterCategory>(6)}, 1.5, 1000), ParameterError);
  EXPECT_THROW(clutterLoss({static_cast<ClutterCategory>(-1)}, 1.5, 1000), ParameterError);
  for (const double wrong : {nan, -1.0, 1e5}) {
    EXPECT_THROW(clutterLoss({ClutterCategory::kSuburban, wrong}, 1.5, 1000), ParameterError);
    EXPECT_THROW(clutterLoss({ClutterCategory::kSuburban, 0, wrong}, 1.5, 1000), ParameterError);
  }
}

}  // namespace
}  // namespace zel::ptp
