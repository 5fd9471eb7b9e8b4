#include "profile/settings/settings_table.h"

#include <gtest/gtest.h>

#include <set>

#include "models/ptp/parameters.h"

namespace zel {
namespace {

struct Row {
  const char* section;
  const char* key;
  const char* defaultText;
};

// Every setting with the default that a reader without one of its own passes.
constexpr Row kRows[] = {
    {"Profile", "Prf_Per", "100"},    {"Profile", "Prf_Max", "1000"},      {"Profile", "Prf_TRes", "3"},
    {"Profile", "Prf_HtL", "30"},     {"Profile", "Prf_HtR", "30"},        {"Profile", "Prf_Ele", "3"},
    {"Profile", "Prf_Rng", "3"},      {"Profile", "Prf_Crv", "1.33"},      {"Profile", "Prf_Freq", "950"},
    {"Profile", "Prf_Frez", "100"},   {"Profile", "PrintDescription", ""}, {"Settings", "DispUnits", "0"},
    {"Settings", "CalcMethod", "0"},  {"Settings", "gnuPlotEXE", ""},      {"Settings", "CoordFormat", "DMS"},
    {"AMMap", "FlatEarth", "True"},   {"Contour", "Con_TRes", "3"},        {"Colors", "cFresnel", "255"},
    {"Colors", "cLOS", "16711680"},   {"Colors", "cLRMarker", "16776960"}, {"Colors", "cElevation", "65280"},
    {"Colors", "cRange", "16711935"}, {"Colors", "cStrobe", "16776960"},   {"ITM", "iHor", "0"},
    {"ITM", "iRadioClimate", "5"},    {"ITM", "dDielectric", "15"},        {"ITM", "dCond", "0.005"},
    {"ITM", "dSurfRef", "301"},       {"ITM", "dConfidence", "0.5"},       {"ITM", "dReliability", "0.5"},
    {"Terrain", "Source1", ""},       {"Terrain", "Source2", ""},          {"Terrain", "Source3", ""},
    {"Terrain", "Source7", ""},       {"Terrain", "Source9", ""},          {"Terrain", "CacheMB", "256"},
    {"PTP", "Polarization", "0"},     {"PTP", "Permittivity", "15"},       {"PTP", "Conductivity", "0.005"},
    {"PTP", "ClutterCategory", "0"},  {"PTP", "ClutterHeight", "0"},       {"LinkBudget", "TxPower", "40"},
    {"LinkBudget", "TxGain", "0"},    {"LinkBudget", "TxLosses", "0"},     {"LinkBudget", "RxGain", "0"},
    {"LinkBudget", "RxLosses", "0"},  {"LinkBudget", "Threshold", "-100"},
};

TEST(SettingsTable, HoldsEverySettingWithItsSectionKeyAndDefault) {
  ASSERT_EQ(settingsTable().size(), std::size(kRows));
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    const Setting& setting = *settingsTable()[i];
    EXPECT_EQ(setting.section, kRows[i].section);
    EXPECT_EQ(setting.key, kRows[i].key);
    EXPECT_EQ(setting.defaultText, kRows[i].defaultText) << setting.key;
    EXPECT_FALSE(setting.meaning.empty()) << setting.key;
  }
}

TEST(SettingsTable, NamesNoSettingTwice) {
  std::set<std::pair<std::string_view, std::string_view>> names;
  for (const Setting* setting : settingsTable())
    EXPECT_TRUE(names.insert({setting->section, setting->key}).second) << setting->key;
}

TEST(SettingsTable, EveryDefaultThatIsSetIsAValidValueExceptTheCalculationsDensity) {
  for (const Setting* setting : settingsTable()) {
    const std::string problem = settingProblem(*setting, setting->defaultText);
    if (setting == &settings::kPrfPer)
      EXPECT_FALSE(problem.empty()) << "100 points a kilometre lie outside the dialog's range";
    else
      EXPECT_TRUE(problem.empty()) << problem;
  }
}

TEST(SettingsTable, ReadersWithADefaultOfTheirOwnGetIt) {
  using enum SettingsUser;
  EXPECT_EQ(settings::kPrfPer.defaultFor(kDialog), "50");
  EXPECT_EQ(settings::kPrfPer.defaultFor(kCalculation), "100");
  EXPECT_EQ(settings::kPrfPer.defaultFor(kWindowless), "100");
  EXPECT_EQ(settings::kPrfCrv.defaultFor(kDialog), "1.333");
  EXPECT_EQ(settings::kPrfCrv.defaultFor(kWindow), "1.33");
  EXPECT_EQ(settings::kPrfFreq.defaultFor(kWindowless), "100");
  EXPECT_EQ(settings::kPrfFreq.defaultFor(kWindow), "950");
  EXPECT_EQ(settings::kPrfFreq.defaultFor(kDialog), "950");
}

TEST(SettingsTable, FindsASettingWhateverTheCase) {
  EXPECT_EQ(findSetting("profile", "PRF_PER"), &settings::kPrfPer);
  EXPECT_EQ(findSetting("Profile", "DispUnits"), nullptr) << "the section belongs to the name";
  EXPECT_EQ(findSetting("Profile", ""), nullptr);
}

TEST(SettingsTable, KnowsTheFilesOfTheFiveSourceCodesOnly) {
  EXPECT_EQ(terrainSourceSetting(1)->key, "Source1");
  EXPECT_EQ(terrainSourceSetting(2)->key, "Source2");
  EXPECT_EQ(terrainSourceSetting(3)->key, "Source3");
  EXPECT_EQ(terrainSourceSetting(7)->key, "Source7");
  EXPECT_EQ(terrainSourceSetting(9)->key, "Source9");
  for (const int code : {-1, 0, 4, 5, 6, 8, 10}) EXPECT_EQ(terrainSourceSetting(code), nullptr) << code;
}

TEST(SettingsTable, RangesEndWhereTheDialogSays) {
  struct {
    const Setting& setting;
    double low;
    double high;
  } const rows[] = {{settings::kPrfPer, 10, 99},
                    {settings::kPrfMax, 1000, 5000},
                    {settings::kPrfHtL, 1, 750},
                    {settings::kPrfHtR, 1, 750},
                    {settings::kPrfEle, 0, 20},
                    {settings::kPrfRng, 0, 20},
                    {settings::kPrfCrv, 0.01, 50},
                    {settings::kPrfFreq, 20, 20000},
                    {settings::kPrfFrez, 0, 100},
                    {settings::kItmPermittivity, 1, 1e5},
                    {settings::kItmConductivity, 0, 1e9},
                    {settings::kItmRefractivity, 0, 540},
                    {settings::kItmConfidence, 0.01, 100},
                    {settings::kItmReliability, 0.01, 100}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.setting.range->low, row.low) << row.setting.key;
    EXPECT_EQ(row.setting.range->high, row.high) << row.setting.key;
  }
}

