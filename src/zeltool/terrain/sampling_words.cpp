#include "zeltool/terrain/sampling_words.h"

#include <algorithm>
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

constexpr const char* kGivePlace = "give latitudes from -90 to 90 degrees and finite longitudes";

std::string sourceName(const SourceDefinition& definition) {
  const std::string text = "source " + std::to_string(definition.code);
  return definition.name.empty() ? text : text + " \"" + definition.name + "\"";
}

std::string standIn(const SourceDefinition& definition) {
  return "bundled sample terrain, which stands in because " + sourceName(definition) + " is not set";
}

std::string setTheSource(const SourceDefinition& definition) {
  return "set the source's files or folders (setting Terrain/Source" + std::to_string(definition.code) + ")";
}

// File names may hold anything.
std::string onOneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

}  // namespace

std::string positionText(GeoPoint position) {
  return angleText(position.latitude, 'N', 'S') + ", " + angleText(position.longitude, 'E', 'W');
}

std::string sourceText(const SourceDefinition& definition) {
  std::string text = sourceName(definition), paths;
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
         " asked for; ask for at least 2 samples";
}

std::string notAPath(GeoPoint from, GeoPoint to) {
  return "There is no path from " + positionText(from) + " to " + positionText(to) + "; " + kGivePlace;
}

std::string coincidentEnds(GeoPoint at) {
  return "The path has no length: both of its ends are at " + positionText(at) + "; give two different ends";
}

std::string tooManySamples(std::int32_t count) {
  const std::string most = std::to_string(kMostSamples);
  return std::to_string(count) + " samples are more than the " + most +
         " that a path can have; choose fewer points (at most " + most + ")";
}

std::string tooLong(double length) {
  return printed("The path is %.1f km long, more than the %.0f km that can be sampled; choose a nearer end",
                 length, kLongestPath);
}

std::string noUsableRaster(const SourceDefinition& definition, const std::vector<std::string>& problems) {
  std::string text = definition.bundledSample ? "The " + standIn(definition) + ", has no usable raster"
                                              : "Terrain " + sourceText(definition) + " has no usable raster";
  if (problems.empty()) return text + ": no file or folder is set for it; " + setTheSource(definition);
  for (std::size_t i = 0; i < problems.size() && i < kMostReasons; ++i)
    text += (i == 0 ? ": " : "; ") + problems[i];
  if (problems.size() > kMostReasons)
    text += "; and " + std::to_string(problems.size() - kMostReasons) + " more";
  return onOneLine(text + "; give rasters of heights that GDAL can open: " + setTheSource(definition));
}

std::string outsideData(const SourceDefinition& definition, GeoPoint position, std::size_t index,
                        std::size_t count) {
  const std::string text = "Sample " + std::to_string(index + 1) + " of " + std::to_string(count) + ", at " +
                           positionText(position) + ", ";
  if (!isPlace(position)) return text + "is no place on the earth; " + kGivePlace;
  const std::string data =
      definition.bundledSample ? standIn(definition) : "terrain data of " + sourceText(definition);
  return onOneLine(text + "lies outside the " + data + "; the tile " + tileNameFor(position) +
                   " would cover it: " + setTheSource(definition));
}

std::string cannotShift(GeoPoint from, const std::string& why) {
  const auto last = why.find_last_not_of(". ");
  return "The positions from " + positionText(from) + " on cannot be moved from NAD-27 to NAD-83: " +
         why.substr(0, last == std::string::npos ? 0 : last + 1) +
         "; give positions where NAD-27 is in use, or set the datum to NAD-83";
}

std::vector<std::string> shortened(std::vector<std::string> warnings) {
  if (warnings.size() <= kMostWarnings) return warnings;
  const std::size_t more = warnings.size() - kMostWarnings;
  warnings.resize(kMostWarnings);
  warnings.push_back("and " + std::to_string(more) + " more files that could not be used");
  return warnings;
}

}  // namespace zel
