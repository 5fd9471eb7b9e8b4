#include "models/ptp/spherical_earth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "grounds.h"
#include "models/ptp/parameter_error.h"

namespace zel::ptp {
namespace {

constexpr double kRadius = 8500;  // km
constexpr Ground kSea{Polarization::kVertical, 80, 5};

double horizonDistance(double first, double second) {
  return std::sqrt(0.002 * kRadius) * (std::sqrt(first) + std::sqrt(second));
}

TEST(SphericalEarth, IsTheResidueSeriesBeyondTheHorizon) {
  // Ten terms of the residue series for a perfectly conducting sphere, evaluated apart
  // (independent/diffraction_check.py); the first term promises 2 dB.
  struct Case {
    double frequency, first, second, times, loss;
  };
  const std::vector<Case> cases = {{100, 100, 10, 2.5, 60.73},  {100, 50, 200, 1.5, 36.60},
                                   {450, 10, 10, 2.5, 53.26},   {450, 100, 10, 1.5, 39.09},
                                   {2000, 10, 10, 2.5, 62.31},  {2000, 100, 10, 1.5, 46.04},
                                   {2000, 50, 200, 1.2, 32.55}, {2000, 50, 200, 2.5, 161.93}};
  for (const Case& given : cases) {
    const double distance = given.times * horizonDistance(given.first, given.second);
    EXPECT_NEAR(SphericalEarth({}, given.frequency, kRadius).loss(distance, given.first, given.second),
                given.loss, 0.6)
        << given.frequency << " MHz, " << distance << " km";
  }
}

TEST(SphericalEarth, LosesNothingWhereTheRayIsClear) {
  // 10 km with antennas of 100 m: 98.5 m of clearance half way, where 15 m are required at 1 GHz.
  EXPECT_EQ(SphericalEarth({}, 1000, kRadius).loss(10, 100, 100), 0);
  EXPECT_EQ(SphericalEarth(kSea, 1000, kRadius).loss(0.001, 2, 2), 0);
}

TEST(SphericalEarth, LosesWhatTheFirstTermSaysFromTheHorizonOn) {
  const SphericalEarth earth({}, 450, kRadius);
  const double horizon = horizonDistance(30, 10);
  EXPECT_EQ(earth.loss(1.5 * horizon, 30, 10), earth.firstTermLoss(1.5 * horizon, 30, 10, kRadius));
  EXPECT_NEAR(earth.loss(horizon * (1 - 1e-9), 30, 10), earth.loss(horizon * (1 + 1e-9), 30, 10), 1e-3);
}

TEST(SphericalEarth, LosesWithinSightWhatTheClearanceLeavesOfAMarginalPathsLoss) {
  // dB; section 3.2 evaluated apart (independent/diffraction.py).
  EXPECT_NEAR(SphericalEarth({}, 450, kRadius).loss(15, 10, 30), 9.935, 0.002);
  EXPECT_NEAR(SphericalEarth({}, 450, kRadius).loss(30, 10, 30), 20.752, 0.002);
  EXPECT_NEAR(SphericalEarth({}, 100, kRadius).loss(20, 50, 20), 14.273, 0.002);
}

TEST(SphericalEarth, GoesOverFromNoLossToTheMarginalOneWithoutAStep) {
  // 450 MHz, antennas of 30 and 10 m; the loss rises with the distance, by less than a decibel in 100 m.
  const SphericalEarth earth({}, 450, kRadius);
  double before = earth.loss(0.1, 30, 10);
  EXPECT_EQ(before, 0);
  for (int i = 2; i < 800; ++i) {
    const double distance = 0.1 * i;
    const double loss = earth.loss(distance, 30, 10);
    ASSERT_GE(loss, before) << distance;
    ASSERT_LT(loss, before + 1) << distance;
    before = loss;
  }
  EXPECT_GT(before, 50);
}

TEST(SphericalEarth, TheCurvesOfDistanceAndHeightMeetWhereOneTakesOverFromTheOther) {
  // The printed curves of distance meet to 0.003 dB at X = 1.6, those of height to 0.02 dB at B = 2. Steps of
  // a hundred thousandth change them by less than 0.001 dB.
  const SphericalEarth earth({}, 450, kRadius);
  const auto greatestStep = [](double from, const auto& loss) {
    double before = loss(from), greatest = 0;
    for (double at = from; at < 4 * from; at *= 1.00001) {
      const double now = loss(at);
      greatest = std::max(greatest, std::abs(now - before));
      before = now;
    }
    return greatest;
  };
  // X is 1.6 at 39.8 km, B is 2 at 72.6 m.
  EXPECT_LT(greatestStep(20, [&](double km) { return earth.firstTermLoss(km, 30, 10, kRadius); }), 0.004);
  EXPECT_LT(greatestStep(30, [&](double metres) { return earth.firstTermLoss(100, metres, 10, kRadius); }),
            0.021);
}

TEST(SphericalEarth, IsTheSameInBothDirections) {
  Random random(31);
  for (int run = 0; run < 1000; ++run) {
    const SphericalEarth earth(run % 2 == 0 ? Ground{} : kSea, random.decades(10, 20000), kRadius);
    const double distance = random.decades(0.1, 500);
    const double first = random.decades(1, 1000);
    const double second = random.decades(1, 1000);
    ASSERT_NEAR(earth.loss(distance, first, second), earth.loss(distance, second, first), 1e-6) << run;
  }
}

TEST(SphericalEarth, CarriesVerticalPolarizationFurtherOverSea) {
  const Ground horizontal{Polarization::kHorizontal, 80, 5};
  EXPECT_GT(SphericalEarth(horizontal, 30, kRadius).loss(100, 10, 10),
            SphericalEarth(kSea, 30, kRadius).loss(100, 10, 10) + 20);
}

TEST(SphericalEarth, HasTheAdmittanceOfItsGround) {
  // By hand: 0.36 (8500 * 100)^(-1/3) = 0.0038003; land at 100 MHz: ((15 - 1)^2 + 0.9^2)^(-1/4) = 0.26698,
  // (15^2 + 0.9^2)^(1/2) = 15.027.
  EXPECT_NEAR(SphericalEarth({}, 100, kRadius).surfaceAdmittance(kRadius), 0.0038003 * 0.26698, 1e-6);
  const Ground vertical{Polarization::kVertical, 15, 0.005};
  EXPECT_NEAR(SphericalEarth(vertical, 100, kRadius).surfaceAdmittance(kRadius), 0.0038003 * 0.26698 * 15.027,
              1e-5);
}

TEST(SphericalEarth, TakesAnAntennaOnTheGroundForOneWithTheGainThatTheGroundLeaves) {
  const SphericalEarth earth({}, 450, kRadius);
  const double higher = earth.firstTermLoss(50, 10, 10, kRadius);
  EXPECT_TRUE(std::isfinite(earth.loss(50, 0, 0)));
  EXPECT_GT(earth.loss(50, 0, 10), higher);
  EXPECT_NEAR(earth.firstTermLoss(50, 0, 0, kRadius) - earth.firstTermLoss(50, 0, 10, kRadius),
              earth.firstTermLoss(50, 0, 10, kRadius) - higher, 1e-9);
  EXPECT_NEAR(earth.firstTermLoss(50, 0, 10, kRadius), earth.firstTermLoss(50, 1e-9, 10, kRadius), 1e-9);
}

TEST(SphericalEarth, HasALossForAnAntennaOnTheGroundInSight) {
  const SphericalEarth earth({}, 450, kRadius);
  for (const double distance : {0.01, 1.0, 10.0, 20.0}) {
    const double loss = earth.loss(distance, 0, 30);
    EXPECT_TRUE(std::isfinite(loss)) << distance;
    EXPECT_GE(loss, 0) << distance;
    EXPECT_NEAR(loss, earth.loss(distance, 30, 0), 0.01) << distance;
  }
}

TEST(SphericalEarth, StaysFiniteWhereAnAntennaOnTheGroundIsJustInSight) {
  // The lowest place of the ray comes from an arc cosine, whose argument is 1 here, or 1 and the rounding.
  const SphericalEarth earth({}, 450, kRadius);
  for (int i = 3; i < 1350; ++i) {
    const double height = 0.37 * i;
    double distance = horizonDistance(0, height);
    for (int step = 0; step < 20; ++step) {
      distance = std::nextafter(distance, 0);
      ASSERT_TRUE(std::isfinite(earth.loss(distance, 0, height))) << height << ", " << step;
      ASSERT_TRUE(std::isfinite(earth.loss(distance, height, 0))) << height << ", " << step;
    }
  }
}

TEST(SphericalEarth, RefusesAGroundThatIsLikeEmptySpace) {
  EXPECT_THROW(SphericalEarth({Polarization::kHorizontal, 1, 0}, 100, kRadius), ParameterError);
  EXPECT_TRUE(
      std::isfinite(SphericalEarth({Polarization::kHorizontal, 1, 1e-6}, 100, kRadius).loss(100, 10, 10)));
}

}  // namespace
}  // namespace zel::ptp
