// Public terrain as an area, over the component's terrain library.
#include <algorithm>
#include <cmath>
#include <mutex>
#include <utility>

#include "component/api/ready_component.h"
#include "zel/terrain_map.h"
#include "zeltool/terrain/terrain_area.h"

namespace zel {

static_assert(kTerrainOutside == kOutsideHeight);

namespace {

std::vector<TerrainCoverage> coverageOf(const SourceIndex& index) {
  std::vector<TerrainCoverage> rasters;
  for (const RasterFilePtr& file : index.files()) {
    const RasterPlacement& placement = file->placement();
    const GeoExtent& area = placement.covered;
    rasters.push_back({file->path(), {area.south, area.west, area.north, area.east}, cellDegrees(placement)});
  }
  return rasters;
}

}  // namespace

struct TerrainMap::Self {
  std::shared_ptr<TerrainLibrary> library;  // what the area shares with the samplings
  TerrainSource source;
  std::shared_ptr<const TerrainArea> area;
  std::once_flag once;
  std::vector<TerrainCoverage> rasters;
};

TerrainMap::TerrainMap(std::unique_ptr<Self> self) : self_(std::move(self)) {}
TerrainMap::~TerrainMap() = default;

std::shared_ptr<const TerrainMap> TerrainMap::open(int source) {
  return accessing([&](Component& component) {
    if (std::find(kTerrainSourceCodes.begin(), kTerrainSourceCodes.end(), source) ==
        kTerrainSourceCodes.end())
      throw SettingsError("there is no terrain source " + std::to_string(source) +
                          "; the codes are 1, 2, 3, 7 and 9");
    auto self = std::make_unique<Self>();
    self->library = component.terrain();
    self->area = self->library->area(source);
    const SourceDefinition& definition = self->area->definition();
    self->source = {source, definition.name, definition.paths, definition.bundledSample};
    return std::shared_ptr<const TerrainMap>(new TerrainMap(std::move(self)));
  });
}

const TerrainSource& TerrainMap::source() const { return self_->source; }

bool TerrainMap::prepare(const std::atomic<bool>* cancelled) const {
  try {
    self_->area->index(cancelled);
    return true;
  } catch (const IndexCancelled&) {
    return false;
  }
}

const std::vector<TerrainCoverage>& TerrainMap::rasters() const {
  std::call_once(self_->once, [this] { self_->rasters = coverageOf(self_->area->index()); });
  return self_->rasters;
}

std::vector<std::string> TerrainMap::problems() const { return self_->area->problems(); }

bool TerrainMap::outdated() const { return self_->area->index().outdated(); }

std::vector<float> TerrainMap::grid(std::span<const double> latitudes, std::span<const double> longitudes,
                                    const std::atomic<bool>* cancelled) const {
  return self_->area->grid(latitudes, longitudes, cancelled);
}

std::vector<float> TerrainMap::heightsAt(std::span<const Position> positions, std::int32_t method) const {
  std::vector<GeoPoint> points;
  points.reserve(positions.size());
  for (const Position& p : positions) points.push_back({p.latitude, p.longitude});
  return self_->area->heightsAt(points, method);
}

TerrainMapProgress TerrainMap::progress() const {
  const OverviewProgress progress = self_->area->progress();
  return {progress.wanted, progress.made};
}

}  // namespace zel