TEST(SettingsTable, TheClutterCategoriesAreThoseOfTheModel) {
  EXPECT_EQ(settings::kPtpClutterCategory.range->low, static_cast<double>(ptp::ClutterCategory::kNone));
  EXPECT_EQ(settings::kPtpClutterCategory.range->high,
            static_cast<double>(ptp::ClutterCategory::kDenseUrban));
  EXPECT_EQ(settingProblem(settings::kPtpClutterCategory, "5"), "");
  EXPECT_NE(settingProblem(settings::kPtpClutterCategory, "6"), "");
}

TEST(SettingProblem, AcceptsTheEndsOfARangeAndRefusesWhatLiesBeyond) {
  for (const char* text : {"10", "99", " 50 ", "5e1"})
    EXPECT_EQ(settingProblem(settings::kPrfPer, text), "") << text;
  for (const char* text : {"9", "100", "12.5", "", "abc", "50x", "1e400"})
    EXPECT_NE(settingProblem(settings::kPrfPer, text), "") << text;
  EXPECT_EQ(settingProblem(settings::kPrfCrv, "0.01"), "");
  EXPECT_NE(settingProblem(settings::kPrfCrv, "50.1"), "");
}

TEST(SettingProblem, SaysWhatTheSettingTakes) {
  EXPECT_EQ(settingProblem(settings::kPrfPer, "abc"),
            "Profile/Prf_Per takes a whole number from 10 to 99 (1/km), not \"abc\"");
  EXPECT_EQ(settingProblem(settings::kPrfTRes, "5"), "Profile/Prf_TRes takes one of 1,2,3,7,9, not \"5\"");
}

TEST(SettingExpectation, SaysTypeRangeUnitAndChoices) {
  EXPECT_EQ(settingExpectation(settings::kItmRefractivity), "a number from 0 to 540 (N-units)");
  EXPECT_EQ(settingExpectation(settings::kPrfMax), "a whole number from 1000 to 5000");
  EXPECT_EQ(settingExpectation(settings::kCalcMethod), "one of 0,1");
  EXPECT_EQ(settingExpectation(settings::kFlatEarth), "one of True,False,1,-1,0");
  EXPECT_EQ(settingExpectation(settings::kGnuPlotExe), "any text");
}

TEST(SettingProblem, TakesBooleansAndChoicesInAnyCaseAndAnyTextWhereTextIsMeant) {
  for (const char* text : {"true", "FALSE", "1", "-1", "0"})
    EXPECT_EQ(settingProblem(settings::kFlatEarth, text), "") << text;
  EXPECT_NE(settingProblem(settings::kFlatEarth, "yes"), "");
  EXPECT_EQ(settingProblem(settings::kCoordFormat, "dd"), "");
  EXPECT_NE(settingProblem(settings::kCoordFormat, "UTM"), "");
  EXPECT_EQ(settingProblem(settings::kGnuPlotExe, "/usr/bin/gnuplot"), "");
  EXPECT_EQ(settingProblem(settings::kTerrainSource3, "a;b"), "");
}

}  // namespace
}  // namespace zel
