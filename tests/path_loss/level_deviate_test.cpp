#include "profile/path_loss/level_deviate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

int errorOf(double stored) {
  try {
    levelDeviate(stored, InitNormalDist());
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(NormalisedLevel, KeepsAFractionAsItIs) {
  for (const double level : {0.01, 0.015, 0.5, 0.99, 0.999, 1.0}) EXPECT_EQ(normalisedLevel(level), level);
}

TEST(NormalisedLevel, TakesAValueAboveOneForAPercentage) {
  EXPECT_EQ(normalisedLevel(50), 0.5);
  EXPECT_EQ(normalisedLevel(99), 0.99);
  EXPECT_EQ(normalisedLevel(100), 1.0);
  EXPECT_EQ(normalisedLevel(1.5), 0.015);
}

TEST(NormalisedLevel, DividesAgainAsLongAsTheValueIsAboveOne) {
  EXPECT_EQ(normalisedLevel(5000), 0.5);
  EXPECT_EQ(normalisedLevel(10001), 0.010001) << "three divisions leave less than 0.02";
  EXPECT_EQ(normalisedLevel(500000), 0.5);
}

TEST(NormalisedLevel, RaisesWhatIsBelowOnePercent) {
  for (const double level : {0.001, 0.00999999, 0.0, -0.0, -5.0, -1e308})
    EXPECT_EQ(normalisedLevel(level), 0.01);
}

TEST(NormalisedLevel, EndsForTheLargestNumber) {
  const double level = normalisedLevel(std::numeric_limits<double>::max());
  EXPECT_GE(level, 0.01);
  EXPECT_LE(level, 1.0);
}

TEST(NormalisedLevel, RefusesWhatWouldNeverComeIntoTheRange) {
  EXPECT_EQ(errorOf(kInfinity), 6);
  EXPECT_EQ(errorOf(-kInfinity), 6);
  EXPECT_EQ(errorOf(std::numeric_limits<double>::quiet_NaN()), 6);
}

TEST(LevelIndex, IsHundredthsRoundedHalfToEven) {
  EXPECT_EQ(levelIndex(0.01), 1);
  EXPECT_EQ(levelIndex(0.5), 50);
  EXPECT_EQ(levelIndex(1.0), 100);
  EXPECT_EQ(levelIndex(0.015), 2) << "1.5 to the even 2";
  EXPECT_EQ(levelIndex(0.125), 12) << "12.5 to the even 12";
  EXPECT_EQ(levelIndex(0.375), 38) << "37.5 to the even 38";
  EXPECT_EQ(levelIndex(0.995), 100) << "99.5 to the even 100";
}

TEST(LevelDeviate, IsTheTablesEntry) {
  const NormalTable table = InitNormalDist();
  // Two-decimal deviates of a four-decimal normal table.
  EXPECT_EQ(levelDeviate(0.5, table), 0);
  EXPECT_EQ(levelDeviate(50, table), 0);
  EXPECT_EQ(levelDeviate(5000, table), 0);
  EXPECT_EQ(levelDeviate(0.1, table), 1.28);
  EXPECT_EQ(levelDeviate(0.9, table), -1.28);
  EXPECT_EQ(levelDeviate(0.05, table), 1.65);
  EXPECT_EQ(levelDeviate(0.99, table), -2.33);
  EXPECT_EQ(levelDeviate(0.001, table), 2.33) << "index 1";
  EXPECT_EQ(levelDeviate(0, table), 2.33) << "index 1";
}

TEST(LevelDeviate, FailsForTheWholePopulation) {
  EXPECT_EQ(errorOf(1), 9);
  EXPECT_EQ(errorOf(100), 9);
  EXPECT_EQ(errorOf(10000), 9);
  EXPECT_EQ(errorOf(0.995), 9);
  EXPECT_EQ(errorOf(99.4), 0);
}

}  // namespace
}  // namespace zel
