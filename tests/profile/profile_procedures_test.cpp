#include "profile/view_state/profile_procedures.h"

#include <gtest/gtest.h>

#include "support/recording_settings_store.h"
#include "support/scripted_platform.h"
#include "support/scripted_terrain.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

using Names = std::vector<std::string>;

// Keeps the order of the labels beside their texts.
struct OrderedReadouts final : ProfileReadouts {
  void show(std::string_view control, const std::string& text) override {
    shown.push_back(std::string(control) + "=" + text);
  }
  Names shown;
};

struct ReturningHardStop final : HardStop {
  void stop(std::string_view) override {}
};

struct ProfileProceduresTest : testing::Test {
  test::TemporaryFolder folder;
  test::ScriptedDialogs dialogs;
  test::ScriptedPointer pointer;
  test::ScriptedEventLoop eventLoop;
  test::ScriptedProcess process;
  test::FixedClock clock;
  test::ScriptedHardStop hardStop;
  test::ScriptedGeodesy geodesy;
  test::ScriptedTerrainSampler sampler;
  test::RecordingSettingsStore store;
  OrderedReadouts readouts;
  ModuleState module;
  NormalTable normalTable = InitNormalDist();
  ErrorLog log{[this] { return folder.path().string(); }, clock, dialogs};
  ErrorTrap trap{{[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer, &dialogs, &eventLoop,
                  &process, &log}};
  TrappedModule window{"frmProfile", trap};
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};
  ProfileProcedures procedures{services(&hardStop), reader};
  ProfileViewState state = loadedViewState(module, reader, Init_GUC(), false);

  ProfileProcedures::Services services(HardStop* stop) {
    ProfileProcedures::Services all;
    all.geodesy = &geodesy;
    all.sampler = &sampler;
    all.dialogs = &dialogs;
    all.hardStop = stop;
    all.errorLog = &log;
    all.readouts = &readouts;
    all.module = &module;
    all.trapped = &window;
    all.normalTable = &normalTable;
    return all;
  }
  void useImperialUnits() {
    state.inputs.dispUnits = 1;
    state.inputs.units = unitsFor(Init_GUC(), 1);
  }
  std::string logged() const { return test::fileBytes(folder / "zelErrorLog.txt"); }
  void expectTrapped(const char* location, int number) {
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_NE(dialogs.messages[0].text.find(location), std::string::npos) << dialogs.messages[0].text;
    EXPECT_NE(dialogs.messages[0].text.find("Error Number: " + std::to_string(number)), std::string::npos)
        << dialogs.messages[0].text;
    EXPECT_TRUE(module.bProfileFailed);
    EXPECT_FALSE(state.flags.profileError) << "corrected input draws again";
  }
};

// --- InitITM ---

