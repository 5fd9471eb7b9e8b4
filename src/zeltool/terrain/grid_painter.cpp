#include "zeltool/terrain/grid_painter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/terrain.h"
#include "zeltool/terrain/height_reader.h"
#include "zeltool/terrain/longitude.h"
#include "zeltool/terrain/terrain_area.h"

namespace zel {
namespace {

constexpr float kNoHeight = std::numeric_limits<float>::quiet_NaN();
constexpr double kEvenSteps = 1.5;            // rows whose steps differ by less are painted at one scale
constexpr std::size_t kFewRows = 8;           // rows that are not parted further
constexpr std::int64_t kMostNodes = 1 << 25;  // of a window

std::vector<double> stepsOf(std::span<const double> values) {
  std::vector<double> steps(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t before = i > 0 ? i - 1 : i, after = i + 1 < values.size() ? i + 1 : i;
    if (after > before)
      steps[i] = std::abs(values[after] - values[before]) / static_cast<double>(after - before);
    // Places that are no numbers lie in no raster; they must not decide how the others are read.
    if (!std::isfinite(steps[i])) steps[i] = 0;
  }
  return steps;
}

// `count` places evenly over a stretch of `step` around a middle, but none outside `low` to `high`: the
// stretch is then cut on both sides, so that its middle stays.
void spread(double middle, double step, int count, double low, double high, std::vector<double>& places) {
  middle = std::clamp(middle, low, high);
  const double half = std::max(0.0, std::min({0.5 * step, middle - low, high - middle}));
  for (int i = 0; i < count; ++i) places.push_back(middle + half * ((2 * i + 1.0) / count - 1));
}

struct NodeSplit {
  std::int64_t base = 0;
  double rest = 0;
};

NodeSplit splitAtNode(double place) {
  const double nearest = std::round(place);
  if (std::abs(place - nearest) < kOnNode) return {static_cast<std::int64_t>(nearest), 0};
  const double base = std::floor(place);
  return {static_cast<std::int64_t>(base), place - base};
}

// Between the four nodes around a place; void where the nearest is, else of those that are not.
float heightAt(const NodeWindow& window, double column, double row) {
  const NodeSplit x = splitAtNode(column), y = splitAtNode(row);
  if (std::isnan(window.at(x.base + (x.rest > 0.5 ? 1 : 0), y.base + (y.rest > 0.5 ? 1 : 0))))
    return kNoHeight;
  double sum = 0, weights = 0;
  for (int down = 0; down <= (y.rest > 0 ? 1 : 0); ++down)
    for (int right = 0; right <= (x.rest > 0 ? 1 : 0); ++right) {
      const float height = window.at(x.base + right, y.base + down);
      if (std::isnan(height)) continue;
      const double weight = (right == 1 ? x.rest : 1 - x.rest) * (down == 1 ? y.rest : 1 - y.rest);
      sum += weight * static_cast<double>(height);
      weights += weight;
    }
  return static_cast<float>(sum / weights);
}

// The mean over the places of a cell that are no voids.
template <typename HeightOf>
float meanOf(int placesX, int placesY, HeightOf&& heightOf) {
  double sum = 0;
  int count = 0;
  for (int y = 0; y < placesY; ++y)
    for (int x = 0; x < placesX; ++x) {
      const float height = heightOf(x, y);
      if (std::isnan(height)) continue;
      sum += static_cast<double>(height);
      ++count;
    }
  return count > 0 ? static_cast<float>(sum / count) : kNoHeight;
}

bool allVoid(const NodeWindow& window) {
  return std::all_of(window.heights.begin(), window.heights.end(), [](float h) { return std::isnan(h); });
}

}  // namespace

GridPainter::GridPainter(const SourceIndex& index, BlockCache& blocks, GridNodes& nodes,
                         std::span<const double> latitudes, std::span<const double> longitudes,
                         std::span<float> heights)
    : index_(index),
      blocks_(blocks),
      nodes_(nodes),
      latitudes_(latitudes),
      longitudes_(longitudes),
      heights_(heights),
      latitudeSteps_(stepsOf(latitudes)),
      longitudeSteps_(stepsOf(longitudes)),
      near_(heights.size()) {
  // A single row or column is as fine as the other side.
  if (latitudes.size() == 1 && !longitudes.empty()) latitudeSteps_[0] = longitudeSteps_[0];
  if (longitudes.size() == 1 && !latitudes.empty()) longitudeSteps_[0] = latitudeSteps_[0];
}

void GridPainter::paint() {
  if (heights_.empty()) return;
  std::fill(heights_.begin(), heights_.end(), kOutsideHeight);
  paintBand(0, latitudes_.size());
  closeGaps();
}

// On a map of the world the rows near the poles lie much closer than the others.
void GridPainter::paintBand(std::size_t top, std::size_t bottom) {
  const auto [least, most] =
      std::minmax_element(latitudeSteps_.begin() + static_cast<std::ptrdiff_t>(top),
                          latitudeSteps_.begin() + static_cast<std::ptrdiff_t>(bottom));
  if (bottom - top > kFewRows && *most > kEvenSteps * *least) {
    const std::size_t middle = top + (bottom - top) / 2;
    paintBand(top, middle);
    paintBand(middle, bottom);
    return;
  }
  for (const RasterFilePtr& file : index_.files()) {
    if (!mayTouch(file->placement().reach, top, bottom)) continue;
    nodes_.checkCancelled();
    paintFile(*file, top, bottom);
  }
}

bool GridPainter::mayTouch(const GeoExtent& area, std::size_t top, std::size_t bottom) const {
  const auto [south, north] = std::minmax(latitudes_[top], latitudes_[bottom - 1]);
  if (!(south <= area.north && north >= area.south)) return false;
  const auto [west, east] = std::minmax(longitudes_.front(), longitudes_.back());
  // The first of the area's turns that does not end before the grid begins.
  return area.west + 360 * std::ceil((west - area.east) / 360) <= east;
}

bool GridPainter::needed(const GridPart& part) const {
  for (std::size_t row = part.top; row < part.bottom; ++row)
    for (std::size_t column = part.left; column < part.right; ++column) {
      const float height = heights_[row * longitudes_.size() + column];
      if (height == kOutsideHeight || height == kVoidHeight) return true;
    }
  return false;
}

void GridPainter::set(std::size_t row, std::size_t column, float height) {
  float& place = heights_[row * longitudes_.size() + column];
  if (place != kOutsideHeight && place != kVoidHeight) return;
  place = std::isnan(height) ? kVoidHeight : height;
}

void GridPainter::paintFile(const RasterFile& file, std::size_t top, std::size_t bottom) {
  const RasterPlacement& placement = file.placement();
  if (!placement.transform && placement.grid.alongMeridians()) {
    std::vector<double> columns, rows;
    for (const GridPart& part : straightParts(file, top, bottom, columns, rows))
      paintStraight(file, part, columns, rows);
    return;
  }
  // The rows and columns that may lie within the raster.
  GridPart part{bottom, top, longitudes_.size(), 0};
  const GeoExtent& area = placement.reach;
  for (std::size_t row = top; row < bottom; ++row)
    if (latitudes_[row] >= area.south && latitudes_[row] <= area.north) {
      part.top = std::min(part.top, row);
      part.bottom = std::max(part.bottom, row + 1);
    }
  const double middle = 0.5 * (area.west + area.east), half = 0.5 * (area.east - area.west) + 1e-9;
  for (std::size_t column = 0; column < longitudes_.size(); ++column)
    if (std::abs(longitudeNear(longitudes_[column], middle) - middle) <= half) {
      part.left = std::min(part.left, column);
      part.right = std::max(part.right, column + 1);
    }
  if (part.top < part.bottom && part.left < part.right && needed(part)) paintAny(file, part);
}

// The parts of the grid that a raster along meridians covers: more than one where the grid goes round the
// earth. Marks what is only near.
std::vector<GridPart> GridPainter::straightParts(const RasterFile& file, std::size_t top, std::size_t bottom,
                                                 std::vector<double>& columns, std::vector<double>& rows) {
  const GridGeometry& grid = file.placement().grid;
  const GridPlace middle{0.5 * (grid.columns() - 1), 0.5 * (grid.rows() - 1)};
  const GridPoint centre = grid.pointOf(middle), next = grid.pointOf({middle.column + 1, middle.row});
  const double columnsPerDegree = 1 / (next.x - centre.x);
  columns.resize(longitudes_.size());
  rows.resize(latitudes_.size());
  std::vector<std::uint8_t> columnCover(columns.size()), rowCover(rows.size());  // 1 near, 2 covered
  const auto cover = [&](GridPlace place) -> std::uint8_t {
    return grid.covers(place) ? 2 : grid.covers(place, 1) ? 1 : 0;
  };
  const double start = grid.placeOf({longitudes_[0], centre.y}).column;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    // On a raster that goes round, places run on without a jump.
    columns[i] = grid.period() > 0 ? start + (longitudes_[i] - longitudes_[0]) * columnsPerDegree
                                   : grid.placeOf({longitudes_[i], centre.y}).column;
    columnCover[i] = cover({columns[i], middle.row});
  }
  bool anyRow = false;
  GridPart band{bottom, top, 0, 0};
  for (std::size_t i = top; i < bottom; ++i) {
    rows[i] = grid.placeOf({centre.x, latitudes_[i]}).row;
    rowCover[i] = cover({middle.column, rows[i]});
    anyRow = anyRow || rowCover[i] > 0;
    if (rowCover[i] < 2) continue;
    band.top = std::min(band.top, i);
    band.bottom = std::max(band.bottom, i + 1);
  }
  if (!anyRow) return {};
  for (std::size_t row = top; row < bottom; ++row)
    for (std::size_t column = 0; rowCover[row] > 0 && column < columns.size(); ++column)
      if (columnCover[column] > 0 && (columnCover[column] < 2 || rowCover[row] < 2))
        near_[row * columns.size() + column] = 1;

