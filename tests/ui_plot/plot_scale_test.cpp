#include "ui/plot/plot_scale.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/plot_state.h"

namespace zel {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(PlotScale, ShowsTheExtendedPathFromBottomToTop) {
  const ProfileViewState state = test::flatProfile();
  EXPECT_EQ(plotScale(state, 100), (PlotScale{0, 260, 12, 90}));
}

TEST(PlotScale, TheBottomLiesATenthOfTheHighestGroundBelowTheLowest) {
  ProfileViewState state = test::flatProfile();
  state.statistics.plotMinimum = 200;
  state.statistics.plotMaximum = 1000;
  // 200 - 0.1 x 1000, where a tenth of the span of 800 m would have given 120.
  EXPECT_DOUBLE_EQ(plotScale(state, 100).bottom, 100);
  EXPECT_DOUBLE_EQ(plotScale(state, 100).top, 2000);
}

TEST(PlotScale, TheTopIsTheHighestOfGroundAndAntennasRaisedByTheExaggeration) {
  ProfileViewState state = test::flatProfile();
  EXPECT_DOUBLE_EQ(plotScale(state, 0).top, 130);
  EXPECT_DOUBLE_EQ(plotScale(state, 50).top, 195);
  EXPECT_DOUBLE_EQ(plotScale(state, 500).top, 780);
  state.inputs.antennaHeights = {30, 80};
  EXPECT_DOUBLE_EQ(plotScale(state, 0).top, 180) << "the end antenna";
  state.inputs.antennaHeights = {90, 80};
  EXPECT_DOUBLE_EQ(plotScale(state, 0).top, 190) << "the start antenna";
  state.statistics.plotMaximum = 400;
  EXPECT_DOUBLE_EQ(plotScale(state, 0).top, 400) << "the ground";
}

TEST(PlotScale, TheTopCountsAntennasWithoutTheirCurvatureRise) {
  ProfileViewState state = test::flatProfile();
  state.curve = SampleArray<float>(12, 7.0F);
  state.lineOfSight.startTop = state.lineOfSight.endTop = 137;
  EXPECT_DOUBLE_EQ(plotScale(state, 0).top, 130);
}

TEST(PlotScale, GroundBelowTheSeaTurnsASteepPictureUpsideDown) {
  ProfileViewState state = test::flatProfile();
  state.statistics = {-60, -60, -60, -50, -55, -60, -50};
  const PlotScale scale = plotScale(state, 500);
  EXPECT_DOUBLE_EQ(scale.bottom, -55);  // -60 - 0.1 x -50
  EXPECT_DOUBLE_EQ(scale.top, -180);    // 6 x (-60 + 30)
}

TEST(PlotScale, TheExpandedViewReachesFromMarkerToMarker) {
  ProfileViewState state = test::flatProfile();
  test::expandBetween(state, 3, 7.5F);
  EXPECT_EQ(plotScale(state, 100), (PlotScale{3, 260, 7.5, 90}));
}

TEST(PlotScale, ACornerThatIsNoFiniteNumberOverflows) {
  for (const float bad : {kNan, kInfinity, -kInfinity}) {
    ProfileViewState state = test::flatProfile();
    state.statistics.plotMaximum = bad;
    EXPECT_THROW(plotScale(state, 100), RuntimeError) << bad;
    state = test::flatProfile();
    test::expandBetween(state, 3, bad);
    EXPECT_THROW(plotScale(state, 100), RuntimeError) << bad;
  }
}

TEST(PlotScale, MarkersATenthOfAKilometreApartOrLessAreNotExpandedBetween) {
  ProfileViewState state = test::flatProfile();
  struct {
    float left, right;
    bool can;
  } const rows[] = {{5, 5, false},    {5, 5.05F, false}, {0, 0.1F, true},  // 0.1F is just above 0.1
                    {5, 5.1F, false},                                      // 5.1F - 5 is just below it
                    {5, 5.2F, true},  {5.2F, 5, true},   {0, 0.09999F, false}, {5, kNan, false}};
  for (const auto& row : rows) {
    state.leftMarker.x = row.left;
    state.rightMarker.x = row.right;
    EXPECT_EQ(canExpandBetweenMarkers(state), row.can) << row.left << " " << row.right;
  }
}

}  // namespace
}  // namespace zel