TEST_F(ProfileProceduresTest, LoadingReadsTheModelsParametersWithLevelsAsDeviates) {
  store.reads.clear();
  EXPECT_FALSE(state.model.has_value());
  procedures.InitITM(state);
  EXPECT_EQ(store.reads, (Names{"ITM/iHor=0", "ITM/iRadioClimate=5", "ITM/dDielectric=15", "ITM/dCond=0.005",
                                "ITM/dSurfRef=301", "ITM/dConfidence=0.5", "ITM/dReliability=0.5"}));
  EXPECT_EQ(state.model, (ModelParameters{0, 5, 15, 0.005, 301, 0, 0}));

  for (const auto& [key, value] : {std::pair{"iHor", "1"},
                                   {"iRadioClimate", "9"},
                                   {"dDielectric", "80"},
                                   {"dCond", "5"},
                                   {"dSurfRef", "350"},
                                   {"dConfidence", "90"},
                                   {"dReliability", "0.1"}})
    store.set("ITM", key, value);
  procedures.InitITM(state);
  EXPECT_EQ(state.model, (ModelParameters{1, 9, 80, 5, 350, -1.28, 1.28})) << "codes are kept as stored";
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ProfileProceduresTest, AModelsParameterThatCannotBeUsedIsTrappedAndLeavesTheProfileAlone) {
  struct {
    const char* key;
    const char* value;
    const char* location;
    const char* number;
  } const rows[] = {{"dConfidence", "100", "frmProfile:InitITM:1", "Error Number: 9"},
                    {"dReliability", "1e400", "frmProfile:InitITM:0", "Error Number: 6"},
                    {"iHor", "32768", "frmProfile:InitITM:0", "Error Number: 6"}};
  for (const auto& row : rows) {
    procedures.InitITM(state);
    ASSERT_TRUE(state.model.has_value());
    dialogs.messages.clear();
    store.set("ITM", row.key, row.value);
    procedures.InitITM(state);
    ASSERT_EQ(dialogs.messages.size(), 1U) << row.key;
    EXPECT_NE(dialogs.messages[0].text.find(row.location), std::string::npos) << dialogs.messages[0].text;
    EXPECT_NE(dialogs.messages[0].text.find(row.number), std::string::npos) << dialogs.messages[0].text;
    EXPECT_FALSE(state.model.has_value()) << "there is no modeled loss";
    EXPECT_FALSE(module.bProfileFailed);
    dialogs.messages.clear();
    store.memory.values.clear();
  }
}

// --- DoPreCalc ---

TEST_F(ProfileProceduresTest, PreCalculationLaysOutThePathAndShowsDistanceAndBearing) {
  store.reads.clear();
  geodesy.distance = 12.34;
  geodesy.azimuth = 47.6;
  procedures.DoPreCalc(state);
  EXPECT_EQ(readouts.shown, (Names{"lblDist=12.3", "lblAzd=48"}));
  EXPECT_EQ(store.reads, (Names{"Profile/Prf_Per=100", "Profile/Prf_Max=1000"}));
  EXPECT_EQ(state.path.intervals, 1000);
  EXPECT_EQ(state.elevation.size(), 1100);
  EXPECT_EQ(state.rawElevation.size(), 1100);
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_FALSE(module.bProfileFailed);
  EXPECT_EQ(sampler.samplings, 0) << "it does not sample";
}

TEST_F(ProfileProceduresTest, DistanceIsShownInDisplayUnitsAndABearingOfNorthIsEmpty) {
  useImperialUnits();
  geodesy.distance = 10;
  geodesy.azimuth = 0;
  procedures.DoPreCalc(state);
  EXPECT_EQ(readouts.shown, (Names{"lblDist=6.2", "lblAzd="}));
}

TEST_F(ProfileProceduresTest, ReadoutsUseTheUsersDecimalSeparator) {
  ProfileProcedures::Services localised = services(&hardStop);
  localised.numbers = {",", "."};
  ProfileProcedures(localised, reader).DoPreCalc(state);
  EXPECT_EQ(readouts.shown[0], "lblDist=10,0");
}

TEST_F(ProfileProceduresTest, AShortPathIsRefusedInABoxAndNothingElseIsDone) {
  store.reads.clear();
  geodesy.distance = 0.19;
  procedures.DoPreCalc(state);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "Under Range Error.");
  EXPECT_EQ(dialogs.messages[0].title, "Profile Error");
  EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::kCritical);
  EXPECT_TRUE(state.flags.underRange);
  EXPECT_TRUE(state.flags.profileError);
  EXPECT_TRUE(module.bProfileFailed);
  EXPECT_TRUE(readouts.shown.empty());
  EXPECT_TRUE(store.reads.empty());
  EXPECT_TRUE(state.elevation.empty());
  EXPECT_FALSE(procedures.refreshProfile(state));
  EXPECT_EQ(sampler.samplings, 0) << "no sampling";
}

