// Text broken into lines.
//
// Lines end at blanks and at the text's own line ends (LF, CR LF, CR). Blanks around a line are left out,
// those within it stay; tabs and other control characters count as blanks. Lines are no longer than the
// width, in the units of `widthOf`; a word that is wider is broken between characters (UTF-8), of which a
// line has one at least. Each line costs a few measurements of about its own length, whatever follows it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zel {

using TextWidth = std::function<double(std::string_view)>;

// No line for a text of nothing but blanks and line ends.
std::vector<std::string> WrapTextInColumn(std::string_view text, double width, const TextWidth& widthOf);

struct FittedText {
  std::vector<std::string> lines;
  bool cut = false;  // there was more than there is room for; the last line ends in an ellipsis
};

// The same, of so many lines at most.
FittedText fitTextInColumn(std::string_view text, double width, std::size_t mostLines,
                           const TextWidth& widthOf);

}  // namespace zel
