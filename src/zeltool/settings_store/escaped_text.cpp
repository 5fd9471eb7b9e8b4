#include "zeltool/settings_store/escaped_text.h"

namespace zel {

namespace {

unsigned char byteAt(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

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

std::size_t utf8SequenceLength(std::string_view text) {
  if (text.empty()) return 0;
  const unsigned char lead = byteAt(text, 0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((byteAt(text, i) & 0xC0U) != 0x80U) return 0;
  // Overlong forms, surrogates and code points beyond U+10FFFF show in the second byte.
  const unsigned char second = byteAt(text, 1);
  if (lead == 0xE0 && second < 0xA0) return 0;
  if (lead == 0xED && second > 0x9F) return 0;
  if (lead == 0xF0 && second < 0x90) return 0;
  if (lead == 0xF4 && second > 0x8F) return 0;
  return length;
}

std::string escapedText(std::string_view text, std::string_view specialCharacters) {
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    const unsigned char byte = byteAt(text, i);
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
