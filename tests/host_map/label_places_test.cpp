#include "map/label_places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

namespace zel::host {
namespace {

using Places = std::vector<std::optional<PixelBox>>;
constexpr PixelBox kArea{0, 0, 400, 300};

LabelWish wish(double x, double y, int priority = 0, bool always = false) {
  return {{x, y}, 60, 14, 8, priority, always};
}

bool overlap(const PixelBox& one, const PixelBox& other) {
  constexpr double kTouching = 1e-5;
  return one.left + kTouching < other.left + other.width && other.left + kTouching < one.left + one.width &&
         one.top + kTouching < other.top + other.height && other.top + kTouching < one.top + one.height;
}

bool within(const PixelBox& box, const PixelBox& area) {
  return box.left >= area.left - 1e-5 && box.top >= area.top - 1e-5 &&
         box.left + box.width <= area.left + area.width + 1e-5 &&
         box.top + box.height <= area.top + area.height + 1e-5;
}

PixelBox symbol(const LabelWish& of) { return {of.at.x - of.gap, of.at.y - of.gap, 2 * of.gap, 2 * of.gap}; }

TEST(LabelPlaces, NameStandsToTheRightOfItsStation) {
  const Places places = placeLabels(std::vector{wish(100, 100)}, kArea);
  EXPECT_EQ(places[0], (PixelBox{108, 93, 60, 14}));
}

TEST(LabelPlaces, WhereTheRightIsTakenItIsTheLeftThenAboveThenBelowThenACorner) {
  const std::vector wishes{wish(100, 100)};
  const PixelBox right{108, 93, 60, 14}, left{32, 93, 60, 14}, above{70, 78, 60, 14}, below{70, 108, 60, 14};
  const auto placed = [&](std::vector<PixelBox> taken) { return placeLabels(wishes, kArea, taken)[0]; };
  EXPECT_EQ(placed({right}), left);
  EXPECT_EQ(placed({right, left}), above);
  EXPECT_EQ(placed({right, left, above}), below);
  const PixelBox sliver{100, 108, 1, 14}, roof{100, 78, 1, 14};
  EXPECT_EQ(placed({right, left, sliver, roof}), (PixelBox{108, 78, 60, 14}));
  EXPECT_EQ(placed({{0, 0, 400, 300}}), std::nullopt);
}

TEST(LabelPlaces, NameKeepsWithinTheArea) {
  const Places places = placeLabels(std::vector{wish(390, 100), wish(2, 3), wish(200, 299)}, kArea);
  EXPECT_EQ(places[0], (PixelBox{322, 93, 60, 14}));  // left of it
  ASSERT_TRUE(places[1] && places[2]);
  EXPECT_TRUE(within(*places[1], kArea));
  EXPECT_TRUE(within(*places[2], kArea));
}

TEST(LabelPlaces, HigherPriorityIsPlacedFirstAndAmongEqualsTheEarlier) {
  // One above the other, with room for one name at the right of both.
  const std::vector<PixelBox> taken{{0, 0, 100, 300}, {0, 0, 400, 90}, {0, 112, 400, 188}};
  const auto placed = [&](int first, int second) {
    return placeLabels(std::vector{wish(100, 98, first), wish(100, 104, second)}, kArea, taken);
  };
  EXPECT_TRUE(placed(0, 0)[0]);
  EXPECT_FALSE(placed(0, 0)[1]);
  EXPECT_FALSE(placed(0, 1)[0]);
  EXPECT_TRUE(placed(0, 1)[1]);
}

TEST(LabelPlaces, WhatIsSelectedIsPlacedInAnyCase) {
  const std::vector<PixelBox> everything{kArea};
  EXPECT_EQ(placeLabels(std::vector{wish(100, 100, 0, true)}, kArea, everything)[0],
            (PixelBox{108, 93, 60, 14}));
  // Within the area where one of the candidates is, and not under others.
  EXPECT_EQ(placeLabels(std::vector{wish(390, 100, 0, true)}, kArea, everything)[0],
            (PixelBox{322, 93, 60, 14}));
  const Places places = placeLabels(std::vector{wish(100, 100, 9), wish(100, 100, 0, true)}, kArea);
  EXPECT_EQ(places[1], (PixelBox{108, 93, 60, 14}));
  EXPECT_NE(places[0], places[1]);
}

TEST(LabelPlaces, NoNameCoversAStation) {
  const Places places = placeLabels(std::vector{wish(100, 100), wish(130, 100)}, kArea);
  EXPECT_EQ(places[0], (PixelBox{32, 93, 60, 14}));  // the other station is at the right
  EXPECT_EQ(places[1], (PixelBox{138, 93, 60, 14}));
}

TEST(LabelPlaces, StationsOutsideTheAreaAndSizesThatAreNoneGetNothing) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  std::vector wishes{wish(-1, 100), wish(100, 301), wish(kNan, 100), wish(100, 100), wish(150, 150)};
  wishes[3].width = 0;
  wishes[4].height = std::numeric_limits<double>::infinity();
  for (const auto& place : placeLabels(wishes, kArea)) EXPECT_FALSE(place);
  EXPECT_TRUE(placeLabels({}, kArea).empty());
  EXPECT_FALSE(placeLabels(std::vector{wish(0, 0)}, {0, 0, 0, 0})[0]);
  EXPECT_FALSE(placeLabels(std::vector{wish(0, 0)}, {0, 0, kNan, 10})[0]);
}

TEST(LabelPlaces, NothingOverlapsAndNothingIsLeftOutForWhichThereIsRoom) {
  constexpr unsigned kSeed = 5;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> x(-50, 450), y(-50, 350), width(10, 90);
  std::uniform_int_distribution<int> priority(0, 3);
  for (const std::size_t count : {5U, 40U, 300U}) {
    std::vector<LabelWish> wishes(count);
    for (LabelWish& one : wishes)
      one = {{x(random), y(random)}, width(random), 14, 5, priority(random), false};
    const PixelBox legend{300, 200, 100, 100};
    const Places places = placeLabels(wishes, kArea, std::vector{legend});
    const auto isFree = [&](const PixelBox& box, std::size_t but) {
      if (!within(box, kArea) || overlap(box, legend)) return false;
      for (std::size_t i = 0; i < count; ++i)
        if (overlap(box, symbol(wishes[i])) || (i != but && places[i] && overlap(box, *places[i])))
          return false;
      return true;
    };
    for (std::size_t i = 0; i < count; ++i) {
      const LabelWish& one = wishes[i];
      if (places[i]) {
        EXPECT_TRUE(isFree(*places[i], i)) << i;
      } else if (within({one.at.x, one.at.y, 0, 0}, kArea)) {
        const PixelBox right{one.at.x + 5, one.at.y - 7, one.width, 14};
        const PixelBox above{one.at.x - one.width / 2, one.at.y - 19, one.width, 14};
        EXPECT_FALSE(isFree(right, i)) << i;
        EXPECT_FALSE(isFree(above, i)) << i;
      }
    }
  }
}

}  // namespace
}  // namespace zel::host
