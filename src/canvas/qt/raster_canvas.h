// A canvas on a picture in memory that stays: what is drawn is there until it is cleared, and the paint event
// only shows it.
//
// World coordinates go to logical pixels (picture_canvas.h) and on to the nearest whole device pixel, where
// the right and the bottom border fall on the last one; strokes are device pixels (pixel_strokes.h), not
// antialiased, their width the logical one times the ratio, rounded, at least 1. A stroke without a finite
// place in the picture (NaN, an infinity, a scale without a span) leaves nothing.
//
// Lines, circles and rectangles need no application object.
#pragma once

#include <QImage>
#include <QSize>
#include <optional>

#include "canvas/pixel_strokes.h"
#include "canvas/qt/picture_canvas.h"

namespace zel {

class RasterCanvas final : public PictureCanvas {
 public:
  // An empty picture, on which nothing is seen, until it is resized.
  RasterCanvas() = default;
  RasterCanvas(QSize size, double pixelRatio) { resize(size, pixelRatio); }

  // A new white picture of so many logical pixels. Scale, pen and font stay; the text position goes to the
  // left top corner. A ratio that is not above 0 counts as 1. RuntimeError 7 when there is no room for the
  // picture; the old one is kept then.
  void resize(QSize size, double pixelRatio);

  // Its device pixels, opaque; the ratio is set, so that it is painted at its logical size.
  const QImage& image() const { return image_; }

  void line(double x1, double y1, double x2, double y2, Colour colour) override;
  void circle(double x, double y, double radius) override;
  void fillRectangle(double x1, double y1, double x2, double y2, Colour colour) override;

 private:
  const QPaintDevice& textDevice() const override { return image_; }
  void wipe() override;
  // With smooth edges, but without coloured ones.
  void drawText(QPointF base, const QString& text, double width, const QFont& font) override;

  std::optional<PixelPoint> devicePoint(CanvasPoint world) const;
  std::optional<PixelPoint> strokePoint(CanvasPoint world) const;
  int deviceDrawWidth() const;
  PixelRows pixelRows();

  QImage image_;
};

}  // namespace zel
