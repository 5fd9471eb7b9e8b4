#include "models/longrice/horizons.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "models/longrice/running_sum.h"

namespace zel::longrice {
namespace {

constexpr std::size_t kBlock = 64;  // samples

}  // namespace

HorizonSearch::HorizonSearch(double spacing, double effectiveCurvature, double transmitterHeight)
    : spacing_(spacing), curvature_(effectiveCurvature), transmitterHeight_(transmitterHeight) {}

void HorizonSearch::reserve(std::size_t samples) {
  flatHeights_.reserve(samples);
  blockTops_.reserve(samples / kBlock + 1);
}

void HorizonSearch::append(std::span<const double> elevations) {
  if (elevations.empty()) return;
  const std::size_t before = samples();
  if (before == 0) transmitterTop_ = elevations.front() + transmitterHeight_;
  flatHeights_.resize(before + elevations.size());
  flatten(before, elevations);
  // What was the last sample now lies between the ends, and so does all that is new but the last.
  addObstacles(std::max<std::size_t>(before, 2) - 1, samples() - 1);
}

// Copies of the members and a count of 32 bits let the compiler take several samples at a time.
void HorizonSearch::flatten(std::size_t before, std::span<const double> elevations) {
  constexpr std::size_t kMost = 1U << 30U;
  const double spacing = spacing_;
  const double halfCurvature = curvature_ / 2;
  while (!elevations.empty()) {
    const auto part = static_cast<std::int32_t>(std::min(elevations.size(), kMost));
    const double* const heights = elevations.data();
    double* const flat = flatHeights_.data() + before;
    const auto firstNumber = static_cast<double>(before);
    for (std::int32_t i = 0; i < part; ++i) {
      const double distance = (firstNumber + i) * spacing;
      flat[i] = heights[i] - halfCurvature * distance * distance;
    }
    before += static_cast<std::size_t>(part);
    elevations = elevations.subspan(static_cast<std::size_t>(part));
  }
}

// The samples from first to before end now lie between the ends.
void HorizonSearch::addObstacles(std::size_t first, std::size_t end) {
  constexpr double kNothing = -std::numeric_limits<double>::infinity();
  blockTops_.resize((end + kBlock - 1) / kBlock, kNothing);
  while (first < end) {
    const std::size_t block = first / kBlock;
    const std::size_t blockEnd = std::min((block + 1) * kBlock, end);
    const double top = highest(first, blockEnd);
    blockTops_[block] = std::max(blockTops_[block], top);
    addSteepest(first, blockEnd, top);
    first = blockEnd;
  }
}

// The greatest of the samples from first to before end on the plane, metres.
double HorizonSearch::highest(std::size_t first, std::size_t end) const {
  const double* const flat = flatHeights_.data();
  std::array<double, 4> tops;  // side by side: one after the other would wait for each comparison
  tops.fill(flat[first]);
  for (; first + tops.size() <= end; first += tops.size())
    for (std::size_t j = 0; j < tops.size(); ++j) tops[j] = std::max(tops[j], flat[first + j]);
  for (; first < end; ++first) tops[0] = std::max(tops[0], flat[first]);
  return std::max(std::max(tops[0], tops[1]), std::max(tops[2], tops[3]));
}

// Looks for the transmitter's horizon in the samples from first to before end, none of which is above a top
// on the plane, metres.
void HorizonSearch::addSteepest(std::size_t first, std::size_t end, double top) {
  double steepest = steepestSample_ == 0 ? -std::numeric_limits<double>::infinity() : steepest_;
  // Rounding keeps the order, so what the highest at the best place does not reach, none of them reaches.
  const auto best = static_cast<double>(steepest < 0 ? end - 1 : first);
  if (!(top - transmitterTop_ > steepest * best)) return;
  auto number = static_cast<double>(first);
  for (; first < end; ++first, ++number) {
    const double rise = flatHeights_[first] - transmitterTop_;
    if (rise > steepest * number) {
      steepest = rise / number;
      steepestSample_ = first;
    }
  }
  steepest_ = steepest;
}

// What the receiver looks at: its place, and the steepest sample that it has found.
struct HorizonSearch::View {
  std::size_t last;       // the receiver's sample
  double top;             // of its antenna on the plane, metres
  double slope;           // of the steepest, metres a sample
  std::size_t found = 0;  // 0 while none is steeper than the first slope
};

void HorizonSearch::look(View& view, std::size_t block) const {
  const std::size_t first = std::max<std::size_t>(block * kBlock, 1);
  const std::size_t end = std::min((block + 1) * kBlock, view.last);
  auto away = static_cast<double>(view.last - first);
  for (std::size_t sample = first; sample < end; ++sample, --away) {
    const double rise = flatHeights_[sample] - view.top;
    const double equal = view.slope * away;
    if (rise < equal || (rise == equal && sample >= view.found)) continue;
    view.slope = rise / away;
    view.found = sample;
  }
}

// No sample of the block is steeper, metres a sample.
double HorizonSearch::steepestPossible(const View& view, std::size_t block) const {
  const double rise = blockTops_[block] - view.top;
  const std::size_t nearest = std::min((block + 1) * kBlock, view.last) - 1;
  const std::size_t farthest = std::max<std::size_t>(block * kBlock, 1);
  return rise / static_cast<double>(view.last - (rise > 0 ? nearest : farthest));
}

// The sample between the ends that is steepest from a top on the plane, metres, over the last sample; 0 when
// none is steeper than a slope in metres a sample.
std::size_t HorizonSearch::steepestFrom(std::size_t last, double top, double leastSlope) const {
  View view{last, top, leastSlope};
  // The block that may hold the steepest is looked into first: most others are then not looked into at all.
  std::size_t likeliest = 0;
  double possible = -std::numeric_limits<double>::infinity();
  for (std::size_t block = 0; block < blockTops_.size(); ++block) {
    const double slope = steepestPossible(view, block);
    if (slope > possible) {
      possible = slope;
      likeliest = block;
    }
  }
  look(view, likeliest);
  for (std::size_t block = 0; block < blockTops_.size(); ++block)
    if (block != likeliest && steepestPossible(view, block) >= view.slope) look(view, block);
  return view.found;
}

Horizons HorizonSearch::horizons(double receiverHeight) const {
  const std::size_t last = samples() - 1;
  const auto intervals = static_cast<double>(last);
  const double distance = intervals * spacing_;
  const double flatTop = flatHeights_[last] + receiverHeight;
  const double direct = (flatTop - transmitterTop_) / intervals;  // metres a sample

  Horizons result;
  // A slope of the plane is the angle at the transmitter. At the receiver the plane is tilted by the earth's
  // fall along the path.
  result.lineOfSight = steepestSample_ == 0 || steepest_ <= direct;
  const std::size_t seen = result.lineOfSight ? 0 : steepestFrom(last, flatTop, -direct);
  if (seen == 0) {
    result.lineOfSight = true;
    result.transmitter = {last, distance, direct / spacing_};
    result.receiver = {0, distance, -direct / spacing_ - curvature_ * distance};
    return result;
  }
  result.transmitter = {steepestSample_, runningSum(0, spacing_, steepestSample_), steepest_ / spacing_};
  const double away = static_cast<double>(last - seen) * spacing_;
  result.receiver = {seen, runningSum(distance, -spacing_, seen),
                     (flatHeights_[seen] - flatTop) / away - curvature_ * distance};
  return result;
}

}  // namespace zel::longrice
