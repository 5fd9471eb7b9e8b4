// Lines between places as pixels of a map: cut where the map ends, and how far a pixel is from them.
#pragma once

#include <span>
#include <vector>

#include "map/map_frame.h"
#include "zel/coordinates.h"

namespace zel::host {

// A piece of a line that is seen.
struct PixelLine {
  std::vector<MapPoint> points;  // two or more
  double before = 0;  // pixels along the line ahead of the piece, so that dashes stay where they are
};

// The positions joined in their order, the short way round the earth each, clipped to the frame and `margin`
// pixels around it. What reaches over the meridian opposite the frame's centre goes on at the other side.
// Positions that are not finite part the line. Cost: some 50 ns a position.
std::vector<PixelLine> pixelLines(const MapFrame& frame, std::span<const Position> positions, double margin);

// Pixels from `at` to the nearest place on the line; infinite for a line without points.
double distanceToLine(std::span<const MapPoint> line, MapPoint at);
double distanceToLines(std::span<const PixelLine> lines, MapPoint at);

// The place half way along the longest piece and the direction of the line there, for a text beside it.
struct LineMiddle {
  MapPoint at;
  double angleDeg = 0;  // clockwise from the right, above -90 up to 90, so that a text along it is upright
  double pixels = 0;    // length of the piece; 0 where there is none
};
LineMiddle middleOf(std::span<const PixelLine> lines);

}  // namespace zel::host
