// What a result was computed from, for a person and for a program.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "zel/terrain.h"

namespace zel::host {

// "1 second: bundled sample terrain, because no source is set (.../jacksboro_3s.tif)"
std::string terrainSentence(const TerrainProvenance& terrain);
nlohmann::ordered_json terrainJson(const TerrainProvenance& terrain);

}  // namespace zel::host
