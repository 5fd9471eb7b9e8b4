#include "foundation/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "foundation/runtime_error.h"

namespace zel {

namespace {

// A number as its decimal digits: 0.d1 d2 d3 ... x 10^pointPosition. Zero has no digits and no sign.
class Decimal {
 public:
  Decimal() = default;
  // Without their leading and trailing zeros.
  Decimal(bool negative, std::string_view digits, int pointPosition);

  bool negative() const { return negative_; }
  std::string_view digits() const { return {digits_.data(), count_}; }
  // Digits before the point; negative for zeros between the point and the first digit.
  int pointPosition() const { return pointPosition_; }
  std::size_t digitsAfterPoint() const;

  // Half away from zero, to this many digits after the point.
  Decimal rounded(int decimals) const;

  // The digits before the point, without leading zeros; none below 1.
  void appendWhole(std::string& text) const;
  // The digits after the point, without trailing zeros.
  void appendFraction(std::string& text) const;

 private:
  bool negative_ = false;
  int pointPosition_ = 0;
  std::size_t count_ = 0;
  std::array<char, 20> digits_{};
};

Decimal::Decimal(bool negative, std::string_view digits, int pointPosition) {
  const std::size_t leading = std::min(digits.find_first_not_of('0'), digits.size());
  digits = digits.substr(leading, digits.find_last_not_of('0') + 1 - leading);
  if (digits.empty()) return;
  negative_ = negative;
  pointPosition_ = pointPosition - static_cast<int>(leading);
  count_ = digits.copy(digits_.data(), digits_.size());
}

std::size_t Decimal::digitsAfterPoint() const {
  const int after = static_cast<int>(count_) - pointPosition_;
  return count_ == 0 || after < 0 ? 0 : static_cast<std::size_t>(after);
}

Decimal Decimal::rounded(int decimals) const {
  const int kept = pointPosition_ + decimals;
  if (kept >= static_cast<int>(count_)) return *this;
  if (kept < 0) return {};
  const auto end = static_cast<std::size_t>(kept);
  if (digits_[end] < '5') return {negative_, digits().substr(0, end), pointPosition_};
  // One more in the last digit that is not 9; those behind it become zeros.
  std::array<char, std::tuple_size_v<decltype(digits_)> + 1> up{'0'};
  std::size_t count = digits().substr(0, end).copy(up.data() + 1, end) + 1;
  while (up[count - 1] == '9') --count;
  ++up[count - 1];
  return {negative_, {up.data(), count}, pointPosition_ + 1};
}

void Decimal::appendWhole(std::string& text) const {
  if (pointPosition_ <= 0) return;
  const auto width = static_cast<std::size_t>(pointPosition_);
  text += digits().substr(0, width);
  if (width > count_) text.append(width - count_, '0');
}

void Decimal::appendFraction(std::string& text) const {
  if (digitsAfterPoint() == 0) return;
  if (pointPosition_ < 0) text.append(static_cast<std::size_t>(-pointPosition_), '0');
  text += digits().substr(static_cast<std::size_t>(std::max(pointPosition_, 0)));
}

// `text` as std::to_chars writes it in scientific form: "-1.234e+05".
Decimal decimalOf(std::string_view text) {
  const bool negative = text.front() == '-';
  if (negative) text.remove_prefix(1);
  const std::size_t e = text.find('e');
  int exponent = 0;
  const std::size_t sign = text[e + 1] == '+' ? e + 2 : e + 1;
  std::from_chars(text.data() + sign, text.data() + text.size(), exponent);
  std::array<char, 32> digits{text.front()};
  std::size_t count = 1;
  if (e > 2) count += text.substr(2, e - 2).copy(digits.data() + 1, digits.size() - 1);
  return {negative, {digits.data(), count}, exponent + 1};
}

using Buffer = std::array<char, 64>;

constexpr std::size_t kMostSignificant = 15;

template <typename Float>
constexpr std::size_t kSignificantDigits = sizeof(Float) == sizeof(float) ? 7 : kMostSignificant;

// 10^0, 10^1 ... as whole numbers.
constexpr auto kWholePowers = [] {
  std::array<std::uint64_t, 20> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

// The bounds of the magnitudes that are written plainly, 1E-04 to 1E+15. Those below 1 are no 64-bit floats,
// but lie between the one that stands here and the next lower one.
constexpr std::array<double, 20> kPowers{1e-4, 1e-3, 1e-2, 1e-1, 1e0,  1e1,  1e2,  1e3,  1e4,  1e5,
                                         1e6,  1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr int kPointPositionOfFirstPower = -3;

__extension__ typedef unsigned __int128 Wide;

// magnitude x 10^scale as the nearest whole number, of two the even one. Exact: the 53 bits of the fraction
// times a power of up to 60 bits, cut to its whole part. For the magnitudes between the powers above.
std::uint64_t scaledToWhole(double magnitude, std::size_t scale) {
  constexpr int kFractionBits = 52;
  constexpr int kExponentOfOne = 1023;
  constexpr std::uint64_t kHidden = std::uint64_t{1} << kFractionBits;
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const int shift = kFractionBits + kExponentOfOne - static_cast<int>(bits >> kFractionBits);
  const Wide product = Wide{(bits & (kHidden - 1)) | kHidden} * kWholePowers[scale];
  const auto whole = static_cast<std::uint64_t>(product >> shift);
  const Wide rest = product - (Wide{whole} << shift);
  const Wide half = Wide{1} << (shift - 1);
  return whole + (rest > half || (rest == half && whole % 2 == 1) ? 1 : 0);
}

// The decimal value of so many significant digits, of two equally near the even one.
Decimal significantDecimal(double value, std::size_t significant) {
  const double magnitude = std::abs(value);
  Buffer buffer;
  if (magnitude >= kPowers.front() && magnitude < static_cast<double>(kWholePowers[significant])) {
    std::size_t power = 1;
    while (magnitude >= kPowers[power]) ++power;
    const int position = kPointPositionOfFirstPower + static_cast<int>(power) - 1;
    const auto scale = static_cast<std::size_t>(static_cast<int>(significant) - position);
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), scaledToWhole(magnitude, scale));
    const std::string_view digits(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
    // A digit more where 9.99... has become 10.
    return {value < 0, digits, position + static_cast<int>(digits.size()) - static_cast<int>(significant)};
  }
  // std::to_chars rather than a stream or printf: a host may have set a locale with another decimal point.
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::scientific, static_cast<int>(significant) - 1);
  return decimalOf({buffer.data(), result.ptr});
}

template <typename Float>
Decimal significantDecimal(Float value) {
  if (!std::isfinite(value)) throw RuntimeError::overflow();
  return significantDecimal(double{value}, kSignificantDigits<Float>);
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
  const auto isPlace = [](char c) { return c == '#' || c == '0' || c == ',' || c == '.'; };
  const auto begin = static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isPlace) - text.begin());
  Pattern pattern;
  pattern.before = text.substr(0, begin);
  bool afterPoint = false;
  bool hasPlace = false;
  std::size_t end = begin;
  for (; end < text.size(); ++end) {
    const char c = text[end];
    if (!isPlace(c) || (c == '.' && afterPoint)) break;
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

void appendGrouped(std::string& text, std::string_view whole, const std::string& separator) {
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (i > 0 && (whole.size() - i) % 3 == 0) text += separator;
    text += whole[i];
  }
}

void appendWhole(std::string& text, const Decimal& decimal, const Pattern& pattern,
                 const NumberStyle& style) {
  const auto width = static_cast<std::size_t>(std::max(decimal.pointPosition(), 0));
  const std::size_t zeros = pattern.wholeZeros - std::min(width, pattern.wholeZeros);
  if (!pattern.grouped) {
    text.append(zeros, '0');
    decimal.appendWhole(text);
    return;
  }
  std::string whole(zeros, '0');
  decimal.appendWhole(whole);
  appendGrouped(text, whole, style.groupSeparator);
}

template <typename Float>
void appendFormatted(std::string& text, Float value, std::string_view patternText, const NumberStyle& style) {
  const Pattern pattern = parsePattern(patternText);
  const Decimal decimal = significantDecimal(value).rounded(pattern.decimals);
  if (decimal.negative()) text += '-';
  text += pattern.before;
  appendWhole(text, decimal, pattern, style);
  const std::size_t fraction = decimal.digitsAfterPoint();
  if (fraction > 0 || pattern.fractionZeros > 0) text += style.decimalPoint;
  decimal.appendFraction(text);
  if (fraction < pattern.fractionZeros) text.append(pattern.fractionZeros - fraction, '0');
  text += pattern.after;
}

void appendExponentForm(std::string& text, const Decimal& decimal, const NumberStyle& style) {
  text += decimal.digits().front();
  if (decimal.digits().size() > 1) (text += style.decimalPoint) += decimal.digits().substr(1);
  const int exponent = decimal.pointPosition() - 1;
  text += exponent < 0 ? "E-" : "E+";
  if (std::abs(exponent) < 10) text += '0';
  text += std::to_string(std::abs(exponent));
}

void appendPlainForm(std::string& text, const Decimal& decimal, const std::string& point) {
  if (decimal.pointPosition() <= 0) text += '0';
  decimal.appendWhole(text);
  if (decimal.digitsAfterPoint() > 0) text += point;
  decimal.appendFraction(text);
}

template <typename Float>
void appendGeneralForm(std::string& text, Float value, const NumberStyle& style) {
  const Decimal decimal = significantDecimal(value);
  // 1E-04 is the smallest magnitude in plain form: its first digit stands in the fourth place after the
  // point.
  const bool plain = decimal.pointPosition() >= kPointPositionOfFirstPower &&
                     decimal.pointPosition() <= static_cast<int>(kSignificantDigits<Float>);
  if (decimal.negative()) text += '-';
  if (plain)
    appendPlainForm(text, decimal, style.decimalPoint);
  else
    appendExponentForm(text, decimal, style);
}

}  // namespace

