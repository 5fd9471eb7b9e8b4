#include "zeltool/coordinates/standard_coordinate_formatter.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

#include "foundation/runtime_error.h"
#include "zeltool/coordinates/station_text.h"

namespace zel {
namespace {

constexpr double dms(double degrees, double minutes, double seconds) {
  return degrees + minutes / 60 + seconds / 3600;
}

TEST(CoordinateFormatter, WritesDegreesMinutesAndTenthsOfSeconds) {
  const StandardCoordinateFormatter formatter;
  EXPECT_EQ(formatter.LatitudeText(dms(36, 32, 11.4)), "36-32-11.4 N");
  EXPECT_EQ(formatter.LatitudeText(-dms(36, 32, 11.4)), "36-32-11.4 S");
  EXPECT_EQ(formatter.LongitudeText(-84.2), "84-12-00.0 W");
  EXPECT_EQ(formatter.LongitudeText(84.2), "84-12-00.0 E");
  EXPECT_EQ(formatter.LatitudeText(dms(5, 3, 4.2)), "5-03-04.2 N");
  EXPECT_EQ(formatter.LongitudeText(-180), "180-00-00.0 W");
  EXPECT_EQ(formatter.LatitudeText(90), "90-00-00.0 N");
}

TEST(CoordinateFormatter, CarriesRoundedSecondsIntoMinutesAndDegrees) {
  const StandardCoordinateFormatter formatter;
  EXPECT_EQ(formatter.LatitudeText(dms(36, 32, 59.94)), "36-32-59.9 N");
  EXPECT_EQ(formatter.LatitudeText(dms(36, 32, 59.96)), "36-33-00.0 N");
  EXPECT_EQ(formatter.LatitudeText(dms(36, 59, 59.96)), "37-00-00.0 N");
  EXPECT_EQ(formatter.LongitudeText(-dms(83, 59, 59.99)), "84-00-00.0 W");
}

TEST(CoordinateFormatter, GivesZeroTheLettersNAndE) {
  const StandardCoordinateFormatter formatter;
  EXPECT_EQ(formatter.LatitudeText(0), "0-00-00.0 N");
  EXPECT_EQ(formatter.LatitudeText(-0.0), "0-00-00.0 N");
  EXPECT_EQ(formatter.LatitudeText(-0.00001), "0-00-00.0 N") << "0.036 seconds round to zero";
  EXPECT_EQ(formatter.LongitudeText(-0.00001), "0-00-00.0 E");
  EXPECT_EQ(formatter.LongitudeText(-0.00002), "0-00-00.1 W");
}

TEST(CoordinateFormatter, WritesSignedDecimalDegrees) {
  StandardCoordinateFormatter formatter;
  formatter.SetFormat("DD");
  EXPECT_EQ(formatter.LatitudeText(36.5365), "36.536500");
  EXPECT_EQ(formatter.LongitudeText(-84.2), "-84.200000");
  EXPECT_EQ(formatter.LatitudeText(-0.0000001), "0.000000");
  EXPECT_EQ(formatter.LatitudeText(0.1234565), "0.123457");
}

TEST(CoordinateFormatter, TakesAnyOtherFormatAsDegreesMinutesSeconds) {
  StandardCoordinateFormatter formatter;
  for (const std::string format : {"DMS", "dms", "", "UTM", "DDD", "D D"}) {
    formatter.SetFormat("DD");
    formatter.SetFormat(format);
    EXPECT_EQ(formatter.LatitudeText(36.5), "36-30-00.0 N") << format;
  }
  formatter.SetFormat(" dd ");
  EXPECT_EQ(formatter.LatitudeText(36.5), "36.500000");
}

TEST(CoordinateFormatter, RaisesOverflowForWhatIsNoAngle) {
  const StandardCoordinateFormatter formatter;
  for (const double angle :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e300, -361.0}) {
    EXPECT_THROW(formatter.LatitudeText(angle), RuntimeError);
    EXPECT_THROW(formatter.LongitudeText(angle), RuntimeError);
  }
}

TEST(CoordinateFormatter, WritesTextsThatReadBackWithinTheirRounding) {
  const unsigned seed = 29;
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> latitudes(-90, 90);
  std::uniform_real_distribution<double> longitudes(-180, 180);
  for (const std::string format : {"DMS", "DD"}) {
    StandardCoordinateFormatter formatter;
    formatter.SetFormat(format);
    // Half a tenth of a second, half a millionth of a degree, and the last bits of 180.
    const double tolerance = (format == "DMS" ? 0.05 / 3600 : 0.5e-6) + 1e-12;
    for (int i = 0; i < 5000; ++i) {
      const double latitude = latitudes(random);
      const double longitude = longitudes(random);
      const std::string text = formatter.LatitudeText(latitude) + "," + formatter.LongitudeText(longitude);
      const auto parsed = parsePosition(text);
      ASSERT_TRUE(parsed.ok()) << text << ": " << parsed.text;
      EXPECT_NEAR(parsed.value.latitude, latitude, tolerance) << text << ", seed " << seed;
      EXPECT_NEAR(parsed.value.longitude, longitude, tolerance) << text << ", seed " << seed;
    }
  }
}

}  // namespace
}  // namespace zel
