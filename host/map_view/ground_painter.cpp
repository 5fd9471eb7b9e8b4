#include "map_view/ground_painter.h"

#include <QRectF>
#include <algorithm>
#include <cmath>

namespace zel::host {

namespace {

constexpr int kLevelsUp = 8, kLevelsDown = 2;  // how far off a tile may be that stands in
constexpr double kCoarser = 0.7;               // of a level, from where on the finer one is drawn
constexpr QColor kBeyondTheWorld(0xc9, 0xc9, 0xc4);

// Where the squares of the world are on the screen: each edge on a whole pixel of it, so that neighbours
// meet.
class TileGrid {
 public:
  TileGrid(const MapFrame& frame, double pixelRatio)
      : centre_(worldOf(frame.centre())),
        side_(std::exp2(frame.level()) * kTileSide * pixelRatio),
        middleX_(frame.width() * pixelRatio / 2),
        middleY_(frame.height() * pixelRatio / 2),
        pixelRatio_(pixelRatio) {}

  QRectF rectOf(TileId tile, std::int32_t turn) const {
    const double count = std::exp2(tile.level);
    const double left = edgeX(turn + tile.column / count), right = edgeX(turn + (tile.column + 1) / count);
    const double top = edgeY(tile.row / count), bottom = edgeY((tile.row + 1) / count);
    return {left / pixelRatio_, top / pixelRatio_, (right - left) / pixelRatio_,
            (bottom - top) / pixelRatio_};
  }
  // Whether a tile's pixels are the screen's.
  bool exact(std::int32_t level) const { return std::abs(side_ / std::exp2(level) - kTileSide) < 0.01; }

 private:
  double edgeX(double world) const { return std::round((world - centre_.x) * side_ + middleX_); }
  double edgeY(double world) const { return std::round((world - centre_.y) * side_ + middleY_); }

  MapPoint centre_;
  double side_, middleX_, middleY_, pixelRatio_;
};

TileId ancestorOf(TileId tile, int levels) {
  return {tile.level - levels, tile.column >> levels, tile.row >> levels};
}

// The part of an ancestor's picture that is the tile.
QRectF partOf(TileId tile, int levels) {
  const double side = std::exp2(-levels) * kTileSide;
  const std::int32_t mask = (1 << levels) - 1;
  return {(tile.column & mask) * side, (tile.row & mask) * side, side, side};
}

class GroundPainter {
 public:
  GroundPainter(QPainter& painter, const TileGrid& grid, TileService& tiles)
      : painter_(painter), grid_(grid), tiles_(tiles) {}

  void paint(const PlacedTile& placed) {
    const QImage* picture = tiles_.find(placed.tile, true);
    if (picture != nullptr) {
      draw(placed.tile, placed.turn, *picture, picture->rect());
      return;
    }
    for (int up = 1; up <= std::min(kLevelsUp, placed.tile.level); ++up) {
      const QImage* coarse = tiles_.find(ancestorOf(placed.tile, up), false);
      if (coarse == nullptr) continue;
      draw(placed.tile, placed.turn, *coarse, partOf(placed.tile, up));
      break;
    }
    paintFiner(placed.tile, placed.turn, 1);
  }

 private:
  void paintFiner(TileId tile, std::int32_t turn, int down) {
    if (down > kLevelsDown || tile.level >= kDeepestLevel) return;
    for (std::int32_t quarter = 0; quarter < 4; ++quarter) {
      const TileId child{tile.level + 1, 2 * tile.column + (quarter & 1), 2 * tile.row + (quarter >> 1)};
      const QImage* fine = tiles_.find(child, false);
      if (fine != nullptr) {
        draw(child, turn, *fine, fine->rect());
      } else {
        paintFiner(child, turn, down + 1);
      }
    }
  }
  void draw(TileId tile, std::int32_t turn, const QImage& picture, const QRectF& part) {
    painter_.drawImage(grid_.rectOf(tile, turn), picture, part);
  }

  QPainter& painter_;
  const TileGrid& grid_;
  TileService& tiles_;
};

}  // namespace

std::vector<PlacedTile> tilesOf(const MapFrame& frame, double pixelRatio) {
  const double level = std::floor(frame.level() + std::log2(pixelRatio) + kCoarser);
  const auto deep = static_cast<std::int32_t>(std::clamp(level, 0.0, double{kDeepestLevel}));
  const std::int32_t count = 1 << deep;
  const MapPoint centre = worldOf(frame.centre());
  const double perPixel = std::exp2(-frame.level()) / kTileSide * count;
  const double middleX = centre.x * count, middleY = centre.y * count;
  const double halfX = frame.width() / 2 * perPixel, halfY = frame.height() / 2 * perPixel;
  const auto first = [](double at) { return static_cast<std::int32_t>(std::floor(at)); };
  // A border on a tile's edge does not need the tile beyond it.
  const auto last = [](double at) { return static_cast<std::int32_t>(std::ceil(at)) - 1; };
  std::vector<PlacedTile> placed;
  for (std::int32_t row = std::max(0, first(middleY - halfY));
       row <= std::min(count - 1, last(middleY + halfY)); ++row) {
    for (std::int32_t column = first(middleX - halfX); column <= last(middleX + halfX); ++column) {
      const std::int32_t turn = first(static_cast<double>(column) / count);
      placed.push_back({{deep, column - turn * count, row}, turn});
    }
  }
  const auto distance = [&](const PlacedTile& one) {
    const double x = one.tile.column + static_cast<double>(one.turn) * count + 0.5 - middleX,
                 y = one.tile.row + 0.5 - middleY;
    return x * x + y * y;
  };
  std::stable_sort(placed.begin(), placed.end(),
                   [&](const PlacedTile& a, const PlacedTile& b) { return distance(a) > distance(b); });
  return placed;
}

std::vector<TileId> tileIds(const std::vector<PlacedTile>& tiles) {
  std::vector<TileId> ids;
  ids.reserve(tiles.size());
  for (const PlacedTile& placed : tiles) ids.push_back(placed.tile);
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

void paintGround(QPainter& painter, const MapFrame& frame, double pixelRatio, TileService& tiles,
                 const std::vector<PlacedTile>& wanted, bool smooth) {
  const TileGrid grid(frame, pixelRatio);
  const QRectF whole(0, 0, frame.width(), frame.height());
  painter.fillRect(whole, kBeyondTheWorld);
  const QRectF world = grid.rectOf({}, 0);
  painter.fillRect(QRectF(0, world.top(), frame.width(), world.height()).intersected(whole),
                   QColor::fromRgb(kOutsideColour));
  if (wanted.empty()) return;
  painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth && !grid.exact(wanted.front().tile.level));
  GroundPainter ground(painter, grid, tiles);
  for (const PlacedTile& placed : wanted) ground.paint(placed);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
}

}  // namespace zel::host
