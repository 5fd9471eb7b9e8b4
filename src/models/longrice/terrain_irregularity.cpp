#include "models/longrice/terrain_irregularity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "models/longrice/straight_line_fit.h"

namespace zel::longrice {
namespace {

constexpr double kGrowthDistance = 50e3;  // D, metres
constexpr std::size_t kFewestTenths = 4;
constexpr std::size_t kMostTenths = 25;
// Values read for so many to a tenth, less what centres the tenths.
constexpr std::size_t valuesFor(std::size_t tenths) { return 10 * tenths - 5; }

constexpr std::size_t kMostValues = valuesFor(kMostTenths);

// 0, 1, 2 ...: a table is read faster than numbers are converted.
constexpr auto kNumbers = [] {
  std::array<double, kMostValues> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<double>(i);
  return numbers;
}();

// Fills the values with the heights at so many samples from sample 0, a step in samples apart, and takes
// their sums for a fit. The places come in a loop of their own, in which the compiler takes several at a
// time.
FitSums read(std::span<const double> elevations, double first, double step, std::span<double> values) {
  const auto lastLeft = static_cast<double>(elevations.size() - 2);
  std::array<std::int32_t, kMostValues> left;  // NOLINT: every value that is read is set first
  std::array<double, kMostValues> fromRight;   // NOLINT: as above
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double position = first + step * kNumbers[i];
    left[i] = static_cast<std::int32_t>(std::min(position, lastLeft));
    fromRight[i] = position - (left[i] + 1);
  }
  double heights = 0;
  double moments = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double* const pair = elevations.data() + left[i];
    values[i] = pair[1] + (pair[1] - pair[0]) * fromRight[i];
    heights += values[i];
    moments += values[i] * kNumbers[i];
  }
  return {heights, moments, values.front(), values.back()};
}

// Keys of one byte that are in the order of the values. Counting bytes is so much cheaper than comparing
// values, whose order no processor can foresee, that all but the few with the wanted one's key are told apart
// by counting. Behind the values' keys stand greatest ones, so that a count goes over as many always.
using Keys = std::array<std::uint8_t, 256>;
static_assert(kMostValues < std::tuple_size_v<Keys>, "a count of the values must fit into a byte");
constexpr std::uint8_t kGreatestKey = 255;

Keys keysOf(std::span<const double> values) {
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
  // Values that are all equal have the key 0.
  const double perMetre = kGreatestKey / std::max(high - low, 1e-290);

  Keys keys;
  keys.fill(kGreatestKey);
  for (std::size_t i = 0; i < values.size(); ++i)
    keys[i] = static_cast<std::uint8_t>(static_cast<std::int32_t>((values[i] - low) * perMetre));
  return keys;
}

std::uint8_t countBelow(const Keys& keys, std::uint8_t key) {
  std::uint8_t count = 0;
  for (const std::uint8_t each : keys) count = static_cast<std::uint8_t>(count + (each < key ? 1 : 0));
  return count;
}

// The n-th least of the values, n from 1.
double nthLeast(std::span<const double> values, const Keys& keys, std::size_t n) {
  // The greatest key that less than n are below is that of the value; it is found bit by bit.
  std::uint8_t key = 0;
  std::uint8_t below = 0;
  for (unsigned bit = 128; bit != 0; bit >>= 1U) {
    const auto greater = static_cast<std::uint8_t>(key | bit);
    const std::uint8_t count = countBelow(keys, greater);
    if (count >= n) continue;
    key = greater;
    below = count;
  }
  std::array<double, kMostValues> sharing;  // NOLINT: every value that is read is set first
  std::size_t shared = 0;
  const std::uint8_t* const end = keys.data() + values.size();
  const auto next = [key, end](const std::uint8_t* from) {
    return static_cast<const std::uint8_t*>(std::memchr(from, key, static_cast<std::size_t>(end - from)));
  };
  const std::uint8_t* found = next(keys.data());
  do {
    sharing[shared++] = values[static_cast<std::size_t>(found - keys.data())];
    found = next(found + 1);
  } while (found != nullptr);
  const auto wanted = sharing.begin() + static_cast<std::ptrdiff_t>(n - below - 1);
  std::nth_element(sharing.begin(), wanted, sharing.begin() + static_cast<std::ptrdiff_t>(shared));
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

  std::array<double, kMostValues> storage;  // NOLINT: every value that is read is set first
  const std::span<double> values(storage.data(), count);
  const FitSums sums = read(elevations, first, (last - first) / static_cast<double>(count - 1), values);
  const StraightLine trend = fitStraightLine(0, count - 1, sums);
  for (std::size_t i = 0; i < count; ++i) values[i] -= trend.at(kNumbers[i]);

  const Keys keys = keysOf(values);
  const double spread = nthLeast(values, keys, count + 1 - tenths) - nthLeast(values, keys, tenths);
  return spread / (1 - 0.8 * std::exp(-(last - first) * spacing / kGrowthDistance));
}

}  // namespace zel::longrice
