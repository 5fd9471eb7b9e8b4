#include "models/ptp/ptp_calculator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>

#include "grounds.h"
#include "models/ptp/clutter_loss.h"
#include "models/ptp/parameter_error.h"

namespace zel::ptp {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// In the order in which an export gives them.
void feed(PtpCalculator& calculator, std::span<const float> elevations, double spacing, double receiver,
          double frequency, double transmitterTop) {
  calculator.setElevations(elevations);
  calculator.setSpacing(spacing);
  calculator.setReceiverHeight(receiver);
  calculator.setSampleCount(static_cast<double>(elevations.size()));
  calculator.setFrequency(frequency);
  calculator.setTransmitterHeight(transmitterTop);
}

Elevations ridge() {
  Elevations ground(101, 20);
  ground[40] = 220;
  return ground;
}

PtpParameters covered(ClutterCategory category, double height = 0) {
  PtpParameters parameters;
  parameters.clutter = {category, height};
  return parameters;
}

std::string errorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const ParameterError& error) {
    return error.description();
  }
  return "no error";
}

TEST(PtpCalculator, AssumesAnEarthOf8500KmHorizontalPolarizationAndAverageLandWithoutCover) {
  const PtpParameters parameters;
  EXPECT_EQ(parameters.effectiveRadius, 8500);
  EXPECT_EQ(parameters.ground.polarization, Polarization::kHorizontal);
  EXPECT_EQ(parameters.ground.permittivity, 15);
  EXPECT_EQ(parameters.ground.conductivity, 0.005);
  EXPECT_EQ(parameters.clutter.category, ClutterCategory::kNone);
}

TEST(PtpCalculator, GivesTheLossesOfThePath) {
  const Elevations ground = ridge();
  PtpCalculator calculator;
  feed(calculator, ground, 0.2, 10, 450, 50);
  const double expected = deltaBullingtonLoss(pathOver(ground, 0.2, 30), {}, 10, 450).total;
  EXPECT_GT(expected, 20);
  EXPECT_EQ(calculator.diffractionLoss(), expected);
  EXPECT_EQ(calculator.diffractionLoss(), expected);
  EXPECT_EQ(calculator.clutterLoss(), 0);
}

TEST(PtpCalculator, TakesAsManyElevationsAsThePathHasSamples) {
  const Elevations ground = ridge();
  PtpCalculator whole;
  feed(whole, std::span(ground).first(60), 0.2, 10, 450, 50);
  PtpCalculator part;
  feed(part, ground, 0.2, 10, 450, 50);
  part.setSampleCount(60);
  EXPECT_EQ(part.diffractionLoss(), whole.diffractionLoss());
}

TEST(PtpCalculator, UsesTheGroundItWasMadeFor) {
  const Elevations ground(201, 0);
  PtpParameters sea;
  sea.ground = {Polarization::kVertical, 80, 5};
  PtpCalculator overLand;
  PtpCalculator overSea(sea);
  feed(overLand, ground, 0.5, 10, 30, 30);
  feed(overSea, ground, 0.5, 10, 30, 30);
  EXPECT_GT(overLand.diffractionLoss(), overSea.diffractionLoss() + 10);
}

TEST(PtpCalculator, SharesGroundWithResultsEqualToTheLastBit) {
  constexpr std::uint64_t kSeed = 91;
  RecordProperty("seed", std::to_string(kSeed));
  Random random(kSeed);
  for (int run = 0; run < 1000; ++run) {
    const Elevations ground = anyGround(random, 2 + random.below(60));
    const PtpParameters parameters =
        covered(static_cast<ClutterCategory>(random.below(6)), random.below(2) == 0 ? 0 : 12);
    const double spacing = random.decades(0.01, 1);
    const double receiver = std::round(random.decades(1, 50));
    const double frequency = random.decades(20, 20000);
    const double top = static_cast<double>(ground.front()) + std::round(random.decades(1, 300));
    SharedPtpPath shared;
    for (std::size_t count = 2; count <= ground.size(); ++count) {
      PtpCalculator sharing(parameters, shared);
      PtpCalculator alone(parameters);
      for (PtpCalculator* calculator : {&sharing, &alone})
        feed(*calculator, std::span(ground).first(count), spacing, receiver, frequency, top);
      ASSERT_EQ(sharing.diffractionLoss(), alone.diffractionLoss()) << "seed " << kSeed << ", run " << run;
      ASSERT_EQ(sharing.clutterLoss(), alone.clutterLoss()) << "seed " << kSeed << ", run " << run;
    }
  }
}

