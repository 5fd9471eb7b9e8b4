#include "models/ptp/knife_edge.h"

#include <cmath>

namespace zel::ptp {

double knifeEdgeLoss(double nu) {
  if (!(nu > kLeastNu)) return 0;
  const double shifted = nu - 0.1;
  return 6.9 + 20 * std::log10(std::sqrt(shifted * shifted + 1) + shifted);  // (31)
}

double knifeEdgeScale(double distance, double first, double second, double wavelength) {
  return std::sqrt(0.002 * distance / (wavelength * first * second));
}

}  // namespace zel::ptp
