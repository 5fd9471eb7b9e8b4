#include "profile/sampling/terrain_sampling.h"

#include <gtest/gtest.h>

#include "support/scripted_terrain.h"

namespace zel {
namespace {

struct SharedTerrain : TerrainData {};

using Calls = std::vector<std::string>;

TEST(TerrainSampling, AsksTheSamplerInItsFixedOrder) {
  test::ScriptedTerrainSampler sampler;
  const auto terrain = std::make_shared<SharedTerrain>();
  const RawSamples sampled = sampleTerrain(sampler, terrain, {{36.25, -84.5}, {36.75, -84.25}, 1, 5, 7});
  EXPECT_EQ(sampler.calls, (Calls{"AttachTerrainData", "SetEndPoints 36.25 -84.5 36.75 -84.25",
                                  "SetBoundingBox -84.25 -84.5 36.75 36.25", "SetMethod 1",
                                  "SetSampleCount 5", "SetSource 7", "SetOptions 2 3", "Sample 5"}));
  EXPECT_EQ(sampler.attached, terrain);
  EXPECT_EQ(sampled.status, 0);
}

TEST(TerrainSampling, TheBoundingBoxIsTheSameWhicheverEndLiesFurtherOut) {
  test::ScriptedTerrainSampler sampler;
  sampleTerrain(sampler, nullptr, {{36.75, -84.25}, {36.25, -84.5}, 0, 2, 3});
  EXPECT_EQ(sampler.calls[2], "SetBoundingBox -84.25 -84.5 36.75 36.25");
}

TEST(TerrainSampling, HeightsAreCountedFromOneAtTheBackPoint) {
  test::ScriptedTerrainSampler sampler;
  sampler.height = [](std::size_t i) { return static_cast<float>(i) * 10; };
  const RawSamples sampled = sampleTerrain(sampler, nullptr, {{1, 1}, {0, 0}, 0, 4, 3});
  EXPECT_EQ(sampled.heights, SampleArray<float>(std::vector<float>{10, 20, 30, 40}));
}

TEST(TerrainSampling, HandsOnTheStatus) {
  test::ScriptedTerrainSampler sampler;
  for (const int status : {0, 1, 2, 3, 4, 5, 99, -1}) {
    sampler.status = status;
    EXPECT_EQ(sampleTerrain(sampler, nullptr, {}).status, status);
  }
}

TEST(TerrainSampling, AskingForNoSamplesIsLeftToTheSampler) {
  test::ScriptedTerrainSampler sampler;
  sampler.status = kSamplerUnderRange;
  const RawSamples sampled = sampleTerrain(sampler, nullptr, {{1, 1}, {0, 0}, 0, -3, 3});
  EXPECT_EQ(sampled.status, kSamplerUnderRange);
  EXPECT_TRUE(sampled.heights.empty());
  EXPECT_EQ(sampler.calls.back(), "Sample 0");
}

TEST(TerrainSampling, TheExtendedPathRunsFromBackPointToForwardPoint) {
  PathGeometry path;
  path.forward = {2, 3};
  path.back = {-1, -2};
  path.samples = 1100;
  const SamplingRequest request = extendedPathRequest(path, 1, 9);
  EXPECT_EQ(request.forward, path.forward);
  EXPECT_EQ(request.back, path.back);
  EXPECT_EQ(request.samples, 1100);
  EXPECT_EQ(request.method, 1);
  EXPECT_EQ(request.source, 9);
}

TEST(TerrainSampling, FromStationToStationTheFirstSampleLiesAtTheStart) {
  const SamplingRequest request = stationToStationRequest({1, 2}, {3, 4}, 7, 0, 3);
  EXPECT_EQ(request.back, (GeoPoint{1, 2}));
  EXPECT_EQ(request.forward, (GeoPoint{3, 4}));
  EXPECT_EQ(request.samples, 7);
}

}  // namespace
}  // namespace zel
