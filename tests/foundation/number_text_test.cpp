#include "foundation/number_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "foundation/leading_number.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct Case {
  double value;
  std::string pattern;
  std::string text;
};

void expectTexts(const std::vector<Case>& cases) {
  for (const Case& c : cases)
    EXPECT_EQ(formatNumber(c.value, c.pattern), c.text) << c.value << " as " << c.pattern;
}

TEST(FormatNumber, HashShowsNoDigitForAZeroThatIsNotSignificant) {
  expectTexts({{0, "###", ""},
               {0, "#.###", ""},
               {0, "#.##", ""},
               {0, "###.##", ""},
               {0, "###.#", ""},
               {300.0 / 950.0, "#.###", ".316"},
               {0.5, "#.##", ".5"},
               {0.4, "###", ""},
               {0.5, "###", "1"},
               {-0.5, "###.#", "-.5"},
               {7, "###", "7"},
               {45, "###", "45"},
               {359.6, "###", "360"}});
}

TEST(FormatNumber, ZeroPlaceAlwaysShowsADigit) {
  expectTexts({{0, "##0.0", "0.0"},
               {0, "0.00", "0.00"},
               {0, "0.000", "0.000"},
               {0, "###0", "0"},
               {0, "###0.0", "0.0"},
               {0, "##,##0.0", "0.0"},
               {0, "#.000", ".000"},
               {0, "##.00000", ".00000"},
               {0, "###.00000", ".00000"},
               {5, "000", "005"},
               {5, "0#", "05"},
               {5, "#0#", "05"},
               {1.5, "##0.000", "1.500"},
               {1.333, "0.00", "1.33"},
               {1, "0.00", "1.00"}});
}

TEST(FormatNumber, MixesPlacesThatAlwaysAndSometimesShowADigit) {
  expectTexts({{0, "##0.0##", "0.0"},
               {1.25, "##0.0##", "1.25"},
               {1.2504, "##0.0##", "1.25"},
               {1.2505, "##0.0##", "1.251"},
               {-105.5, "##0.0##", "-105.5"},
               {0.001, "##0.0##", "0.001"},
               {1, "##0.#0#", "1.00"}});
}

TEST(FormatNumber, WritesTheCoordinateColumnsOfTheExports) {
  expectTexts({{-0.12345, "##.00000", "-.12345"},
               {0.5, "##.00000", ".50000"},
               {36.5, "##.00000", "36.50000"},
               {-84.123456, "###.00000", "-84.12346"},
               {179.999999, "###.00000", "180.00000"}});
}

TEST(FormatNumber, GroupsThousandsWhereThePatternHasAComma) {
  expectTexts({{0, "#,##0", "0"},
               {999, "#,##0", "999"},
               {1000, "#,##0", "1,000"},
               {1234567.89, "#,##0", "1,234,568"},
               {1234.5, "#,##0.0", "1,234.5"},
               {1234.5, "#,##0.00", "1,234.50"},
               {999.95, "##,##0.0", "1,000.0"},
               {-1234.56, "##,##0.0", "-1,234.6"},
               {-123456, "##,##0", "-123,456"},
               {12, "0,000", "0,012"},
               {1234567, "###0", "1234567"},
               {1234567, "###0.0", "1234567.0"}});
}

TEST(FormatNumber, WritesDigitsThatThePatternHasNoPlaceFor) {
  expectTexts({{12345.678, "#.##", "12345.68"},
               {12345.6, "##0.0", "12345.6"},
               {1e20, "###", "1" + std::string(20, '0')}});
}

TEST(FormatNumber, LeavesOutAPointThatNoDigitFollows) {
  expectTexts({{1, "#.###", "1"},
               {1.9996, "#.###", "2"},
               {137, "###.##", "137"},
               {12, "###.#", "12"},
               {1.33, "#.##", "1.33"},
               {1, "#.##", "1"},
               {5, "#.", "5"}});
}

