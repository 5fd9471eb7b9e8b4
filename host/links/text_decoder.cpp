#include "links/text_decoder.h"

#include <algorithm>
#include <cstdint>

#include "planning/utf8_text.h"

namespace zel::host {
namespace {

constexpr std::uint32_t kNoCharacter = 0xFFFD;

unsigned byteOf(char c) { return static_cast<unsigned char>(c); }

// Whether these bytes, the last of a piece, may be the first ones of a character.
bool mayGoOn(std::string_view bytes) {
  const unsigned first = byteOf(bytes.front());
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 1;
  return bytes.size() < length &&
         std::all_of(bytes.begin() + 1, bytes.end(), [](char c) { return (byteOf(c) & 0xC0U) == 0x80U; });
}

}  // namespace

void TextDecoder::take(std::string_view bytes, std::string& text) {
  waiting_.append(bytes);
  const bool enough = waiting_.size() >= kStart || (waiting_.size() >= kShortestStart &&
                                                    waiting_.find_first_of("\r\n") != std::string::npos);
  if (!started_ && !enough) return;
  if (!started_) begin(text);
  convert(false, text);
}

void TextDecoder::finish(std::string& text) {
  if (!started_) begin(text);
  convert(true, text);
}

void TextDecoder::begin(std::string&) {
  started_ = true;
  start_ = encodingOfStart(waiting_);
  waiting_.erase(0, start_.markBytes);
  if (start_.encoding == TextEncoding::kUtf32)
    problem_ = "its encoding is UTF-32; save it as UTF-8";
  else if (start_.encoding == TextEncoding::kBytes)
    problem_ = controlsProblem(waiting_);
}

void TextDecoder::convert(bool last, std::string& text) {
  if (!problem_.empty())
    waiting_.clear();
  else if (start_.encoding == TextEncoding::kBytes)
    convertBytes(last, text);
  else
    convertUtf16(last, text);
}

void TextDecoder::convertBytes(bool last, std::string& text) {
  std::string_view rest = waiting_;
  while (!rest.empty()) {
    const std::size_t bad = firstBadUtf8(rest).value_or(rest.size());
    text.append(rest.substr(0, bad));
    rest.remove_prefix(bad);
    if (rest.empty() || (!last && mayGoOn(rest))) break;
    appendUtf8(text, windowsCharacter(static_cast<unsigned char>(rest.front())));
    ++windowsBytes_;
    rest.remove_prefix(1);
  }
  waiting_.erase(0, waiting_.size() - rest.size());
}

void TextDecoder::convertUtf16(bool last, std::string& text) {
  const bool big = start_.encoding == TextEncoding::kUtf16Big;
  const auto unit = [&](std::size_t at) {
    const std::uint32_t first = byteOf(waiting_[at]), second = byteOf(waiting_[at + 1]);
    return big ? first << 8U | second : second << 8U | first;
  };
  std::size_t at = 0;
  for (; at + 1 < waiting_.size(); at += 2) {
    std::uint32_t code = unit(at);
    if (code >= 0xD800 && code < 0xDC00) {
      if (at + 3 >= waiting_.size() && !last) break;
      if (at + 3 < waiting_.size() && (unit(at + 2) & 0xFC00U) == 0xDC00U) {
        code = 0x10000 + ((code - 0xD800) << 10U) + (unit(at + 2) - 0xDC00);
        at += 2;
      } else {
        code = kNoCharacter;
      }
    } else if (code >= 0xDC00 && code < 0xE000) {
      code = kNoCharacter;
    }
    appendUtf8(text, code);
  }
  if (last && at < waiting_.size()) {
    appendUtf8(text, kNoCharacter);
    at = waiting_.size();
  }
  waiting_.erase(0, at);
}

std::string TextDecoder::note() const {
  if (start_.encoding != TextEncoding::kBytes)
    return start_.markBytes > 0 ? "encoding UTF-16" : "no encoding is named; read as UTF-16";
  if (windowsBytes_ == 0) return {};
  return std::to_string(windowsBytes_) + (windowsBytes_ == 1 ? " byte is no UTF-8; read as Windows-1252"
                                                             : " bytes are no UTF-8; read as Windows-1252");
}

}  // namespace zel::host
