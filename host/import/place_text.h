// Positions in the fields of a list. Each text is either a position or says why it is none.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zel::host {

struct Place {
  double latitude = 0, longitude = 0;  // degrees, as they stand: not yet held to their ranges
  std::optional<double> height;        // metres
  std::string error;                   // why it is no position
};

// A field for each of the two. Decimal degrees, with a decimal point or comma, or what can be typed as a
// position.
Place placeOfTwo(std::string_view latitude, std::string_view longitude);

// Both in one field: as typed, or "POINT (-84.25 36.31)" with the longitude first.
Place placeOfOne(std::string_view text);

// "LINESTRING (-84.2 36.3, -84.3 36.25)", longitudes first; nothing when the field has no line.
struct LineText {
  Place from, to;
  std::string error;  // why it is no link
};
std::optional<LineText> lineOfText(std::string_view text);

}  // namespace zel::host