TEST(PtpCalculator, ComputesTheDiffractionFromTheTopOfTheCover) {
  const Elevations ground = ridge();
  PtpCalculator inTown(covered(ClutterCategory::kDenseUrban));
  feed(inTown, ground, 0.2, 1.5, 450, 20 + 5);
  PtpCalculator onRoofs;
  feed(onRoofs, ground, 0.2, 20, 450, 20 + 20);
  EXPECT_EQ(inTown.diffractionLoss(), onRoofs.diffractionLoss());
}

TEST(PtpCalculator, LosesInTheCoverAtBothEnds) {
  const Elevations ground = ridge();
  const Clutter suburban{ClutterCategory::kSuburban};
  PtpCalculator calculator(covered(ClutterCategory::kSuburban));
  feed(calculator, ground, 0.2, 1.5, 450, 20 + 30);
  EXPECT_NEAR(calculator.clutterLoss(), *clutterLoss(suburban, 1.5, 450), 1e-12);
  calculator.setTransmitterHeight(20 + 4);
  EXPECT_NEAR(calculator.clutterLoss(), *clutterLoss(suburban, 1.5, 450) + *clutterLoss(suburban, 4, 450),
              1e-12);
  calculator.setReceiverHeight(10);
  EXPECT_NEAR(calculator.clutterLoss(), *clutterLoss(suburban, 4, 450), 1e-12);
}

TEST(PtpCalculator, HasTheSameLossesInBothDirectionsAlsoInCover) {
  Elevations ground = ridge();
  PtpCalculator there(covered(ClutterCategory::kUrbanOrForest));
  feed(there, ground, 0.2, 1.5, 450, 20 + 6);
  Elevations reversed(ground.rbegin(), ground.rend());
  PtpCalculator back(covered(ClutterCategory::kUrbanOrForest));
  feed(back, reversed, 0.2, 6, 450, 20 + 1.5);
  EXPECT_NEAR(there.diffractionLoss(), back.diffractionLoss(), 1e-6);
  EXPECT_NEAR(there.clutterLoss(), back.clutterLoss(), 1e-9);
}

TEST(PtpCalculator, SaysMinus999WhereTheClutterLossHasNoValue) {
  const Elevations ground = ridge();
  PtpCalculator calculator(covered(ClutterCategory::kSuburban));
  for (const double frequency : {20.0, 29.9, 3000.1, 20000.0}) {
    feed(calculator, ground, 0.2, 1.5, frequency, 50);
    EXPECT_EQ(calculator.clutterLoss(), -999) << frequency;
    // The diffraction is then between the antennas as they stand.
    PtpCalculator bare;
    feed(bare, ground, 0.2, 1.5, frequency, 50);
    EXPECT_EQ(calculator.diffractionLoss(), bare.diffractionLoss()) << frequency;
  }
  PtpCalculator open(covered(ClutterCategory::kOpenOrRural));
  feed(open, ground, 0.2, 0, 450, 50);
  EXPECT_EQ(open.clutterLoss(), -999);
}

TEST(PtpCalculator, HasAnAnswerForTwoSamplesAndForAntennasOnTheGround) {
  const Elevations ground{100, 100};
  PtpCalculator calculator;
  feed(calculator, ground, 0.05, 10, 450, 130);
  EXPECT_EQ(calculator.diffractionLoss(), 0);
  feed(calculator, ground, 0.05, 0, 450, 100);
  EXPECT_TRUE(std::isfinite(calculator.diffractionLoss()));
  EXPECT_GE(calculator.diffractionLoss(), 0);
}

