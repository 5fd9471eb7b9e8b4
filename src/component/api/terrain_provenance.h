// What a sampling was computed from, as the public results tell it.
#pragma once

#include <string>

#include "platform/terrain.h"
#include "zel/terrain.h"

namespace zel {

// `datum` is that of the positions, "NAD-27" or "NAD-83", or empty.
TerrainProvenance terrainProvenance(const SamplingReport& report, const std::string& datum);

}  // namespace zel
