#include "map/relief.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <stdexcept>

#include "map/map_frame.h"
#include "zel/terrain_map.h"

namespace zel::host {
namespace {

constexpr std::size_t kSide = kTileSide, kGrid = kTileGrid;
using Row = std::array<float, kSide>;

bool isHeight(float height) {
  // Without a branch, so that rows are looked at several heights at a time. What is not finite is no height.
  return static_cast<bool>(static_cast<int>(height != kTerrainVoid) &
                           static_cast<int>(height != kTerrainOutside) &
                           static_cast<int>(height - height == 0.0F));
}

double turns(TileId tile) { return std::exp2(-std::clamp(tile.level, 0, 30)); }

// Of the centre of the grid's row or column, from the tile's edge, in tiles.
double pixelInTile(std::size_t index) { return (static_cast<double>(index) - kTileMargin + 0.5) / kTileSide; }

// Goes on beyond the world square, so that a margin's rows keep their order.
double latitudeOfWorld(double y) {
  return std::atan(std::sinh((1 - 2 * y) * std::numbers::pi)) * (180 / std::numbers::pi);
}

constexpr float kFlatLight = std::numbers::sqrt2_v<float> / 2;  // of level ground: sine of 45 degrees
constexpr float kDarkest = 0.55F;      // of a colour is taken away where no light falls
constexpr float kBrightest = 0.45F;    // of the way to white where the light falls upright
constexpr float kBlueOfShade = 0.25F;  // less of it is taken from blue: shade is cool, and not soot

std::int32_t part(Rgb colour, unsigned shift) { return static_cast<std::int32_t>(colour >> shift & 0xffU); }

// Level ground keeps its colour. No branches and no tables: several pixels are done at a time.
void lightPixels(const Row& lights, Rgb* pixels) {
  for (std::size_t x = 0; x < kSide; ++x) {
    const float shade = kFlatLight - lights[x];
    const float shaded = (shade + std::abs(shade)) / 2;  // 0 at least
    const float dark = shaded * (kDarkest / kFlatLight);
    const float white = (shaded - shade) * (kBrightest / (1 - kFlatLight));
    const float kept = 1 - dark - white, keptBlue = kept + dark * kBlueOfShade, added = white * 255 + 0.5F;
    const auto red = static_cast<std::int32_t>(static_cast<float>(part(pixels[x], 16)) * kept + added);
    const auto green = static_cast<std::int32_t>(static_cast<float>(part(pixels[x], 8)) * kept + added);
    const auto blue = static_cast<std::int32_t>(static_cast<float>(part(pixels[x], 0)) * keptBlue + added);
    pixels[x] = 0xff000000U | static_cast<Rgb>(red << 16 | green << 8 | blue);
  }
}

// Slopes are the gentler the coarser the heights are; a far view of them as they are would be flat.
double exaggeration(double metresPerPixel) {
  constexpr double kTrueBelow = 20, kPower = 0.4, kAtMost = 40;
  return std::clamp(std::pow(metresPerPixel / kTrueBelow, kPower), 1.0, kAtMost);
}

// 1 / sqrt(value) to 5e-6 of it, for values of 1 and more. In plain arithmetic, which a compiler does several
// at a time; the library's root may set errno and keeps it from that.
float inverseRoot(float value) {
  float root = std::bit_cast<float>(0x5f375a86U - (std::bit_cast<std::uint32_t>(value) >> 1U));
  root *= 1.5F - 0.5F * value * root * root;
  root *= 1.5F - 0.5F * value * root * root;
  return root;
}

// The heights around a place.
struct Neighbours {
  float nw, n, ne, w, e, sw, s, se;
};

// `toSlope`: from Horn's weighted differences (eight pixels) to a slope.
inline float lightOf(const Neighbours& at, float toSlope) {
  const float eastward = ((at.ne + 2 * at.e + at.se) - (at.nw + 2 * at.w + at.sw)) * toSlope;
  const float northward = ((at.nw + 2 * at.n + at.ne) - (at.sw + 2 * at.s + at.se)) * toSlope;
  // Light comes from (-1, 1, sqrt 2) / 2; the ground's normal is (-eastward, -northward, 1).
  const float facing = 0.5F * (eastward - northward) + kFlatLight;
  const float light = facing * inverseRoot(1 + eastward * eastward + northward * northward);
  return light > 0 ? (light < 1 ? light : 1) : 0;
}

struct Rows {
  const float *north, *here, *south;  // kTileGrid heights each
};

void lightRow(const Rows& rows, float toSlope, Row& lights) {
  const float *const n = rows.north, *const h = rows.here, *const s = rows.south;
  for (std::size_t x = 0; x < kSide; ++x)
    lights[x] = lightOf({n[x], n[x + 1], n[x + 2], h[x], h[x + 2], s[x], s[x + 1], s[x + 2]}, toSlope);
}

// Where a neighbour is no height the slope on the other side goes on; without that one the ground is level.
float neighbour(float there, float here, float opposite) {
  if (isHeight(there)) return there;
  return isHeight(opposite) ? 2 * here - opposite : here;
}

float lightBesideGap(const Rows& rows, std::size_t x, float toSlope) {
  const float *const n = rows.north + x, *const h = rows.here + x, *const s = rows.south + x;
  const float here = h[1];
  return lightOf({neighbour(n[0], here, s[2]), neighbour(n[1], here, s[1]), neighbour(n[2], here, s[0]),
                  neighbour(h[0], here, h[2]), neighbour(h[2], here, h[0]), neighbour(s[0], here, n[2]),
                  neighbour(s[1], here, n[1]), neighbour(s[2], here, n[0])},
                 toSlope);
}

// Does again the places beside gaps.
void lightGaps(const Rows& rows, float toSlope, Row& lights) {
  std::array<int, kGrid> gap;
  for (std::size_t x = 0; x < kGrid; ++x)
    gap[x] = 1 - (static_cast<int>(isHeight(rows.north[x])) & static_cast<int>(isHeight(rows.here[x])) &
                  static_cast<int>(isHeight(rows.south[x])));
  for (std::size_t x = 0; x < kSide; ++x)
    if ((gap[x] | gap[x + 1] | gap[x + 2]) != 0 && isHeight(rows.here[x + 1]))
      lights[x] = lightBesideGap(rows, x, toSlope);
}

bool allHeights(const float* row) {
  int missing = 0;
  for (std::size_t x = 0; x < kGrid; ++x) missing += isHeight(row[x]) ? 0 : 1;
  return missing == 0;
}

// Diagonal stripes; the pattern repeats in eight pixels, so that it goes on over the next tile.
Rgb voidColour(std::size_t x, std::size_t y) { return (x + y) % 8 < 2 ? kVoidHatch : kVoidColour; }

Rgb colourWithoutHeight(float value, std::size_t x, std::size_t y) {
  return value == kTerrainOutside ? kOutsideColour : voidColour(x, y);
}

constexpr double kMostOfScale = 1e30;  // metres, either way: fits into 32 bits

// Heights to places in the table of colours.
void colourRow(const float* heights, const HeightScale& scale, std::array<std::int32_t, kSide>& places) {
  const auto lowest = static_cast<float>(std::clamp(scale.lowest, -kMostOfScale, kMostOfScale));
  // Without a width the scale parts what is below from what is above.
  const double width = std::max(scale.highest - scale.lowest, 1e-6);
  const auto perMetre = static_cast<float>((kShades - 1) / width);
  constexpr auto kLast = static_cast<float>(kShades - 1);
  for (std::size_t x = 0; x < kSide; ++x) {
    const float place = (heights[x] - lowest) * perMetre + 0.5F;
    const float atLeast = place > 0 ? place : 0;
    places[x] = static_cast<std::int32_t>(atLeast < kLast ? atLeast : kLast);
  }
}

}  // namespace

std::vector<double> tileLatitudes(TileId tile) {
  std::vector<double> latitudes(kGrid);
  for (std::size_t i = 0; i < kGrid; ++i)
    latitudes[i] = latitudeOfWorld((tile.row + pixelInTile(i)) * turns(tile));
  return latitudes;
}

std::vector<double> tileLongitudes(TileId tile) {
  std::vector<double> longitudes(kGrid);
  for (std::size_t i = 0; i < kGrid; ++i)
    longitudes[i] = (tile.column + pixelInTile(i)) * turns(tile) * 360 - 180;
  return longitudes;
}

double tileMetresPerPixel(TileId tile) {
  const double latitude = latitudeOfWorld((tile.row + 0.5) * turns(tile));
  return kFarthestMetresPerPixel * turns(tile) * std::cos(latitude * (std::numbers::pi / 180));
}

std::vector<Rgb> shadeTile(std::span<const float> heights, double metresPerPixel, const HeightScale& scale,
                           bool relief) {
  if (heights.size() != kGrid * kGrid) throw std::invalid_argument("shadeTile: not the heights of a tile");
  const std::array<Rgb, kShades>& colours = heightColours();
  const bool shaded = relief && metresPerPixel > 0 && std::isfinite(metresPerPixel);
  const auto toSlope =
      static_cast<float>(shaded ? exaggeration(metresPerPixel) / (8 * std::max(metresPerPixel, 1e-3)) : 0);

  std::array<bool, kGrid> whole;
  for (std::size_t row = 0; row < kGrid; ++row) whole[row] = allHeights(&heights[row * kGrid]);

  std::vector<Rgb> pixels(kSide * kSide);
  Row lights;
  std::array<std::int32_t, kSide> places;
  for (std::size_t y = 0; y < kSide; ++y) {
    const float* const first = &heights[y * kGrid];
    const Rows rows{first, first + kGrid, first + 2 * kGrid};
    Rgb* const out = &pixels[y * kSide];
    colourRow(rows.here + 1, scale, places);
    for (std::size_t x = 0; x < kSide; ++x) out[x] = colours[static_cast<std::size_t>(places[x])];
    if (shaded) {
      lightRow(rows, toSlope, lights);
      if (!whole[y] || !whole[y + 1] || !whole[y + 2]) lightGaps(rows, toSlope, lights);
      lightPixels(lights, out);
    }
    if (whole[y + 1]) continue;
    for (std::size_t x = 0; x < kSide; ++x)
      if (const float value = rows.here[x + 1]; !isHeight(value)) out[x] = colourWithoutHeight(value, x, y);
  }
  return pixels;
}

HeightRange heightRange(std::span<const float> heights) {
  // Several at a time, each lane with its own range.
  constexpr std::size_t kLanes = 64;
  constexpr float kMost = std::numeric_limits<float>::max();
  std::array<float, kLanes> lowest, highest;
  lowest.fill(kMost);
  highest.fill(-kMost);
  const auto include = [&](float height, std::size_t lane) {
    const bool counts = isHeight(height);
    const float low = counts ? height : kMost, high = counts ? height : -kMost;
    lowest[lane] = low < lowest[lane] ? low : lowest[lane];
    highest[lane] = high > highest[lane] ? high : highest[lane];
  };
  std::size_t i = 0;
  for (; i + kLanes <= heights.size(); i += kLanes)
    for (std::size_t lane = 0; lane < kLanes; ++lane) include(heights[i + lane], lane);
  for (; i < heights.size(); ++i) include(heights[i], 0);
  const float low = *std::min_element(lowest.begin(), lowest.end());
  const float high = *std::max_element(highest.begin(), highest.end());
  return high < low ? HeightRange{} : HeightRange{low, high, true};
}

}  // namespace zel::host
