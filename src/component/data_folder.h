// Where the component's read-only data and its helper programs lie.
#pragma once

#include <filesystem>

namespace zel {

// $ZEL_DATA_DIR when it is set; otherwise the folder "share/terrain-profiler" that belongs to the library's
// own place.
std::filesystem::path dataFolder();

// The bundled sample terrain.
std::filesystem::path bundledTerrainFolder();

// Where the programs stand that were installed with the library, vexptp.exe among them.
std::filesystem::path helperProgramFolder();

}  // namespace zel
