#include "zeltool/settings_store/escaped_text.h"

#include <cstddef>

#include "foundation/utf8.h"

namespace zel {

namespace {

bool isControl(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

void appendEscape(std::string& result, unsigned char byte) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  result += '%';
  result += kHexDigits[byte >> 4U];
  result += kHexDigits[byte & 0x0FU];
}

}  // namespace

std::string escapedText(std::string_view text, std::string_view specialCharacters) {
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const std::size_t length = utf8SequenceLength(text.substr(i));
    const bool blankAtAnEnd = byte == ' ' && (i == 0 || i + 1 == text.size());
    // A byte order mark at the beginning of the file would not be read as text.
    const bool byteOrderMark = text.substr(i, 3) == "\xEF\xBB\xBF";
    if (length == 0 || byteOrderMark || byte == '%' || isControl(byte) || blankAtAnEnd ||
        specialCharacters.find(text[i]) != std::string_view::npos) {
      appendEscape(result, byte);
      ++i;
    } else {
      result += text.substr(i, length);
      i += length;
    }
  }
  return result;
}

std::string unescapedText(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
    const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
    if (low >= 0) {
      result += static_cast<char>(high * 16 + low);
      i += 2;
    } else {
      result += text[i];
    }
  }
  return result;
}

}  // namespace zel
