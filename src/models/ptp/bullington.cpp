#include "models/ptp/bullington.h"

#include <algorithm>
#include <cmath>

#include "models/ptp/knife_edge.h"

namespace zel::ptp {
namespace {

double asReal(std::size_t count) { return static_cast<double>(count); }

// The greatest value(sample) of the obstacles 1 to last - 1, for values that first rise and then fall.
template <class Value>
double summit(std::size_t last, const Value& value) {
  std::size_t low = 1;
  std::size_t high = last - 1;
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (value(middle) < value(middle + 1))
      low = middle + 1;
    else
      high = middle;
  }
  return value(low);
}

}  // namespace

double bullingtonLoss(double nu, double distance) {
  const double edge = knifeEdgeLoss(nu);
  return edge + (1 - std::exp(-edge / 6)) * (10 + 0.02 * distance);
}

double smoothBullingtonNu(const SmoothPath& path, double wavelength) {
  const std::size_t last = path.last;
  if (last < 2) return kLeastNu;
  const double distance = asReal(last) * path.spacing;
  const double curvature = 500 / path.effectiveRadius;  // metres of rise for each km^2
  // The slope to an obstacle, m/km, from an antenna that many km away: the rise's slope, less the height's.
  const auto steepest = [&](double height) {
    return summit(last, [&](std::size_t sample) {
      const double near = asReal(sample) * path.spacing;
      const double far = asReal(last - sample) * path.spacing;
      return curvature * far - height / near;
    });
  };
  const double direct = (path.receiver - path.transmitter) / distance;  // S_tr
  const double forward = steepest(path.transmitter);                    // S_tim
  if (forward < direct) {
    const double nu = summit(last, [&](std::size_t sample) {
      const double near = asReal(sample) * path.spacing;
      const double far = asReal(last - sample) * path.spacing;
      const double line = (path.transmitter * far + path.receiver * near) / distance;
      return (curvature * near * far - line) * knifeEdgeScale(distance, near, far, wavelength);
    });
    return std::max(nu, kLeastNu);
  }
  const double backward = steepest(path.receiver);  // S_rim
  const double slopes = forward + backward;
  // Both rays graze along the direct one.
  if (!(slopes > 0)) return 0;
  const double crossing = std::clamp((path.receiver - path.transmitter + backward * distance) / slopes,
                                     path.spacing, asReal(last - 1) * path.spacing);  // d_b, km
  const double height = (forward - direct) * crossing;
  return height * knifeEdgeScale(distance, crossing, distance - crossing, wavelength);
}

}  // namespace zel::ptp
