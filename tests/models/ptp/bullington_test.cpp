#include "models/ptp/bullington.h"

#include <gtest/gtest.h>

#include <cmath>

#include "grounds.h"
#include "models/ptp/knife_edge.h"
#include "plain_method.h"

namespace zel::ptp {
namespace {

TEST(BullingtonLoss, AddsToTheEdgesLossWhatManyObstaclesCost) {
  EXPECT_EQ(bullingtonLoss(kLeastNu, 50), 0);
  // J(2.4) = 20.54 dB over 50 km: (1 - exp(-20.54 / 6)) (10 + 1) = 10.64 dB, by hand.
  EXPECT_NEAR(bullingtonLoss(2.4, 50), 20.54 + 10.64, 0.01);
  // J(0) = 6.033 dB over 10 km: (1 - exp(-6.033 / 6)) 10.2 = 6.468 dB, by hand.
  EXPECT_NEAR(bullingtonLoss(0, 10), 6.033 + 6.468, 0.002);
}

TEST(SmoothBullington, IsTheWalkOverTheSamplesOfABareEarth) {
  Random random(51);
  for (int run = 0; run < 3000; ++run) {
    const std::size_t samples = 2 + random.below(run % 3 == 0 ? 8 : 600);
    const double spacing = random.decades(0.005, 3);
    const double wavelength = random.decades(0.015, 30);
    const PlainPath plain{std::vector<double>(samples, 0.0), spacing, random.decades(0.1, 2000),
                          random.decades(0.1, 2000), random.decades(3000, 30000)};
    const double nu = smoothBullingtonNu(
        {samples - 1, spacing, plain.radius, plain.transmitter, plain.receiver}, wavelength);
    ASSERT_NEAR(bullingtonLoss(nu, plain.distance()), plainBullington(plain, wavelength), 1e-8) << run;
  }
}

TEST(SmoothBullington, HasAnEdgeForAntennasOnTheGround) {
  const double nu = smoothBullingtonNu({100, 1, 8500, 0, 0}, 1);
  // Each sees the sample next to it highest, 500 x 99 / 8500 m/km; the rays cross half way, 50 km on.
  EXPECT_NEAR(nu, 500.0 * 99 * 50 / 8500 * knifeEdgeScale(100, 50, 50, 1), 1e-9);
}

TEST(SmoothBullington, GrazesAnEarthThatJustReachesTheRay) {
  // 500 x 2 x 2 / 4000 = 0.5 m half way, between antennas of 0.5 m.
  EXPECT_EQ(smoothBullingtonNu({2, 2, 4000, 0.5, 0.5}, 1), 0);
}

}  // namespace
}  // namespace zel::ptp
