// Paths, losses and samples from several threads, with the settings of one moment.
#include "zel/path_calculator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "bundled_path.h"
#include "real_component.h"
#include "support/says.h"
#include "zel/members.h"
#include "zel/settings.h"
#include "zel/windows.h"

namespace zel {
namespace {

using test::kFrom;
using test::kTo;

class PathCalculatorTest : public test::RealComponent {};

PathLossRequest lossBetween(Position from, Position to) {
  PathLossRequest request;
  request.from = from;
  request.to = to;
  request.fromHeight = 30;
  request.toHeight = 12;
  request.frequencyMhz = 950;
  return request;
}

// What is not given comes from the settings.
template <typename Request>
Request bare(Position from, Position to) {
  Request request;
  request.from = from;
  request.to = to;
  return request;
}
const auto kBareProfile = bare<PathProfileRequest>(kFrom, kTo);
const auto kBareLoss = bare<PathLossRequest>(kFrom, kTo);

// Everything that tells two results apart.
std::string figures(const PathLoss& loss) {
  std::string text = std::to_string(loss.status) + loss.error + "/" + loss.terrain.sourceName;
  for (const double value : {loss.distanceKm, loss.modeledDb.value_or(-1), loss.reverseModeledDb.value_or(-1),
                             loss.freeSpaceDb, loss.averageM, loss.terrainIrregularityM})
    text += " " + std::to_string(value);
  for (const std::string& note : loss.notes) text += "; " + note;
  for (const std::string& warning : loss.warnings) text += "; " + warning;
  return text;
}

TEST_F(PathCalculatorTest, GivesTheFiguresOfTheFunctionsOfTheComponent) {
  set("Profile", "Prf_Per", "37");
  const auto calculator = PathCalculator::open();
  EXPECT_EQ(figures(calculator->loss(lossBetween(kFrom, kTo))),
            figures(computePathLoss(lossBetween(kFrom, kTo))));
  EXPECT_EQ(figures(calculator->loss(lossBetween(kFrom, {50, 8}))),
            figures(computePathLoss(lossBetween(kFrom, {50, 8}))));

  const PathProfile profile = calculator->profile(kBareProfile);
  const PathProfile direct = computePathProfile(kBareProfile);
  ASSERT_EQ(profile.status, 0) << profile.error;
  EXPECT_EQ(profile.clearanceM, direct.clearanceM);
  EXPECT_EQ(profile.notes, direct.notes);
  EXPECT_EQ(profile.terrain.files, direct.terrain.files);

  EXPECT_EQ(calculator->sample(kFrom, kTo, 100, 1, 3).elevations,
            sampleTerrain(kFrom, kTo, 100, 1, 3).elevations);
  EXPECT_EQ(calculator->sample(kFrom, kTo, 1, 0, 3).status, 4);
}

// All that a profile says, bit by bit.
void expectSame(const PathProfile& left, const PathProfile& right) {
  EXPECT_EQ(left.status, right.status);
  EXPECT_EQ(left.error, right.error);
  EXPECT_EQ(left.points, right.points);
  EXPECT_EQ(left.startHeightM, right.startHeightM);
  EXPECT_EQ(left.endHeightM, right.endHeightM);
  EXPECT_EQ(left.verdict, right.verdict);
  EXPECT_EQ(left.notes, right.notes);
  EXPECT_EQ(left.terrain.files, right.terrain.files);
  EXPECT_EQ(left.terrain.warnings, right.terrain.warnings);
  for (const auto member : {&PathProfile::distanceKm, &PathProfile::bearingDeg, &PathProfile::spacingM,
                            &PathProfile::startGroundM, &PathProfile::endGroundM, &PathProfile::minimumM,
                            &PathProfile::maximumM, &PathProfile::averageM, &PathProfile::k,
                            &PathProfile::frequencyMhz, &PathProfile::wavelengthM, &PathProfile::freeSpaceDb})
    EXPECT_EQ(left.*member, right.*member);
  for (const auto list : {&PathProfile::distancesKm, &PathProfile::groundM, &PathProfile::riseM,
                          &PathProfile::lineOfSightM, &PathProfile::fresnel1M, &PathProfile::clearanceM})
    EXPECT_EQ(left.*list, right.*list);
  ASSERT_EQ(left.worst.has_value(), right.worst.has_value());
  if (!left.worst) return;
  for (const auto member : {&PathObstacle::distanceKm, &PathObstacle::groundM, &PathObstacle::clearanceM,
                            &PathObstacle::clearancePercent})
    EXPECT_EQ((*left.worst).*member, (*right.worst).*member);
}

TEST_F(PathCalculatorTest, GivesProfilesOfSeveralFactorsAsEachByItself) {
  set("Profile", "Prf_Per", "12");
  const auto calculator = PathCalculator::open();
  const std::vector<std::optional<double>> factors{4.0 / 3, 2.0 / 3, std::nullopt, -1, 1e3};
  for (PathProfileRequest request :
       {kBareProfile, bare<PathProfileRequest>(kFrom, {50, 8}), bare<PathProfileRequest>({91, 0}, kTo),
        bare<PathProfileRequest>(kFrom, kFrom)}) {
    const std::vector<PathProfile> profiles = calculator->profiles(request, factors);
    ASSERT_EQ(profiles.size(), factors.size());
    for (std::size_t i = 0; i < factors.size(); ++i) {
      request.k = factors[i];
      expectSame(profiles[i], calculator->profile(request));
    }
  }
  const std::vector<PathProfile> profiles = calculator->profiles(kBareProfile, factors);
  EXPECT_LT(profiles[1].worst->clearanceM, profiles[0].worst->clearanceM);
  EXPECT_EQ(profiles[3].status, 5);
  EXPECT_TRUE(calculator->profiles(kBareProfile, {}).empty());
}

TEST_F(PathCalculatorTest, KeepsTheSettingsSourcesAndDatumOfItsOpening) {
  set("Profile", "Prf_Freq", "450");
  set("Settings", "CalcMethod", "1");
  set("Profile", "Prf_TRes", "7");
  const auto calculator = PathCalculator::open();
  const std::string before = figures(calculator->loss(lossBetween(kFrom, kTo)));
  const double frequency = calculator->loss(kBareLoss).frequencyMhz;
  EXPECT_EQ(frequency, 450);
  EXPECT_EQ(calculator->method(), 1);
  EXPECT_EQ(calculator->source(), 7);
  EXPECT_EQ(calculator->windowlessFrequencyMhz(), 450);

  set("Profile", "Prf_Freq", "2400");
  set("Profile", "Prf_Per", "10");
  set("ITM", "iRadioClimate", "1");
  useTile([](int, int) { return 100; });
  control_.let_StaDatum(0);
  EXPECT_EQ(figures(calculator->loss(lossBetween(kFrom, kTo))), before);
  EXPECT_EQ(calculator->loss(kBareLoss).frequencyMhz, 450);
  EXPECT_EQ(calculator->profile(kBareProfile).terrain.datumOperation, "");

  set("Profile", "Prf_TRes", "3");
  const auto later = PathCalculator::open();
  const PathLoss anew = later->loss(kBareLoss);
  EXPECT_EQ(anew.frequencyMhz, 2400);
  EXPECT_EQ(anew.averageM, 100);
  EXPECT_NE(anew.terrain.datumOperation, "");
}

TEST_F(PathCalculatorTest, TakesTheFrequencyOfGetPathLossWhereNothingIsStored) {
  EXPECT_EQ(PathCalculator::open()->windowlessFrequencyMhz(), 100);
  EXPECT_EQ(PathCalculator::open()->method(), 0);
  EXPECT_EQ(PathCalculator::open()->source(), 3);
}

TEST_F(PathCalculatorTest, LeavesOutTheWayBackWhenItIsNotWanted) {
  PathLossRequest request = lossBetween(kFrom, kTo);
  const PathLoss both = PathCalculator::open()->loss(request);
  request.wantReverse = false;
  const PathLoss one = PathCalculator::open()->loss(request);
  EXPECT_TRUE(both.reverseModeledDb);
  EXPECT_FALSE(one.reverseModeledDb);
  EXPECT_EQ(one.modeledDb, both.modeledDb);
  EXPECT_EQ(one.notes, both.notes);
}

TEST_F(PathCalculatorTest, GivesTheSameFiguresFromEightThreadsAtOnce) {
  const auto calculator = PathCalculator::open();
  constexpr int kThreads = 8, kPaths = 12;
  const auto all = [&] {
    std::string text;
    for (int i = 0; i < kPaths; ++i)
      text += figures(calculator->loss(
                  lossBetween(kFrom, {kTo.latitude + 0.004 * i, kTo.longitude - 0.005 * i}))) +
              "\n";
    return text;
  };
  const std::string expected = all();
  std::vector<std::string> results(kThreads);
  std::vector<std::thread> threads;
  for (std::string& result : results) threads.emplace_back([&] { result = all(); });
  for (std::thread& thread : threads) thread.join();
  for (const std::string& result : results) EXPECT_EQ(result, expected);
}

TEST_F(PathCalculatorTest, IsOpenedOnTheComponentsThreadAlone) {
  AutomationErrorCode code{};
  std::thread([&] {
    try {
      PathCalculator::open();
    } catch (const AutomationError& error) {
      code = error.code();
    }
  }).join();
  EXPECT_EQ(code, AutomationErrorCode::kWrongThread);
}

// An application made there would keep the component's own thread from its windows.
TEST_F(PathCalculatorTest, LeavesWindowsToTheComponentsThread) {
  std::string problem;
  std::thread([&] { problem = windowsProblem(); }).join();
  EXPECT_EQ(problem, "the component belongs to the thread that made the first ProfileControl");
}

TEST_F(PathCalculatorTest, TellsARefusedRequestInWords) {
  const auto calculator = PathCalculator::open();
  EXPECT_EQ(calculator->profile(bare<PathProfileRequest>({91, 0}, kTo)).status, 5);
  PathLossRequest request = kBareLoss;
  request.frequencyMhz = std::nan("");
  EXPECT_EQ(calculator->loss(request).status, 5);
  EXPECT_NE(calculator->sample(kFrom, {0, 0}, 10, 0, 3).error, "");
}

TEST(DescribedMembers, AreTheRowsOfLateBinding) {
  const std::vector<DescribedMember> members = describedMembers();
  ASSERT_EQ(members.size(), 24U);
  EXPECT_EQ(members.front().name, "ElevLines");
  EXPECT_EQ(members.front().resultType, "16-bit integer");
  EXPECT_EQ(members[17].name, "GetPathLoss");
  ASSERT_EQ(members[17].arguments.size(), 2U);
  EXPECT_EQ(members[17].arguments[1].name, "Sta2");
  EXPECT_EQ(members[17].arguments[1].type, "StationProfile_Type");
  EXPECT_EQ(members.back().name, "hWnd");
  for (const DescribedMember& member : members) EXPECT_FALSE(member.description.empty()) << member.name;
}

}  // namespace
}  // namespace zel
