#include "foundation/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "foundation/runtime_error.h"

namespace zel {

namespace {

// A number as its decimal digits: 0.d1 d2 d3 ... x 10^pointPosition. Zero has no digits and no sign.
struct Decimal {
  bool negative = false;
  std::string digits;     // without leading and trailing zeros
  int pointPosition = 0;  // digits before the point; negative for zeros between the point and the first digit
};

void dropTrailingZeros(std::string& digits) { digits.erase(digits.find_last_not_of('0') + 1); }

// `text` as std::to_chars writes it in scientific form: "-1.234e+05".
Decimal decimalOf(std::string_view text) {
  Decimal decimal;
  if (text.front() == '-') {
    decimal.negative = true;
    text.remove_prefix(1);
  }
  const std::size_t e = text.find('e');
  for (const char c : text.substr(0, e))
    if (c != '.') decimal.digits += c;
  int exponent = 0;
  const std::size_t sign = text[e + 1] == '+' ? e + 2 : e + 1;
  std::from_chars(text.data() + sign, text.data() + text.size(), exponent);
  dropTrailingZeros(decimal.digits);
  if (decimal.digits.empty()) return {};
  decimal.pointPosition = exponent + 1;
  return decimal;
}

using Buffer = std::array<char, 64>;

template <typename Float>
constexpr int kSignificantDigits = sizeof(Float) == sizeof(float) ? 7 : 15;

// std::to_chars rather than a stream or printf: a host may have set a locale with another decimal point.
template <typename Float>
Decimal significantDecimal(Float value) {
  if (!std::isfinite(value)) throw RuntimeError::overflow();
  Buffer buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::scientific, kSignificantDigits<Float> - 1);
  return decimalOf({buffer.data(), result.ptr});
}

// Half away from zero, to this many digits after the point.
Decimal rounded(Decimal decimal, int decimals) {
  const int kept = decimal.pointPosition + decimals;
  if (kept >= static_cast<int>(decimal.digits.size())) return decimal;
  if (kept < 0) return {};
  const bool up = decimal.digits[static_cast<std::size_t>(kept)] >= '5';
  decimal.digits.resize(static_cast<std::size_t>(kept));
  if (up) {
    const std::size_t carryTo = decimal.digits.find_last_not_of('9');
    if (carryTo == std::string::npos) {
      decimal.digits.assign(1, '1');
      ++decimal.pointPosition;
    } else {
      decimal.digits.resize(carryTo + 1);
      ++decimal.digits[carryTo];
    }
  }
  dropTrailingZeros(decimal.digits);
  return decimal.digits.empty() ? Decimal{} : decimal;
}

// The digits before the point, without leading zeros; empty below 1.
std::string wholeDigits(const Decimal& decimal) {
  if (decimal.pointPosition <= 0) return {};
  std::string whole = decimal.digits.substr(0, static_cast<std::size_t>(decimal.pointPosition));
  whole.resize(static_cast<std::size_t>(decimal.pointPosition), '0');
  return whole;
}

// The digits after the point, without trailing zeros.
std::string fractionDigits(const Decimal& decimal) {
  if (decimal.pointPosition >= static_cast<int>(decimal.digits.size())) return {};
  if (decimal.pointPosition >= 0)
    return decimal.digits.substr(static_cast<std::size_t>(decimal.pointPosition));
  return std::string(static_cast<std::size_t>(-decimal.pointPosition), '0') + decimal.digits;
}

struct Pattern {
  std::string_view before;  // text around the digit places
  std::string_view after;
  std::size_t wholeZeros = 0;  // digits always written before the point
  std::size_t fractionZeros = 0;
  int decimals = 0;  // digits at most after the point
  bool grouped = false;
};

Pattern parsePattern(std::string_view text) {
  constexpr std::string_view kPlaces = "#0,.";
  const std::size_t begin = std::min(text.find_first_of(kPlaces), text.size());
  Pattern pattern;
  pattern.before = text.substr(0, begin);
  bool afterPoint = false;
  bool hasPlace = false;
  std::size_t end = begin;
  for (; end < text.size(); ++end) {
    const char c = text[end];
    if (kPlaces.find(c) == std::string_view::npos || (c == '.' && afterPoint)) break;
    if (c == '.') {
      afterPoint = true;
    } else if (c == ',') {
      pattern.grouped = pattern.grouped || !afterPoint;
    } else {
      hasPlace = true;
      if (afterPoint) {
        ++pattern.decimals;
        if (c == '0') pattern.fractionZeros = static_cast<std::size_t>(pattern.decimals);
      } else if (c == '0' || pattern.wholeZeros > 0) {
        ++pattern.wholeZeros;
      }
    }
  }
  if (!hasPlace) throw RuntimeError::internalError("a number format without a digit place");
  pattern.after = text.substr(end);
  return pattern;
}

std::string grouped(const std::string& whole, const std::string& separator) {
  std::string result;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (i > 0 && (whole.size() - i) % 3 == 0) result += separator;
    result += whole[i];
  }
  return result;
}

