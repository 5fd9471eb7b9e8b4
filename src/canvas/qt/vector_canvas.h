// A canvas that keeps its strokes instead of pixels, to be drawn at any size: on a printed page, in an SVG
// file (svg_picture.h). Texts stay texts there.
//
// Strokes and texts lie where a RasterCanvas of pixel ratio 1 has them; strokes are not rounded to pixels, so
// they may be half a pixel from those. As there, a pixel's middle is its place: a stroke at logical position
// p runs through p + 0.5, on the right and bottom border through the last pixel, and ends are round.
//
// On paper there are no pixels to be in the middle of: a stroke runs through its very place, only so far off
// a border that it shows whole. Texts are measured and placed to 1/1440 inch. A draw width of 1 is half a
// point, for a logical pixel of ink looks heavy there.
//
// Nothing erases on paper: the XOR pen draws the colour that it has over white, and a second stroke changes
// nothing. A clear forgets what was drawn. What lies outside of the picture is left out, and a stroke without
// a finite place in it leaves nothing, nor does a circle of more than ten million pixels.
#pragma once

#include <QFont>
#include <QImage>
#include <QLineF>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <memory>
#include <variant>
#include <vector>

#include "canvas/qt/picture_canvas.h"

class QPainter;

namespace zel {

// Logical pixels, in the order of drawing.
struct VectorLines {
  Colour colour = kBlack;
  int width = 1;
  std::vector<std::vector<QPointF>> chains;  // of two points or more each
};

struct VectorCircle {
  QPointF centre;
  double radius = 0;
  Colour outline = kBlack;
  int width = 1;  // of the outline
  Colour filling = kWhite;
};

struct VectorRectangles {
  Colour colour = kBlack;
  std::vector<QRectF> rectangles;
};

// One line of text, black.
struct VectorText {
  QPointF base;  // left end of its base line
  QString text;
  double width = 0;
  QFont font;
};

class VectorCanvas;

// Another picture, within this rectangle and cut there.
struct VectorInset {
  QRectF rectangle;
  std::shared_ptr<const VectorCanvas> picture;
};

using VectorStroke = std::variant<VectorLines, VectorCircle, VectorRectangles, VectorText, VectorInset>;

enum class PaperTexts {
  // As a picture's texts: whole within it and off one another. Each has a white seam, so that what was drawn
  // before it leaves it readable.
  kApart,
  kInPlace,  // where they are asked for
};

class VectorCanvas final : public PictureCanvas {
 public:
  // Of a draw width of 1 on paper: half a point, in logical pixels.
  static constexpr double kPaperPen = 0.5 * kPixelsPerInch / 72;

  // So many logical pixels; nothing is drawn on an empty size.
  explicit VectorCanvas(QSize size);
  // On paper.
  VectorCanvas(QSizeF size, PaperTexts texts);

  // The width of a stroke of draw width 1, logical pixels.
  double pen() const { return onPaper_ ? kPaperPen : 1; }

  // Everything since the last clear: strokes of one kind, colour and width that follow each other are one
  // entry, lines that go on from each other one chain.
  const std::vector<VectorStroke>& strokes() const { return strokes_; }

  // Draws the whole picture into the rectangle of the painter's coordinates, white where nothing is, cut at
  // the rectangle. Widths and texts grow with it: a text of 8 points has them where a logical pixel is 1/96
  // inch. The painter is left as it was.
  // No stroke is thinner than a pixel of the painter's device.
  void paint(QPainter& painter, const QRectF& rectangle) const;
  // The same over what is there: nothing is made white first.
  void paintOver(QPainter& painter, const QRectF& rectangle) const;

  // A picture of paper in this rectangle of world coordinates. It may be drawn on at any time, and is over
  // what was drawn here before it and under what comes later. An empty one where the rectangle is no place.
  std::shared_ptr<VectorCanvas> inset(CanvasPoint corner, CanvasPoint opposite);

  void line(double x1, double y1, double x2, double y2, Colour colour) override;
  void circle(double x, double y, double radius) override;
  void fillRectangle(double x1, double y1, double x2, double y2, Colour colour) override;

 private:
  const QPaintDevice& textDevice() const override { return textDevice_; }
  void wipe() override { strokes_.clear(); }
  void drawText(QPointF base, const QString& text, double width, const QFont& font) override;

  VectorCanvas(QSizeF size, bool onPaper);

  QPointF strokePoint(CanvasPoint world) const;
  QPointF onPaper(QPointF logical) const;
  Colour penColour(Colour colour) const;

  bool onPaper_;
  bool seams_ = false;  // around texts
  QImage textDevice_;   // has the resolution
  std::vector<VectorStroke> strokes_;
};

}  // namespace zel
