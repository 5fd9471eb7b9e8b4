#include "models/ptp/blocked_heights.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>

#include "grounds.h"

namespace zel::ptp {
namespace {

constexpr double kNothing = -std::numeric_limits<double>::infinity();

// Heights alone, and in proportion to the distance from a sample past the end.
double searched(const BlockedHeights& heights, std::size_t end, double least) {
  return heights.greatest(
      end, least,
      [end](const HeightBlock& block) {
        return block.top / static_cast<double>(block.top > 0 ? end - (block.end - 1) : end - block.first);
      },
      [end](std::size_t sample, double height) { return height / static_cast<double>(end - sample); });
}

double walked(const BlockedHeights& heights, std::size_t end, double least) {
  for (std::size_t sample = 1; sample < end; ++sample)
    least = std::max(least, heights[sample] / static_cast<double>(end - sample));
  return least;
}

TEST(BlockedHeights, FindsWhatAWalkFindsToTheLastBitAtEveryLength) {
  Random random(41);
  for (int run = 0; run < 200; ++run) {
    BlockedHeights heights;
    const double offset = random.uniform(-3000, 1000);
    const Elevations ground = anyGround(random, 1 + random.below(700));
    for (const float height : ground) {
      heights.append(static_cast<double>(height) + offset);
      const std::size_t end = heights.size();
      ASSERT_EQ(searched(heights, end, kNothing), walked(heights, end, kNothing)) << run << ", " << end;
    }
    // Also up to a sample in the middle, where the last block's top may lie past the end.
    const std::size_t some = random.below(heights.size() + 1);
    ASSERT_EQ(searched(heights, some, kNothing), walked(heights, some, kNothing)) << run << ", " << some;
  }
}

TEST(BlockedHeights, LeavesOutTheTransmittersOwnSample) {
  BlockedHeights heights;
  heights.append(1000);
  heights.append(1);
  heights.append(2);
  EXPECT_EQ(searched(heights, 3, kNothing), 2);
  EXPECT_EQ(searched(heights, 1, kNothing), kNothing);
  EXPECT_EQ(searched(heights, 0, kNothing), kNothing);
}

TEST(BlockedHeights, GivesTheLeastWhereNothingIsGreater) {
  BlockedHeights heights;
  for (int i = 0; i < 300; ++i) heights.append(5);
  EXPECT_EQ(searched(heights, 300, 5), 5);
  EXPECT_EQ(searched(heights, 300, 4), 5);
}

}  // namespace
}  // namespace zel::ptp
