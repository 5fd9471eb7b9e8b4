// Lines and circles on a picture in memory, pixel by pixel, without antialiasing.
//
// Which pixels a stroke takes follows from its own numbers alone: each visible row or column of the picture
// is asked what the stroke leaves there, and what lies outside is never visited. So the visible part of a
// stroke is to the pixel the one that a larger picture would show, a stroke takes each of its pixels once,
// the same stroke takes the same pixels again, and a line takes the same in both directions. XOR drawn twice
// therefore restores everything.
//
// Positions and radii are whole device pixels, held as double: any finite value will do, and one of millions
// of pixels takes no longer than one that fits. Beyond 2^53 pixels the slope of a slanted line is no longer
// exact. Cost: the rows and columns of the picture that the stroke crosses.
#pragma once

#include <cstddef>
#include <cstdint>

#include "canvas/canvas.h"

namespace zel {

// A picture in memory: rows of 0xFFRRGGBB pixels from the left top corner, owned by the caller.
struct PixelRows {
  std::uint32_t* pixels = nullptr;
  int width = 0;             // device pixels
  int height = 0;            // device pixels
  std::ptrdiff_t pitch = 0;  // pixels from one row to the next
};

// Whole device pixels to the right of the left top pixel, and below it.
struct PixelPoint {
  double x = 0;
  double y = 0;
};

// What a stroke does to each of its pixels.
struct PixelPen {
  DrawMode mode = DrawMode::kCopyPen;
  Colour colour = kBlack;
};

// Both ends included; of equal ends a dot. From 2 pixels of width on the ends are round. A pen of an even
// width has its middle half a pixel right of and below the position, so that a stroke on the left or top
// border is whole.
void strokeLine(const PixelRows& picture, PixelPoint from, PixelPoint to, int width, PixelPen pen);

// An outline of the width, half of it on either side of the radius, and within it the filling: no pixel is in
// both.
void strokeCircle(const PixelRows& picture, PixelPoint centre, double radius, int width, PixelPen outline,
                  PixelPen filling);

// Every pixel from the left top one to the one left of and above the right bottom one: none where these are
// equal.
void fillPixels(const PixelRows& picture, PixelPoint leftTop, PixelPoint rightBottom, PixelPen pen);

}  // namespace zel
