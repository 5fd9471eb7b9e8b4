#include "zeltool/terrain/height_reader.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/terrain.h"
#include "zeltool/terrain/interpolation.h"
#include "zeltool/terrain/longitude.h"

namespace zel {
namespace {

constexpr double kVoid = std::numeric_limits<double>::quiet_NaN();
constexpr double kOnPost = 1e-6;  // posts: nearer than this, a place is the post itself

bool isPlace(GeoPoint p) {
  return std::isfinite(p.latitude) && std::isfinite(p.longitude) && std::abs(p.latitude) <= 90;
}

void remember(std::vector<const RasterFile*>& files, const RasterFile& file) {
  // The latest is the likeliest.
  if (std::find(files.rbegin(), files.rend(), &file) == files.rend()) files.push_back(&file);
}

// The post at or before a coordinate, and how far beyond it.
struct Split {
  double base = 0, rest = 0;
};

Split split(double coordinate) {
  const double nearest = std::round(coordinate);
  if (std::abs(coordinate - nearest) < kOnPost) return {nearest, 0};
  const double base = std::floor(coordinate);
  return {base, coordinate - base};
}

}  // namespace

HeightReader::HeightReader(const SourceIndex& index, BlockCache& cache, bool cubic, bool fast)
    : index_(index), cache_(cache), cubic_(cubic), fast_(fast), outsideHeight_(kVoidHeight) {}

void HeightReader::read(std::span<const GeoPoint> positions, std::span<float> heights) {
  projected_.clear();
  for (std::size_t i = 0; i < positions.size();) {
    std::size_t next = readStretch(positions, heights, i);
    if (next == i && moveStretch(positions, i)) next = readStretch(positions, heights, i);
    if (next > i) {
      remember(used_, *stretchFile_);
      i = next;
      continue;
    }
    bool isOutside = false;
    const float height = readOne(positions, i, isOutside);
    const bool isVoid = std::isnan(height);
    heights[i] = isOutside ? outsideHeight_ : isVoid ? kVoidHeight : height;
    voids_ += isVoid ? 1 : 0;
    ++i;
  }
}

std::size_t HeightReader::readStretch(std::span<const GeoPoint> positions, std::span<float> heights,
                                      std::size_t first) const {
  if (!stretch_.heights) return first;
  return cubic_ ? runStretch<true>(positions, heights, first) : runStretch<false>(positions, heights, first);
}

template <bool kCubic>
std::size_t HeightReader::runStretch(std::span<const GeoPoint> positions, std::span<float> heights,
                                     std::size_t first) const {
  const Stretch s = stretch_;
  for (std::size_t i = first; i < positions.size(); ++i) {
    const double column = s.columnAtZero + s.columnsPerDegree * positions[i].longitude;
    const double row = s.rowAtZero + s.rowsPerDegree * positions[i].latitude;
    if (!(column > s.west && column < s.east && row > s.north && row < s.south)) return i;
    const auto c = static_cast<std::int32_t>(column), r = static_cast<std::int32_t>(row);
    const double x = column - static_cast<double>(c), y = row - static_cast<double>(r);
    double height;
    if constexpr (kCubic) {
      std::array<double, 16> z;
      const float* line = s.heights + (r - 1) * s.width + (c - 1);
      for (std::size_t k = 0; k < 4; ++k, line += s.width)
        for (std::size_t j = 0; j < 4; ++j) z[k * 4 + j] = static_cast<double>(line[j]);
      height = bicubicLimited(z, x, y);
    } else {
      const float* post = s.heights + r * s.width + c;
      height = bilinear(static_cast<double>(post[0]), static_cast<double>(post[1]),
                        static_cast<double>(post[s.width]), static_cast<double>(post[s.width + 1]), x, y);
    }
    // A void among the posts: the long way tells whether it has any weight.
    if (std::isnan(height)) return i;
    heights[i] = static_cast<float>(height);
  }
  return positions.size();
}

float HeightReader::readOne(std::span<const GeoPoint> positions, std::size_t i, bool& isOutside) {
  const GeoPoint position = positions[i];
  const auto outside = [&] {
    if (!firstOutside_) firstOutside_ = i;
    isOutside = true;
    return static_cast<float>(kVoid);
  };
  if (!isPlace(position)) return outside();

  const std::vector<const RasterFile*>& candidates = candidatesAt(position);
  bool covered = false, near = false;
  for (const RasterFile* file : candidates) {
    const GridPlace place = placeIn(*file, positions, i);
    if (!file->placement().grid.covers(place)) {
      near = near || file->placement().grid.covers(place, 1);
      continue;
    }
    covered = true;
    const double height = interpolate(*file, place, Edge::kRepeat);
    if (std::isnan(height)) continue;
    remember(used_, *file);
    return static_cast<float>(height);
  }
  if (covered) return static_cast<float>(kVoid);
  if (!near) return outside();
  // Between the posts of two rasters that adjoin without sharing posts.
  for (const RasterFile* file : candidates) {
    const GridPlace place = placeIn(*file, positions, i);
    if (!file->placement().grid.covers(place, 1)) continue;
    const double height = interpolate(*file, place, Edge::kRefuse);
    if (std::isnan(height)) continue;
    remember(used_, *file);
    return static_cast<float>(height);
  }
  return static_cast<float>(kVoid);
}

// Turns to the stretch around a position that lies outside the present one; false when there is none.
bool HeightReader::moveStretch(std::span<const GeoPoint> positions, std::size_t i) {
  if (!fast_ || !isPlace(positions[i]) || stretchHolds(positions[i])) return false;
  for (const RasterFile* file : candidatesAt(positions[i])) {
    const RasterPlacement& placement = file->placement();
    const GridPlace place = placeIn(*file, positions, i);
    if (!placement.grid.covers(place)) continue;
    // The first file that covers the position serves it, but for its voids.
    if (placement.transform || !placement.grid.alongMeridians() || !openStretch(*file, positions[i], place))
      return false;
    remember(asked_, *file);
    return true;
  }
  return false;
}

bool HeightReader::stretchHolds(GeoPoint position) const {
  const Stretch& s = stretch_;
  if (!s.heights) return false;
  const double column = s.columnAtZero + s.columnsPerDegree * position.longitude;
  const double row = s.rowAtZero + s.rowsPerDegree * position.latitude;
  return column > s.west && column < s.east && row > s.north && row < s.south;
}

bool HeightReader::openStretch(const RasterFile& file, GeoPoint position, GridPlace place) {
  stretch_.heights = nullptr;
  const GridGeometry& grid = file.placement().grid;
  const double lastColumn = grid.columns() - 1, lastRow = grid.rows() - 1;
  if (!(place.column > 0 && place.column < lastColumn && place.row > 0 && place.row < lastRow)) return false;
  const auto postColumn = static_cast<std::int32_t>(place.column),
             postRow = static_cast<std::int32_t>(place.row);
  const BlockKey key = file.keyOf(postColumn, postRow);
  stretchBlock_ = block(file, postColumn, postRow);
  const PostWindow& window = stretchBlock_->window;

  // Limits in posts of the raster: the block's own part, within the raster by as many posts as the method
  // reaches.
  const double reach = cubic_ ? 1 : 0;
  double west = std::max<double>(key.column * RasterFile::kBlock, reach);
  double north = std::max<double>(key.row * RasterFile::kBlock, reach);
  double east = std::min<double>((key.column + 1) * RasterFile::kBlock, lastColumn - reach);
  double south = std::min<double>((key.row + 1) * RasterFile::kBlock, lastRow - reach);

  // Longitudes here are meant as this position states its own; the next one may state them a turn apart.
  const double longitude = position.longitude;
  const double turn = longitudeNear(longitude, grid.pointOf({0.5 * lastColumn, 0}).x) - longitude;
  const GridPoint origin = grid.pointOf({0, 0}), next = grid.pointOf({1, 1});
  const double perColumn = next.x - origin.x, perRow = next.y - origin.y;  // degrees

  // The candidates are known for this square only, and files of higher preference come first where they
  // cover.
  const auto limitTo = [&](double a, double b, double& low, double& high) {
    low = std::max(low, std::min(a, b));
    high = std::min(high, std::max(a, b));
  };
  const GeoExtent square = ExtentIndex::areaOf(square_);
  const double squareWest = longitudeNear(square.west + 0.5, longitude) - 0.5 + turn;
  limitTo((squareWest - origin.x) / perColumn, (squareWest + 1 - origin.x) / perColumn, west, east);
  limitTo((square.north - origin.y) / perRow, (square.south - origin.y) / perRow, north, south);
  for (const RasterFile* other : candidates_) {
    if (other == &file) break;
    const GeoExtent& area =
        other->placement().transform ? other->placement().reach : other->placement().covered;
    const double middle = 0.5 * (area.west + area.east), half = 0.5 * (area.east - area.west);
    const double centre = longitudeNear(middle, longitude) + turn;
    double left = (centre - half - origin.x) / perColumn, right = (centre + half - origin.x) / perColumn;
    double top = (area.north - origin.y) / perRow, bottom = (area.south - origin.y) / perRow;
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    if (left >= place.column)
      east = std::min(east, left);
    else if (right <= place.column)
      west = std::max(west, right);
    else if (top >= place.row)
      south = std::min(south, top);
    else if (bottom <= place.row)
      north = std::max(north, bottom);
    else
      return false;
  }

  stretch_.width = window.columns;
  stretch_.columnsPerDegree = 1 / perColumn;
  stretch_.rowsPerDegree = 1 / perRow;
  stretch_.columnAtZero = (turn - origin.x) / perColumn - window.column;
  stretch_.rowAtZero = -origin.y / perRow - window.row;
  stretch_.west = west - window.column;
  stretch_.east = east - window.column;
  stretch_.north = north - window.row;
  stretch_.south = south - window.row;
  stretch_.heights = stretchBlock_->heights.data();
  stretchFile_ = &file;
  return true;
}

// Where a position lies in a file; for a file with coordinates of its own, all positions are transformed at
// once.
GridPlace HeightReader::placeIn(const RasterFile& file, std::span<const GeoPoint> positions, std::size_t i) {
  const RasterPlacement& placement = file.placement();
  const CrsTransform* transform = placement.transform.get();
  if (!transform) return placement.grid.placeOf({positions[i].longitude, positions[i].latitude});
  auto known = std::find_if(projected_.begin(), projected_.end(),
                            [&](const Projected& p) { return p.transform == transform; });
  if (known == projected_.end()) {
    Projected all{transform, {}, {}};
    for (const GeoPoint& p : positions) {
      all.x.push_back(isPlace(p) ? normalLongitude(p.longitude) : 0);
      all.y.push_back(isPlace(p) ? p.latitude : 0);
    }
    transform->fromWgs84(all.x, all.y);
    known = projected_.insert(projected_.end(), std::move(all));
  }
  return placement.grid.placeOf({known->x[i], known->y[i]});
}

double HeightReader::interpolate(const RasterFile& file, GridPlace place, Edge edge) {
  remember(asked_, file);
  const Split column = split(place.column), row = split(place.row);
  const GridPlace base{column.base, row.base};
  if (cubic_ && (column.rest > 0 || row.rest > 0)) {
    const double height = sixteenPosts(file, base, column.rest, row.rest);
    if (!std::isnan(height)) return height;
  }
  return fourPosts(file, base, column.rest, row.rest, edge);
}

double HeightReader::fourPosts(const RasterFile& file, GridPlace base, double x, double y, Edge edge) {
  const GridGeometry& grid = file.placement().grid;
  const auto column = static_cast<std::int64_t>(base.column), row = static_cast<std::int64_t>(base.row);
  const auto at = [&](std::int64_t right, std::int64_t down) {
    const PostValue value = post(file, column + right, row + down);
    if (value.known) return value.height;
    if (edge == Edge::kRefuse) return kVoid;
    return ownPost(file, std::clamp<std::int64_t>(column + right, 0, grid.columns() - 1),
                   std::clamp<std::int64_t>(row + down, 0, grid.rows() - 1));
  };
  // A post without weight stands in for itself by its neighbour.
  const double northWest = at(0, 0);
  const double northEast = x > 0 ? at(1, 0) : northWest;
  const double southWest = y > 0 ? at(0, 1) : northWest;
  const double southEast = x > 0 && y > 0 ? at(1, 1) : (x > 0 ? northEast : southWest);
  return bilinear(northWest, northEast, southWest, southEast, x, y);
}

double HeightReader::sixteenPosts(const RasterFile& file, GridPlace base, double x, double y) {
  const auto column = static_cast<std::int64_t>(base.column), row = static_cast<std::int64_t>(base.row);
  std::array<double, 16> z;
  for (std::int64_t r = 0; r < 4; ++r)
    for (std::int64_t c = 0; c < 4; ++c) {
      const PostValue value = post(file, column - 1 + c, row - 1 + r);
      if (!value.known || std::isnan(value.height)) return kVoid;
      z[static_cast<std::size_t>(r * 4 + c)] = value.height;
    }
  return bicubicLimited(z, x, y);
}

HeightReader::PostValue HeightReader::post(const RasterFile& file, std::int64_t column, std::int64_t row) {
  const GridGeometry& grid = file.placement().grid;
  if (grid.period() > 0) column = ((column % grid.period()) + grid.period()) % grid.period();
  if (column >= 0 && column < grid.columns() && row >= 0 && row < grid.rows())
    return {true, ownPost(file, column, row)};
  return postBeyond(file, column, row);
}

// A post that a raster's grid would have beyond its edge: the height that other rasters have there, or the
// raster itself on the other side of a pole.
HeightReader::PostValue HeightReader::postBeyond(const RasterFile& file, std::int64_t column,
                                                 std::int64_t row) {
  GeoPoint position = file.placement().positionOf({static_cast<double>(column), static_cast<double>(row)});
  if (!std::isfinite(position.latitude) || !std::isfinite(position.longitude)) return {};
  bool overPole = false;
  if (std::abs(position.latitude) > 90) {
    position = {std::copysign(180, position.latitude) - position.latitude, position.longitude + 180};
    overPole = true;
  }
  if (std::abs(position.latitude) > 90) return {};
  const int square = ExtentIndex::squareOf(position);
  if (square != neighbourSquare_) {
    neighbours_ = index_.candidates(square);
    neighbourSquare_ = square;
  }
  PostValue value{false, kVoid};
  for (const RasterFile* other : neighbours_) {
    if (other == &file && !overPole) continue;
    const GridPlace place = other->placement().placeOf(position);
    if (!other->placement().grid.covers(place)) continue;
    value.known = true;
    value.height = ownHeight(*other, place);
    if (std::isnan(value.height)) continue;
    remember(asked_, *other);
    remember(used_, *other);
    break;
  }
  return value;
}

// Bilinear height from a raster's own posts alone, its edge repeated in the outer half cells.
double HeightReader::ownHeight(const RasterFile& file, GridPlace place) {
  remember(asked_, file);
  const GridGeometry& grid = file.placement().grid;
  const Split column = split(place.column), row = split(place.row);
  const auto at = [&](int right, int down) {
    std::int64_t c = static_cast<std::int64_t>(column.base) + right;
    if (grid.period() > 0) c = ((c % grid.period()) + grid.period()) % grid.period();
    return ownPost(file, std::clamp<std::int64_t>(c, 0, grid.columns() - 1),
                   std::clamp<std::int64_t>(static_cast<std::int64_t>(row.base) + down, 0, grid.rows() - 1));
  };
  const int right = column.rest > 0 ? 1 : 0, down = row.rest > 0 ? 1 : 0;
  return bilinear(at(0, 0), at(right, 0), at(0, down), at(right, down), column.rest, row.rest);
}

double HeightReader::ownPost(const RasterFile& file, std::int64_t column, std::int64_t row) {
  const auto c = static_cast<std::int32_t>(column), r = static_cast<std::int32_t>(row);
  return static_cast<double>(block(file, c, r)->at(c, r));
}

const HeightBlockPtr& HeightReader::block(const RasterFile& file, std::int32_t column, std::int32_t row) {
  const BlockKey key = file.keyOf(column, row);
  for (const Slot& slot : slots_)
    if (slot.block && slot.key == key) return slot.block;
  Slot& slot = slots_[nextSlot_];
  nextSlot_ = (nextSlot_ + 1) % slots_.size();
  slot = {key, file.block(key, cache_)};
  return slot.block;
}

const std::vector<const RasterFile*>& HeightReader::candidatesAt(GeoPoint position) {
  const int square = ExtentIndex::squareOf(position);
  if (square != square_) {
    candidates_ = index_.candidates(square);
    square_ = square;
  }
  return candidates_;
}

}  // namespace zel