  std::vector<GridPart> parts;
  const double jump = 180 * std::abs(columnsPerDegree);
  for (std::size_t i = 0; i < columns.size() && band.top < band.bottom; ++i) {
    if (columnCover[i] < 2) continue;
    const bool runsOn =
        !parts.empty() && parts.back().right == i && std::abs(columns[i] - columns[i - 1]) < jump;
    const bool sameWay = !runsOn || parts.back().width() < 2 ||
                         (columns[i] > columns[i - 1]) == (columns[i - 1] > columns[i - 2]);
    if (runsOn && sameWay)
      parts.back().right = i + 1;
    else
      parts.push_back({band.top, band.bottom, i, i + 1});
  }
  parts.erase(std::remove_if(parts.begin(), parts.end(), [this](const GridPart& p) { return !needed(p); }),
              parts.end());
  return parts;
}

GridPainter::Side GridPainter::side(const LevelAxis& axis, std::span<const double> places,
                                    std::span<const double> steps, int count) {
  Side side;
  const double low = axis.around() ? -INFINITY : axis.place(-1),
               high = axis.around() ? INFINITY : axis.place(axis.count());
  for (std::size_t i = 0; i < places.size(); ++i) spread(places[i], steps[i], count, low, high, side.places);
  for (double& place : side.places) place = axis.cellAt(place);

  const auto perCell = static_cast<std::size_t>(count);
  std::vector<std::int64_t> firsts(places.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto [least, most] =
        std::minmax_element(side.places.begin() + static_cast<std::ptrdiff_t>(i * perCell),
                            side.places.begin() + static_cast<std::ptrdiff_t>((i + 1) * perCell));
    const NodeSplit a = splitAtNode(*least), b = splitAtNode(*most);
    firsts[i] = a.base;
    const std::int64_t last = b.base + (b.rest > 0 ? 1 : 0);
    side.most = std::max(side.most, static_cast<std::size_t>(last - a.base + 1));
    side.low = i == 0 ? a.base : std::min(side.low, a.base);
    side.high = i == 0 ? last : std::max(side.high, last);
  }
  // A cell that takes fewer nodes than another has zeros for the rest, which must lie within the window.
  side.most = std::min(side.most, static_cast<std::size_t>(side.high - side.low + 1));
  side.weights.assign(places.size() * side.most, 0.0F);
  side.first.resize(places.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    const std::int64_t first = std::min(firsts[i], side.high + 1 - static_cast<std::int64_t>(side.most));
    side.first[i] = static_cast<std::size_t>(first - side.low);
    for (std::size_t k = 0; k < perCell; ++k) {
      const NodeSplit at = splitAtNode(side.places[i * perCell + k]);
      float* weights = &side.weights[i * side.most + static_cast<std::size_t>(at.base - first)];
      weights[0] += static_cast<float>((1 - at.rest) / count);
      if (at.rest > 0) weights[1] += static_cast<float>(at.rest / count);
    }
  }
  return side;
}

