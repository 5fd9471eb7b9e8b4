#include "models/longrice/normal_deviate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace zel::longrice {
namespace {

// The fraction's deviate by halving: the tail falls with z.
double bisectedDeviate(double fraction) {
  double low = -40, high = 40;
  for (int step = 0; step < 200; ++step) {
    const double middle = 0.5 * (low + high);
    (0.5 * std::erfc(middle / std::numbers::sqrt2) > fraction ? low : high) = middle;
  }
  return 0.5 * (low + high);
}

TEST(NormalDeviate, IsThePublishedOneForTheUsualFractions) {
  // Abramowitz and Stegun, table 26.5 and its continuation to 12 decimals.
  EXPECT_EQ(normalDeviate(0.5), 0);
  EXPECT_NEAR(normalDeviate(0.1), 1.281551565545, 1e-12);
  EXPECT_NEAR(normalDeviate(0.05), 1.644853626951, 1e-12);
  EXPECT_NEAR(normalDeviate(0.01), 2.326347874041, 1e-12);
  EXPECT_NEAR(normalDeviate(0.001), 3.090232306168, 1e-12);
}

TEST(NormalDeviate, IsTheInverseOfTheTail) {
  for (int step = 1; step < 1000; ++step) {
    const double fraction = step / 2000.0;
    EXPECT_NEAR(normalDeviate(fraction), bisectedDeviate(fraction), 1e-13) << fraction;
  }
  for (int step = 0; step < 1298; ++step) {
    const double fraction = 1e-300 * std::pow(1.7, step);  // to 0.078
    EXPECT_NEAR(normalDeviate(fraction), bisectedDeviate(fraction), 1e-11) << fraction;
  }
}

TEST(NormalDeviate, IsSymmetricalAboutOneHalf) {
  for (int step = 1; step < 64; ++step) {
    const double fraction = step / 128.0;
    EXPECT_EQ(normalDeviate(1 - fraction), -normalDeviate(fraction)) << fraction;
  }
}

TEST(NormalDeviate, FallsAsTheFractionGrowsAndStaysFinite) {
  double before = normalDeviate(5e-324);
  EXPECT_TRUE(std::isfinite(before));
  EXPECT_NEAR(before, 38.5, 0.2);
  for (int step = 1; step < 1000; ++step) {
    const double fraction = step / 1000.0;
    EXPECT_LT(normalDeviate(fraction), before);
    before = normalDeviate(fraction);
  }
  EXPECT_LT(normalDeviate(std::nextafter(1.0, 0.0)), -8);
}

}  // namespace
}  // namespace zel::longrice
