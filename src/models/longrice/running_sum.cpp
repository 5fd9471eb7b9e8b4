#include "models/longrice/running_sum.h"

#include <cmath>

namespace zel::longrice {
namespace {

// So many further steps as surely stay between the powers of two around a sum.
double stepsWithin(double sum, double step) {
  int exponent = 0;
  std::frexp(sum, &exponent);  // |sum| is from 2^(exponent - 1) up to 2^exponent
  const bool grows = std::signbit(sum) == std::signbit(step);
  const double bound = std::ldexp(1.0, grows ? exponent : exponent - 1);
  return std::floor(std::abs(bound - std::abs(sum)) / std::abs(step)) - 2;
}

// Half the distance between neighbouring numbers around a sum.
double halfUnit(double sum) {
  int exponent = 0;
  std::frexp(sum, &exponent);
  return std::ldexp(1.0, exponent - 54);
}

}  // namespace

double runningSum(double start, double step, std::size_t count) {
  double sum = start;
  while (count > 0) {
    const double next = sum + step;
    const double taken = next - sum;
    // The first step after a power of two may bring bits that the next ones do not; and a step that lies just
    // between two numbers is rounded to the even one, now up, now down.
    const bool steady =
        sum != 0 && std::ilogb(next) == std::ilogb(sum) && std::abs(step - taken) != halfUnit(next);
    sum = next;
    --count;
    if (!steady || taken == 0) continue;
    const double steps = std::fmin(stepsWithin(sum, taken), static_cast<double>(count));
    if (!(steps > 0)) continue;
    sum = std::fma(steps, taken, sum);
    count -= static_cast<std::size_t>(steps);
  }
  return sum;
}

}  // namespace zel::longrice
