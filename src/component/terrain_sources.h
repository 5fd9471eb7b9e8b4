// The terrain sources as the bound application's settings define them.
//
// A source without paths of its own is the bundled sample terrain. Settings belong to the component's thread:
// asked on that thread, a definition is read anew (one look-up in the store); asked on another, it is the
// last one that was read.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "zeltool/terrain/terrain_library.h"

namespace zel {

inline constexpr std::array<int, 5> kTerrainSourceCodes{1, 2, 3, 7, 9};

class TerrainSources {
 public:
  // `storedPaths` gives the setting of a code (";" between paths) and may throw; `name` its name.
  TerrainSources(std::function<std::string(int code)> storedPaths, std::function<std::string(int code)> name,
                 std::string bundledFolder);

  // Makes the calling thread the component's and reads every source.
  void refresh();
  // An unknown code has neither name nor paths.
  SourceDefinition definition(int code) const;

  // From here on every source is these paths; none go back to the settings.
  void useForThisRun(std::vector<std::string> paths);

 private:
  SourceDefinition read(int code) const;

  std::function<std::string(int)> storedPaths_;
  std::function<std::string(int)> name_;
  std::string bundledFolder_;
  mutable std::mutex mutex_;  // guards what follows
  std::thread::id home_;
  std::vector<std::string> forThisRun_;
  mutable std::map<int, SourceDefinition> known_;
};

}  // namespace zel
