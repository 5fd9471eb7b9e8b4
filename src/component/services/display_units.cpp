#include "component/services/display_units.h"

namespace zel {

UnitsTable Init_GUC() {
  UnitsTable table;
  table[0] = {1.0, "meters", "m"};
  table[1] = {1.0, "kilometers", "km"};
  // Computed in this order rather than typed, so that feet and miles agree to the last bit. Internal lengths
  // are metres and kilometres; a foot is 0.3048 m, a mile 5280 ft.
  table[2] = {1 / 0.3048, "feet", "ft"};
  table[3] = {(1 / 0.3048) * 1000 * (1.0 / 5280), "miles", "mi"};
  return table;
}

DisplayUnits unitsFor(const UnitsTable& table, std::int32_t dispUnits) {
  if (dispUnits == 1) return {table[2], table[3]};
  return {table[0], table[1]};
}

}  // namespace zel
