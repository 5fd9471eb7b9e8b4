// Names of one-degree tiles of heights: "N36W085.hgt" holds 36 to 37 degrees north, 85 to 84 degrees west.
// Its square of posts is told by the file's size alone: 16-bit heights, 2 bytes each, posts on the edges of
// the square.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/geo_point.h"

namespace zel {

// South-west corner, whole degrees.
struct TileCorner {
  int latitude = 0;   // -90 to 89
  int longitude = 0;  // -180 to 179

  friend bool operator==(const TileCorner&, const TileCorner&) = default;
};

struct TileSize {
  std::int32_t columns = 0, rows = 0;  // posts

  friend bool operator==(const TileSize&, const TileSize&) = default;
};

// The corner that a file name ("N36W085.hgt", "s29w072.SRTMGL1.hgt.zip") states in its first seven letters,
// which a point must follow; nothing when it states none.
std::optional<TileCorner> tileCornerOf(std::string_view fileName);

// "N36W085.hgt", the tile that a position lies in. Latitude -90 to 90; any finite longitude.
std::string tileNameFor(GeoPoint position);

// The posts of a tile of that many bytes: 3, 1 or 1 by 2 arc-seconds; nothing for any other size.
std::optional<TileSize> tileSizeOf(std::uintmax_t bytes);

}  // namespace zel
