// What a raster file holds, for a person to read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zel {

struct RasterInfo {
  std::string path;
  std::string problem;                              // why it cannot be used as terrain; empty when it can
  std::string remark;                               // what is doubtful about a usable raster; else empty
  std::string driver;                               // "SRTMHGT", "GTiff", ...
  double south = 0, west = 0, north = 0, east = 0;  // degrees, WGS 84, of the covered area
  std::int32_t columns = 0, rows = 0;
  double cellWidth = 0, cellHeight = 0;  // in cellUnit
  std::string cellUnit;                  // "degree", "metre", ...
  bool postsOnCorners = false;           // pixel is point
  std::string dataType;                  // "Int16", ...
  std::string heightUnit;                // of the file; heights below are metres
  double lowest = 0, highest = 0;        // metres; both 0 when every cell is void
  std::int64_t voids = 0;                // cells without a usable height
  std::string horizontalDatum;           // "unknown" when the file does not name it
  std::string verticalDatum;             // the same
};

// Reads the whole raster, block by block: about 0.2 s for a tile of 3601 x 3601. Of a raster of more than two
// thousand million cells, evenly chosen blocks are read, and range and voids are theirs; the same when
// reading ended early because 64 parts could not be read. The remark says so. When
// reading ended early without any height, the range is not a number. Never throws for a bad file.
RasterInfo describeRaster(const std::string& path);

// The raster files that a path stands for: itself, or those of the folder (and its subfolders), sorted.
std::vector<std::string> rasterFiles(const std::string& path);

}  // namespace zel
