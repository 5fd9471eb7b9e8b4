#include "zeltool/terrain/extent_index.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

using Numbers = std::vector<std::uint32_t>;

Numbers at(const ExtentIndex& index, double latitude, double longitude) {
  return index.candidates(ExtentIndex::squareOf({latitude, longitude}));
}

TEST(ExtentIndex, FindsAnAreaInEverySquareThatItTouches) {
  ExtentIndex index;
  index.add({35.99, -85.01, 37.01, -83.99});
  for (const double latitude : {35.5, 36.5, 37.5})
    for (const double longitude : {-85.5, -84.5, -83.5})
      EXPECT_EQ(at(index, latitude, longitude), Numbers{0});
  EXPECT_TRUE(at(index, 38.5, -84.5).empty());
  EXPECT_TRUE(at(index, 36.5, -86.5).empty());
}

TEST(ExtentIndex, KeepsTheOrderAlsoWithAreasOfContinents) {
  ExtentIndex index;
  index.add({10, 10, 11, 11});
  index.add({-90, -180, 90, 180});
  index.add({10, 10, 11, 11});
  EXPECT_EQ(at(index, 10.5, 10.5), (Numbers{0, 1, 2}));
  EXPECT_EQ(at(index, -89.5, 170), Numbers{1});
  EXPECT_EQ(at(index, 90, 180), Numbers{1});
}

TEST(ExtentIndex, GoesOnAcrossTheAntimeridian) {
  ExtentIndex index;
  index.add({-1, 179.5, 1, 180.5});
  EXPECT_EQ(at(index, 0, 179.9), Numbers{0});
  EXPECT_EQ(at(index, 0, -179.9), Numbers{0});
  EXPECT_EQ(at(index, 0, 180), Numbers{0});
  EXPECT_EQ(at(index, 0, 180.2), Numbers{0});
  EXPECT_TRUE(at(index, 0, 178.5).empty());
}

TEST(ExtentIndex, KnowsThePolesAsTheOutermostSquares) {
  ExtentIndex index;
  index.add({89, 0, 90, 1});
  EXPECT_EQ(at(index, 90, 0.5), Numbers{0});
  const GeoExtent area = ExtentIndex::areaOf(ExtentIndex::squareOf({36.5, -84.5}));
  EXPECT_EQ(area.south, 36);
  EXPECT_EQ(area.west, -85);
  EXPECT_EQ(area.north, 37);
  EXPECT_EQ(area.east, -84);
}

}  // namespace
}  // namespace zel
