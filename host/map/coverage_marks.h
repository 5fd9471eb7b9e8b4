// Where rasters are that a map shows too small to be found: a box around each group of them. Rasters of which
// a larger area is covered together are seen as they are, and have none.
//
// Cost: some 0.1 us a raster.
#pragma once

#include <span>
#include <vector>

#include "map/label_places.h"
#include "map/map_frame.h"

namespace zel::host {

// Of the world square, 0 to 1; `right` may be beyond 1.
struct WorldArea {
  double left = 0, top = 0, right = 0, bottom = 0;
};
WorldArea worldArea(const TerrainExtent& extent);

// Boxes of at least `pixels` each way around groups that are smaller than that both ways.
std::vector<PixelBox> coverageMarks(const MapFrame& frame, std::span<const WorldArea> rasters, double pixels);

}  // namespace zel::host
