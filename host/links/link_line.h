// A link as a line on a map.
#pragma once

#include <vector>

#include "zel/coordinates.h"

namespace zel::host {

// The geodesic between two positions on WGS 84, with a point every kLineStepKm or so, in pieces that end at
// the antimeridian: none of them has two neighbours more than 180 degrees of longitude apart.
inline constexpr double kLineStepKm = 20;
std::vector<std::vector<Position>> linkLine(Position from, Position to);

}  // namespace zel::host
