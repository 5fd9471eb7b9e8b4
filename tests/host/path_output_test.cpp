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

TEST(RoundedNumbers, KeepTheirDecimalsAndAreNullWhenNotFinite) {
  EXPECT_EQ(rounded(1.23456, 3), 1.235);
  EXPECT_TRUE(rounded(kNaN, 3).is_null());
  EXPECT_TRUE(rounded(std::numeric_limits<double>::infinity(), 3).is_null());
}

}  // namespace
}  // namespace zel::host
