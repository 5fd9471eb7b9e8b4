#include "zeltool/terrain/tile_name.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "zeltool/terrain/longitude.h"

namespace zel {
namespace {

std::optional<int> digits(std::string_view text) {
  int value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

std::optional<TileCorner> tileCornerOf(std::string_view fileName) {
  if (fileName.size() < 8 || fileName[7] != '.') return std::nullopt;
  const char northOrSouth = upper(fileName[0]), eastOrWest = upper(fileName[3]);
  if ((northOrSouth != 'N' && northOrSouth != 'S') || (eastOrWest != 'E' && eastOrWest != 'W'))
    return std::nullopt;
  const auto latitude = digits(fileName.substr(1, 2)), longitude = digits(fileName.substr(4, 3));
  if (!latitude || !longitude) return std::nullopt;
  const TileCorner corner{northOrSouth == 'N' ? *latitude : -*latitude,
                          eastOrWest == 'E' ? *longitude : -*longitude};
  if (corner.latitude < -90 || corner.latitude > 89 || corner.longitude < -180 || corner.longitude > 179)
    return std::nullopt;
  return corner;
}

std::string tileNameFor(GeoPoint position) {
  const int latitude = std::clamp(static_cast<int>(std::floor(position.latitude)), -90, 89);
  const int longitude = static_cast<int>(std::floor(normalLongitude(position.longitude)));
  char name[32];
  std::snprintf(name, sizeof name, "%c%02d%c%03d.hgt", latitude < 0 ? 'S' : 'N', std::abs(latitude),
                longitude < 0 ? 'W' : 'E', std::abs(longitude));
  return name;
}

std::optional<TileSize> tileSizeOf(std::uintmax_t bytes) {
  for (const TileSize size : {TileSize{1201, 1201}, TileSize{3601, 3601}, TileSize{1801, 3601}})
    if (bytes == 2U * static_cast<std::uintmax_t>(size.columns) * static_cast<std::uintmax_t>(size.rows))
      return size;
  return std::nullopt;
}

}  // namespace zel
