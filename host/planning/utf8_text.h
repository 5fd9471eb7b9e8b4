// Characters of UTF-8 as the standard defines it: no overlong forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zel::host {

struct Utf8Character {
  char32_t code = 0;
  std::size_t bytes = 0;
  bool valid = false;  // otherwise one byte, which stands for U+FFFD
};

// `at` is inside the text.
Utf8Character utf8CharacterAt(std::string_view text, std::size_t at);
// Where the first byte is that is no UTF-8.
std::optional<std::size_t> firstBadUtf8(std::string_view text);
// Each bad byte counts as one.
std::size_t utf8Length(std::string_view text);
// The first so many characters.
std::string_view utf8Start(std::string_view text, std::size_t characters);

}  // namespace zel::host
