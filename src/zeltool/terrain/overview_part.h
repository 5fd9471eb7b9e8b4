// A part of a raster in coarser and coarser cells, each the mean of the posts in it that are no voids.
//
// A raster falls into parts of 4096 x 4096 posts, the last ones of 2048 to 6143 (level_axis.h). A part is
// read once, in strips, and gives all its levels. Cost: 0.1 s for 3601 x 3601 posts of a bare tile.
#pragma once

#include <atomic>
#include <optional>
#include <vector>

#include "zeltool/terrain/grid_geometry.h"
#include "zeltool/terrain/height_block.h"
#include "zeltool/terrain/level_axis.h"
#include "zeltool/terrain/raster_file.h"

namespace zel {

inline constexpr int kPartLevel = 12;  // a part is one cell of this level, the coarsest
// The finest level that is kept on disk; the finer ones are as large as the raster itself.
inline constexpr int kKeptLevel = 3;

// The axes of a raster's cells. Columns that come round to the same longitude are counted once.
LevelAxis columnAxis(const GridGeometry& grid, int level);
LevelAxis rowAxis(const GridGeometry& grid, int level);
// The level at which a raster is a single cell, or the coarsest.
int coarsestLevel(const GridGeometry& grid);

struct PartPlace {
  std::int32_t column = 0, row = 0;  // counted in parts

  friend bool operator==(const PartPlace&, const PartPlace&) = default;
};

// The part that a cell lies in.
PartPlace partOf(const GridGeometry& grid, std::int32_t column, std::int32_t row, int level);

// The cells of a level that a part has, counted over the raster.
PostWindow partWindow(const GridGeometry& grid, PartPlace part, int level);

// The levels of a part from `finest` to kPartLevel, windows counted in cells over the raster; nothing when
// cancelled, which is looked at every few milliseconds.
std::optional<std::vector<HeightBlock>> makeOverviewPart(const RasterFile& file, PartPlace part, int finest,
                                                         const std::atomic<bool>* cancelled);

}  // namespace zel
