// A profile as a file: one elevation a line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zel::host {

// The elevations in metres of a text: one number a line, so that line n has elevation n. Line ends of both
// kinds, a UTF-8 byte order mark, blanks around a number and blank lines at the end are understood. Anything
// else throws CommandFailure with the title and the line.
std::vector<double> parseElevations(std::string_view text, const std::string& title);

// The same of a file, or of standard input for "-"; at most 64 MiB.
std::vector<double> readElevations(const std::string& name);

}  // namespace zel::host
