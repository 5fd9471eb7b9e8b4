#include "links/link_line.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "zel/geodesic.h"

namespace zel::host {
namespace {

constexpr double kHalfTurn = 180;           // degrees
constexpr std::int32_t kMostPoints = 1100;  // of a line half around the earth

std::vector<Position> pointsOf(Position from, Position to) {
  const double distance = geodesicLine(from, to, 2).distanceKm;
  const auto steps = std::isfinite(distance) ? static_cast<std::int32_t>(distance / kLineStepKm) : 0;
  std::vector<Position> points = geodesicLine(from, to, std::min(2 + steps, kMostPoints)).positions;
  if (points.empty()) return {from, to};
  // The ends as they were given.
  points.front() = from;
  points.back() = to;
  return points;
}

}  // namespace

std::vector<std::vector<Position>> linkLine(Position from, Position to) {
  std::vector<std::vector<Position>> pieces(1);
  for (Position point : pointsOf(from, to)) {
    std::vector<Position>& piece = pieces.back();
    // The antimeridian has two longitudes: the one of the side where the line is.
    if (!piece.empty() && std::abs(point.longitude) == kHalfTurn)
      point.longitude = std::copysign(kHalfTurn, piece.back().longitude);
    if (piece.empty() || std::abs(point.longitude - piece.back().longitude) <= kHalfTurn) {
      piece.push_back(point);
      continue;
    }
    const Position before = piece.back();
    const double side = before.longitude > 0 ? kHalfTurn : -kHalfTurn;
    const double way = point.longitude + 2 * side - before.longitude;  // the short way round
    const double part = way == 0 ? 0 : (side - before.longitude) / way;
    const double latitude = before.latitude + part * (point.latitude - before.latitude);
    if (before.longitude != side) piece.push_back({latitude, side});
    if (point.longitude == -side) {
      pieces.push_back({point});
    } else {
      pieces.push_back({{latitude, -side}, point});
    }
  }
  // An end on the antimeridian itself may leave a piece of one point.
  std::erase_if(pieces, [&](const auto& piece) { return piece.size() < 2 && pieces.size() > 1; });
  return pieces;
}

}  // namespace zel::host
