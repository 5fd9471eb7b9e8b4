#include "profile/view_state/window_model_run.h"

#include <gtest/gtest.h>

#include "support/plot_state.h"

namespace zel {
namespace {

struct WindowModelRunTest : testing::Test {
  ProfileViewState state = test::flatProfile();
  void SetUp() override { state.model = ModelParameters{0, 5, 15, 0.005, 301, 0, 0}; }
};

TEST_F(WindowModelRunTest, RunsFromStationToStationWithTheTrueSpacing) {
  for (std::int32_t i = 1; i <= 12; ++i) state.elevation[i] = static_cast<float>(i);
  const ModelPath path = windowModelPath(state);
  ASSERT_EQ(path.elevations.size(), 11U);  // N + 1
  EXPECT_EQ(path.elevations.front(), 1);   // sample E
  EXPECT_EQ(path.elevations.back(), 11);   // sample N + E
  EXPECT_EQ(path.spacing, 1000.0F);        // D / N, where the windowless run divides by the points
  EXPECT_EQ(path.frequency, 950.0F);
  EXPECT_EQ(path.antennaHeights, (std::array<std::int16_t, 2>{30, 30}));
}

TEST_F(WindowModelRunTest, TheSpacingIsA32BitFloatOfMetres) {
  state.path.distance = 10.1;
  state.path.intervals = 3;
  state.path.lastIndex = 4;
  EXPECT_EQ(windowModelPath(state).spacing, static_cast<float>(10.1 / 3 * 1000));
}

TEST_F(WindowModelRunTest, AnExpandedViewRunsTheWholePath) {
  test::expandBetween(state, 3, 7);
  EXPECT_EQ(windowModelPath(state).elevations.size(), 11U);
}

TEST_F(WindowModelRunTest, RunsOnCleanedHeights) {
  state.rawElevation[6] = kVoidHeight;
  state.elevation[6] = 0;
  EXPECT_EQ(windowModelPath(state).elevations[5], 0);
}

TEST_F(WindowModelRunTest, TheLossIsThatOfTheModelForThisPath) {
  const std::optional<float> loss = windowModeledLoss(state);
  ASSERT_TRUE(loss.has_value());
  EXPECT_EQ(*loss, modeledLoss(windowModelPath(state), *state.model));
  // Masts of 30 m see each other over smooth ground: free space, 32.4 + 20 log 950 + 20 log 10 = 111.95 dB,
  // and at the very most a few decibels more.
  EXPECT_NEAR(*loss, 113, 2);
}

TEST_F(WindowModelRunTest, FrequenciesTheModelIsNotAskedForGiveZero) {
  for (const float frequency : {19.9F, 20001.0F, 0.0F}) {
    state.inputs.frequency = frequency;
    EXPECT_EQ(windowModeledLoss(state), 0.0F) << frequency;
  }
  for (const float frequency : {20.0F, 20000.0F}) {
    state.inputs.frequency = frequency;
    EXPECT_GT(*windowModeledLoss(state), 0.0F) << frequency;
  }
}

TEST_F(WindowModelRunTest, WithoutParametersThereIsNoLoss) {
  state.model.reset();
  EXPECT_FALSE(windowModeledLoss(state).has_value());
}

TEST_F(WindowModelRunTest, AStateThatDoesNotReachItsStationsFails) {
  state.elevation = SampleArray<float>(10, 0.0F);
  EXPECT_THROW(windowModelPath(state), RuntimeError);
  EXPECT_THROW(windowModelPath(ProfileViewState{}), RuntimeError);
}

}  // namespace
}  // namespace zel
