#include "ui/settings_dialog/options_fields.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace zel {
namespace {

constexpr const char* kHeights = "Valid Range is 1 to 750 meters.";

struct Typing {
  OptionsBox box;
  const char* text;
  const char* shown;  // null: left alone
  double value = 0;
};

void expectTyping(const Typing& typing) {
  SCOPED_TRACE(std::string(controlName(typing.box)) + " \"" + typing.text + "\"");
  const std::optional<OptionsEntry> entry = typedEntry(typing.box, typing.text);
  ASSERT_EQ(entry.has_value(), typing.shown != nullptr);
  if (!entry) return;
  EXPECT_EQ(entry->text, typing.shown);
  EXPECT_EQ(entry->value, typing.value);
}

TEST(OptionsFields, NamesEachBoxByItsControl) {
  std::vector<std::string_view> names;
  names.reserve(kOptionsBoxes);
  for (const OptionsBox box : kAllOptionsBoxes) names.push_back(controlName(box));
  EXPECT_EQ(names, (std::vector<std::string_view>{"tbxLeft", "tbxRight", "tbxEle", "tbxRng", "tbxMax",
                                                  "tbxPer", "tbxpctFresnel", "tbxCurve", "tbxFreq"}));
}

TEST(OptionsFields, LeavesTextsAloneUpToTheLengthOfTheirBox) {
  for (const Typing& typing : {Typing{OptionsBox::kLeft, "0", nullptr},
                               {OptionsBox::kLeft, "99", nullptr},
                               {OptionsBox::kRight, "00", nullptr},
                               {OptionsBox::kElevation, "9", nullptr},
                               {OptionsBox::kRange, "9", nullptr},
                               {OptionsBox::kMaximum, "999", nullptr},
                               {OptionsBox::kPerKilometre, "1", nullptr},
                               {OptionsBox::kFresnel, "99", nullptr},
                               {OptionsBox::kCurve, "0.0", nullptr},
                               {OptionsBox::kCurve, "999", nullptr},
                               {OptionsBox::kPerKilometre, "", nullptr}})
    expectTyping(typing);
}

TEST(OptionsFields, BringsLongerTextsIntoTheRangeOfTheirBox) {
  for (const Typing& typing : {Typing{OptionsBox::kLeft, "000", "1", 1},
                               {OptionsBox::kLeft, "750", "750", 750},
                               {OptionsBox::kLeft, "751", "750", 750},
                               {OptionsBox::kRight, "-12", "1", 1},
                               {OptionsBox::kRight, "012", "12", 12},
                               {OptionsBox::kElevation, "20", "20", 20},
                               {OptionsBox::kElevation, "21", "20", 20},
                               {OptionsBox::kElevation, "-1", "0", 0},
                               {OptionsBox::kRange, "99", "20", 20},
                               {OptionsBox::kRange, "10", "10", 10},
                               {OptionsBox::kMaximum, "0999", "1000", 1000},
                               {OptionsBox::kMaximum, "4999", "4999", 4999},
                               {OptionsBox::kMaximum, "9999", "5000", 5000},
                               {OptionsBox::kPerKilometre, "10", "10", 10},
                               {OptionsBox::kPerKilometre, "09", "10", 10},
                               {OptionsBox::kPerKilometre, "99", "99", 99},
                               {OptionsBox::kPerKilometre, "150", "99", 99},
                               {OptionsBox::kFresnel, "100", "100", 100},
                               {OptionsBox::kFresnel, "101", "100", 100},
                               {OptionsBox::kFresnel, "-10", "0", 0},
                               {OptionsBox::kCurve, "0.001", "0.01", double{0.01F}},
                               {OptionsBox::kCurve, "50.1", "50", 50},
                               {OptionsBox::kCurve, "-1.5", "0.01", double{0.01F}}})
    expectTyping(typing);
}

TEST(OptionsFields, CountsNoBlanksAroundATypedText) {
  expectTyping({OptionsBox::kPerKilometre, "  7  ", nullptr});
  expectTyping({OptionsBox::kPerKilometre, " 77 ", "77", 77});
}

TEST(OptionsFields, CountsCharactersAndNotBytes) { expectTyping({OptionsBox::kLeft, "é5", nullptr}); }

TEST(OptionsFields, TakesATypedTextWithoutANumberAsZero) {
  expectTyping({OptionsBox::kPerKilometre, "ab", "10", 10});
  expectTyping({OptionsBox::kElevation, "ab", "0", 0});
  expectTyping({OptionsBox::kCurve, "abcd", "0.01", double{0.01F}});
}

TEST(OptionsFields, RoundsTypedWholeNumbersHalfToEven) {
  expectTyping({OptionsBox::kPerKilometre, "12.5", "12", 12});
  expectTyping({OptionsBox::kPerKilometre, "13.5", "14", 14});
}

TEST(OptionsFields, ClampsATypedNumberBeforeItIsNarrowed) {
  expectTyping({OptionsBox::kMaximum, "99999999", "5000", 5000});
  expectTyping({OptionsBox::kMaximum, "-99999999", "1000", 1000});
  expectTyping({OptionsBox::kLeft, "1e400", "750", 750});
  expectTyping({OptionsBox::kLeft, "-1e400", "1", 1});
  expectTyping({OptionsBox::kCurve, "1e400", "50", 50});
}

TEST(OptionsFields, LeavesATypedRealAsItStandsWhereItIsTheNumberAlready) {
  // Otherwise "1.005" could not be typed: its "1.00" would have become "1".
  expectTyping({OptionsBox::kCurve, "1.00", "1.00", 1});
  expectTyping({OptionsBox::kCurve, "1.005", "1.005", double{1.005F}});
  expectTyping({OptionsBox::kCurve, "0.01", "0.01", double{0.01F}});
  expectTyping({OptionsBox::kCurve, "1.5km", "1.5", 1.5});
}

TEST(OptionsFields, NeverClampsTheFrequencyWhileTyping) {
  for (const char* text : {"1", "10", "99999999", "1e400", "abcdefghijkl"})
    EXPECT_FALSE(typedEntry(OptionsBox::kFrequency, text)) << text;
}

struct Checking {
  OptionsBox box;
  const char* text;
  const char* refusal;  // empty: accepted
  double value = 0;
  const char* shown = "";
};

void expectChecking(const Checking& checking) {
  SCOPED_TRACE(std::string(controlName(checking.box)) + " \"" + checking.text + "\"");
  const CheckedEntry checked = checkedEntry(checking.box, checking.text);
  EXPECT_EQ(checked.refusal, checking.refusal);
  if (*checking.refusal != '\0') return;
  EXPECT_EQ(checked.entry.value, checking.value);
  EXPECT_EQ(checked.entry.text, checking.shown);
}

TEST(OptionsFields, AcceptsBothEndsOfEachRange) {
  for (const Checking& checking : {Checking{OptionsBox::kLeft, "1", "", 1, "1"},
                                   {OptionsBox::kLeft, "750", "", 750, "750"},
                                   {OptionsBox::kRight, "1", "", 1, "1"},
                                   {OptionsBox::kRight, "750", "", 750, "750"},
                                   {OptionsBox::kElevation, "0", "", 0, "0"},
                                   {OptionsBox::kElevation, "20", "", 20, "20"},
                                   {OptionsBox::kRange, "0", "", 0, "0"},
                                   {OptionsBox::kRange, "20", "", 20, "20"},
                                   {OptionsBox::kMaximum, "1000", "", 1000, "1000"},
                                   {OptionsBox::kMaximum, "5000", "", 5000, "5000"},
                                   {OptionsBox::kPerKilometre, "10", "", 10, "10"},
                                   {OptionsBox::kPerKilometre, "99", "", 99, "99"},
                                   {OptionsBox::kFrequency, "20", "", 20, "20"},
                                   {OptionsBox::kFrequency, "20000", "", 20000, "20000"},
                                   {OptionsBox::kFresnel, "0", "", 0, "0"},
                                   {OptionsBox::kFresnel, "100", "", 100, "100"},
                                   {OptionsBox::kCurve, "0.01", "", double{0.01F}, "0.01"},
                                   {OptionsBox::kCurve, "50", "", 50, "50"}})
    expectChecking(checking);
}

TEST(OptionsFields, RefusesWhatIsBeyondEachRangeInTheWordsOfItsBox) {
  for (const Checking& checking : {Checking{OptionsBox::kLeft, "0", kHeights},
                                   {OptionsBox::kLeft, "751", kHeights},
                                   {OptionsBox::kRight, "0", kHeights},
                                   {OptionsBox::kRight, "751", kHeights},
                                   {OptionsBox::kElevation, "-1", "Valid Range is 0 to 20."},
                                   {OptionsBox::kElevation, "21", "Value above maximum range."},
                                   {OptionsBox::kRange, "-1", "Valid Range is 0 to 20."},
                                   {OptionsBox::kRange, "21", "Maximum Value is 20."},
                                   {OptionsBox::kMaximum, "999", "Minimum Value is 1000."},
                                   {OptionsBox::kMaximum, "5001", "Maximum Value is 5000."},
                                   {OptionsBox::kMaximum, "32767", "Maximum Value is 5000."},
                                   {OptionsBox::kPerKilometre, "9", "Minimum Value is 10."},
                                   {OptionsBox::kPerKilometre, "100", "Maximum Value is 99."},
                                   {OptionsBox::kFrequency, "19.99", "Minimum value is 20MHz."},
                                   {OptionsBox::kFrequency, "20000.1", "Maximum value is 20GHz."},
                                   {OptionsBox::kFresnel, "-1", "Valid Range is 0 to 100."},
                                   {OptionsBox::kFresnel, "101", "Valid Range is 0 to 100."},
                                   {OptionsBox::kCurve, "0.009", "Valid Range is 0.01 to 50.0"},
                                   {OptionsBox::kCurve, "50.01", "Valid Range is 0.01 to 50.0"}})
    expectChecking(checking);
}

TEST(OptionsFields, RefusesANumberTooLargeForItsTypeInWordsOfItsOwn) {
  for (const Checking& checking : {Checking{OptionsBox::kMaximum, "32768", "Valid Range is 1000 to 5000."},
                                   {OptionsBox::kMaximum, "-99999", "Valid Range is 1000 to 5000."},
                                   {OptionsBox::kMaximum, "1e400", "Valid Range is 1000 to 5000."},
                                   {OptionsBox::kPerKilometre, "32768", "Valid Range is 10 to 99."},
                                   {OptionsBox::kFrequency, "1e39", "Valid Range is 20 to 20000."},
                                   {OptionsBox::kFrequency, "1e400", "Valid Range is 20 to 20000."},
                                   {OptionsBox::kLeft, "32768", kHeights},
                                   {OptionsBox::kElevation, "32768", "Valid Range is 0 to 20."},
                                   {OptionsBox::kRange, "32768", "Valid Range is 0 to 20."},
                                   {OptionsBox::kFresnel, "32768", "Valid Range is 0 to 100."},
                                   {OptionsBox::kCurve, "1e39", "Valid Range is 0.01 to 50.0"}})
    expectChecking(checking);
}

TEST(OptionsFields, TakesATextWithoutANumberAsZeroWhenItsBoxIsLeft) {
  for (const char* text : {"", "   ", "abc"}) {
    expectChecking({OptionsBox::kElevation, text, "", 0, "0"});
    expectChecking({OptionsBox::kFresnel, text, "", 0, "0"});
    expectChecking({OptionsBox::kPerKilometre, text, "Minimum Value is 10."});
    expectChecking({OptionsBox::kMaximum, text, "Minimum Value is 1000."});
    expectChecking({OptionsBox::kFrequency, text, "Minimum value is 20MHz."});
    expectChecking({OptionsBox::kLeft, text, kHeights});
    expectChecking({OptionsBox::kCurve, text, "Valid Range is 0.01 to 50.0"});
  }
}

TEST(OptionsFields, ChecksTheRoundedWholeNumber) {
  expectChecking({OptionsBox::kPerKilometre, "9.6", "", 10, "10"});
  expectChecking({OptionsBox::kPerKilometre, "99.5", "Maximum Value is 99."});
  expectChecking({OptionsBox::kLeft, "0.5", kHeights});
}

TEST(OptionsFields, ShowsWhatWasReadOutOfATextWithMoreThanANumber) {
  expectChecking({OptionsBox::kPerKilometre, "12 per km", "", 12, "12"});
  expectChecking({OptionsBox::kFrequency, "145.6125MHz", "", double{145.6125F}, "145.6125"});
  expectChecking({OptionsBox::kFrequency, "450.50", "", 450.5, "450.50"});
}

TEST(OptionsFields, StoresEachBoxInItsField) {
  DialogSettings fields;
  storeEntry(fields, OptionsBox::kLeft, 11);
  storeEntry(fields, OptionsBox::kRight, 12);
  storeEntry(fields, OptionsBox::kElevation, 13);
  storeEntry(fields, OptionsBox::kRange, 14);
  storeEntry(fields, OptionsBox::kMaximum, 1500);
  storeEntry(fields, OptionsBox::kPerKilometre, 16);
  storeEntry(fields, OptionsBox::kFresnel, 17);
  storeEntry(fields, OptionsBox::kCurve, 1.5);
  storeEntry(fields, OptionsBox::kFrequency, 145.5);
  DialogSettings expected;
  expected.startHeight = 11;
  expected.endHeight = 12;
  expected.elevationLines = 13;
  expected.rangeLines = 14;
  expected.maxPoints = 1500;
  expected.pointsPerKm = 16;
  expected.fresnelPercent = 17;
  expected.k = 1.5F;
  expected.frequency = 145.5F;
  EXPECT_EQ(fields, expected);
  const std::array<std::string, kOptionsBoxes> shown{"11", "12", "13",   "14",   "1500",
                                                     "16", "17", "1.50", "145.5"};
  for (std::size_t i = 0; i < kOptionsBoxes; ++i)
    EXPECT_EQ(loadedText(fields, kAllOptionsBoxes.at(i)), shown.at(i));
}

TEST(OptionsFields, ShowsTheLoadedCurveWithTwoDecimals) {
  DialogSettings fields;
  for (const auto& [k, text] : {std::pair{1.333F, "1.33"}, std::pair{1.0F, "1.00"}, std::pair{0.5F, "0.50"},
                                std::pair{1.3333F, "1.33"}, std::pair{49.999F, "50.00"}}) {
    fields.k = k;
    EXPECT_EQ(loadedText(fields, OptionsBox::kCurve), text);
  }
}

TEST(OptionsFields, ShowsTheLoadedFrequencyWithEveryDigitThatItHas) {
  DialogSettings fields;
  for (const auto& [frequency, text] :
       {std::pair{950.0F, "950"}, std::pair{145.6125F, "145.6125"}, std::pair{19999.998F, "19999.998"}}) {
    fields.frequency = frequency;
    EXPECT_EQ(loadedText(fields, OptionsBox::kFrequency), text);
  }
}

TEST(OptionsFields, ShowsTheWavelengthWithUpToThreeDecimals) {
  EXPECT_EQ(wavelengthLabel(950), ".316");  // 0.31579 m
  EXPECT_EQ(wavelengthLabel(20), "15");
  EXPECT_EQ(wavelengthLabel(100), "3");
  EXPECT_EQ(wavelengthLabel(20000), ".015");
}

TEST(OptionsFields, ShowsNoWavelengthWithoutAFrequency) {
  EXPECT_EQ(wavelengthLabel(0), "");
  EXPECT_EQ(wavelengthLabel(-5), "");
}

TEST(OptionsFields, ShowsPresetCurvesWithUpToTwoDecimals) {
  EXPECT_EQ(presetCurveText(kPresetCurveStandard), "1.33");
  EXPECT_EQ(presetCurveText(kPresetCurveTrue), "1");
}

TEST(OptionsFields, ListsTheSourcesInTheirOrder) {
  EXPECT_EQ(kListedSources, (std::array<std::int16_t, 5>{2, 1, 3, 9, 7}));
  EXPECT_EQ(listedSource(2), 0U);
  EXPECT_EQ(listedSource(7), 4U);
  for (const int none : {-1, 0, 4, 5, 8, 10})
    EXPECT_FALSE(listedSource(static_cast<std::int16_t>(none))) << none;
}

TEST(OptionsFields, FindsTheFirstSourceOfAName) {
  const SourceNames names{"two", "same", "same", "nine", ""};
  EXPECT_EQ(sourceNamed(names, "two"), 2);
  EXPECT_EQ(sourceNamed(names, "same"), 1);
  EXPECT_EQ(sourceNamed(names, ""), 7);
  EXPECT_EQ(sourceNamed(names, "Nine"), std::nullopt);
}

}  // namespace
}  // namespace zel
