// How long the map takes for a frame: terrain-profiler --bench-map.
#pragma once

#include <string>

namespace zel::host {

struct MapBench {
  int frames = 0;
  double wholeMs = 0;  // until the whole terrain is drawn, the first time
  double medianMs = 0, percentile95Ms = 0, worstMs = 0;
  std::string terrain;       // what it was measured over
  std::string text() const;  // the lines that the command prints
};

// Turns the wheel and drags a map of 1280 x 800 over the terrain of the settings, from the whole of it to its
// posts and back. Each frame is painted in full by software. Needs a graphical application; none on a screen.
MapBench benchMap();

}  // namespace zel::host
