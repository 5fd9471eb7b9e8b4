// What an export must have, and names of its files: rules that the procedures, the class and the installed
// function share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zel {

// Characters. Shorter names are passed over; a cancelled dialog gives none.
inline constexpr std::size_t kShortestExportName = 5;
// From station to station.
inline constexpr std::int32_t kFewestSignalSamples = 10;
inline constexpr std::int32_t kFewestGraphSamples = 3;
// After the name of a signal profile: the file of its heights.
inline constexpr std::string_view kTerrainFileEnd = ".terrain.txt";

}  // namespace zel
