#include "zeltool/terrain/overviews.h"

#include <algorithm>
#include <chrono>

namespace zel {
namespace {

constexpr std::chrono::milliseconds kLook{10};  // between two looks at whether the caller has given up

BlockKey keyOf(const RasterFile& file, PartPlace place, int level) {
  // Parts are at most 2^11 each way.
  return {file.id(), place.column, (level << 16) | place.row};
}

// What a part's overview depends on, as a text.
std::string diskKey(const std::string& state, PartPlace place) {
  return state + std::to_string(place.column) + " " + std::to_string(place.row);
}

}  // namespace

// The right to make a part, for as long as it lives.
class Overviews::Turn {
 public:
  Turn(Overviews& owner, Work work) : owner_(owner), work_(work) {}
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn() {
    {
      const std::lock_guard lock(owner_.mutex_);
      auto& making = owner_.making_;
      making.erase(std::find(making.begin(), making.end(), work_));
      // What was given up is wanted no more.
      if (made)
        ++owner_.progress_.made;
      else
        --owner_.progress_.wanted;
    }
    owner_.changed_.notify_all();
  }

  bool made = false;

 private:
  Overviews& owner_;
  const Work work_;
};

bool Overviews::has(const RasterFile& file, PartPlace place, int level) const {
  return memory_.find(keyOf(file, place, level)) != nullptr;
}

OverviewProgress Overviews::progress() const {
  const std::lock_guard lock(mutex_);
  return progress_;
}

HeightBlockPtr Overviews::part(const RasterFile& file, PartPlace place, int level,
                               const std::atomic<bool>* cancelled) {
  const BlockKey key = keyOf(file, place, level);
  if (auto known = memory_.find(key)) return known;
  const Work work{file.id(), place};
  {
    std::unique_lock lock(mutex_);
    while (std::find(making_.begin(), making_.end(), work) != making_.end()) {
      changed_.wait_for(lock, kLook);
      if (cancelled && cancelled->load(std::memory_order_relaxed)) return nullptr;
    }
    // Another thread may have made it while this one waited.
    if (auto known = memory_.find(key)) return known;
    making_.push_back(work);
    ++progress_.wanted;
  }
  Turn turn(*this, work);
  auto block = make(file, place, level, cancelled);
  turn.made = block != nullptr;
  return block;
}

HeightBlockPtr Overviews::make(const RasterFile& file, PartPlace place, int level,
                               const std::atomic<bool>* cancelled) {
  const std::string state = file.state(), key = diskKey(state, place);
  const auto keep = [&](std::vector<HeightBlock>& blocks, int finest) {
    HeightBlockPtr asked;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      const int at = finest + static_cast<int>(i);
      auto block = std::make_shared<const HeightBlock>(std::move(blocks[i]));
      memory_.put(keyOf(file, place, at), block);
      if (at == level) asked = std::move(block);
    }
    return asked;
  };
  if (level >= kKeptLevel) {
    std::vector<PostWindow> windows;
    for (int at = kKeptLevel; at <= kPartLevel; ++at)
      windows.push_back(partWindow(file.placement().grid, place, at));
    if (auto stored = files_.read(key, windows)) return keep(*stored, kKeptLevel);
  }
  const int finest = std::min(level, kKeptLevel);
  ++partsRead_;
  auto blocks = makeOverviewPart(file, place, finest, cancelled);
  if (!blocks) return nullptr;
  // What could not be read may be readable the next time, and what changed meanwhile is neither.
  if (file.problem().empty() && file.state() == state)
    files_.write(key, OverviewLevels(blocks->begin() + (kKeptLevel - finest), blocks->end()));
  return keep(*blocks, finest);
}

}  // namespace zel
