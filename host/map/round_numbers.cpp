#include "map/round_numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace zel::host {
namespace {

constexpr int kSmallestPower = -9, kLargestPower = 15;  // beyond any length or height on a map

RoundNumber roundNumber(int digit, int power) {
  // Divided, not multiplied by 0.1 to a power: so the value is the nearest to its decimal.
  const double value = power < 0 ? digit / std::pow(10.0, -power) : digit * std::pow(10.0, power);
  return {value, std::max(-power, 0)};
}

}  // namespace

RoundNumber roundUp(double least) {
  if (!(least > 0) || !std::isfinite(least)) return {};
  for (int power = kSmallestPower; power <= kLargestPower; ++power)
    for (const int digit : {1, 2, 5})
      if (const RoundNumber number = roundNumber(digit, power); number.value >= least) return number;
  return roundNumber(5, kLargestPower);
}

RoundNumber roundDown(double most) {
  if (!(most > 0) || !std::isfinite(most)) return {};
  for (int power = kLargestPower; power >= kSmallestPower; --power)
    for (const int digit : {5, 2, 1})
      if (const RoundNumber number = roundNumber(digit, power); number.value <= most) return number;
  return roundNumber(1, kSmallestPower);
}

std::string plainNumber(double value, int decimals) {
  // A double has at most 309 digits before its point.
  std::array<char, 400> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed,
                                 std::clamp(decimals, 0, 20))
                       .ptr;
  return {text.data(), end};
}

std::string groupedNumber(double value, int decimals) {
  std::string text = plainNumber(value, decimals);
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  std::size_t end = std::min(text.find('.'), text.size());
  while (end > first + 3) {
    end -= 3;
    text.insert(end, 1, ',');
  }
  return text;
}

}  // namespace zel::host
