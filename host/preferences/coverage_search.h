// What the rasters of a terrain source cover, looked up beside the user interface: opening many takes
// seconds.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "zel/terrain_map.h"

namespace zel::host {

struct Coverage {
  std::vector<TerrainCoverage> rasters;
  std::vector<std::string> problems;  // "path: why"
};

class CoverageSearch {
 public:
  explicit CoverageSearch(std::function<void(const Coverage&)> found);
  // Comes back at once; what is still under way ends with the file that it looks at, and tells nobody.
  ~CoverageSearch();
  CoverageSearch(const CoverageSearch&) = delete;
  CoverageSearch& operator=(const CoverageSearch&) = delete;

  // Throws SettingsError. The result comes out of the event loop; that of an earlier search no more.
  void start(int source);

 private:
  struct Asker;
  void forget();

  std::function<void(const Coverage&)> found_;
  std::shared_ptr<Asker> asker_;
};

}  // namespace zel::host
