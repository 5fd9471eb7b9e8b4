#include "foundation/leading_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "foundation/runtime_error.h"
#include "foundation/text.h"

namespace zel {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSign(char c) { return c == '+' || c == '-'; }

std::size_t endOfDigits(std::string_view text, std::size_t from) {
  while (from < text.size() && isDigit(text[from])) ++from;
  return from;
}

// The parts of the longest numeric prefix; `length` is 0 when there is none.
struct NumericPrefix {
  std::size_t length = 0;     // of the prefix, in bytes
  std::string_view mantissa;  // digits and at most one point, without the sign
  std::string_view exponent;  // sign and digits, may be empty
};

NumericPrefix numericPrefix(std::string_view text) {
  const std::size_t begin = !text.empty() && isSign(text.front()) ? 1 : 0;
  std::size_t end = endOfDigits(text, begin);
  std::size_t digits = end - begin;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fractionEnd = endOfDigits(text, end + 1);
    digits += fractionEnd - end - 1;
    end = fractionEnd;
  }
  if (digits == 0) return {};
  NumericPrefix prefix{end, text.substr(begin, end - begin), {}};
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t sign = end + 1;
    const std::size_t first = sign < text.size() && isSign(text[sign]) ? sign + 1 : sign;
    const std::size_t exponentEnd = endOfDigits(text, first);
    if (exponentEnd > first) {
      prefix.length = exponentEnd;
      prefix.exponent = text.substr(sign, exponentEnd - sign);
    }
  }
  return prefix;
}

// The decimal exponent, held within a range that no number of digits before it can bring back into a 64-bit
// float.
std::int64_t exponentValue(std::string_view exponent) {
  constexpr std::int64_t kLimit = std::int64_t{1} << 60;
  const bool negative = !exponent.empty() && exponent.front() == '-';
  std::int64_t value = 0;
  for (const char c : exponent)
    if (isDigit(c)) value = std::min(value * 10 + (c - '0'), kLimit / 10);
  return negative ? -value : value;
}

// Whether a mantissa other than zero, with this exponent, is above 1: it tells overflow from underflow.
bool isLarge(const NumericPrefix& prefix) {
  const std::size_t point = std::min(prefix.mantissa.find('.'), prefix.mantissa.size());
  const std::size_t leading = prefix.mantissa.find_first_not_of("0.");
  const auto leadingExponent = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(leading);
  return leadingExponent + exponentValue(prefix.exponent) > 0;
}

double value(const NumericPrefix& prefix, std::string_view text) {
  if (prefix.mantissa.find_first_not_of("0.") == std::string_view::npos) return 0;
  // from_chars knows no plus sign.
  const std::size_t begin = text.front() == '+' ? 1 : 0;
  double result = 0;
  const auto [end, error] = std::from_chars(text.data() + begin, text.data() + prefix.length, result);
  if (error != std::errc() || !std::isfinite(result)) {
    if (isLarge(prefix)) throw RuntimeError::overflow();
    return 0;
  }
  return result == 0 ? 0 : result;  // a magnitude too small for a 64-bit float has no sign either
}

}  // namespace

double leadingNumber(std::string_view text) {
  text = trimmed(text);
  const NumericPrefix prefix = numericPrefix(text);
  return prefix.length == 0 ? 0 : value(prefix, text);
}

double typedNumber(std::string_view text) {
  try {
    return leadingNumber(text);
  } catch (const RuntimeError&) {
    constexpr double kBeyond = std::numeric_limits<double>::infinity();
    return trimmed(text).starts_with('-') ? -kBeyond : kBeyond;
  }
}

std::optional<double> wholeNumberText(std::string_view text) {
  text = trimmed(text);
  const NumericPrefix prefix = numericPrefix(text);
  if (prefix.length == 0 || prefix.length != text.size()) return std::nullopt;
  return value(prefix, text);
}

std::optional<double> fieldNumberText(std::string_view text) {
  try {
    return wholeNumberText(text);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

}  // namespace zel
