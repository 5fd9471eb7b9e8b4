// Positions and stations as people write them: LAT,LON and LAT,LON,HEIGHT, each coordinate in any form of
// coordinate_text.h.
//
// Between the parts stands a comma or a semicolon; a blank serves where it leaves no doubt (two words, or a
// letter of a hemisphere at each coordinate). Letters may bring the longitude first: "84.2 W, 36.5 N". The
// height is in metres, or with "ft" behind it in feet (0.3048 m).
#pragma once

#include <optional>
#include <string_view>

#include "foundation/geo_point.h"
#include "zeltool/coordinates/parsed.h"

namespace zel {

struct StationText {
  GeoPoint position;             // degrees
  std::optional<double> height;  // metres
};

Parsed<double> parseLatitude(std::string_view text);  // degrees, -90 to 90
// Degrees, -180 to 180; up to 360 either way is understood and brought into that range.
Parsed<double> parseLongitude(std::string_view text);
Parsed<GeoPoint> parsePosition(std::string_view text);
Parsed<StationText> parseStation(std::string_view text);

}  // namespace zel
