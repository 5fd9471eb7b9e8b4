#include "component/terrain_sources.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"

namespace zel {

TerrainSources::TerrainSources(std::function<std::string(int)> storedPaths,
                               std::function<std::string(int)> name, std::string bundledFolder)
    : storedPaths_(std::move(storedPaths)),
      name_(std::move(name)),
      bundledFolder_(std::move(bundledFolder)) {}

SourceDefinition TerrainSources::read(int code) const {
  SourceDefinition source;
  source.code = code;
  if (std::find(kTerrainSourceCodes.begin(), kTerrainSourceCodes.end(), code) == kTerrainSourceCodes.end())
    return source;
  source.name = name_(code);
  source.paths = splitList(storedPaths_(code), ';');
  if (source.paths.empty()) {
    source.paths = {bundledFolder_};
    source.bundledSample = true;
  }
  return source;
}

void TerrainSources::refresh() {
  {
    const std::lock_guard lock(mutex_);
    home_ = std::this_thread::get_id();
  }
  for (const int code : kTerrainSourceCodes) definition(code);
}

SourceDefinition TerrainSources::definition(int code) const {
  bool readAnew = false;
  SourceDefinition source;
  {
    const std::lock_guard lock(mutex_);
    readAnew = home_ == std::thread::id() || home_ == std::this_thread::get_id();
    const auto found = known_.find(code);
    if (found != known_.end()) source = found->second;
  }
  // Not under the lock: the store and the host's object are called here.
  if (readAnew) source = read(code);
  const std::lock_guard lock(mutex_);
  if (readAnew) known_[code] = source;
  if (!forThisRun_.empty() && !source.paths.empty()) {
    source.name = "terrain given for this run";
    source.paths = forThisRun_;
    source.bundledSample = false;
  }
  return source;
}

void TerrainSources::useForThisRun(std::vector<std::string> paths) {
  const std::lock_guard lock(mutex_);
  forThisRun_ = std::move(paths);
}

}  // namespace zel
