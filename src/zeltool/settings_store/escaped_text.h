// Percent escapes: any bytes as one line of valid UTF-8, and back.
#pragma once

#include <string>
#include <string_view>

namespace zel {

// Escapes as %XX: "%", the special characters, control characters, bytes that are no UTF-8, and blanks at
// both ends.
std::string escapedText(std::string_view text, std::string_view specialCharacters);

// The reverse. A "%" that no two hexadecimal digits follow stands for itself, as people write it by hand.
std::string unescapedText(std::string_view text);

}  // namespace zel
