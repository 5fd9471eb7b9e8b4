#include "export/path_models.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include "export_state.h"
#include "models/longrice/calc_itm.h"

namespace zel {
namespace {

struct RandomPath {
  std::vector<float> ground;
  PathStretch stretch;
  ModelParameters parameters;
};

// Ground of every kind, from flat to alpine, rough and smooth.
RandomPath randomPath(std::mt19937& random) {
  const auto between = [&random](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  RandomPath path;
  const auto samples = static_cast<std::size_t>(between(2, 60));
  const double relief = std::pow(10.0, between(0, 3.4));  // metres
  const double roughness = between(0, 0.3);
  double height = between(0, 500);
  for (std::size_t i = 0; i < samples; ++i) {
    height = std::clamp(height + relief * roughness * between(-1, 1), -50.0, 4000.0);
    path.ground.push_back(static_cast<float>(height));
  }
  path.stretch.elevations = path.ground;
  path.stretch.spacing = std::pow(10.0, between(-2, 0.3));
  path.stretch.spacingMetres = static_cast<float>(path.stretch.spacing * 1000);
  path.stretch.antennaHeights = {static_cast<std::int16_t>(between(1, 300)),
                                 static_cast<std::int16_t>(between(1, 60))};
  path.stretch.frequency = static_cast<float>(std::pow(10.0, between(1.31, 4.3)));
  path.parameters = {static_cast<std::int16_t>(between(0, 2)),
                     static_cast<std::int16_t>(between(1, 8)),
                     between(4, 80),
                     between(0.001, 5),
                     between(250, 400),
                     between(-2, 2),
                     between(-2, 2)};
  return path;
}

// The loss, or why there is none.
struct Outcome {
  double loss = 0;
  std::string error;
};

template <typename Run>
Outcome outcomeOf(const Run& run) {
  try {
    return {run(), {}};
  } catch (const RuntimeError& error) {
    return {0, error.description()};
  }
}

double separateLoss(const RandomPath& path, std::size_t samples) {
  const ModelParameters& model = path.parameters;
  double loss = 0;
  CalcITM(static_cast<std::int16_t>(samples), path.stretch.spacingMetres, path.ground.data(),
          path.stretch.antennaHeights[0], path.stretch.antennaHeights[1], model.polarization, model.climate,
          model.permittivity, model.conductivity, double{path.stretch.frequency}, model.refractivity,
          &model.confidence, 1, &model.reliability, 1, &loss);
  return loss;
}

TEST(PathModels, EveryPrefixOfTheLongleyRiceModelEqualsASeparateRunToTheLastBit) {
  std::mt19937 random(20261121);
  int losses = 0, failures = 0;
  for (int run = 0; run < 1000; ++run) {
    const RandomPath path = randomPath(random);
    LongleyRiceAlongPath model(path.stretch, path.parameters);
    for (std::size_t samples = 2; samples <= path.ground.size(); ++samples) {
      const Outcome along = outcomeOf([&] { return model.lossOver(samples); });
      const Outcome separate = outcomeOf([&] { return separateLoss(path, samples); });
      ASSERT_EQ(along.error, separate.error) << "run " << run << ", " << samples;
      ASSERT_EQ(along.loss, separate.loss) << "run " << run << ", " << samples;
      (separate.error.empty() ? losses : failures) += 1;
    }
  }
  EXPECT_GT(losses, 20000) << "of " << losses + failures << " runs";
}

TEST(PathModels, EveryPrefixOfThePointToPointModelEqualsASeparateCalculatorToTheLastBit) {
  std::mt19937 random(20261122);
  for (int run = 0; run < 1000; ++run) {
    const RandomPath path = randomPath(random);
    ptp::PtpParameters parameters;
    parameters.clutter.category = static_cast<ptp::ClutterCategory>(run % 2 == 0 ? 0 : 3);
    PointToPointAlongPath model(path.stretch, parameters);
    for (std::size_t samples = 2; samples <= path.ground.size(); ++samples) {
      ptp::PtpCalculator separate(parameters);
      separate.setElevations(path.ground);
      separate.setSpacing(path.stretch.spacing);
      separate.setReceiverHeight(path.stretch.antennaHeights[1]);
      separate.setSampleCount(static_cast<double>(samples));
      separate.setFrequency(double{path.stretch.frequency});
      separate.setTransmitterHeight(double{path.ground[0]} + path.stretch.antennaHeights[0]);
      const auto losses = model.lossesOver(samples);
      if (separate.clutterLoss() <= ptp::PtpCalculator::kNoLoss) {
        ASSERT_FALSE(losses.has_value());
        continue;
      }
      ASSERT_TRUE(losses.has_value()) << "run " << run << ", " << samples;
      ASSERT_EQ(losses->diffraction, separate.diffractionLoss()) << "run " << run << ", " << samples;
      ASSERT_EQ(losses->clutter, separate.clutterLoss());
    }
  }
}

TEST(PathModels, AFailureOfTheLongleyRiceModelIsToldByItsFirstRun) {
  const ProfileViewState state = test::exportableState();
  ModelParameters parameters = *state.model;
  parameters.permittivity = -1;
  LongleyRiceAlongPath model(pathStretch(state, {1, 11}), parameters);
  EXPECT_THROW(model.lossOver(2), RuntimeError);
}

TEST(PathModels, AFailureOfThePointToPointModelIsNoLoss) {
  ProfileViewState state = test::exportableState();
  state.inputs.frequency = 5;  // below the model's 10 MHz
  EXPECT_FALSE(PointToPointAlongPath(pathStretch(state, {1, 11}), {}).lossesOver(5).has_value());
}

// The clutter correction has values from 30 MHz to 3 GHz only.
TEST(PathModels, AClutterLossWithoutAValueIsNoLoss) {
  ProfileViewState state = test::exportableState();
  ptp::PtpParameters parameters;
  parameters.clutter.category = ptp::ClutterCategory::kSuburban;
  EXPECT_TRUE(PointToPointAlongPath(pathStretch(state, {1, 11}), parameters).lossesOver(5).has_value());
  state.inputs.frequency = 5000;
  EXPECT_FALSE(PointToPointAlongPath(pathStretch(state, {1, 11}), parameters).lossesOver(5).has_value());
}

TEST(PathModels, TheStretchLooksIntoTheGroundAndDoesNotCopyIt) {
  const ProfileViewState state = test::exportableState();
  const PathStretch stretch = pathStretch(state, {3, 7});
  EXPECT_EQ(stretch.elevations.data(), &state.elevation[3]);
  EXPECT_EQ(stretch.elevations.size(), 5U);
  EXPECT_EQ(stretch.spacing, 1);
  EXPECT_EQ(stretch.spacingMetres, 1000);
}

TEST(PathModels, AStretchOutsideTheGroundIsAnIndexFailureAndAnEmptyOneIsNone) {
  const ProfileViewState state = test::exportableState();
  EXPECT_THROW(pathStretch(state, {0, 5}), RuntimeError);
  EXPECT_THROW(pathStretch(state, {1, 13}), RuntimeError);
  EXPECT_TRUE(pathStretch(state, {5, 4}).elevations.empty());
}

// --- settings of the point-to-point model ---

TEST(PointToPointSettings, AreTakenAsTheyAreStored) {
  const ptp::PtpParameters parameters = pointToPointParameters({1, 30, 0.02, 3, 12.5});
  EXPECT_EQ(parameters.ground.polarization, ptp::Polarization::kVertical);
  EXPECT_EQ(parameters.ground.permittivity, 30);
  EXPECT_EQ(parameters.ground.conductivity, 0.02);
  EXPECT_EQ(parameters.clutter.category, ptp::ClutterCategory::kSuburban);
  EXPECT_EQ(parameters.clutter.height, 12.5);
  EXPECT_EQ(parameters.effectiveRadius, 8500);
}

TEST(PointToPointSettings, ThatTheModelDoesNotTakeAreRefusedBeforeAnythingIsComputed) {
  EXPECT_THROW(pointToPointParameters({0, 0.5, 0.005, 0, 0}), RuntimeError);
  EXPECT_THROW(pointToPointParameters({0, 15, -1, 0, 0}), RuntimeError);
  EXPECT_THROW(pointToPointParameters({0, 15, 0.005, 9, 0}), RuntimeError);
  EXPECT_THROW(pointToPointParameters({0, 15, 0.005, 3, -1}), RuntimeError);
}

}  // namespace
}  // namespace zel
