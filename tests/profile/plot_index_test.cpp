#include "profile/plot_index/plot_index.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"
#include "profile/calculation/earth_curvature.h"
#include "support/scripted_terrain.h"

namespace zel {
namespace {

// 10 km in 10 intervals with 2 samples beyond each end: T 14, L 14 km, spacing 1 km.
PathGeometry roundPath() {
  PathGeometry path;
  path.distance = 10;
  path.intervals = 10;
  path.extension = path.firstIndex = 2;
  path.lastIndex = 12;
  path.samples = 14;
  path.spacing = 1;
  path.extendedLength = 14;
  return path;
}

const PlotIndex kIndex{roundPath()};

TEST(PlotIndex, SamplesAreDrawnAtTheirNumberOfSpacings) {
  EXPECT_EQ(kIndex.sampleX(1), 1);
  EXPECT_EQ(kIndex.sampleX(14), 14) << "the last sample stands at the forward point";
  EXPECT_EQ(kIndex.expandedGroundX(1), 2);
  EXPECT_EQ(kIndex.expandedGroundX(14), 15);
}

TEST(PlotIndex, TheAntennasStandOnTheirSamples) {
  EXPECT_EQ(kIndex.startX(), 2);
  EXPECT_EQ(kIndex.startX(), kIndex.sampleX(2));
  EXPECT_EQ(kIndex.endX(), 12);
  EXPECT_EQ(kIndex.endX(), kIndex.sampleX(12));
}

TEST(PlotIndex, DistanceFromTheStartAndPlotXAreOneConversion) {
  EXPECT_EQ(kIndex.distanceFromStart(7), 5);
  EXPECT_EQ(kIndex.distanceFromStart(0), -2) << "left of the start antenna";
  EXPECT_EQ(kIndex.xAtDistance(5), 7);
}

TEST(PlotIndex, SamplesWereTakenEvenlyFromBackPointToForwardPoint) {
  EXPECT_EQ(kIndex.takenAt(1), 0);
  EXPECT_EQ(kIndex.takenAt(14), 14);
  EXPECT_DOUBLE_EQ(kIndex.takenAt(2), 14.0 / 13.0);
}

TEST(PlotIndex, ASampleCarriesTheRiseOfTheXWhereItIsDrawn) {
  EXPECT_FALSE(kIndex.riseX(1));
  EXPECT_FALSE(kIndex.riseX(14));
  EXPECT_EQ(kIndex.riseX(2), 2);
  EXPECT_EQ(kIndex.riseX(13), 13);
  // The parabola over the chord at that x differs from the circle by some 1e-6 of itself here, hence 1e-4 m
  // of 3 m.
  const PathGeometry path = roundPath();
  const SampleArray<float> rise = curvatureRise(1.333F, path.samples, path.extendedLength);
  for (std::int32_t i = 2; i < path.samples; ++i) {
    const double x = *kIndex.riseX(i);
    EXPECT_NEAR(rise[i], 1000 * x * (14 - x) / (2 * 8502.0), 1e-4) << i;
  }
}

TEST(PlotIndex, RunsOfSamples) {
  EXPECT_EQ(kIndex.wholePlot(), (SampleRange{1, 14}));
  EXPECT_EQ(kIndex.stationToStation(), (SampleRange{2, 12}));
}

TEST(PlotIndex, TheExpandedPlotReachesOneSampleBeyondTheMarkers) {
  EXPECT_EQ(kIndex.expandedPlot(4.5, 8.5), (SampleRange{3, 9}));
  EXPECT_EQ(kIndex.expandedPlot(4.0, 8.0), (SampleRange{3, 9}));
  EXPECT_EQ(kIndex.expandedPlot(0.5, 13.9), (SampleRange{1, 14}));
  EXPECT_EQ(kIndex.expandedPlot(0.5, 1e30), (SampleRange{1, 14}));
}

TEST(PlotIndex, TheExpandedExportIsTheDrawnStretchCutToTheStations) {
  EXPECT_EQ(kIndex.expandedStationToStation(4.5, 8.5), (SampleRange{3, 9}));
  EXPECT_EQ(kIndex.expandedStationToStation(0.5, 13.9), (SampleRange{2, 12}));
}

TEST(PlotIndex, TheExpandedFresnelLineRoundsTheMarkersHalfToEven) {
  EXPECT_EQ(kIndex.expandedFresnel(4.5, 8.5), (SampleRange{4, 8}));
  EXPECT_EQ(kIndex.expandedFresnel(3.5, 9.5), (SampleRange{4, 10}));
  EXPECT_EQ(kIndex.expandedFresnel(0.5, 13.9), (SampleRange{2, 12}));
  EXPECT_THROW(kIndex.expandedFresnel(0, 40000), RuntimeError);
}

TEST(PlotIndex, AMarkersSampleIsTheNearestHalfToEven) {
  EXPECT_EQ(kIndex.markerSample(4.4), 4);
  EXPECT_EQ(kIndex.markerSample(4.5), 4);
  EXPECT_EQ(kIndex.markerSample(5.5), 6);
}

TEST(PlotIndex, ThePointerReadsSampleKAtKMinusOneSpacings) {
  EXPECT_EQ(kIndex.pointerAt(0), (PointerPosition{1, 0}));
  EXPECT_EQ(kIndex.pointerAt(3.25), (PointerPosition{4, 0.25}));
  EXPECT_EQ(kIndex.pointerAt(12.5), (PointerPosition{13, 0.5}));
}

TEST(PlotIndex, APointerThatWouldNeedASampleBeyondTheLastIsIgnored) {
  EXPECT_FALSE(kIndex.pointerAt(13));
  EXPECT_FALSE(kIndex.pointerAt(13.5));
  EXPECT_FALSE(kIndex.pointerAt(14));
  EXPECT_FALSE(kIndex.pointerAt(1e300));
}

TEST(PlotIndex, APointerLeftOfThePlotIsIgnored) {
  EXPECT_FALSE(kIndex.pointerAt(-0.001));
  EXPECT_FALSE(kIndex.pointerAt(std::nan("")));
}

TEST(PlotIndex, WithoutALaidOutPathThePointerReadsNothing) {
  EXPECT_FALSE(PlotIndex(PathGeometry{}).pointerAt(1));
}

TEST(PlotIndex, HeightsUnderThePointerAreInterpolatedWithTheirRise) {
  SampleArray<float> elevation(14);
  SampleArray<float> rise(14);
  elevation[4] = 100;
  elevation[5] = 200;
  rise[4] = 2;
  rise[5] = 4;
  const PointerHeights heights = PlotIndex::heightsAt({4, 0.25}, elevation, rise);
  EXPECT_DOUBLE_EQ(heights.rise, 2.5);
  EXPECT_DOUBLE_EQ(heights.ground, 127.5);
  EXPECT_THROW(PlotIndex::heightsAt({14, 0}, elevation, rise), RuntimeError);
}

TEST(PlotIndex, TheLineOfSightIsTheAntennaTopAtTheStartsX) {
  const LineOfSight line{130, 230, 10};
  EXPECT_DOUBLE_EQ(kIndex.lineOfSightAt(line, kIndex.startX()), 130);
  EXPECT_DOUBLE_EQ(kIndex.lineOfSightAt(line, kIndex.endX()), 230);
  EXPECT_DOUBLE_EQ(kIndex.lineOfSightAt(line, 0), 110) << "the height at the start that exports carry";
}

TEST(PlotIndex, AbsoluteIndexTimesSlopeTimesSpacingReachesTheAntennaTop) {
  const PathGeometry path = computePathGeometry(test::PlaneGeodesy(), {40, 8}, {40.3, 8.4}, 50, 1000);
  const PlotIndex index(path);
  const LineOfSight line{412.25F, 612.25F, static_cast<float>(200.0 / path.distance)};
  const double atZero = index.lineOfSightAt(line, 0);
  EXPECT_NEAR(path.firstIndex * (line.slope * path.spacing) + atZero, line.startTop, 1e-9);
}

}  // namespace
}  // namespace zel
