// Tiles of bare posts (.hgt): their place is told by their name and their grid by their length, so they need
// no opening to be placed.
#pragma once

#include <optional>
#include <string>

#include "zeltool/terrain/raster_access.h"
#include "zeltool/terrain/raster_listing.h"

namespace zel {

bool isBareTile(const RasterCandidate& candidate);

// Nothing, and a reason, for a name that states no place or a length that is none of a tile.
std::optional<RasterPlacement> placeBareTile(const RasterCandidate& candidate, std::string& problem);

}  // namespace zel
