// A tile of hills on disk for as long as the object lives: 36 to 37 N, 85 to 84 W.
#pragma once

#include <cmath>
#include <string>

#include "support/temporary_folder.h"

namespace zel::test {

class TerrainTile {
 public:
  // 1201 posts a side are 3 arc-seconds, 3601 one.
  explicit TerrainTile(int posts) : path_((folder_ / "N36W085.hgt").string()) {
    std::string bytes;
    for (int row = 0; row < posts; ++row)
      for (int column = 0; column < posts; ++column) {
        const auto height =
            static_cast<unsigned>(std::lround(600 + 300 * std::sin(row * 0.02) * std::cos(column * 0.03)));
        bytes.push_back(static_cast<char>(height >> 8));
        bytes.push_back(static_cast<char>(height & 0xFF));
      }
    writeBytes(path_, bytes);
  }
  const std::string& path() const { return path_; }
  std::string beside(const std::string& name) const { return (folder_ / name).string(); }

 private:
  TemporaryFolder folder_;
  std::string path_;
};

}  // namespace zel::test
