#include "links/json_text.h"

#include <cmath>
#include <cstddef>

#include "planning/short_number.h"
#include "planning/utf8_text.h"

namespace zel::host {

void appendJsonText(std::string& out, std::string_view text) {
  constexpr const char* kDigits = "0123456789abcdef";
  out += '"';
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte >= 0x80) {
      const Utf8Character character = utf8CharacterAt(text, at);
      if (character.valid)
        out.append(text.substr(at, character.bytes));
      else
        out += "\xEF\xBF\xBD";
      at += character.bytes;
      continue;
    }
    ++at;
    if (byte == '"' || byte == '\\') {
      out += '\\';
      out += static_cast<char>(byte);
    } else if (byte == '\n') {
      out += "\\n";
    } else if (byte == '\t') {
      out += "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      out += "\\u00";
      out += kDigits[byte >> 4U];
      out += kDigits[byte & 0xFU];
    } else {
      out += static_cast<char>(byte);
    }
  }
  out += '"';
}

std::string jsonText(std::string_view text) {
  std::string out;
  appendJsonText(out, text);
  return out;
}

std::string jsonNumber(double value) { return std::isfinite(value) ? shortNumber(value) : "null"; }

void appendJsonNumber(std::string& out, double value, int decimals) {
  if (!std::isfinite(value)) {
    out += "null";
    return;
  }
  std::string text = fixedNumber(value, decimals);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  out += text;
}

}  // namespace zel::host
