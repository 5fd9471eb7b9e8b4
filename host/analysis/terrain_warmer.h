// Reads the terrain along paths in a thread of its own, so that it is in memory when the component asks.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

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
  // `done` is called in the thread: with the first position (WGS 84) along the path that no raster covers.
  using Done = std::function<void(std::uint64_t ticket, std::optional<Position> outside)>;
  explicit TerrainWarmer(Done done);
  // Waits for the raster that is being looked at or read; paths that wait are forgotten.
  ~TerrainWarmer();

  void read(const std::shared_ptr<const TerrainMap>& terrain, const WarmPath& path);
  // None of what was asked for is done any more. A folder that is being looked through is left at the next
  // file.
  void forget();
  // The same for good, without waiting: others may wait for that folder, too.
  void end();

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
