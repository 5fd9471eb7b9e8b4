#include "zeltool/terrain/sampling_words.h"

#include <cmath>
#include <cstdio>

#include "zeltool/terrain/longitude.h"
#include "zeltool/terrain/tile_name.h"

namespace zel {
namespace {

constexpr std::size_t kMostReasons = 3;  // in one sentence

template <typename... Values>
std::string printed(const char* format, Values... values) {
  char text[160];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

std::string angleText(double degrees, char positive, char negative) {
  if (!std::isfinite(degrees)) return "not a number";
  return printed("%.6f %c", std::abs(degrees), degrees < 0 ? negative : positive);
}

bool isPlace(GeoPoint p) {
  return std::isfinite(p.latitude) && std::isfinite(p.longitude) && std::abs(p.latitude) <= 90;
}

}  // namespace

std::string positionText(GeoPoint position) {
  return angleText(position.latitude, 'N', 'S') + ", " + angleText(position.longitude, 'E', 'W');
}

std::string sourceText(const SourceDefinition& definition) {
  std::string text = "source " + std::to_string(definition.code);
  if (!definition.name.empty()) text += " \"" + definition.name + "\"";
  std::string paths;
  for (std::size_t i = 0; i < definition.paths.size() && i < kMostReasons; ++i)
    paths += (i > 0 ? "; " : "") + definition.paths[i];
  if (definition.paths.size() > kMostReasons) paths += "; ...";
  if (!paths.empty()) text += " (" + paths + ")";
  return text;
}

std::string methodText(std::int32_t method) {
  return method == 1 ? "Bivariate  Interpolation" : "FCC 4-Point";
}

std::string tooFewSamples(std::int32_t count) {
  return "A path needs 2 samples at least, and " + std::to_string(count) + (count == 1 ? " was" : " were") +
         " asked for.";
}

std::string notAPath(GeoPoint from, GeoPoint to) {
  return "There is no path from " + positionText(from) + " to " + positionText(to) +
         ": latitudes are from -90 to 90 degrees, longitudes are finite.";
}

std::string coincidentEnds(GeoPoint at) {
  return "The path has no length: both of its ends are at " + positionText(at) + ".";
}

std::string tooManySamples(std::int32_t count) {
  return std::to_string(count) + " samples are more than the " + std::to_string(kMostSamples) +
         " that a path can have.";
}

std::string tooLong(double length) {
  return printed("The path is %.1f km long, more than the %.0f km that can be sampled.", length,
                 kLongestPath);
}

std::string noUsableRaster(const SourceDefinition& definition, const std::vector<std::string>& problems) {
  std::string text = "Terrain " + sourceText(definition) + " has no usable raster";
  if (problems.empty()) return text + ": no file or folder is set for it.";
  for (std::size_t i = 0; i < problems.size() && i < kMostReasons; ++i)
    text += (i == 0 ? ": " : "; ") + problems[i];
  if (problems.size() > kMostReasons)
    text += "; and " + std::to_string(problems.size() - kMostReasons) + " more";
  return text + ".";
}

std::string outsideData(const SourceDefinition& definition, GeoPoint position, std::size_t index,
                        std::size_t count) {
  std::string text = "Sample " + std::to_string(index + 1) + " of " + std::to_string(count) + ", at " +
                     positionText(position) + ", ";
  if (!isPlace(position)) return text + "is no place on the earth.";
  return text + "lies outside the terrain data of " + sourceText(definition) + "; the tile " +
         tileNameFor(position) + " would cover it.";
}

std::string cannotShift(GeoPoint from, const std::string& why) {
  return "The positions from " + positionText(from) + " on cannot be moved from NAD-27 to NAD-83: " + why +
         ".";
}

std::vector<std::string> shortened(std::vector<std::string> warnings) {
  if (warnings.size() <= kMostWarnings) return warnings;
  const std::size_t more = warnings.size() - kMostWarnings;
  warnings.resize(kMostWarnings);
  warnings.push_back("and " + std::to_string(more) + " more files that could not be used");
  return warnings;
}

}  // namespace zel
