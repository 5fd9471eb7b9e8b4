#include "zeltool/terrain/grid_scale.h"

#include <algorithm>
#include <cmath>

namespace zel {
namespace {

constexpr int kMostPlaces = 16;   // along a side; beyond that a coarser level must do
constexpr double kSame = 1.001;   // what the corners' decimal digits and a grid's own leave uncertain
constexpr double kAlmost = 0.02;  // cells: a grid so little coarser than a level counts as just as coarse

int places(double step, int level) {
  return std::clamp(static_cast<int>(std::ceil(std::ldexp(step, -level) - kAlmost)), 1, kMostPlaces);
}

}  // namespace

GridScale gridScale(const GridSteps& steps, int coarsest) {
  GridScale scale;
  const double least = std::min(steps.leastX, steps.leastY), most = std::max(steps.mostX, steps.mostY);
  const auto fits = [&](int level) { return std::ldexp(1.0, level) <= least * kSame; };
  const auto enough = [&](int level) { return std::ldexp(most, -level) <= kMostPlaces; };
  while (scale.level < coarsest && (fits(scale.level + 1) || !enough(scale.level))) ++scale.level;
  scale.placesX = places(steps.mostX, scale.level);
  scale.placesY = places(steps.mostY, scale.level);
  return scale;
}

}  // namespace zel
