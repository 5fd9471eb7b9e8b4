#include "export/export_profile.h"

#include <gtest/gtest.h>

#include "export_state.h"

namespace zel {
namespace {

using test::exportableState;

TEST(ExportProfile, IsMadeOnlyOfAProfileThatIsSampledAndNotRefused) {
  EXPECT_TRUE(isExportable(exportableState()));
  ProfileViewState state = exportableState();
  state.flags.profileError = true;
  EXPECT_FALSE(isExportable(state));
  state = exportableState();
  state.flags.resample = true;
  EXPECT_FALSE(isExportable(state));
  EXPECT_FALSE(isExportable(ProfileViewState{}));
}

TEST(ExportProfile, RunsFromStationToStation) {
  EXPECT_EQ(exportedSamples(exportableState()), (SampleRange{1, 11}));
  EXPECT_EQ(wholePathSamples(exportableState()), 11);
}

TEST(ExportProfile, RunsOverTheDrawnStretchOfAnExpandedViewCutToTheStations) {
  ProfileViewState state = exportableState();
  test::expandBetween(state, 3.5F, 6.25F);
  EXPECT_EQ(exportedSamples(state), (SampleRange{2, 7}));
  EXPECT_EQ(wholePathSamples(state), 11) << "the whole path stays as it is";
  test::expandBetween(state, 0.5F, 11.75F);
  EXPECT_EQ(exportedSamples(state), (SampleRange{1, 11}));
}

TEST(ExportProfile, StaysExpandedWhenAMarkerIsCleared) {
  ProfileViewState state = exportableState();
  test::expandBetween(state, 3.5F, 6.25F);
  state.leftMarker.shown = false;
  state.leftMarker.keptX = 0;
  EXPECT_EQ(exportedSamples(state), (SampleRange{2, 7}));
}

TEST(ExportProfile, MarkersOfAViewThatIsNotExpandedDoNotCutIt) {
  ProfileViewState state = exportableState();
  test::showMarkersAt(state, 3.5F, 6.25F);
  EXPECT_EQ(exportedSamples(state), (SampleRange{1, 11}));
}

// 12 samples over 12 km: 12/11 km apart, on a plane of 100 km a degree.
TEST(ExportProfile, SamplesLieEvenlyFromTheBackPointToTheForwardPoint) {
  const ExportProfile profile = test::exportOf(exportableState());
  ASSERT_EQ(profile.positions.size(), 12);
  constexpr double kTolerance = 1e-12;  // degrees
  EXPECT_NEAR(profile.positions[1].latitude, 36.49, kTolerance);
  EXPECT_NEAR(profile.positions[2].latitude, 36.49 + 0.12 / 11, kTolerance);
  EXPECT_NEAR(profile.positions[12].latitude, 36.61, kTolerance);
  for (std::int32_t i = 1; i <= 12; ++i) EXPECT_NEAR(profile.positions[i].longitude, -84.25, kTolerance);
}

TEST(ExportProfile, KeepsTheStateAsItWas) {
  ProfileViewState state = exportableState();
  const ExportProfile profile = test::exportOf(state);
  state.elevation[5] = 999;
  state.expanded = true;
  EXPECT_EQ(profile.state.elevation[5], 105.0F);
  EXPECT_FALSE(profile.state.expanded);
}

TEST(ExportProfile, ModelParametersThatCouldNotBeReadAreAFailureThatSaysSo) {
  ProfileViewState state = exportableState();
  EXPECT_EQ(modelParametersOf(state), *state.model);
  state.model.reset();
  try {
    modelParametersOf(state);
    FAIL() << "there are no parameters";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 1101);
    EXPECT_NE(error.description().find("\"ITM\""), std::string::npos);
  }
}

}  // namespace
}  // namespace zel