TEST(PtpCalculator, RefusesAWrongValueAtOnceAndKeepsTheOneBefore) {
  const Elevations ground = ridge();
  PtpCalculator calculator;
  feed(calculator, ground, 0.2, 10, 450, 50);
  const double before = calculator.diffractionLoss();
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double wrong : {kNan, infinite, -infinite, -1.0}) {
    EXPECT_THROW(calculator.setSpacing(wrong), ParameterError) << wrong;
    EXPECT_THROW(calculator.setReceiverHeight(wrong), ParameterError) << wrong;
    EXPECT_THROW(calculator.setSampleCount(wrong), ParameterError) << wrong;
    EXPECT_THROW(calculator.setFrequency(wrong), ParameterError) << wrong;
  }
  EXPECT_THROW(calculator.setTransmitterHeight(kNan), ParameterError);
  EXPECT_THROW(calculator.setTransmitterHeight(infinite), ParameterError);
  EXPECT_THROW(calculator.setSpacing(0), ParameterError);
  EXPECT_THROW(calculator.setSampleCount(1), ParameterError);
  EXPECT_THROW(calculator.setSampleCount(2.5), ParameterError);
  EXPECT_EQ(calculator.diffractionLoss(), before);
}

TEST(PtpCalculator, NamesWhatIsWrong) {
  const Elevations ground = ridge();
  PtpCalculator calculator;
  EXPECT_EQ(errorOf([&] { calculator.setSpacing(0); }), "the spacing is 0 km; it must be 1E-06 to 21000 km");
  EXPECT_EQ(errorOf([&] { calculator.setFrequency(kNan); }),
            "the frequency is not a number; it must be 10 to 1000000 MHz");
  EXPECT_EQ(errorOf([&] { calculator.setSampleCount(1); }),
            "the number of samples is 1; it must be a whole number, 2 or more");
  EXPECT_EQ(errorOf([&] { calculator.diffractionLoss(); }), "the spacing has not been set");
  feed(calculator, ground, 0.2, 10, 450, 19.5);
  EXPECT_EQ(errorOf([&] { calculator.diffractionLoss(); }),
            "the transmitter's antenna stands 19.5 m above sea level, below its ground at 20 m");
  calculator.setTransmitterHeight(50);
  calculator.setSampleCount(102);
  EXPECT_EQ(errorOf([&] { calculator.diffractionLoss(); }),
            "there are 101 elevations, and the path has 102 samples");
}

TEST(PtpCalculator, RefusesElevationsThatAreNoHeights) {
  for (const float wrong : {std::numeric_limits<float>::quiet_NaN(), -9999.0F}) {
    for (const std::size_t place : {0U, 50U, 100U}) {
      Elevations ground = ridge();
      ground[place] = wrong;
      PtpCalculator calculator;
      feed(calculator, ground, 0.2, 10, 450, 50);
      EXPECT_NE(errorOf([&] {
                  calculator.diffractionLoss();
                }).find("the elevation of sample " + std::to_string(place + 1)),
                std::string::npos);
    }
  }
}

TEST(PtpCalculator, RefusesParametersOfNoGroundAndOfNoCover) {
  const Elevations ground = ridge();
  const auto refused = [&ground](const PtpParameters& parameters) {
    PtpCalculator calculator(parameters);
    feed(calculator, ground, 0.2, 10, 450, 50);
    return errorOf([&] { calculator.diffractionLoss(); }) != "no error";
  };
  PtpParameters parameters;
  EXPECT_FALSE(refused(parameters));
  parameters.ground = {Polarization::kHorizontal, 1, 0};
  EXPECT_TRUE(refused(parameters));
  EXPECT_TRUE(refused(covered(static_cast<ClutterCategory>(99))));
  parameters = {};
  parameters.effectiveRadius = 0;
  EXPECT_TRUE(refused(parameters));
}

}  // namespace
}  // namespace zel::ptp
