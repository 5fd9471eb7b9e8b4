// Overviews kept on disk from one run to the next: a file for each part of a raster, in one folder.
//
// A file counts only for the raster as it is now: its name and its text hold the raster's path, size and time
// of change. It is written beside and renamed, so that several programs may share the folder. What is damaged
// or foreign counts as absent. A folder that cannot be used keeps nothing, without a word.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zeltool/terrain/height_block.h"

namespace zel {

// The levels of a part, from kKeptLevel on.
using OverviewLevels = std::vector<HeightBlock>;

// The bytes of a file, and back: nothing for bytes that are not exactly such a file for that text and those
// windows.
std::string overviewBytes(const std::string& key, const OverviewLevels& levels);
std::optional<OverviewLevels> parseOverview(std::string_view bytes, const std::string& key,
                                            const std::vector<PostWindow>& windows);

class OverviewFiles {
 public:
  static constexpr std::uintmax_t kMostBytes = std::uintmax_t{512} << 20;

  // "" keeps nothing. The oldest files go when there is more than `most` (bytes), and by a sixteenth more,
  // for the folder is looked through only as often as that much was written.
  explicit OverviewFiles(std::string folder, std::uintmax_t most = kMostBytes);

  std::optional<OverviewLevels> read(const std::string& key, const std::vector<PostWindow>& windows) const;
  void write(const std::string& key, const OverviewLevels& levels) const;

 private:
  std::string pathOf(const std::string& key) const;
  void makeRoom(std::uintmax_t written) const;
  std::uintmax_t dropOldest() const;

  const std::string folder_;
  const std::uintmax_t most_;
  mutable std::mutex mutex_;
  mutable std::uintmax_t room_ = 0;  // bytes that may still be written before the next look at the folder
};

// $XDG_CACHE_HOME/zelprofiler/overviews, or below ~/.cache; "" without a home.
std::string userOverviewFolder();

}  // namespace zel
