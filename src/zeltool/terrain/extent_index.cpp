#include "zeltool/terrain/extent_index.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "zeltool/terrain/longitude.h"

namespace zel {
namespace {

constexpr int kColumns = 360, kRows = 180;  // squares around the earth and from pole to pole
constexpr int kWide = 1'000;                // squares

int rowOf(double latitude) {
  return static_cast<int>(std::clamp(std::floor(latitude) + 90, 0.0, kRows - 1.0));
}

}  // namespace

int ExtentIndex::squareOf(GeoPoint position) {
  const int column = static_cast<int>(std::floor(normalLongitude(position.longitude))) + 180;
  return rowOf(position.latitude) * kColumns + std::clamp(column, 0, kColumns - 1);
}

GeoExtent ExtentIndex::areaOf(int square) {
  const int south = square / kColumns - 90, west = square % kColumns - 180;
  return {static_cast<double>(south), static_cast<double>(west), south + 1.0, west + 1.0};
}

void ExtentIndex::add(const GeoExtent& extent) {
  const std::uint32_t number = count_++;
  const int south = rowOf(extent.south), north = rowOf(extent.north);
  const int west = static_cast<int>(std::floor(extent.west)) + 180;
  const int columns = std::min(static_cast<int>(std::floor(extent.east)) + 180 - west + 1, kColumns);
  if (columns * (north - south + 1) > kWide) {
    wide_.push_back(number);
    return;
  }
  for (int row = south; row <= north; ++row)
    for (int i = 0; i < columns; ++i) {
      const int column = ((west + i) % kColumns + kColumns) % kColumns;
      squares_[row * kColumns + column].push_back(number);
    }
}

std::vector<std::uint32_t> ExtentIndex::candidates(int square) const {
  const auto place = squares_.find(square);
  if (place == squares_.end()) return wide_;
  std::vector<std::uint32_t> both;
  both.reserve(place->second.size() + wide_.size());
  std::merge(place->second.begin(), place->second.end(), wide_.begin(), wide_.end(),
             std::back_inserter(both));
  return both;
}

}  // namespace zel
