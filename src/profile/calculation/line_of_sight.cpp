#include "profile/calculation/line_of_sight.h"

#include "profile/calculation/checked_math.h"
#include "profile/real32.h"

namespace zel {

LineOfSight lineOfSight(const PathGeometry& path, const SampleArray<float>& elevation,
                        const SampleArray<float>& rise, const std::array<std::int16_t, 2>& antennaHeights) {
  LineOfSight line;
  line.startTop = elevation[path.firstIndex] + rise[path.firstIndex] + antennaHeights[0];
  line.endTop = elevation[path.lastIndex] + rise[path.lastIndex] + antennaHeights[1];
  line.slope = toReal32(divided(line.startTop - line.endTop, -path.distance));
  return line;
}

}  // namespace zel
