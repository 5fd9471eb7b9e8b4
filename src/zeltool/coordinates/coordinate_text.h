// One coordinate as people write it: an angle, with the letter of its hemisphere or a sign.
//
//   36.5365   -84.2   36.5 N   N36.5   36-32-11.4 N   36:32.19   36 32 11.4   36°32'11.4"N   36d32m11.4s N
//
// Degrees, minutes and seconds stand in this order, minutes and seconds below 60, a fraction in the last of
// them only. Between them: "-", ":", a blank, or the marks ° d, ' m, " s (also their typographic forms). Case
// makes no difference, but for one thing: a last "s" behind the marks d and m is the seconds', and a last "S"
// there is South. After D and M, where a last "S" may be either, it is refused.
#pragma once

#include <string_view>

#include "zeltool/coordinates/parsed.h"

namespace zel {

enum class Axis { kUnknown, kLatitude, kLongitude };

struct CoordinateText {
  double degrees = 0;          // north and east positive; not negative without a sign or letter
  Axis axis = Axis::kUnknown;  // as the letter tells
};

// Columns count characters of the text from 1.
Parsed<CoordinateText> parseCoordinate(std::string_view text);

// Characters that the text has before this byte, plus 1.
std::size_t columnOf(std::string_view text, std::size_t byte);

// Where the letter N, S, E or W of a hemisphere stands at this byte.
bool isHemisphereLetter(char c);

}  // namespace zel
