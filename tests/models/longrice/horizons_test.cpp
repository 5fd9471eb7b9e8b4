#include "models/longrice/horizons.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <span>

#include "grounds.h"

namespace zel::longrice {
namespace {

constexpr double kFourThirds = 1 / 8495e3;  // 1/m

struct Case {
  Ground ground;
  double spacing = 0;
  double curvature = 0;
  double transmitter = 0;
  double receiver = 0;
};

// One end's elevation angle of a sample: the definition, for small angles.
double angleTo(const Case& given, std::size_t from, std::size_t to, double top, double height) {
  const double away = std::abs(static_cast<double>(to) - static_cast<double>(from)) * given.spacing;
  return (height - top) / away - given.curvature * away / 2;
}

// The plain way: look at every sample from both ends, from the transmitter on.
Horizons plainHorizons(const Case& given, std::size_t samples) {
  const std::size_t last = samples - 1;
  const double length = static_cast<double>(last) * given.spacing;
  const double transmitterTop = given.ground[0] + given.transmitter;
  const double receiverTop = given.ground[last] + given.receiver;
  Horizons result;
  result.lineOfSight = true;
  result.transmitter = {last, length, angleTo(given, 0, last, transmitterTop, receiverTop)};
  result.receiver = {0, length, angleTo(given, last, 0, receiverTop, transmitterTop)};
  for (std::size_t i = 1; i < last; ++i) {
    const double forward = angleTo(given, 0, i, transmitterTop, given.ground[i]);
    if (forward > result.transmitter.angle) {
      result.lineOfSight = false;
      result.transmitter = {i, static_cast<double>(i) * given.spacing, forward};
    }
    const double backward = angleTo(given, last, i, receiverTop, given.ground[i]);
    if (backward > result.receiver.angle)
      result.receiver = {i, static_cast<double>(last - i) * given.spacing, backward};
  }
  return result;
}

HorizonSearch searchOf(const Case& given) { return {given.spacing, given.curvature, given.transmitter}; }

Horizons foundHorizons(const Case& given) {
  HorizonSearch search = searchOf(given);
  search.append(given.ground);
  return search.horizons(given.receiver);
}

// Two samples may be seen at angles that differ by rounding only, so the angle decides. Angles are good to
// 1e-12 rad, a tenth of a micrometre at 100 km.
void expectSameView(const Case& given, std::size_t samples, const Horizons& fast) {
  constexpr double kTolerance = 1e-12;
  const Horizons plain = plainHorizons(given, samples);
  const std::size_t last = samples - 1;
  EXPECT_NEAR(fast.transmitter.angle, plain.transmitter.angle, kTolerance);
  EXPECT_NEAR(fast.receiver.angle, plain.receiver.angle, kTolerance);
  EXPECT_NEAR(fast.transmitter.distance, static_cast<double>(fast.transmitter.sample) * given.spacing, 1e-6);
  EXPECT_NEAR(fast.receiver.distance, static_cast<double>(last - fast.receiver.sample) * given.spacing, 1e-6);
  if (fast.lineOfSight != plain.lineOfSight) {
    EXPECT_NEAR(
        plain.transmitter.angle,
        angleTo(given, 0, last, given.ground[0] + given.transmitter, given.ground[last] + given.receiver),
        kTolerance);
  }
}

TEST(Horizons, AreThoseOfAPlainScanForEveryPrefixOfAnyGround) {
  Random random(21);
  for (int run = 0; run < 400; ++run) {
    Case given;
    const std::size_t samples = 3 + random.below(run % 20 == 0 ? 1500 : 120);
    given.ground = anyGround(random, samples);
    given.spacing = random.decades(5, 2000);
    given.curvature = kFourThirds * random.uniform(0.01, 1.4);
    given.transmitter = random.decades(0.5, 500);
    given.receiver = random.decades(0.5, 500);
    HorizonSearch search = searchOf(given);
    search.append(std::span(given.ground).first(1));
    for (std::size_t count = 2; count <= samples; ++count) {
      search.append(std::span(given.ground).subspan(count - 1, 1));
      ASSERT_EQ(search.samples(), count);
      expectSameView(given, count, search.horizons(given.receiver));
      ASSERT_FALSE(testing::Test::HasFailure()) << "run " << run << ", " << count << " samples";
    }
  }
}

// Whole metres, unit spacing and a flat earth: every comparison is exact, so ties are real and must be broken
// the same way, for the sample nearer to the transmitter.
TEST(Horizons, BreakExactTiesForTheSampleNearerToTheTransmitter) {
  Random random(22);
  int ties = 0;
  for (int run = 0; run < 2000; ++run) {
    Case given;
    const std::size_t samples = 3 + random.below(run % 10 == 0 ? 500 : 40);
    for (std::size_t i = 0; i < samples; ++i) given.ground.push_back(static_cast<double>(random.below(6)));
    given.spacing = 1;
    given.transmitter = static_cast<double>(random.below(4));
    given.receiver = static_cast<double>(random.below(4));
    const std::size_t last = samples - 1;
    const double transmitterTop = given.ground[0] + given.transmitter;
    const double receiverTop = given.ground[last] + given.receiver;
    // Cross products of small whole numbers, in place of quotients.
    std::size_t fromTransmitter = last, fromReceiver = 0;
    double bestForward = receiverTop - transmitterTop, bestBackward = transmitterTop - receiverTop;
    for (std::size_t i = 1; i < last; ++i) {
      const double forward = given.ground[i] - transmitterTop;
      const double backward = given.ground[i] - receiverTop;
      const double a = forward * static_cast<double>(fromTransmitter) - bestForward * static_cast<double>(i);
      const double b =
          backward * static_cast<double>(last - fromReceiver) - bestBackward * static_cast<double>(last - i);
      ties += (a == 0) + (b == 0);
      if (a > 0) {
        fromTransmitter = i;
        bestForward = forward;
      }
      if (b > 0) {
        fromReceiver = i;
        bestBackward = backward;
      }
    }
    const Horizons found = foundHorizons(given);
    ASSERT_EQ(found.lineOfSight, fromTransmitter == last) << run;
    ASSERT_EQ(found.transmitter.sample, fromTransmitter) << run;
    ASSERT_EQ(found.receiver.sample, fromReceiver) << run;
  }
  EXPECT_GT(ties, 1000);
}

// Far apart, so that whatever looks at the ground piece by piece meets the nearer one first.
TEST(Horizons, BreakATieOfFarApartSamplesForTheOneNearerToTheTransmitter) {
  Case given{Ground(201, 0.0), 1, 0, 0, 0};
  given.ground[50] = 37.5;
  given.ground[150] = 12.5;
  EXPECT_EQ(foundHorizons(given).receiver.sample, 50U);
  given.ground[50] = 37.4;
  EXPECT_EQ(foundHorizons(given).receiver.sample, 150U);
}

TEST(Horizons, OfATriangleAreItsTop) {
  // 3, 4, 5 and its mirror image: the top stands 300 m over the line, 400 m from either end.
  const Horizons found = foundHorizons({{0, 310, 0}, 400, 0, 10, 10});
  EXPECT_FALSE(found.lineOfSight);
  EXPECT_EQ(found.transmitter.sample, 1U);
  EXPECT_EQ(found.receiver.sample, 1U);
  EXPECT_DOUBLE_EQ(found.transmitter.distance, 400);
  EXPECT_DOUBLE_EQ(found.receiver.distance, 400);
  EXPECT_DOUBLE_EQ(found.transmitter.angle, 0.75);
  EXPECT_DOUBLE_EQ(found.receiver.angle, 0.75);
}

TEST(Horizons, AreEachOtherWhereNothingStandsBetween) {
  const Horizons found = foundHorizons({{100, 0, 0, 40}, 1000, kFourThirds, 20, 10});
  EXPECT_TRUE(found.lineOfSight);
  EXPECT_EQ(found.transmitter.sample, 3U);
  EXPECT_EQ(found.receiver.sample, 0U);
  EXPECT_EQ(found.transmitter.distance, 3000);
  // -70 m over 3 km, less half the curvature times the distance.
  EXPECT_NEAR(found.transmitter.angle, -70.0 / 3000 - 1500 * kFourThirds, 1e-15);
  EXPECT_NEAR(found.receiver.angle, 70.0 / 3000 - 1500 * kFourThirds, 1e-15);
}

TEST(Horizons, AreInSightWhereTheGroundOnlyTouchesTheRay) {
  EXPECT_TRUE(foundHorizons({{0, 10, 0}, 1000, 0, 10, 10}).lineOfSight);
  EXPECT_FALSE(foundHorizons({{0, 10.001, 0}, 1000, 0, 10, 10}).lineOfSight);
}

TEST(Horizons, OfTwoSamplesAreAlwaysInSight) {
  EXPECT_TRUE(foundHorizons({{0, 5000}, 1, kFourThirds, 0.5, 0.5}).lineOfSight);
}

// sqrt(2 h a) of a 4/3 earth: 10 m see 13.03 km; the sample next to that distance is the horizon.
TEST(Horizons, OverASmoothSeaAreAtTheRootOfTwiceTheHeightTimesTheRadius) {
  const Case given{Ground(1001, 0.0), 100, kFourThirds, 10, 40};
  const Horizons found = foundHorizons(given);
  EXPECT_FALSE(found.lineOfSight);
  EXPECT_NEAR(found.transmitter.distance, std::sqrt(2 * 10 * 8495e3), 50);
  EXPECT_NEAR(found.receiver.distance, std::sqrt(2 * 40 * 8495e3), 50);
  EXPECT_NEAR(found.transmitter.angle, -std::sqrt(2 * 10 / 8495e3), 1e-8);
}

TEST(Horizons, AnswerForAnyReceiverWithoutForgetting) {
  HorizonSearch search(500, kFourThirds, 20);
  search.append(Ground{100, 130, 90, 160, 80});
  const Horizons low = search.horizons(5);
  search.horizons(400);
  const Horizons again = search.horizons(5);
  EXPECT_EQ(low.receiver.sample, again.receiver.sample);
  EXPECT_EQ(low.receiver.angle, again.receiver.angle);
}

}  // namespace
}  // namespace zel::longrice
