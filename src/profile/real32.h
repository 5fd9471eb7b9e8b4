// Narrowing to the 32-bit reals in which the profile keeps heights, rise and settings.
#pragma once

#include <cmath>
#include <limits>

#include "foundation/runtime_error.h"

namespace zel {

// The nearest 32-bit real. Throws RuntimeError 6 for a magnitude beyond it and for infinities; NaN stays NaN,
// so that a missing height stays missing.
inline float toReal32(double value) {
  const auto narrowed = static_cast<float>(value);
  if (std::isinf(narrowed)) throw RuntimeError::overflow();
  return narrowed;
}

}  // namespace zel
