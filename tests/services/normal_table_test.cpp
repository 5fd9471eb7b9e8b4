#include "component/services/normal_table.h"

#include <gtest/gtest.h>

#include <utility>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

// Rows of printed four-decimal tables of the standard normal distribution; exact to the two printed decimals.
TEST(NormalTable, HasThePublishedRows) {
  const NormalTable table = InitNormalDist();
  for (const auto& [percent, z] : {std::pair{1, 2.33},
                                   {2, 2.05},
                                   {3, 1.88},
                                   {5, 1.65},
                                   {6, 1.56},
                                   {7, 1.48},
                                   {8, 1.41},
                                   {9, 1.34},
                                   {10, 1.28},
                                   {12, 1.18},
                                   {20, 0.84},
                                   {25, 0.67},
                                   {30, 0.52},
                                   {40, 0.25}})
    EXPECT_EQ(table[percent], z) << percent;
}

TEST(NormalTable, IsAntisymmetricAboutTheZeroAt50Percent) {
  const NormalTable table = InitNormalDist();
  EXPECT_EQ(table[50], 0.0);
  for (int percent = 1; percent < 50; ++percent) {
    EXPECT_GT(table[percent], 0.0) << percent;
    EXPECT_EQ(table[100 - percent], -table[percent]) << percent;
  }
}

TEST(NormalTable, FallsStrictlyFrom1To99Percent) {
  const NormalTable table = InitNormalDist();
  for (int percent = 2; percent < 100; ++percent) EXPECT_LT(table[percent], table[percent - 1]) << percent;
}

TEST(NormalTable, HasTheSameEntryFor0AsFor1Percent) {
  const NormalTable table = InitNormalDist();
  EXPECT_EQ(table[0], table[1]);
}

TEST(NormalTable, RefusesIndexesOutside0To99SoAlso100Percent) {
  const NormalTable table = InitNormalDist();
  for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{100}, std::int64_t{1} << 40}) {
    try {
      table[index];
      FAIL() << index;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 9);
    }
  }
}

}  // namespace
}  // namespace zel
