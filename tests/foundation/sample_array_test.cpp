#include "foundation/sample_array.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace zel {
namespace {

template <typename Array>
int errorNumberOf(Array& array, std::int64_t index) {
  try {
    (void)array[index];
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(SampleArray, CountsFromOne) {
  SampleArray<float> array(3);
  array[1] = 10;
  array[3] = 30;
  EXPECT_EQ(array.span()[0], 10);
  EXPECT_EQ(array.span()[2], 30);
  EXPECT_EQ(array[2], 0);
  EXPECT_EQ(array.size(), 3);
  EXPECT_FALSE(array.empty());
}

TEST(SampleArray, RaisesSubscriptOutOfRangeOutsideIt) {
  SampleArray<float> array(3);
  const SampleArray<float>& constant = array;
  for (const std::int64_t index :
       {std::int64_t{0}, std::int64_t{-1}, std::int64_t{4}, std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(errorNumberOf(array, index), 9) << index;
    EXPECT_EQ(errorNumberOf(constant, index), 9) << index;
  }
  EXPECT_EQ(errorNumberOf(array, 1), 0);
  EXPECT_EQ(errorNumberOf(array, 3), 0);
}

TEST(SampleArray, HasNoElementWhenEmpty) {
  SampleArray<int> array;
  EXPECT_TRUE(array.empty());
  EXPECT_EQ(array.size(), 0);
  EXPECT_EQ(errorNumberOf(array, 1), 9);
}

TEST(SampleArray, TakesAVectorAsElementsOneToSize) {
  const SampleArray<int> array(std::vector<int>{7, 8, 9});
  EXPECT_EQ(array[1], 7);
  EXPECT_EQ(array[3], 9);
}

TEST(SampleArray, ResizingSetsEveryElementAnew) {
  SampleArray<int> array(2, 5);
  EXPECT_EQ(array[2], 5);
  array.resize(4);
  EXPECT_EQ(array.size(), 4);
  for (int i = 1; i <= 4; ++i) EXPECT_EQ(array[i], 0);
}

TEST(SampleArray, ComparesByValue) {
  EXPECT_EQ(SampleArray<int>(2, 1), SampleArray<int>(2, 1));
  EXPECT_FALSE(SampleArray<int>(2, 1) == SampleArray<int>(3, 1));
  EXPECT_FALSE(SampleArray<int>(2, 1) == SampleArray<int>(2, 2));
}

}  // namespace
}  // namespace zel
