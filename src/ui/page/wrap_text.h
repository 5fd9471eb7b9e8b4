// Text broken into lines.
//
// Lines end at blanks and at the text's own line ends (LF, CR LF, CR). Blanks around a line are left out,
// those within it stay; tabs and other control characters count as blanks. No line ends at a no-break space.
// Lines are no longer than the width, in the units of `widthOf`; a word that is wider is broken between
// characters (UTF-8), of which a line has one at least. No short word is left alone on a paragraph's last
// line: the word before it goes there too. Each line costs a few measurements of about its own length,
// whatever follows it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/utf8.h"

namespace zel {

using TextWidth = std::function<double(std::string_view)>;

// Of one character: a blank, a tab or another control character, but no line end. Those that would turn the
// direction of a line are among them.
bool isPrintedAsBlank(std::string_view character);

// Calls `take` for each character of a text in UTF-8, in its order.
template <typename Take>
void forEachCharacter(std::string_view text, const Take& take) {
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin + 1;
    while (end < text.size() && !beginsCharacter(text[end])) ++end;
    take(text.substr(begin, end - begin));
    begin = end;
  }
}

// Without line ends and blanks of any kind, no-break spaces too, at both ends. Empty for a text that has no
// line.
std::string_view withoutBlankEnds(std::string_view text);

// No line for a text of nothing but blanks of any kind and line ends.
std::vector<std::string> WrapTextInColumn(std::string_view text, double width, const TextWidth& widthOf);

struct FittedText {
  std::vector<std::string> lines;
  bool cut = false;  // there was more than there is room for; the last line ends in an ellipsis
};

// The same, of so many lines at most.
FittedText fitTextInColumn(std::string_view text, double width, std::size_t mostLines,
                           const TextWidth& widthOf);

}  // namespace zel
