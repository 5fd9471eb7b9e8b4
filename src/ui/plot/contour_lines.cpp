#include "ui/plot/contour_lines.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace zel {
namespace {

struct Corner {
  CanvasPoint place;
  double value;
};

CanvasPoint crossing(const Corner& a, const Corner& b, double level) {
  const double part = (level - a.value) / (b.value - a.value);
  return {a.place.x + (b.place.x - a.place.x) * part, a.place.y + (b.place.y - a.place.y) * part};
}

// The corners in their order around the mesh.
void addPieces(const std::array<Corner, 4>& corners, double level, std::vector<ContourPiece>& pieces) {
  std::array<CanvasPoint, 4> crossings;
  std::size_t count = 0;
  const auto isBelow = [level](const Corner& corner) { return corner.value < level; };
  // From a corner that is not below onwards: crossings then come in pairs around the corners below.
  const auto start = std::find_if_not(corners.begin(), corners.end(), isBelow);
  if (start == corners.end()) return;
  const auto first = static_cast<std::size_t>(start - corners.begin());
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const Corner& corner = corners[(first + i) % corners.size()];
    const Corner& next = corners[(first + i + 1) % corners.size()];
    if (isBelow(corner) != isBelow(next)) crossings[count++] = crossing(corner, next, level);
  }
  for (std::size_t i = 0; i + 1 < count; i += 2) pieces.push_back({crossings[i], crossings[i + 1]});
}

}  // namespace

std::vector<ContourPiece> contourLine(const SquareGrid& grid, double level) {
  std::vector<ContourPiece> pieces;
  const auto corner = [&grid](std::size_t column, std::size_t row) {
    return Corner{{static_cast<double>(column), static_cast<double>(row)}, grid.at(column, row)};
  };
  for (std::size_t row = 0; row + 1 < grid.side; ++row)
    for (std::size_t column = 0; column + 1 < grid.side; ++column)
      addPieces({corner(column, row), corner(column + 1, row), corner(column + 1, row + 1),
                 corner(column, row + 1)},
                level, pieces);
  return pieces;
}

double contourStep(double low, double high, int mostLines) {
  assert(mostLines >= 1);
  for (double decade = 1;; decade *= 10)
    for (const double step : {decade, 2 * decade, 5 * decade})
      if (std::floor(high / step) - std::ceil(low / step) + 1 <= mostLines) return step;
}

std::vector<double> contourLevels(double low, double high, double step) {
  std::vector<double> levels;
  for (double index = std::ceil(low / step); index * step <= high; index += 1) levels.push_back(index * step);
  return levels;
}

}  // namespace zel
