// What a run over a list depends on besides the list: settings and terrain; and how far it has come, in
// words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zel::host {

// The settings that paths are computed with, by "SECTION/KEY" and value; where nothing is stored, what stands
// in. Throws SettingsError.
std::vector<std::pair<std::string, std::string>> settingsOfPaths();

// How a raster, or what is below a folder, stands: number of files, sizes and times, as one short text. Looks
// at each file once.
std::string terrainState(const std::string& path);

struct LinksProgress {
  std::size_t links = 0;                  // done
  std::size_t before = 0;                 // of them, by a run before
  double seconds = 0;                     // of this run
  std::uint64_t bytes = 0, allBytes = 0;  // of the list; all are 0 where that is not known
};
// "links: 1200 done, 43 %, 6200 links/s, 0:12 left"; without what is not known yet.
std::string linksProgressText(const LinksProgress& progress);

}  // namespace zel::host
