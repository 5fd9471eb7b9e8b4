// What a path keeps while it grows gives the losses of the plain method, and after every sample the same to
// the last bit as a path that was made for these samples alone.
#include "models/ptp/growing_ptp_path.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "grounds.h"
#include "models/ptp/knife_edge.h"
#include "models/ptp/parameter_error.h"
#include "plain_method.h"

namespace zel::ptp {
namespace {

struct Case {
  Elevations ground;
  Ground constants;
  double spacing;
  double transmitter;  // metres above ground
  double receiver;
  double frequency;
  double radius;
};

Case anyCase(Random& random, std::size_t samples) {
  Case result;
  result.ground = anyGround(random, samples);
  result.constants = random.below(2) == 0 ? Ground{} : Ground{Polarization::kVertical, 80, 5};
  result.spacing = random.decades(0.005, 2);
  result.transmitter = random.decades(1, 1000);
  result.receiver = random.decades(1, 200);
  result.frequency = random.decades(20, 20000);
  result.radius = random.below(2) == 0 ? 8500 : random.decades(3000, 30000);
  return result;
}

DiffractionLoss lossOf(const Case& given, const GrowingPtpPath& path) {
  return deltaBullingtonLoss(path, given.constants, given.receiver, given.frequency);
}

std::vector<std::uint64_t> bitsOf(const DiffractionLoss& loss) {
  std::vector<std::uint64_t> bits;
  for (const double value : {loss.bullington, loss.smoothBullington, loss.spherical, loss.total})
    bits.push_back(std::bit_cast<std::uint64_t>(value));
  return bits;
}

PlainPath plainOf(const Case& given, std::size_t samples) {
  const std::vector<double> heights(given.ground.begin(),
                                    given.ground.begin() + static_cast<std::ptrdiff_t>(samples));
  return {heights, given.spacing, heights.front() + given.transmitter, heights.back() + given.receiver,
          given.radius};
}

void expectEqualPrefixes(const Case& given, std::size_t step) {
  GrowingPtpPath grown(given.spacing, given.radius,
                       static_cast<double>(given.ground.front()) + given.transmitter);
  for (std::size_t count = 1; count <= given.ground.size(); ++count) {
    grown.append(given.ground[count - 1]);
    if (count < 2 || (count % step != 0 && count != given.ground.size())) continue;
    GrowingPtpPath whole(given.spacing, given.radius, grown.transmitterTop());
    whole.append(std::span(given.ground).first(count));
    const DiffractionLoss loss = lossOf(given, grown);
    ASSERT_EQ(bitsOf(loss), bitsOf(lossOf(given, whole))) << count << " samples";
    ASSERT_TRUE(std::isfinite(loss.total) && loss.total >= 0) << loss.total;
    const DiffractionLoss plain =
        plainDeltaBullington(plainOf(given, count), given.constants, given.frequency);
    // dB; a microdecibel for what differs in the order of the arithmetic.
    ASSERT_NEAR(loss.bullington, plain.bullington, 1e-6) << count << " samples";
    ASSERT_NEAR(loss.spherical, plain.spherical, 1e-5) << count << " samples";
    ASSERT_NEAR(loss.total, plain.total, 1e-5) << count << " samples";
  }
}

TEST(GrowingPtpPath, HasTheLossesOfTheWholePathAfterEverySample) {
  constexpr std::uint64_t kSeed = 61;
  RecordProperty("seed", std::to_string(kSeed));
  Random random(kSeed);
  for (int run = 0; run < 1000; ++run) {
    expectEqualPrefixes(anyCase(random, 2 + random.below(70)), 1);
    if (HasFatalFailure()) FAIL() << "seed " << kSeed << ", run " << run;
  }
}

TEST(GrowingPtpPath, HasTheLossesOfTheWholePathAfterSamplesOfLongProfiles) {
  constexpr std::uint64_t kSeed = 62;
  RecordProperty("seed", std::to_string(kSeed));
  Random random(kSeed);
  for (int run = 0; run < 100; ++run) {
    expectEqualPrefixes(anyCase(random, 200 + random.below(3000)), 1 + random.below(500));
    if (HasFatalFailure()) FAIL() << "seed " << kSeed << ", run " << run;
  }
}

TEST(GrowingPtpPath, GivesTheSameHoweverOftenItIsAsked) {
  Random random(63);
  const Case given = anyCase(random, 300);
  const GrowingPtpPath path = pathOver(given.ground, given.spacing, given.transmitter, given.radius);
  const auto once = bitsOf(lossOf(given, path));
  deltaBullingtonLoss(path, given.constants, given.receiver + 100, 2 * given.frequency);
  EXPECT_EQ(bitsOf(lossOf(given, path)), once);
}

TEST(GrowingPtpPath, HasNoEdgeOnTwoSamples) {
  const GrowingPtpPath path = pathOver({100, 500}, 1, 10);
  EXPECT_EQ(path.bullingtonNu(510, 1), kLeastNu);
}

TEST(GrowingPtpPath, TakesAnObstacleOnTheRayForAGrazingEdge) {
  // 4 km over an effective earth of 4000 km, which bulges by 500 x 2 x 2 / 4000 = 0.5 m half way; the ground
  // there has 0.5 m more, and the antennas stand at 1 m.
  GrowingPtpPath path(2, 4000, 1);
  path.append(Elevations{0, 0.5F, 0});
  EXPECT_EQ(path.bullingtonNu(1, 1), 0);
}

TEST(GrowingPtpPath, StaysFiniteOverGroundInOneStraightLine) {
  // Ground that falls and rises with the effective earth: every sample lies on the ray between antennas on
  // it.
  for (std::size_t samples = 3; samples < 400; samples += 7) {
    Elevations ground;
    for (std::size_t i = 0; i < samples; ++i) {
      const auto x = static_cast<double>(i);
      ground.push_back(static_cast<float>(500.0 * 0.1 * x * 0.1 * x / 8500 + 3 * x));
    }
    const GrowingPtpPath path = pathOver(ground, 0.1, 0);
    const double nu = path.bullingtonNu(path.elevation(samples - 1), 0.3);
    EXPECT_NEAR(nu, 0, 0.01) << samples;
  }
}

TEST(GrowingPtpPath, FitsTheSmoothEarthToTheGround) {
  // A slope of 1 m a sample is its own best line: the antennas keep their heights above it.
  Elevations slope;
  for (int i = 0; i < 50; ++i) slope.push_back(static_cast<float>(i));
  const EffectiveHeights over = pathOver(slope, 0.5, 30).effectiveHeights(49 + 60);
  EXPECT_NEAR(over.transmitter, 30, 1e-9);
  EXPECT_NEAR(over.receiver, 60, 1e-9);
}

TEST(GrowingPtpPath, NeverPutsTheSmoothEarthAboveTheGroundAtAnEnd) {
  // A dome: the line through it is far above both ends. The antennas see over it.
  Elevations dome;
  for (int i = 0; i <= 40; ++i) dome.push_back(static_cast<float>(50.0 * (1 - std::pow(i / 20.0 - 1, 2))));
  const EffectiveHeights heights = pathOver(dome, 1, 100).effectiveHeights(100);
  EXPECT_EQ(heights.transmitter, 100);
  EXPECT_EQ(heights.receiver, 100);
}

TEST(GrowingPtpPath, LowersTheSmoothEarthUnderAnObstacleMoreAtItsNearerEnd) {
  Elevations ridge(21, 0);
  ridge[5] = 110;
  // The fit without the obstacle's part: v1 and v2 of one triangle, 110 m high and 2 samples wide.
  const double sum = 2 * 110;
  const double moment = 110 * (3 * 5.0 - 1) + 110 * (3 * 6.0 - 2);
  const double first = (2 * sum * 20 - moment) / 400;
  const double second = (moment - sum * 20) / 400;
  // 100 m above the ray between antennas of 10 m; seen from 5 and 15 samples away.
  const EffectiveHeights heights = pathOver(ridge, 1, 10).effectiveHeights(10);
  EXPECT_NEAR(heights.transmitter, 10 - (first - 100 * 0.75), 1e-9);
  EXPECT_NEAR(heights.receiver, 10 - (second - 100 * 0.25), 1e-9);
}

TEST(GrowingPtpPath, RefusesWhatIsNoHeightAndIsThenAsItWas) {
  Random random(64);
  const Case given = anyCase(random, 100);
  GrowingPtpPath path = pathOver(given.ground, given.spacing, given.transmitter, given.radius);
  const auto before = bitsOf(lossOf(given, path));
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinite = std::numeric_limits<float>::infinity();
  for (const float wrong : {nan, infinite, -infinite, -9999.0F, 32767.0F}) {
    try {
      path.append(Elevations{100, wrong});
      ADD_FAILURE() << wrong << " was taken";
    } catch (const ParameterError& error) {
      EXPECT_NE(error.description().find("elevation of sample 102"), std::string::npos)
          << error.description();
      EXPECT_EQ(error.number(), 5);
    }
  }
  EXPECT_EQ(path.samples(), 100U);
  EXPECT_EQ(bitsOf(lossOf(given, path)), before);
}

TEST(GrowingPtpPath, RefusesATransmitterBelowItsGroundAndAPathLongerThanTheEarth) {
  GrowingPtpPath path(10000, 8500, 99);
  EXPECT_THROW(path.append(100.0F), ParameterError);
  EXPECT_EQ(path.samples(), 0U);
  path.append(Elevations{99, 0, 0});
  EXPECT_THROW(path.append(0.0F), ParameterError);
  EXPECT_EQ(path.samples(), 3U);
}

TEST(GrowingPtpPath, RefusesASpacingOrARadiusThatNoPathHas) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double wrong : {0.0, -1.0, nan}) {
    EXPECT_THROW(GrowingPtpPath(wrong, 8500, 10), ParameterError) << wrong;
    EXPECT_THROW(GrowingPtpPath(1, wrong, 10), ParameterError) << wrong;
  }
  EXPECT_THROW(GrowingPtpPath(1, 8500, nan), ParameterError);
}

}  // namespace
}  // namespace zel::ptp
