#include "profile/settings/readers.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"
#include "support/recording_settings_store.h"

namespace zel {
namespace {

using test::RecordingSettingsStore;
using Names = std::vector<std::string>;

struct SettingsReaders : testing::Test {
  RecordingSettingsStore store;
  std::string title = "Host Planner";
  int titleAsked = 0;
  SettingsReader reader{store, [this] {
                          ++titleAsked;
                          return title;
                        }};

  template <typename Body>
  static int errorOf(Body&& body) {
    try {
      body();
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  }
};

TEST_F(SettingsReaders, AskForTheTitleAtEachReading) {
  store.memory.WriteSetting("Second Host", "Profile", "Prf_Ele", "7");
  EXPECT_EQ(readElevationLines(reader), 3);
  title = "Second Host";
  EXPECT_EQ(readElevationLines(reader), 7);
  EXPECT_EQ(titleAsked, 2);
  EXPECT_EQ(store.applications, (Names{"Host Planner", "Second Host"}));
}

TEST_F(SettingsReaders, PassOnWhatAStoreOrATitleThrows) {
  store.memory.failing = true;
  EXPECT_EQ(errorOf([&] { readElevationLines(reader); }), 70);
  const SettingsReader titleless(store, []() -> std::string { throw RuntimeError::objectVariableNotSet(); });
  EXPECT_EQ(errorOf([&] { readElevationLines(titleless); }), 91);
}

TEST_F(SettingsReaders, TakeTheNumberThatATextBeginsWith) {
  store.set("Profile", "Prf_Ele", "12 lines");
  store.set("Profile", "Prf_Rng", "many");
  EXPECT_EQ(readElevationLines(reader), 12);
  EXPECT_EQ(readRangeLines(reader), 0);
}

TEST_F(SettingsReaders, RoundIntegersHalfToEvenAndFailWhereTheyDoNotFit) {
  store.set("Profile", "Prf_Ele", "2.5");
  store.set("Profile", "Prf_Rng", "3.5");
  EXPECT_EQ(readElevationLines(reader), 2);
  EXPECT_EQ(readRangeLines(reader), 4);
  store.set("Profile", "Prf_Ele", "32768");
  EXPECT_EQ(errorOf([&] { readElevationLines(reader); }), 6);
  store.set("Settings", "DispUnits", "2147483648");
  EXPECT_EQ(errorOf([&] { readWindowSettings(reader, {}); }), 6);
  store.set("Settings", "DispUnits", "0");
  store.set("Profile", "Prf_Crv", "1e39");
  EXPECT_EQ(errorOf([&] { readWindowSettings(reader, {}); }), 6) << "beyond a 32-bit real";
}

TEST_F(SettingsReaders, NeverWriteARepairBack) {
  store.set("Profile", "Prf_TRes", "5");
  store.set("Settings", "DispUnits", "2");
  readWindowSettings(reader, {false, false, false});
  readWindowlessSettings(reader);
  readCalculationSettings(reader);
  readItmSettings(reader, SettingsUser::kWindow);
  readPtpSettings(reader);
  EXPECT_TRUE(store.writes.empty());
  EXPECT_EQ(store.memory.ReadSetting("Host Planner", "Profile", "Prf_TRes", ""), "5");
}

TEST_F(SettingsReaders, CalculationSamplesAHundredPointsAKilometreFromAnEmptyStore) {
  const CalculationSettings read = readCalculationSettings(reader);
  EXPECT_EQ(read.pointsPerKm, 100);
  EXPECT_EQ(read.maxPoints, 1000);
  EXPECT_EQ(store.reads, (Names{"Profile/Prf_Per=100", "Profile/Prf_Max=1000"}));
}

TEST_F(SettingsReaders, WindowReadsInItsOrderWithItsDefaults) {
  const WindowSettings read = readWindowSettings(reader, {false, false, false});
  EXPECT_EQ(store.reads, (Names{"Settings/DispUnits=0", "Settings/CalcMethod=0", "Profile/Prf_HtL=30",
                                "Profile/Prf_HtR=30", "Profile/Prf_TRes=3", "Profile/Prf_Crv=1.33",
                                "Profile/Prf_Freq=950", "Profile/Prf_Frez=100"}));
  EXPECT_EQ(read.dispUnits, 0);
  EXPECT_EQ(read.calcMethod, 0);
  EXPECT_EQ(read.startHeight, 30);
  EXPECT_EQ(read.endHeight, 30);
  EXPECT_EQ(read.source, 3);
  EXPECT_EQ(read.k, 1.33F);
  EXPECT_EQ(read.curve, CurvePreset::k1333);
  EXPECT_EQ(read.frequency, 950.0F);
  EXPECT_EQ(read.fresnelPercent, 100);
  EXPECT_EQ(read.fresnel, FresnelPreset::k100);
}

TEST_F(SettingsReaders, WindowReadsNoHeightThatTheHostHasGiven) {
  store.set("Profile", "Prf_HtL", "99999");  // would overflow if it were read
  const WindowSettings read = readWindowSettings(reader, {true, false, false});
  EXPECT_FALSE(read.startHeight.has_value());
  EXPECT_EQ(read.endHeight, 30);
}

TEST_F(SettingsReaders, ContourWindowTakesItsOwnSourceAndRepairsIt) {
  store.set("Profile", "Prf_TRes", "1");
  EXPECT_EQ(readWindowSettings(reader, {true, true, true}).source, 3);
  store.set("Contour", "Con_TRes", "9");
  EXPECT_EQ(readWindowSettings(reader, {true, true, true}).source, 9);
  EXPECT_EQ(readWindowSettings(reader, {true, true, false}).source, 1);
  store.set("Contour", "Con_TRes", "4");
  EXPECT_EQ(readWindowSettings(reader, {true, true, true}).source, 3);
}

TEST_F(SettingsReaders, WindowRepairsASourceThatIsNoneOfTheFive) {
  for (const int code : {1, 2, 3, 7, 9}) EXPECT_EQ(repairedSource(static_cast<std::int16_t>(code)), code);
  for (const int code : {-1, 0, 4, 5, 6, 8, 10, 32767})
    EXPECT_EQ(repairedSource(static_cast<std::int16_t>(code)), 3);
}

TEST_F(SettingsReaders, WindowReadsUnitsAndMethodOtherThanZeroOrOneAsZero) {
  for (const char* text : {"2", "-1", "77", "x"}) {
    store.set("Settings", "DispUnits", text);
    store.set("Settings", "CalcMethod", text);
    const WindowSettings read = readWindowSettings(reader, {});
    EXPECT_EQ(read.dispUnits, 0) << text;
    EXPECT_EQ(read.calcMethod, 0) << text;
  }
  store.set("Settings", "DispUnits", "1");
  store.set("Settings", "CalcMethod", "1");
  EXPECT_EQ(readWindowSettings(reader, {}).dispUnits, 1);
  EXPECT_EQ(readWindowSettings(reader, {}).calcMethod, 1);
}

TEST_F(SettingsReaders, WindowlessCalculationReadsInItsOrderWithItsOwnFrequency) {
  const WindowlessSettings read = readWindowlessSettings(reader);
  EXPECT_EQ(store.reads, (Names{"Settings/CalcMethod=0", "Profile/Prf_TRes=3", "Profile/Prf_Freq=100",
                                "Profile/Prf_Per=100", "Profile/Prf_Max=1000"}));
  EXPECT_EQ(read.frequency, 100.0F);
  EXPECT_EQ(read.density.pointsPerKm, 100);
  EXPECT_EQ(read.density.maxPoints, 1000);
  store.set("Profile", "Prf_TRes", "5");
  EXPECT_EQ(readWindowlessSettings(reader).source, 3);
}

TEST(CurvePresets, AreChosenByTwoDecimals) {
  EXPECT_EQ(curvePreset(1.33F), CurvePreset::k1333);
  EXPECT_EQ(curvePreset(1.333F), CurvePreset::k1333);
  EXPECT_EQ(curvePreset(1.3333F), CurvePreset::k1333);
  EXPECT_EQ(curvePreset(1.33333F), CurvePreset::k1333);
  EXPECT_EQ(curvePreset(1.0F), CurvePreset::k1000);
  EXPECT_EQ(curvePreset(1.004F), CurvePreset::k1000);
  EXPECT_EQ(curvePreset(1.34F), CurvePreset::kCustom);
  EXPECT_EQ(curvePreset(0.99F), CurvePreset::kCustom);
  EXPECT_EQ(curvePreset(0.0F), CurvePreset::kCustom);
}

TEST(CurvePresets, KeepTheStoredFactor) {
  RecordingSettingsStore store;
  store.set("Profile", "Prf_Crv", "1.3333");
  const WindowSettings read = readWindowSettings({store, [] { return std::string("Host Planner"); }}, {});
  EXPECT_EQ(read.curve, CurvePreset::k1333);
  EXPECT_EQ(read.k, 1.3333F);
}

TEST(FresnelPresets, AreChosenByThePercentage) {
  EXPECT_EQ(fresnelPreset(100), FresnelPreset::k100);
  EXPECT_EQ(fresnelPreset(60), FresnelPreset::k60);
  EXPECT_EQ(fresnelPreset(0), FresnelPreset::kNone);
  for (const int percent : {1, 59, 61, 99, 101, -60})
    EXPECT_EQ(fresnelPreset(static_cast<std::int16_t>(percent)), FresnelPreset::kCustom) << percent;
}

TEST_F(SettingsReaders, ColoursAreTwentyFourBitsInBlueGreenRedOrder) {
  EXPECT_EQ(readColour(reader, settings::kColourFresnel), 0x0000FF);
  EXPECT_EQ(readColour(reader, settings::kColourLos), 0xFF0000);
  EXPECT_EQ(readColour(reader, settings::kColourMarker), 0xFFFF00);
  EXPECT_EQ(readColour(reader, settings::kColourElevation), 0x00FF00);
  EXPECT_EQ(readColour(reader, settings::kColourRangeLines), 0xFF00FF);
  EXPECT_EQ(readColour(reader, settings::kColourStrobe), 0xFFFF00);
  store.set("Colors", "cLOS", "16777217");
  EXPECT_EQ(readColour(reader, settings::kColourLos), 1);
  store.set("Colors", "cLOS", "-1");
  EXPECT_EQ(readColour(reader, settings::kColourLos), 0xFFFFFF);
}

TEST_F(SettingsReaders, ModelParametersComeInTheirOrderAndAreNotNormalised) {
  const ItmSettings defaults = readItmSettings(reader, SettingsUser::kWindow);
  EXPECT_EQ(store.reads, (Names{"ITM/iHor=0", "ITM/iRadioClimate=5", "ITM/dDielectric=15", "ITM/dCond=0.005",
                                "ITM/dSurfRef=301", "ITM/dConfidence=0.5", "ITM/dReliability=0.5"}));
  EXPECT_EQ(defaults.polarization, 0);
  EXPECT_EQ(defaults.climate, 5);
  EXPECT_EQ(defaults.permittivity, 15.0);
  EXPECT_EQ(defaults.conductivity, 0.005);
  EXPECT_EQ(defaults.refractivity, 301.0);
  EXPECT_EQ(defaults.confidence, 0.5);
  EXPECT_EQ(defaults.reliability, 0.5);
  store.set("ITM", "dConfidence", "50");
  store.set("ITM", "iRadioClimate", "4.5");
  EXPECT_EQ(readItmSettings(reader, SettingsUser::kWindow).confidence, 50.0);
  EXPECT_EQ(readItmSettings(reader, SettingsUser::kWindow).climate, 4) << "half to even";
}

TEST_F(SettingsReaders, PointToPointConstantsHaveTheirDefaults) {
  const PtpSettings read = readPtpSettings(reader);
  EXPECT_EQ(read.polarization, 0);
  EXPECT_EQ(read.permittivity, 15.0);
  EXPECT_EQ(read.conductivity, 0.005);
  EXPECT_EQ(read.clutterCategory, 0);
  EXPECT_EQ(read.clutterHeight, 0.0);
}

TEST_F(SettingsReaders, TerrainPathsAndCacheSizeAreRead) {
  store.set("Terrain", "Source9", "/maps/a;/maps/b.tif");
  EXPECT_EQ(readTerrainPaths(reader, 9), "/maps/a;/maps/b.tif");
  EXPECT_EQ(readTerrainPaths(reader, 3), "");
  EXPECT_EQ(readTerrainPaths(reader, 4), "");
  EXPECT_EQ(readTerrainCacheMB(reader), 256);
  store.set("Terrain", "CacheMB", "-5");
  EXPECT_EQ(readTerrainCacheMB(reader), 8);
  store.set("Terrain", "CacheMB", "99999999999");
  EXPECT_EQ(readTerrainCacheMB(reader), 65536);
}

TEST_F(SettingsReaders, BooleansAreReadInEveryFormThatHostsWrite) {
  for (const char* text : {"True", "true", "TRUE", " True ", "1", "-1"}) {
    store.set("AMMap", "FlatEarth", text);
    EXPECT_TRUE(reader.boolean(settings::kFlatEarth, SettingsUser::kDialog)) << text;
  }
  for (const char* text : {"False", "false", "0", "", "x"}) {
    store.set("AMMap", "FlatEarth", text);
    EXPECT_FALSE(reader.boolean(settings::kFlatEarth, SettingsUser::kDialog)) << text;
  }
}

}  // namespace
}  // namespace zel
