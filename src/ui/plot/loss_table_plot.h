// The table of end-of-path losses as a picture: a cell for each percentage of reliability (to the right) and
// of confidence (upwards), coloured by its loss, with lines of equal loss at whole decibels, a scale of the
// colours beside it, and the cell of 50 % and 50 % framed and told.
//
// Lengths are logical pixels from the left top corner of the picture, losses dB.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "canvas/canvas.h"
#include "foundation/number_text.h"

namespace zel {

// The percentages 1 to 99 of both axes.
inline constexpr int kLossTableSide = 99;

struct LossTablePlot {
  // 99 rows of 99: a row for each confidence from 1 % on, in it a loss for each reliability from 1 % on.
  std::span<const double> losses;
  // What the picture is of: parts that are joined by commas and broken between two where a line is full.
  std::vector<std::string> title;
  NumberStyle numbers;
};

struct LossTableRectangle {
  double left = 0, top = 0, right = 0, bottom = 0;

  double width() const { return right - left; }
  double height() const { return bottom - top; }
};

// Where everything went. The cell of reliability r and confidence c, percent, reaches from
// left + (r - 1) / 99 of the cells' width and bottom - c / 99 of their height.
struct LossTableLayout {
  LossTableRectangle cells;
  LossTableRectangle colourBar;    // lowest loss at the bottom
  double lowest = 0, highest = 0;  // the losses at the ends of the colours
  std::vector<double> contours;    // levels of the lines
};

// The smallest picture in which nothing is crowded.
inline constexpr int kNarrowestLossTable = 300, kLowestLossTable = 240;

// Draws the whole picture and leaves the canvas with a scale of logical pixels. Throws RuntimeError 9 for a
// table of another size, 6 for a loss that is not finite.
LossTableLayout drawLossTable(Canvas& canvas, const LossTablePlot& plot, int width, int height);

}  // namespace zel
