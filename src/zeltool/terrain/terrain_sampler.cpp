// The component's sampler: gathers what is set one by one, and hands it to the attached library as one
// request.
#include <algorithm>

#include "foundation/runtime_error.h"
#include "zeltool/terrain/sampling_words.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {
namespace {

class LibrarySampler : public TerrainSampler {
 public:
  void AttachTerrainData(std::shared_ptr<TerrainData> data) override {
    library_ = std::dynamic_pointer_cast<TerrainLibrary>(data);
  }
  // The samples run from the back point to the forward point.
  void SetEndPoints(GeoPoint forward, GeoPoint back) override {
    request_.from = back;
    request_.to = forward;
  }
  // The library finds the rasters by position and needs no box beforehand.
  void SetBoundingBox(double, double, double, double) override {}
  void SetMethod(std::int32_t calcMethod) override { request_.method = calcMethod == 1 ? 1 : 0; }
  void SetSampleCount(std::int32_t count) override { request_.count = count; }
  void SetSource(std::int16_t code) override { request_.source = code; }
  // Two numbers that callers hand over and that have no effect on this sampler.
  void SetOptions(std::int32_t, std::int32_t) override {}

  int Sample(std::span<float> heights, std::int32_t& firstValue, std::int32_t& secondValue) override {
    firstValue = secondValue = 0;
    result_ = library_ ? library_->sample(request_) : withoutLibrary();
    if (result_.report.status != kSamplerOk) return result_.report.status;
    if (heights.size() < result_.heights.size()) throw RuntimeError::subscriptOutOfRange();
    std::copy(result_.heights.begin(), result_.heights.end(), heights.begin());
    firstValue = request_.count;
    secondValue = result_.report.voids;
    return kSamplerOk;
  }

  const SamplingReport& report() const override { return result_.report; }
  std::vector<GeoPoint> positions() const override { return result_.positions; }

 private:
  SampleResult withoutLibrary() const {
    SampleResult result;
    result.report.status = kSamplerConfiguration;
    result.report.reason = "The sampler has no terrain data; attach some before sampling";
    result.report.sourceCode = request_.source;
    result.report.method = methodText(request_.method);
    return result;
  }

  std::shared_ptr<TerrainLibrary> library_;
  SampleRequest request_;
  SampleResult result_;
};

}  // namespace

std::unique_ptr<TerrainSampler> makeTerrainSampler() { return std::make_unique<LibrarySampler>(); }

}  // namespace zel
