// The straight line through a stretch of evenly spaced heights by least squares, the stretch's two ends
// weighing half (the subroutine of Algorithm section 7 that effective heights and terrain irregularity are
// taken from).
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace zel::longrice {

// Height, in metres, of a line over sample numbers.
struct StraightLine {
  double middle = 0;  // sample number
  double height = 0;  // metres, at the middle
  double slope = 0;   // metres a sample
  double at(double sample) const { return height + slope * (sample - middle); }
};

// What a fit takes from the samples first to last.
struct FitSums {
  double heights = 0;      // sum of the heights, metres
  double moments = 0;      // sum of height x sample number, metres
  double firstHeight = 0;  // of sample `first`, metres
  double lastHeight = 0;   // of sample `last`, metres
};

// last must be above first.
StraightLine fitStraightLine(std::size_t first, std::size_t last, const FitSums& sums);

// Heights that grow at their end, and give the line through any stretch of them at a cost that does not
// depend on its length: sums from the start are kept at every few samples.
class SummedHeights {
 public:
  void reserve(std::size_t samples);
  void append(std::span<const double> heights);  // metres
  std::size_t size() const { return heights_.size(); }
  double operator[](std::size_t sample) const { return heights_[sample]; }  // metres
  const std::vector<double>& heights() const { return heights_; }           // metres
  StraightLine fit(std::size_t first, std::size_t last) const;

 private:
  struct Sums {
    double heights = 0;  // metres
    double moments = 0;  // metres
  };
  // Of the samples before the one with the number.
  Sums before(std::size_t sample) const;

  std::vector<double> heights_;
  std::vector<Sums> marks_;  // before each sample whose number is a multiple of the marks' distance
  Sums all_;
};

}  // namespace zel::longrice
