#include "zeltool/coordinates/station_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace zel {
namespace {

constexpr double dms(double degrees, double minutes, double seconds) {
  return degrees + minutes / 60 + seconds / 3600;
}
constexpr double kTolerance = 1e-12;  // degrees, the last bits of the sum

struct AngleCase {
  std::string text;
  double degrees;
};

TEST(LatitudeText, IsUnderstoodInEveryForm) {
  const double value = dms(36, 32, 11.4);
  const std::vector<AngleCase> cases = {
      {"36.5", 36.5},
      {" 36.5 ", 36.5},
      {"+36.5", 36.5},
      {"-36.5", -36.5},
      {"\xE2\x88\x92"
       "36.5",
       -36.5},  // typographic minus
      {"- 36.5", -36.5},
      {".5", 0.5},
      {"36.", 36},
      {"0", 0},
      {"36.5N", 36.5},
      {"36.5 N", 36.5},
      {"36.5 n", 36.5},
      {"36.5s", -36.5},
      {"36.5 S", -36.5},
      {"N36.5", 36.5},
      {"S 36.5", -36.5},
      {"36-32-11.4 N", value},
      {"36-32-11.4 S", -value},
      {"-36-32-11.4", -value},
      {"36:32:11.4", value},
      {"36 32 11.4", value},
      {"36  32\t11.4 S", -value},
      {"36 - 32 - 11.4 N", value},
      {"36\xC2\xB0"
       "32'11.4\"N",
       value},
      {"36\xC2\xB0 32\xE2\x80\xB2 11.4\xE2\x80\xB3 S", -value},
      {"36\xC2\xBA"
       "32\xE2\x80\x99"
       "11.4\xE2\x80\x9D",
       value},
      {"36\xC2\xB0"
       "32'11.4''",
       value},
      {"36d32m11.4s", value},
      {"36d32m11.4s N", value},
      {"36d32m11.4sS", -value},
      {"36d32m11.4S", -value},
      {"-36D32M11.4S", -value},
      {"36D32M11.4S N", value},
      {"N36d32m11.4s", value},
      {"36 32 11.4S", -value},
      {"36-32.19", 36 + 32.19 / 60},
      {"36:32.19N", 36 + 32.19 / 60},
      {"36 32", 36 + 32.0 / 60},
      {"36\xC2\xB0 N", 36},
      {"36\xC2\xB0"
       "32'",
       36 + 32.0 / 60},
      {"-0-30-0", -0.5},
      {"0-00-59.999", 59.999 / 3600},
      {"90", 90},
      {"-90", -90},
      {"90-00-00.0 S", -90},
      {"0036.5", 36.5},
  };
  for (const AngleCase& c : cases) {
    const auto parsed = parseLatitude(c.text);
    ASSERT_TRUE(parsed.ok()) << c.text << ": " << parsed.text;
    EXPECT_NEAR(parsed.value, c.degrees, kTolerance) << c.text;
    EXPECT_EQ(parsed.column, 0U);
    EXPECT_TRUE(parsed.text.empty());
  }
  EXPECT_FALSE(std::signbit(parseLatitude("-0").value)) << "zero has no sign";
}

TEST(LongitudeText, IsBroughtIntoTheRangeOf180DegreesEitherWay) {
  const std::vector<AngleCase> cases = {{"-84.2", -84.2},
                                        {"84.2 W", -84.2},
                                        {"84-12-00.0 W", -84.2},
                                        {"84.2e", 84.2},
                                        {"E 84.2", 84.2},
                                        {"180", 180},
                                        {"-180", -180},
                                        {"180 W", -180},
                                        {"275.8", -84.2},
                                        {"275.8 E", -84.2},
                                        {"360", 0},
                                        {"-275.8", 84.2},
                                        {"181", -179},
                                        {"180-00-00.1", -180 + 0.1 / 3600}};
  for (const AngleCase& c : cases) {
    const auto parsed = parseLongitude(c.text);
    ASSERT_TRUE(parsed.ok()) << c.text << ": " << parsed.text;
    EXPECT_NEAR(parsed.value, c.degrees, 1e-11) << c.text;  // 360 carries fewer bits behind the point
  }
}

struct ErrorCase {
  std::string text;
  TextError error;
  std::size_t column;
};

TEST(LatitudeText, IsRefusedWithTheReasonAndThePlace) {
  const std::vector<ErrorCase> cases = {
      {"", TextError::kEmpty, 1},
      {"   ", TextError::kEmpty, 1},
      {"90.0001", TextError::kLatitudeRange, 1},
      {" 91 N", TextError::kLatitudeRange, 2},
      {"-90-00-00.1", TextError::kLatitudeRange, 1},
      {"1" + std::string(400, '0'), TextError::kLatitudeRange, 1},
      {"36-60-00", TextError::kMinutesRange, 4},
      {"36-99", TextError::kMinutesRange, 4},
      {"36-32-60", TextError::kSecondsRange, 7},
      {"36-32-60.0 N", TextError::kSecondsRange, 7},
      {"36.5-32", TextError::kFraction, 1},
      {"36-32.5-11", TextError::kFraction, 4},
      {"36-32-11-5", TextError::kTooManyParts, 10},
      {"36 32 11 5", TextError::kTooManyParts, 10},
      {"-36 S", TextError::kTwoSigns, 1},
      {"-36 N", TextError::kTwoSigns, 1},
      {"+36 N", TextError::kTwoSigns, 1},
      {"N-36", TextError::kTwoSigns, 2},
      {"N 36 N", TextError::kTwoSigns, 6},
      {"N 36 S", TextError::kTwoSigns, 6},
      {"36 -32", TextError::kTwoSigns, 4},
      {"--36", TextError::kUnreadable, 2},
      {"36 E", TextError::kWrongLetter, 1},
      {"W36", TextError::kWrongLetter, 1},
      {"nan", TextError::kUnreadable, 2},
      {"inf", TextError::kUnreadable, 1},
      {"-inf", TextError::kUnreadable, 2},
      {"1e999", TextError::kUnreadable, 3},
      {"0x24", TextError::kUnreadable, 2},
      {"abc", TextError::kUnreadable, 1},
      {"N", TextError::kUnreadable, 2},
      {"-", TextError::kUnreadable, 2},
      {".", TextError::kUnreadable, 1},
      {"36.5 north", TextError::kUnreadable, 7},
      {"36,5", TextError::kUnreadable, 3},
      {"36.5.5", TextError::kUnreadable, 5},
      {"36-", TextError::kUnreadable, 3},
      {"36::32", TextError::kUnreadable, 3},
      {"36'32", TextError::kUnreadable, 3},
      {"36\xC2\xB0"
       "32\"",
       TextError::kUnreadable, 6},
      {"36\xC2\xB0"
       "32'11'",
       TextError::kUnreadable, 9},
      {"36D32M11.4S", TextError::kAmbiguous, 11},
      {"\xC3\xA4"
       "36",
       TextError::kUnreadable, 1},
      {"36\xC2\xB0 \xC3\xA4", TextError::kUnreadable, 5},
      {std::string("36\0", 3), TextError::kUnreadable, 3},
      {"36 m", TextError::kUnreadable, 4},
  };
  for (const ErrorCase& c : cases) {
    const auto parsed = parseLatitude(c.text);
    EXPECT_EQ(static_cast<int>(parsed.error), static_cast<int>(c.error)) << c.text << ": " << parsed.text;
    EXPECT_EQ(parsed.column, c.column) << c.text << ": " << parsed.text;
    EXPECT_FALSE(parsed.text.empty()) << c.text;
  }
}

TEST(LatitudeText, SaysInWordsWhatIsWrong) {
  EXPECT_EQ(parseLatitude("91").text, "the latitude 91 is beyond 90 degrees");
  EXPECT_EQ(parseLatitude("36-75-00").text, "the minutes are not below 60");
  EXPECT_EQ(parseLatitude("-36 S").text, "it has a sign and the letter of a hemisphere");
  EXPECT_EQ(parseLatitude("36.5\xC3\xA4").text, "\"\xC3\xA4\" has no meaning here");
}

TEST(LongitudeText, IsRefusedBeyond360DegreesOrWithALetterOfALatitude) {
  EXPECT_EQ(parseLongitude("360.1").error, TextError::kLongitudeRange);
  EXPECT_EQ(parseLongitude("-360.1").error, TextError::kLongitudeRange);
  EXPECT_EQ(parseLongitude("1000 W").error, TextError::kLongitudeRange);
  EXPECT_EQ(parseLongitude("84 N").error, TextError::kWrongLetter);
}

struct PositionCase {
  std::string text;
  GeoPoint position;
};

TEST(PositionText, IsUnderstoodInEveryForm) {
  const double latitude = dms(36, 32, 11.4);
  const std::vector<PositionCase> cases = {
      {"36.5,-84.2", {36.5, -84.2}},
      {" 36.5 , -84.2 ", {36.5, -84.2}},
      {"36.5;-84.2", {36.5, -84.2}},
      {"36.5 -84.2", {36.5, -84.2}},
      {"36.5\t84.2", {36.5, 84.2}},
      {"36.5 N, 84.2 W", {36.5, -84.2}},
      {"N36.5,W84.2", {36.5, -84.2}},
      {"36.5N 84.2W", {36.5, -84.2}},
      {"N36.5 W84.2", {36.5, -84.2}},
      {"N 36.5 W 84.2", {36.5, -84.2}},
      {"36.5N84.2W", {36.5, -84.2}},
      {"36-32-11.4 N, 84-12-00.0 W", {latitude, -84.2}},
      {"36-32-11.4 N 84-12-00.0 W", {latitude, -84.2}},
      {"36-32-11.4 84-12-00.0", {latitude, 84.2}},
      {"36-32-11.4 -84-12-00.0", {latitude, -84.2}},
      {"36 32 11.4 N 84 12 0 W", {latitude, -84.2}},
      {"36 32 11.4, -84 12 0", {latitude, -84.2}},
      {"36:32:11.4,-84:12", {latitude, -84.2}},
      {"36\xC2\xB0"
       "32'11.4\"N 84\xC2\xB0"
       "12'0\"W",
       {latitude, -84.2}},
      {"36d32m11.4s N 84d12m0s W", {latitude, -84.2}},
      {"36d32m11.4sN,84d12mW", {latitude, -84.2}},
      {"84.2 W, 36.5 N", {36.5, -84.2}},
      {"84.2W 36.5N", {36.5, -84.2}},
      {"W84.2 N36.5", {36.5, -84.2}},
      {"84.2 W, 36.5", {36.5, -84.2}},
      {"-84.2, 36.5 N", {36.5, -84.2}},
      {"36.5, 275.8", {36.5, -84.2}},
      {"-33.9,151.2", {-33.9, 151.2}},
      {"0,0", {0, 0}},
      {"-90,180", {-90, 180}},
  };
  for (const PositionCase& c : cases) {
    const auto parsed = parsePosition(c.text);
    ASSERT_TRUE(parsed.ok()) << c.text << ": " << parsed.text;
    EXPECT_NEAR(parsed.value.latitude, c.position.latitude, kTolerance) << c.text;
    EXPECT_NEAR(parsed.value.longitude, c.position.longitude, 1e-11) << c.text;
  }
}

TEST(PositionText, IsRefusedWithTheReasonAndThePlace) {
  const std::vector<ErrorCase> cases = {
      {"", TextError::kEmpty, 1},
      {" \t", TextError::kEmpty, 1},
      {"36.5", TextError::kMissingLongitude, 5},
      {"36.5 N", TextError::kMissingLongitude, 7},
      {"N 36.5", TextError::kMissingLongitude, 7},
      {"36-32-11.4 N", TextError::kMissingLongitude, 13},
      {"36 32 11", TextError::kMissingLongitude, 9},
      {"36.5,", TextError::kMissingLongitude, 6},
      {",-84.2", TextError::kEmpty, 1},
      {",", TextError::kEmpty, 1},
      {"36.5,-84.2,30", TextError::kTooManyParts, 12},
      {"91,-84.2", TextError::kLatitudeRange, 1},
      {"36.5,-361", TextError::kLongitudeRange, 6},
      {"-84.2,36.5 E", TextError::kNone, 0},
      {"-94.2,36.5", TextError::kLatitudeRange, 1},
      {"36.5 N, 84.2 N", TextError::kWrongLetter, 9},
      {"36.5 E, 84.2 W", TextError::kWrongLetter, 9},
      {"36.5, -84-75-00", TextError::kMinutesRange, 11},
      {"36.5,84.2x", TextError::kUnreadable, 10},
      {"nan,nan", TextError::kUnreadable, 2},
      {"36.5,inf", TextError::kUnreadable, 6},
      {"1e999,0", TextError::kUnreadable, 3},
      {"36 32 11 84 12 0", TextError::kAmbiguous, 4},
      {"36.5 -84.2 30", TextError::kAmbiguous, 6},
      {"somewhere", TextError::kUnreadable, 2},
      {"\xC3\xA4,1", TextError::kUnreadable, 1},
      {"36\xC2\xB0,\xC3\xA4", TextError::kUnreadable, 5},
  };
  for (const ErrorCase& c : cases) {
    const auto parsed = parsePosition(c.text);
    EXPECT_EQ(static_cast<int>(parsed.error), static_cast<int>(c.error)) << c.text << ": " << parsed.text;
    EXPECT_EQ(parsed.column, c.column) << c.text << ": " << parsed.text;
  }
}

TEST(StationText, HasAHeightInMetresOrFeet) {
  struct Case {
    std::string text;
    std::optional<double> height;  // metres
  };
  const std::vector<Case> cases = {
      {"36.5,-84.2", std::nullopt}, {"36.5,-84.2,30", 30},        {"36.5,-84.2, 30.5 ", 30.5},
      {"36.5;-84.2;30", 30},        {"36.5,-84.2,30m", 30},       {"36.5,-84.2,30 M", 30},
      {"36.5,-84.2,100ft", 30.48},  {"36.5,-84.2,100 Ft", 30.48}, {"36-32-11.4 N,84-12-00.0 W,30 m", 30},
      {"84.2 W,36.5 N,30", 30},     {"36.5,-84.2,-2", -2},        {"36.5,-84.2,0", 0}};
  for (const Case& c : cases) {
    const auto parsed = parseStation(c.text);
    ASSERT_TRUE(parsed.ok()) << c.text << ": " << parsed.text;
    ASSERT_EQ(parsed.value.height.has_value(), c.height.has_value()) << c.text;
    if (c.height) {
      EXPECT_NEAR(*parsed.value.height, *c.height, kTolerance) << c.text;
    }
    EXPECT_NEAR(parsed.value.position.longitude, -84.2, kTolerance) << c.text;
  }
}

TEST(StationText, IsRefusedWithTheReasonAndThePlace) {
  const std::vector<ErrorCase> cases = {
      {"36.5,-84.2,", TextError::kHeight, 12},
      {"36.5,-84.2,high", TextError::kHeight, 12},
      {"36.5,-84.2,30 km", TextError::kHeight, 12},
      {"36.5,-84.2,m", TextError::kHeight, 12},
      {"36.5,-84.2,ft", TextError::kHeight, 12},
      {"36.5,-84.2,nan", TextError::kHeight, 12},
      {"36.5,-84.2,inf", TextError::kHeight, 12},
      {"36.5,-84.2,1e999", TextError::kHeight, 12},
      {"36.5,-84.2, 30 30", TextError::kHeight, 13},
      {"36.5,-84.2,30,40", TextError::kTooManyParts, 15},
      {"36.5", TextError::kMissingLongitude, 5},
      {"36.5,,30", TextError::kMissingLongitude, 6},
      {"", TextError::kEmpty, 1},
  };
  for (const ErrorCase& c : cases) {
    const auto parsed = parseStation(c.text);
    EXPECT_EQ(static_cast<int>(parsed.error), static_cast<int>(c.error)) << c.text << ": " << parsed.text;
    EXPECT_EQ(parsed.column, c.column) << c.text << ": " << parsed.text;
  }
}

TEST(StationText, HasNoHeightBeyondAnyNumber) {
  EXPECT_EQ(parseStation("36.5,-84.2,1e999").text, "the height is beyond any number");
  EXPECT_EQ(parseStation("36.5,-84.2,high").text, "the height is no number of metres (m) or feet (ft)");
}

}  // namespace
}  // namespace zel
