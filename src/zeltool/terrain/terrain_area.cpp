#include "zeltool/terrain/terrain_area.h"

#include "platform/terrain.h"
#include "zeltool/terrain/grid_painter.h"
#include "zeltool/terrain/height_reader.h"

namespace zel {

TerrainArea::TerrainArea(SourceDefinition definition, MakeIndex makeIndex,
                         std::shared_ptr<TerrainCaches> caches)
    : definition_(std::move(definition)), makeIndex_(std::move(makeIndex)), caches_(std::move(caches)) {}

TerrainArea::~TerrainArea() = default;

const SourceIndex& TerrainArea::index(const std::atomic<bool>* cancelled) const {
  const std::lock_guard lock(mutex_);
  if (!index_) index_ = makeIndex_(cancelled);
  return *index_;
}

std::vector<std::string> TerrainArea::problems() const {
  std::vector<std::string> problems = index().problems();
  for (const RasterFilePtr& file : index().files())
    if (const std::string problem = file->problem(); !problem.empty())
      problems.push_back(file->path() + ": " + problem);
  return problems;
}

std::vector<float> TerrainArea::grid(std::span<const double> latitudes, std::span<const double> longitudes,
                                     const std::atomic<bool>* cancelled) const {
  std::vector<float> heights(latitudes.size() * longitudes.size());
  try {
    const SourceIndex& rasters = index(cancelled);
    GridNodes nodes(rasters, caches_->blocks, caches_->overviews, cancelled);
    GridPainter(rasters, caches_->blocks, nodes, latitudes, longitudes, heights).paint();
  } catch (const GridCancelled&) {
    return {};
  } catch (const IndexCancelled&) {
    return {};
  }
  return heights;
}

std::vector<float> TerrainArea::heightsAt(std::span<const GeoPoint> positions, std::int32_t method) const {
  std::vector<float> heights(positions.size());
  HeightReader reader(index(), caches_->blocks, method == 1);
  reader.setOutsideHeight(kOutsideHeight);
  reader.read(positions, heights);
  return heights;
}

}  // namespace zel
