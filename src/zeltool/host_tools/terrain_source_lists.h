// Display names of the terrain sources: 1 "30 second", 2 "3 second", 3 "1 second", 7 "1/3 second", 9 "Local".
#pragma once

#include <string>

#include "platform/host_tools.h"

namespace zel {

// Empty for any other code.
std::string terrainSourceName(int code);

class TerrainSourceLists : public SourceLists {
 public:
  // The names are the same for every client.
  void SetClientApp(const DispatchPtr&) override {}
  std::string SourceName(std::int16_t code) const override { return terrainSourceName(code); }
};

}  // namespace zel
