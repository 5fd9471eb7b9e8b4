#include "models/ptp/delta_bullington.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "grounds.h"
#include "models/ptp/bullington.h"
#include "models/ptp/knife_edge.h"
#include "models/ptp/parameter_error.h"
#include "models/ptp/spherical_earth.h"

namespace zel::ptp {
namespace {

DiffractionLoss lossOver(const Elevations& ground, double spacing, double transmitter, double receiver,
                         double frequency, const Ground& constants = {}) {
  return deltaBullingtonLoss(pathOver(ground, spacing, transmitter), constants, receiver, frequency);
}

Elevations withEdge(std::size_t samples, std::size_t place, float height) {
  Elevations ground(samples, 0);
  ground[place] = height;
  return ground;
}

TEST(DeltaBullington, IsTheKnifeEdgeAndItsAddedTermOverASingleEdge) {
  // 20 km, a ridge of 100 m half way, antennas of 50 m, 300 MHz. The effective earth of 8500 km bulges by
  // 500 x 10 x 10 / 8500 m there; nu from the recommendation's definition.
  const double wavelength = 299.792458 / 300;
  const double height = 100 + 500.0 * 10 * 10 / 8500 - 50;
  const double nu = height * std::sqrt(2.0 / wavelength * (1.0 / 10000 + 1.0 / 10000));
  const double edge = knifeEdgeLoss(nu);
  const DiffractionLoss loss = lossOver(withEdge(201, 100, 100), 0.1, 50, 50, 300);
  EXPECT_NEAR(loss.bullington, edge + (1 - std::exp(-edge / 6)) * (10 + 0.02 * 20), 1e-6);
  // Over so high an edge the spherical earth, lowered under it, adds nothing.
  EXPECT_EQ(loss.total, loss.bullington);
}

TEST(DeltaBullington, CrossesTheRaysToTwoEdgesOverBoth) {
  // Two equal ridges at 5 and 15 km of 20: the rays from antennas on the ground cross half way, twice as
  // high, on an earth that is next to flat.
  Elevations ground = withEdge(21, 5, 100);
  ground[15] = 100;
  GrowingPtpPath path(1, 1e7, 0);
  path.append(ground);
  const double nu = path.bullingtonNu(0, 1);
  EXPECT_NEAR(nu, 200 * knifeEdgeScale(20, 10, 10, 1), 0.01);
}

TEST(DeltaBullington, LosesNothingOnAClearPath) {
  // 10 km over a valley 100 m deep.
  Elevations valley(101, 0);
  valley.front() = valley.back() = 100;
  for (const double frequency : {100.0, 1000.0, 10000.0}) {
    const DiffractionLoss loss = lossOver(valley, 0.1, 30, 30, frequency);
    EXPECT_EQ(loss.bullington, 0) << frequency;
    EXPECT_EQ(loss.total, 0) << frequency;
  }
  EXPECT_EQ(lossOver(Elevations(11, 0), 0.01, 30, 10, 1000).total, 0);  // 100 m
}

TEST(DeltaBullington, DoesNotTakeTheGroundUnderAnAntennaForAnObstacle) {
  // Antennas on the rims of a valley see each other along a ray that ends on the ground.
  Elevations valley(101, 0);
  valley.front() = valley.back() = 100;
  EXPECT_EQ(lossOver(valley, 0.1, 30, 0, 1000).bullington, 0);
  EXPECT_EQ(lossOver(valley, 0.1, 0, 30, 1000).bullington, 0);
  EXPECT_EQ(lossOver(valley, 0.1, 0, 0, 1000).bullington, 0);
}

TEST(DeltaBullington, IsTheSphericalEarthOverFlatGround) {
  // 1,000 samples over the sea: the Bullington part of the path is that of its smooth earth and falls out.
  const Ground sea{Polarization::kVertical, 80, 5};
  for (const double distance : {20.0, 50.0, 100.0, 300.0}) {
    const DiffractionLoss loss = lossOver(Elevations(1001, 0), distance / 1000, 30, 10, 450, sea);
    EXPECT_NEAR(loss.bullington, loss.smoothBullington, 1e-9) << distance;
    EXPECT_NEAR(loss.total, std::max(loss.bullington, SphericalEarth(sea, 450, 8500).loss(distance, 30, 10)),
                1e-9)
        << distance;
    EXPECT_GT(loss.total, 0) << distance;
  }
}

TEST(DeltaBullington, AddsWhatTheSphericalEarthHasMore) {
  Random random(71);
  for (int run = 0; run < 500; ++run) {
    const DiffractionLoss loss =
        lossOver(anyGround(random, 2 + random.below(300)), random.decades(0.01, 1), random.decades(1, 300),
                 random.decades(1, 100), random.decades(20, 20000));
    ASSERT_EQ(loss.total, loss.bullington + std::max(loss.spherical - loss.smoothBullington, 0.0)) << run;
    ASSERT_GE(loss.total, 0) << run;
  }
}

TEST(DeltaBullington, IsTheSameInBothDirections) {
  constexpr std::uint64_t kSeed = 72;
  RecordProperty("seed", std::to_string(kSeed));
  Random random(kSeed);
  for (int run = 0; run < 1000; ++run) {
    Elevations ground = anyGround(random, 2 + random.below(300));
    const double spacing = random.decades(0.01, 1);
    const double transmitter = random.decades(1, 300);
    const double receiver = random.decades(1, 100);
    const double frequency = random.decades(20, 20000);
    const double there = lossOver(ground, spacing, transmitter, receiver, frequency).total;
    std::reverse(ground.begin(), ground.end());
    const double back = lossOver(ground, spacing, receiver, transmitter, frequency).total;
    ASSERT_NEAR(there, back, 1e-4) << "seed " << kSeed << ", run " << run;  // dB
  }
}

TEST(DeltaBullington, LosesMoreInItsBullingtonPartTheHigherAnObstacleIs) {
  Random random(73);
  for (int run = 0; run < 200; ++run) {
    Elevations ground = anyGround(random, 20 + random.below(200));
    const std::size_t place = 1 + random.below(ground.size() - 2);
    const double spacing = random.decades(0.01, 1);
    const double frequency = random.decades(20, 20000);
    double before = 0;
    for (int step = 0; step < 60; ++step) {
      const double loss = lossOver(ground, spacing, 30, 10, frequency).bullington;
      ASSERT_GE(loss, before - 1e-9) << run << ", step " << step;
      before = loss;
      ground[place] += 50;
    }
    ASSERT_GT(before, 0) << run;
  }
}

TEST(DeltaBullington, HasAnAnswerForTwoSamples) {
  // Nothing in between: what is left is the spherical earth over the straight line between the ends.
  const DiffractionLoss loss = lossOver({100, 300}, 60, 30, 10, 450);
  EXPECT_EQ(loss.bullington, 0);
  EXPECT_EQ(loss.smoothBullington, 0);
  EXPECT_NEAR(loss.total, SphericalEarth({}, 450, 8500).loss(60, 30, 10), 1e-9);
}

TEST(DeltaBullington, IsFiniteAtTheEndsOfEveryLimit) {
  for (const double frequency : {10.0, 1e6})
    for (const double spacing : {1e-6, 2.1e4 / 4})
      for (const double antenna : {0.0, 1e5})
        for (const float height : {-9000.0F, 30000.0F})
          for (const Ground& constants : {Ground{Polarization::kHorizontal, 1, 1e-9},
                                          Ground{Polarization::kVertical, 1e5, 1e9}, Ground{}}) {
            const Elevations ground{0, height, 5, height, 0};
            const double loss = lossOver(ground, spacing, antenna, antenna, frequency, constants).total;
            EXPECT_TRUE(std::isfinite(loss) && loss >= 0) << frequency << ", " << spacing << ", " << antenna;
          }
}

TEST(DeltaBullington, RefusesWhatNoLossCanBeComputedFrom) {
  const Elevations ground{0, 10, 0};
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double wrong : {nan, -1.0}) {
    EXPECT_THROW(lossOver(ground, 1, 30, wrong, 450), ParameterError) << wrong;
    EXPECT_THROW(lossOver(ground, 1, 30, 10, wrong), ParameterError) << wrong;
    EXPECT_THROW(lossOver(ground, 1, 30, 10, 450, {Polarization::kVertical, wrong, 0.005}), ParameterError);
    EXPECT_THROW(lossOver(ground, 1, 30, 10, 450, {Polarization::kVertical, 15, wrong}), ParameterError);
  }
  EXPECT_THROW(lossOver(ground, 1, 30, 10, 9.9), ParameterError);
  EXPECT_THROW(lossOver({5}, 1, 30, 10, 450), ParameterError);
}

}  // namespace
}  // namespace zel::ptp
