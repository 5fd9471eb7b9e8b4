#include "models/longrice/model_warnings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <string>
#include <vector>

#include "links.h"

namespace zel::longrice {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double justBelow(double value) { return std::nextafter(value, -kInfinity); }
double justAbove(double value) { return std::nextafter(value, kInfinity); }

// What each case starts from and nothing is wrong with.
Link plain() { return smoothLink(usualParameters(450), 30, 10, 20e3); }

// With the frequency itself, in MHz.
Link atFrequency(double frequency) { return smoothLink(usualParameters(frequency), 30, 10, 20e3); }

Link withHeight(std::size_t j, double height) {
  Link link = plain();
  link.terrain.structuralHeights[j] = height;
  return link;
}

Link withDistance(double distance) {
  Link link = plain();
  link.terrain.distance = distance;
  return link;
}

Link withAngle(std::size_t j, double angle) {
  Link link = plain();
  link.terrain.horizonAngles[j] = angle;
  return link;
}

Link withHorizon(std::size_t j, double partOfSmooth) {
  Link link = plain();
  link.terrain.horizonDistances[j] = partOfSmooth * link.smoothHorizonDistances[j];
  return link;
}

Link withRefractivity(double refractivity) {
  Link link = plain();
  link.environment.surfaceRefractivity = refractivity;
  return link;
}

std::vector<std::string> texts(const Link& link, int climate = 5) {
  return describe(warningsOf(link, climate), link, climate);
}

// Exactly this one warning, whose sentence holds the value.
void expectOnly(const Link& link, Warning warning, const std::string& value, int climate = 5) {
  const WarningSet warnings = warningsOf(link, climate);
  WarningSet expected;
  expected.add(warning);
  EXPECT_TRUE(warnings == expected) << value;
  const std::vector<std::string> sentences = texts(link, climate);
  ASSERT_EQ(sentences.size(), 1U) << value;
  EXPECT_NE(sentences[0].find(value), std::string::npos) << sentences[0];
  EXPECT_NE(sentences[0].back(), '.') << sentences[0];
}

TEST(Warnings, AreNoneForAPlainPath) {
  EXPECT_TRUE(warningsOf(plain(), 5).empty());
  EXPECT_TRUE(texts(plain()).empty());
}

TEST(Warnings, BeginAtTheLimitsOfTheFrequency) {
  for (const double fine : {40.0, 10000.0}) EXPECT_TRUE(warningsOf(atFrequency(fine), 5).empty()) << fine;
  for (const double unusual : {20.0, 39.99, 10000.1, 20000.0})
    EXPECT_TRUE(warningsOf(atFrequency(unusual), 5).has(Warning::kFrequencyUnusual)) << unusual;
  for (const double out : {19.99, 20000.1}) {
    EXPECT_TRUE(warningsOf(atFrequency(out), 5).has(Warning::kFrequencyOutOfRange)) << out;
    EXPECT_FALSE(warningsOf(atFrequency(out), 5).has(Warning::kFrequencyUnusual)) << out;
  }
  expectOnly(atFrequency(39.9), Warning::kFrequencyUnusual, "frequency of 39.9 MHz");
  expectOnly(atFrequency(20500), Warning::kFrequencyOutOfRange, "frequency of 20500 MHz");
}

TEST(Warnings, BeginAtTheLimitsOfTheHeights) {
  const Warning unusual[] = {Warning::kTransmitterHeightUnusual, Warning::kReceiverHeightUnusual};
  const Warning out[] = {Warning::kTransmitterHeightOutOfRange, Warning::kReceiverHeightOutOfRange};
  const std::string whose[] = {"transmitter's antenna height of ", "receiver's antenna height of "};
  for (std::size_t j = 0; j < 2; ++j) {
    for (const double fine : {1.0, 1000.0}) EXPECT_TRUE(warningsOf(withHeight(j, fine), 5).empty());
    for (const double height : {0.5, justBelow(1), justAbove(1000), 3000.0})
      EXPECT_TRUE(warningsOf(withHeight(j, height), 5).has(unusual[j])) << height;
    for (const double height : {justBelow(0.5), justAbove(3000)}) {
      EXPECT_TRUE(warningsOf(withHeight(j, height), 5).has(out[j])) << height;
      EXPECT_FALSE(warningsOf(withHeight(j, height), 5).has(unusual[j])) << height;
    }
    expectOnly(withHeight(j, 0.7), unusual[j], whose[j] + "0.7 m");
    expectOnly(withHeight(j, 3500), out[j], whose[j] + "3500 m");
  }
}

TEST(Warnings, BeginAtTheLimitsOfTheRefractivity) {
  for (const double fine : {250.0, 400.0}) EXPECT_TRUE(warningsOf(withRefractivity(fine), 5).empty());
  EXPECT_FALSE(warningsOf(withRefractivity(justBelow(250)), 5).empty());
  EXPECT_FALSE(warningsOf(withRefractivity(justAbove(400)), 5).empty());
  expectOnly(withRefractivity(420.5), Warning::kRefractivityOutOfRange, "420.5 N-units");
}

TEST(Warnings, KnowGroundWhoseImpedanceIsNoGrounds) {
  Link link = plain();
  link.environment.surfaceImpedance = {3, 2.999};
  EXPECT_TRUE(warningsOf(link, 5).empty());
  link.environment.surfaceImpedance = {3, -3};
  expectOnly(link, Warning::kGroundOutOfRange, "permittivity and conductivity");
}

TEST(Warnings, SayWhichClimateIsUsedForOneThatIsNone) {
  for (const int climate : {1, 7}) EXPECT_TRUE(warningsOf(plain(), climate).empty());
  expectOnly(plain(), Warning::kClimateUnknown, "climate code 0", 0);
  expectOnly(plain(), Warning::kClimateUnknown, "5, Continental Temperate", 8);
}

TEST(Warnings, BeginAtTheLimitsOfTheDistance) {
  for (const double fine : {1e3, 1000e3}) EXPECT_TRUE(warningsOf(withDistance(fine), 5).empty()) << fine;
  EXPECT_TRUE(warningsOf(withDistance(justAbove(1000e3)), 5).has(Warning::kDistanceLong));
  EXPECT_TRUE(warningsOf(withDistance(2000e3), 5).has(Warning::kDistanceLong));
  EXPECT_FALSE(warningsOf(withDistance(justAbove(2000e3)), 5).has(Warning::kDistanceLong));
  EXPECT_TRUE(warningsOf(withDistance(justBelow(1e3)), 5).has(Warning::kDistanceTooShort));
  expectOnly(withDistance(1500e3), Warning::kDistanceLong, "1500.0 km");
  expectOnly(withDistance(2500e3), Warning::kDistanceTooLong, "2500.0 km");
  expectOnly(withDistance(900), Warning::kDistanceTooShort, "0.9 km");
}

// Five times the difference of the effective heights: 0.2 of slope.
TEST(Warnings, KnowARayTooSteepForSmallAngles) {
  Link link = smoothLink(usualParameters(), 530, 30, 2500);
  EXPECT_FALSE(warningsOf(link, 5).has(Warning::kDistanceTooShortForHeights));
  link.terrain.distance = justBelow(2500);
  expectOnly(link, Warning::kDistanceTooShortForHeights,
             "2.5 km is too short for effective heights of 530 m and 30 m");
}

TEST(Warnings, BeginAtTheLimitOfTheHorizonAngles) {
  const Warning steep[] = {Warning::kTransmitterHorizonSteep, Warning::kReceiverHorizonSteep};
  const std::string whose[] = {"transmitter's horizon stands at ", "receiver's horizon stands at "};
  for (std::size_t j = 0; j < 2; ++j) {
    for (const double fine : {0.2, -0.2}) EXPECT_TRUE(warningsOf(withAngle(j, fine), 5).empty());
    for (const double angle : {justAbove(0.2), justBelow(-0.2)})
      EXPECT_TRUE(warningsOf(withAngle(j, angle), 5).has(steep[j]));
    expectOnly(withAngle(j, 0.251), steep[j], whose[j] + "0.251 rad");
    expectOnly(withAngle(j, -0.3), steep[j], whose[j] + "-0.3 rad");
  }
}

TEST(Warnings, BeginAtTheLimitsOfTheHorizonDistances) {
  const Warning near[] = {Warning::kTransmitterHorizonNear, Warning::kReceiverHorizonNear};
  const Warning far[] = {Warning::kTransmitterHorizonFar, Warning::kReceiverHorizonFar};
  const std::string whose[] = {"the transmitter's horizon is ", "the receiver's horizon is "};
  for (std::size_t j = 0; j < 2; ++j) {
    for (const double fine : {0.1, 3.0}) EXPECT_TRUE(warningsOf(withHorizon(j, fine), 5).empty()) << fine;
    expectOnly(withHorizon(j, 0.0999), near[j], whose[j]);
    expectOnly(withHorizon(j, 3.001), far[j], whose[j]);
  }
  // 30 m over an earth of 8492 km: 22.57 km.
  const std::string text = texts(withHorizon(0, 0.05)).front();
  EXPECT_NE(text.find("is 1.129 km away, less than a tenth of the 22.573 km"), std::string::npos) << text;
  const std::string farther = texts(withHorizon(0, 4)).front();
  EXPECT_NE(farther.find("more than three times"), std::string::npos) << farther;
}

TEST(Warnings, OfSeveralKindsComeTogetherInTheirOrder) {
  Link link = atFrequency(30);
  link.terrain.distance = 1200e3;
  link.terrain.horizonAngles[1] = 0.5;
  const std::vector<std::string> sentences = texts(link, 9);
  ASSERT_EQ(sentences.size(), 4U);
  EXPECT_NE(sentences[0].find("frequency"), std::string::npos);
  EXPECT_NE(sentences[1].find("climate"), std::string::npos);
  EXPECT_NE(sentences[2].find("1200.0 km"), std::string::npos);
  EXPECT_NE(sentences[3].find("receiver"), std::string::npos);
}

// 3.1 is just beyond 0.1 % and 99.9 %, whose deviate is 3.0902.
TEST(Warnings, CallDeviatesBeyondATenthOfAPercentUnusual) {
  for (const double usual : {0.0, 3.0902, 3.1, -3.1}) EXPECT_FALSE(isUnusualDeviate(usual)) << usual;
  for (const double unusual : {justAbove(3.1), -3.2, 40.0}) EXPECT_TRUE(isUnusualDeviate(unusual)) << unusual;
  WarningSet set;
  set.addIf(false, Warning::kDeviateUnusual);
  EXPECT_TRUE(set.empty());
  set.addIf(true, Warning::kDeviateUnusual);
  const std::vector<std::string> sentences = describe(set, plain(), 5);
  ASSERT_EQ(sentences.size(), 1U);
  EXPECT_NE(sentences[0].find("99.9 %"), std::string::npos);
}

}  // namespace
}  // namespace zel::longrice
