#include "profile/path_loss/free_space_loss.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zel {
namespace {

TEST(DecimalLogarithm, IsExactEnoughForPowersOfTen) {
  EXPECT_NEAR(LOG10(1000), 3, 1e-15);  // closed form; one rounding of the quotient
  EXPECT_NEAR(LOG10(1), 0, 0);
}

TEST(DecimalLogarithm, GivesItsSentinelWhereThereIsNoLogarithm) {
  EXPECT_EQ(LOG10(0), -999);
  EXPECT_EQ(LOG10(-5), -999);
  EXPECT_EQ(LOG10(std::numeric_limits<double>::quiet_NaN()), -999);
}

TEST(FreeSpaceLoss, FollowsTheFormulaInSinglePrecision) {
  EXPECT_FLOAT_EQ(FreeSpaceLoss(100, 10), 92.4F);  // 20 log 100 + 32.4 + 20 log 10
  EXPECT_FLOAT_EQ(FreeSpaceLoss(1, 1), 32.4F);
}

TEST(FreeSpaceLoss, GrowsByTwentyDecibelsForATenfoldDistanceOrFrequency) {
  EXPECT_NEAR(FreeSpaceLoss(950, 300) - FreeSpaceLoss(950, 30), 20, 2e-5);  // two roundings to 32 bits
  EXPECT_NEAR(FreeSpaceLoss(9500, 30) - FreeSpaceLoss(950, 30), 20, 2e-5);
}

TEST(FreeSpaceLoss, IsZeroUnlessFrequencyAndDistanceAreAboveZero) {
  EXPECT_EQ(FreeSpaceLoss(0, 10), 0);
  EXPECT_EQ(FreeSpaceLoss(100, -1), 0);
  EXPECT_EQ(FreeSpaceLoss(-100, 10), 0);
  EXPECT_EQ(FreeSpaceLoss(std::numeric_limits<float>::quiet_NaN(), 10), 0);
}

}  // namespace
}  // namespace zel
