// One raster of a source: where it lies, and its heights in blocks, read on demand. Serves several threads at
// once.
//
// Its file is opened when the first block is asked for, and closed again when too many others are open. It is
// closed before the process forks, too: parent and child would share the place in the file, and each would
// read what the other one looked for. What another thread reads just then stays open; the child leaves that
// alone and opens the file anew.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>

#include "zeltool/terrain/block_cache.h"
#include "zeltool/terrain/raster_access.h"
#include "zeltool/terrain/raster_listing.h"

namespace zel {

class RasterFile;

// The files that are open, the latest used first; keeps their number bounded. Outlives its files.
class OpenFiles {
 public:
  explicit OpenFiles(std::size_t most);
  ~OpenFiles();
  OpenFiles(const OpenFiles&) = delete;
  OpenFiles& operator=(const OpenFiles&) = delete;
  // Called with the file's own lock held. Files that are in use elsewhere are not closed.
  void touched(RasterFile& file);
  void forget(RasterFile& file);
  void closeIdle();
  std::size_t count() const;

 private:
  const std::size_t most_;
  mutable std::mutex mutex_;
  std::list<RasterFile*> files_;
};

class RasterFile {
 public:
  // Cells of a block each way. A block also holds one post before and two after, so that an interpolation in
  // a block needs no other.
  static constexpr std::int32_t kBlock = 512;

  // `seen` is the file on disk as it was before it was placed.
  RasterFile(std::string path, WatchedPath seen, RasterPlacement placement,
             std::shared_ptr<OpenFiles> openFiles);
  ~RasterFile();
  RasterFile(const RasterFile&) = delete;
  RasterFile& operator=(const RasterFile&) = delete;

  const std::string& path() const { return seen_.path; }
  const RasterPlacement& placement() const { return placement_; }

  // The block that a post of this raster lies in.
  BlockKey keyOf(std::int32_t column, std::int32_t row) const { return {id_, column / kBlock, row / kBlock}; }
  // Out of the cache or the file; never null. What cannot be read is void, and so is all of a file that was
  // changed since it was placed: half of it might be of before and half of after.
  HeightBlockPtr block(const BlockKey& key, BlockCache& cache) const;
  // Heights past the cache, for work that reads a raster through. What cannot be read is void.
  HeightBlock readPosts(const PostWindow& window) const;

  // Of this object, in the process.
  std::uint64_t id() const { return id_; }
  // The raster's files with their sizes and times of change, one a line: two rasters of the same state hold
  // the same heights. Opens the file unless it is a bare tile.
  std::string state() const;

  // Why some or all of it could not be read; empty while all is well.
  std::string problem() const;
  // The file as a whole turned out to be unusable.
  bool failed() const;
  // Heights were read from it, and the file on disk is another one by now.
  bool outdated() const { return read_.load() && changedOnDisk(); }

 private:
  friend class OpenFiles;

  bool changedOnDisk() const { return watch(seen_.path) != seen_; }
  void openLocked() const;
  void failLocked(const std::string& problem) const;
  bool closeUnlessBusy() const;
  void leaveToParentLocked() const;
  PostWindow windowOf(const BlockKey& key) const;

  HeightBlock readLocked(const PostWindow& window) const;

  const std::uint64_t id_;
  const std::string path_;
  const WatchedPath seen_;
  const RasterPlacement placement_;
  const std::shared_ptr<OpenFiles> openFiles_;
  mutable std::mutex mutex_;
  mutable std::unique_ptr<OpenRaster> raster_;
  mutable pid_t process_ = 0;  // that opened it
  mutable std::string problem_;
  mutable bool failed_ = false;
  mutable std::atomic<bool> read_{false};
};

using RasterFilePtr = std::shared_ptr<const RasterFile>;

}  // namespace zel
