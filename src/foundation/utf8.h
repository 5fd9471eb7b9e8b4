// Where characters of UTF-8 begin and end.
#pragma once

#include <cstddef>
#include <string_view>

namespace zel {

// By the lead byte rule alone, for bytes that are not valid too: continuation bytes (0x80 to 0xBF) belong to
// the character before them, every other byte begins one.
inline bool beginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

// Length in bytes of the valid sequence that the text begins with; 0 when it begins with none. As RFC 3629
// has it: no overlong form, no surrogate, nothing above U+10FFFF.
inline std::size_t utf8SequenceLength(std::string_view text) {
  if (text.empty()) return 0;
  const auto byteAt = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char lead = byteAt(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if (beginsCharacter(text[i])) return 0;
  // Overlong forms, surrogates and code points beyond U+10FFFF show in the second byte.
  const unsigned char second = byteAt(1);
  if (lead == 0xE0 && second < 0xA0) return 0;
  if (lead == 0xED && second > 0x9F) return 0;
  if (lead == 0xF0 && second < 0x90) return 0;
  if (lead == 0xF4 && second > 0x8F) return 0;
  return length;
}

}  // namespace zel
