// Lines of latitude and longitude, and the scale bar, for what a map shows.
#pragma once

#include <string>
#include <vector>

#include "map/map_frame.h"

namespace zel::host {

enum class AngleFormat { kDegreesMinutesSeconds, kDecimalDegrees };

struct GraticuleLine {
  bool meridian = false;
  double degrees = 0;  // latitude, or longitude from -180 up to 180
  double pixel = 0;    // x of a meridian, y of a parallel
  std::string text;    // "84-15 W", "84-15-30 W", "36.25 N": as many parts as the step needs
};
// At round steps, 100 to 250 pixels apart where the format has such steps; from left to right, then from top
// to bottom.
std::vector<GraticuleLine> graticule(const MapFrame& frame, AngleFormat format);

struct ScaleBar {
  double metres = 0;
  double pixels = 0;
  std::string text;  // "5 km", "500 m", "2 mi", "1000 ft"
};
// A round length (1, 2, 5 x 10^n of the unit) of at most `mostPixels`, true at the frame's centre.
ScaleBar scaleBar(const MapFrame& frame, bool imperial, double mostPixels);

}  // namespace zel::host
