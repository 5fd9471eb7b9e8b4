// Heights that grow at their end, in blocks with the top of each, so that the greatest of something over all
// of them is found without looking at every one.
//
// What is sought must be bounded on a block by the block's top. Rounding keeps the order of what it rounds,
// so a bound that is computed in the same steps as the values holds to the last bit, and the result is that
// of a walk over all heights. A search goes over the blocks, 1/64 of a walk, and into those that can hold the
// greatest, which on most ground are a few.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace zel::ptp {

// Samples from `first` to before `end`, none of them above `top`, metres.
struct HeightBlock {
  std::size_t first;
  std::size_t end;
  double top;
};

class BlockedHeights {
 public:
  void reserve(std::size_t samples);
  void append(double height);  // metres
  std::size_t size() const { return heights_.size(); }
  double operator[](std::size_t sample) const { return heights_[sample]; }
  double back() const { return heights_.back(); }

  // The greatest value(sample, height) of the samples from 1 to before `end`; `least` when none is greater.
  // possible(block) is nowhere below the values on the block.
  template <class Possible, class Value>
  double greatest(std::size_t end, double least, const Possible& possible, const Value& value) const;

 private:
  static constexpr std::size_t kBlock = 64;  // samples

  HeightBlock block(std::size_t number, std::size_t end) const {
    return {std::max<std::size_t>(number * kBlock, 1), std::min((number + 1) * kBlock, end), tops_[number]};
  }

  std::vector<double> heights_;
  // Of each block. A block's top may be that of a sample past the end that is asked for: a bound all the
  // same.
  std::vector<double> tops_;
};

template <class Possible, class Value>
double BlockedHeights::greatest(std::size_t end, double least, const Possible& possible,
                                const Value& value) const {
  if (end < 2) return least;
  double found = least;
  const auto look = [&](const HeightBlock& range) {
    for (std::size_t sample = range.first; sample < range.end; ++sample)
      found = std::max(found, value(sample, heights_[sample]));
  };
  // The block that promises most is looked into first: most others are then not looked into at all.
  const std::size_t blocks = (end - 1) / kBlock + 1;
  std::size_t likeliest = 0;
  double most = -std::numeric_limits<double>::infinity();
  for (std::size_t number = 0; number < blocks; ++number) {
    const HeightBlock range = block(number, end);
    if (range.first >= range.end) continue;
    const double promise = possible(range);
    if (promise > most) {
      most = promise;
      likeliest = number;
    }
  }
  if (!(most > found)) return found;
  look(block(likeliest, end));
  for (std::size_t number = 0; number < blocks; ++number) {
    const HeightBlock range = block(number, end);
    if (number != likeliest && range.first < range.end && possible(range) > found) look(range);
  }
  return found;
}

}  // namespace zel::ptp
