#include "command_line/path_output.h"

#include <gtest/gtest.h>

#include <limits>

namespace zel::host {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(ReverseLoss, SaysThatBothWaysAreTheSameWhenTheyAreSoAsShown) {
  EXPECT_EQ(reverseLossSentence(196.2968, 196.2968),
            "196.30 dB from the end to the start, the same: the model treats both ends alike");
  EXPECT_EQ(reverseLossSentence(196.2968, 196.2990),
            "196.30 dB from the end to the start, the same: the model treats both ends alike");
}

TEST(ReverseLoss, ExplainsADifferenceWithItsSign) {
  EXPECT_EQ(reverseLossSentence(150, 151.234).find("151.23 dB from the end to the start, 1.23 dB more: "),
            0U);
  EXPECT_EQ(reverseLossSentence(150, 149.5).find("149.50 dB from the end to the start, 0.50 dB less: "), 0U);
}

TEST(Ground, IsUnknownInWordsAndNullInJsonWhereTheTerrainHasNone) {
  const GroundFigures ground{kNaN, 345, 296.91, 952.95, 514.704};
  EXPECT_EQ(groundSentence(ground),
            "start unknown, end 345.0 m, lowest 296.9 m, highest 953.0 m, average 514.7 m above sea level");
  EXPECT_EQ(groundJson(ground).dump(),
            R"({"start":null,"end":345.0,"minimum":296.91,"maximum":952.95,"average":514.704})");
}

TEST(Ground, IsSaidToBeUnknownOnceWhereTheTerrainHasNoneAtAll) {
  EXPECT_EQ(groundSentence({kNaN, kNaN, kNaN, kNaN, kNaN}),
            "unknown: the terrain has no height anywhere on the path");
}

TEST(Method, IsExplainedWhereItSeemsAtOddsWithTheMode) {
  using enum PropagationMethod;
  EXPECT_EQ(methodSentence(PathMode::kLineOfSight, kLineOfSight), "line of sight");
  EXPECT_EQ(methodSentence(PathMode::kSingleHorizon, kDiffraction), "diffraction");
  EXPECT_EQ(methodSentence(PathMode::kDoubleHorizon, kTroposcatter), "troposcatter");
  EXPECT_EQ(methodSentence(PathMode::kDoubleHorizon, kLineOfSight),
            "line of sight: obstructed, but within the smooth-earth horizons, where the model's "
            "line-of-sight formulas hold");
  EXPECT_EQ(methodSentence(PathMode::kLineOfSight, kDiffraction),
            "diffraction: no ground is in the way, but the path is longer than the smooth-earth horizons");
}

TEST(SummaryLine, IsNotBrokenWhereStandardOutputIsNoTerminal) {
  testing::internal::CaptureStdout();  // into a file
  const std::string text(20, 'a');
  std::string words;
  for (int i = 0; i < 20; ++i) words += text + ' ';
  summaryLine("Note", words);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Note              " + words + "\n");
}

TEST(RoundedNumbers, KeepTheirDecimalsAndAreNullWhenNotFinite) {
  EXPECT_EQ(rounded(1.23456, 3), 1.235);
  EXPECT_TRUE(rounded(kNaN, 3).is_null());
  EXPECT_TRUE(rounded(std::numeric_limits<double>::infinity(), 3).is_null());
}

}  // namespace
}  // namespace zel::host
