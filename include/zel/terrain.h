// Terrain heights: sources, rasters, and evenly spaced samples along a path.
//
// The functions belong to the thread of the ProfileControl objects. Without a bound host they use the
// component's own application object, "zelProfiler01".
#ifndef ZEL_TERRAIN_H_
#define ZEL_TERRAIN_H_

#include <cstdint>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"

namespace zel {

// Height given for a void, a place without a terrain height: metres.
inline constexpr float kTerrainVoid = -9999.0F;

struct TerrainSource {
  int code = 0;                    // 1, 2, 3, 7 or 9
  std::string name;                // "1 second"
  std::vector<std::string> paths;  // rasters and folders of rasters
  bool bundledSample = false;      // nothing is set: the bundled sample terrain stands in
};

// What heights were computed from.
struct TerrainProvenance {
  int sourceCode = 0;
  std::string sourceName;
  bool bundledSample = false;
  std::vector<std::string> files;     // rasters that gave heights
  std::vector<std::string> warnings;  // rasters that could not be used, and why
  std::string method;          // "FCC 4-Point" (bilinear) or "Bivariate  Interpolation" (cubic convolution)
  std::int32_t voids = 0;      // samples without a height
  std::string datum;           // "NAD-27" or "NAD-83" once the host has set it, of the positions
  std::string datumOperation;  // the conversion used for NAD-27 positions, with its accuracy; else empty
};

struct SampledTerrain {
  // 0 good; 1 no usable source; 2 a sample lies outside all data; 3 more than 32767 samples or over 2,000 km;
  // 4 fewer than 2 samples or coincident ends. With 1 to 4 there are no samples.
  int status = 0;
  std::string error;                // with a status: what was wrong, where, and what would help
  double distanceKm = 0;            // from the first position to the last
  std::vector<double> distancesKm;  // of each sample from the first
  std::vector<Position> positions;
  std::vector<float> elevations;  // metres; kTerrainVoid for a void
  TerrainProvenance provenance;
};

// Samples `points` heights evenly along the WGS 84 geodesic, both ends included. `method` is 0 or 1 as
// CalcMethod; `source` one of the codes. Never throws for bad terrain; throws SettingsError (zel/settings.h)
// when the settings that name the terrain cannot be read.
ZEL_API SampledTerrain sampleTerrain(Position from, Position to, std::int32_t points, std::int32_t method,
                                     int source);

// The sources with their paths, in the order of their codes.
ZEL_API std::vector<TerrainSource> terrainSources();
// Stores the paths of a source; none go back to the bundled sample. Throws SettingsError for an unknown code
// or when the store cannot be written.
ZEL_API void setTerrainSource(int code, const std::vector<std::string>& paths);
// From here on, and in this process only, every source reads these rasters and folders.
ZEL_API void useTerrainForThisRun(const std::vector<std::string>& paths);

// What a raster holds.
struct TerrainRaster {
  std::string path;
  std::string problem;  // why it cannot be used as terrain; empty when it can
  std::string remark;   // what is doubtful about a usable raster, as parts that cannot be read; else empty
  std::string format;
  double south = 0, west = 0, north = 0, east = 0;  // degrees
  std::int32_t columns = 0, rows = 0;
  double cellWidth = 0, cellHeight = 0;  // in cellUnit
  std::string cellUnit;
  bool postsOnCorners = false;
  std::string dataType;
  std::string heightUnit;          // of the file
  double lowest = 0, highest = 0;  // metres; not a number when nothing readable was found
  std::int64_t voids = 0;
  std::string horizontalDatum;  // "unknown" when the file names none
  std::string verticalDatum;
};

// Reads the rasters that the path stands for: the file, or the files of a folder.
ZEL_API std::vector<TerrainRaster> terrainRasters(const std::string& path);

}  // namespace zel

#endif  // ZEL_TERRAIN_H_
