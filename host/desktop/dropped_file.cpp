#include "desktop/dropped_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "import/station_list.h"

namespace zel::host {
namespace {

constexpr std::size_t kBeginning = 4096;  // bytes

std::string lowerExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

}  // namespace

DroppedKind droppedKind(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return DroppedKind::kTerrain;
  std::string start(kBeginning, '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file || !std::filesystem::is_regular_file(path, error)) return DroppedKind::kUnreadable;
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(file.gcount()));

  const std::string extension = lowerExtension(path);
  const bool json = start.find_first_not_of(" \t\r\n") != std::string::npos &&
                    start[start.find_first_not_of(" \t\r\n")] == '{';
  if (json && start.find("terrain-profiler plan") != std::string::npos) return DroppedKind::kPlan;
  const std::vector<std::string> lists = stationListEndings();
  if (std::find(lists.begin(), lists.end(), extension) != lists.end()) return DroppedKind::kStations;
  return DroppedKind::kTerrain;
}

}  // namespace zel::host
