// The antenna tops of a path and the straight line between them.
#pragma once

#include <array>
#include <cstdint>

#include "foundation/sample_array.h"
#include "profile/path/path_geometry.h"

namespace zel {

struct LineOfSight {
  float startTop = 0;  // metres above sea level, curvature rise included
  float endTop = 0;    // metres above sea level, curvature rise included
  float slope = 0;     // metres per kilometre, from start to end

  // Its height in metres, `distance` kilometres from the start.
  double heightAt(double distance) const { return double{startTop} + double{slope} * distance; }

  friend bool operator==(const LineOfSight&, const LineOfSight&) = default;
};

// `elevation` and `rise` are indexed 1 to T, metres; `antennaHeights` are those of start and end, metres
// above ground. Throws RuntimeError 9 for arrays that do not reach the antennas and 11 for a distance of 0.
LineOfSight lineOfSight(const PathGeometry& path, const SampleArray<float>& elevation,
                        const SampleArray<float>& rise, const std::array<std::int16_t, 2>& antennaHeights);

}  // namespace zel
