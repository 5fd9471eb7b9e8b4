#include "models/ptp/knife_edge.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zel::ptp {
namespace {

TEST(KnifeEdge, HasThePublishedLossOfAGrazingAndOfAHighEdge) {
  EXPECT_NEAR(knifeEdgeLoss(0), 6.03, 0.01);     // dB; (31) by hand
  EXPECT_NEAR(knifeEdgeLoss(2.4), 20.54, 0.01);  // dB; (31) by hand
}

TEST(KnifeEdge, LosesNothingFromItsLeastParameterDown) {
  EXPECT_EQ(knifeEdgeLoss(-0.78), 0);
  EXPECT_EQ(knifeEdgeLoss(-5), 0);
  EXPECT_GT(knifeEdgeLoss(-0.7799), 0);
  EXPECT_LT(knifeEdgeLoss(-0.7799), 0.01);  // dB: the step of the method
}

TEST(KnifeEdge, LosesMoreTheHigherItIs) {
  for (int i = -100; i < 5000; ++i)
    ASSERT_LE(knifeEdgeLoss(0.01 * i), knifeEdgeLoss(0.01 * (i + 1))) << 0.01 * i;
}

TEST(KnifeEdge, ApproachesTheKnownLawForHighEdges) {
  // 13 + 20 log nu, dB, from nu = 2.4 on; within 0.2 dB for high ones.
  for (const double nu : {10.0, 30.0, 100.0})
    EXPECT_NEAR(knifeEdgeLoss(nu), 13 + 20 * std::log10(nu), 0.2) << nu;
}

TEST(KnifeEdge, ScalesWithTheWavelengthAndThePlaceOnThePath) {
  // Half way on 20 km at a wavelength of 1 m: sqrt(2 * 20000 / (10000 * 10000)) per metre.
  EXPECT_NEAR(knifeEdgeScale(20, 10, 10, 1), 0.02, 1e-12);
  EXPECT_NEAR(knifeEdgeScale(20, 10, 10, 0.25), 0.04, 1e-12);
}

}  // namespace
}  // namespace zel::ptp
