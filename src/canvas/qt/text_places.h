// Where the texts of a picture find their places: whole within it, and off one another.
//
// All positions and lengths are logical pixels from the left top corner of the picture; ways are whole device
// pixels, given in logical ones.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <string>
#include <vector>

#include "canvas/canvas_state.h"

namespace zel {

// A text that the picture shows.
struct TextRectangle {
  std::string text;      // UTF-8
  CanvasPoint position;  // where it was asked for, world coordinates
  QRectF rectangle;      // where it is, logical pixels
};

// The picture and the text that seeks a place in it.
struct TextToPlace {
  QSizeF picture;
  double pixelRatio = 1;  // device pixels to a logical one
  QPointF anchor;         // of its left top corner, on a device pixel
  QRectF cell;       // what it covers when its anchor is the origin; what sticks out of its line included
  double blank = 0;  // width of the gap that it keeps from the text beside it
  double line = 0;   // height of a line
};

// The anchor moved by as little as it takes to show the text whole and then off the others: right by the
// height of three lines at most, down by one. Where that does not free it, it stays. A text that is larger
// than the picture keeps its beginning.
QPointF textPlace(const TextToPlace& text, const std::vector<TextRectangle>& others);

}  // namespace zel
