#include "ui/plot/plot_geometry.h"

#include <gtest/gtest.h>

#include "support/plot_state.h"

namespace zel {
namespace {

struct PlotGeometryTest : testing::Test {
  ProfileViewState state = test::flatProfile();
  PlotView view;
};

TEST_F(PlotGeometryTest, WithoutTerrainThereIsNoGroundUnderAPosition) {
  EXPECT_TRUE(groundUnder(state, 5).has_value());
  state.flags.resample = true;
  EXPECT_FALSE(groundUnder(state, 5).has_value());
  EXPECT_FALSE(groundUnder(ProfileViewState{}, 0).has_value());
}

TEST_F(PlotGeometryTest, TheGroundUnderAPositionIsTheOneThatThePointerReads) {
  state.elevation[6] = 200;
  state.curve = SampleArray<float>(12, 3.0F);
  EXPECT_DOUBLE_EQ(*groundUnder(state, 4.5), 153);  // half way from sample 5 to 6, with the rise
  EXPECT_FALSE(groundUnder(state, -1).has_value());
  EXPECT_FALSE(groundUnder(state, 11).has_value());
}

TEST_F(PlotGeometryTest, TheKeyboardStepsSampleBySampleAndStaysWhereTheGroundCanBeRead) {
  view.scale = {0, 260, 12, 90};
  EXPECT_DOUBLE_EQ(steppedPosition(state, view, 5, 1), 6);
  EXPECT_DOUBLE_EQ(steppedPosition(state, view, 5, -1), 4);
  EXPECT_DOUBLE_EQ(steppedPosition(state, view, 5, -10), 0);
  EXPECT_DOUBLE_EQ(steppedPosition(state, view, 5, 10), 10.5);  // 12 x 10.5 / 12
  for (const std::int32_t step : {-10, -1, 1, 10})
    for (double x = 0; x <= 12; x += 0.25)
      EXPECT_TRUE(groundUnder(state, steppedPosition(state, view, x, step)).has_value()) << x << " " << step;
}

TEST_F(PlotGeometryTest, TheKeyboardStaysInTheExpandedView) {
  view.scale = {3, 260, 7.5, 90};
  EXPECT_DOUBLE_EQ(steppedPosition(state, view, 5, 10), 7.5);
  EXPECT_DOUBLE_EQ(steppedPosition(state, view, 5, -10), 3);
}

}  // namespace
}  // namespace zel
