// The rasters behind the terrain sampler: which files a source has, where they lie, and their decoded
// heights.
//
// A folder is indexed once by extent and its files are opened on demand; decoded blocks are kept in a cache
// of bounded size. A library serves several threads at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "foundation/geo_point.h"
#include "platform/datum_shift.h"
#include "platform/terrain.h"

namespace zel {

// A terrain source as its settings define it.
struct SourceDefinition {
  int code = 3;
  std::string name;                // "1 second"
  std::vector<std::string> paths;  // rasters and folders of rasters, in order of preference
  bool bundledSample = false;      // the paths are the bundled sample's, because none are set

  friend bool operator==(const SourceDefinition&, const SourceDefinition&) = default;
};

struct SampleRequest {
  GeoPoint from;
  GeoPoint to;
  std::int32_t count = 0;   // samples, both ends included
  std::int32_t method = 0;  // 0 "FCC 4-Point", 1 "Bivariate  Interpolation"
  int source = 3;
  bool wantPositions = true;
};

struct SampleResult {
  SamplingReport report;
  double length = 0;                // km from `from` to `to`
  std::vector<float> heights;       // metres, kVoidHeight for a void; empty with a status other than 0
  std::vector<GeoPoint> positions;  // in the stations' own datum; empty unless wanted
};

class TerrainArea;

class TerrainLibrary : public TerrainData {
 public:
  using Definitions = std::function<SourceDefinition(int code)>;

  // `definitions` is asked at every sampling (it must be cheap and safe from several threads); a changed
  // definition is indexed anew.
  TerrainLibrary(Definitions definitions, std::size_t cacheBytes);
  ~TerrainLibrary() override;

  // Another look at the same rasters: blocks, open files and indexes are shared, definitions and the shift
  // (as it is now) are its own.
  std::shared_ptr<TerrainLibrary> view(Definitions definitions) const;

  // With a shift, positions are NAD-27 and heights are read at the shifted positions; null ends that.
  void setStationShift(std::shared_ptr<const DatumShift> shift);

  // Heights evenly spaced along the WGS 84 geodesic. Never throws for bad data: the report says what was
  // wrong.
  SampleResult sample(const SampleRequest& request) const;
  // Heights at given positions (WGS 84), into a span of the same size; kVoidHeight for voids.
  SamplingReport heightsAt(std::span<const GeoPoint> positions, std::int32_t method, int source,
                           std::span<float> heights) const;

  // A source as an area, as it is defined now; shares blocks and open files with the samplings.
  std::shared_ptr<const TerrainArea> area(int source) const;

 private:
  struct Self;
  struct View;
  TerrainLibrary(Definitions definitions, std::shared_ptr<Self> self);

  std::shared_ptr<Self> self_;  // what all views share
  std::shared_ptr<View> view_;
};

// The component's sampler over the attached library.
std::unique_ptr<TerrainSampler> makeTerrainSampler();

}  // namespace zel
