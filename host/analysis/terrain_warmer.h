// Reads the terrain along paths in a thread of its own, so that it is in memory when the component asks.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "zel/coordinates.h"
#include "zel/terrain_map.h"

namespace zel::host {

struct WarmPath {
  std::uint64_t ticket = 0;  // the caller's, given back
  Position from, to;         // WGS 84
  double pointsPerKm = 0;
  std::int32_t mostPoints = 0;
  std::int32_t method = 0;  // as CalcMethod
};

class TerrainWarmer {
 public:
  // `done` is called in the thread.
  explicit TerrainWarmer(std::function<void(std::uint64_t ticket)> done);
  ~TerrainWarmer();  // waits for the path that is being read; those that wait are forgotten

  void read(const std::shared_ptr<const TerrainMap>& terrain, const WarmPath& path);

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
