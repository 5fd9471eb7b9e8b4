#include "models/longrice/terrain_irregularity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "models/longrice/straight_line_fit.h"

namespace zel::longrice {
namespace {

constexpr double kGrowthDistance = 50e3;  // D, metres
constexpr std::size_t kFewestTenths = 4;
constexpr std::size_t kMostTenths = 25;
// Values read for so many to a tenth, less what centres the tenths.
constexpr std::size_t valuesFor(std::size_t tenths) { return 10 * tenths - 5; }

struct Tenths {
  double high;  // the n-th greatest, metres
  double low;   // the n-th least, metres
};

// The n-th greatest and the n-th least (from 1) of the values. They are counted into even slots first, so
// that only the few that share a slot with the wanted one are put in order: comparisons that no processor can
// foresee are what costs.
Tenths tenthsOf(std::span<const double> values, std::size_t n) {
  constexpr std::size_t kSlots = 64;
  constexpr std::size_t kLanes = 4;  // compared side by side
  std::array<double, kLanes> least;
  std::array<double, kLanes> greatest;
  least.fill(values[0]);
  greatest.fill(values[0]);
  for (std::size_t i = 0; i + kLanes <= values.size(); i += kLanes)
    for (std::size_t j = 0; j < kLanes; ++j) {
      least[j] = std::min(least[j], values[i + j]);
      greatest[j] = std::max(greatest[j], values[i + j]);
    }
  for (std::size_t i = values.size() / kLanes * kLanes; i < values.size(); ++i) {
    least[0] = std::min(least[0], values[i]);
    greatest[0] = std::max(greatest[0], values[i]);
  }
  const double low = *std::min_element(least.begin(), least.end());
  const double high = *std::max_element(greatest.begin(), greatest.end());
  // Values that are all equal share slot 0.
  const double perMetre = static_cast<double>(kSlots) / std::max(high - low, 1e-290);

  std::array<std::uint8_t, valuesFor(kMostTenths)> slotOf;  // NOLINT: every slot that is read is set first
  std::array<std::uint8_t, kSlots + 1> counts{};            // the last for what is as high as the highest
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto slot = static_cast<std::uint8_t>(static_cast<std::int32_t>((values[i] - low) * perMetre));
    slotOf[i] = slot;
    ++counts[slot];
  }

  // The n-th least of a slot's values.
  std::array<double, valuesFor(kMostTenths)> sharing;  // NOLINT: as above
  const auto nthLeastOf = [&](std::size_t slot, std::size_t nth) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
      sharing[count] = values[i];
      count += slotOf[i] == slot ? 1U : 0U;
    }
    const auto wanted = sharing.begin() + static_cast<std::ptrdiff_t>(nth - 1);
    std::nth_element(sharing.begin(), wanted, sharing.begin() + static_cast<std::ptrdiff_t>(count));
    return *wanted;
  };
  std::size_t lowSlot = 0;
  std::size_t left = n;
  while (counts[lowSlot] < left) left -= counts[lowSlot++];
  const double lowTenth = nthLeastOf(lowSlot, left);
  std::size_t highSlot = kSlots;
  left = n;
  while (counts[highSlot] < left) left -= counts[highSlot--];
  return {nthLeastOf(highSlot, counts[highSlot] + 1 - left), lowTenth};
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
  for (std::size_t i = 0; i < count; ++i)
    values[i] -= trend.at(static_cast<double>(static_cast<std::int32_t>(i)));

  const Tenths spread = tenthsOf(values, tenths);
  return (spread.high - spread.low) / (1 - 0.8 * std::exp(-(last - first) * spacing / kGrowthDistance));
}

}  // namespace zel::longrice
