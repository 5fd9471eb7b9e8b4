// The posts of a raster, or the cells of one of its overviews, as numbers in a window that may reach one node
// beyond each edge. What is beyond comes from neighbouring rasters, so that grids have no seams.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "zeltool/terrain/block_cache.h"
#include "zeltool/terrain/overviews.h"
#include "zeltool/terrain/source_index.h"

namespace zel {

// Nodes: nearer than this, a place is the node itself.
inline constexpr double kOnNode = 1e-6;

// The caller wants no grid any more.
struct GridCancelled {};

// Nodes from (column, row), which may be -1, or anything on a raster that goes round the earth.
struct NodeWindow {
  std::int64_t column = 0, row = 0;
  std::int32_t columns = 0, rows = 0;
  std::vector<float> heights;  // metres, NaN for voids

  float at(std::int64_t c, std::int64_t r) const {
    return heights[static_cast<std::size_t>(r - row) * static_cast<std::size_t>(columns) +
                   static_cast<std::size_t>(c - column)];
  }
  float& at(std::int64_t c, std::int64_t r) {
    return heights[static_cast<std::size_t>(r - row) * static_cast<std::size_t>(columns) +
                   static_cast<std::size_t>(c - column)];
  }
};

// For one grid, on one thread. Throws GridCancelled.
class GridNodes {
 public:
  GridNodes(const SourceIndex& index, BlockCache& blocks, Overviews& overviews,
            const std::atomic<bool>* cancelled)
      : index_(index), blocks_(blocks), overviews_(overviews), cancelled_(cancelled) {}

  // Fills a window whose place and size are set.
  void fill(const RasterFile& file, int level, NodeWindow& window);

  void checkCancelled() const {
    if (cancelled_ && cancelled_->load(std::memory_order_relaxed)) throw GridCancelled{};
  }

 private:
  struct Slot {
    const RasterFile* file = nullptr;
    int level = 0;
    HeightBlockPtr block;
  };
  struct Beyond {
    bool known = false;
    float height = 0;
  };

  const HeightBlock& block(const RasterFile& file, int level, std::int32_t column, std::int32_t row);
  void fillRow(const RasterFile& file, int level, NodeWindow& window, std::int64_t row);
  void fillBeyond(const RasterFile& file, int level, NodeWindow& window, std::int64_t column,
                  std::int64_t row);
  Beyond heightBeyond(const RasterFile& file, int level, GridPlace place);
  float ownHeight(const RasterFile& file, int level, GridPlace place);
  const std::vector<const RasterFile*>& candidatesAt(GeoPoint position);
  double cellOf(const RasterFile& file);

  const SourceIndex& index_;
  BlockCache& blocks_;
  Overviews& overviews_;
  const std::atomic<bool>* cancelled_;
  std::array<Slot, 8> slots_;
  std::size_t nextSlot_ = 0;
  int square_ = -1;
  std::vector<const RasterFile*> candidates_;
  std::unordered_map<const RasterFile*, double> cells_;  // degrees
};

}  // namespace zel
