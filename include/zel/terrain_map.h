// The terrain of a source as an area, for hosts that draw maps: heights on a grid at any resolution, and what
// its rasters cover.
//
// A TerrainMap is made on the component's thread and used from any, from several at once. What it gives
// belongs to the source as it was defined then, and to its files as they were when they were first looked at.
#ifndef ZEL_TERRAIN_MAP_H_
#define ZEL_TERRAIN_MAP_H_

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"
#include "zel/terrain.h"

namespace zel {

// In a grid, beside kTerrainVoid: no raster covers the place.
inline constexpr float kTerrainOutside = -32768.0F;

// Degrees. `east` is greater than `west`, and beyond 180 where the extent crosses that meridian.
struct TerrainExtent {
  double south = 0, west = 0, north = 0, east = 0;

  friend bool operator==(const TerrainExtent&, const TerrainExtent&) = default;
};

struct TerrainCoverage {
  std::string path;  // of the raster, as messages show it
  TerrainExtent extent;
  double cellDegrees = 0;  // of latitude, about
};

// How far the overviews that grids of coarse resolution need are made.
struct TerrainMapProgress {
  std::int64_t wanted = 0;  // raster parts that were asked for so far
  std::int64_t made = 0;    // of those, the ones that are there
};

class ZEL_API TerrainMap {
 public:
  // Throws SettingsError (zel/settings.h) for an unknown code or when the settings cannot be read,
  // AutomationError on a foreign thread. Opens no file yet.
  static std::shared_ptr<const TerrainMap> open(int source);
  ~TerrainMap();
  TerrainMap(const TerrainMap&) = delete;
  TerrainMap& operator=(const TerrainMap&) = delete;

  const TerrainSource& source() const;

  // The first call of this or of any function below looks at the source's folders and files: 0.1 to 20 ms for
  // a raster other than .hgt. This one does nothing else, and is false when `cancelled` became true on the
  // way.
  bool prepare(const std::atomic<bool>* cancelled = nullptr) const;

  // The rasters in their order of preference.
  const std::vector<TerrainCoverage>& rasters() const;
  // Rasters and folders that cannot be used: "path: why". More may come as files are read.
  std::vector<std::string> problems() const;
  // Whether files were added or removed since, or one that heights were read from, or that could not be used,
  // was changed; a new TerrainMap then has the new ones. Cost: a look at each of these files and each folder.
  // A file that changes while it is read from is void until then, and one of the problems.
  bool outdated() const;

  // Heights (metres, kTerrainVoid, kTerrainOutside), row by row: one at each of the latitudes for each of the
  // longitudes (degrees, any turn, both monotonic). Cells finer than the grid are averaged over, so that a
  // coarse grid shows the ground and not a chance selection of posts; a mean of cells of which some are void
  // is that of the others. Fine grids are interpolated between posts (bilinear). Coarse grids are served by
  // overviews, kept in memory and in the user's cache folder; the first one over a raster reads it whole
  // (some 100 ms for 3601 x 3601 posts). Empty when `cancelled` became true on the way. Throws std::bad_alloc
  // only.
  std::vector<float> grid(std::span<const double> latitudes, std::span<const double> longitudes,
                          const std::atomic<bool>* cancelled = nullptr) const;

  // Heights at positions on WGS 84, as the sampling of a path reads them: `method` as CalcMethod.
  // kTerrainOutside where nothing covers the place.
  std::vector<float> heightsAt(std::span<const Position> positions, std::int32_t method) const;

  TerrainMapProgress progress() const;

 private:
  struct Self;
  explicit TerrainMap(std::unique_ptr<Self> self);
  std::unique_ptr<Self> self_;
};

}  // namespace zel

#endif  // ZEL_TERRAIN_MAP_H_
