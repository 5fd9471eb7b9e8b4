#include "command_line/plain_number.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace zel::host {

std::string_view trimmedText(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<double> plainNumber(std::string_view text) {
  text = trimmedText(text);
  // from_chars knows no "+", and would take the minus of "+-5".
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || last != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::string printableText(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  std::string result;
  for (const char c : text.substr(0, kLongest)) result += c >= ' ' && c <= '~' ? c : '?';
  return result + (text.size() > kLongest ? "..." : "");
}

std::string quotedText(std::string_view text) { return "\"" + printableText(text) + "\""; }

}  // namespace zel::host
