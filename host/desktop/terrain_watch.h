// What the window wants to know of its terrain, found out by a thread in the background: its rasters and what
// is wrong with them, the height at a station, whether files have come or gone.
//
// Used from the user-interface thread, on which the callbacks come, too. Until the source's folders have been
// looked through, which may take many seconds for thousands of files, whatever else reads terrain waits.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "zel/terrain_map.h"

namespace zel::host {

class TerrainWatch {
 public:
  TerrainWatch();
  ~TerrainWatch();  // waits for the file that is being looked at
  TerrainWatch(const TerrainWatch&) = delete;
  TerrainWatch& operator=(const TerrainWatch&) = delete;

  // Its folders are looked through at once; what was asked about another terrain is forgotten.
  void setTerrain(std::shared_ptr<const TerrainMap> terrain);
  // Whether its folders have been looked through; no terrain is known, too.
  bool known() const;
  // Waits for that, this long at most (milliseconds).
  bool waitUntilKnown(int ms);
  // Of the latest position (WGS 84) only.
  void askHeight(Position position);
  void askOutdated();
  // Nothing is looked for any more. Does not wait, since others' threads may be kept waiting by this one's.
  void end();

  // `problems` as TerrainMap::problems().
  std::function<void(const std::vector<TerrainCoverage>& rasters, const std::vector<std::string>& problems)>
      onKnown;
  std::function<void(Position, float)> onHeight;
  std::function<void()> onOutdated;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
