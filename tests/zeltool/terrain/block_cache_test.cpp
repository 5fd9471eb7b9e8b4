#include "zeltool/terrain/block_cache.h"

#include <gtest/gtest.h>

#include <memory>

namespace zel {
namespace {

HeightBlockPtr block(int posts, float height) {
  return std::make_shared<const HeightBlock>(
      HeightBlock{{0, 0, posts, 1}, std::vector<float>(static_cast<std::size_t>(posts), height)});
}

TEST(BlockCache, GivesBackWhatWasPut) {
  BlockCache cache(1 << 20);
  EXPECT_EQ(cache.find({1, 2, 3}), nullptr);
  cache.put({1, 2, 3}, block(10, 7));
  ASSERT_NE(cache.find({1, 2, 3}), nullptr);
  EXPECT_EQ(cache.find({1, 2, 3})->at(0, 0), 7.0F);
  EXPECT_EQ(cache.find({1, 3, 2}), nullptr);
  EXPECT_EQ(cache.find({2, 2, 3}), nullptr);
}

TEST(BlockCache, NeverHoldsMoreThanItsCapacity) {
  const std::size_t one = block(1000, 0)->bytes();
  BlockCache cache(3 * one);
  for (std::int32_t i = 0; i < 100; ++i) {
    cache.put({1, i, 0}, block(1000, static_cast<float>(i)));
    EXPECT_LE(cache.bytes(), 3 * one);
  }
  EXPECT_EQ(cache.bytes(), 3 * one);
}

TEST(BlockCache, DropsTheLeastRecentlyUsedFirst) {
  BlockCache cache(3 * block(1000, 0)->bytes());
  for (std::int32_t i = 0; i < 3; ++i) cache.put({1, i, 0}, block(1000, 0));
  EXPECT_NE(cache.find({1, 0, 0}), nullptr);
  cache.put({1, 3, 0}, block(1000, 0));
  EXPECT_NE(cache.find({1, 0, 0}), nullptr);
  EXPECT_EQ(cache.find({1, 1, 0}), nullptr);
  EXPECT_NE(cache.find({1, 2, 0}), nullptr);
}

TEST(BlockCache, ADroppedBlockLivesOnWithItsReaders) {
  BlockCache cache(block(1000, 0)->bytes());
  cache.put({1, 0, 0}, block(1000, 5));
  const HeightBlockPtr held = cache.find({1, 0, 0});
  cache.put({1, 1, 0}, block(1000, 6));
  EXPECT_EQ(cache.find({1, 0, 0}), nullptr);
  EXPECT_EQ(held->at(999, 0), 5.0F);
}

TEST(BlockCache, WithoutRoomItKeepsNothing) {
  BlockCache cache(0);
  cache.put({1, 0, 0}, block(1, 0));
  EXPECT_EQ(cache.bytes(), 0U);
  EXPECT_EQ(cache.find({1, 0, 0}), nullptr);
}

}  // namespace
}  // namespace zel
