// Numbers into text: the component's format patterns and its general conversion.
//
// Both work on the decimal value: 15 significant digits of a 64-bit float, 7 of a 32-bit one. Decimals then
// round half away from zero.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zel {

// How a user's locale writes numbers.
struct NumberStyle {
  std::string decimalPoint = ".";
  std::string groupSeparator = ",";
};

// A pattern of "#" (a digit, nothing for a zero that is not significant), "0" (a digit always), "," (groups
// of three before the point) and "." such as "##,##0.0". Digits before the point that the pattern has no
// place for are written all the same. A point that no digit follows is left out, a value that rounds to zero
// has no sign. Other characters around the digit places are written as they stand: "##0.0 kW". A value that
// is not finite throws RuntimeError 6, a pattern without a digit place RuntimeError 51.
std::string formatNumber(double value, std::string_view pattern, const NumberStyle& style = {});
std::string formatNumber(float value, std::string_view pattern, const NumberStyle& style = {});

// The general conversion: at most 15 (64-bit) or 7 (32-bit) significant digits, no grouping, no trailing
// zeros, no point for a whole value; exponent form ("1.5E-05", "1E+15") only below 1E-04 and where the digits
// would not reach the point. A value that is not finite throws RuntimeError 6.
std::string generalNumber(double value, const NumberStyle& style = {});
std::string generalNumber(float value, const NumberStyle& style = {});

// The same, put behind a text. A failure leaves the text as it was.
void appendNumber(std::string& text, double value, std::string_view pattern, const NumberStyle& style);
void appendNumber(std::string& text, float value, std::string_view pattern, const NumberStyle& style);
void appendGeneralNumber(std::string& text, double value, const NumberStyle& style);
void appendGeneralNumber(std::string& text, float value, const NumberStyle& style);

// The fewest digits that read back as the same 32-bit float, in plain form; the point is always ".". A value
// that is not finite throws RuntimeError 6.
std::string shortestNumber(float value);

}  // namespace zel
