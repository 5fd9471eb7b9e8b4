// Lengths of texts in characters (Unicode code points), where a rule counts what a person would.
//
// A byte that is not part of valid UTF-8 counts by the lead byte rule alone.
#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/utf8.h"

namespace zel {

inline std::size_t characterCount(std::string_view utf8) {
  std::size_t count = 0;
  for (const char byte : utf8)
    if (beginsCharacter(byte)) ++count;
  return count;
}

// The first `count` characters, whole ones only.
inline std::string_view firstCharacters(std::string_view utf8, std::size_t count) {
  std::size_t seen = 0;
  for (std::size_t i = 0; i < utf8.size(); ++i)
    if (beginsCharacter(utf8[i]) && ++seen > count) return utf8.substr(0, i);
  return utf8;
}

}  // namespace zel
