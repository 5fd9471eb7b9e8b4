// Loss and verdict of links, one after the other.
#include "analysis/link_analysis.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <memory>

#include "analysis/link_computation.h"
#include "analysis/link_stretches.h"
#include "support/environment_variable.h"
#include "support/offscreen.h"
#include "support/temporary_folder.h"
#include "zel/geodesic.h"
#include "zel/path_loss.h"
#include "zel/profile_control.h"

namespace zel::host {
namespace {

class LinkAnalysisTest : public test::OffscreenTest<QGuiApplication> {
 protected:
  void SetUp() override {
    OffscreenTest::SetUp();
    static int run = 0;
    component_.SetClientApp(
        makePropertyBag({{"Title", "Analysis " + std::to_string(++run)}, {"Path", folder_.path().string()}}));
    component_.let_StaDatum(1);
    plan_.stations[1] = {"North ridge", {36.40, -84.35}, 30};
    plan_.stations[2] = {"South hill", {36.22, -84.12}, 30};
    plan_.links[1] = {1, 2, std::nullopt};
  }
  static bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 60'000); }

  test::TemporaryFolder folder_;
  test::EnvironmentVariable config_{"XDG_CONFIG_HOME", (folder_ / "config").string()};
  ProfileControl component_;
  Plan plan_;
};

TEST_F(LinkAnalysisTest, GivesTheNumbersOfThePublicFunctions) {
  const LinkResult result = analyseLink(plan_, plan_.links.at(1));
  ASSERT_TRUE(result.error.empty()) << result.error;
  PathLossRequest request;
  request.from = {36.40, -84.35};
  request.to = {36.22, -84.12};
  request.fromHeight = request.toHeight = 30;
  const PathLoss loss = computePathLoss(request);
  EXPECT_TRUE(result.done);
  EXPECT_DOUBLE_EQ(result.distanceKm, loss.distanceKm);
  EXPECT_EQ(result.modeledDb, loss.modeledDb);
  EXPECT_DOUBLE_EQ(result.freeSpaceDb, loss.freeSpaceDb);
  EXPECT_EQ(result.terrain, "1 second (bundled sample terrain)");
}

TEST_F(LinkAnalysisTest, StretchesCoverThePathWithoutGaps) {
  const LinkResult result = analyseLink(plan_, plan_.links.at(1));
  ASSERT_FALSE(result.stretches.empty());
  EXPECT_EQ(result.stretches.front().fromKm, 0);
  EXPECT_DOUBLE_EQ(result.stretches.back().toKm, result.distanceKm);
  for (std::size_t i = 1; i < result.stretches.size(); ++i) {
    EXPECT_EQ(result.stretches[i].fromKm, result.stretches[i - 1].toKm);
    EXPECT_EQ(result.stretches[i].positions.front(), result.stretches[i - 1].positions.back());
    EXPECT_NE(result.stretches[i].kind, result.stretches[i - 1].kind);
  }
}

TEST_F(LinkAnalysisTest, StretchesFollowClearanceZoneAndVoids) {
  PathProfile profile;
  constexpr double kVoid = std::numeric_limits<double>::quiet_NaN();
  profile.clearanceM = {30, 30, 5.9, -1, kVoid, 6, 30};
  for (int i = 0; i < 7; ++i) {
    profile.distancesKm.push_back(i);
    profile.positions.push_back({i * 0.01, 0});
    profile.fresnel1M.push_back(i == 0 || i == 6 ? 0 : 10);  // 60 % are 6 m
  }
  using Kind = LinkStretch::Kind;
  const std::vector<LinkStretch> stretches = linkStretches(profile);
  ASSERT_EQ(stretches.size(), 5U);
  const Kind kinds[] = {Kind::kClear, Kind::kMarginal, Kind::kBlocked, Kind::kUnknown, Kind::kClear};
  const double ends[] = {1.5, 2.5, 3.5, 4.5, 6};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(stretches[i].kind, kinds[i]) << i;
    EXPECT_EQ(stretches[i].toKm, ends[i]) << i;
  }
}

TEST_F(LinkAnalysisTest, AnEndIsAsItsNeighbourSinceTheVerdictLeavesItOut) {
  PathProfile profile;
  profile.clearanceM = {0, -5, -5, 0};
  profile.distancesKm = {0, 1, 2, 3};
  profile.positions = {{0, 179.99}, {0, -179.99}, {0, -179.97}, {0, -179.95}};
  profile.fresnel1M = {0, 10, 10, 0};
  const std::vector<LinkStretch> stretches = linkStretches(profile);
  ASSERT_EQ(stretches.size(), 1U);
  EXPECT_EQ(stretches.front().kind, LinkStretch::Kind::kBlocked);
}

TEST_F(LinkAnalysisTest, ALinkWithoutTerrainHasAnErrorWithThePlace) {
  plan_.stations[1].position = {10, 10};
  const LinkResult result = analyseLink(plan_, plan_.links.at(1));
  EXPECT_TRUE(result.done);
  EXPECT_FALSE(result.error.empty());
  EXPECT_FALSE(result.modeledDb);
}

TEST_F(LinkAnalysisTest, ManyLinksAreComputedWithoutAStallAndTheChosenOneFirst) {
  for (LinkId id = 2; id <= 50; ++id) plan_.links[id] = {1, 2, 400.0 + id};
  LinkAnalysis analysis(plan_);
  analysis.setTerrain(TerrainMap::open(3));
  std::vector<LinkId> order;
  analysis.onResult = [&](LinkId id) { order.push_back(id); };
  analysis.updateAll();
  analysis.first(40);
  EXPECT_EQ(analysis.waiting(), 50U);
  ASSERT_TRUE(waitFor([&] { return analysis.waiting() == 0; }));
  EXPECT_EQ(order.size(), 50U);
  EXPECT_EQ(order.front(), 40U);
  EXPECT_NEAR(analysis.find(50)->frequencyMhz, 450, 1e-9);
}

TEST_F(LinkAnalysisTest, PausedNothingIsComputedAndChangesOfMeanwhileCount) {
  LinkAnalysis analysis(plan_);
  analysis.setTerrain(TerrainMap::open(3));
  analysis.pause(true);
  analysis.updateAll();
  QCoreApplication::processEvents();
  EXPECT_EQ(analysis.waiting(), 1U);
  plan_.links[1].frequencyMhz = 450;
  analysis.pause(false);
  ASSERT_TRUE(waitFor([&] { return analysis.waiting() == 0; }));
  EXPECT_DOUBLE_EQ(analysis.find(1)->frequencyMhz, 450);
}

TEST_F(LinkAnalysisTest, WhatLeavesTheTerrainIsToldWithItsFirstPlaceInThePlansDatum) {
  component_.let_StaDatum(0);                // NAD-27
  plan_.stations[2].position = {36.4, -85};  // west of the terrain, which ends at 84.41375 W
  LinkAnalysis analysis(plan_);
  analysis.setTerrain(TerrainMap::open(3));
  analysis.updateAll();
  ASSERT_TRUE(waitFor([&] { return analysis.waiting() == 0; }));
  const LinkResult& result = *analysis.find(1);
  EXPECT_TRUE(result.noTerrain);
  ASSERT_TRUE(result.outside);
  EXPECT_NEAR(mapPosition(*result.outside).position.longitude, -84.41375, 0.001);  // a sample's distance
  EXPECT_NEAR(result.outside->latitude, 36.4, 0.01);
  EXPECT_GT(result.distanceKm, 50) << "distance and bearing need no ground";
}

TEST_F(LinkAnalysisTest, AnotherTerrainIsReadByWhatWaitsAndNothingAtAllAfterTheEnd) {
  for (LinkId id = 2; id <= 20; ++id) plan_.links[id] = {1, 2, 400.0 + id};
  LinkAnalysis analysis(plan_);
  analysis.setTerrain(TerrainMap::open(3));
  analysis.updateAll();
  QCoreApplication::processEvents();  // some are being read
  analysis.setTerrain(TerrainMap::open(3));
  ASSERT_TRUE(waitFor([&] { return analysis.waiting() == 0; }));
  analysis.end();
  analysis.updateAll();
  EXPECT_EQ(analysis.waiting(), 20U);
  QCoreApplication::processEvents();
  EXPECT_EQ(analysis.waiting(), 20U);
}

TEST_F(LinkAnalysisTest, AnAntennaOnTheGroundKeepsTheProfileAwayAndNotTheFigures) {
  EXPECT_EQ(antennaProblem(plan_.stations[1], plan_.stations[2]), "");
  plan_.stations[2].antennaM = 0;
  const LinkResult result = analyseLink(plan_, plan_.links.at(1));
  EXPECT_EQ(result.error, "");
  EXPECT_TRUE(result.modeledDb);
  EXPECT_EQ(result.profileProblem.rfind("the antenna of South hill stands on the ground", 0), 0U)
      << result.profileProblem;
  plan_.stations[1].antennaM = 0.4;
  EXPECT_EQ(antennaProblem(plan_.stations[1], plan_.stations[2]).rfind("the antenna of North ridge", 0), 0U);
}

TEST_F(LinkAnalysisTest, ALinkThatIsGoneIsForgotten) {
  LinkAnalysis analysis(plan_);
  analysis.updateAll();
  plan_.links.clear();
  analysis.update({1});
  EXPECT_EQ(analysis.waiting(), 0U);
  EXPECT_EQ(analysis.find(1), nullptr);
}

}  // namespace
}  // namespace zel::host
