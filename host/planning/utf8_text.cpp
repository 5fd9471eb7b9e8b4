#include "planning/utf8_text.h"

namespace zel::host {
namespace {

constexpr Utf8Character kBadByte{0xFFFD, 1, false};

// Bytes by the lead byte; 0 for none that can lead.
std::size_t bytesOfLead(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

bool isCharacter(char32_t code, std::size_t bytes) {
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};  // by bytes; below is an overlong form
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code >= kLeast[bytes] && code <= 0x10FFFF && !surrogate;
}

}  // namespace

Utf8Character utf8CharacterAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at);
  const std::size_t bytes = bytesOfLead(lead);
  if (bytes == 1) return {lead, 1, true};
  if (bytes == 0 || text.size() - at < bytes) return kBadByte;
  char32_t code = lead & (0xFFU >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(at + i) & 0xC0U) != 0x80U) return kBadByte;
    code = code << 6 | (byte(at + i) & 0x3FU);
  }
  if (!isCharacter(code, bytes)) return kBadByte;
  return {code, bytes, true};
}

std::optional<std::size_t> firstBadUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Character character = utf8CharacterAt(text, at);
    if (!character.valid) return at;
    at += character.bytes;
  }
  return std::nullopt;
}

std::size_t utf8Length(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) at += utf8CharacterAt(text, at).bytes;
  return count;
}

std::string_view utf8Start(std::string_view text, std::size_t characters) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < characters && at < text.size(); ++i) at += utf8CharacterAt(text, at).bytes;
  return text.substr(0, at);
}

}  // namespace zel::host
