#include "models/longrice/normal_deviate.h"

#include <cmath>
#include <numbers>

namespace zel::longrice {
namespace {

double upperTail(double z) { return 0.5 * std::erfc(z / std::numbers::sqrt2); }

double density(double z) { return std::exp(-z * z / 2) / std::sqrt(2 * std::numbers::pi); }

// Abramowitz and Stegun 26.2.23, to 4.5e-4, for fractions up to one half.
double approximateDeviate(double fraction) {
  const double t = std::sqrt(-2 * std::log(fraction));
  return t -
         (2.515517 + (0.802853 + 0.010328 * t) * t) / (1 + (1.432788 + (0.189269 + 0.001308 * t) * t) * t);
}

}  // namespace

double normalDeviate(double fraction) {
  if (fraction > 0.5) return -normalDeviate(1 - fraction);
  if (fraction == 0.5) return 0;
  double z = approximateDeviate(fraction);
  // Halley's rule for the tail: each step triples the number of right digits.
  for (int step = 0; step < 2; ++step) {
    const double newton = (upperTail(z) - fraction) / density(z);
    z += newton / (1 - z * newton / 2);
  }
  return z;
}

}  // namespace zel::longrice
