// Long texts on a terminal: broken into lines at blanks.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zel::host {

// The text in lines of at most `width` columns, the second and later ones behind `indent` blanks; the first
// is taken to begin in that column too. Lines break at blanks only, so a word that does not fit stands on a
// line of its own and goes past the width. A column is a character of UTF-8. No blank is left at a line's end
// before a break; a line break in the text stays one.
std::string wrapped(std::string_view text, std::size_t width, std::size_t indent);

// Columns of the terminal that standard output goes to, at least 60: as the terminal says, else as COLUMNS
// says, else 100. Nothing when standard output is no terminal.
std::optional<std::size_t> terminalWidth();

// The columns to use, from what a terminal and COLUMNS say; 0 and a null pointer say nothing.
std::size_t usableWidth(unsigned terminalColumns, const char* columnsVariable);

}  // namespace zel::host
