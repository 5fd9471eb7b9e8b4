// What typed texts mean. The limits are those of the profile window's boxes; feet are 3.28084 to the metre.
#include "ui/profile_window/panel_inputs.h"

#include <gtest/gtest.h>

#include "component/services/display_units.h"

namespace zel {
namespace {

const UnitsTable kTable = Init_GUC();
const DisplayUnit kMetres = unitsFor(kTable, 0).height;
const DisplayUnit kFeet = unitsFor(kTable, 1).height;
constexpr auto kTyping = TypedWhen::kTyping;
constexpr auto kLeaving = TypedWhen::kLeaving;

struct HeightCase {
  const char* text;
  TypedWhen when;
  TypedState state;
  int metres;
  const char* rewritten;
};

TEST(PanelInputs, TakesAntennaHeightsFrom1To750MetresAndClampsAtOnce) {
  const HeightCase cases[] = {
      {"", kTyping, TypedState::kEmpty, 0, ""},
      {"  ", kTyping, TypedState::kEmpty, 0, ""},
      {"1", kTyping, TypedState::kAccepted, 1, "1"},
      {"750", kTyping, TypedState::kAccepted, 750, "750"},
      {"751", kTyping, TypedState::kClamped, 750, "750"},
      {"900", kTyping, TypedState::kClamped, 750, "750"},
      {"99999999", kTyping, TypedState::kClamped, 750, "750"},
      {"1e999", kTyping, TypedState::kClamped, 750, "750"},
      {"-1e999", kTyping, TypedState::kClamped, 1, "1"},
      {"0", kTyping, TypedState::kClamped, 1, "1"},
      {"-5", kTyping, TypedState::kClamped, 1, "1"},
      {"abc", kTyping, TypedState::kClamped, 1, "1"},
      {"0.4", kTyping, TypedState::kInMaking, 0, ""},
      {"0.4", kLeaving, TypedState::kClamped, 1, "1"},
      {"0.5", kTyping, TypedState::kInMaking, 0, ""},  // half to even: 0 whole metres
      {"30.5", kTyping, TypedState::kAccepted, 30, "30"},
      {"31.5", kTyping, TypedState::kAccepted, 32, "32"},
      {"30 m", kTyping, TypedState::kAccepted, 30, "30"},
  };
  for (const HeightCase& c : cases) {
    const auto typed = typedAntennaHeight(c.text, kMetres, c.when);
    EXPECT_EQ(typed.state, c.state) << '"' << c.text << '"';
    if (!typed.hasValue()) continue;
    EXPECT_EQ(typed.value, c.metres) << '"' << c.text << '"';
    EXPECT_EQ(typed.text, c.rewritten) << '"' << c.text << '"';
  }
}

TEST(PanelInputs, ReadsAntennaHeightsInFeetIntoWholeMetres) {
  EXPECT_EQ(typedAntennaHeight("100", kFeet, kTyping).value, 30);  // 30.48 m
  EXPECT_EQ(typedAntennaHeight("2461", kFeet, kTyping).state, TypedState::kAccepted) << "750.1 m";
  EXPECT_EQ(typedAntennaHeight("2461", kFeet, kTyping).value, 750);
  const auto clamped = typedAntennaHeight("9999", kFeet, kTyping);
  EXPECT_EQ(clamped.state, TypedState::kClamped);
  EXPECT_EQ(clamped.text, "2461");
  // The text of a limit is itself within it: typing it again changes nothing.
  EXPECT_EQ(typedAntennaHeight(clamped.text, kFeet, kTyping).state, TypedState::kAccepted);
  EXPECT_EQ(typedAntennaHeight("0", kFeet, kTyping).text, "3");
  EXPECT_EQ(typedAntennaHeight("1", kFeet, kTyping).state, TypedState::kInMaking) << "0.3 m";
  EXPECT_EQ(typedAntennaHeight("2", kFeet, kTyping).value, 1) << "0.61 m";
}

struct NumberCase {
  const char* text;
  TypedWhen when;
  TypedState state;
  float value;
  const char* rewritten;
};

TEST(PanelInputs, TakesFrequenciesFrom20To20000MHz) {
  const NumberCase cases[] = {
      {"", kLeaving, TypedState::kEmpty, 0, ""},
      {"20", kTyping, TypedState::kAccepted, 20, "20"},
      {"20000", kTyping, TypedState::kAccepted, 20000, "20000"},
      {"20001", kTyping, TypedState::kClamped, 20000, "20000"},
      {"19.9", kTyping, TypedState::kInMaking, 0, ""},
      {"19.9", kLeaving, TypedState::kClamped, 20, "20"},
      {"2", kTyping, TypedState::kInMaking, 0, ""},
      {"0", kTyping, TypedState::kClamped, 20, "20"},
      {"x", kTyping, TypedState::kClamped, 20, "20"},
      {"446.00625", kTyping, TypedState::kAccepted, 446.00625F, "446.0062"},
  };
  for (const NumberCase& c : cases) {
    const auto typed = typedFrequency(c.text, c.when);
    EXPECT_EQ(typed.state, c.state) << '"' << c.text << '"';
    if (!typed.hasValue()) continue;
    EXPECT_EQ(typed.value, c.value) << '"' << c.text << '"';
    if (typed.state == TypedState::kClamped) {
      EXPECT_EQ(typed.text, c.rewritten) << '"' << c.text << '"';
    }
  }
}

TEST(PanelInputs, TakesTheFresnelPartFrom1To100Percent) {
  const NumberCase cases[] = {
      {"", kTyping, TypedState::kEmpty, 0, ""},
      {"1", kTyping, TypedState::kAccepted, 0.01F, "1"},
      {"100", kTyping, TypedState::kAccepted, 1, "100"},
      {"101", kTyping, TypedState::kClamped, 1, "100"},
      {"0", kTyping, TypedState::kClamped, 0.01F, "1"},
      {"0.5", kTyping, TypedState::kInMaking, 0, ""},
      {"0.5", kLeaving, TypedState::kClamped, 0.01F, "1"},
      {"33.3", kTyping, TypedState::kAccepted, 0.333F, ""},
  };
  for (const NumberCase& c : cases) {
    const auto typed = typedFresnelFraction(c.text, c.when);
    EXPECT_EQ(typed.state, c.state) << '"' << c.text << '"';
    if (!typed.hasValue()) continue;
    EXPECT_FLOAT_EQ(typed.value, c.value) << '"' << c.text << '"';
    if (typed.state == TypedState::kClamped) {
      EXPECT_EQ(typed.text, c.rewritten) << '"' << c.text << '"';
    }
  }
}

TEST(PanelInputs, BringsTheCurveBoxIntoItsOwnNarrowerRangeWhenItIsLeft) {
  EXPECT_FALSE(typedCurve("").hasValue());
  EXPECT_EQ(typedCurve("1.2").text, "1.200");
  EXPECT_FLOAT_EQ(typedCurve("1.2").value, 1.2F);
  EXPECT_EQ(typedCurve("0.1").text, ".500");
  EXPECT_EQ(typedCurve("1.75").value, 1.75F);
  EXPECT_EQ(typedCurve("2").text, "1.750");
  EXPECT_EQ(typedCurve("x").value, 0.5F);
}

TEST(PanelInputs, SelectsTheOptionOfARefusedChangeByThreeDecimals) {
  EXPECT_EQ(refusedCurvePreset(1.33333F), CurvePreset::k1333);
  EXPECT_EQ(refusedCurvePreset(1.333F), CurvePreset::k1333);
  EXPECT_EQ(refusedCurvePreset(1.0F), CurvePreset::k1000);
  EXPECT_EQ(refusedCurvePreset(1.33F), CurvePreset::kCustom) << "1.330 is not 1.333: it is meant";
  EXPECT_EQ(refusedCurvePreset(1.2F), CurvePreset::kCustom);
}

TEST(PanelInputs, WritesItsTextsWithoutZerosThatSayNothing) {
  EXPECT_EQ(wavelengthText(950), ".316");
  EXPECT_EQ(wavelengthText(20), "15");
  EXPECT_EQ(wavelengthText(0), "");
  EXPECT_EQ(percentText(0), "");
  EXPECT_EQ(percentText(0.6F), "60");
  EXPECT_EQ(loadedCurveText(1.33F), "1.33");
  EXPECT_EQ(loadedCurveText(1.0F), "1");
  EXPECT_EQ(curveText(1.0F), "1.000");
  EXPECT_EQ(frequencyText(950), "950");
  EXPECT_EQ(antennaHeightText(30, kMetres), "30");
  EXPECT_EQ(antennaHeightText(30, kFeet), "98");
}

TEST(PanelInputs, BringsTheWorkingValuesIntoTheirRangesBeforeADeferredRedraw) {
  ProfileInputs inputs;
  inputs.k = 9;
  inputs.frequency = 15;
  inputs.fresnelFraction = 0;  // "None"
  inputs.antennaHeights = {2000, -3};
  clampWorkingValues(inputs);
  EXPECT_EQ(inputs.k, 5);
  EXPECT_EQ(inputs.frequency, 20);
  EXPECT_FLOAT_EQ(inputs.fresnelFraction, 0.01F);
  EXPECT_EQ(inputs.antennaHeights[0], 750);
  EXPECT_EQ(inputs.antennaHeights[1], 0);
  inputs.k = 0.1F;
  inputs.frequency = 90000;
  inputs.fresnelFraction = 3;
  inputs.antennaHeights = {0, 750};
  clampWorkingValues(inputs);
  EXPECT_EQ(inputs.k, 0.5F);
  EXPECT_EQ(inputs.frequency, 20000);
  EXPECT_EQ(inputs.fresnelFraction, 1);
  EXPECT_EQ(inputs.antennaHeights[0], 0);
  EXPECT_EQ(inputs.antennaHeights[1], 750);
}

}  // namespace
}  // namespace zel
