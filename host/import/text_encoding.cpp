#include "import/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "planning/utf8_text.h"

namespace zel::host {
namespace {

constexpr std::size_t kSample = 4096;  // bytes by which binary files are told

// Of Windows-1252 from 0x80; zero where it has no character.
constexpr std::array<std::uint16_t, 32> kWindows{
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
constexpr std::uint32_t kReplacement = 0xFFFD;

unsigned byteAt(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

bool isUtf8(std::string_view bytes) { return !firstBadUtf8(bytes); }

std::string fromWindows(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) appendUtf8(text, windowsCharacter(static_cast<unsigned char>(c)));
  return text;
}

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
  std::string text;
  text.reserve(bytes.size());
  const auto unit = [=](std::size_t at) {
    const unsigned first = byteAt(bytes, at), second = byteAt(bytes, at + 1);
    return bigEndian ? first << 8 | second : second << 8 | first;
  };
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    std::uint32_t code = unit(i);
    if (code >= 0xD800 && code < 0xDC00 && i + 3 < bytes.size() && (unit(i + 2) & 0xFC00U) == 0xDC00U) {
      code = 0x10000 + ((code - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
      i += 2;
    } else if (code >= 0xD800 && code < 0xE000) {
      code = kReplacement;
    }
    appendUtf8(text, code);
  }
  if (bytes.size() % 2 != 0) appendUtf8(text, kReplacement);
  return text;
}

// Zeros in all of the even or all of the odd places: plain text of two bytes a character.
bool zerosAt(std::string_view bytes, std::size_t parity) {
  const std::string_view sample = bytes.substr(0, kSample & ~std::size_t{1});
  if (sample.size() < 8) return false;
  std::size_t zeros = 0;
  for (std::size_t i = 0; i < sample.size(); ++i) {
    if (sample[i] != '\0') continue;
    if (i % 2 != parity) return false;
    ++zeros;
  }
  return zeros >= sample.size() / 2 * 9 / 10;
}

std::string binaryProblem(std::string_view text) {
  if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos) {
    const auto lines = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(zero), '\n');
    return "line " + std::to_string(lines + 1) +
           ": there is a zero byte; this is no text file, or it is damaged";
  }
  return controlsProblem(text);
}

}  // namespace

void appendUtf8(std::string& text, std::uint32_t code) {
  const auto byte = [&text](std::uint32_t value) { text += static_cast<char>(value); };
  if (code < 0x80) return byte(code);
  if (code < 0x800) {
    byte(0xC0U | code >> 6);
  } else {
    if (code < 0x10000) {
      byte(0xE0U | code >> 12);
    } else {
      byte(0xF0U | code >> 18);
      byte(0x80U | (code >> 12 & 0x3FU));
    }
    byte(0x80U | (code >> 6 & 0x3FU));
  }
  byte(0x80U | (code & 0x3FU));
}

std::uint32_t windowsCharacter(unsigned char byte) {
  const std::uint32_t mapped = byte >= 0x80 && byte < 0xA0 ? kWindows[byte - 0x80U] : byte;
  return mapped == 0 && byte != 0 ? kReplacement : mapped;
}

std::string controlsProblem(std::string_view text) {
  const std::string_view sample = text.substr(0, kSample);
  const auto controls = std::count_if(sample.begin(), sample.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\r' && c != '\t';
  });
  if (static_cast<std::size_t>(controls) > sample.size() / 20) return "this is no text file";
  return {};
}

EncodingStart encodingOfStart(std::string_view bytes) {
  using namespace std::string_view_literals;
  if (bytes.substr(0, 4) == "\xFF\xFE\0\0"sv || bytes.substr(0, 4) == "\0\0\xFE\xFF"sv)
    return {TextEncoding::kUtf32, 4};
  if (bytes.substr(0, 2) == "\xFF\xFE"sv) return {TextEncoding::kUtf16Little, 2};
  if (bytes.substr(0, 2) == "\xFE\xFF"sv) return {TextEncoding::kUtf16Big, 2};
  if (zerosAt(bytes, 0)) return {TextEncoding::kUtf16Big, 0};
  if (zerosAt(bytes, 1)) return {TextEncoding::kUtf16Little, 0};
  return {TextEncoding::kBytes, bytes.substr(0, 3) == "\xEF\xBB\xBF"sv ? 3U : 0U};
}

void decodeText(std::string_view bytes, DecodedText& result) {
  const EncodingStart start = encodingOfStart(bytes);
  const std::string_view content = bytes.substr(start.markBytes);
  if (start.encoding == TextEncoding::kUtf32) {
    result.error = "its encoding is UTF-32; save it as UTF-8";
    return;
  }
  if (start.encoding != TextEncoding::kBytes) {
    result.converted = fromUtf16(content, start.encoding == TextEncoding::kUtf16Big);
    result.note = start.markBytes > 0 ? "encoding UTF-16" : "no encoding is named; read as UTF-16";
  } else if (isUtf8(content)) {
    result.text = content;
  } else {
    result.error = binaryProblem(bytes);
    if (!result.error.empty()) return;
    result.converted = fromWindows(bytes);
    result.note = "not UTF-8; read as Windows-1252";
  }
  if (!result.converted.empty()) result.text = result.converted;
  if (result.error.empty()) result.error = binaryProblem(result.text);
}

}  // namespace zel::host