void GridPainter::paintStraight(const RasterFile& file, const GridPart& part, std::span<const double> columns,
                                std::span<const double> rows) {
  const GridGeometry& grid = file.placement().grid;
  const GridPoint a = grid.pointOf({0, 0}), b = grid.pointOf({1, 1});
  const auto scaled = [](const std::vector<double>& steps, std::size_t first, std::size_t end,
                         double perPost) {
    std::vector<double> posts(steps.begin() + static_cast<std::ptrdiff_t>(first),
                              steps.begin() + static_cast<std::ptrdiff_t>(end));
    for (double& step : posts) step /= std::abs(perPost);
    return posts;
  };
  const std::vector<double> stepsX = scaled(longitudeSteps_, part.left, part.right, b.x - a.x);
  const std::vector<double> stepsY = scaled(latitudeSteps_, part.top, part.bottom, b.y - a.y);
  const auto [leastX, mostX] = std::minmax_element(stepsX.begin(), stepsX.end());
  const auto [leastY, mostY] = std::minmax_element(stepsY.begin(), stepsY.end());
  const GridScale scale = gridScale({*leastX, *mostX, *leastY, *mostY}, coarsestLevel(grid));

  const Side x =
      side(columnAxis(grid, scale.level), columns.subspan(part.left, part.width()), stepsX, scale.placesX);
  const Side y =
      side(rowAxis(grid, scale.level), rows.subspan(part.top, part.height()), stepsY, scale.placesY);
  NodeWindow window{x.low,
                    y.low,
                    static_cast<std::int32_t>(x.high - x.low + 1),
                    static_cast<std::int32_t>(y.high - y.low + 1),
                    {}};
  nodes_.fill(file, scale.level, window);
  if (allVoid(window)) {
    for (std::size_t row = part.top; row < part.bottom; ++row)
      for (std::size_t column = part.left; column < part.right; ++column) set(row, column, kNoHeight);
    return;
  }

  // Along the rows first, then along the columns. A void anywhere makes a NaN, which is then looked at
  // closely.
  const std::size_t width = part.width(), windowWidth = static_cast<std::size_t>(window.columns);
  std::vector<float> lines(static_cast<std::size_t>(window.rows) * width);
  for (std::size_t row = 0; row < static_cast<std::size_t>(window.rows); ++row) {
    const float* from = window.heights.data() + row * windowWidth;
    float* to = lines.data() + row * width;
    for (std::size_t i = 0; i < width; ++i) {
      const float* node = from + x.first[i];
      const float* weight = x.weights.data() + i * x.most;
      float sum = 0;
      for (std::size_t k = 0; k < x.most; ++k) sum += weight[k] * node[k];
      to[i] = sum;
    }
  }
  std::vector<float> line(width);
  for (std::size_t j = 0; j < part.height(); ++j) {
    nodes_.checkCancelled();
    std::fill(line.begin(), line.end(), 0.0F);
    for (std::size_t k = 0; k < y.most; ++k) {
      const float weight = y.weights[j * y.most + k];
      const float* from = lines.data() + (y.first[j] + k) * width;
      for (std::size_t i = 0; i < width; ++i) line[i] += weight * from[i];
    }
    for (std::size_t i = 0; i < width; ++i) {
      if (std::isnan(line[i]))
        line[i] = meanOf(scale.placesX, scale.placesY, [&](int px, int py) {
          return heightAt(
              window, x.places[i * static_cast<std::size_t>(scale.placesX) + static_cast<std::size_t>(px)],
              y.places[j * static_cast<std::size_t>(scale.placesY) + static_cast<std::size_t>(py)]);
        });
      set(part.top + j, part.left + i, line[i]);
    }
  }
}

