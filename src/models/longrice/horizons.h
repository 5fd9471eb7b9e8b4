// The radio horizons of two antennas over evenly spaced ground on the effective earth (Algorithm section 7;
// the definitions are those of NBS Technical Note 101, section 6).
//
// Each antenna's horizon is the sample whose elevation angle, seen from the antenna's top, is the greatest;
// the one farther from the receiver of two that are equal. Over an earth of curvature gamma the angle of a
// height z at a distance s from a top at z_t is, for small angles,
//     (z - z_t) / s - gamma s / 2.
// Where no ground in between reaches the straight ray, each antenna's horizon is the other antenna.
//
// The distances are running sums of the spacing: from the transmitter outwards, and down from the whole
// length for the receiver. A tenth of a horizon's distance can fall on a sample; the sum's last bit then
// decides whether the fits of the effective heights take that sample in, and published losses follow these
// sums.
//
// The ground grows at its end, sample by sample, and may be asked for the horizons to its last sample each
// time. A sample costs some nanoseconds. A question goes over blocks of samples and looks into those that can
// hold the horizon, so that it costs a small fraction of a walk over the path.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace zel::longrice {

// As one antenna sees it. Sample 0 is the transmitter's, the last the receiver's.
struct Horizon {
  std::size_t sample = 0;
  double distance = 0;  // from the antenna, metres
  double angle = 0;     // elevation, radians
};

struct Horizons {
  bool lineOfSight = false;
  Horizon transmitter;
  Horizon receiver;
};

class HorizonSearch {
 public:
  // Metres, 1/m, metres above ground.
  HorizonSearch(double spacing, double effectiveCurvature, double transmitterHeight);

  void reserve(std::size_t samples);
  void append(std::span<const double> elevations);  // metres above sea level
  std::size_t samples() const { return flatHeights_.size(); }

  // The receiver stands on the last sample; at least two are needed.
  Horizons horizons(double receiverHeight) const;

 private:
  void flatten(std::size_t before, std::span<const double> elevations);
  void addObstacles(std::size_t first, std::size_t end);
  double highest(std::size_t first, std::size_t end) const;
  void addSteepest(std::size_t first, std::size_t end, double top);
  struct View;
  void look(View& view, std::size_t block) const;
  double steepestPossible(const View& view, std::size_t block) const;
  std::size_t steepestFrom(std::size_t last, double top, double leastSlope) const;

  double spacing_;
  double curvature_;
  double transmitterHeight_;
  double transmitterTop_ = 0;  // metres above sea level
  // Heights on the plane in which the effective earth is flat: lowered by the fall of the earth since the
  // transmitter, metres. On it the angle is a slope, and what one antenna sees higher, it sees steeper.
  std::vector<double> flatHeights_;
  std::vector<double> blockTops_;  // the greatest of each block of samples between the ends
  // The steepest from the transmitter's top, of the samples between the ends; metres a sample.
  double steepest_ = 0;
  std::size_t steepestSample_ = 0;  // 0 while there is none
};

}  // namespace zel::longrice
