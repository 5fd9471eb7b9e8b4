// Text files of any usual encoding as UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zel::host {

struct DecodedText {
  std::string_view text;  // UTF-8 without byte order mark; of `converted`, or of the bytes that were given
  std::string converted;
  std::string note;   // which encoding was assumed, when it was not plain UTF-8
  std::string error;  // why it is no text, with the line
};

enum class TextEncoding { kBytes, kUtf16Little, kUtf16Big, kUtf32 };  // of bytes: UTF-8 or Windows-1252

struct EncodingStart {
  TextEncoding encoding = TextEncoding::kBytes;
  std::size_t markBytes = 0;  // of the byte order mark; without one 0
};

// What the first bytes of a text, some thousand of them, say about its encoding.
EncodingStart encodingOfStart(std::string_view bytes);
// Why the bytes, or the UTF-8 that they became, are no text: full of control characters. Empty when they are.
std::string controlsProblem(std::string_view text);
void appendUtf8(std::string& text, std::uint32_t code);
// The character of a byte in Windows-1252; U+FFFD where it has none.
std::uint32_t windowsCharacter(unsigned char byte);

// UTF-8, with or without mark; UTF-16 by its mark, or by zeros in every other byte; else Windows-1252.
// Refused are UTF-32 and what has zero bytes or is full of control characters. The bytes must outlive the
// result.
void decodeText(std::string_view bytes, DecodedText& result);

}  // namespace zel::host
