#include "models/longrice/troposcatter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "links.h"

namespace zel::longrice {
namespace {

// Technical Note 101, 9.2: F(theta d) for Ns = 301, theta d in km rad, of the basic loss 30 log f - 20 log d
// + F. The model's function is what remains of it beside free space (32.45 + 20 log f d) and 40 log theta.
double technicalNote(double kilometres) {
  const double logarithm = std::log10(kilometres);
  if (kilometres <= 10) return 135.82 + 0.33 * kilometres + 30 * logarithm;
  if (kilometres <= 70) return 129.5 + 0.212 * kilometres + 37.5 * logarithm;
  return 119.2 + 0.157 * kilometres + 45 * logarithm;
}

// Tolerance: the roundings of the two tables of constants, 0.07 dB and 0.002 dB/km up to 10 km.
TEST(ScatterDistanceFunction, IsThatOfTheTechnicalNote) {
  for (const double kilometres : {0.05, 0.3, 1.0, 5.0, 9.9, 10.1, 25.0, 40.0, 69.0, 71.0, 100.0, 300.0})
    EXPECT_NEAR(scatterDistanceFunction(kilometres * 1000),
                technicalNote(kilometres) - 40 * std::log10(kilometres) - 32.45, 0.1)
        << kilometres;
}

TEST(ScatterDistanceFunction, JoinsItsPieces) {
  EXPECT_NEAR(scatterDistanceFunction(10e3), scatterDistanceFunction(std::nextafter(10e3, 1e9)), 1e-3);
  // The published pieces leave a third of a decibel here.
  const double step = scatterDistanceFunction(70e3) - scatterDistanceFunction(std::nextafter(70e3, 1e9));
  EXPECT_NEAR(step, 0.31, 0.01);
}

// H_0(r, eta) = 10 log(1 + b r^-2 + a r^-4) for whole eta, Technical Note 101, figure 9.3.
TEST(FrequencyGain, IsThePublishedFunctionForEachWholeEfficiency) {
  struct Row {
    double eta, b, a;
  };
  for (const Row& row : {Row{1, 24, 25}, {2, 45, 80}, {3, 68, 177}, {4, 80, 395}, {5, 105, 705}})
    for (const double r : {0.2, 1.0, 5.0, 50.0})
      EXPECT_NEAR(frequencyGain(r, row.eta), 10 * std::log10(1 + row.b / (r * r) + row.a / (r * r * r * r)),
                  1e-9);
}

TEST(FrequencyGain, IsReadBetweenWholeEfficienciesOnAStraightLine) {
  for (const double r : {0.3, 2.0, 20.0}) {
    EXPECT_NEAR(frequencyGain(r, 2.25), 0.75 * frequencyGain(r, 2) + 0.25 * frequencyGain(r, 3), 1e-12);
    for (const double eta : {2.0, 3.0, 4.0, 5.0})
      EXPECT_NEAR(frequencyGain(r, eta - 1e-9), frequencyGain(r, eta), 1e-6);
  }
}

TEST(FrequencyGain, KnowsNoEfficiencyBelowOneOrAboveFive) {
  EXPECT_EQ(frequencyGain(2, 0.2), frequencyGain(2, 1));
  EXPECT_EQ(frequencyGain(2, 9), frequencyGain(2, 5));
}

TEST(FrequencyGain, FadesForHighAntennasAndGrowsForLowOnes) {
  EXPECT_NEAR(frequencyGain(1000, 3), 0, 0.001);
  double before = frequencyGain(0.2, 3);
  for (int step = 0; step < 23; ++step) {
    const double r = 0.3 * std::pow(1.3, step);  // to 96
    EXPECT_LT(frequencyGain(r, 3), before);
    before = frequencyGain(r, 3);
  }
}

// H_0 of a path the way that Technical Note 101, section 9.2 writes it: kilometres, MHz, radians. The angle
// at which the path's asymmetry is seen is that of the horizons' distances.
double technicalNoteGain(const Link& link, double metres) {
  const PathTerrain& terrain = link.terrain;
  const double frequency = link.environment.waveNumber * 47.70;
  const double d = metres / 1000;
  const double theta =
      terrain.horizonAngles[0] + terrain.horizonAngles[1] + link.environment.effectiveCurvature * metres;
  // The end with the farther horizon is the first.
  const std::size_t first = terrain.horizonDistances[0] >= terrain.horizonDistances[1] ? 0 : 1;
  const double r1 = 41.92 * theta * frequency * terrain.effectiveHeights[first] / 1000;
  const double r2 = 41.92 * theta * frequency * terrain.effectiveHeights[1 - first] / 1000;
  const double asymmetry = std::abs(terrain.horizonDistances[0] - terrain.horizonDistances[1]) / 1000;
  const double s = (d - asymmetry) / (d + asymmetry);
  const double q = std::clamp(r2 / (s * r1), 0.1, 10.0);
  const double h0 = s * d * theta / ((1 + s) * (1 + s));
  const double ns = link.environment.surfaceRefractivity;
  const double eta =
      0.5696 * h0 * (1 + (0.031 - 2.32e-3 * ns + 5.67e-6 * ns * ns) * std::exp(-3.8e-6 * std::pow(h0, 6)));
  const double atLeastOne = std::max(1.0, eta);
  const double mean = 0.5 * (frequencyGain(r1, atLeastOne) + frequencyGain(r2, atLeastOne));
  // The correction for unequal ends at most doubles the mean, and H_0 is never negative.
  const double correction = 6 * (0.6 - std::log10(atLeastOne)) * std::log10(std::max(0.1, s)) * std::log10(q);
  const double gain = std::max(0.0, mean + std::min(mean, correction));
  if (eta >= 1) return gain;
  const double root2 = std::sqrt(2.0);
  const double without =
      10 * std::log10(std::pow((1 + root2 / r1) * (1 + root2 / r2), 2) * (r1 + r2) / (r1 + r2 + 2 * root2));
  return without + eta * (gain - without);
}

// Tolerance: 41.92 stands for 2000 / 47.70 = 41.929, 0.02 % of r, at most 0.01 dB a gain.
TEST(Troposcatter, HasTheFrequencyGainOfTheTechnicalNote) {
  Random random(72);
  int inefficient = 0, lopsided = 0, checked = 0;
  for (int run = 0; run < 2000; ++run) {
    const Link link = anyLink(random);
    const double distance = link.horizonDistance + random.uniform(20e3, 400e3);
    const auto scatter = troposcatter(link, distance);
    if (!scatter) continue;
    ++checked;
    const double asymmetry = std::abs(link.terrain.horizonDistances[0] - link.terrain.horizonDistances[1]);
    lopsided += asymmetry > 0.3 * distance;
    inefficient += link.angularDistance(distance) * distance < 7000;
    EXPECT_NEAR(scatter->frequencyGain, technicalNoteGain(link, distance), 0.01) << run;
  }
  EXPECT_GT(checked, 1000);
  EXPECT_GT(inefficient, 100);
  EXPECT_GT(lopsided, 50);
}

TEST(Troposcatter, IsNotDefinedForTwoAntennasLowInWavelengths) {
  // r = 2 k theta h: 0.2 at 20 MHz, 15 mrad and 16 m.
  EXPECT_FALSE(troposcatter(smoothLink(usualParameters(20), 2, 2, 100e3), 150e3));
  EXPECT_TRUE(troposcatter(smoothLink(usualParameters(20), 2, 200, 100e3), 250e3));
  EXPECT_TRUE(troposcatter(smoothLink(usualParameters(2000), 2, 2, 100e3), 150e3));
}

// High antennas, Ns = 301: no frequency gain and no refractivity term, so the loss is the note's.
TEST(Troposcatter, OfHighAntennasIsTheTechnicalNotesBasicLoss) {
  const Link link = smoothLink(usualParameters(5000), 500, 500, 400e3);
  for (const double distance : {350e3, 500e3, 800e3}) {
    const auto scatter = troposcatter(link, distance);
    ASSERT_TRUE(scatter);
    EXPECT_NEAR(scatter->frequencyGain, 0, 0.01);
    const double kilometres = distance / 1000;
    const double theta = link.angularDistance(distance);
    const double basic =
        30 * std::log10(5000) - 20 * std::log10(kilometres) + technicalNote(theta * kilometres);
    EXPECT_NEAR(freeSpaceLoss(5000, distance) + scatter->attenuation, basic, 0.1) << kilometres;
  }
}

// -0.1 (Ns - 301) exp(-theta d / 40 km) (Technical Note 101, 9.1).
TEST(Troposcatter, LosesLessThroughADenserAtmosphere) {
  Link link = smoothLink(usualParameters(5000), 500, 500, 400e3);
  const double usual = troposcatter(link, 400e3)->attenuation;
  link.environment.surfaceRefractivity = 351;
  const double product = link.angularDistance(400e3) * 400e3;
  EXPECT_NEAR(usual - troposcatter(link, 400e3)->attenuation, 5 * std::exp(-product / 40e3), 0.01);
}

TEST(Troposcatter, LosesMoreToLowAntennas) {
  double before = 0;
  for (const double height : {300.0, 100.0, 30.0, 10.0, 3.0}) {
    const auto scatter = troposcatter(smoothLink(usualParameters(200), height, height, 300e3), 300e3);
    ASSERT_TRUE(scatter);
    EXPECT_GT(scatter->frequencyGain, before) << height;
    before = scatter->frequencyGain;
  }
}

// Where the gain is large its approximation fails, and the one farther away is the better of two.
TEST(Troposcatter, KeepsALargeFrequencyGainOfAPointFartherAway) {
  const Link low = smoothLink(usualParameters(40), 10, 10, 200e3);
  const double own = troposcatter(low, 230e3)->frequencyGain;
  ASSERT_GT(own, 15);
  EXPECT_EQ(troposcatter(low, 230e3, 14.0)->frequencyGain, 14.0);
  EXPECT_EQ(troposcatter(low, 230e3, 16.0)->frequencyGain, 16.0);

  const Link high = smoothLink(usualParameters(2000), 100, 100, 300e3);
  const double small = troposcatter(high, 300e3)->frequencyGain;
  ASSERT_LT(small, 15);
  EXPECT_EQ(troposcatter(high, 300e3, 14.0)->frequencyGain, small);
  EXPECT_EQ(troposcatter(high, 300e3, 16.0)->frequencyGain, 16.0);
}

TEST(Troposcatter, IsTheSameFromEitherEnd) {
  Random random(71);
  int defined = 0;
  for (int run = 0; run < 300; ++run) {
    const Link link = anyLink(random);
    PathTerrain turned = link.terrain;
    std::swap(turned.effectiveHeights[0], turned.effectiveHeights[1]);
    std::swap(turned.structuralHeights[0], turned.structuralHeights[1]);
    std::swap(turned.horizonDistances[0], turned.horizonDistances[1]);
    std::swap(turned.horizonAngles[0], turned.horizonAngles[1]);
    const double distance = link.horizonDistance + 200e3;
    const auto there = troposcatter(link, distance);
    const auto back = troposcatter(Link(link.environment, turned), distance);
    ASSERT_EQ(there.has_value(), back.has_value()) << run;
    if (!there) continue;
    ++defined;
    EXPECT_NEAR(there->attenuation, back->attenuation, 1e-9) << run;
  }
  EXPECT_GT(defined, 100);
}

}  // namespace
}  // namespace zel::longrice