TEST(FormatNumber, RoundsHalvesAwayFromZeroOnTheDecimalValue) {
  // 2.675, 1.005 and 0.285 lie below the half in binary; their decimal value is the half itself.
  expectTexts({{2.675, "0.00", "2.68"},
               {1.005, "0.00", "1.01"},
               {0.285, "#.##", ".29"},
               {0.125, "0.00", "0.13"},
               {0.5, "0", "1"},
               {1.5, "0", "2"},
               {2.5, "0", "3"},
               {-2.5, "0", "-3"},
               {-0.05, "##0.0", "-0.1"},
               {12.55, "##0.0", "12.6"},
               {59.95, "##0.0", "60.0"},
               {0.05, "0.0", "0.1"},
               {0.049999, "0.0", "0.0"},
               {0.0049999, "0.0", "0.0"},
               {9.5, "###", "10"},
               {999.9996, "0.000", "1000.000"}});
}

TEST(FormatNumber, WorksOnFifteenSignificantDigits) {
  expectTexts({{0.1 + 0.2, "0.0000000000000000", "0.3000000000000000"},
               {123456789.123456789, "0.000000000", "123456789.123457000"},
               {1.0 / 3.0, "#.####################", ".333333333333333"}});
}

TEST(FormatNumber, WorksOnSevenSignificantDigitsOfA32BitFloat) {
  EXPECT_EQ(formatNumber(0.05F, "0.0"), "0.1");
  EXPECT_EQ(formatNumber(2.675F, "0.00"), "2.68");
  EXPECT_EQ(formatNumber(0.1F, "0.0000000000"), "0.1000000000");
  EXPECT_EQ(formatNumber(16777216.0F, "#,##0"), "16,777,220");
  EXPECT_EQ(formatNumber(300.0F / 950.0F, "#.###"), ".316");
}

TEST(FormatNumber, GivesNoSignToAValueThatRoundsToZero) {
  expectTexts({{-0.04, "##0.0", "0.0"}, {-0.0, "0.00", "0.00"}, {-0.4, "###", ""}, {-1e-300, "#.###", ""}});
}

TEST(FormatNumber, WritesTheTextAroundTheDigitPlaces) {
  expectTexts({{95.5, "#00.0 MHz", "95.5 MHz"},
               {5, "#00.0 MHz", "05.0 MHz"},
               {12.34, "##0.0 kW", "12.3 kW"},
               {0, "#0 dB", "0 dB"},
               {123, "##0 m AMSL", "123 m AMSL"},
               {1.5, "0.0.0", "1.5.0"}});
}

TEST(FormatNumber, UsesTheSeparatorsOfTheLocale) {
  const NumberStyle german{",", "."};
  EXPECT_EQ(formatNumber(1234.5, "##,##0.0", german), "1.234,5");
  const NumberStyle french{",", "\xE2\x80\xAF"};
  EXPECT_EQ(formatNumber(1234567.25, "#,##0.00", french),
            "1\xE2\x80\xAF"
            "234\xE2\x80\xAF"
            "567,25");
}

TEST(FormatNumber, RaisesOverflowForAValueThatIsNotFinite) {
  for (const double value : {kInfinity, -kInfinity, kNan}) {
    try {
      formatNumber(value, "0.0");
      ADD_FAILURE() << value << " raised nothing";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 6);
    }
  }
  EXPECT_THROW(formatNumber(std::numeric_limits<float>::infinity(), "0.0"), RuntimeError);
}

TEST(FormatNumber, RefusesAPatternWithoutADigitPlace) {
  for (const std::string pattern : {"", ".", ",", "kW", ",.,"}) {
    try {
      formatNumber(1.0, pattern);
      ADD_FAILURE() << pattern << " raised nothing";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 51);
    }
  }
}

TEST(FormatNumber, WritesTheLargestAndTheSmallestMagnitudes) {
  EXPECT_EQ(formatNumber(std::numeric_limits<double>::max(), "0.0"),
            "179769313486232" + std::string(294, '0') + ".0");
  EXPECT_EQ(formatNumber(std::numeric_limits<double>::denorm_min(), "0.0"), "0.0");
}

