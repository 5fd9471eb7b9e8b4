// What a canvas remembers between two strokes, with the values of a new canvas.
#pragma once

#include <algorithm>

#include "canvas/canvas.h"

namespace zel {

// World coordinates of the picture's corners. Either span may be negative; a span of zero gives nothing a
// place.
struct CanvasScale {
  double left = 0;
  double top = 0;
  double right = 1;
  double bottom = 1;

  double width() const { return right - left; }
  double height() const { return bottom - top; }

  friend bool operator==(const CanvasScale&, const CanvasScale&) = default;
};

// A position in world coordinates.
struct CanvasPoint {
  double x = 0;
  double y = 0;

  friend bool operator==(const CanvasPoint&, const CanvasPoint&) = default;
};

struct CanvasState {
  CanvasScale scale;
  DrawMode drawMode = DrawMode::kCopyPen;
  FillStyle fillStyle = FillStyle::kSolid;
  Colour fillColour = kWhite;
  int drawWidth = 1;  // logical pixels
  CanvasPoint textPosition;
};

// The widths that a picture control takes are 1 to 32767; the nearest of them stands in for any other.
inline int allowedDrawWidth(int pixels) { return std::clamp(pixels, 1, 32767); }

}  // namespace zel
