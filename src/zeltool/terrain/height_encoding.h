// How a raster writes heights into its cells, and which of its cells hold none.
//
// A cell is void when it holds the raster's own mark for "no data", NaN, an infinity, -32768 (in a raster
// without scale and offset: the usual mark where none is declared), -9999 m (the same), or a height beyond
// 12,000 m either way, more than the highest mountain and the deepest trench.
#pragma once

#include <optional>

namespace zel {

struct HeightEncoding {
  std::optional<double> noData;  // of the raw value
  double scale = 1;              // raster's unit per raw step
  double offset = 0;             // raster's unit
  double metresPerUnit = 1;

  // Metres, or NaN for a void.
  float decode(double raw) const;
};

}  // namespace zel
