#include "profile/calculation/fresnel_line.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

PathGeometry pathOf(double distance, std::int16_t intervals, std::int16_t extension) {
  PathGeometry path;
  path.distance = distance;
  path.intervals = intervals;
  path.extension = path.firstIndex = extension;
  path.lastIndex = static_cast<std::int16_t>(intervals + extension);
  path.samples = intervals + 2 * extension;
  path.spacing = distance / intervals;
  return path;
}

TEST(Wavelength, IsThreeHundredOverTheFrequencyInMegahertz) {
  EXPECT_EQ(wavelengthOf(300), 1.0F);
  EXPECT_FLOAT_EQ(wavelengthOf(950), 0.31578947F);
  EXPECT_THROW(wavelengthOf(0), RuntimeError);
}

// At 300 MHz (1 m) and in the middle of 10 km the first zone's radius is sqrt(1 x 5000 x 5000 / 10000) = 50
// m.
TEST(FresnelLine, LiesTheChosenPartOfTheFirstZoneBelowTheLineOfSight) {
  const PathGeometry path = pathOf(10, 10, 1);
  const LineOfSight line{100, 200, 10};
  EXPECT_EQ(fresnelLine(path, line, 1, 1.0F)[6], 150.0F - 50.0F);
  EXPECT_FLOAT_EQ(fresnelLine(path, line, 1, 0.6F)[6], 150.0F - 30.0F);
}

TEST(FresnelLine, EndsAtTheAntennaTops) {
  const SampleArray<float> heights = fresnelLine(pathOf(10, 10, 3), {100, 200.5F, 10}, 1, 1);
  EXPECT_EQ(heights.size(), 13);
  EXPECT_EQ(heights[3], 100);
  EXPECT_EQ(heights[13], 200.5F) << "the top itself, not start + slope x distance";
  EXPECT_EQ(heights[2], 0) << "nothing is drawn before the start antenna";
  EXPECT_THROW(heights[14], RuntimeError);
}

TEST(FresnelLine, IsNoneForAFractionOfZero) {
  EXPECT_TRUE(fresnelLine(pathOf(10, 10, 1), {100, 200, 10}, 1, 0).empty());
  EXPECT_TRUE(fresnelLine(pathOf(10, 10, 1), {100, 200, 10}, 1, 0, SampleArray<float>(11, 5)).empty());
}

TEST(FresnelLine, WhereTheSumReachesTheEndASampleTakesTheHeightBeforeTheLastAsItStands) {
  PathGeometry path = pathOf(10, 5, 1);
  path.spacing = 4;  // x runs 4, 8, 12, 16
  const LineOfSight line{100, 100, 0};
  const SampleArray<float> fresh = fresnelLine(path, line, 1, 1);
  EXPECT_EQ(fresh[4], 0);
  EXPECT_EQ(fresh[5], 0);
  SampleArray<float> previous(6, 55.0F);
  const SampleArray<float> redone = fresnelLine(path, line, 1, 1, previous);
  EXPECT_EQ(redone[4], 55);
  EXPECT_EQ(redone[5], 55);
  EXPECT_EQ(redone[3], fresh[3]) << "samples before the end are computed";

  path.spacing = 10;  // exactly at the end
  EXPECT_EQ(fresnelLine(path, line, 1, 1, previous)[2], 55);
}

// The same formula without summing x up, in 80-bit reals. Allowed: half a unit of a 32-bit real of the
// height, and 1e-6 m for the sum of 5,000 spacings.
TEST(FresnelLine, AgreesWithAnIndependentEvaluation) {
  for (const auto& [distance, intervals] : {std::pair{0.2, 3}, {5.0, 251}, {10.0, 1000}, {400.0, 5000}}) {
    const PathGeometry path = pathOf(distance, static_cast<std::int16_t>(intervals),
                                     static_cast<std::int16_t>(std::max(1, intervals / 20)));
    const LineOfSight line{412.25F, 998.5F, static_cast<float>((412.25 - 998.5) / -distance)};
    const float wavelength = wavelengthOf(950);
    const float fraction = 0.6F;
    const SampleArray<float> heights = fresnelLine(path, line, wavelength, fraction);
    for (std::int32_t n = 1; n < intervals; ++n) {
      const long double d1 = static_cast<long double>(distance) * n / intervals;
      const long double d2 = static_cast<long double>(distance) * (intervals - n) / intervals;
      const long double radius =
          std::sqrt(static_cast<long double>(wavelength) * (d1 * 1000) * (d2 * 1000) / ((d1 + d2) * 1000));
      const auto expected = static_cast<double>(line.startTop + line.slope * d1 - fraction * radius);
      ASSERT_NEAR(heights[path.firstIndex + n], expected, std::ldexp(std::abs(expected), -24) + 1e-6) << n;
    }
  }
}

TEST(FresnelLine, DegenerateInputsFailWithTheirErrors) {
  const auto errorOf = [](const PathGeometry& path, float wavelength) {
    try {
      fresnelLine(path, {1, 1, 0}, wavelength, 1);
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  };
  EXPECT_EQ(errorOf(pathOf(0, 4, 1), 1), 11);
  EXPECT_EQ(errorOf(pathOf(10, 4, 1), -1), 5) << "a frequency below 0";
  EXPECT_EQ(errorOf(pathOf(10, 4, 0), 1), 9) << "there is no sample 0";
}

}  // namespace
}  // namespace zel
