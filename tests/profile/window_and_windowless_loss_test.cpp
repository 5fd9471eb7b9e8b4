// Why the window's modeled loss and the windowless one differ on a path that leaves its start over a steep
// slope: the figures of docs/numbers.md, over the bundled terrain.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "profile/path_loss/modeled_loss.h"
#include "profile/view_state/clearance_readout.h"
#include "profile/view_state/window_model_run.h"
#include "zeltool/geodesy/wgs84_geodesy.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {
namespace {

constexpr GeoPoint kStart{36.40, -84.35}, kEnd{36.22, -84.12};
constexpr double kTolerance = 0.01;  // dB: the table's figures have two decimals

struct Horizon {
  double distance = 0;  // km from the start
  double height = 0;    // effective, of the start antenna, metres
};

struct WindowAndWindowlessLoss : testing::Test {
  Wgs84Geodesy geodesy;
  SourceDefinition bundled{3, "1 second", {ZEL_SOURCE_DIR "/data/terrain"}, true};
  TerrainLibrary terrain{[this](int) { return bundled; }, std::size_t{64} << 20U};
  const CalculationSettings density{100, 1000};
  const ModelParameters parameters{0, 5, 15, 0.005, 301, 0, 0};
  ProfileViewState window;
  std::vector<float> windowless;    // N points
  std::vector<float> intervalEnds;  // N + 1 points

  void SetUp() override {
    window.path = computePathGeometry(geodesy, kStart, kEnd, density.pointsPerKm, density.maxPoints);
    window.inputs.antennaHeights = {30, 30};
    window.inputs.frequency = 950;
    window.inputs.k = window.riseK = 1.333F;
    window.flags.resample = false;
    window.rawElevation =
        SampleArray<float>(sampled(window.path.back, window.path.forward, window.path.samples));
    window.elevation = window.rawElevation;
    windowless = sampled(kStart, kEnd, modelPoints(density, window.path.distance));
    intervalEnds = sampled(kStart, kEnd, window.path.intervals + 1);
  }
  std::vector<float> sampled(GeoPoint from, GeoPoint to, std::int32_t count) const {
    SampleRequest request;
    request.from = from;
    request.to = to;
    request.count = count;
    SampleResult result = terrain.sample(request);
    EXPECT_EQ(result.report.status, kSamplerOk) << result.report.reason;
    EXPECT_EQ(result.report.voids, 0);
    return std::move(result.heights);
  }
  ModelPath pathOver(const std::vector<float>& heights, double spacing) const {
    return {heights, static_cast<float>(spacing), {30, 30}, 950};
  }
  double lossOf(const ModelPath& path) const { return double{modeledLoss(path, parameters)}; }
  Horizon startHorizonOf(const ModelPath& path) const {
    const auto ground = modelPrediction(path, parameters).terrain();
    return {ground.horizonDistances[0] / 1000, ground.effectiveHeights[0]};
  }
  double spacing() const { return window.path.spacing * 1000; }  // D / N, metres
};

TEST_F(WindowAndWindowlessLoss, DifferByTwoDecibelsWhereTheStartStandsOnASlope) {
  const std::int16_t points = modelPoints(density, window.path.distance);
  ASSERT_EQ(points, 1000);
  ASSERT_EQ(window.path.samples, 1100);
  EXPECT_NEAR(lossOf(pathOver(windowless, double{modelSpacing(window.path.distance, points)})), 196.30,
              kTolerance);
  EXPECT_NEAR(lossOf(windowModelPath(window)), 198.32, kTolerance);
  EXPECT_EQ(windowModelPath(window).spacing, modelSpacing(window.path.distance, points))
      << "both are told D / N";
}

TEST_F(WindowAndWindowlessLoss, NeitherTheSpacingNorTheNumberOfPointsMakesTheDifference) {
  EXPECT_NEAR(lossOf(pathOver(windowless, window.path.distance * 1000 / 999)), 196.30, kTolerance);
  EXPECT_NEAR(lossOf(pathOver(intervalEnds, spacing())), 196.28, kTolerance);
}

TEST_F(WindowAndWindowlessLoss, TheGroundUnderTheStartAloneMakesIt) {
  const PathGeometry& path = window.path;
  const PlotIndex index = window.plotIndex();
  EXPECT_NEAR(index.distanceFromStart(index.takenAt(path.firstIndex)) * 1000, -27.45, 0.01);  // metres
  EXPECT_NEAR((index.takenAt(path.lastIndex) - index.endX()) * 1000, -1.31, 0.01);
  const float groundInWindow = window.rawElevation[path.firstIndex];
  EXPECT_NEAR(intervalEnds.front(), 546.0, 0.1);
  EXPECT_NEAR(groundInWindow, 553.5, 0.1);

  std::vector<float> raisedStart = intervalEnds;
  raisedStart.front() = groundInWindow;
  EXPECT_NEAR(lossOf(pathOver(raisedStart, spacing())), 198.30, kTolerance);

  const Horizon exact = startHorizonOf(pathOver(intervalEnds, spacing()));
  const Horizon raised = startHorizonOf(pathOver(raisedStart, spacing()));
  const Horizon drawn = startHorizonOf(windowModelPath(window));
  EXPECT_NEAR(exact.distance, 2.53, 0.01);
  EXPECT_NEAR(exact.height, 167, 1);
  EXPECT_NEAR(raised.distance, 7.59, 0.01) << "the near edge is no horizon any more";
  EXPECT_NEAR(raised.height, 115, 1);
  EXPECT_NEAR(drawn.distance, 7.61, 0.01);
  EXPECT_NEAR(drawn.height, 117, 1);
}

TEST_F(WindowAndWindowlessLoss, TheClearanceReadOutStandsOnTheWindowsSamples) {
  ExactProfileRequest request;
  request.distance = window.path.distance;
  request.heights = intervalEnds;
  request.startAntenna = request.endAntenna = 30;
  request.k = 1.333;
  request.frequency = 950;
  const ExactProfile exact = exactProfile(request);
  const PathClearance drawn = pathClearance(window);
  ASSERT_TRUE(exact.worst && drawn.worst);
  EXPECT_NEAR(exact.worst->clearance, -455.8, 0.1);  // metres
  EXPECT_NEAR(drawn.worst->clearance, -450.6, 0.1);
  EXPECT_NEAR(drawn.worst->distance, exact.worst->distance, window.path.spacing);
  EXPECT_EQ(drawn.verdict, exact.verdict);
}

}  // namespace
}  // namespace zel
