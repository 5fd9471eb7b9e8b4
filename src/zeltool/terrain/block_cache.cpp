#include "zeltool/terrain/block_cache.h"

namespace zel {

HeightBlockPtr BlockCache::find(const BlockKey& key) {
  const std::lock_guard lock(mutex_);
  const auto place = places_.find(key);
  if (place == places_.end()) return nullptr;
  recent_.splice(recent_.begin(), recent_, place->second);
  return place->second->block;
}

void BlockCache::put(const BlockKey& key, HeightBlockPtr block) {
  const std::size_t size = block->bytes();
  if (size > capacity_) return;
  const std::lock_guard lock(mutex_);
  if (places_.count(key) > 0) return;
  while (bytes_ + size > capacity_) {
    bytes_ -= recent_.back().block->bytes();
    places_.erase(recent_.back().key);
    recent_.pop_back();
  }
  recent_.push_front({key, std::move(block)});
  places_[key] = recent_.begin();
  bytes_ += size;
}

std::size_t BlockCache::bytes() const {
  const std::lock_guard lock(mutex_);
  return bytes_;
}

}  // namespace zel
