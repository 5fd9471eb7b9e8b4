// Decoded heights of a stretch of a raster: metres, a NaN for a void.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace zel {

struct PostWindow {
  std::int32_t column = 0, row = 0;  // first post
  std::int32_t columns = 0, rows = 0;
};

struct HeightBlock {
  PostWindow window;
  std::vector<float> heights;  // metres, row by row, window.columns a row

  bool holds(std::int32_t column, std::int32_t row) const {
    return column >= window.column && row >= window.row && column - window.column < window.columns &&
           row - window.row < window.rows;
  }
  // For a post that the block holds.
  float at(std::int32_t column, std::int32_t row) const {
    return heights[static_cast<std::size_t>(row - window.row) * static_cast<std::size_t>(window.columns) +
                   static_cast<std::size_t>(column - window.column)];
  }
  std::size_t bytes() const { return sizeof(HeightBlock) + heights.size() * sizeof(float); }
};

using HeightBlockPtr = std::shared_ptr<const HeightBlock>;

}  // namespace zel
