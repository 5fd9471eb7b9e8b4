#include "zeltool/terrain/bare_tile.h"

#include "foundation/text.h"
#include "zeltool/terrain/tile_name.h"

namespace zel {

bool isBareTile(const RasterCandidate& candidate) {
  return candidate.name.size() > 4 &&
         equalIgnoringCase(candidate.name.substr(candidate.name.size() - 4), ".hgt");
}

std::optional<RasterPlacement> placeBareTile(const RasterCandidate& candidate, std::string& problem) {
  const auto corner = tileCornerOf(candidate.name);
  if (!corner) {
    problem = "its name does not say where it lies, as N36W085.hgt does";
    return std::nullopt;
  }
  const auto size = tileSizeOf(candidate.bytes);
  if (!size) {
    problem = "its size of " + std::to_string(candidate.bytes) +
              " bytes is none of a tile: 1201 x 1201, 3601 x 3601 or 1801 x 3601 heights of 2 bytes";
    return std::nullopt;
  }
  const GridGeometry grid =
      GridGeometry::degreeTile(corner->latitude, corner->longitude, size->columns, size->rows);
  return RasterPlacement{grid, nullptr, grid.extent(), grid.extent(2)};
}

}  // namespace zel
