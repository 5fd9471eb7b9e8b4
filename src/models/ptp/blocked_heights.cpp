#include "models/ptp/blocked_heights.h"

namespace zel::ptp {

void BlockedHeights::reserve(std::size_t samples) {
  heights_.reserve(samples);
  tops_.reserve(samples / kBlock + 1);
}

void BlockedHeights::append(double height) {
  const std::size_t sample = heights_.size();
  heights_.push_back(height);
  // Sample 0 is an antenna's and never looked for.
  if (sample % kBlock == 0)
    tops_.push_back(sample == 0 ? -std::numeric_limits<double>::infinity() : height);
  else
    tops_.back() = std::max(tops_.back(), height);
}

}  // namespace zel::ptp
