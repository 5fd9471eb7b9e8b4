#include "profile/sampling/height_cleanup.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/terrain.h"

namespace zel {
namespace {

SampleArray<float> heights(std::vector<float> values) { return SampleArray<float>(std::move(values)); }

TEST(HeightCleanup, AHeightBelowFiveHundredMetresUnderTheSeaBecomesZero) {
  const CleanedHeights cleaned = cleanedHeights(heights({12, -600, kVoidHeight, -500.5F, -50, -100}));
  EXPECT_EQ(cleaned.heights, heights({12, 0, 0, 0, -50, -100}));
  EXPECT_FALSE(cleaned.impossible);
}

TEST(HeightCleanup, AHeightBetweenFiveHundredAndAHundredMetresUnderTheSeaIsImpossible) {
  struct {
    float height;
    bool impossible;
  } const rows[] = {{-300, true},  {-500, true}, {std::nextafter(-100.0F, -200.0F), true},
                    {-100, false}, {-50, false}, {std::nextafter(-500.0F, -600.0F), false}};
  for (const auto& row : rows)
    EXPECT_EQ(cleanedHeights(heights({0, row.height})).impossible.has_value(), row.impossible) << row.height;
}

TEST(HeightCleanup, NamesTheFirstImpossibleHeight) {
  const auto found = firstImpossibleHeight(heights({1, 2, -300, -400}));
  ASSERT_TRUE(found);
  EXPECT_EQ(found->sample, 3);
  EXPECT_EQ(found->height, -300);
  EXPECT_FALSE(firstImpossibleHeight(heights({1, -600})));
  EXPECT_FALSE(firstImpossibleHeight({}));
}

TEST(HeightCleanup, DescribesAnImpossibleHeightWithItsPlaceWhenKnown) {
  EXPECT_EQ(describe({3, -300}, std::nullopt),
            "The terrain height of sample 3 is -300 m; heights from -500 m up to -100 m are not carried");
  EXPECT_EQ(describe({3, -300.5F}, GeoPoint{36.5, -84.25}),
            "The terrain height of sample 3 at 36.500000, -84.250000 is -300.5 m; heights from -500 m up to "
            "-100 m are not carried");
}

TEST(HeightCleanup, KnowsAMissingHeightFromTheSea) {
  EXPECT_TRUE(isMissingHeight(kVoidHeight));
  EXPECT_TRUE(isMissingHeight(-600));
  EXPECT_TRUE(isMissingHeight(std::numeric_limits<float>::quiet_NaN()));
  EXPECT_TRUE(isMissingHeight(std::numeric_limits<float>::infinity()));
  EXPECT_FALSE(isMissingHeight(0));
  EXPECT_FALSE(isMissingHeight(-430)) << "the lowest shore on earth";
  EXPECT_FALSE(isMissingHeight(8849));
}

}  // namespace
}  // namespace zel
