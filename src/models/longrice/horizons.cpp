#include "models/longrice/horizons.h"

#include <algorithm>
#include <limits>

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
  auto number = static_cast<double>(before);
  for (std::size_t i = 0; i < elevations.size(); ++i, ++number)
    flatHeights_[before + i] = elevations[i] - fall(number * spacing_);
  // What was the last sample now lies between the ends, and so does all that is new but the last.
  addObstacles(std::max<std::size_t>(before, 2) - 1, samples() - 1);
}

// The samples from first to before end now lie between the ends.
void HorizonSearch::addObstacles(std::size_t first, std::size_t end) {
  constexpr double kNothing = -std::numeric_limits<double>::infinity();
  blockTops_.resize((end + kBlock - 1) / kBlock, kNothing);
  double steepest = steepestSample_ == 0 ? kNothing : steepest_;
  double reach = reach_;
  auto number = static_cast<double>(first);
  while (first < end) {
    const std::size_t block = first / kBlock;
    double top = blockTops_[block];
    for (const std::size_t blockEnd = std::min((block + 1) * kBlock, end); first < blockEnd;
         ++first, ++number) {
      const double height = flatHeights_[first];
      reach += spacing_;
      top = std::max(top, height);
      if (height - transmitterTop_ > steepest * number) {
        steepest = (height - transmitterTop_) / number;
        steepestSample_ = first;
        steepestDistance_ = reach;
      }
    }
    blockTops_[block] = top;
  }
  steepest_ = steepest;
  reach_ = reach;
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

double HorizonSearch::distanceFromReceiver(std::size_t sample) const {
  const std::size_t last = samples() - 1;
  const std::size_t away = last - sample;
  // The running sum costs a walk, and only where a tenth of the distance is a sample does its last bit count.
  if (away % 10 != 0) return static_cast<double>(away) * spacing_;
  double distance = static_cast<double>(last) * spacing_;
  for (std::size_t i = 0; i < sample; ++i) distance -= spacing_;
  return distance;
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
  result.transmitter = {steepestSample_, steepestDistance_, steepest_ / spacing_};
  const double away = static_cast<double>(last - seen) * spacing_;
  result.receiver = {seen, distanceFromReceiver(seen),
                     (flatHeights_[seen] - flatTop) / away - curvature_ * distance};
  return result;
}

}  // namespace zel::longrice
