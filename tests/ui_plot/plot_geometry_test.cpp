#include "ui/plot/plot_geometry.h"

#include <gtest/gtest.h>

#include "support/plot_state.h"

namespace zel {
namespace {

constexpr HitTolerance kTolerance{0.05, 2};  // km, metres

struct PlotGeometryTest : testing::Test {
  ProfileViewState state = test::flatProfile();
  PlotView view;
  PlotPart at(double x, double y) const { return plotPartAt(state, x, y, kTolerance); }
};

TEST_F(PlotGeometryTest, FindsTheGroundTheLineOfSightAndTheMasts) {
  EXPECT_EQ(at(5, 100), PlotPart::kGround);
  EXPECT_EQ(at(5, 101.9), PlotPart::kGround);
  EXPECT_EQ(at(5, 102.1), PlotPart::kNothing);
  EXPECT_EQ(at(5, 130), PlotPart::kLineOfSight);
  EXPECT_EQ(at(5, 200), PlotPart::kNothing);
  EXPECT_EQ(at(1.04, 120), PlotPart::kStartMast);
  EXPECT_EQ(at(10.96, 110), PlotPart::kEndMast);
  EXPECT_EQ(at(1, 140), PlotPart::kNothing) << "above the mast";
  EXPECT_EQ(at(1, 90), PlotPart::kNothing) << "below it";
}

TEST_F(PlotGeometryTest, TheLineOfSightEndsAtTheAntennas) { EXPECT_EQ(at(0.5, 130), PlotPart::kNothing); }

TEST_F(PlotGeometryTest, AShownMarkerComesFirst) {
  test::showMarkersAt(state, 5, 7);
  EXPECT_EQ(at(5.03, 100), PlotPart::kLeftMarker);
  EXPECT_EQ(at(7, 250), PlotPart::kRightMarker);
  state.leftMarker.shown = false;
  EXPECT_EQ(at(5, 100), PlotPart::kGround);
}

TEST_F(PlotGeometryTest, TheExpandedViewHasNoMasts) {
  test::expandBetween(state, 0.5F, 7);
  EXPECT_EQ(at(1, 120), PlotPart::kNothing);
}

TEST_F(PlotGeometryTest, WithoutTerrainThereIsNothingToHit) {
  state.flags.resample = true;
  EXPECT_EQ(at(5, 100), PlotPart::kNothing);
  EXPECT_EQ(plotPartAt(ProfileViewState{}, 0, 0, kTolerance), PlotPart::kNothing);
  EXPECT_FALSE(groundUnder(state, 5).has_value());
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
