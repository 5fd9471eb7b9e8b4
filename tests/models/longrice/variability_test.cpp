#include "models/longrice/variability.h"

#include <gtest/gtest.h>

#include <cmath>

#include "links.h"
#include "models/longrice/radio_climate.h"

namespace zel::longrice {
namespace {

constexpr double kHighReference = 60;  // dB, so that no quantile comes near free space

TEST(Variability, InTheMedianIsTheReferenceLessTheClimatesMedian) {
  for (int climate = 1; climate <= 7; ++climate)
    for (const double distance : {5e3, 50e3, 150e3, 400e3}) {
      const Link link = smoothLink(usualParameters(), 50, 10, distance);
      const Variability variability(link, climate);
      EXPECT_DOUBLE_EQ(variability.attenuation(kHighReference, 0, 0), kHighReference - variability.median());
      EXPECT_DOUBLE_EQ(variability.median(), radioClimate(climate).median.at(effectiveDistance(link)));
    }
}

// d_e in the units of Technical Note 101: horizons of 3 sqrt(2 h) km, 65 (100 / f)^(1/3) km, and 130 km where
// the path is as long as all of these. Tolerance: 65 stands for 64.96 there.
TEST(EffectiveDistance, IsThatOfTheTechnicalNote) {
  for (const double frequency : {40.0, 450.0, 9000.0})
    for (const double distance : {2.0, 60.0, 200.0, 700.0}) {
      const Link link = smoothLink(usualParameters(frequency), 120, 15, distance * 1000);
      const double reach =
          3 * std::sqrt(2 * 120.0) + 3 * std::sqrt(2 * 15.0) + 65 * std::cbrt(100 / frequency);
      const double expected = distance < reach ? 130 * distance / reach : 130 + distance - reach;
      EXPECT_NEAR(effectiveDistance(link) / 1000, expected, 0.1);
    }
}

TEST(EffectiveDistance, HasNoStepAtItsReach) {
  Link link = smoothLink(usualParameters(), 50, 50, 1);
  double low = 1e3, high = 1000e3;
  for (int step = 0; step < 100; ++step) {
    link.terrain.distance = 0.5 * (low + high);
    (effectiveDistance(link) < 130e3 ? low : high) = link.terrain.distance;
  }
  link.terrain.distance = high * (1 + 1e-9);
  EXPECT_NEAR(effectiveDistance(link), 130e3, 1);
  link.terrain.distance = high * (1 - 1e-9);
  EXPECT_NEAR(effectiveDistance(link), 130e3, 1);
}

TEST(Variability, GrowsWithReliabilityAndConfidenceInEveryClimateAtEveryDistance) {
  for (int climate = 1; climate <= 7; ++climate)
    for (const double distance : {1e3, 20e3, 80e3, 150e3, 300e3, 800e3})
      for (const double reference : {0.0, 10.0, kHighReference}) {
        const Variability variability(smoothLink(usualParameters(900), 50, 10, distance), climate);
        for (const double fixed : {-3.0, -1.0, 0.0, 0.5, 1.28, 3.0}) {
          for (int step = -80; step <= 80; ++step) {
            const double z = step / 20.0;
            // A smaller upper tail deviate is a greater reliability or confidence, and a greater loss.
            ASSERT_GT(variability.attenuation(reference, z, fixed),
                      variability.attenuation(reference, z + 0.05, fixed))
                << climate << " " << distance << " " << z;
            ASSERT_GT(variability.attenuation(reference, fixed, z),
                      variability.attenuation(reference, fixed, z + 0.05))
                << climate << " " << distance << " " << z;
          }
        }
      }
}

TEST(Variability, HasNoStepAtTheMedianAndWhereDuctsBegin) {
  for (int climate = 1; climate <= 7; ++climate) {
    const Variability variability(smoothLink(usualParameters(), 50, 10, 200e3), climate);
    for (const double join : {0.0, radioClimate(climate).ductingDeviate}) {
      const double below = variability.attenuation(kHighReference, join - 1e-9, 0.3);
      const double above = variability.attenuation(kHighReference, join + 1e-9, 0.3);
      EXPECT_NEAR(below, above, 1e-6) << climate;
    }
  }
}

// With the situation in its median the loss moves by Y_T alone: sigma_T- z below the median, sigma_T+ z up to
// z_D, and from there on by C_D sigma_T+ more for each unit of z.
TEST(Variability, InTimeFollowsTheClimatesDeviations) {
  for (int climate = 1; climate <= 7; ++climate) {
    const Link link = smoothLink(usualParameters(700), 50, 10, 180e3);
    const RadioClimate& curves = radioClimate(climate);
    const double distance = effectiveDistance(link);
    const double k = link.environment.waveNumber;
    const double lower = curves.lowerDeviation.at(distance) * curves.lowerFactor.at(k);
    const double upper = curves.upperDeviation.at(distance) * curves.upperFactor.at(k);
    const Variability variability(link, climate);
    const double median = variability.attenuation(kHighReference, 0, 0);
    const double limit = curves.ductingDeviate;
    EXPECT_NEAR(variability.attenuation(kHighReference, -2, 0), median + 2 * lower, 1e-9);
    EXPECT_NEAR(variability.attenuation(kHighReference, 1, 0), median - upper, 1e-9);
    if (limit < 3) {
      const double ducted = upper * limit + curves.ductingFactor * upper * (3 - limit);
      EXPECT_NEAR(variability.attenuation(kHighReference, 3, 0), median - ducted, 1e-9);
    }
  }
}

// sigma_S = 5 + 3 exp(-d_e / 100 km), to which an unusual time adds Y_T^2 / (7.8 + z^2).
TEST(Variability, InSituationsFollowsTheirOwnDeviation) {
  const Link link = smoothLink(usualParameters(), 50, 10, 120e3);
  const Variability variability(link, 5);
  const double median = variability.attenuation(kHighReference, 0, 0);
  const double sigma = 5 + 3 * std::exp(-effectiveDistance(link) / 100e3);
  EXPECT_NEAR(variability.attenuation(kHighReference, 0, -1.5), median + 1.5 * sigma, 1e-9);
  const double time = median - variability.attenuation(kHighReference, 1.2, 0);
  const double both = std::sqrt(sigma * sigma + time * time / (7.8 + 4));
  EXPECT_NEAR(variability.attenuation(kHighReference, 1.2, 2), median - time - 2 * both, 1e-9);
}

// A (29 - A) / (29 - 10 A) for a negative A: no step at 0, the slope kept there, a tenth of it far down.
TEST(Variability, HoldsLevelsAboveFreeSpaceDown) {
  const Variability variability(smoothLink(usualParameters(), 50, 10, 100e3), 5);
  const double median = variability.median();
  EXPECT_NEAR(variability.attenuation(median, 0, 0), 0, 1e-12);
  EXPECT_NEAR(variability.attenuation(median - 1e-6, 0, 0), -1e-6, 1e-11);
  EXPECT_NEAR(variability.attenuation(median - 29, 0, 0), -29.0 * 58 / 319, 1e-9);
  EXPECT_NEAR(variability.attenuation(median - 1e9, 0, 0) / -1e9, 0.1, 1e-6);
}

TEST(Variability, TakesAnUnknownClimateForTheContinentalTemperateOne) {
  const Link link = smoothLink(usualParameters(), 50, 10, 100e3);
  EXPECT_EQ(Variability(link, 0).attenuation(30, 1, 1), Variability(link, 5).attenuation(30, 1, 1));
  EXPECT_NE(Variability(link, 1).attenuation(30, 1, 1), Variability(link, 5).attenuation(30, 1, 1));
}

}  // namespace
}  // namespace zel::longrice
