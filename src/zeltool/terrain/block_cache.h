// Decoded blocks of heights, bounded in bytes, the least recently used dropped first. Serves several threads;
// a block that somebody still reads lives on after it was dropped. Cost: 50 ns a look-up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <unordered_map>

#include "zeltool/terrain/height_block.h"

namespace zel {

struct BlockKey {
  std::uint64_t file = 0;
  std::int32_t column = 0, row = 0;  // counted in blocks

  friend bool operator==(const BlockKey&, const BlockKey&) = default;
};

class BlockCache {
 public:
  explicit BlockCache(std::size_t capacity) : capacity_(capacity) {}  // bytes

  HeightBlockPtr find(const BlockKey& key);  // null when it is not there
  // A block larger than the whole cache is not kept.
  void put(const BlockKey& key, HeightBlockPtr block);
  std::size_t bytes() const;

 private:
  struct Hash {
    std::size_t operator()(const BlockKey& key) const noexcept {
      std::uint64_t h = key.file * 0x9E3779B97F4A7C15U;
      h ^= (static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.column)) << 32 |
            static_cast<std::uint32_t>(key.row)) *
           0xC2B2AE3D27D4EB4FU;
      return static_cast<std::size_t>(h ^ (h >> 29));
    }
  };
  struct Entry {
    BlockKey key;
    HeightBlockPtr block;
  };

  const std::size_t capacity_;
  mutable std::mutex mutex_;
  std::size_t bytes_ = 0;
  std::list<Entry> recent_;  // the latest first
  std::unordered_map<BlockKey, std::list<Entry>::iterator, Hash> places_;
};

}  // namespace zel
