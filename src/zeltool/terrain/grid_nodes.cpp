#include "zeltool/terrain/grid_nodes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zel {
namespace {

constexpr float kVoidNode = std::numeric_limits<float>::quiet_NaN();

// Between two nodes, or past the second of them when t is beyond 0 to 1. A void counts as the other.
float between(float a, float b, double t) {
  if (t == 0 || std::isnan(b)) return a;
  if (t == 1 || std::isnan(a)) return b;
  return static_cast<float>(static_cast<double>(a) + t * (static_cast<double>(b) - static_cast<double>(a)));
}

}  // namespace

const HeightBlock& GridNodes::block(const RasterFile& file, int level, std::int32_t column,
                                    std::int32_t row) {
  for (const Slot& slot : slots_)
    if (slot.file == &file && slot.level == level && slot.block->holds(column, row)) return *slot.block;
  checkCancelled();
  HeightBlockPtr block = level == 0 ? file.block(file.keyOf(column, row), blocks_)
                                    : overviews_.part(file, partOf(file.placement().grid, column, row, level),
                                                      level, cancelled_);
  if (!block) throw GridCancelled{};
  Slot& slot = slots_[nextSlot_];
  nextSlot_ = (nextSlot_ + 1) % slots_.size();
  slot = {&file, level, std::move(block)};
  return *slot.block;
}

void GridNodes::fill(const RasterFile& file, int level, NodeWindow& window) {
  window.heights.assign(static_cast<std::size_t>(window.columns) * static_cast<std::size_t>(window.rows),
                        kVoidNode);
  const LevelAxis columns = columnAxis(file.placement().grid, level),
                  rows = rowAxis(file.placement().grid, level);
  const auto isBeyond = [](const LevelAxis& axis, std::int64_t cell) {
    return !axis.around() && (cell < 0 || cell >= axis.count());
  };
  const std::int64_t endColumn = window.column + window.columns, endRow = window.row + window.rows;
  for (std::int64_t row = window.row; row < endRow; ++row)
    if (!isBeyond(rows, row)) fillRow(file, level, window, row);
  // After the raster's own, which stand in where nobody has a height beyond.
  for (std::int64_t row = window.row; row < endRow; ++row)
    for (std::int64_t column = window.column; column < endColumn; ++column) {
      if (isBeyond(rows, row) || isBeyond(columns, column))
        fillBeyond(file, level, window, column, row);
      else
        // Own nodes in between need no look.
        column = std::max(
            column, (columns.around() ? endColumn : std::min<std::int64_t>(columns.count(), endColumn)) - 1);
    }
}

void GridNodes::fillRow(const RasterFile& file, int level, NodeWindow& window, std::int64_t row) {
  const LevelAxis columns = columnAxis(file.placement().grid, level);
  const std::int64_t end = window.column + window.columns;
  for (std::int64_t column = window.column; column < end;) {
    if (!columns.around() && column < 0) {
      ++column;
      continue;
    }
    if (!columns.around() && column >= columns.count()) break;
    const std::int32_t own = columns.wrapped(column);
    const HeightBlock& from = block(file, level, own, static_cast<std::int32_t>(row));
    const std::int32_t run = static_cast<std::int32_t>(std::min<std::int64_t>(
        {from.window.column + from.window.columns - own, columns.count() - own, end - column}));
    const std::size_t start =
        static_cast<std::size_t>(row - from.window.row) * static_cast<std::size_t>(from.window.columns) +
        static_cast<std::size_t>(own - from.window.column);
    std::copy_n(from.heights.begin() + static_cast<std::ptrdiff_t>(start), run, &window.at(column, row));
    column += run;
  }
}

