#include "map/link_lines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numbers>
#include <optional>

namespace zel::host {
namespace {

struct ClipBox {
  double left, top, right, bottom;
};

double lengthOf(MapPoint from, MapPoint to) { return std::hypot(to.x - from.x, to.y - from.y); }

MapPoint between(MapPoint from, MapPoint to, double part) {
  return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

// Which part of the segment is in the box, 0 at its start to 1 at its end.
struct Part {
  double first = 0, last = 1;
};

// Y.-D. Liang and B. A. Barsky, ACM Trans. Graphics 3 (1984) 1-22.
std::optional<Part> partInside(MapPoint from, MapPoint to, const ClipBox& box) {
  Part part;
  const auto cut = [&](double direction, double room) {
    if (direction == 0) return room >= 0;
    const double at = room / direction;
    if (direction < 0)
      part.first = std::max(part.first, at);
    else
      part.last = std::min(part.last, at);
    return part.first <= part.last;
  };
  const double dx = to.x - from.x, dy = to.y - from.y;
  if (!cut(-dx, from.x - box.left) || !cut(dx, box.right - from.x) || !cut(-dy, from.y - box.top) ||
      !cut(dy, box.bottom - from.y))
    return std::nullopt;
  return part;
}

// Adds the pieces of a line, moved by so many pixels, that are within the box.
void addPieces(std::span<const MapPoint> line, double moved, const ClipBox& box,
               std::vector<PixelLine>& pieces) {
  double before = 0;
  bool open = false;  // the last piece goes on
  for (std::size_t i = 0; i + 1 < line.size(); ++i) {
    const MapPoint from{line[i].x + moved, line[i].y}, to{line[i + 1].x + moved, line[i + 1].y};
    const double length = lengthOf(from, to);
    const std::optional<Part> part = partInside(from, to, box);
    if (part && part->last > part->first && length > 0) {
      if (!open) pieces.push_back({{between(from, to, part->first)}, before + part->first * length});
      pieces.back().points.push_back(part->last < 1 ? between(from, to, part->last) : to);
      open = part->last == 1;
    } else if (length > 0) {
      open = false;
    }
    before += length;
  }
}

// One line whose positions are finite.
void addLine(std::span<const MapPoint> line, double worldPixels, const ClipBox& box,
             std::vector<PixelLine>& pieces) {
  if (line.size() < 2) return;
  const auto [west, east] = std::minmax_element(line.begin(), line.end(),
                                                [](MapPoint one, MapPoint other) { return one.x < other.x; });
  const auto first = static_cast<std::int64_t>(std::ceil((box.left - east->x) / worldPixels));
  const auto last = static_cast<std::int64_t>(std::floor((box.right - west->x) / worldPixels));
  for (std::int64_t turn = first; turn <= last; ++turn)
    addPieces(line, static_cast<double>(turn) * worldPixels, box, pieces);
}

double distanceToSegment(MapPoint from, MapPoint to, MapPoint at) {
  const double dx = to.x - from.x, dy = to.y - from.y;
  const double square = dx * dx + dy * dy;
  const double along = square > 0 ? ((at.x - from.x) * dx + (at.y - from.y) * dy) / square : 0;
  return lengthOf(between(from, to, std::clamp(along, 0.0, 1.0)), at);
}

double lengthOf(const PixelLine& line) {
  double length = 0;
  for (std::size_t i = 0; i + 1 < line.points.size(); ++i)
    length += lengthOf(line.points[i], line.points[i + 1]);
  return length;
}

double uprightAngle(MapPoint from, MapPoint to) {
  const double angle = std::atan2(to.y - from.y, to.x - from.x) * (180 / std::numbers::pi);
  if (angle > 90) return angle - 180;
  return angle <= -90 ? angle + 180 : angle;
}

}  // namespace

std::vector<PixelLine> pixelLines(const MapFrame& frame, std::span<const Position> positions, double margin) {
  const double world = frame.worldPixels(), middle = frame.width() / 2;
  const double around = margin > 0 ? margin : 0;
  const ClipBox box{std::max(-around, middle - world / 2), -around,
                    std::min(frame.width() + around, middle + world / 2), frame.height() + around};
  std::vector<PixelLine> pieces;
  std::vector<MapPoint> line;
  for (const Position& position : positions) {
    MapPoint pixel = frame.pixelOf(position);
    if (!std::isfinite(pixel.x) || !std::isfinite(pixel.y)) {
      addLine(line, world, box, pieces);
      line.clear();
      continue;
    }
    // On from the one before the short way round.
    if (!line.empty()) pixel.x -= std::round((pixel.x - line.back().x) / world) * world;
    line.push_back(pixel);
  }
  addLine(line, world, box, pieces);
  return pieces;
}

double distanceToLine(std::span<const MapPoint> line, MapPoint at) {
  if (line.empty()) return std::numeric_limits<double>::infinity();
  double nearest = lengthOf(line.front(), at);
  for (std::size_t i = 0; i + 1 < line.size(); ++i)
    nearest = std::min(nearest, distanceToSegment(line[i], line[i + 1], at));
  return nearest;
}

double distanceToLines(std::span<const PixelLine> lines, MapPoint at) {
  double nearest = std::numeric_limits<double>::infinity();
  for (const PixelLine& line : lines) nearest = std::min(nearest, distanceToLine(line.points, at));
  return nearest;
}

LineMiddle middleOf(std::span<const PixelLine> lines) {
  const PixelLine* longest = nullptr;
  LineMiddle middle;
  for (const PixelLine& line : lines)
    if (const double length = lengthOf(line); length > middle.pixels) {
      middle.pixels = length;
      longest = &line;
    }
  if (longest == nullptr) return middle;
  double left = middle.pixels / 2;
  for (std::size_t i = 0; i + 1 < longest->points.size(); ++i) {
    const MapPoint from = longest->points[i], to = longest->points[i + 1];
    const double length = lengthOf(from, to);
    middle.angleDeg = uprightAngle(from, to);
    middle.at = length > 0 ? between(from, to, std::min(left / length, 1.0)) : from;
    if (left <= length) break;
    left -= length;
  }
  return middle;
}

}  // namespace zel::host
