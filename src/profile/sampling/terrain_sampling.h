// The terrain under a path, as the sampler gives it.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/geo_point.h"
#include "foundation/sample_array.h"
#include "platform/terrain.h"
#include "profile/path/path_geometry.h"

namespace zel {

struct SamplingRequest {
  GeoPoint forward;          // where the last sample lies
  GeoPoint back;             // where the first sample lies
  std::int32_t method = 0;   // 0 "FCC 4-Point", 1 "Bivariate  Interpolation"
  std::int32_t samples = 0;  // both ends included
  std::int16_t source = 3;   // terrain source code
};

// The extended path: T samples from its back point to its forward point.
SamplingRequest extendedPathRequest(const PathGeometry& path, std::int32_t method, std::int16_t source);
// The path alone: samples from station to station, the first at the start.
SamplingRequest stationToStationRequest(GeoPoint start, GeoPoint end, std::int32_t samples,
                                        std::int32_t method, std::int16_t source);

struct RawSamples {
  int status = kSamplerOk;     // of the sampler; anything but 1 to 4 counts as success
  SampleArray<float> heights;  // metres, kVoidHeight for a void; not to be used with a status from 1 to 4
};

// Asks the sampler in its fixed order. Failures of the sampler pass through.
RawSamples sampleTerrain(TerrainSampler& sampler, const std::shared_ptr<TerrainData>& data,
                         const SamplingRequest& request);

}  // namespace zel
