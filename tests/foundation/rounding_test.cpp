#include "foundation/rounding.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <limits>
#include <vector>

namespace zel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

template <typename Call>
int errorNumberOf(Call call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(Rounding, TakesHalvesToTheEvenNumber) {
  EXPECT_EQ(roundHalfEven(0.5), 0);
  EXPECT_EQ(roundHalfEven(1.5), 2);
  EXPECT_EQ(roundHalfEven(2.5), 2);
  EXPECT_EQ(roundHalfEven(3.5), 4);
  EXPECT_EQ(roundHalfEven(-0.5), 0);
  EXPECT_EQ(roundHalfEven(-1.5), -2);
  EXPECT_EQ(roundHalfEven(-2.5), -2);
  EXPECT_EQ(roundHalfEven(12.5), 12);
}

TEST(Rounding, TakesTheNearestOtherwise) {
  EXPECT_EQ(roundHalfEven(0.49999999999999994), 0) << "adding a half and rounding down would give 1";
  EXPECT_EQ(roundHalfEven(12.55), 13);
  EXPECT_EQ(roundHalfEven(2.5000000000000004), 3);
  EXPECT_EQ(roundHalfEven(-2.51), -3);
  EXPECT_EQ(roundHalfEven(8502.391204), 8502);
  EXPECT_EQ(roundHalfEven(1e300), 1e300);
}

TEST(Rounding, DoesNotDependOnTheRoundingModeOfTheProcess) {
  const int before = std::fegetround();
  for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    std::fesetround(mode);
    EXPECT_EQ(roundHalfEven(2.5), 2);
    EXPECT_EQ(roundHalfEven(3.5), 4);
    EXPECT_EQ(roundHalfEven(-1.2), -1);
  }
  std::fesetround(before);
}

TEST(Rounding, NarrowsTo16BitsWithinTheirRange) {
  EXPECT_EQ(toInt16(32767.0), 32767);
  EXPECT_EQ(toInt16(32767.4), 32767);
  EXPECT_EQ(toInt16(-32768.0), -32768);
  EXPECT_EQ(toInt16(-32768.5), -32768) << "the half goes to the even number, which fits";
  EXPECT_EQ(toInt16(2.5), 2);
}

TEST(Rounding, RaisesOverflowRatherThanWrapsAt16Bits) {
  for (const double value : {32767.5, 32768.0, -32768.6, 70000.0, 1e300, kInfinity, -kInfinity, kNan})
    EXPECT_EQ(errorNumberOf([&] { toInt16(value); }), 6) << value;
}

TEST(Rounding, NarrowsTo32BitsWithinTheirRange) {
  EXPECT_EQ(toInt32(2147483647.0), 2147483647);
  EXPECT_EQ(toInt32(2147483647.4), 2147483647);
  EXPECT_EQ(toInt32(-2147483648.0), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(toInt32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
}

TEST(Rounding, RaisesOverflowRatherThanWrapsAt32Bits) {
  for (const double value : {2147483647.5, 2147483648.0, -2147483649.0, 1e18, kInfinity, kNan})
    EXPECT_EQ(errorNumberOf([&] { toInt32(value); }), 6) << value;
}

TEST(Rounding, IntegerTruncationRoundsDown) {
  EXPECT_EQ(intFloor(2.9), 2);
  EXPECT_EQ(intFloor(-2.1), -3);
  EXPECT_EQ(intFloor(-3.0), -3);
}

}  // namespace
}  // namespace zel
