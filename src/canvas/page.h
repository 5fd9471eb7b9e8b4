// A page of paper to draw on: a sheet, and boxes in it that are pictures of their own.
#pragma once

#include "canvas/canvas.h"

namespace zel {

class Page {
 public:
  virtual ~Page() = default;

  // The whole page, in the scale that is set on it. Texts stand exactly where they are asked for: none is
  // moved off another.
  virtual Canvas& sheet() = 0;

  // Of the sheet's texts from now on; 10 points at first.
  virtual void setFontSize(double points) = 0;

  // A picture in this rectangle of the sheet, given in the sheet's world coordinates: a canvas with a scale
  // of its own, cut at the rectangle, whose texts (8 points) are whole within it and off one another. It
  // belongs to the page, and its strokes lie over what the sheet has. What the sheet draws later lies over
  // them.
  virtual Canvas& box(double left, double top, double right, double bottom) = 0;
};

}  // namespace zel
