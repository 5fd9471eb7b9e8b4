// Stations out of other programs' files: CSV, GeoJSON, KML, KMZ, GPX.
//
// Kinds are told by content, the extension decides only where the content allows several. Bad rows are
// named with their line and left out; a file that as a whole is none of the kinds, or hostile, is refused
// with a reason. Nothing is ever half taken: the result is a value.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "planning/plan.h"

namespace zel::host {

struct ImportProblem {
  std::size_t line = 0;  // from 1; 0 when it concerns the file as a whole
  std::string text;      // "latitude 95 is not from -90 to 90"
};

struct ImportedStations {
  std::string
      error;  // why nothing can be taken, with the line where there is one; empty when stations were read
  std::string kind;  // "CSV", "GeoJSON", "KML", "KMZ", "GPX"
  std::vector<Station> stations;
  // Consecutive stations that the file shows as a line (two-point lines, routes): index pairs into
  // `stations`.
  std::vector<std::pair<std::size_t, std::size_t>> links;
  std::vector<std::optional<double>> frequenciesMhz;  // of the links, one each; most files have none
  std::vector<ImportProblem> problems;                // the first kMostProblems of them
  std::size_t skipped = 0;                            // rows or features left out, all of them
  std::vector<std::string>
      notes;  // what was assumed: delimiter, columns, encoding, heights in feet, default antenna
};

inline constexpr std::size_t kMostProblems = 100;
inline constexpr std::size_t kLargestImport = 256U << 20;    // bytes, of the file
inline constexpr std::size_t kLargestUnpacked = 256U << 20;  // bytes, of what a KMZ holds

struct ImportOptions {
  double antennaM = kDefaultAntenna;  // for stations without one
  const std::atomic<bool>* cancelled = nullptr;
  std::function<void(double fraction)> progress;  // 0 to 1, from the thread that reads
};

// Never throws but std::bad_alloc. May be called from any thread.
ImportedStations importStations(const std::string& path, const ImportOptions& options = {});
// The same of a text; `name` tells the extension and stands in messages.
ImportedStations importStationsFrom(const std::string& bytes, const std::string& name,
                                    const ImportOptions& options = {});

// How files are called that may be lists, lower case, with the dot.
std::vector<std::string> stationListEndings();

// What was found, how it was read, and what was left out, indented, for a box; at most `lines` lines.
std::string importSummary(const ImportedStations& result, std::size_t lines = 12);

}  // namespace zel::host
