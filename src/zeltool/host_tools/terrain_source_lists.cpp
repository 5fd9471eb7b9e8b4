#include "zeltool/host_tools/terrain_source_lists.h"

namespace zel {

std::string terrainSourceName(int code) {
  switch (code) {
    case 1:
      return "30 second";
    case 2:
      return "3 second";
    case 3:
      return "1 second";
    case 7:
      return "1/3 second";
    case 9:
      return "Local";
    default:
      return {};
  }
}

}  // namespace zel
