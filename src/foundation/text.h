// Small text helpers, ASCII only where case is meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zel {

std::string_view trimmed(std::string_view text);  // without blanks and tabs at both ends
bool equalIgnoringCase(std::string_view a, std::string_view b);
std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);
// The parts between the separators; an empty text has no parts. Parts are trimmed, empty ones left out.
std::vector<std::string> splitList(std::string_view text, char separator);

}  // namespace zel
