#include "profile/settings/dialog_settings.h"

#include <gtest/gtest.h>

#include "support/recording_settings_store.h"

namespace zel {
namespace {

using Names = std::vector<std::string>;

struct DialogSettingsTest : testing::Test {
  test::RecordingSettingsStore store;
  std::string title = "Host Planner";
  SettingsReader reader{store, [this] { return title; }};
  SettingsWriter writer{store, [this] { return title; }};
};

TEST_F(DialogSettingsTest, ReadsInItsOrderWithItsDefaults) {
  const DialogSettings read = readDialogSettings(reader);
  EXPECT_EQ(store.reads,
            (Names{"Profile/Prf_Per=50", "Profile/Prf_Max=1000", "Profile/Prf_TRes=3", "Profile/Prf_HtL=30",
                   "Profile/Prf_HtR=30", "Profile/Prf_Ele=3", "Profile/Prf_Rng=3", "Profile/Prf_Crv=1.333",
                   "Profile/Prf_Freq=950", "Profile/Prf_Frez=100", "Settings/DispUnits=0",
                   "Settings/CalcMethod=0", "AMMap/FlatEarth=True"}));
  EXPECT_EQ(read.pointsPerKm, 50);
  EXPECT_EQ(read.maxPoints, 1000);
  EXPECT_EQ(read.source, 3);
  EXPECT_EQ(read.startHeight, 30);
  EXPECT_EQ(read.endHeight, 30);
  EXPECT_EQ(read.elevationLines, 3);
  EXPECT_EQ(read.rangeLines, 3);
  EXPECT_EQ(read.k, 1.333F);
  EXPECT_EQ(curvePreset(read.k), CurvePreset::k1333);
  EXPECT_EQ(read.frequency, 950.0F);
  EXPECT_EQ(read.fresnelPercent, 100);
  EXPECT_EQ(read.dispUnits, 0);
  EXPECT_EQ(read.calcMethod, 0);
  EXPECT_TRUE(read.flatEarth);
  EXPECT_TRUE(store.writes.empty());
}

TEST_F(DialogSettingsTest, KeepsASourceThatNoneHasUnlessItMarksNoChoice) {
  for (const char* text : {"0", "-1", "none"}) {
    store.set("Profile", "Prf_TRes", text);
    EXPECT_EQ(readDialogSettings(reader).source, 3) << text;
  }
  store.set("Profile", "Prf_TRes", "5");
  EXPECT_EQ(readDialogSettings(reader).source, 5);
}

TEST_F(DialogSettingsTest, ReadsUnitsAndMethodOtherThanOneAsZero) {
  store.set("Settings", "DispUnits", "2");
  store.set("Settings", "CalcMethod", "-1");
  EXPECT_EQ(readDialogSettings(reader).dispUnits, 0);
  EXPECT_EQ(readDialogSettings(reader).calcMethod, 0);
  store.set("Settings", "DispUnits", "1");
  store.set("Settings", "CalcMethod", "1");
  EXPECT_EQ(readDialogSettings(reader).dispUnits, 1);
  EXPECT_EQ(readDialogSettings(reader).calcMethod, 1);
}

TEST_F(DialogSettingsTest, WritesInItsOrderAsPlainDecimalText) {
  DialogSettings values;
  values.pointsPerKm = 75;
  values.maxPoints = 5000;
  values.source = 7;
  values.startHeight = 12;
  values.endHeight = 750;
  values.elevationLines = 0;
  values.rangeLines = 20;
  values.k = 1.333F;
  values.frequency = 145.6125F;
  values.fresnelPercent = 60;
  values.dispUnits = 1;
  values.calcMethod = 1;
  values.flatEarth = false;
  writeDialogSettings(writer, values);
  EXPECT_EQ(store.writes,
            (Names{"Profile/Prf_Per=75", "Profile/Prf_Max=5000", "Profile/Prf_TRes=7", "Profile/Prf_HtL=12",
                   "Profile/Prf_HtR=750", "Profile/Prf_Ele=0", "Profile/Prf_Rng=20", "Profile/Prf_Crv=1.333",
                   "Profile/Prf_Freq=145.6125", "Profile/Prf_Frez=60", "Settings/DispUnits=1",
                   "Settings/CalcMethod=1", "AMMap/FlatEarth=False"}));
}

TEST_F(DialogSettingsTest, ReadsBackExactlyWhatItWrote) {
  DialogSettings values;
  values.k = 0.1F + 0.2F;  // no short decimal
  values.frequency = 19999.998F;
  values.flatEarth = false;
  values.source = 9;
  writeDialogSettings(writer, values);
  EXPECT_EQ(readDialogSettings(reader), values);
}

TEST_F(DialogSettingsTest, AsksForTheTitleAtEachWriting) {
  writer.write(settings::kPrfEle, std::int32_t{4});
  title = "Second Host";
  writer.write(settings::kPrfEle, std::int32_t{5});
  EXPECT_EQ(store.applications, (Names{"Host Planner", "Second Host"}));
}

TEST_F(DialogSettingsTest, WritesWholeRealsWithoutAPoint) {
  writer.write(settings::kPrfFreq, 950.0F);
  writer.write(settings::kPrfCrv, 1.0F);
  EXPECT_EQ(store.writes, (Names{"Profile/Prf_Freq=950", "Profile/Prf_Crv=1"}));
}

}  // namespace
}  // namespace zel
