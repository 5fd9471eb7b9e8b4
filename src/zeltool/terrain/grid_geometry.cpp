#include "zeltool/terrain/grid_geometry.h"

#include <algorithm>
#include <cmath>

#include "zeltool/terrain/longitude.h"

namespace zel {
namespace {

constexpr double kRoundingRoom = 1e-6;  // posts: what the corners' decimal digits leave uncertain

}  // namespace

std::optional<GridGeometry> GridGeometry::make(const std::array<double, 6>& corners, std::int32_t columns,
                                               std::int32_t rows, bool pointCells, bool degrees,
                                               std::string& problem) {
  GridGeometry grid;
  grid.columns_ = columns;
  grid.rows_ = rows;
  grid.pointCells_ = pointCells;
  grid.degrees_ = degrees;
  const auto& t = corners;
  if (!std::all_of(t.begin(), t.end(), [](double v) { return std::isfinite(v); })) {
    problem = "its position holds numbers that are not finite";
    return std::nullopt;
  }
  const double determinant = t[1] * t[5] - t[2] * t[4];
  if (!std::isnormal(determinant)) {
    problem = "its cells have no area";
    return std::nullopt;
  }
  grid.rotated_ = t[2] != 0 || t[4] != 0;
  grid.forward_ = {t[0] + 0.5 * (t[1] + t[2]), t[1], t[2], t[3] + 0.5 * (t[4] + t[5]), t[4], t[5]};
  grid.inverse_ = {t[5] / determinant, -t[2] / determinant, -t[4] / determinant, t[1] / determinant};
  grid.centreX_ = grid.pointOf({0.5 * (columns - 1), 0.5 * (rows - 1)}).x;
  const auto [west, south, east, north] = grid.bounds();
  if (!std::isfinite(west + south + east + north) ||
      !std::all_of(grid.inverse_.begin(), grid.inverse_.end(), [](double v) { return std::isfinite(v); })) {
    problem = "its extent is not finite";
    return std::nullopt;
  }
  if (!degrees) return grid;

  const double cellWidth = std::hypot(t[1], t[4]), cellHeight = std::hypot(t[2], t[5]);
  if (south < -90 - cellHeight || north > 90 + cellHeight || east - west > 360 + 2 * cellWidth ||
      west < -720 || east > 720) {
    problem = "its extent in degrees is no part of the earth";
    return std::nullopt;
  }
  const double round = 360 / std::abs(t[1]);
  if (!grid.rotated_ && std::abs(round - std::round(round)) < 0.01 && columns >= std::round(round))
    grid.period_ = static_cast<std::int32_t>(std::round(round));
  return grid;
}

GridGeometry GridGeometry::degreeTile(int south, int west, std::int32_t columns, std::int32_t rows) {
  const double width = 1.0 / (columns - 1), height = 1.0 / (rows - 1);
  std::string problem;
  auto grid = make({west - 0.5 * width, width, 0, south + 1 + 0.5 * height, 0, -height}, columns, rows, true,
                   true, problem);
  // The outer posts lie on whole degrees exactly; the way over the corners may have cost the last digit.
  grid->forward_[0] = west;
  grid->forward_[3] = south + 1;
  return *grid;
}

GridPlace GridGeometry::placeOf(GridPoint point) const {
  const double x = (degrees_ ? longitudeNear(point.x, centreX_) : point.x) - forward_[0];
  const double y = point.y - forward_[3];
  return {inverse_[0] * x + inverse_[1] * y, inverse_[2] * x + inverse_[3] * y};
}

GridPoint GridGeometry::pointOf(GridPlace place) const {
  return {forward_[0] + forward_[1] * place.column + forward_[2] * place.row,
          forward_[3] + forward_[4] * place.column + forward_[5] * place.row};
}

bool GridGeometry::covers(GridPlace place, double reach) const {
  const double room = margin() + reach + kRoundingRoom;
  const bool inRows = place.row >= -room && place.row <= rows_ - 1 + room;
  const bool inColumns = period_ > 0 || (place.column >= -room && place.column <= columns_ - 1 + room);
  return inRows && inColumns;
}

std::array<double, 4> GridGeometry::bounds(double reach) const {
  const double room = margin() + reach;
  std::array<double, 4> box{INFINITY, INFINITY, -INFINITY, -INFINITY};
  for (const double column : {-room, columns_ - 1 + room})
    for (const double row : {-room, rows_ - 1 + room}) {
      const GridPoint corner = pointOf({column, row});
      box = {std::min(box[0], corner.x), std::min(box[1], corner.y), std::max(box[2], corner.x),
             std::max(box[3], corner.y)};
    }
  return box;
}

GeoExtent GridGeometry::extent(double reach) const {
  const auto [west, south, east, north] = bounds(reach);
  GeoExtent area{std::max(south, -90.0), west, std::min(north, 90.0), east};
  if (period_ > 0 || east - west >= 360) return {area.south, -180, area.north, 180};
  area.west = normalLongitude(west);
  area.east = area.west + (east - west);
  return area;
}

}  // namespace zel
