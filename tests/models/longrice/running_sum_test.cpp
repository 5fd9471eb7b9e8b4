#include "models/longrice/running_sum.h"

#include <gtest/gtest.h>

#include "grounds.h"

namespace zel::longrice {
namespace {

double addedOneByOne(double start, double step, std::size_t count) {
  double sum = start;
  for (std::size_t i = 0; i < count; ++i) sum += step;
  return sum;
}

TEST(RunningSum, IsThatOfSingleAdditionsToTheLastBit) {
  Random random(7);
  for (int run = 0; run < 20000; ++run) {
    const double step = random.decades(1e-3, 3000);
    const std::size_t count = random.below(6000);
    ASSERT_EQ(runningSum(0, step, count), addedOneByOne(0, step, count)) << step << " " << count;
    const double length = static_cast<double>(count + random.below(50)) * step;
    ASSERT_EQ(runningSum(length, -step, count), addedOneByOne(length, -step, count)) << step << " " << count;
  }
}

// Steps of few bits, whose additions are exact or lie just between two numbers.
TEST(RunningSum, IsThatOfSingleAdditionsWhereRoundingTies) {
  Random random(8);
  for (const double step : {1.0, 30.0, 0.5, 92.625, 1 + 0x1p-40, 1 + 0x1p-47, 3 + 0x1p-45, 30 + 0x1p-44, 0.1})
    for (int run = 0; run < 300; ++run) {
      const std::size_t count = random.below(9000);
      ASSERT_EQ(runningSum(0, step, count), addedOneByOne(0, step, count)) << step << " " << count;
      const double length = static_cast<double>(count) * step;
      ASSERT_EQ(runningSum(length, -step, count), addedOneByOne(length, -step, count))
          << step << " " << count;
    }
}

// Numbers so small that they lie as far apart as those below, and so large that there is little above.
TEST(RunningSum, IsThatOfSingleAdditionsForTheSmallestAndTheLargestNumbers) {
  Random random(9);
  for (const double scale : {5e-324, 1e-310, 1e-300, 1e-290, 1e290, 1e300})
    for (int run = 0; run < 100; ++run) {
      const double step = scale * random.uniform(1, 10);
      const std::size_t count = random.below(3000);
      ASSERT_EQ(runningSum(0, step, count), addedOneByOne(0, step, count)) << step << " " << count;
      const double length = static_cast<double>(count) * step;
      ASSERT_EQ(runningSum(length, -step, count), addedOneByOne(length, -step, count))
          << step << " " << count;
    }
}

TEST(RunningSum, StaysWhereTheStepIsTooSmallToCount) { EXPECT_EQ(runningSum(1e20, 1, 1000000000), 1e20); }

TEST(RunningSum, OfNoStepsIsTheStart) {
  EXPECT_EQ(runningSum(5, 3, 0), 5);
  EXPECT_EQ(runningSum(5, 0, 1000), 5);
}

}  // namespace
}  // namespace zel::longrice
