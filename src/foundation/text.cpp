#include "foundation/text.h"

#include <algorithm>

namespace zel {

namespace {

constexpr std::string_view kBlanks = " \t";

char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char upperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = lowerCase(c);
  return result;
}

std::string upperCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = upperCase(c);
  return result;
}

std::vector<std::string> splitList(std::string_view text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    const std::string_view part = trimmed(text.substr(begin, end - begin));
    if (!part.empty()) parts.emplace_back(part);
    begin = end + 1;
  }
  return parts;
}

}  // namespace zel
