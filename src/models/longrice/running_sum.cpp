#include "models/longrice/running_sum.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace zel::longrice {
namespace {

// The bits of a 64-bit float: 52 of the fraction, 11 of the exponent, the sign.
constexpr int kFractionBits = 52;

// Numbers with the same sign and exponent lie between the same two powers of two, evenly apart.
std::uint64_t signAndExponent(double value) { return std::bit_cast<std::uint64_t>(value) >> kFractionBits; }

std::uint64_t exponentOf(double value) { return signAndExponent(std::abs(value)); }

double powerOfTwo(std::uint64_t exponent) { return std::bit_cast<double>(exponent << kFractionBits); }

// Far from numbers so small that they lie apart as those of the next power of two do, and from the infinite.
bool isOrdinary(double value) {
  constexpr std::uint64_t kLeast = 104, kGreatest = 2000;  // exponents as the bits hold them
  const std::uint64_t exponent = exponentOf(value);
  return exponent > kLeast && exponent < kGreatest;
}

// Half the distance between neighbouring numbers around an ordinary one.
double halfUnit(double value) { return powerOfTwo(exponentOf(value) - kFractionBits - 1); }

// So many further steps as surely stay between the powers of two around an ordinary sum: one less than fit,
// because before it is rounded the last may be on the other side.
std::int64_t stepsWithin(double sum, double step) {
  const bool grows = std::signbit(sum) == std::signbit(step);
  const double bound = powerOfTwo(exponentOf(sum) + (grows ? 1 : 0));
  return static_cast<std::int64_t>(std::abs(bound - std::abs(sum)) / std::abs(step)) - 1;
}

}  // namespace

double runningSum(double start, double step, std::size_t count) {
  double sum = start;
  auto left = static_cast<std::int64_t>(count);
  while (left > 0) {
    const double next = sum + step;
    const double taken = next - sum;
    if (taken == 0) return sum;
    // The first step after a power of two may bring bits that the next ones do not; and a step that lies just
    // between two numbers is rounded to the even one, now up, now down.
    const bool steady = signAndExponent(next) == signAndExponent(sum) && isOrdinary(next) &&
                        std::abs(step - taken) != halfUnit(next);
    sum = next;
    --left;
    if (!steady) continue;
    const std::int64_t steps = std::min(stepsWithin(sum, taken), left);
    if (steps <= 0) continue;
    // Exact: all of it are multiples of the distance between neighbouring numbers.
    sum += static_cast<double>(steps) * taken;
    left -= steps;
  }
  return sum;
}

}  // namespace zel::longrice
