// What adding a step so many times gives in floating point, to the last bit, without the additions.
#pragma once

#include <cstddef>

namespace zel::longrice {

// start + step + step + ..., rounded after each addition. Between two powers of two every addition is rounded
// alike, so whole runs of them are one multiplication: the cost grows with the logarithm of the count.
// Dimensionless; the start and all sums finite and of one sign.
double runningSum(double start, double step, std::size_t count);

}  // namespace zel::longrice
