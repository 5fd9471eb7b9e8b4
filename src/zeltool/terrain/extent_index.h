// Which of many areas a position may lie in, by squares of one degree. Cost: one look-up in a hash table,
// however many areas there are; an area costs one entry for each square that it touches, areas of continents
// one in all.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "zeltool/terrain/grid_geometry.h"

namespace zel {

class ExtentIndex {
 public:
  // Numbers are given in order, from 0.
  void add(const GeoExtent& extent);

  // The square that a position lies in; latitude -90 to 90, any finite longitude.
  static int squareOf(GeoPoint position);
  static GeoExtent areaOf(int square);

  // The areas that touch a square, by rising number; others may be among them.
  std::vector<std::uint32_t> candidates(int square) const;

 private:
  std::uint32_t count_ = 0;
  std::unordered_map<int, std::vector<std::uint32_t>> squares_;
  std::vector<std::uint32_t> wide_;
};

}  // namespace zel
