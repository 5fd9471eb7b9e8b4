#include "models/longrice/reference_attenuation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

#include "links.h"
#include "models/longrice/diffraction.h"
#include "models/longrice/line_of_sight.h"
#include "models/longrice/troposcatter.h"

namespace zel::longrice {
namespace {

double at(const Link& link, double distance) { return referenceAttenuation(link, distance).attenuation; }

// A link whose terrain follows from no ground, so that what ground seldom brings together turns up.
Link anyShapedLink(Random& random) {
  const bool overLowSea = random.below(3) == 0;
  const Parameters parameters =
      overLowSea ? overSea(random.decades(20, 300), Polarization::kVertical) : anyParameters(random);
  const Environment environment = environmentOf(parameters);
  PathTerrain terrain = smoothTerrain(environment.effectiveCurvature, random.decades(1, 3000),
                                      random.decades(1, 3000), random.decades(1e3, 1000e3));
  for (std::size_t j = 0; j < 2; ++j) {
    terrain.horizonDistances[j] *= random.uniform(0.2, 1.2);
    terrain.horizonAngles[j] += random.uniform(0, 0.02);
  }
  terrain.deltaH = random.decades(0.1, 1000);
  return {environment, terrain};
}

// d_x by bisection: where the method turns from diffraction to scatter.
std::optional<double> scatterDistance(const Link& link) {
  const auto scattered = [&link](double distance) {
    return referenceAttenuation(link, distance).method == PropagationMethod::kTroposcatter;
  };
  double low = link.smoothHorizonDistance;
  double high = 2000e3;
  if (!scattered(high) || scattered(low)) return std::nullopt;
  for (int step = 0; step < 80; ++step) {
    const double middle = 0.5 * (low + high);
    (scattered(middle) ? high : low) = middle;
  }
  return high;
}

TEST(ReferenceAttenuation, HasNoStepAtTheSmoothEarthHorizon) {
  Random random(81);
  for (int run = 0; run < 1000; ++run) {
    const Link link = anyLink(random);
    const double join = link.smoothHorizonDistance;
    const double before = std::nextafter(join, 0.0);
    EXPECT_EQ(referenceAttenuation(link, before).method, PropagationMethod::kLineOfSight);
    EXPECT_NE(referenceAttenuation(link, join).method, PropagationMethod::kLineOfSight);
    EXPECT_NEAR(at(link, before), at(link, join), 1e-6) << run;
  }
}

TEST(ReferenceAttenuation, HasNoStepWhereScatterTakesOver) {
  Random random(82);
  int found = 0;
  for (int run = 0; run < 1000; ++run) {
    const Link link = anyLink(random);
    const std::optional<double> join = scatterDistance(link);
    if (!join) continue;
    ++found;
    EXPECT_NEAR(at(link, *join * (1 - 1e-12)), at(link, *join), 1e-6) << run;
  }
  EXPECT_GT(found, 500);
}

TEST(ReferenceAttenuation, IsNeverNegativeAndNeverFallsBeyondTheHorizon) {
  Random random(83);
  for (int run = 0; run < 500; ++run) {
    const Link link = anyLink(random);
    const double horizon = link.smoothHorizonDistance;
    for (int percent = 1; percent < 100; ++percent) EXPECT_GE(at(link, percent / 100.0 * horizon), 0);
    double before = at(link, horizon);
    const int steps = static_cast<int>(std::ceil((1000e3 - horizon) / 10e3));
    for (int step = 0; step < steps; ++step) {
      const double distance = horizon + 10e3 * step;
      const double now = at(link, distance);
      ASSERT_GE(now, before - 1e-9) << run << " at " << distance;
      before = now;
    }
  }
}

TEST(ReferenceAttenuation, IsTakenAtThePathsOwnDistanceWhenNoneIsGiven) {
  Random random(84);
  const Link link = anyLink(random);
  const ReferenceAttenuation own = referenceAttenuation(link);
  const ReferenceAttenuation given = referenceAttenuation(link, link.terrain.distance);
  EXPECT_EQ(own.attenuation, given.attenuation);
  EXPECT_EQ(own.method, given.method);
}

// X_ae = (k gamma^2)^(-1/3); the line goes through diffraction at d_3 = max(d_Ls, d_L + 1.3787 X_ae) and
// d_4 = d_3 + 2.7574 X_ae.
struct DiffractionLine {
  double d3, d4;
  AttenuationLine line;
};

DiffractionLine diffractionLine(const Link& link) {
  const double gamma = link.environment.effectiveCurvature;
  const double scale = std::pow(link.environment.waveNumber * gamma * gamma, -1.0 / 3);
  DiffractionLine result;
  result.d3 = std::max(link.smoothHorizonDistance, link.horizonDistance + 1.3787 * scale);
  result.d4 = result.d3 + 2.7574 * scale;
  const Diffraction diffraction(link);
  const double a3 = diffraction.attenuation(result.d3);
  const double a4 = diffraction.attenuation(result.d4);
  result.line.slope = (a4 - a3) / (result.d4 - result.d3);
  result.line.atZero = a3 - result.line.slope * result.d3;
  return result;
}

TEST(ReferenceAttenuation, BeyondTheHorizonIsTheLineThroughTwoDiffractedDistances) {
  Random random(85);
  int checked = 0;
  for (int run = 0; run < 500; ++run) {
    const Link link = anyLink(random);
    const DiffractionLine expected = diffractionLine(link);
    for (const double distance : {link.smoothHorizonDistance, expected.d3, expected.d4}) {
      const ReferenceAttenuation found = referenceAttenuation(link, distance);
      if (found.method != PropagationMethod::kDiffraction) continue;
      ++checked;
      EXPECT_NEAR(found.attenuation, std::max(0.0, expected.line.at(distance)), 1e-7) << run;
    }
  }
  EXPECT_GT(checked, 500);
}

TEST(ReferenceAttenuation, FarOutIsTheLineThroughTwoScatteredDistances) {
  Random random(86);
  int crossed = 0, early = 0;
  for (int run = 0; run < 3000; ++run) {
    const Link link = anyShapedLink(random);
    const std::optional<double> from = scatterDistance(link);
    if (!from) continue;
    const double d5 = link.horizonDistance + 200e3;
    const auto a6 = troposcatter(link, d5 + 200e3);
    const auto a5 = troposcatter(link, d5, a6->frequencyGain);
    const double slope = (a6->attenuation - a5->attenuation) / 200e3;
    const double far = at(link, 2000e3);
    EXPECT_NEAR(at(link, *from) + slope * (2000e3 - *from), far, 1e-6 * far) << run;
    // d_x: where the two lines cross, but not before d_Ls, nor before d_L + 0.3 X_ae ln f.
    const DiffractionLine diffraction = diffractionLine(link);
    const double scale = (diffraction.d4 - diffraction.d3) / 2.7574;
    const double frequency = link.environment.waveNumber * 47.70;
    const double nearest = link.horizonDistance + 0.3 * scale * std::log(frequency);
    const double crossing =
        (a5->attenuation - slope * d5 - diffraction.line.atZero) / (diffraction.line.slope - slope);
    EXPECT_NEAR(*from, std::max({link.smoothHorizonDistance, nearest, crossing}), 1e-6 * *from) << run;
    ++(crossing > nearest ? crossed : early);
  }
  EXPECT_GT(crossed, 100);
  EXPECT_GT(early, 0);
}

// With K_1 and K_2 of 0 or more the curve within the horizon passes through the line-of-sight attenuation at
// d_0 and d_1, and through diffraction at d_Ls. Each other form of the curve turns up too.
TEST(ReferenceAttenuation, WithinTheHorizonPassesThroughTheTwoRayValues) {
  Random random(87);
  int both = 0, clipped = 0, straight = 0, positive = 0, negative = 0;
  for (int run = 0; run < 20000; ++run) {
    const Link link = run % 2 == 0 ? anyLink(random) : anyShapedLink(random);
    const PathTerrain& terrain = link.terrain;
    const AttenuationLine line = diffractionLine(link).line;
    const double d2 = link.smoothHorizonDistance;
    double d0 =
        1.908 * link.environment.waveNumber * terrain.effectiveHeights[0] * terrain.effectiveHeights[1];
    double d1 = 0;
    if (line.atZero >= 0) {
      ++positive;
      d0 = std::min(d0, 0.5 * link.horizonDistance);
      d1 = d0 + 0.25 * (link.horizonDistance - d0);
    } else {
      ++negative;
      d1 = std::max(-line.atZero / line.slope, 0.25 * link.horizonDistance);
    }
    if (d1 >= d2 || d0 >= d2) continue;
    const double a0 = lineOfSightAttenuation(link, line, d0);
    const double a1 = lineOfSightAttenuation(link, line, d1);
    const double a2 = line.at(d2);
    // Two equations for A_0 and A_1 relative to A_2, by Cramer's rule.
    const double u0 = d0 - d2, v0 = std::log(d0 / d2), u1 = d1 - d2, v1 = std::log(d1 / d2);
    const double determinant = u0 * v1 - u1 * v0;
    const double k1 = ((a0 - a2) * v1 - (a1 - a2) * v0) / determinant;
    const double k2 = (u0 * (a1 - a2) - u1 * (a0 - a2)) / determinant;
    if (d0 < d1 && k1 > 0 && k2 > 0) {
      ++both;
      EXPECT_NEAR(at(link, d0), std::max(0.0, a0), 1e-6) << run;
      EXPECT_NEAR(at(link, d1), std::max(0.0, a1), 1e-6) << run;
    } else if (d0 < d1 && line.atZero >= 0 && k2 <= 0) {
      // A straight line through A_0, or where that is above A_2 one of the diffraction's own slope.
      ++straight;
      const double middle = 0.5 * (d0 + d2);
      const double expected = a2 > a0 ? 0.5 * (a0 + a2) : a2 + line.slope * (middle - d2);
      EXPECT_NEAR(at(link, middle), std::max(0.0, expected), 1e-6) << run;
    } else if (d0 < d1 && k1 < 0 && k2 > 0) {
      // The logarithm alone, through A_0, or where that too is above A_2 the diffraction's own slope.
      ++clipped;
      const double middle = 0.5 * (d0 + d2);
      const double expected = a2 > a0 ? a2 + (a2 - a0) * std::log(middle / d2) / std::log(d2 / d0)
                                      : a2 + line.slope * (middle - d2);
      EXPECT_NEAR(at(link, middle), std::max(0.0, expected), 1e-6) << run;
    } else if (d0 >= d1) {
      const double middle = 0.5 * (d1 + d2);
      const double slope = a2 > a1 ? (a2 - a1) / (d2 - d1) : line.slope;
      EXPECT_NEAR(at(link, middle), std::max(0.0, a2 + slope * (middle - d2)), 1e-6) << run;
    }
  }
  EXPECT_GT(both, 50);
  EXPECT_GT(clipped, 20);
  EXPECT_GT(straight, 20);
  EXPECT_GT(positive, 50);
  EXPECT_GT(negative, 50);
}

TEST(ReferenceAttenuation, StaysWithDiffractionWhereScatterIsNotDefined) {
  const Link link = smoothLink(usualParameters(20), 1, 1, 100e3);
  EXPECT_FALSE(troposcatter(link, link.horizonDistance + 400e3));
  EXPECT_EQ(referenceAttenuation(link, 1000e3).method, PropagationMethod::kDiffraction);
}

}  // namespace
}  // namespace zel::longrice
