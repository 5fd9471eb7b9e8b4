// Numbers as options and files have them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zel::host {

// The number that is the whole text, with blanks, tabs and one "+" before it allowed; the decimal point is
// always ".". Nothing for any other text, and for what no double can hold ("nan", "1e400").
std::optional<double> plainNumber(std::string_view text);

// Without blanks and tabs at both ends.
std::string_view trimmedText(std::string_view text);

// A text for a message: cut where nobody reads on, with "?" for what is no printable character.
std::string printableText(std::string_view text);
// The same in quotes.
std::string quotedText(std::string_view text);

}  // namespace zel::host
