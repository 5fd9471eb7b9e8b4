#include "models/longrice/radio_climate.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zel::longrice {
namespace {

TEST(RadioClimate, HasTheSevenPublishedNames) {
  EXPECT_EQ(radioClimateName(1), "Equatorial");
  EXPECT_EQ(radioClimateName(2), "Continental Subtropical");
  EXPECT_EQ(radioClimateName(3), "Maritime Tropical");
  EXPECT_EQ(radioClimateName(4), "Desert");
  EXPECT_EQ(radioClimateName(5), "Continental Temperate");
  EXPECT_EQ(radioClimateName(6), "Maritime Temperate, Over Land");
  EXPECT_EQ(radioClimateName(7), "Maritime Temperate, Over Sea");
}

TEST(RadioClimate, OfACodeThatIsNoneIsTheContinentalTemperateOneWithoutAName) {
  for (const int code : {0, 8, -1, 32767, -32768}) {
    EXPECT_FALSE(isRadioClimate(code));
    EXPECT_EQ(radioClimateName(code), "");
    EXPECT_EQ(&radioClimate(code), &radioClimate(kContinentalTemperate));
  }
  for (int code = 1; code <= 7; ++code) EXPECT_TRUE(isRadioClimate(code));
}

// A curve by its closed forms: nothing at no distance, c_1 far away, and c_1 + c_2 over the growth at x_2.
TEST(ClimateCurve, HasItsPublishedLimits) {
  for (int code = 1; code <= 7; ++code)
    for (const ClimateCurve& curve :
         {radioClimate(code).median, radioClimate(code).lowerDeviation, radioClimate(code).upperDeviation}) {
      EXPECT_EQ(curve.at(0), 0);
      EXPECT_NEAR(curve.at(1e12), curve.c1, 1e-3);
      const double growth = std::pow(curve.x2 / curve.x1, 2);
      EXPECT_NEAR(curve.at(curve.x2), (curve.c1 + curve.c2) * growth / (1 + growth), 1e-12);
      const double nearer = std::pow((curve.x2 - curve.x3) / curve.x1, 2);
      EXPECT_NEAR(curve.at(curve.x2 - curve.x3), (curve.c1 + curve.c2 / 2) * nearer / (1 + nearer), 1e-12);
    }
}

// Worked by hand from the table of the area prediction guide, km and dB. Continental temperate at d_e = 100
// km:
// (-0.62 + 9.19 / (1 + (105.2 / 143.6)^2)) x 0.19086 / 1.19086 = 0.8591; tolerance 0.001 dB of the hand's
// rounding.
TEST(ClimateCurve, GivesTheValuesWorkedByHand) {
  const RadioClimate& temperate = radioClimate(5);
  EXPECT_NEAR(temperate.median.at(100e3), 0.8591, 0.001);
  // (2.68 + 7.16 / (1 + (86.8 / 133.5)^2)) x 1.13899 / 2.13899.
  EXPECT_NEAR(temperate.lowerDeviation.at(100e3), 4.1068, 0.001);
  // (4.75 + 8.12 / (1 + (35.9 / 113.4)^2)) x 1.15125 / 2.15125.
  EXPECT_NEAR(temperate.upperDeviation.at(100e3), 6.4916, 0.001);
}

// The whole published table, as sums down its columns, each climate times its code: a slip of a digit or two
// climates exchanged move one.
TEST(RadioClimate, HasThePublishedConstants) {
  struct Sums {
    double c1 = 0, c2 = 0, x1 = 0, x2 = 0, x3 = 0;
    void add(const ClimateCurve& curve, double weight) {
      c1 += weight * curve.c1;
      c2 += weight * curve.c2;
      x1 += weight * curve.x1 / 1000;
      x2 += weight * curve.x2 / 1000;
      x3 += weight * curve.x3 / 1000;
    }
  };
  Sums median, lower, upper;
  double ducting = 0, deviate = 0;
  for (int code = 1; code <= 7; ++code) {
    const RadioClimate& climate = radioClimate(code);
    median.add(climate.median, code);
    lower.add(climate.lowerDeviation, code);
    upper.add(climate.upperDeviation, code);
    ducting += code * climate.ductingFactor;
    deviate += code * climate.ductingDeviate;
  }
  EXPECT_NEAR(median.c1, -27.36, 1e-9);
  EXPECT_NEAR(median.c2, 6182.19, 1e-9);
  EXPECT_NEAR(median.x1, 19275.6, 1e-9);
  EXPECT_NEAR(median.x2, 5635.7, 1e-9);
  EXPECT_NEAR(median.x3, 3651.3, 1e-9);
  EXPECT_NEAR(lower.c1, 147.83, 1e-9);
  EXPECT_NEAR(lower.c2, 1533.91, 1e-9);
  EXPECT_NEAR(lower.x1, 7797.9, 1e-9);
  EXPECT_NEAR(lower.x2, 4516.9, 1e-9);
  EXPECT_NEAR(lower.x3, 3744.2, 1e-9);
  EXPECT_NEAR(upper.c1, 195.05, 1e-9);
  EXPECT_NEAR(upper.c2, 981.11, 1e-9);
  EXPECT_NEAR(upper.x1, 5983.2, 1e-9);
  EXPECT_NEAR(upper.x2, 4382.7, 1e-9);
  EXPECT_NEAR(upper.x3, 3222.2, 1e-9);
  EXPECT_NEAR(ducting, 36.82, 1e-9);
  EXPECT_NEAR(deviate, 112.526, 1e-9);
}

TEST(RadioClimate, LetsTheFrequencyCountWhereThePublicationDoes) {
  const auto constant = [](const FrequencyFactor& factor) {
    return factor.at(1) == 1 && factor.at(100) == 1;
  };
  for (const int code : {1, 3, 6, 7}) {
    EXPECT_TRUE(constant(radioClimate(code).lowerFactor)) << code;
    EXPECT_TRUE(constant(radioClimate(code).upperFactor)) << code;
  }
  for (const int code : {2, 4}) {
    EXPECT_TRUE(constant(radioClimate(code).lowerFactor)) << code;
    EXPECT_FALSE(constant(radioClimate(code).upperFactor)) << code;
  }
  // The most at 0.133 k = 1, 358.6 MHz: c_1 + c_2.
  constexpr double kMost = 1 / 0.133;
  EXPECT_NEAR(radioClimate(5).lowerFactor.at(kMost), 1.17, 1e-12);
  EXPECT_NEAR(radioClimate(5).upperFactor.at(kMost), 1.24, 1e-12);
  EXPECT_NEAR(radioClimate(2).upperFactor.at(kMost), 1.24, 1e-12);
  EXPECT_NEAR(radioClimate(4).upperFactor.at(kMost), 1.12, 1e-12);
  // Half of it where c_3 ln is 1.
  EXPECT_NEAR(radioClimate(5).lowerFactor.at(kMost * std::exp(1 / 1.77)), 0.92 + 0.125, 1e-12);
  for (const int code : {2, 5})
    EXPECT_NEAR(radioClimate(code).upperFactor.at(kMost * std::exp(-0.5)), 0.93 + 0.155, 1e-12);
  EXPECT_NEAR(radioClimate(4).upperFactor.at(kMost * std::exp(1 / 1.79)), 0.93 + 0.095, 1e-12);
}

}  // namespace
}  // namespace zel::longrice
