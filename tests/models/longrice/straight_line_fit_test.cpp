#include "models/longrice/straight_line_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

#include "grounds.h"

namespace zel::longrice {
namespace {

// The plain way: the weighted sums of the definition, sample by sample.
StraightLine plainFit(const Ground& ground, std::size_t first, std::size_t last) {
  const double middle = 0.5 * static_cast<double>(first + last);
  double weights = 0, heights = 0, squares = 0, products = 0;
  for (std::size_t i = first; i <= last; ++i) {
    const double weight = i == first || i == last ? 0.5 : 1;
    const double offset = static_cast<double>(i) - middle;
    weights += weight;
    heights += weight * ground[i];
    squares += weight * offset * offset;
    products += weight * offset * ground[i];
  }
  return {middle, heights / weights, products / squares};
}

SummedHeights summed(const Ground& ground) {
  SummedHeights heights;
  heights.append(ground);
  return heights;
}

// Tolerances: rounding of sums of some thousand heights times sample numbers, 1e-16 of 3e10 over 3e3.
TEST(StraightLineFit, IsTheLeastSquaresLineWhoseEndsWeighHalf) {
  Random random(11);
  for (int run = 0; run < 300; ++run) {
    const std::size_t samples = 2 + random.below(3000);
    const Ground ground = anyGround(random, samples);
    const SummedHeights heights = summed(ground);
    const std::size_t first = random.below(samples - 1);
    const std::size_t last = first + 1 + random.below(samples - 1 - first);
    const StraightLine fast = heights.fit(first, last);
    const StraightLine plain = plainFit(ground, first, last);
    EXPECT_EQ(fast.middle, plain.middle);
    EXPECT_NEAR(fast.height, plain.height, 1e-7) << run;
    EXPECT_NEAR(fast.at(static_cast<double>(first)), plain.at(static_cast<double>(first)), 1e-6) << run;
    EXPECT_NEAR(fast.at(static_cast<double>(last)), plain.at(static_cast<double>(last)), 1e-6) << run;
  }
}

TEST(StraightLineFit, GivesAStraightSlopeBack) {
  Ground ground;
  for (int i = 0; i < 500; ++i) ground.push_back(120 + 0.75 * i);
  const StraightLine line = summed(ground).fit(37, 411);
  EXPECT_NEAR(line.slope, 0.75, 1e-10);
  EXPECT_NEAR(line.at(0), 120, 1e-8);
  EXPECT_NEAR(line.at(499), 120 + 0.75 * 499, 1e-8);
}

TEST(StraightLineFit, PassesThroughBothOfTwoSamples) {
  const StraightLine line = summed({7, 100, 130, 5}).fit(1, 2);
  EXPECT_NEAR(line.at(1), 100, 1e-12);
  EXPECT_NEAR(line.at(2), 130, 1e-12);
}

// By hand: heights 0, 0, 12, 0, 0 with weights 1/2, 1, 1, 1, 1/2 have the mean 3 and no slope.
TEST(StraightLineFit, WeighsAMiddlePeakByTheNumberOfIntervals) {
  const StraightLine line = summed({0, 0, 12, 0, 0}).fit(0, 4);
  EXPECT_DOUBLE_EQ(line.height, 3);
  EXPECT_DOUBLE_EQ(line.slope, 0);
}

TEST(StraightLineFit, TakesItsSumsFromTheCallerToo) {
  // Heights 4, 6, 11 at 0, 1, 2: mean (2 + 6 + 5.5) / 2, slope (5.5 - 2) / 1.
  const StraightLine line = fitStraightLine(0, 2, {21, 28, 4, 11});
  EXPECT_DOUBLE_EQ(line.middle, 1);
  EXPECT_DOUBLE_EQ(line.height, 6.75);
  EXPECT_DOUBLE_EQ(line.slope, 3.5);
}

TEST(SummedHeights, KeepsWhatWasAppended) {
  const Ground ground{3, -7.5, 8848};
  const SummedHeights heights = summed(ground);
  EXPECT_EQ(heights.size(), 3U);
  EXPECT_EQ(heights.heights(), ground);
  EXPECT_EQ(heights[1], -7.5);
}

}  // namespace
}  // namespace zel::longrice
