#include "foundation/leading_number.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

struct Case {
  std::string text;
  double value;  // exact: what the same literal of the language reads as
};

TEST(LeadingNumber, TakesTheLongestNumericPrefix) {
  const std::vector<Case> cases = {
      {"0", 0},
      {"12", 12},
      {"+7", 7},
      {"-7", -7},
      {"12.5", 12.5},
      {".5", 0.5},
      {"5.", 5},
      {"-.5", -0.5},
      {"007", 7},
      {"1e3", 1000},
      {"1E3", 1000},
      {"1e+3", 1000},
      {"25e-1", 2.5},
      {"-.5e1x", -5},
      {"1e", 1},
      {"1e+", 1},
      {"1e-", 1},
      {"1ex", 1},
      {"1.2.3", 1.2},
      {"1-2", 1},
      {"30 m", 30},
      {"12,5", 12},
      {"1,000", 1},
      {"950MHz", 950},
      {"1 2", 1},
      {"1e3.5", 1000},
      {"1d5", 1},
      {"0x10", 0},
      {"1.333", 1.333},
      {"0.1", 0.1},
      {"9007199254740993", 9007199254740993.0},
  };
  for (const Case& c : cases) EXPECT_EQ(leadingNumber(c.text), c.value) << c.text;
}

TEST(LeadingNumber, SkipsBlanksAndTabsBeforeTheNumber) {
  EXPECT_EQ(leadingNumber("   42"), 42);
  EXPECT_EQ(leadingNumber("\t \t-1.5 rest"), -1.5);
  EXPECT_EQ(leadingNumber("\n42"), 0) << "a line end is no blank";
}

TEST(LeadingNumber, IsZeroForAnythingElse) {
  for (const std::string text : {"",    " ",    "abc", "-",   "+",        ".",       "-.",          "+.e5",
                                 "e5",  "--5",  "+-5", "- 5", "$5",       "&H10",    "#5",          "True",
                                 "inf", "-inf", "nan", "NaN", "infinity", "\u00A05", "\xEF\xBC\x95"})
    EXPECT_EQ(leadingNumber(text), 0) << text;
}

TEST(LeadingNumber, StopsAtANulByte) {
  EXPECT_EQ(leadingNumber(std::string("1\0"
                                      "2",
                                      3)),
            1);
}

TEST(LeadingNumber, RaisesOverflowForAMagnitudeBeyondA64BitFloat) {
  for (const std::string text :
       {"1e309", "-1e309", "1e999999999999999999999", "2e308", "179769313486231590000e289"}) {
    try {
      leadingNumber(text);
      ADD_FAILURE() << text << " raised nothing";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 6) << text;
      EXPECT_EQ(error.description(), "Overflow");
    }
  }
  EXPECT_THROW(leadingNumber(std::string(400, '9')), RuntimeError);
  EXPECT_THROW(leadingNumber(std::string(400, '9') + ".5"), RuntimeError);
}

TEST(LeadingNumber, ReachesTheLimitsOfA64BitFloat) {
  EXPECT_EQ(leadingNumber("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(leadingNumber("2.2250738585072014e-308"), std::numeric_limits<double>::min());
  EXPECT_EQ(leadingNumber("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
}

TEST(LeadingNumber, IsZeroForAMagnitudeTooSmall) {
  for (const std::string text : {"1e-400", "-1e-400", "1e-999999999999999999999", "0.1e-330"}) {
    const double value = leadingNumber(text);
    EXPECT_EQ(value, 0) << text;
    EXPECT_FALSE(std::signbit(value)) << text;
  }
  EXPECT_EQ(leadingNumber("." + std::string(400, '0') + "1"), 0);
}

TEST(LeadingNumber, WeighsTheDigitsAgainstTheExponent) {
  EXPECT_EQ(leadingNumber("." + std::string(400, '0') + "1e401"), 1);
  EXPECT_EQ(leadingNumber("1" + std::string(400, '0') + "e-400"), 1);
}

TEST(LeadingNumber, ZeroStaysZeroWithAnyExponent) {
  EXPECT_EQ(leadingNumber("0e999999999999"), 0);
  EXPECT_EQ(leadingNumber("-0.000e-5"), 0);
}

TEST(LeadingNumber, ReadsAPointWhateverTheLocaleOfTheProcess) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"})
    if (std::setlocale(LC_ALL, name) != nullptr) break;
  EXPECT_EQ(leadingNumber("1.5"), 1.5);
  EXPECT_EQ(leadingNumber("1,5"), 1);
  std::setlocale(LC_ALL, before.c_str());
}

TEST(TypedNumber, IsTheLeadingNumber) {
  EXPECT_EQ(typedNumber(" 12.5 m"), 12.5);
  EXPECT_EQ(typedNumber("-3e2"), -300);
  EXPECT_EQ(typedNumber("metres"), 0);
  EXPECT_EQ(typedNumber(""), 0);
}

TEST(TypedNumber, IsBeyondEveryLimitWhereNoFloatIsLargeEnough) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(typedNumber("1e400"), kInfinity);
  EXPECT_EQ(typedNumber("  -1e400 m"), -kInfinity);
  EXPECT_EQ(typedNumber("1e-400"), 0);
}

TEST(WholeNumberText, TakesATextThatIsOneNumber) {
  EXPECT_EQ(wholeNumberText("12.5"), 12.5);
  EXPECT_EQ(wholeNumberText("  -3e2\t"), -300.0);
  EXPECT_EQ(wholeNumberText("+.5"), 0.5);
  EXPECT_EQ(wholeNumberText("5."), 5.0);
}

TEST(WholeNumberText, RefusesAnythingAroundTheNumber) {
  for (const std::string text :
       {"", " ", "1x", "x1", "1 2", "1e", "1e+", "1..", ".", "-", "nan", "inf", "0x1", "1,5"})
    EXPECT_EQ(wholeNumberText(text), std::nullopt) << text;
}

TEST(WholeNumberText, RaisesOverflowLikeTheLeadingNumber) {
  EXPECT_THROW(wholeNumberText("1e999"), RuntimeError);
  EXPECT_EQ(wholeNumberText("1e999x"), std::nullopt);
}

TEST(FieldNumberText, HasAPointAndIsFinite) {
  EXPECT_EQ(fieldNumberText("-12.50"), -12.5);
  EXPECT_EQ(fieldNumberText(" 7 "), 7);
  EXPECT_EQ(fieldNumberText("1.5E-05"), 1.5e-5);
  for (const char* text : {"", " ", "12,5", "12x", "nan", "inf", "-inf", "1e999", "0x10", "1 2", "--1"})
    EXPECT_EQ(fieldNumberText(text), std::nullopt) << text;
}

}  // namespace
}  // namespace zel
