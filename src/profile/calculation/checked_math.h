// Arithmetic that fails with the component's own errors instead of going on with an infinity or with no
// number.
#pragma once

#include <cmath>

#include "foundation/runtime_error.h"

namespace zel {

// Throws RuntimeError 11.
inline double divided(double dividend, double divisor) {
  if (divisor == 0) throw RuntimeError::divisionByZero();
  return dividend / divisor;
}

// Throws RuntimeError 5 for a negative value.
inline double squareRoot(double value) {
  if (value < 0) throw RuntimeError(5, "Invalid procedure call or argument");
  return std::sqrt(value);
}

}  // namespace zel
