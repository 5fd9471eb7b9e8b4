// Rounding and narrowing to integers as the component's rules ask for: half to even, and never a silent wrap.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "foundation/runtime_error.h"

namespace zel {

// Nearest whole number, halves to the even one. Independent of the floating-point rounding mode.
inline double roundHalfEven(double value) {
  const double down = std::floor(value);
  const double rest = value - down;
  if (rest < 0.5) return down;
  if (rest > 0.5) return down + 1;
  return std::fmod(down, 2.0) == 0 ? down : down + 1;
}

namespace detail {
template <typename Integer>
Integer narrowHalfEven(double value) {
  const double rounded = roundHalfEven(value);
  if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
    throw RuntimeError::overflow();
  return static_cast<Integer>(rounded);
}
}  // namespace detail

// Throw RuntimeError 6 for a value that does not fit, infinities and NaN included.
inline std::int16_t toInt16(double value) { return detail::narrowHalfEven<std::int16_t>(value); }
inline std::int32_t toInt32(double value) { return detail::narrowHalfEven<std::int32_t>(value); }

// Largest whole number that is not above the value.
inline double intFloor(double value) { return std::floor(value); }

}  // namespace zel
