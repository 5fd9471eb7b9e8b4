// Lists of stations from other programs: the first byte chooses the extension, the rest is the file. Whatever
// it holds, the result is stations that a plan can have, or an error.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "import/station_list.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr const char* kNames[] = {"list.csv", "list.geojson", "list.kml", "list.gpx", "list.kmz", "list"};
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const auto result = zel::host::importStationsFrom(bytes, kNames[data[0] % 6]);
  require(result.error.empty() != result.stations.empty());
  require(result.error.find('\0') == std::string::npos);
  require(result.problems.size() <= zel::host::kMostProblems && result.problems.size() <= result.skipped);
  require(result.links.size() == result.frequenciesMhz.size());
  for (const auto& station : result.stations) require(zel::host::stationProblem(station).empty());
  for (const auto& [from, to] : result.links)
    require(from < result.stations.size() && to < result.stations.size() && from != to);
  require(!importSummary(result).empty());
  return 0;
}
