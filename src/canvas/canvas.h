// What the profile is drawn on: a surface with world coordinates, and the drawing operations of a picture
// control.
//
// Coordinates are world coordinates: x to the right and y upwards between the corners that setScale gives.
// Colours are 0x00BBGGRR. A new canvas has the scale (0, 0)-(1, 1), copy pen, white fill, draw width 1 and
// the text position at the left top corner. A canvas keeps what is drawn until it is cleared.
#pragma once

#include <cstdint>
#include <string_view>

namespace zel {

using Colour = std::int32_t;  // 0x00BBGGRR

inline constexpr Colour kBlack = 0x000000;
inline constexpr Colour kWhite = 0xFFFFFF;
inline constexpr Colour kRed = 0x0000FF;

// The classic numbers of the pens.
enum class DrawMode {
  kBlackness = 1,  // black, whatever the colour
  kXorPen = 7,     // colour XOR what is there: the same stroke a second time restores every pixel
  kCopyPen = 13,   // the colour
};

enum class FillStyle { kSolid = 0 };

class Canvas {
 public:
  virtual ~Canvas() = default;

  // World coordinates of the corners. What is drawn already stays where it is.
  virtual void setScale(double left, double top, double right, double bottom) = 0;
  // Visible width in world units, right - left.
  virtual double scaleWidth() const = 0;
  // Paints everything white and puts the text position into the left top corner. Scale and pen stay.
  virtual void clear() = 0;

  virtual void setDrawMode(DrawMode mode) = 0;
  virtual void setFillStyle(FillStyle style) = 0;
  virtual void setFillColour(Colour colour) = 0;
  // Of lines and outlines, logical pixels: 1 to 32767, or the nearest of these.
  virtual void setDrawWidth(int pixels) = 0;
  virtual int drawWidth() const = 0;

  virtual void line(double x1, double y1, double x2, double y2, Colour colour) = 0;
  // A round circle: the radius is measured in world units of x. Outlined in the foreground colour, black, and
  // filled with the fill colour, both by the draw mode.
  virtual void circle(double x, double y, double radius) = 0;
  // Filled, without an outline, whichever two opposite corners are given. Rectangles with a common side
  // neither overlap nor leave a gap.
  virtual void fillRectangle(double x1, double y1, double x2, double y2, Colour colour) = 0;

  // Where the next text's top left corner comes; print moves it on as printing does, to the start of the next
  // line: the left border, one line of text lower.
  virtual void setTextPosition(double x, double y) = 0;
  // One line of UTF-8, in the picture's font and the foreground colour, black, in every draw mode.
  virtual void print(std::string_view text) = 0;
  // What print would take of the picture, in world units, never negative: a text's width, and the height from
  // one line to the next.
  virtual double textWidth(std::string_view text) const = 0;
  virtual double textHeight() const = 0;
};

}  // namespace zel
