#include "models/longrice/terrain_irregularity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "models/longrice/straight_line_fit.h"

namespace zel::longrice {
namespace {

constexpr double kGrowthDistance = 50e3;  // D, metres
constexpr std::size_t kFewestTenths = 4;
constexpr std::size_t kMostTenths = 25;
// Values read for so many to a tenth, less what centres the tenths.
constexpr std::size_t valuesFor(std::size_t tenths) { return 10 * tenths - 5; }

// The n-th greatest (from 1) of the values, which it reorders.
double nthGreatest(std::span<double> values, std::size_t n) {
  const auto wanted = values.begin() + static_cast<std::ptrdiff_t>(n - 1);
  std::nth_element(values.begin(), wanted, values.end(), std::greater<>());
  return *wanted;
}

}  // namespace

double terrainIrregularityOver(double distance, double deltaH) {
  return deltaH * (1 - 0.8 * std::exp(-distance / kGrowthDistance));
}

double terrainRoughnessOver(double distance, double deltaH) {
  constexpr double kScale = 16;  // H, metres
  const double irregularity = terrainIrregularityOver(distance, deltaH);
  return 0.78 * irregularity * std::exp(-std::sqrt(std::sqrt(irregularity / kScale)));
}

double terrainIrregularity(std::span<const double> elevations, double spacing, double from, double to) {
  const double first = from / spacing;
  const double last = to / spacing;
  if (last - first < 2) return 0;
  const std::size_t tenths =
      std::clamp(static_cast<std::size_t>(0.1 * (last - first + 8)), kFewestTenths, kMostTenths);
  const std::size_t count = valuesFor(tenths);

  std::array<double, valuesFor(kMostTenths)> storage;  // NOLINT: every value that is read is set first
  const std::span<double> values(storage.data(), count);
  const double step = (last - first) / static_cast<double>(count - 1);
  FitSums sums;
  const auto lastSample = static_cast<std::int32_t>(elevations.size() - 1);
  double number = 0;
  for (double& value : values) {
    const double position = first + step * number;
    const std::int32_t right = std::min(static_cast<std::int32_t>(position) + 1, lastSample);
    const double rightHeight = elevations[static_cast<std::size_t>(right)];
    const double leftHeight = elevations[static_cast<std::size_t>(right - 1)];
    value = rightHeight + (rightHeight - leftHeight) * (position - right);
    sums.heights += value;
    sums.moments += value * number;
    ++number;
  }
  sums.firstHeight = values.front();
  sums.lastHeight = values.back();
  const StraightLine trend = fitStraightLine(0, count - 1, sums);
  number = 0;
  for (double& value : values) value -= trend.at(number++);

  const double highTenth = nthGreatest(values, tenths);
  // What follows the high tenth is not above it.
  const double lowTenth = nthGreatest(values.subspan(tenths), count - 2 * tenths + 1);
  return (highTenth - lowTenth) / (1 - 0.8 * std::exp(-(last - first) * spacing / kGrowthDistance));
}

}  // namespace zel::longrice
