#include "profile/view_state/profile_view_state.h"

#include <gtest/gtest.h>

#include "support/recording_settings_store.h"

namespace zel {
namespace {

struct LoadedViewState : testing::Test {
  test::RecordingSettingsStore store;
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};
  ModuleState module;
  UnitsTable units = Init_GUC();

  ProfileViewState load(bool contour = false) { return loadedViewState(module, reader, units, contour); }
};

TEST_F(LoadedViewState, TakesStationsAndHeightsOfTheComponentAndTheRestOfTheSettings) {
  module.station1 = {36.5, -84.25};
  module.station2 = {36.25, -84.5};
  module.antennaHeights = {12, 0};
  const ProfileViewState state = load();
  EXPECT_EQ(state.inputs.start, module.station1);
  EXPECT_EQ(state.inputs.end, module.station2);
  EXPECT_EQ(state.inputs.antennaHeights[0], 12);
  EXPECT_EQ(state.inputs.antennaHeights[1], 0) << "0 is a height that the host gave";
  EXPECT_EQ(state.inputs.k, 1.33F);
  EXPECT_EQ(state.inputs.curve, CurvePreset::k1333);
  EXPECT_EQ(state.inputs.frequency, 950.0F);
  EXPECT_EQ(state.inputs.fresnelFraction, 1.0F);
  EXPECT_EQ(state.inputs.fresnel, FresnelPreset::k100);
  EXPECT_EQ(state.inputs.source, 3);
  EXPECT_EQ(state.inputs.calcMethod, 0);
  EXPECT_EQ(state.inputs.units.height.abbreviation, "m");
  EXPECT_EQ(state.inputs.units.distance.abbreviation, "km");
}

TEST_F(LoadedViewState, AHeightBelowZeroIsTakenFromTheSettings) {
  store.set("Profile", "Prf_HtL", "45");
  store.set("Profile", "Prf_HtR", "55");
  module.antennaHeights = {-1, 7};
  EXPECT_EQ(load().inputs.antennaHeights, (std::array<std::int16_t, 2>{45, 7}));
  module.antennaHeights = {7, -1};
  EXPECT_EQ(load().inputs.antennaHeights, (std::array<std::int16_t, 2>{7, 55}));
}

TEST_F(LoadedViewState, TakesUnitsSourceAndPercentageAsStored) {
  store.set("Settings", "DispUnits", "1");
  store.set("Settings", "CalcMethod", "1");
  store.set("Profile", "Prf_TRes", "7");
  store.set("Contour", "Con_TRes", "2");
  store.set("Profile", "Prf_Frez", "0");
  EXPECT_EQ(load().inputs.units.height.abbreviation, "ft");
  EXPECT_EQ(load().inputs.units.distance.abbreviation, "mi");
  EXPECT_EQ(load().inputs.dispUnits, 1);
  EXPECT_EQ(load().inputs.calcMethod, 1);
  EXPECT_EQ(load().inputs.source, 7);
  EXPECT_EQ(load(true).inputs.source, 2);
  EXPECT_TRUE(load(true).inputs.contour);
  EXPECT_EQ(load().inputs.fresnelFraction, 0.0F);
  EXPECT_EQ(load().inputs.fresnel, FresnelPreset::kNone);
}

TEST_F(LoadedViewState, WaitsForItsFirstDrawingWithNoFailureAndNoMarker) {
  const ProfileViewState state = load();
  EXPECT_TRUE(state.flags.resample);
  EXPECT_TRUE(state.flags.recomputeCurvature);
  EXPECT_TRUE(state.flags.modeledLossPending);
  EXPECT_FALSE(state.flags.loading);
  EXPECT_FALSE(state.flags.profileError);
  EXPECT_FALSE(state.flags.terrainError);
  EXPECT_FALSE(state.flags.underRange);
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_FALSE(state.leftMarker.shown);
  EXPECT_FALSE(state.rightMarker.shown);
  EXPECT_FALSE(state.expanded);
}

TEST(ProfileViewState, WithoutAFresnelLineItsHeightIsTheLineOfSight) {
  ProfileViewState state;
  state.path.firstIndex = 2;
  state.path.spacing = 0.5;
  state.lineOfSight = {100, 200, 10};
  EXPECT_EQ(state.fresnelHeight(2), 100);
  EXPECT_EQ(state.fresnelHeight(4), 110);
  state.fresnel = SampleArray<float>(4, 42.0F);
  EXPECT_EQ(state.fresnelHeight(4), 42);
  EXPECT_THROW(state.fresnelHeight(5), RuntimeError);
}

}  // namespace
}  // namespace zel
