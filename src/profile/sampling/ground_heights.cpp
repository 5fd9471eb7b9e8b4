#include "profile/sampling/ground_heights.h"

#include <utility>
#include <vector>

#include "foundation/runtime_error.h"
#include "profile/sampling/height_cleanup.h"

namespace zel {
namespace {

std::string reasonToStop(const ImpossibleHeight& impossible, const TerrainSampler& sampler) {
  const std::vector<GeoPoint> positions = sampler.positions();
  const auto index = static_cast<std::size_t>(impossible.sample - 1);
  return describe(impossible, index < positions.size() ? std::optional(positions[index]) : std::nullopt);
}

}  // namespace

SampleArray<float> groundHeights(SampleArray<float> raw, const TerrainSampler& sampler, ErrorLog& log,
                                 HardStop& hardStop) {
  CleanedHeights cleaned = cleanedHeights(std::move(raw));
  if (cleaned.impossible) {
    const std::string reason = reasonToStop(*cleaned.impossible, sampler);
    log.write(reason);
    hardStop.stop(reason);
    throw RuntimeError::internalError(reason);
  }
  return std::move(cleaned.heights);
}

}  // namespace zel
