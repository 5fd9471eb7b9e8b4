// What a sampling says about itself in words. A failure is one line: what was wrong, and what to do about it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/geo_point.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {

inline constexpr std::int32_t kMostSamples = 32767;
inline constexpr double kLongestPath = 2000;  // km

// "36.500000 N, 84.250000 W"; a latitude or longitude that is not finite as it is.
std::string positionText(GeoPoint position);
// "source 3 "1 second" (/data/srtm; /data/ned)".
std::string sourceText(const SourceDefinition& definition);
std::string methodText(std::int32_t method);

std::string tooFewSamples(std::int32_t count);
std::string notAPath(GeoPoint from, GeoPoint to);
std::string coincidentEnds(GeoPoint at);
std::string tooManySamples(std::int32_t count);
std::string tooLong(double length);  // km
std::string noUsableRaster(const SourceDefinition& definition, const std::vector<std::string>& problems);
std::string outsideData(const SourceDefinition& definition, GeoPoint position, std::size_t index,
                        std::size_t count);
std::string cannotShift(GeoPoint from, const std::string& why);

// At most `kMostWarnings` of them, and how many more there are.
inline constexpr std::size_t kMostWarnings = 20;
std::vector<std::string> shortened(std::vector<std::string> warnings);

}  // namespace zel
