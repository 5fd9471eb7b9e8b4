#include "profile/calculation/height_statistics.h"

#include "profile/calculation/checked_math.h"
#include "profile/real32.h"

namespace zel {

HeightStatistics heightStatistics(const PathGeometry& path, const SampleArray<float>& elevation,
                                  const SampleArray<float>& rise) {
  HeightStatistics result;
  result.startGround = elevation[path.firstIndex];
  result.endGround = elevation[path.lastIndex];
  result.minimum = result.maximum = result.startGround;
  result.plotMinimum = result.plotMaximum = result.startGround;
  double sum = result.startGround;
  for (std::int32_t i = path.firstIndex + 1; i <= path.lastIndex; ++i) {
    const float ground = elevation[i];
    const float raised = ground + rise[i];
    sum += ground;
    if (raised >= result.plotMaximum) result.plotMaximum = raised;
    if (raised < result.plotMinimum) result.plotMinimum = raised;
    if (ground >= result.maximum) result.maximum = ground;
    if (ground < result.minimum) result.minimum = ground;
  }
  result.average = toReal32(divided(sum, path.intervals));
  return result;
}

}  // namespace zel
