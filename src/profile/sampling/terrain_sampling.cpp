#include "profile/sampling/terrain_sampling.h"

#include <algorithm>

namespace zel {

SamplingRequest extendedPathRequest(const PathGeometry& path, std::int32_t method, std::int16_t source) {
  return {path.forward, path.back, method, path.samples, source};
}

SamplingRequest stationToStationRequest(GeoPoint start, GeoPoint end, std::int32_t samples,
                                        std::int32_t method, std::int16_t source) {
  return {end, start, method, samples, source};
}

RawSamples sampleTerrain(TerrainSampler& sampler, const std::shared_ptr<TerrainData>& data,
                         const SamplingRequest& request) {
  const auto [smallerLongitude, largerLongitude] =
      std::minmax(request.forward.longitude, request.back.longitude);
  const auto [smallerLatitude, largerLatitude] = std::minmax(request.forward.latitude, request.back.latitude);

  RawSamples result;
  result.heights.resize(static_cast<std::size_t>(std::max(request.samples, 0)));
  sampler.AttachTerrainData(data);
  sampler.SetEndPoints(request.forward, request.back);
  sampler.SetBoundingBox(largerLongitude, smallerLongitude, largerLatitude, smallerLatitude);
  sampler.SetMethod(request.method);
  sampler.SetSampleCount(request.samples);
  sampler.SetSource(request.source);
  sampler.SetOptions(2, 3);  // samplers take it and make nothing of it; it belongs to the sequence
  std::int32_t firstValue = 0;
  std::int32_t secondValue = 0;
  result.status = sampler.Sample(result.heights.span(), firstValue, secondValue);
  return result;
}

}  // namespace zel