// Places in posts of every cell of the part, row by row.
void GridPainter::placesOf(const RasterFile& file, const GridPart& part, std::vector<double>& columns,
                           std::vector<double>& rows) const {
  const RasterPlacement& placement = file.placement();
  const std::size_t width = part.width(), size = width * part.height();
  columns.resize(size);
  rows.resize(size);
  // Exact places of the cells at the given rows and columns, in the order of both.
  const auto exact = [&](const std::vector<std::size_t>& atRows, const std::vector<std::size_t>& atColumns) {
    std::vector<double> x, y;
    for (const std::size_t row : atRows)
      for (const std::size_t column : atColumns) {
        x.push_back(normalLongitude(longitudes_[part.left + column]));
        y.push_back(latitudes_[part.top + row]);
      }
    if (placement.transform) placement.transform->fromWgs84(x, y);
    std::vector<GridPlace> places(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) places[i] = placement.grid.placeOf({x[i], y[i]});
    return places;
  };
  const auto every = [](std::size_t count, std::size_t step) {
    std::vector<std::size_t> at;
    for (std::size_t i = 0; i + 1 < count; i += step) at.push_back(i);
    at.push_back(count - 1);
    return at;
  };
  // Projections bend little from cell to cell: every 16th place is taken and the others are put between,
  // where that is checked to hold.
  for (const std::size_t step : {std::size_t{16}, std::size_t{4}, std::size_t{1}}) {
    const auto atRows = every(part.height(), step), atColumns = every(width, step);
    const std::vector<GridPlace> knots = exact(atRows, atColumns);
    const auto bilinearPlace = [&](std::size_t i, std::size_t j, double x, double y) {
      const std::size_t n = atColumns.size(), i2 = std::min(i + 1, n - 1),
                        j2 = std::min(j + 1, atRows.size() - 1);
      const auto mix = [&](double GridPlace::*member) {
        const double top = std::lerp(knots[j * n + i].*member, knots[j * n + i2].*member, x);
        return std::lerp(top, std::lerp(knots[j2 * n + i].*member, knots[j2 * n + i2].*member, x), y);
      };
      return GridPlace{mix(&GridPlace::column), mix(&GridPlace::row)};
    };
    if (step > 1) {
      std::vector<std::size_t> betweenRows, betweenColumns;
      const auto middles = [](const std::vector<std::size_t>& at, std::vector<std::size_t>& between) {
        for (std::size_t i = 0; i + 1 < at.size(); ++i) between.push_back((at[i] + at[i + 1]) / 2);
        if (between.empty()) between.push_back(0);
      };
      middles(atRows, betweenRows);
      middles(atColumns, betweenColumns);
      const std::vector<GridPlace> check = exact(betweenRows, betweenColumns);
      bool holds = true;
      for (std::size_t j = 0; holds && j < betweenRows.size(); ++j)
        for (std::size_t i = 0; holds && i < betweenColumns.size(); ++i) {
          const auto part01 = [](const std::vector<std::size_t>& at, std::size_t k, std::size_t place) {
            return k + 1 < at.size()
                       ? static_cast<double>(place - at[k]) / static_cast<double>(at[k + 1] - at[k])
                       : 0.0;
          };
          const GridPlace guess =
              bilinearPlace(i, j, part01(atColumns, i, betweenColumns[i]), part01(atRows, j, betweenRows[j]));
          const GridPlace& truth = check[j * betweenColumns.size() + i];
          // A hundredth of a grid's cell, or of a post where those are larger.
          const GridPlace& near = knots[j * atColumns.size() + i];
          const GridPlace& far = knots[j * atColumns.size() + std::min(i + 1, atColumns.size() - 1)];
          const double cell = std::max(
              1.0, std::hypot(far.column - near.column, far.row - near.row) / static_cast<double>(step));
          holds = std::abs(guess.column - truth.column) < 0.01 * cell &&
                  std::abs(guess.row - truth.row) < 0.01 * cell;
        }
      if (!holds) continue;
    }
    for (std::size_t row = 0; row < part.height(); ++row) {
      const std::size_t j = std::min(row / step, atRows.size() - 1);
      const double y = j + 1 < atRows.size() ? static_cast<double>(row - atRows[j]) /
                                                   static_cast<double>(atRows[j + 1] - atRows[j])
                                             : 0;
      for (std::size_t column = 0; column < width; ++column) {
        const std::size_t i = std::min(column / step, atColumns.size() - 1);
        const double x = i + 1 < atColumns.size() ? static_cast<double>(column - atColumns[i]) /
                                                        static_cast<double>(atColumns[i + 1] - atColumns[i])
                                                  : 0;
        const GridPlace place = step == 1 ? knots[row * width + column] : bilinearPlace(i, j, x, y);
        columns[row * width + column] = place.column;
        rows[row * width + column] = place.row;
      }
    }
    return;
  }
}