void appendNumber(std::string& text, double value, std::string_view pattern, const NumberStyle& style) {
  appendFormatted(text, value, pattern, style);
}

void appendNumber(std::string& text, float value, std::string_view pattern, const NumberStyle& style) {
  appendFormatted(text, value, pattern, style);
}

std::string formatNumber(double value, std::string_view pattern, const NumberStyle& style) {
  std::string text;
  appendFormatted(text, value, pattern, style);
  return text;
}

std::string formatNumber(float value, std::string_view pattern, const NumberStyle& style) {
  std::string text;
  appendFormatted(text, value, pattern, style);
  return text;
}

void appendGeneralNumber(std::string& text, double value, const NumberStyle& style) {
  appendGeneralForm(text, value, style);
}

void appendGeneralNumber(std::string& text, float value, const NumberStyle& style) {
  appendGeneralForm(text, value, style);
}

std::string generalNumber(double value, const NumberStyle& style) {
  std::string text;
  appendGeneralForm(text, value, style);
  return text;
}

std::string generalNumber(float value, const NumberStyle& style) {
  std::string text;
  appendGeneralForm(text, value, style);
  return text;
}

std::string shortestNumber(float value) {
  if (!std::isfinite(value)) throw RuntimeError::overflow();
  Buffer buffer;
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
  const Decimal decimal = decimalOf({buffer.data(), result.ptr});
  std::string text(decimal.negative() ? "-" : "");
  appendPlainForm(text, decimal, ".");
  return text;
}

}  // namespace zel