TEST_F(ProfileProceduresTest, APathTooLongForItsIndexesIsATrappedFailureAtTheLayout) {
  store.set("Profile", "Prf_Max", "32767");
  geodesy.distance = 400;
  procedures.DoPreCalc(state);
  expectTrapped("frmProfile:DoPreCalc:3", 6);
  EXPECT_EQ(readouts.shown.size(), 2U) << "distance and bearing were shown before";
}

TEST_F(ProfileProceduresTest, ASettingThatOverflowsIsATrappedFailureAtTheReading) {
  store.set("Profile", "Prf_Per", "40000");
  procedures.DoPreCalc(state);
  expectTrapped("frmProfile:DoPreCalc:2", 6);
}

// --- the steps of a drawing ---

TEST_F(ProfileProceduresTest, AFirstDrawingComputesRiseSamplesAndFillsEveryValue) {
  sampler.height = [](std::size_t i) { return static_cast<float>(i); };
  procedures.DoPreCalc(state);
  EXPECT_TRUE(procedures.refreshProfile(state));
  EXPECT_FALSE(state.flags.resample);
  EXPECT_FALSE(state.flags.recomputeCurvature);
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_EQ(state.curve.size(), 1100);
  EXPECT_EQ(state.elevation[1100], 1100);
  EXPECT_EQ(state.statistics.startGround, 50);
  EXPECT_EQ(state.lineOfSight.startTop, 50 + state.curve[50]);
  EXPECT_EQ(state.fresnel.size(), 1050);
  EXPECT_EQ(state.wavelength, 300.0F / 950.0F);
}

TEST_F(ProfileProceduresTest, TerrainIsSampledOnceAndLinesAreComputedEachTime) {
  procedures.DoPreCalc(state);
  procedures.refreshProfile(state);
  state.inputs.antennaHeights = {50, 60};
  state.inputs.k = 1.0F;
  const SampleArray<float> rise = state.curve;
  EXPECT_TRUE(procedures.refreshProfile(state));
  EXPECT_EQ(sampler.samplings, 1);
  EXPECT_EQ(state.curve, rise) << "the rise keeps its k until its flag is set";
  EXPECT_EQ(state.riseK, 1.33F);
  EXPECT_EQ(state.lineOfSight.startTop, 100 + 50 + rise[50]);
  state.flags.recomputeCurvature = true;
  EXPECT_TRUE(procedures.refreshProfile(state));
  EXPECT_NE(state.curve, rise);
  EXPECT_EQ(state.riseK, 1.0F);
  state.inputs.k = 0;
  state.flags.recomputeCurvature = true;
  EXPECT_FALSE(procedures.refreshProfile(state));
  EXPECT_EQ(state.riseK, 1.0F) << "of the rise that stands";
}

TEST_F(ProfileProceduresTest, WithNoneChosenThereIsNoFresnelLine) {
  procedures.DoPreCalc(state);
  procedures.refreshProfile(state);
  state.inputs.fresnelFraction = 0;
  procedures.refreshProfile(state);
  EXPECT_TRUE(state.fresnel.empty());
  EXPECT_EQ(state.fresnelHeight(50), state.lineOfSight.startTop);
}

TEST_F(ProfileProceduresTest, SamplesTheExtendedPathWithTheSourceAndMethodOfTheInputs) {
  state.inputs.source = 7;
  state.inputs.calcMethod = 1;
  procedures.DoPreCalc(state);
  procedures.refreshProfile(state);
  EXPECT_EQ(sampler.calls[3], "SetMethod 1");
  EXPECT_EQ(sampler.calls[4], "SetSampleCount 1100");
  EXPECT_EQ(sampler.calls[5], "SetSource 7");
}

TEST_F(ProfileProceduresTest, RawHeightsAreKeptAsSampled) {
  sampler.height = [](std::size_t i) { return i == 60 ? kVoidHeight : i == 61 ? -50.0F : 100.0F; };
  procedures.DoPreCalc(state);
  EXPECT_TRUE(procedures.refreshProfile(state));
  EXPECT_EQ(state.rawElevation[60], kVoidHeight);
  EXPECT_EQ(state.elevation[60], 0);
  EXPECT_EQ(state.elevation[61], -50);
}