TEST(FormatNumber, StaysWithinHalfAPlaceOfTheValue) {
  const unsigned seed = 20240607;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> values(-1e6, 1e6);
  for (int i = 0; i < 20000; ++i) {
    const double value = values(random);
    const double shown = leadingNumber(formatNumber(value, "##0.000"));
    // Half a unit of the third decimal and the step of 15 digits at 1e6.
    EXPECT_NEAR(shown, value, 0.0005 + 1e-9) << "seed " << seed;
  }
}

TEST(GeneralNumber, WritesUpToFifteenSignificantDigits) {
  EXPECT_EQ(generalNumber(0.0), "0");
  EXPECT_EQ(generalNumber(-0.0), "0");
  EXPECT_EQ(generalNumber(5.0), "5");
  EXPECT_EQ(generalNumber(-12.5), "-12.5");
  EXPECT_EQ(generalNumber(0.1 + 0.2), "0.3");
  EXPECT_EQ(generalNumber(1.0 / 3.0), "0.333333333333333");
  EXPECT_EQ(generalNumber(200.0 / 3.0), "66.6666666666667");
  EXPECT_EQ(generalNumber(123456789012345.0), "123456789012345");
}

TEST(GeneralNumber, WritesUpToSevenSignificantDigitsOfA32BitFloat) {
  EXPECT_EQ(generalNumber(0.1F), "0.1");
  EXPECT_EQ(generalNumber(1.0F / 3.0F), "0.3333333");
  EXPECT_EQ(generalNumber(9999999.0F), "9999999");
  EXPECT_EQ(generalNumber(1e7F), "1E+07");
  EXPECT_EQ(generalNumber(137.6543F), "137.6543");
}

TEST(GeneralNumber, TakesTheExponentFormOnlyBelowOneTenThousandthAndBeyondTheDigits) {
  EXPECT_EQ(generalNumber(0.0001), "0.0001");
  EXPECT_EQ(generalNumber(0.000123456), "0.000123456");
  EXPECT_EQ(generalNumber(0.00009999), "9.999E-05");
  EXPECT_EQ(generalNumber(-0.00001), "-1E-05");
  EXPECT_EQ(generalNumber(1e14), "100000000000000");
  EXPECT_EQ(generalNumber(1e15), "1E+15");
  EXPECT_EQ(generalNumber(999999999999999.9), "1E+15");
  EXPECT_EQ(generalNumber(1.5e-300), "1.5E-300");
}

// The C library's rounding to so many significant digits, which is exact. Different decimals of so few digits
// are different 64-bit floats.
double toSignificant(double value, int digits) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*e", digits - 1, value);
  return std::strtod(text.data(), nullptr);
}

TEST(GeneralNumber, IsTheNearestNumberOfFifteenOrSevenDigits) {
  const unsigned seed = 15;
  std::mt19937_64 random(seed);
  std::uniform_real_distribution<double> exponents(-6, 17);
  std::uniform_int_distribution<int> steps(-3, 3);
  for (int i = 0; i < 40000; ++i) {
    double value = std::pow(10.0, exponents(random));
    if (i % 4 == 1) value = std::pow(10.0, std::round(exponents(random))) + steps(random) * 1e-9;
    if (i % 4 == 2)
      value = std::nextafter(std::pow(10.0, std::round(exponents(random))), i % 8 < 4 ? 0 : 1e99);
    if (i % 4 == 3) value = std::round(value) / 8;
    EXPECT_EQ(leadingNumber(generalNumber(value)), toSignificant(value, 15)) << value << " seed " << seed;
    const auto single = static_cast<float>(value);
    EXPECT_EQ(leadingNumber(generalNumber(single)), toSignificant(double{single}, 7)) << "seed " << seed;
  }
}

// A sixteenth digit that is 5 and the last: the binary value is the half itself.
TEST(GeneralNumber, RoundsAnExactHalfOfItsLastDigitToTheEvenOne) {
  EXPECT_EQ(generalNumber(123456789012344.5), "123456789012344");
  EXPECT_EQ(generalNumber(123456789012345.5), "123456789012346");
  EXPECT_EQ(generalNumber(-100000000000000.5), "-100000000000000");
  EXPECT_EQ(generalNumber(1000000.5F), "1000000");
  EXPECT_EQ(generalNumber(1000001.5F), "1000002");
}

