// Numbers out of text that people and other programs wrote.
#pragma once

#include <optional>
#include <string_view>

namespace zel {

// The number that the text begins with: blanks before it are skipped, the longest numeric prefix is taken
// (sign, digits, a decimal point, an exponent with E or e), and 0 stands for anything else. The point is
// always ".". A magnitude beyond a 64-bit float throws RuntimeError 6; one too small for it is 0.
double leadingNumber(std::string_view text);

// The same for what a person types: a magnitude beyond a 64-bit float is infinite, with its sign, and so
// beyond every limit.
double typedNumber(std::string_view text);

// The whole text as one number, blanks around it allowed; nothing when it is not one. Throws RuntimeError 6
// as above.
std::optional<double> wholeNumberText(std::string_view text);

// The same for a field of a file: a magnitude beyond a 64-bit float is no number.
std::optional<double> fieldNumberText(std::string_view text);

}  // namespace zel
