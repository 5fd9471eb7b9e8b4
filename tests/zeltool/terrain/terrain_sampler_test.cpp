#include <gtest/gtest.h>

#include <vector>

#include "foundation/runtime_error.h"
#include "platform/terrain.h"
#include "rasters.h"

namespace zel {
namespace {

const std::string kSample = std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif";
constexpr GeoPoint kForward{36.4, -84.1}, kBack{36.2, -84.4};

std::shared_ptr<TerrainLibrary> sharedLibrary() {
  return std::make_shared<TerrainLibrary>(
      [](int code) {
        return SourceDefinition{code, "name", {kSample}, false};
      },
      1 << 22);
}

struct Sampling {
  int status = -1;
  std::vector<float> heights;
  std::int32_t first = -1, second = -1;
};

Sampling sampleAll(TerrainSampler& sampler, std::int32_t count) {
  sampler.AttachTerrainData(sharedLibrary());
  sampler.SetEndPoints(kForward, kBack);
  sampler.SetBoundingBox(-84.1, -84.4, 36.4, 36.2);
  sampler.SetMethod(0);
  sampler.SetSampleCount(count);
  sampler.SetSource(3);
  sampler.SetOptions(2, 3);
  Sampling result;
  result.heights.resize(static_cast<std::size_t>(std::max(count, 0)));
  result.status = sampler.Sample(result.heights, result.first, result.second);
  return result;
}

TEST(TerrainSampler, FillsFromTheBackPointToTheForwardPoint) {
  const auto sampler = makeTerrainSampler();
  const Sampling result = sampleAll(*sampler, 200);
  ASSERT_EQ(result.status, kSamplerOk) << sampler->report().reason;
  ASSERT_EQ(sampler->positions().size(), 200U);
  EXPECT_EQ(sampler->positions().front(), kBack);
  EXPECT_EQ(sampler->positions().back(), kForward);
  const SampleResult direct = sharedLibrary()->sample({kBack, kForward, 200, 0, 3, true});
  EXPECT_EQ(result.heights, direct.heights);
  EXPECT_EQ(result.first, 200);
  EXPECT_EQ(result.second, 0);
}

TEST(TerrainSampler, TheOrderOfTheCallsBeforeSampleIsFree) {
  const auto sampler = makeTerrainSampler();
  sampler->SetOptions(2, 3);
  sampler->SetSource(2);
  sampler->SetSampleCount(50);
  sampler->SetMethod(1);
  sampler->SetEndPoints(kForward, kBack);
  sampler->AttachTerrainData(sharedLibrary());
  std::vector<float> heights(50);
  std::int32_t first = 0, second = 0;
  EXPECT_EQ(sampler->Sample(heights, first, second), kSamplerOk);
  EXPECT_EQ(sampler->report().sourceCode, 2);
  EXPECT_EQ(sampler->report().method, "Bivariate  Interpolation");
}

TEST(TerrainSampler, AnyMethodButOneIsTheFourPointMethod) {
  const auto sampler = makeTerrainSampler();
  for (const std::int32_t method : {0, 2, -1, 100}) {
    sampleAll(*sampler, 10);
    sampler->SetMethod(method);
    std::vector<float> heights(10);
    std::int32_t first = 0, second = 0;
    sampler->Sample(heights, first, second);
    EXPECT_EQ(sampler->report().method, "FCC 4-Point") << method;
  }
}

TEST(TerrainSampler, TheTwoOptionsAndTheBoxChangeNothing) {
  const auto sampler = makeTerrainSampler();
  const Sampling plain = sampleAll(*sampler, 30);
  sampler->SetOptions(-5, 17);
  sampler->SetBoundingBox(0, 0, 0, 0);
  std::vector<float> heights(30);
  std::int32_t first = 0, second = 0;
  EXPECT_EQ(sampler->Sample(heights, first, second), kSamplerOk);
  EXPECT_EQ(heights, plain.heights);
}

TEST(TerrainSampler, HandsOutTheStatusOfTheLibrary) {
  const auto sampler = makeTerrainSampler();
  EXPECT_EQ(sampleAll(*sampler, 1).status, kSamplerUnderRange);
  EXPECT_EQ(sampleAll(*sampler, 32768).status, kSamplerOverRange);
  EXPECT_TRUE(sampler->positions().empty());
  sampleAll(*sampler, 10);
  sampler->SetEndPoints({10, 10}, {10, 11});
  std::vector<float> heights(10);
  std::int32_t first = 5, second = 5;
  EXPECT_EQ(sampler->Sample(heights, first, second), kSamplerInvalidData);
  EXPECT_NE(sampler->report().reason.find("N10E011.hgt"), std::string::npos) << sampler->report().reason;
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 0);
}

class OtherData : public TerrainData {};

TEST(TerrainSampler, WithoutTerrainDataOfItsKindItIsNotConfigured) {
  for (const std::shared_ptr<TerrainData>& data :
       {std::shared_ptr<TerrainData>(), std::shared_ptr<TerrainData>(new OtherData)}) {
    const auto sampler = makeTerrainSampler();
    sampler->AttachTerrainData(data);
    sampler->SetEndPoints(kForward, kBack);
    sampler->SetSampleCount(10);
    std::vector<float> heights(10);
    std::int32_t first = 0, second = 0;
    EXPECT_EQ(sampler->Sample(heights, first, second), kSamplerConfiguration);
    EXPECT_EQ(sampler->report().reason, "The sampler has no terrain data; attach some before sampling");
  }
}

TEST(TerrainSampler, AnArrayThatIsTooSmallIsASubscriptError) {
  const auto sampler = makeTerrainSampler();
  sampleAll(*sampler, 10);
  std::vector<float> heights(9);
  std::int32_t first = 0, second = 0;
  try {
    sampler->Sample(heights, first, second);
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 9);
  }
}

TEST(TerrainSampler, CountsTheVoids) {
  const test::TemporaryFolder folder;
  test::RasterSpec spec;
  spec.noData = -1;
  test::writeRaster(folder / "a.tif", spec, [](int column, int) { return column < 50 ? -1 : 10; });
  const auto sampler = makeTerrainSampler();
  sampler->AttachTerrainData(std::make_shared<TerrainLibrary>(
      [&](int) {
        return SourceDefinition{3, "", {folder.path().string()}, false};
      },
      1 << 20));
  sampler->SetEndPoints({50.5, 10.9}, {50.5, 10.1});
  sampler->SetSampleCount(81);
  std::vector<float> heights(81);
  std::int32_t first = 0, second = 0;
  ASSERT_EQ(sampler->Sample(heights, first, second), kSamplerOk);
  EXPECT_EQ(second, std::count(heights.begin(), heights.end(), kVoidHeight));
  EXPECT_EQ(second, sampler->report().voids);
  EXPECT_EQ(heights.front(), kVoidHeight);
  EXPECT_EQ(heights.back(), 10);
}

}  // namespace
}  // namespace zel
