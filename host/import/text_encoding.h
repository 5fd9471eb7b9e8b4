// Text files of any usual encoding as UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace zel::host {

struct DecodedText {
  std::string_view text;  // UTF-8 without byte order mark; of `converted`, or of the bytes that were given
  std::string converted;
  std::string note;   // which encoding was assumed, when it was not plain UTF-8
  std::string error;  // why it is no text, with the line
};

// UTF-8, with or without mark; UTF-16 by its mark, or by zeros in every other byte; else Windows-1252.
// Refused are UTF-32 and what has zero bytes or is full of control characters. The bytes must outlive the
// result.
void decodeText(std::string_view bytes, DecodedText& result);

}  // namespace zel::host
