// The units in which heights and distances are shown. Inside, heights are metres and distances kilometres.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace zel {

struct DisplayUnit {
  double factor = 1;  // from the internal unit to the shown one
  std::string name;
  std::string abbreviation;
};

// The unit of heights and the unit of distances that belong together.
struct DisplayUnits {
  DisplayUnit height;
  DisplayUnit distance;
};

// Index 0 metres, 1 kilometres, 2 feet, 3 miles.
using UnitsTable = std::array<DisplayUnit, 4>;
UnitsTable Init_GUC();

// The units for the setting "DispUnits": 1 is feet and miles, anything else metres and kilometres.
DisplayUnits unitsFor(const UnitsTable& table, std::int32_t dispUnits);

}  // namespace zel