TEST_F(ProfileProceduresTest, AFailedSamplingIsToldAndStopsTheDrawing) {
  struct {
    int status;
    const char* text;
    MessageIcon icon;
    bool terrainError;
  } const rows[] = {{1, "Configuration Error.", MessageIcon::kCritical, false},
                    {2, "Some or all of the terrain data is invalid!", MessageIcon::kInformation, true},
                    {3, "Over Range Error.", MessageIcon::kCritical, false},
                    {4, "Under Range Error.", MessageIcon::kCritical, false}};
  for (const auto& row : rows) {
    ProfileViewState fresh = state;
    module.bProfileFailed = false;
    dialogs.messages.clear();
    sampler.status = row.status;
    procedures.DoPreCalc(fresh);
    EXPECT_FALSE(procedures.refreshProfile(fresh));
    ASSERT_EQ(dialogs.messages.size(), 1U) << row.status;
    EXPECT_EQ(dialogs.messages[0].text, row.text);
    EXPECT_EQ(dialogs.messages[0].title, "Profile Error");
    EXPECT_EQ(dialogs.messages[0].icon, row.icon);
    EXPECT_TRUE(fresh.flags.profileError);
    EXPECT_EQ(fresh.flags.terrainError, row.terrainError);
    EXPECT_TRUE(fresh.flags.resample) << "it is tried again once the error flag is cleared";
    EXPECT_FALSE(fresh.flags.drawing);
    EXPECT_TRUE(module.bProfileFailed);
    EXPECT_EQ(fresh.samplingReport.status, row.status);
    EXPECT_EQ(fresh.elevation[1], 0) << "the heights of a failed sampling are not used";

    const int samplings = sampler.samplings;
    EXPECT_FALSE(procedures.refreshProfile(fresh)) << "the flag stays";
    EXPECT_EQ(sampler.samplings, samplings);
    EXPECT_EQ(dialogs.messages.size(), 1U);

    sampler.status = 0;
    fresh.flags.profileError = false;
    EXPECT_TRUE(procedures.refreshProfile(fresh));
    EXPECT_FALSE(fresh.flags.terrainError) << "success clears it";
  }
}

TEST_F(ProfileProceduresTest, AStatusAboveFourGoesOnButLeavesTheFlags) {
  sampler.status = 5;
  procedures.DoPreCalc(state);
  state.flags.terrainError = true;
  EXPECT_TRUE(procedures.refreshProfile(state));
  EXPECT_EQ(state.elevation[1], 100);
  EXPECT_TRUE(state.flags.terrainError);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ProfileProceduresTest, AnImpossibleHeightIsLoggedAndStopsTheProcess) {
  sampler.height = [](std::size_t i) { return i == 3 ? -300.0F : 100.0F; };
  sampler.places = {{36.5, -84.25}, {36.5, -84.2}, {36.5, -84.15}};
  procedures.DoPreCalc(state);
  try {
    procedures.resampleTerrain(state);
    FAIL() << "nothing may go on";
  } catch (const test::HardStopped& stopped) {
    EXPECT_STREQ(
        stopped.what(),
        "The terrain height of sample 3 at 36.500000, -84.150000 is -300 m; heights from -500 m up to "
        "-100 m are not carried");
  }
  EXPECT_EQ(logged(),
            "11/15/26 19:05:03 The terrain height of sample 3 at 36.500000, -84.150000 is -300 m; heights "
            "from -500 m "
            "up to -100 m are not carried\r\n");
  EXPECT_EQ(state.rawElevation[3], -300) << "the raw heights are kept before any change";
  EXPECT_EQ(state.elevation[1], 0) << "nothing is computed from such heights";
}

