// Units in which rasters state heights.
#pragma once

#include <optional>
#include <string_view>

namespace zel {

// Metres in one of the unit that a raster names, in any case: "m", "metre", "ft", "foot", "feet", "US survey
// foot", "ftUS", "cm", "dm", "mm", "km", "yard" and their usual other spellings. A raster that names none
// holds metres: 1 for an empty text. Nothing for a name that is not known.
std::optional<double> metresPerUnit(std::string_view unit);

}  // namespace zel
