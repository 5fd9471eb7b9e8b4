#include "profile/calculation/exact_profile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "platform/terrain.h"

namespace zel {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

ExactProfileRequest requestFor(const std::vector<float>& heights, double distance) {
  ExactProfileRequest request;
  request.distance = distance;
  request.heights = heights;
  request.startAntenna = 30;
  request.endAntenna = 30;
  request.frequency = 6000;
  return request;
}

// ITU-R P.530 gives the rise as d1 d2 / (12.74 k) metres: 25 x 25 / (12.74 x 4/3) = 36.79 m.
TEST(ExactProfile, RiseInTheMiddleOfFiftyKilometres) {
  const std::vector<float> heights(101, 0.0F);
  const ExactProfile profile = exactProfile(requestFor(heights, 50));
  ASSERT_EQ(profile.status, ExactProfileStatus::kOk);
  EXPECT_NEAR(profile.samples[50].rise, 36.79, 0.02);  // metres; 12.74 stands for 12.742
  EXPECT_DOUBLE_EQ(profile.samples[50].rise, 1000.0 * 625 / (2 * (4.0 / 3.0) * 6371));
  EXPECT_EQ(profile.samples.front().rise, 0);
  EXPECT_EQ(profile.samples.back().rise, 0);
}

TEST(ExactProfile, RiseIsWithinFivePartsInTenThousandOfTheCircleUpToFiveHundredKilometres) {
  const std::vector<float> heights(1001, 0.0F);
  const ExactProfile profile = exactProfile(requestFor(heights, 500));
  const double radius = 6371 * 4.0 / 3.0;
  for (std::size_t i = 1; i < 1000; ++i) {
    const double fromMiddle = profile.samples[i].distance - 250;
    const double circle = 1000 * (std::sqrt(radius * radius - fromMiddle * fromMiddle) -
                                  std::sqrt(radius * radius - 250.0 * 250.0));
    ASSERT_NEAR(profile.samples[i].rise / circle, 1, 5e-4) << i;
  }
}

// ITU-R P.530 gives the first-zone radius as 17.3 sqrt(d1 d2 / (f d)) metres with f in GHz: 24.97 m at 6 GHz.
TEST(ExactProfile, FirstZoneRadiusInTheMiddleOfFiftyKilometresAtSixGigahertz) {
  const std::vector<float> heights(101, 0.0F);
  const ExactProfile profile = exactProfile(requestFor(heights, 50));
  EXPECT_NEAR(profile.samples[50].fresnelRadius, 17.3 * std::sqrt(25.0 * 25.0 / (6.0 * 50.0)), 0.05);
  EXPECT_DOUBLE_EQ(profile.samples[50].fresnelRadius, 25.0);
  EXPECT_EQ(profile.samples.front().fresnelRadius, 0);
  EXPECT_EQ(profile.samples.back().fresnelRadius, 0);
}

TEST(ExactProfile, DistancesRunEvenlyFromStationToStation) {
  const std::vector<float> heights(4, 0.0F);
  const ExactProfile profile = exactProfile(requestFor(heights, 9));
  ASSERT_EQ(profile.samples.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_DOUBLE_EQ(profile.samples[i].distance, 3.0 * static_cast<double>(i));
}

TEST(ExactProfile, AKnifeEdgeInTheMiddleIsTheWorstObstacle) {
  std::vector<float> heights(11, 100.0F);
  heights[5] = 140;
  ExactProfileRequest request = requestFor(heights, 10);
  request.frequency = 300;  // 1 m: the first zone is 50 m in the middle
  const double rise = 1000.0 * 25 / (2 * (4.0 / 3.0) * 6371);
  const ExactProfile profile = exactProfile(request);
  ASSERT_TRUE(profile.worst);
  EXPECT_EQ(profile.worst->sample, 5U);
  EXPECT_DOUBLE_EQ(profile.worst->distance, 5);
  EXPECT_NEAR(profile.worst->clearance, 130 - 140 - rise, 1e-12);
  EXPECT_NEAR(profile.worst->fraction, (130 - 140 - rise) / 50, 1e-14);
  EXPECT_EQ(profile.verdict, ClearanceVerdict::kBlocked);
}

TEST(ExactProfile, TheWorstObstacleIsTheLeastInFirstZonesNotInMetres) {
  std::vector<float> heights(101, 0.0F);
  heights[2] = 28;   // 2 m below the line, where the zone is 14 m
  heights[50] = 26;  // 4 m below it, where the zone is 50 m
  ExactProfileRequest request = requestFor(heights, 10);
  request.frequency = 300;
  request.k = 1e9;  // a flat earth keeps the numbers round
  const ExactProfile profile = exactProfile(request);
  EXPECT_EQ(profile.worst->sample, 50U);
  EXPECT_NEAR(profile.worst->fraction, 0.08, 1e-6);
  heights[2] = 29.9F;  // 0.1 m of 14 m
  EXPECT_EQ(exactProfile(request).worst->sample, 2U);
}

TEST(ExactProfile, TheEndsAreNoObstacles) {
  const std::vector<float> heights{100, 0, 100};
  ExactProfileRequest request = requestFor(heights, 1);
  request.startAntenna = 0;  // a clearance of 0 in a zone of 0
  request.endAntenna = 0;
  const ExactProfile profile = exactProfile(request);
  EXPECT_EQ(profile.worst->sample, 1U);
  EXPECT_EQ(profile.verdict, ClearanceVerdict::kClear);
}

TEST(ExactProfile, VerdictsChangeAtSixtyPercentAndAtGrazing) {
  EXPECT_EQ(verdictFor(0.6), ClearanceVerdict::kClear);
  EXPECT_EQ(verdictFor(5), ClearanceVerdict::kClear);
  EXPECT_EQ(verdictFor(std::nextafter(0.6, 0)), ClearanceVerdict::kMarginal);
  EXPECT_EQ(verdictFor(0), ClearanceVerdict::kMarginal);
  EXPECT_EQ(verdictFor(-1e-300), ClearanceVerdict::kBlocked);
  EXPECT_EQ(verdictFor(kNotANumber), ClearanceVerdict::kUnknown);
}

TEST(ExactProfile, VoidsCarryNoClearanceAndAreCounted) {
  const std::vector<float> heights{100, kVoidHeight, 90, std::numeric_limits<float>::quiet_NaN(), 100};
  const ExactProfile profile = exactProfile(requestFor(heights, 4));
  ASSERT_EQ(profile.status, ExactProfileStatus::kOk);
  EXPECT_EQ(profile.voids, 2);
  for (const std::size_t i : {1U, 3U}) {
    EXPECT_FALSE(profile.samples[i].ground);
    EXPECT_FALSE(profile.samples[i].clearance);
    EXPECT_TRUE(profile.samples[i].lineOfSight) << "the line is known all the same";
  }
  EXPECT_EQ(profile.worst->sample, 2U);
}

TEST(ExactProfile, WithAVoidOnTheWayOnlyABlockedPathIsCertain) {
  const std::vector<float> open{0, kVoidHeight, 0, 0, 0};
  ExactProfileRequest request = requestFor(open, 4);
  request.startAntenna = request.endAntenna = 500;
  ASSERT_TRUE(exactProfile(request).worst) << "the known ground is measured all the same";
  EXPECT_EQ(exactProfile(request).verdict, ClearanceVerdict::kUnknown) << "the void may hide an obstacle";
  const std::vector<float> filled{0, 0, 0, 0, 0};
  request.heights = filled;
  EXPECT_EQ(exactProfile(request).verdict, ClearanceVerdict::kClear);
  const std::vector<float> wall{0, kVoidHeight, 900, 0, 0};
  request.heights = wall;
  EXPECT_EQ(exactProfile(request).verdict, ClearanceVerdict::kBlocked);
}

TEST(ExactProfile, WithVoidsAllTheWayBetweenTheEndsThereIsNoVerdict) {
  const std::vector<float> heights{100, kVoidHeight, kVoidHeight, 100};
  const ExactProfile profile = exactProfile(requestFor(heights, 4));
  EXPECT_EQ(profile.status, ExactProfileStatus::kOk);
  EXPECT_FALSE(profile.worst);
  EXPECT_EQ(profile.verdict, ClearanceVerdict::kUnknown);
}

TEST(ExactProfile, AVoidAtAnEndLeavesNoLineOfSight) {
  for (const std::vector<float>& heights : {std::vector<float>{kVoidHeight, 10, 10}, {10, 10, kVoidHeight}}) {
    const ExactProfile profile = exactProfile(requestFor(heights, 4));
    EXPECT_EQ(profile.status, ExactProfileStatus::kVoidEnd);
    ASSERT_EQ(profile.samples.size(), 3U);
    EXPECT_FALSE(profile.samples[1].lineOfSight);
    EXPECT_FALSE(profile.samples[1].clearance);
    EXPECT_EQ(*profile.samples[1].ground, 10);
    EXPECT_EQ(profile.voids, 1);
    EXPECT_EQ(profile.verdict, ClearanceVerdict::kUnknown);
  }
}

TEST(ExactProfile, NothingButVoidsIsSaidSo) {
  const std::vector<float> heights(5, kVoidHeight);
  const ExactProfile profile = exactProfile(requestFor(heights, 4));
  EXPECT_EQ(profile.status, ExactProfileStatus::kAllVoid);
  EXPECT_EQ(profile.voids, 5);
  EXPECT_EQ(profile.verdict, ClearanceVerdict::kUnknown);
}

TEST(ExactProfile, TwoSamplesGiveALineButNoObstacle) {
  const std::vector<float> heights{100, 200};
  const ExactProfile profile = exactProfile(requestFor(heights, 4));
  EXPECT_EQ(profile.status, ExactProfileStatus::kOk);
  EXPECT_EQ(*profile.samples[0].lineOfSight, 130);
  EXPECT_EQ(*profile.samples[1].lineOfSight, 230);
  EXPECT_EQ(*profile.samples[0].clearance, 30);
  EXPECT_FALSE(profile.worst);
  EXPECT_EQ(profile.verdict, ClearanceVerdict::kUnknown);
}

TEST(ExactProfile, BadInputsComeBackAsAStatusWithoutSamples) {
  const std::vector<float> heights(5, 10.0F);
  const std::vector<float> one(1, 10.0F);
  EXPECT_EQ(exactProfile(requestFor(one, 4)).status, ExactProfileStatus::kTooFewSamples);
  EXPECT_EQ(exactProfile(requestFor({}, 4)).status, ExactProfileStatus::kTooFewSamples);
  for (const double bad : {0.0, -1.0, kNotANumber, kInfinity}) {
    ExactProfileRequest request = requestFor(heights, bad);
    EXPECT_EQ(exactProfile(request).status, ExactProfileStatus::kBadDistance) << bad;
    request = requestFor(heights, 4);
    request.k = bad;
    EXPECT_EQ(exactProfile(request).status, ExactProfileStatus::kBadEarthFactor) << bad;
    request = requestFor(heights, 4);
    request.frequency = bad;
    EXPECT_EQ(exactProfile(request).status, ExactProfileStatus::kBadFrequency) << bad;
    EXPECT_TRUE(exactProfile(request).samples.empty());
  }
  for (const double bad : {-0.5, kNotANumber, kInfinity}) {
    ExactProfileRequest request = requestFor(heights, 4);
    request.endAntenna = bad;
    EXPECT_EQ(exactProfile(request).status, ExactProfileStatus::kBadAntennaHeight) << bad;
  }
}

struct ExactProfileProperties : testing::Test {
  static constexpr unsigned kSeed = 20261115;
  std::mt19937 random{kSeed};

  void SetUp() override { RecordProperty("seed", static_cast<int>(kSeed)); }
  double between(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  }
  std::vector<float> randomHeights() {
    std::vector<float> heights(static_cast<std::size_t>(between(3, 400)));
    for (float& height : heights) height = static_cast<float>(between(-90, 3000));
    for (std::size_t i = 1; i + 1 < heights.size(); ++i)
      if (between(0, 1) < 0.1) heights[i] = kVoidHeight;
    return heights;
  }
  ExactProfileRequest randomRequest(const std::vector<float>& heights) {
    ExactProfileRequest request = requestFor(heights, between(0.2, 300));
    request.startAntenna = between(0, 300);
    request.endAntenna = between(0, 300);
    request.k = between(0.5, 5);
    request.frequency = between(20, 20000);
    return request;
  }
};

TEST_F(ExactProfileProperties, SwappedEndsSeeTheSameClearancesToTheLastBit) {
  for (int run = 0; run < 100; ++run) {
    SCOPED_TRACE("seed " + std::to_string(kSeed) + " run " + std::to_string(run));
    const std::vector<float> heights = randomHeights();
    std::vector<float> mirrored(heights.rbegin(), heights.rend());
    const ExactProfileRequest request = randomRequest(heights);
    ExactProfileRequest swapped = request;
    swapped.heights = mirrored;
    std::swap(swapped.startAntenna, swapped.endAntenna);
    const ExactProfile there = exactProfile(request);
    const ExactProfile back = exactProfile(swapped);
    const std::size_t last = heights.size() - 1;
    for (std::size_t i = 0; i <= last; ++i) {
      ASSERT_EQ(there.samples[i].clearance, back.samples[last - i].clearance) << i;
      ASSERT_EQ(there.samples[i].fresnelRadius, back.samples[last - i].fresnelRadius) << i;
    }
    EXPECT_EQ(there.verdict, back.verdict);
    EXPECT_EQ(there.voids, back.voids);
  }
}

TEST_F(ExactProfileProperties, AGreaterFactorOrAHigherAntennaNeverTakesClearanceAway) {
  for (int run = 0; run < 100; ++run) {
    SCOPED_TRACE("seed " + std::to_string(kSeed) + " run " + std::to_string(run));
    const std::vector<float> heights = randomHeights();
    const ExactProfileRequest request = randomRequest(heights);
    ExactProfileRequest straighter = request;
    straighter.k *= 1.1;
    ExactProfileRequest higher = request;
    higher.endAntenna += 10;
    const ExactProfile profile = exactProfile(request);
    const ExactProfile withFactor = exactProfile(straighter);
    const ExactProfile withHeight = exactProfile(higher);
    for (std::size_t i = 1; i + 1 < heights.size(); ++i) {
      if (!profile.samples[i].clearance) continue;
      ASSERT_GT(*withFactor.samples[i].clearance, *profile.samples[i].clearance) << i;
      ASSERT_GT(*withHeight.samples[i].clearance, *profile.samples[i].clearance) << i;
    }
  }
}

TEST_F(ExactProfileProperties, AHigherFrequencyNarrowsEveryZone) {
  const std::vector<float> heights = randomHeights();
  const ExactProfileRequest request = randomRequest(heights);
  ExactProfileRequest faster = request;
  faster.frequency *= 4;
  const ExactProfile profile = exactProfile(request);
  const ExactProfile narrow = exactProfile(faster);
  for (std::size_t i = 0; i < heights.size(); ++i)
    EXPECT_NEAR(narrow.samples[i].fresnelRadius, profile.samples[i].fresnelRadius / 2, 1e-9);
}

}  // namespace
}  // namespace zel
