// What a sampling was computed from, as the public results tell it.
#pragma once

#include "component/component.h"
#include "platform/terrain.h"
#include "zel/terrain.h"

namespace zel {

TerrainProvenance terrainProvenance(const SamplingReport& report, const ModuleState& state);

}  // namespace zel
