// Where the posts of a raster lie. A post is the place that a cell's height stands for: the cell's centre for
// area cells, the point itself for point cells. Post (0, 0) is the first of the first row; columns and rows
// are counted in posts and may be fractions. x and y are the raster's own coordinates: degrees east and
// north, or units of a projection.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/geo_point.h"

namespace zel {

// Place in a grid, in posts.
struct GridPlace {
  double column = 0, row = 0;
};

struct GridPoint {
  double x = 0, y = 0;
};

// An area of the earth in degrees: west is from -180 up to but excluding 180, east is west or more, up to
// west + 360.
struct GeoExtent {
  double south = 0, west = 0, north = 0, east = 0;
};

class GridGeometry {
 public:
  // From the six numbers of an affine transformation of cell corners, x = t0 + t1 column + t2 row, y = t3 +
  // t4 column + t5 row. Nothing, and a reason, for numbers that place no grid: not finite, no area, or with
  // `degrees` no part of the earth.
  static std::optional<GridGeometry> make(const std::array<double, 6>& corners, std::int32_t columns,
                                          std::int32_t rows, bool pointCells, bool degrees,
                                          std::string& problem);
  // A square tile whose outer posts lie on its edges: the corner in whole degrees, one degree wide and high.
  static GridGeometry degreeTile(int south, int west, std::int32_t columns, std::int32_t rows);

  std::int32_t columns() const { return columns_; }
  std::int32_t rows() const { return rows_; }
  bool pointCells() const { return pointCells_; }
  // Columns after which the grid comes round to the same longitude; 0 unless it goes round the whole earth.
  std::int32_t period() const { return period_; }
  // Rows run along parallels and columns along meridians.
  bool alongMeridians() const { return degrees_ && !rotated_; }

  GridPlace placeOf(GridPoint point) const;
  GridPoint pointOf(GridPlace place) const;

  // Whether a place has its height from this grid: between the outer posts, and for area cells in the outer
  // halves of the outer cells too. `reach` (posts) widens that.
  bool covers(GridPlace place, double reach = 0) const;

  // Only for a grid in degrees: the covered area widened by `reach` posts.
  GeoExtent extent(double reach = 0) const;
  // The same area's bounds in the grid's own coordinates: least x and y, greatest x and y.
  std::array<double, 4> bounds(double reach = 0) const;

 private:
  double margin() const { return pointCells_ ? 0 : 0.5; }

  std::array<double, 6> forward_{};  // x, y from place
  std::array<double, 4> inverse_{};  // place from x - x0, y - y0
  double centreX_ = 0;
  std::int32_t columns_ = 0, rows_ = 0, period_ = 0;
  bool pointCells_ = false, degrees_ = false, rotated_ = false;
};

}  // namespace zel
