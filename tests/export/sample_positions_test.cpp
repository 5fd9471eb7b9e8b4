// Exported positions against those of the real sampler, on a path that is long enough for its bearings at
// both ends to differ.
#include <gtest/gtest.h>

#include "export/export_profile.h"
#include "zeltool/geodesy/wgs84_geodesy.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {
namespace {

constexpr double kTolerance = 1.5e-8;  // degrees: 1.5 mm, the sampler's own interpolation being good to 1 mm

TEST(SamplePositions, AreThoseOfTheSampler) {
  const Wgs84Geodesy geodesy;
  SourceDefinition bundled{3, "1 second", {ZEL_SOURCE_DIR "/data/terrain"}, true};
  const TerrainLibrary terrain([&bundled](int) { return bundled; }, std::size_t{64} << 20U);
  const PathGeometry path = computePathGeometry(geodesy, {36.40, -84.35}, {36.22, -84.12}, 100, 1000);
  SampleRequest request;
  request.from = path.back;
  request.to = path.forward;
  request.count = path.samples;
  const SampleResult sampled = terrain.sample(request);
  ASSERT_EQ(sampled.report.status, kSamplerOk) << sampled.report.reason;

  const SampleArray<GeoPoint> positions = samplePositions(geodesy, path);
  ASSERT_EQ(positions.span().size(), sampled.positions.size());
  for (std::size_t i = 0; i < sampled.positions.size(); ++i) {
    ASSERT_NEAR(positions.span()[i].latitude, sampled.positions[i].latitude, kTolerance) << i;
    ASSERT_NEAR(positions.span()[i].longitude, sampled.positions[i].longitude, kTolerance) << i;
  }
}

// The forward point lies on the bearing of the start beyond the end, so that the path from the back point to
// it is no longer exactly as long as the plot's x counts. 300 km along the 60th parallel.
TEST(SamplePositions, EndOnTheForwardPointWhereThePathBends) {
  const Wgs84Geodesy geodesy;
  const PathGeometry path = computePathGeometry(geodesy, {60, 10}, {60, 15.4}, 10, 1000);
  const SampleArray<GeoPoint> positions = samplePositions(geodesy, path);
  EXPECT_NEAR(positions[1].latitude, path.back.latitude, kTolerance);
  EXPECT_NEAR(positions[1].longitude, path.back.longitude, kTolerance);
  EXPECT_NEAR(positions[path.samples].latitude, path.forward.latitude, kTolerance);
  EXPECT_NEAR(positions[path.samples].longitude, path.forward.longitude, kTolerance);
}

}  // namespace
}  // namespace zel
