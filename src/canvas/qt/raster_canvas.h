// A canvas on a picture in memory that stays: what is drawn is there until it is cleared, and the paint event
// only shows it.
//
// A picture has a size in logical pixels (one is 1/96 inch of the picture's fonts) and a pixel ratio, device
// pixels to a logical one. World coordinates go to logical pixels by
//     x = (world x - left) / (right - left) * width        y = (world y - top) / (bottom - top) * height
// and on to the nearest whole device pixel, where the right and the bottom border fall on the last one;
// strokes are device pixels (pixel_strokes.h), not antialiased,
// their width the logical one times the ratio, rounded, at least 1. A stroke without a finite place in the
// picture (NaN, an infinity, a scale without a span) leaves nothing.
//
// Lines and circles need no application object. Texts need a QGuiApplication; without one they are kept in
// textRectangles with an empty rectangle and are not seen.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "canvas/canvas.h"
#include "canvas/canvas_state.h"
#include "canvas/pixel_strokes.h"

namespace zel {

// A text that the picture shows.
struct TextRectangle {
  std::string text;      // UTF-8
  CanvasPoint position;  // where it was asked for, world coordinates
  QRectF rectangle;      // where it is, logical pixels
};

class RasterCanvas final : public Canvas {
 public:
  // An empty picture, on which nothing is seen, until it is resized.
  RasterCanvas() = default;
  RasterCanvas(QSize size, double pixelRatio) { resize(size, pixelRatio); }

  // A new white picture of so many logical pixels. Scale, pen and font stay; the text position goes to the
  // left top corner. A ratio that is not above 0 counts as 1. RuntimeError 7 when there is no room for the
  // picture; the old one is kept then.
  void resize(QSize size, double pixelRatio);
  QSize size() const { return size_; }  // logical pixels
  double pixelRatio() const { return pixelRatio_; }

  // Its device pixels, opaque; the ratio is set, so that it is painted at its logical size.
  const QImage& image() const { return image_; }

  // Of the texts. At first 8 points of the application's font.
  void setFont(const QFont& font) { font_ = font; }
  QFont font() const;

  // The texts printed since the last clear or resize, in order, without those outside of the picture.
  const std::vector<TextRectangle>& textRectangles() const { return textRectangles_; }

  // Between world coordinates and logical pixels from the left top corner, not rounded. Not finite where the
  // scale or the picture has no span.
  QPointF worldToPixel(CanvasPoint world) const;
  CanvasPoint pixelToWorld(QPointF pixel) const;
  const CanvasScale& scale() const { return state_.scale; }

  void setScale(double left, double top, double right, double bottom) override;
  double scaleWidth() const override;
  void clear() override;
  void setDrawMode(DrawMode mode) override;
  void setFillStyle(FillStyle style) override;
  void setFillColour(Colour colour) override;
  void setDrawWidth(int pixels) override;
  int drawWidth() const override;
  void line(double x1, double y1, double x2, double y2, Colour colour) override;
  void circle(double x, double y, double radius) override;
  // A text whose position is in the picture, borders included, or left of it by less than the text is wide,
  // is moved by as little as it takes to show whole and then off the texts that are there, with the gap of a
  // blank beside them: right by the height of three lines at most, down by one. Where that does not free it,
  // it stays. One whose position is outside is not drawn. Texts are opaque black, with smooth edges and
  // without coloured ones, in every draw mode.
  void setTextPosition(double x, double y) override;
  void print(std::string_view text) override;

 private:
  std::optional<PixelPoint> devicePoint(CanvasPoint world) const;
  std::optional<PixelPoint> strokePoint(CanvasPoint world) const;
  QPointF stepAside(const QRectF& cell, const QFontMetricsF& metrics) const;
  int deviceDrawWidth() const;
  PixelRows pixelRows();
  double deviceWidthOf(std::string_view text) const;
  void printAt(PixelPoint anchor, std::string_view text);

  QImage image_;
  QSize size_{0, 0};
  double pixelRatio_ = 1;
  CanvasState state_;
  std::optional<QFont> font_;
  std::vector<TextRectangle> textRectangles_;
};

}  // namespace zel
