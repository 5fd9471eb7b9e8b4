#include "profile/calculation/earth_curvature.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

int errorOf(float k, std::int32_t samples, double length) {
  try {
    curvatureRise(k, samples, length);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(EffectiveRadius, IsTheFactorTimesTheEquatorialRadiusInWholeKilometres) {
  EXPECT_EQ(effectiveRadius(1.000F), 6378);
  EXPECT_EQ(effectiveRadius(1.33F), 8483);
  EXPECT_EQ(effectiveRadius(1.333F), 8502);
  EXPECT_EQ(effectiveRadius(1.33333F), 8504);
  EXPECT_EQ(effectiveRadius(8.0F), 51027);
  EXPECT_EQ(effectiveRadius(50.0F), 318919);
}

TEST(CurvatureRise, OverflowsWhereTheSquaredRadiusLeavesThirtyTwoBits) {
  EXPECT_EQ(effectiveRadius(7.2652F), 46340);
  EXPECT_EQ(errorOf(7.2652F, 100, 50), 0);
  EXPECT_EQ(effectiveRadius(7.2653F), 46341);
  EXPECT_EQ(errorOf(7.2653F, 100, 50), 6);
  EXPECT_EQ(errorOf(8.0F, 100, 50), 6);
  EXPECT_EQ(errorOf(1e9F, 100, 50), 6) << "the radius itself leaves 32 bits";
}

TEST(CurvatureRise, FirstAndLastSampleCarryNone) {
  const SampleArray<float> rise = curvatureRise(1.333F, 1100, 11);
  EXPECT_EQ(rise.size(), 1100);
  EXPECT_EQ(rise[1], 0);
  EXPECT_EQ(rise[1100], 0);
  EXPECT_GT(rise[2], 0);
  EXPECT_GT(rise[1099], 0);
  // Computed instead of set, the last one would be some rounding of 0.
  for (int length = 1; length <= 200; ++length) EXPECT_EQ(curvatureRise(1.333F, 77, length)[77], 0) << length;
}

// The sagitta of the chord, R - sqrt(R^2 - (L/2)^2), for R = 8502 km and L = 110 km: 177.900759 m.
TEST(CurvatureRise, InTheMiddleIsTheSagittaOfTheChord) {
  const SampleArray<float> rise = curvatureRise(1.333F, 1000, 110);
  const double sagitta = (8502.0 - std::sqrt(8502.0 * 8502.0 - 55.0 * 55.0)) * 1000.0;
  EXPECT_NEAR(sagitta, 177.9008, 1e-3);
  EXPECT_NEAR(rise[500], sagitta, 1e-5);  // metres: one half unit of a 32-bit real at 178 m is 7.6e-6
}

TEST(CurvatureRise, IsOneStepOutOfPhaseWithTheSamples) {
  const std::int32_t samples = 40;
  const SampleArray<float> rise = curvatureRise(1.0F, samples, 60);
  for (std::int32_t i = 2; i <= samples - 2; ++i)
    EXPECT_FLOAT_EQ(rise[i], rise[samples - i]) << "the angle i / T mirrors to (T - i) / T";
  EXPECT_LT(rise[samples - 1], rise[2]) << "one step before the end against two steps from the beginning";
}

// The same rule evaluated in 80-bit reals and by another way to the angle (half of it is arcsin(L / 2R)).
// Allowed: half a unit of a 32-bit real, and 2e-8 m for the difference of two distances of some 8,000 km in
// 64-bit reals.
TEST(CurvatureRise, AgreesWithAnIndependentEvaluation) {
  for (const float k : {0.5F, 1.0F, 1.33F, 1.333F, 1.33333F, 4.0F, 7.2F}) {
    for (const auto& [samples, length] :
         {std::pair{6, 0.3}, {277, 5.518}, {1100, 11.0}, {1100, 330.0}, {5500, 1980.0}}) {
      const SampleArray<float> rise = curvatureRise(k, samples, length);
      const long double radius = effectiveRadius(k);
      const long double half = std::asin(length / (2.0L * radius));
      for (std::int32_t i = 2; i < samples; ++i) {
        const long double angle = half - 2.0L * half * i / samples;
        const auto expected = static_cast<double>(radius * (std::cos(angle) - std::cos(half)) * 1000.0L);
        ASSERT_NEAR(rise[i], expected, std::ldexp(expected, -24) + 2e-8)
            << "k " << k << " i " << i << " L " << length;
      }
    }
  }
}

TEST(CurvatureRise, FallsWithAGreaterFactor) {
  EXPECT_GT(curvatureRise(1.0F, 100, 50)[50], curvatureRise(1.333F, 100, 50)[50]);
  EXPECT_GT(curvatureRise(1.333F, 100, 50)[50], curvatureRise(7.0F, 100, 50)[50]);
}

TEST(CurvatureRise, DegenerateInputsFailWithTheirErrors) {
  EXPECT_EQ(errorOf(0.0F, 100, 50), 11) << "no radius";
  EXPECT_EQ(errorOf(1.0F, 100, 0), 11) << "no angle";
  EXPECT_EQ(errorOf(1.0F, 100, 2.0 * 6378), 11) << "half the circle";
  EXPECT_EQ(errorOf(1.0F, 100, 13000), 5) << "longer than the diameter";
  EXPECT_EQ(errorOf(1.0F, 0, 50), 9) << "no samples";
  EXPECT_EQ(errorOf(std::nanf(""), 100, 50), 6);
  EXPECT_EQ(errorOf(1.0F, 1, 50), 0);
  EXPECT_EQ(curvatureRise(1.0F, 2, 50), SampleArray<float>(2));
}

}  // namespace
}  // namespace zel
