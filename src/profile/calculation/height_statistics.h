// The ground heights that are shown beside the plot and that scale it.
#pragma once

#include "foundation/sample_array.h"
#include "profile/path/path_geometry.h"

namespace zel {

// All in metres above sea level, over the samples from station to station.
struct HeightStatistics {
  float startGround = 0;
  float endGround = 0;
  float minimum = 0;
  float maximum = 0;
  float average = 0;      // the sum of N + 1 samples divided by N, as is meant
  float plotMinimum = 0;  // with the curvature rise, except on the start antenna's sample
  float plotMaximum = 0;  // the same

  friend bool operator==(const HeightStatistics&, const HeightStatistics&) = default;
};

// `elevation` and `rise` are indexed 1 to T, metres. Throws RuntimeError 9 for arrays that do not reach the
// stations.
HeightStatistics heightStatistics(const PathGeometry& path, const SampleArray<float>& elevation,
                                  const SampleArray<float>& rise);

}  // namespace zel