TEST(GeneralNumber, CarriesNinesIntoAnotherDigit) {
  EXPECT_EQ(generalNumber(9.9999999999999996), "10");
  EXPECT_EQ(generalNumber(0.99999999999999989), "1");
  EXPECT_EQ(generalNumber(99999999999999.99), "100000000000000");
  EXPECT_EQ(generalNumber(0.000099999999999999999), "0.0001");
  EXPECT_EQ(generalNumber(9999999.5F), "1E+07");
}

TEST(AppendedNumbers, StandBehindTheTextAsTheyWouldAlone) {
  const NumberStyle comma{",", "."};
  std::string text = "a ";
  appendNumber(text, -1234.5, "#,##0.00", comma);
  appendNumber(text += ' ', 0.125F, "#.##", comma);
  appendGeneralNumber(text += ' ', 1.5e-7, comma);
  appendGeneralNumber(text += ' ', 0.1F, comma);
  EXPECT_EQ(text, "a -1.234,50 ,13 1,5E-07 0,1");
}

TEST(AppendedNumbers, ThatFailLeaveTheTextAsItWas) {
  std::string text = "a ";
  EXPECT_THROW(appendGeneralNumber(text, kNan, {}), RuntimeError);
  EXPECT_THROW(appendNumber(text, kInfinity, "0.0", {}), RuntimeError);
  EXPECT_THROW(appendNumber(text, 1.0, "km", {}), RuntimeError);
  EXPECT_EQ(text, "a ");
}

TEST(GeneralNumber, UsesTheDecimalPointOfTheLocaleAndNoGroups) {
  EXPECT_EQ(generalNumber(12345.5, {",", "."}), "12345,5");
  EXPECT_EQ(generalNumber(1.25e-7, {",", "."}), "1,25E-07");
}

TEST(GeneralNumber, RaisesOverflowForAValueThatIsNotFinite) {
  EXPECT_THROW(generalNumber(kNan), RuntimeError);
  EXPECT_THROW(generalNumber(kInfinity), RuntimeError);
}

TEST(ShortestNumber, WritesTheFewestDigitsInPlainForm) {
  EXPECT_EQ(shortestNumber(0.0F), "0");
  EXPECT_EQ(shortestNumber(-0.0F), "0");
  EXPECT_EQ(shortestNumber(1.333F), "1.333");
  EXPECT_EQ(shortestNumber(950.0F), "950");
  EXPECT_EQ(shortestNumber(0.1F), "0.1");
  EXPECT_EQ(shortestNumber(-2.5F), "-2.5");
  EXPECT_EQ(shortestNumber(1000000.0F), "1000000");
  EXPECT_EQ(shortestNumber(0.00001F), "0.00001");
  EXPECT_EQ(shortestNumber(16777216.0F), "16777216");
}

TEST(ShortestNumber, ReadsBackAsTheSameNumber) {
  const unsigned seed = 7;
  std::mt19937 random(seed);
  for (int i = 0; i < 20000; ++i) {
    const std::uint32_t bits = static_cast<std::uint32_t>(random());
    float value = 0;
    static_assert(sizeof(value) == sizeof(bits));
    std::memcpy(&value, &bits, sizeof(value));
    if (!std::isfinite(value)) continue;
    EXPECT_EQ(static_cast<float>(leadingNumber(shortestNumber(value))), value) << "seed " << seed;
  }
}

TEST(ShortestNumber, RaisesOverflowForAValueThatIsNotFinite) {
  EXPECT_THROW(shortestNumber(std::numeric_limits<float>::infinity()), RuntimeError);
  EXPECT_THROW(shortestNumber(std::numeric_limits<float>::quiet_NaN()), RuntimeError);
}

}  // namespace
}  // namespace zel
