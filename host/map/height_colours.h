// Colours of heights on the map, and their legend.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zel::host {

using Rgb = std::uint32_t;  // 0xffRRGGBB

// The colour scale runs over these heights; what lies outside has the end's colour. Metres.
struct HeightScale {
  double lowest = 0, highest = 1000;

  friend bool operator==(const HeightScale&, const HeightScale&) = default;
};

// A scale for heights from lowest to highest that begins and ends on round numbers of the unit (metres or
// feet), never narrower than 20 m. A fiftieth of it may lie outside at either end, so that the sea's level
// is an end. The standard scale for what is not finite.
HeightScale niceScale(double lowest, double highest, bool feet);

inline constexpr int kShades = 1024;
// Colours along the scale, evenly; readable under relief shading, distinguishable without red and green.
const std::array<Rgb, kShades>& heightColours();
Rgb colourOf(double height, const HeightScale& scale);

inline constexpr Rgb kVoidColour =
    0xffd0a0d8;  // hatched with kVoidHatch, so that it is not taken for a height
inline constexpr Rgb kVoidHatch = 0xff9a5fa8;
inline constexpr Rgb kOutsideColour = 0xffe6e6e3;  // no raster

struct LegendEntry {
  double height = 0;    // metres
  double fraction = 0;  // 0 lowest, 1 highest
  std::string text;     // "400 m", "1,300 ft"
};
// From the lowest upwards, round numbers of the unit, at most `most`. None for a scale without a width or
// beyond any terrain (1,000 km).
std::vector<LegendEntry> legendEntries(const HeightScale& scale, bool feet, int most);

}  // namespace zel::host
