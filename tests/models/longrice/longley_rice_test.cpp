#include "models/longrice/longley_rice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "links.h"
#include "models/longrice/normal_deviate.h"
#include "models/longrice/parameter_error.h"
#include "published_example.h"

namespace zel::longrice {
namespace {

double median(const Prediction& prediction) { return prediction.loss(0, 0); }

TEST(FreeSpaceLoss, IsThatOfTheWavelengthAndTheDistance) {
  // (4 pi d / lambda)^2; 32.45 is 32.4478 rounded.
  EXPECT_NEAR(freeSpaceLoss(100, 10e3), 92.45, 1e-12);
  for (const double distance : {1e3, 77.8e3, 500e3})
    EXPECT_NEAR(freeSpaceLoss(450, distance),
                20 * std::log10(4 * 3.14159265358979 * distance * 450e6 / 299792458), 0.003);
  EXPECT_NEAR(freeSpaceLoss(900, 2e4) - freeSpaceLoss(900, 1e4), 20 * std::log10(2), 1e-12);
}

Prediction publishedPrediction() {
  return predicted(published::parameters(), published::ground(), published::spacing(),
                   published::kTransmitterHeight, published::kReceiverHeight);
}

// The table is rounded to 0.1 dB; besides, 0.05 dB for the constants' roundings in the publication.
TEST(PublishedExample, HasEveryLossOfItsTable) {
  const Prediction prediction = publishedPrediction();
  for (std::size_t r = 0; r < published::kReliability.size(); ++r)
    for (std::size_t c = 0; c < published::kConfidence.size(); ++c)
      EXPECT_NEAR(prediction.loss(normalDeviate(published::kReliability[r]),
                                  normalDeviate(published::kConfidence[c])),
                  published::kLoss[r][c], 0.1)
          << published::kReliability[r] << " " << published::kConfidence[c];
}

TEST(PublishedExample, HasItsIntermediates) {
  const Prediction prediction = publishedPrediction();
  EXPECT_NEAR(prediction.freeSpace(), published::kFreeSpaceLoss, 0.05);
  EXPECT_NEAR(prediction.terrain().deltaH, published::kDeltaH, 0.5);
  for (std::size_t j = 0; j < 2; ++j)
    EXPECT_NEAR(prediction.terrain().effectiveHeights[j], published::kEffectiveHeights[j], 0.05);
  EXPECT_EQ(prediction.terrain().mode, PathMode::kDoubleHorizon);
  // The path is obstructed, and yet shorter than the smooth-earth horizons of its effective heights, 82.7 km:
  // the formula is that of the line of sight's range, in which diffraction dominates here.
  EXPECT_EQ(prediction.reference().method, PropagationMethod::kLineOfSight);
  EXPECT_NEAR(prediction.link().smoothHorizonDistance, 82.7e3, 0.2e3);
  EXPECT_TRUE(prediction.warnings().empty());
  EXPECT_TRUE(prediction.warningTexts().empty());
}

TEST(Prediction, IsFreeSpacePlusTheQuantileOfTheReference) {
  Random random(101);
  for (int run = 0; run < 100; ++run) {
    const Parameters parameters = anyParameters(random);
    const Prediction prediction = predicted(parameters, anyGround(random, 100), 300, 30, 10);
    const double expected = prediction.freeSpace() +
                            prediction.variability().attenuation(prediction.reference().attenuation, 1, -1);
    EXPECT_EQ(prediction.loss(1, -1), expected);
    EXPECT_EQ(prediction.freeSpace(), freeSpaceLoss(parameters.frequency, prediction.terrain().distance));
    EXPECT_EQ(prediction.link().terrain.deltaH, prediction.terrain().deltaH);
  }
}

// The tenths of a horizon's distance that bound the ground that counts then fall on samples, and rounding
// decides whether that sample counts.
bool hasTenthsOnSamples(const Model& model, const Ground& ground, double spacing, double h1, double h2) {
  HorizonSearch search(spacing, model.environment().effectiveCurvature, h1);
  search.append(ground);
  const Horizons horizons = search.horizons(h2);
  const std::size_t last = ground.size() - 1;
  return horizons.transmitter.sample % 10 == 0 || (last - horizons.receiver.sample) % 10 == 0;
}

// Turned around, every path loses the same: the model has no direction. Only rounding is left. Where the
// highest is a straight stretch of ground the horizon is its sample nearer to the transmitter, which does
// have a direction; the random walks have no such stretch.
TEST(Prediction, IsTheSameInBothDirections) {
  Random random(102);
  std::array<int, 3> modes{};
  for (int run = 0; run < 2000; ++run) {
    const Parameters parameters = anyParameters(random);
    Ground ground = randomWalk(random, 2 + random.below(300), random.decades(0.5, 60));
    const double spacing = random.decades(20, 2000);
    const double h1 = random.decades(1, 300), h2 = random.decades(1, 300);
    if (hasTenthsOnSamples(Model(parameters), ground, spacing, h1, h2)) continue;
    const Prediction there = predicted(parameters, ground, spacing, h1, h2);
    std::reverse(ground.begin(), ground.end());
    const Prediction back = predicted(parameters, ground, spacing, h2, h1);
    ++modes[static_cast<std::size_t>(there.terrain().mode)];
    ASSERT_NEAR(there.loss(1, -1), back.loss(1, -1), 1e-6) << run;
    ASSERT_EQ(there.reference().method, back.reference().method) << run;
  }
  EXPECT_GT(*std::min_element(modes.begin(), modes.end()), 20);
}

TEST(Prediction, DoesNotMindTheHeightAboveSeaLevelAtGivenRefractivity) {
  Random random(103);
  for (int run = 0; run < 100; ++run) {
    Ground ground = randomWalk(random, 200, 15);
    const double low = median(predicted(usualParameters(), ground, 150, 20, 10));
    for (double& elevation : ground) elevation += 2000;
    EXPECT_NEAR(median(predicted(usualParameters(), ground, 150, 20, 10)), low, 1e-6);
  }
}

// Over the smooth earth, from sight through diffraction to scatter. Fractions of the median's curves may let
// a level rise with distance, so this holds for the reference loss.
TEST(Prediction, OverTheSmoothEarthLosesMoreWithDistanceAndWithLowerAntennas) {
  for (const double frequency : {40.0, 450.0, 3000.0}) {
    std::vector<double> above;
    for (const double height : {300.0, 100.0, 30.0, 10.0, 3.0}) {
      std::vector<double> losses;
      for (std::size_t samples = 40; samples <= 4000; samples += 40) {
        const Prediction prediction =
            predicted(usualParameters(frequency), Ground(samples, 0.0), 100, height, 10);
        losses.push_back(prediction.freeSpace() + prediction.reference().attenuation);
        const double before = losses.size() > 1 ? losses[losses.size() - 2] : 0;
        ASSERT_GT(losses.back(), before) << frequency << " " << height << " " << samples;
      }
      for (std::size_t i = 0; i < above.size(); ++i)
        ASSERT_GE(losses[i], above[i] - 0.5) << frequency << " " << height << " " << i;
      above = losses;
    }
  }
}

TEST(Prediction, OverSeaFavoursVerticalPolarizationAtLowFrequencies) {
  for (const double frequency : {20.0, 40.0, 80.0})
    for (const std::size_t samples : {200U, 600U, 1000U}) {
      const Ground sea(samples, 0.0);
      const double vertical =
          median(predicted(overSea(frequency, Polarization::kVertical), sea, 100, 10, 10));
      EXPECT_LT(vertical, median(predicted(overSea(frequency), sea, 100, 10, 10)) - 3) << frequency;
    }
  // At high frequencies the sea is the same mirror to both.
  const Ground sea(600, 0.0);
  EXPECT_NEAR(median(predicted(overSea(10000, Polarization::kVertical), sea, 100, 10, 10)),
              median(predicted(overSea(10000), sea, 100, 10, 10)), 3);
}

// A ridge on flat ground, from where it stops the ray on. Held for a ridge in the middle half of the path,
// whose rise changes neither antenna's own ground; a ridge within a few hundred metres of an antenna becomes
// that ground, and may lower the loss.
TEST(Prediction, LosesMoreTheHigherARidgeStands) {
  for (const double frequency : {100.0, 900.0})
    for (const std::size_t place : {60U, 100U, 140U}) {
      double before = 0;
      for (int height = 60; height <= 600; height += 20) {
        Ground ground(201, 100.0);
        ground[place] += height;
        const Prediction prediction = predicted(usualParameters(frequency), ground, 150, 20, 20);
        ASSERT_EQ(prediction.terrain().mode, PathMode::kSingleHorizon);
        EXPECT_GE(median(prediction), before) << frequency << " " << place << " " << height;
        before = median(prediction);
      }
    }
}

TEST(Prediction, CoversEveryMethodAndModeAndClimate) {
  Random random(104);
  std::array<std::array<int, 3>, 3> seen{};
  for (int run = 0; run < 3000; ++run) {
    const Parameters parameters = anyParameters(random);
    const Ground ground = anyGround(random, 3 + random.below(100));
    const Prediction prediction = predicted(parameters, ground, random.decades(50, 8000), 20, 20);
    for (const double reliability : {-2.3, 0.0, 2.3}) {
      const double loss = prediction.loss(reliability, 0);
      ASSERT_TRUE(std::isfinite(loss));
      ASSERT_GT(loss, prediction.freeSpace() - 20);
    }
    ++seen[static_cast<std::size_t>(prediction.reference().method)]
          [static_cast<std::size_t>(prediction.terrain().mode)];
  }
  for (std::size_t method = 0; method < 3; ++method) {
    EXPECT_GT(seen[method][2], 0) << method;
  }
  EXPECT_GT(seen[0][0], 0);
  EXPECT_GT(seen[0][1], 0);
  EXPECT_GT(seen[1][1], 0);
}

TEST(Prediction, RefusesADeviateThatIsNone) {
  const Prediction prediction = publishedPrediction();
  for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity(), 40.1, -40.1}) {
    try {
      prediction.loss(bad, 0);
      ADD_FAILURE();
    } catch (const ParameterError& error) {
      EXPECT_EQ(error.parameter(), Parameter::kReliability);
    }
    try {
      prediction.loss(0, bad);
      ADD_FAILURE();
    } catch (const ParameterError& error) {
      EXPECT_EQ(error.parameter(), Parameter::kConfidence);
    }
  }
  EXPECT_TRUE(std::isfinite(prediction.loss(40, -40)));
}

