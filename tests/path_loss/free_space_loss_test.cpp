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

// 20-digit values of the logarithms, the quotient's rounding left to 64 bits.
TEST(DecimalLogarithm, IsTheQuotientOfTwoNaturalLogarithmsIn64Bits) {
  EXPECT_EQ(LOG10(1000), 6.9077552789821370521 / 2.3025850929940456840);
  EXPECT_LT(LOG10(1000), 3) << "one step below the decimal logarithm of a library";
  EXPECT_EQ(LOG10(2), 0.69314718055994530942 / 2.3025850929940456840);
  EXPECT_NE(LOG10(2), static_cast<double>(static_cast<float>(LOG10(2)))) << "not a 32-bit number";
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

// 20 log f + 32.40000152587890625 + 20 log d in 40 digits, for the distances as 32 bits hold them, lies just
// above halfway between two 32-bit numbers: a constant of 32.4 (1.5e-6 dB less), or logarithms or sums of 32
// bits, come out one number below.
TEST(FreeSpaceLoss, HoldsTheConstantIn32BitsAndEverythingElseIn64) {
  EXPECT_EQ(FreeSpaceLoss(1110, 36.8F), static_cast<float>(124.6234172950061));
  EXPECT_EQ(FreeSpaceLoss(1090, 79.3F), static_cast<float>(131.1339955653087));
  EXPECT_EQ(FreeSpaceLoss(1270, 5.4F), static_cast<float>(109.1239512948557));
  EXPECT_NE(static_cast<float>(124.6234172950061), static_cast<float>(124.6234172950061 - 1.5e-6));
}

TEST(FreeSpaceLoss, GrowsByTwentyDecibelsForATenfoldDistanceOrFrequency) {
  EXPECT_NEAR(FreeSpaceLoss(950, 300) - FreeSpaceLoss(950, 30), 20, 2e-5);  // two roundings to 32 bits
  EXPECT_NEAR(FreeSpaceLoss(9500, 30) - FreeSpaceLoss(950, 30), 20, 2e-5);
}

TEST(FreeSpaceLoss, IsZeroUnlessFrequencyAndDistanceAreAboveZero) {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  for (const float none : {0.0F, -0.0F, -1.0F, -100.0F, kNaN}) {
    EXPECT_EQ(FreeSpaceLoss(none, 10), 0) << "frequency " << none;
    EXPECT_EQ(FreeSpaceLoss(100, none), 0) << "distance " << none;
    EXPECT_EQ(FreeSpaceLoss(none, none), 0) << "both " << none;
  }
  constexpr float kLeast = std::numeric_limits<float>::denorm_min();
  EXPECT_LT(FreeSpaceLoss(100, kLeast), -800) << "the least number above 0 has its logarithm";
  EXPECT_LT(FreeSpaceLoss(kLeast, 10), -800);
}

}  // namespace
}  // namespace zel
