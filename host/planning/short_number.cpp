#include "planning/short_number.h"

#include <array>
#include <charconv>

namespace zel::host {

std::string shortNumber(double value) {
  if (value == 0) return "0";
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return {digits.data(), end};
}

std::string fixedNumber(double value, int digits) {
  std::array<char, 400> text{};  // the largest double has 309 digits before the point
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, digits).ptr;
  std::string result(text.data(), end);
  const bool onlyZeros = result.find_first_not_of("-0.") == std::string::npos;
  if (onlyZeros && result.front() == '-') result.erase(0, 1);
  return result;
}

}  // namespace zel::host
