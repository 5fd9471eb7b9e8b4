// The raster files that a path stands for: itself, or those of a folder and its subfolders. Archives (.zip)
// count as folders, and tiles may be packed (.hgt.gz). Files that accompany rasters (projections, world
// files, statistics, texts, masks of a tile beside its heights ...) are passed over in folders; a path that
// is named outright is always taken. Cost: a look at each directory and archive, no raster is opened.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zel {

struct RasterCandidate {
  std::string path;           // as the raster library opens it ("/vsizip/..." within an archive)
  std::string shownPath;      // as a person knows it: the file on disk
  std::string name;           // of the raster itself, without folders
  std::uintmax_t bytes = 0;   // of the raster itself, unpacked
  std::int64_t modified = 0;  // of the file on disk, ticks of the file clock
};

// State of a file or folder, to see whether it changed.
struct WatchedPath {
  std::string path;
  std::int64_t modified = 0;  // ticks of the file clock; 0 when there is nothing
  std::uintmax_t bytes = 0;   // of a file
  bool operator==(const WatchedPath&) const = default;
};

struct RasterListing {
  std::vector<RasterCandidate> rasters;  // sorted by path
  std::vector<WatchedPath> watched;
  std::vector<std::string> problems;  // each with its path
};

RasterListing listRasters(const std::string& path);

WatchedPath watch(const std::string& path);

}  // namespace zel