// A raster in a projection, or askew: each cell of the grid has a place of its own in it.
void GridPainter::paintAny(const RasterFile& file, const GridPart& part) {
  const GridGeometry& grid = file.placement().grid;
  std::vector<double> columns, rows;
  placesOf(file, part, columns, rows);
  const std::size_t width = part.width();
  const auto placeAt = [&](std::size_t j, std::size_t i) {
    return GridPlace{columns[j * width + i], rows[j * width + i]};
  };
  // From a cell to its neighbours, in posts.
  const auto stepAt = [&](std::size_t j, std::size_t i, bool down) {
    const std::size_t count = down ? part.height() : width, at = down ? j : i;
    const std::size_t before = at > 0 ? at - 1 : at, after = at + 1 < count ? at + 1 : at;
    if (after == before) return GridPlace{};
    const GridPlace a = down ? placeAt(before, i) : placeAt(j, before),
                    b = down ? placeAt(after, i) : placeAt(j, after);
    const double cells = static_cast<double>(after - before);
    return GridPlace{(b.column - a.column) / cells, (b.row - a.row) / cells};
  };
  GridSteps steps{INFINITY, 0, INFINITY, 0};
  GridPlace least{INFINITY, INFINITY}, most{-INFINITY, -INFINITY};
  std::vector<std::uint8_t> covered(columns.size());
  bool any = false;
  for (std::size_t j = 0; j < part.height(); ++j)
    for (std::size_t i = 0; i < width; ++i) {
      const GridPlace place = placeAt(j, i);
      if (!std::isfinite(place.column) || !std::isfinite(place.row)) continue;
      if (!grid.covers(place)) {
        if (grid.covers(place, 1)) near_[(part.top + j) * longitudes_.size() + part.left + i] = 1;
        continue;
      }
      covered[j * width + i] = 1;
      any = true;
      const GridPlace right = stepAt(j, i, false), down = stepAt(j, i, true);
      const double x = std::max(std::abs(right.column), std::abs(right.row)),
                   y = std::max(std::abs(down.column), std::abs(down.row));
      if (std::isfinite(x))
        steps = {std::min(steps.leastX, x), std::max(steps.mostX, x), steps.leastY, steps.mostY};
      if (std::isfinite(y))
        steps = {steps.leastX, steps.mostX, std::min(steps.leastY, y), std::max(steps.mostY, y)};
      least = {std::min(least.column, place.column), std::min(least.row, place.row)};
      most = {std::max(most.column, place.column), std::max(most.row, place.row)};
    }
  if (!any) return;
  // A part of a single row or column is as fine as its other side.
  if (part.height() == 1) steps = {steps.leastX, steps.mostX, steps.leastX, steps.mostX};
  if (width == 1) steps = {steps.leastY, steps.mostY, steps.leastY, steps.mostY};
  GridScale scale = gridScale(steps, coarsestLevel(grid));

  const double room = std::max(steps.mostX, steps.mostY) + 1;
  const auto windowAt = [&](int level) {
    const LevelAxis x = columnAxis(grid, level), y = rowAxis(grid, level);
    const auto low = [&](const LevelAxis& axis, double place) {
      const auto cell = static_cast<std::int64_t>(std::floor(axis.cellAt(place - room)));
      return axis.around() ? cell : std::clamp<std::int64_t>(cell, -1, axis.count());
    };
    const auto high = [&](const LevelAxis& axis, double place) {
      const auto cell = static_cast<std::int64_t>(std::floor(axis.cellAt(place + room))) + 1;
      return axis.around() ? cell : std::clamp<std::int64_t>(cell, -1, axis.count());
    };
    NodeWindow window{low(x, least.column), low(y, least.row), 0, 0, {}};
    window.columns = static_cast<std::int32_t>(high(x, most.column) - window.column + 1);
    window.rows = static_cast<std::int32_t>(high(y, most.row) - window.row + 1);
    return window;
  };
  NodeWindow window = windowAt(scale.level);
  // Where steps differ much, the finest of them would make the window too large.
  while (std::int64_t{window.columns} * window.rows > kMostNodes && scale.level < coarsestLevel(grid))
    window = windowAt(++scale.level);
  nodes_.fill(file, scale.level, window);

  const LevelAxis axisX = columnAxis(grid, scale.level), axisY = rowAxis(grid, scale.level);
  const auto inWindow = [](double cell, std::int64_t first, std::int32_t count) {
    return std::clamp(cell, static_cast<double>(first), static_cast<double>(first + count - 1));
  };
  for (std::size_t j = 0; j < part.height(); ++j) {
    nodes_.checkCancelled();
    for (std::size_t i = 0; i < width; ++i) {
      if (!covered[j * width + i]) continue;
      const GridPlace place = placeAt(j, i), right = stepAt(j, i, false), down = stepAt(j, i, true);
      const float height = meanOf(scale.placesX, scale.placesY, [&](int px, int py) {
        const double tx = (px + 0.5) / scale.placesX - 0.5, ty = (py + 0.5) / scale.placesY - 0.5;
        const double column = place.column + tx * right.column + ty * down.column;
        const double row = place.row + tx * right.row + ty * down.row;
        if (!std::isfinite(column) || !std::isfinite(row)) return kNoHeight;
        return heightAt(window, inWindow(axisX.cellAt(column), window.column, window.columns),
                        inWindow(axisY.cellAt(row), window.row, window.rows));
      });
      set(part.top + j, part.left + i, height);
    }
  }
}

// Between the posts of two rasters that adjoin without sharing posts.
void GridPainter::closeGaps() {
  std::vector<std::size_t> cells;
  std::vector<GeoPoint> positions;
  for (std::size_t i = 0; i < near_.size(); ++i)
    if (near_[i] != 0 && heights_[i] == kOutsideHeight) {
      cells.push_back(i);
      positions.push_back({latitudes_[i / longitudes_.size()], longitudes_[i % longitudes_.size()]});
    }
  if (cells.empty()) return;
  std::vector<float> heights(cells.size());
  HeightReader reader(index_, blocks_, false);
  reader.read(positions, heights);
  for (std::size_t i = 0; i < cells.size(); ++i)
    if (heights[i] != kVoidHeight) heights_[cells[i]] = heights[i];
}

}  // namespace zel
