#include "models/longrice/line_of_sight.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "links.h"
#include "models/longrice/terrain_irregularity.h"

namespace zel::longrice {
namespace {

// Two rays over a mirror-flat ground by geometry: the lengths of both, and Fresnel's coefficients for the
// reflected one (ITU-R P.528 and any textbook), with the engineer's sign of time.
double exactTwoRays(const Parameters& parameters, double h1, double h2, double distance) {
  const double wavelength = 299.792458 / parameters.frequency;
  const double direct = std::hypot(distance, h1 - h2);
  const double reflected = std::hypot(distance, h1 + h2);
  const double sine = (h1 + h2) / reflected;
  const std::complex<double> permittivity(parameters.permittivity,
                                          -60 * wavelength * parameters.conductivity);
  const std::complex<double> root = std::sqrt(permittivity - (1 - sine * sine));
  const std::complex<double> factor =
      parameters.polarization == Polarization::kHorizontal ? 1.0 : permittivity;
  const std::complex<double> reflection = (factor * sine - root) / (factor * sine + root);
  const double phase = 2 * std::numbers::pi / wavelength * (reflected - direct);
  return -20 * std::log10(std::abs(1.0 + reflection * std::polar(1.0, -phase)));
}

// At grazing incidence, up to a quarter of a wavelength between the rays (beyond it the model follows the
// last lobe's upper edge). Tolerance: the small-angle path difference and the surface impedance in place of
// the angle's own, 0.1 dB.
TEST(TwoRays, AreThoseOfTheirExactGeometryWithinTheLastQuarterWave) {
  Random random(61);
  int runs = 0;
  while (runs < 400) {
    const Parameters parameters = anyParameters(random);
    const double h1 = random.decades(1, 300), h2 = random.decades(1, 300);
    const double distance = random.decades(2e3, 200e3);
    const Link link = smoothLink(parameters, h1, h2, distance);
    const double lag = 2 * link.environment.waveNumber * h1 * h2 / distance;
    const double expected = exactTwoRays(parameters, h1, h2, distance);
    const double sine = (h1 + h2) / std::hypot(distance, h1 + h2);
    const std::complex<double>& impedance = link.environment.surfaceImpedance;
    const std::complex<double> reflection = (sine - impedance) / (sine + impedance);
    // Near Brewster's angle the model keeps what grazing incidence would leave, and not this reflection.
    if (lag > std::numbers::pi / 2 || sine > 0.02 || std::norm(reflection) < 0.3) continue;
    ++runs;
    EXPECT_NEAR(twoRayAttenuation(link, distance), expected, 0.1)
        << parameters.frequency << " MHz, " << h1 << ", " << h2 << " m, " << distance << " m";
  }
}

// 40 log d - 20 log (h1 h2) for any frequency: low antennas far out over the sea, horizontal. Tolerance: the
// ground is no perfect mirror, 0.1 dB; the speed of light in the constants, 0.01 dB.
TEST(TwoRays, LoseTheFourthPowerOfTheDistanceFarOut) {
  for (const double frequency : {300.0, 600.0})
    for (const double distance : {30e3, 60e3, 120e3}) {
      const Link link = smoothLink(overSea(frequency), 20, 20, distance);
      const double loss = freeSpaceLoss(frequency, distance) + twoRayAttenuation(link, distance);
      EXPECT_NEAR(loss, 40 * std::log10(distance) - 20 * std::log10(20.0 * 20.0), 0.1) << frequency;
    }
}

// Half a wave and more between the rays: they add up to nearly twice the field, -6 dB, and stay so nearer in.
TEST(TwoRays, NearInFollowTheUpperEdgeOfTheLobes) {
  const Link link = smoothLink(overSea(1000), 100, 100, 5e3);
  EXPECT_NEAR(twoRayAttenuation(link, 5e3), -6, 0.2);
  double before = twoRayAttenuation(link, 2e3);
  for (int distance = 2500; distance < 100000; distance += 500) {
    const double now = twoRayAttenuation(link, distance);
    EXPECT_GE(now, before - 0.15) << distance;
    before = now;
  }
}

TEST(TwoRays, AreOneOverGroundThatScattersTheOther) {
  Link link = smoothLink(usualParameters(3000), 100, 100, 20e3);
  const double mirrored = twoRayAttenuation(link, 20e3);
  link.terrain.deltaH = 500;
  const double rough = twoRayAttenuation(link, 20e3);
  EXPECT_LT(std::abs(rough), std::abs(mirrored));
  // The reflection is never taken for less than the root of the sine of grazing: 0.1 of the field here.
  EXPECT_LT(std::abs(rough), 1);
  EXPECT_GT(std::abs(rough), 0.01);
}

// Of a reflection weakened below half the field its root of the sine of grazing is left, with its phase, be
// it above or below that.
TEST(TwoRays, KeepTheRootOfTheSineOfAWeakReflection) {
  int weaker = 0, stronger = 0;
  for (int step = 0; step < 25; ++step) {
    const double deltaH = 5 * std::pow(1.2, step);  // m, to 397
    Link link = smoothLink(usualParameters(1000), 100, 60, 20e3);
    link.terrain.deltaH = deltaH;
    const double k = link.environment.waveNumber;
    const double sine = 160 / std::hypot(20e3, 160);
    const double damping = std::min(10.0, k * terrainRoughnessOver(20e3, deltaH) * sine);
    const std::complex<double>& impedance = link.environment.surfaceImpedance;
    std::complex<double> reflection = (sine - impedance) / (sine + impedance) * std::exp(-damping);
    const double power = std::norm(reflection);
    if (power < 0.25) {
      ++(power > sine ? stronger : weaker);
      reflection *= std::sqrt(sine) / std::abs(reflection);
    }
    const double lag = 2 * k * 100 * 60 / 20e3;
    const double shown = std::numbers::pi - std::numbers::pi * std::numbers::pi / 4 / lag;
    EXPECT_NEAR(twoRayAttenuation(link, 20e3),
                -20 * std::log10(std::abs(1.0 + reflection * std::polar(1.0, shown))), 1e-9);
  }
  EXPECT_GT(weaker, 2);
  EXPECT_GT(stronger, 2);
}

// Ground ever so rough leaves no reflection without a phase: exp of 10 nepers at most is taken off.
TEST(TwoRays, SurviveGroundEverSoRough) {
  Link link = smoothLink(usualParameters(20000), 3000, 3000, 5e3);
  link.terrain.deltaH = 300;
  const double rough = twoRayAttenuation(link, 5e3);
  EXPECT_TRUE(std::isfinite(rough));
  for (const double deltaH : {1000.0, 10000.0}) {
    link.terrain.deltaH = deltaH;
    EXPECT_NEAR(twoRayAttenuation(link, 5e3), rough, 1e-12);
  }
}

TEST(LineOfSight, OverSmoothGroundIsTheTwoRaysAlone) {
  const Link link = smoothLink(usualParameters(), 50, 50, 20e3);
  EXPECT_DOUBLE_EQ(lineOfSightAttenuation(link, {-10, 1e-3}, 20e3), twoRayAttenuation(link, 20e3));
}

// w = 1 / (1 + D_1 k Delta h / max(D_2, d_Ls)), with D_1 = 47.7 m and D_2 = 10 km.
TEST(LineOfSight, BlendsTheExtrapolatedDiffractionInWithTheRoughness) {
  const AttenuationLine diffraction{-10, 1e-3};
  for (const double height : {1.0, 50.0}) {
    Link link = smoothLink(usualParameters(), height, height, 5e3);
    link.terrain.deltaH = 90;
    const double scale = std::max(10e3, 2 * std::sqrt(2 * height / link.environment.effectiveCurvature));
    const double w = 1 / (1 + 450 * 90 / scale);
    const double expected = w * twoRayAttenuation(link, 5e3) + (1 - w) * (-10 + 5);
    EXPECT_NEAR(lineOfSightAttenuation(link, diffraction, 5e3), expected, 1e-9);
  }
}

}  // namespace
}  // namespace zel::longrice
