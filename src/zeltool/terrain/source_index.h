// The rasters of one terrain source: found, placed and ready to be asked by position.
//
// Cost of making one: tiles named by their corner (.hgt) are not opened, any other raster is opened once (0.1
// to 20 ms). What is unchanged since the previous index is taken over from it, with its blocks in the cache.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "zeltool/terrain/extent_index.h"
#include "zeltool/terrain/raster_file.h"
#include "zeltool/terrain/raster_listing.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {

// The caller wants no index any more.
struct IndexCancelled {};

class SourceIndex {
 public:
  // Ends without being complete when `cancelled` is true after a file that `previous` does not have. As
  // `previous` of the next attempt it spares that one its work, so that cancelled attempts come to an end,
  // too.
  SourceIndex(const SourceDefinition& definition, std::shared_ptr<OpenFiles> openFiles,
              const SourceIndex* previous = nullptr, const std::atomic<bool>* cancelled = nullptr);

  bool complete() const { return complete_; }

  const SourceDefinition& definition() const { return definition_; }
  // In order of preference.
  const std::vector<RasterFilePtr>& files() const { return files_; }
  // Rasters that could not be used, and paths without any: "path: why".
  const std::vector<std::string>& problems() const { return problems_; }
  // The files that may reach a square of ExtentIndex, in order of preference.
  std::vector<const RasterFile*> candidates(int square) const;

  // Whether a folder, a named file or a file that was read from or refused looks another than when the index
  // was made.
  // Cost: a look at each of them.
  bool outdated() const;

 private:
  struct Known {
    std::uintmax_t bytes = 0;
    std::int64_t modified = 0;
    RasterFilePtr file;
    std::string problem;
    WatchedPath seen;  // on disk, before it was looked into
  };

  // Whether the file had to be looked into.
  bool add(const RasterCandidate& candidate, const SourceIndex* previous);
  Known place(const RasterCandidate& candidate);

  SourceDefinition definition_;
  std::shared_ptr<OpenFiles> openFiles_;
  std::shared_ptr<TransformStore> transforms_;
  std::vector<RasterFilePtr> files_;
  std::vector<std::string> problems_;
  std::vector<WatchedPath> watched_;
  std::map<std::string, Known> known_;
  ExtentIndex extents_;
  bool complete_ = true;
};

}  // namespace zel
