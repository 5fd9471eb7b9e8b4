#include "export/signal_levels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kTolerance = 1e-5;  // dB: the terms are held in single precision

TEST(SignalLevels, AKilowattGivesTheDipoleFieldOfOneKilometre) {
  const SignalLevels levels({1, 0, 0}, 100);
  EXPECT_EQ(levels.powerTerm(), 106.92F);
  EXPECT_EQ(levels.frequencyTerm(), 72.4F);
  EXPECT_EQ(levels.reference(), double{106.92F} + double{72.4F}) << "kept in double precision";
}

TEST(SignalLevels, TenTimesThePowerIsTenDecibelsMore) {
  EXPECT_NEAR(SignalLevels({50, 0, 0}, 100).reference() - SignalLevels({5, 0, 0}, 100).reference(), 10,
              kTolerance);
}

TEST(SignalLevels, FreeSpaceLossIsHeldInSinglePrecision) {
  const SignalLevels levels({1, 0, 0}, 950);
  EXPECT_EQ(levels.freeSpaceLoss(10),
            static_cast<float>(double{levels.frequencyTerm()} + 20 * (std::log(10.0) / std::log(10.0))));
  EXPECT_NEAR(levels.freeSpaceLoss(10), 32.4 + 20 * std::log10(950 * 10), kTolerance);
}

TEST(SignalLevels, FreeSpaceIsTheSameForBothWaysOfReckoning) {
  const SignalLevels levels({3, 0, 0}, 950);
  EXPECT_NEAR(levels.freeSpace(double{levels.freeSpaceLoss(7)}), levels.pointToPoint(7, 0, 0), kTolerance);
}

TEST(SignalLevels, EachModelsClutterIsTakenOffItsOwnLevels) {
  const SignalLevels clear({1, 0, 0}, 950);
  const SignalLevels cluttered({1, 7, 11}, 950);
  EXPECT_NEAR(clear.longleyRice(140) - cluttered.longleyRice(140), 7, kTolerance);
  EXPECT_NEAR(clear.pointToPoint(5, 3, 2) - cluttered.pointToPoint(5, 3, 2), 11, kTolerance);
  EXPECT_EQ(clear.freeSpace(120), cluttered.freeSpace(120));
}

TEST(SignalLevels, NegativeClutterAddsToTheLevel) {
  EXPECT_NEAR(SignalLevels({1, -4, 0}, 950).longleyRice(140) - SignalLevels({1, 0, 0}, 950).longleyRice(140),
              4, kTolerance);
}

TEST(SignalLevels, BothPointToPointLossesAreTakenOff) {
  const SignalLevels levels({1, 0, 0}, 950);
  EXPECT_NEAR(levels.pointToPoint(10, 6, 2), 106.92 - 20 - 8, kTolerance);
}

TEST(SignalLevels, APowerThatIsNotFiniteIsAnOverflow) {
  EXPECT_THROW(SignalLevels({std::numeric_limits<double>::infinity(), 0, 0}, 950), RuntimeError);
}

}  // namespace
}  // namespace zel
