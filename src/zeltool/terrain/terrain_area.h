// The terrain of a source as an area: heights on a grid at any resolution.
//
// A grid finer than a raster's posts is interpolated between them (bilinear); a coarser one takes means, so
// that every post of a cell counts. A place is served by the first file, in order of preference, that covers
// it and has a height there. Serves several threads at once.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "foundation/geo_point.h"
#include "zeltool/terrain/block_cache.h"
#include "zeltool/terrain/overviews.h"
#include "zeltool/terrain/source_index.h"

namespace zel {

// In a grid: no raster covers the place.
inline constexpr float kOutsideHeight = -32768.0F;

// What all areas and samplings of a library share.
struct TerrainCaches {
  explicit TerrainCaches(std::size_t blockBytes, std::string overviewFolder = userOverviewFolder())
      : blocks(blockBytes), overviews(std::move(overviewFolder)) {}

  BlockCache blocks;
  Overviews overviews;
};

class TerrainArea {
 public:
  using MakeIndex = std::function<std::shared_ptr<const SourceIndex>(const std::atomic<bool>* cancelled)>;

  // `makeIndex` is asked by the first function that needs the rasters. It may throw IndexCancelled, and is
  // then asked again by the next one.
  TerrainArea(SourceDefinition definition, MakeIndex makeIndex, std::shared_ptr<TerrainCaches> caches);
  ~TerrainArea();

  const SourceDefinition& definition() const { return definition_; }
  // Throws IndexCancelled.
  const SourceIndex& index(const std::atomic<bool>* cancelled = nullptr) const;
  std::vector<std::string> problems() const;
  OverviewProgress progress() const { return caches_->overviews.progress(); }

  // Metres, kVoidHeight, kOutsideHeight, row by row. Empty when cancelled.
  std::vector<float> grid(std::span<const double> latitudes, std::span<const double> longitudes,
                          const std::atomic<bool>* cancelled) const;
  std::vector<float> heightsAt(std::span<const GeoPoint> positions, std::int32_t method) const;

 private:
  const SourceDefinition definition_;
  const MakeIndex makeIndex_;
  const std::shared_ptr<TerrainCaches> caches_;
  mutable std::mutex mutex_;  // guards index_, which stays once it is made
  mutable std::shared_ptr<const SourceIndex> index_;
};

}  // namespace zel
