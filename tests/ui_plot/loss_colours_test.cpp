#include "ui/plot/loss_colours.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace zel {
namespace {

// CIE 1976 L*a*b* under D65, by IEC 61966-2-1 and CIE 15: another space than the one the colours are made in.
std::array<double, 3> lab(Colour colour) {
  const auto linear = [](int value) {
    const double v = value / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  const double r = linear(colour & 0xFF), g = linear(colour >> 8 & 0xFF), b = linear(colour >> 16 & 0xFF);
  const auto f = [](double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116; };
  const double x = f((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505);
  const double y = f(0.2126 * r + 0.7152 * g + 0.0722 * b);
  const double z = f((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.089);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

TEST(LossColours, RunFromPaleYellowOverTealToDarkBlue) {
  const auto low = lab(lossColour(0)), middle = lab(lossColour(0.5)), high = lab(lossColour(1));
  EXPECT_GT(low[0], 90);
  EXPECT_GT(low[2], 30);
  EXPECT_LT(middle[1], -15);
  EXPECT_LT(high[0], 25);
  EXPECT_LT(high[2], -25);
}

// So that a print in grey, and eyes that tell fewer colours, keep the order.
TEST(LossColours, GetEvenlyDarker) {
  constexpr int kSteps = 20;
  const double whole = lab(lossColour(0))[0] - lab(lossColour(1))[0];
  for (int i = 0; i < kSteps; ++i) {
    const double step = lab(lossColour(i / double{kSteps}))[0] - lab(lossColour((i + 1) / double{kSteps}))[0];
    // The two spaces measure lightness somewhat differently.
    EXPECT_NEAR(step, whole / kSteps, 0.3 * whole / kSteps) << i;
  }
}

// A hundred parts of the scale are a hundred colours.
TEST(LossColours, TellNeighboursApart) {
  for (int i = 0; i < 100; ++i) EXPECT_NE(lossColour(i / 100.0), lossColour((i + 1) / 100.0)) << i;
}

TEST(LossColours, BeyondTheScaleAreThoseOfItsEnds) {
  EXPECT_EQ(lossColour(-1), lossColour(0));
  EXPECT_EQ(lossColour(2), lossColour(1));
  EXPECT_EQ(lossColour(std::numeric_limits<double>::infinity()), lossColour(1));
  EXPECT_EQ(lossColour(std::nan("")), lossColour(0));
}

// By the contrast ratio of the web content guidelines (WCAG 2.1): 3 to 1 is what graphics need.
TEST(LossColours, BlackOnTheLightHalfAndWhiteOnTheDarkOneAreLegible) {
  const auto luminance = [](Colour colour) {
    const double f = (lab(colour)[0] + 16) / 116;
    return f * f * f;
  };
  for (int i = 0; i <= 100; ++i) {
    const double ground = luminance(lossColour(i / 100.0)) + 0.05;
    EXPECT_GT(isLight(i / 100.0) ? ground / 0.05 : 1.05 / ground, 3) << i;
  }
  EXPECT_TRUE(isLight(0));
  EXPECT_FALSE(isLight(1));
}

}  // namespace
}  // namespace zel
