// The readers of the single formats. Each takes UTF-8 text (a KMZ its bytes) and gives a whole result.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "import/station_list.h"

namespace zel::host {

ImportedStations csvStations(std::string_view text, const std::string& name, const ImportOptions& options);
ImportedStations geoJsonStations(std::string_view text, const std::string& name,
                                 const ImportOptions& options);
ImportedStations kmlStations(std::string_view text, const std::string& name, const ImportOptions& options);
ImportedStations gpxStations(std::string_view text, const std::string& name, const ImportOptions& options);

// A file of these has one object after the other, also where the first alone could be the whole.
inline constexpr std::array<std::string_view, 6> kSequenceEndings{".geojsonl", ".geojsons",  ".geojsonseq",
                                                                  ".ndjson",   ".ndgeojson", ".jsonl"};

struct UnpackedKml {
  std::string text;   // as it was packed
  std::string error;  // why there is none
  bool cancelled = false;
};

// The "doc.kml" of a zip archive, or else its first .kml. `mostBytes` of what is really unpacked.
UnpackedKml unpackKmz(std::string_view bytes, const ImportOptions& options,
                      std::size_t mostBytes = kLargestUnpacked);

}  // namespace zel::host
