#include "map/coverage_marks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace zel::host {
namespace {

struct Bounds {
  double left = 0, top = 0, right = 0, bottom = 0;

  void add(const Bounds& other) {
    left = std::min(left, other.left);
    top = std::min(top, other.top);
    right = std::max(right, other.right);
    bottom = std::max(bottom, other.bottom);
  }
  bool smallerThan(double pixels) const { return right - left < pixels && bottom - top < pixels; }
};

// The squares of a grid over the map in which rasters are, each with the bounds of its own.
using Squares = std::unordered_map<std::int64_t, Bounds>;
constexpr std::int64_t kRow = std::int64_t{1} << 32;

Squares squaresOf(const MapFrame& frame, std::span<const WorldArea> rasters, double side) {
  const MapPoint centre = worldOf(frame.centre());
  const double world = frame.worldPixels(), middleX = frame.width() / 2, middleY = frame.height() / 2;
  Squares squares;
  for (const WorldArea& raster : rasters) {
    const double turn = std::round((raster.left + raster.right) / 2 - centre.x);
    const auto x = [&](double at) { return (at - turn - centre.x) * world + middleX; };
    const auto y = [&](double at) { return (at - centre.y) * world + middleY; };
    const Bounds bounds{x(raster.left), y(raster.top), x(raster.right), y(raster.bottom)};
    const bool seen = bounds.right >= -side && bounds.left <= frame.width() + side &&
                      bounds.bottom >= -side && bounds.top <= frame.height() + side;
    if (!seen || !bounds.smallerThan(side)) continue;
    const auto column = static_cast<std::int64_t>(std::floor((bounds.left + bounds.right) / 2 / side)),
               row = static_cast<std::int64_t>(std::floor((bounds.top + bounds.bottom) / 2 / side));
    const auto [entry, fresh] = squares.try_emplace(row * kRow + column, bounds);
    if (!fresh) entry->second.add(bounds);
  }
  return squares;
}

// Takes a square out, and all that are joined to it by a side or a corner: the bounds of all.
Bounds takeGroup(Squares& squares, std::int64_t first) {
  Bounds group = squares.at(first);
  std::vector<std::int64_t> open{first};
  while (!open.empty()) {
    const std::int64_t square = open.back();
    open.pop_back();
    const auto entry = squares.find(square);
    if (entry == squares.end()) continue;
    group.add(entry->second);
    squares.erase(entry);
    for (const std::int64_t row : {-kRow, std::int64_t{0}, kRow})
      for (const std::int64_t column : {-1, 0, 1}) open.push_back(square + row + column);
  }
  return group;
}

}  // namespace

WorldArea worldArea(const TerrainExtent& extent) {
  const auto x = [](double longitude) { return longitude / 360 + 0.5; };
  return {x(extent.west), worldOf({extent.north, 0}).y, x(extent.east), worldOf({extent.south, 0}).y};
}

std::vector<PixelBox> coverageMarks(const MapFrame& frame, std::span<const WorldArea> rasters,
                                    double pixels) {
  std::vector<PixelBox> marks;
  if (!(pixels > 0)) return marks;
  Squares squares = squaresOf(frame, rasters, pixels);
  while (!squares.empty()) {
    const Bounds group = takeGroup(squares, squares.begin()->first);
    if (!group.smallerThan(pixels)) continue;
    marks.push_back(
        {(group.left + group.right - pixels) / 2, (group.top + group.bottom - pixels) / 2, pixels, pixels});
  }
  return marks;
}

}  // namespace zel::host
