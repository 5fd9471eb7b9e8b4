// A square of the map as pixels: height colours under shaded relief.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "map/height_colours.h"

namespace zel::host {

// Squares of the world: 2^level of them each way, 256 pixels wide (logical, at pixel ratio 1).
struct TileId {
  std::int32_t level = 0, column = 0, row = 0;

  // The check takes the 0 that the comparison is held against for a pointer.
  friend auto operator<=>(const TileId&, const TileId&) = default;  // NOLINT(modernize-use-nullptr)
};

inline constexpr int kTileSide = 256;
inline constexpr int kTileMargin = 1;  // heights more on each side, for the slopes
inline constexpr int kTileGrid = kTileSide + 2 * kTileMargin;
inline constexpr int kDeepestLevel = 19;

// Where the heights of a tile are wanted: kTileGrid rows and columns, the centres of its pixels and one more
// each way. Degrees.
std::vector<double> tileLatitudes(TileId tile);
std::vector<double> tileLongitudes(TileId tile);
double tileMetresPerPixel(TileId tile);  // at its centre

// Pixels, row by row, kTileSide x kTileSide. `heights` are kTileGrid x kTileGrid with kTerrainVoid and
// kTerrainOutside. Light from the north-west, 45 degrees high; slopes by differences over three rows (B. K.
// P. Horn, Proc. IEEE 69 (1981)).
std::vector<Rgb> shadeTile(std::span<const float> heights, double metresPerPixel, const HeightScale& scale,
                           bool relief = true);

struct HeightRange {
  float lowest = 0, highest = 0;
  bool any = false;
};
HeightRange heightRange(std::span<const float> heights);  // voids and outside left out

}  // namespace zel::host
