// What a file is to this program, told by its beginning and its extension.
#pragma once

#include <string>

namespace zel::host {

enum class DroppedKind { kPlan, kStations, kTerrain, kUnreadable };

// Folders are folders of rasters. A JSON file that says so is a plan; lists are told by their extensions or
// by being text; all else is left to the terrain, which says what is wrong with it.
DroppedKind droppedKind(const std::string& path);

}  // namespace zel::host