TEST(Prediction, GivesTheLossesOfAllPairsAsThoseOfEachPairAloneToTheLastBit) {
  std::vector<double> deviates;
  for (int percent = 1; percent <= 99; ++percent) deviates.push_back(normalDeviate(percent / 100.0));
  Random random(55);
  for (int run = 0; run < 60; ++run) {
    const Parameters parameters = anyParameters(random);
    const Prediction prediction =
        predicted(parameters, anyGround(random, 3 + random.below(100)), random.decades(5, 2000),
                  random.decades(1, 500), random.decades(1, 500));
    const std::vector<double> losses = prediction.losses(deviates, deviates);
    ASSERT_EQ(losses.size(), deviates.size() * deviates.size());
    for (std::size_t r = 0; r < deviates.size(); ++r)
      for (std::size_t c = 0; c < deviates.size(); ++c)
        ASSERT_EQ(losses[c + r * deviates.size()], prediction.loss(deviates[r], deviates[c]))
            << "run " << run << ", reliability " << deviates[r] << ", confidence " << deviates[c];
  }
}

TEST(Prediction, RefusesADeviateThatIsNoneAmongMany) {
  const Prediction prediction = publishedPrediction();
  const std::vector<double> good{-1, 0, 1}, bad{0, std::numeric_limits<double>::quiet_NaN()};
  EXPECT_THROW(static_cast<void>(prediction.losses(bad, good)), ParameterError);
  EXPECT_THROW(static_cast<void>(prediction.losses(good, bad)), ParameterError);
  EXPECT_TRUE(prediction.losses(good, {}).empty());
}

TEST(Prediction, TellsItsWarningsInWords) {
  Parameters parameters = usualParameters(15);
  parameters.climate = 0;
  const Prediction prediction = predicted(parameters, Ground(200, 0.0), 100, 30, 10);
  EXPECT_TRUE(prediction.warnings().has(Warning::kFrequencyOutOfRange));
  EXPECT_TRUE(prediction.warnings().has(Warning::kClimateUnknown));
  ASSERT_EQ(prediction.warningTexts().size(), 2U);
  EXPECT_NE(prediction.warningTexts()[1].find("climate code 0"), std::string::npos);
}

TEST(Model, RefusesItsParametersBeforeAnyPath) {
  Parameters parameters = usualParameters();
  parameters.surfaceRefractivity = 541;
  EXPECT_THROW(Model{parameters}, ParameterError);
}

}  // namespace
}  // namespace zel::longrice