// A node beyond an edge: what other rasters have there. Where nobody has anything, the outer posts are
// repeated, as a sampling does, and coarser cells continued, because their middles lie further inside.
void GridNodes::fillBeyond(const RasterFile& file, int level, NodeWindow& window, std::int64_t column,
                           std::int64_t row) {
  const LevelAxis columns = columnAxis(file.placement().grid, level),
                  rows = rowAxis(file.placement().grid, level);
  const Beyond beyond = heightBeyond(file, level, {columns.place(column), rows.place(row)});
  if (beyond.known) {
    window.at(column, row) = beyond.height;
    return;
  }
  const std::int64_t c = columns.around() ? column : std::clamp<std::int64_t>(column, 0, columns.count() - 1);
  const std::int64_t r = std::clamp<std::int64_t>(row, 0, rows.count() - 1);
  window.at(column, row) = ownHeight(
      file, level,
      {level == 0 ? columns.place(c) : columns.place(column), level == 0 ? rows.place(r) : rows.place(row)});
}

GridNodes::Beyond GridNodes::heightBeyond(const RasterFile& file, int level, GridPlace place) {
  const GeoPoint position = file.placement().positionOf(place);
  if (!std::isfinite(position.longitude) || !(std::abs(position.latitude) <= 90)) return {};
  bool known = false;
  for (const RasterFile* other : candidatesAt(position)) {
    if (other == &file) continue;
    const GridPlace there = other->placement().placeOf(position);
    const GridGeometry& grid = other->placement().grid;
    if (!grid.covers(there)) continue;
    const double ratio = std::ldexp(cellOf(file), level) / cellOf(*other);
    const int same =
        std::clamp(static_cast<int>(std::floor(std::log2(ratio) + 0.01)), 0, coarsestLevel(grid));
    const float height = ownHeight(*other, same, there);
    if (!std::isnan(height)) return {true, height};
    known = true;
  }
  return {known, kVoidNode};
}

// From a raster's own nodes alone. A place beyond the outer nodes continues posts by repeating them, coarser
// cells by their slope.
float GridNodes::ownHeight(const RasterFile& file, int level, GridPlace place) {
  const GridGeometry& grid = file.placement().grid;
  const LevelAxis columns = columnAxis(grid, level), rows = rowAxis(grid, level);
  const auto split = [level](const LevelAxis& axis, double at, std::int64_t& base, double& rest) {
    double cell = axis.cellAt(at);
    if (std::abs(cell - std::round(cell)) < kOnNode) cell = std::round(cell);
    if (!axis.around()) {
      if (level == 0) cell = std::clamp(cell, 0.0, axis.count() - 1.0);
      base = std::clamp<std::int64_t>(static_cast<std::int64_t>(std::floor(cell)), 0,
                                      std::max(axis.count() - 2, 0));
      if (axis.count() == 1) cell = 0;
    } else {
      base = static_cast<std::int64_t>(std::floor(cell));
    }
    rest = cell - static_cast<double>(base);
  };
  std::int64_t column = 0, row = 0;
  double x = 0, y = 0;
  split(columns, place.column, column, x);
  split(rows, place.row, row, y);
  const auto at = [&](int right, int down) {
    const std::int32_t c = columns.wrapped(column + right);
    const std::int32_t r = static_cast<std::int32_t>(row) + down;
    return block(file, level, c, r).at(c, r);
  };
  const int right = x != 0 ? 1 : 0, down = y != 0 ? 1 : 0;
  const float north = between(at(0, 0), at(right, 0), x);
  if (down == 0) return north;
  return between(north, between(at(0, 1), at(right, 1), x), y);
}

const std::vector<const RasterFile*>& GridNodes::candidatesAt(GeoPoint position) {
  const int square = ExtentIndex::squareOf(position);
  if (square != square_) {
    candidates_ = index_.candidates(square);
    square_ = square;
  }
  return candidates_;
}

double GridNodes::cellOf(const RasterFile& file) {
  const auto known = cells_.find(&file);
  if (known != cells_.end()) return known->second;
  return cells_[&file] = std::max(cellDegrees(file.placement()), 1e-12);
}

}  // namespace zel
