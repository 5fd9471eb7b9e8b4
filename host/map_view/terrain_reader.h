// What the map wants to know of the terrain besides its tiles, read by a thread in the background: which
// rasters there are, and the height under the pointer.
//
// Used from the user-interface thread, on which the callbacks come, too.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "zel/terrain_map.h"

namespace zel::host {

class TerrainReader {
 public:
  TerrainReader();
  ~TerrainReader();  // waits for the file that is being looked at
  TerrainReader(const TerrainReader&) = delete;
  TerrainReader& operator=(const TerrainReader&) = delete;

  // Its rasters are looked for at once; what was asked about another terrain is forgotten.
  void setTerrain(std::shared_ptr<const TerrainMap> terrain);
  // Of the latest position only. WGS 84.
  void askHeight(Position position);
  bool busy() const;
  // Nothing is read any more. Does not wait, since others' threads may be kept waiting by this one's.
  void end();

  std::function<void(const std::vector<TerrainCoverage>&)> onCoverage;
  std::function<void(Position, float)> onHeight;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