template <typename Float>
std::string format(Float value, std::string_view patternText, const NumberStyle& style) {
  const Pattern pattern = parsePattern(patternText);
  const Decimal decimal = rounded(significantDecimal(value), pattern.decimals);
  std::string whole = wholeDigits(decimal);
  if (whole.size() < pattern.wholeZeros) whole.insert(0, pattern.wholeZeros - whole.size(), '0');
  std::string fraction = fractionDigits(decimal);
  if (fraction.size() < pattern.fractionZeros) fraction.resize(pattern.fractionZeros, '0');

  std::string text(decimal.negative ? "-" : "");
  text += pattern.before;
  text += pattern.grouped ? grouped(whole, style.groupSeparator) : whole;
  if (!fraction.empty()) text += style.decimalPoint + fraction;
  text += pattern.after;
  return text;
}

std::string exponentForm(const Decimal& decimal, const NumberStyle& style) {
  std::string text(1, decimal.digits.front());
  if (decimal.digits.size() > 1) text += style.decimalPoint + decimal.digits.substr(1);
  const int exponent = decimal.pointPosition - 1;
  const std::string digits = std::to_string(std::abs(exponent));
  text += exponent < 0 ? "E-" : "E+";
  return text + (digits.size() < 2 ? "0" : "") + digits;
}

std::string plainForm(const Decimal& decimal, const std::string& point) {
  const std::string whole = wholeDigits(decimal);
  const std::string fraction = fractionDigits(decimal);
  std::string text = whole.empty() ? "0" : whole;
  if (!fraction.empty()) text += point + fraction;
  return text;
}

template <typename Float>
std::string general(Float value, const NumberStyle& style) {
  // 1E-04 is the smallest magnitude in plain form: its first digit stands in the fourth place after the
  // point.
  constexpr int kSmallestPlainPosition = -3;
  const Decimal decimal = significantDecimal(value);
  const bool plain =
      decimal.pointPosition >= kSmallestPlainPosition && decimal.pointPosition <= kSignificantDigits<Float>;
  const std::string text = plain ? plainForm(decimal, style.decimalPoint) : exponentForm(decimal, style);
  return decimal.negative ? "-" + text : text;
}

}  // namespace

std::string formatNumber(double value, std::string_view pattern, const NumberStyle& style) {
  return format(value, pattern, style);
}

std::string formatNumber(float value, std::string_view pattern, const NumberStyle& style) {
  return format(value, pattern, style);
}

std::string generalNumber(double value, const NumberStyle& style) { return general(value, style); }

std::string generalNumber(float value, const NumberStyle& style) { return general(value, style); }

std::string shortestNumber(float value) {
  if (!std::isfinite(value)) throw RuntimeError::overflow();
  Buffer buffer;
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
  const Decimal decimal = decimalOf({buffer.data(), result.ptr});
  const std::string text = plainForm(decimal, ".");
  return decimal.negative ? "-" + text : text;
}

}  // namespace zel