TEST_F(ProfileProceduresTest, AHardStopThatReturnsStillComputesNothing) {
  ReturningHardStop returning;
  ProfileProcedures soft(services(&returning), reader);
  sampler.height = [](std::size_t) { return -101.0F; };
  soft.DoPreCalc(state);
  EXPECT_THROW(soft.resampleTerrain(state), RuntimeError);
}

TEST_F(ProfileProceduresTest, NothingIsDrawnWhileLoadingOrAfterAFailure) {
  procedures.DoPreCalc(state);
  state.flags.loading = true;
  EXPECT_FALSE(procedures.refreshProfile(state));
  state.flags.loading = false;
  state.flags.profileError = true;
  EXPECT_FALSE(procedures.refreshProfile(state));
  EXPECT_EQ(sampler.samplings, 0);
  EXPECT_TRUE(state.flags.recomputeCurvature);
}

TEST_F(ProfileProceduresTest, AFactorWhoseRadiusOverflowsFailsTheDrawingUntilItIsCorrected) {
  procedures.DoPreCalc(state);
  state.inputs.k = 8;
  EXPECT_FALSE(procedures.refreshProfile(state));
  expectTrapped("frmProfile:drawLine:1", 6);
  EXPECT_FALSE(state.flags.drawing);
  EXPECT_TRUE(state.flags.recomputeCurvature);
  state.inputs.k = 1.333F;
  EXPECT_TRUE(procedures.refreshProfile(state));
}

TEST_F(ProfileProceduresTest, AFrequencyOfZeroFailsTheDrawing) {
  procedures.DoPreCalc(state);
  state.inputs.frequency = 0;
  EXPECT_FALSE(procedures.refreshProfile(state));
  expectTrapped("frmProfile:drawLine:4", 11);
  EXPECT_TRUE(state.flags.resample) << "cleared only by a drawing that succeeded";
}

// --- MinMaxAv ---

TEST_F(ProfileProceduresTest, StatisticsAreShownGroupedWithOneDecimal) {
  sampler.height = [](std::size_t i) { return i == 50 ? 1234.56F : i == 1050 ? -20.25F : 1000.0F; };
  procedures.DoPreCalc(state);
  readouts.shown.clear();
  procedures.refreshProfile(state);
  // Average: (1234.56 - 20.25 + 999 x 1000) / 1000 = 1000.21.
  EXPECT_EQ(readouts.shown, (Names{"lblSAMSL=1,234.6", "lblEAMSL=-20.3", "lblAvHt=1,000.2",
                                   "lblMaxHt=1,234.6", "lblMinHt=-20.3"}));
}

TEST_F(ProfileProceduresTest, StatisticsAreShownInDisplayUnits) {
  useImperialUnits();
  sampler.height = [](std::size_t) { return 1000.0F; };
  procedures.DoPreCalc(state);
  readouts.shown.clear();
  procedures.refreshProfile(state);
  EXPECT_EQ(readouts.shown[0], "lblSAMSL=3,280.8");
  EXPECT_EQ(state.statistics.startGround, 1000) << "the profile stays in metres";
}

TEST_F(ProfileProceduresTest, StatisticsWithoutAPathAreATrappedFailure) {
  procedures.MinMaxAv(state);
  expectTrapped("frmProfile:MinMaxAv:0", 9);
}

// --- whatever fails outside ---

TEST_F(ProfileProceduresTest, AFailingStoreIsTrappedAtItsProcedure) {
  store.memory.failing = true;
  procedures.DoPreCalc(state);
  expectTrapped("frmProfile:DoPreCalc:2", 70);
}

TEST(KeptReadouts, KeepTheLastTextOfEachControl) {
  KeptReadouts kept;
  EXPECT_EQ(kept.text("lblDist"), "");
  kept.show("lblDist", "1.0");
  kept.show("lblDist", "2.0");
  EXPECT_EQ(kept.text(readout::kDistance), "2.0");
}

}  // namespace
}  // namespace zel
