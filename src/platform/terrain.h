// The terrain: the data that is shared, and the sampler that reads heights along a path.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "foundation/geo_point.h"
#include "platform/datum_shift.h"

namespace zel {

// Height that a sampler gives for a void: a cell without a value.
inline constexpr float kVoidHeight = -9999.0F;  // metres

enum SamplerStatus : int {
  kSamplerOk = 0,
  kSamplerConfiguration = 1,  // no source is usable
  kSamplerInvalidData = 2,    // some sample lies outside all data
  kSamplerOverRange = 3,      // more than 32767 samples, or a path of over 2,000 km
  kSamplerUnderRange = 4,     // fewer than 2 samples, or coincident ends
};

// What a sampling was computed from, in words.
struct SamplingReport {
  int status = kSamplerOk;  // the sampler's own code, above
  std::string reason;       // with a status: what, which source and file, where, and which tile would help
  int sourceCode = 0;
  std::string sourceName;             // "1 second"
  bool bundledSample = false;         // the bundled sample terrain stands in for a source that is not set
  std::vector<std::string> files;     // rasters that gave heights, in the order in which they were met
  std::vector<std::string> warnings;  // rasters that could not be used, and why
  std::string method;                 // "FCC 4-Point" or "Bivariate  Interpolation"
  std::int32_t voids = 0;             // samples without a height
  bool datumShifted = false;          // positions were NAD-27
  DatumOperation datumOperation;      // set with datumShifted
};

// The rasters behind the samplers: indexes, decoded blocks. One object is shared by the component. Safe from
// several threads.
class TerrainData {
 public:
  virtual ~TerrainData() = default;
};

// Reads evenly spaced heights along the geodesic between two points. The calls before Sample may come in any
// order; each sampling needs all of them.
class TerrainSampler {
 public:
  virtual ~TerrainSampler() = default;
  virtual void AttachTerrainData(std::shared_ptr<TerrainData> data) = 0;
  virtual void SetEndPoints(GeoPoint forward, GeoPoint back) = 0;
  virtual void SetBoundingBox(double largerLongitude, double smallerLongitude, double largerLatitude,
                              double smallerLatitude) = 0;
  virtual void SetMethod(std::int32_t calcMethod) = 0;  // 0 "FCC 4-Point", 1 "Bivariate  Interpolation"
  virtual void SetSampleCount(std::int32_t count) = 0;
  virtual void SetSource(std::int16_t code) = 0;
  virtual void SetOptions(std::int32_t first, std::int32_t second) = 0;
  // Fills the heights (metres, kVoidHeight for a void) from the back point to the forward point, ends
  // included, and returns a status. With a status other than 0 the heights are not to be used.
  virtual int Sample(std::span<float> heights, std::int32_t& firstValue, std::int32_t& secondValue) = 0;

  // Of the last sampling.
  virtual const SamplingReport& report() const = 0;
  // Where the last samples lie, in the stations' own datum, one a sample.
  virtual std::vector<GeoPoint> positions() const = 0;
};

}  // namespace zel
