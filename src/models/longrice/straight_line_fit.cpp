#include "models/longrice/straight_line_fit.h"

#include <algorithm>

namespace zel::longrice {
namespace {

constexpr std::size_t kMarkDistance = 16;  // samples

}  // namespace

StraightLine fitStraightLine(std::size_t first, std::size_t last, const FitSums& sums) {
  const auto begin = static_cast<double>(first);
  const auto end = static_cast<double>(last);
  const double intervals = end - begin;
  StraightLine line;
  line.middle = 0.5 * (begin + end);
  const double weighted = sums.heights - 0.5 * (sums.firstHeight + sums.lastHeight);
  const double moment = sums.moments - 0.5 * (sums.firstHeight * begin + sums.lastHeight * end);
  line.height = weighted / intervals;
  // 1 / sum of weight x (sample - middle)^2 over such a stretch is 12 / ((n^2 + 2) n).
  line.slope = (moment - line.middle * weighted) * 12 / ((intervals * intervals + 2) * intervals);
  return line;
}

void SummedHeights::reserve(std::size_t samples) {
  heights_.reserve(samples);
  marks_.reserve(samples / kMarkDistance + 1);
}

void SummedHeights::append(std::span<const double> heights) {
  std::size_t sample = heights_.size();
  heights_.insert(heights_.end(), heights.begin(), heights.end());
  Sums sums = all_;
  auto number = static_cast<double>(sample);
  const double* height = heights.data();
  const double* const end = height + heights.size();
  while (height != end) {
    if (sample % kMarkDistance == 0) marks_.push_back(sums);
    const std::size_t toMark = kMarkDistance - sample % kMarkDistance;
    const std::size_t part = std::min(toMark, static_cast<std::size_t>(end - height));
    for (const double* const partEnd = height + part; height != partEnd; ++height, ++number) {
      sums.heights += *height;
      sums.moments += *height * number;
    }
    sample += part;
  }
  all_ = sums;
}

SummedHeights::Sums SummedHeights::before(std::size_t sample) const {
  if (sample == heights_.size()) return all_;
  const std::size_t mark = sample / kMarkDistance;
  Sums sums = marks_[mark];
  for (std::size_t i = mark * kMarkDistance; i < sample; ++i) {
    sums.heights += heights_[i];
    sums.moments += heights_[i] * static_cast<double>(i);
  }
  return sums;
}

StraightLine SummedHeights::fit(std::size_t first, std::size_t last) const {
  const Sums begin = before(first);
  const Sums end = before(last + 1);
  return fitStraightLine(
      first, last,
      {end.heights - begin.heights, end.moments - begin.moments, heights_[first], heights_[last]});
}

}  // namespace zel::longrice
