// The overviews of all rasters: made when they are first asked for, kept in memory within bounds and on disk.
// Serves several threads at once; a part is made by one of them, and the others wait for it.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "zeltool/terrain/block_cache.h"
#include "zeltool/terrain/overview_files.h"
#include "zeltool/terrain/overview_part.h"

namespace zel {

struct OverviewProgress {
  std::int64_t wanted = 0, made = 0;  // parts of rasters
};

class Overviews {
 public:
  static constexpr std::size_t kMemory = std::size_t{256} << 20;  // bytes

  explicit Overviews(std::string folder, std::size_t memory = kMemory,
                     std::uintmax_t disk = OverviewFiles::kMostBytes)
      : memory_(memory), files_(std::move(folder), disk) {}

  // The part of a level (1 to kPartLevel); null when cancelled.
  HeightBlockPtr part(const RasterFile& file, PartPlace place, int level, const std::atomic<bool>* cancelled);
  // In memory already.
  bool has(const RasterFile& file, PartPlace place, int level) const;

  OverviewProgress progress() const;
  // Parts that were read from their raster, not from memory or disk.
  std::int64_t partsRead() const { return partsRead_.load(); }

 private:
  struct Work {
    std::uint64_t file = 0;
    PartPlace place;

    friend bool operator==(const Work&, const Work&) = default;
  };
  class Turn;

  HeightBlockPtr make(const RasterFile& file, PartPlace place, int level, const std::atomic<bool>* cancelled);

  mutable BlockCache memory_;
  const OverviewFiles files_;
  mutable std::mutex mutex_;  // guards what follows
  std::condition_variable changed_;
  std::vector<Work> making_;
  OverviewProgress progress_;
  std::atomic<std::int64_t> partsRead_{0};
};

}  // namespace zel
