// What every canvas with a size has in common, whether it keeps pixels or strokes: where world coordinates
// lie in the picture, and where its texts find their places.
//
// A picture has a size in logical pixels (one is 1/96 inch of the picture's fonts) and a pixel ratio, device
// pixels to a logical one. World coordinates go to logical pixels by
//     x = (world x - left) / (right - left) * width        y = (world y - top) / (bottom - top) * height
//
// Texts need a QGuiApplication; without one they are kept in textRectangles with an empty rectangle and are
// not seen.
#pragma once

#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "canvas/canvas.h"
#include "canvas/canvas_state.h"
#include "canvas/qt/text_places.h"

class QPaintDevice;

namespace zel {

class PictureCanvas : public Canvas {
 public:
  // The logical pixels of an inch, for the size of the fonts: the picture is the same whatever the desktop's
  // setting.
  static constexpr int kPixelsPerInch = 96;

  QSize size() const { return size_.toSize(); }  // logical pixels, to the nearest whole ones
  QSizeF exactSize() const { return size_; }
  double pixelRatio() const { return pixelRatio_; }

  // Of the texts. At first 8 points of the application's font.
  void setFont(const QFont& font) { font_ = font; }
  QFont font() const;

  // The texts printed since the last clear or resize, in order, without those outside of the picture.
  const std::vector<TextRectangle>& textRectangles() const { return textRectangles_; }

  // Between world coordinates and logical pixels from the left top corner, not rounded. Not finite where the
  // scale or the picture has no span.
  QPointF worldToPixel(CanvasPoint world) const {
    const CanvasScale& scale = state_.scale;
    return {(world.x - scale.left) / scale.width() * size_.width(),
            (world.y - scale.top) / scale.height() * size_.height()};
  }
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
  // A text whose position is in the picture, borders included, or left of it by less than the text is wide,
  // goes to its place by text_places.h. One whose position is outside is not drawn. Texts are opaque black,
  // in every draw mode.
  void setTextPosition(double x, double y) override;
  void print(std::string_view text) override;
  // 0 and a nominal height where there are no fonts.
  double textWidth(std::string_view text) const override;
  double textHeight() const override;

 protected:
  PictureCanvas() = default;
  PictureCanvas(const PictureCanvas&) = default;
  PictureCanvas& operator=(const PictureCanvas&) = default;

  // A new picture without texts: scale, pen and font stay, the text position goes to the left top corner.
  void startPicture(QSizeF size, double pixelRatio);
  // From now on texts stay where they are asked for, to the device pixel, even over each other.
  void keepTextsInPlace() { textsStay_ = true; }
  // Of texts beside each other, at least so many blanks; one at first.
  void setTextGap(double blanks) { textGap_ = blanks; }
  const CanvasState& state() const { return state_; }

  // Halves go up everywhere, so that what is moved by whole pixels looks the same.
  static double nearestWhole(double value) { return std::floor(value + 0.5); }
  // A position of a stroke, pixels of any kind, on the border of the picture or in its last pixels, brought
  // so far in; others stay. Nothing would be seen of a stroke on the pixel beyond the last one.
  static double insideBorder(double position, double logical, double logicalSize, double size,
                             int fromBorder) {
    constexpr double kRounding = 1e-9;  // of the size: what arithmetic leaves of "exactly on the border"
    const bool inside = logical <= logicalSize * (1 + kRounding);
    return inside ? std::min(position, std::max(size - fromBorder, 0.0)) : position;
  }
  // A pen of an even width has its middle half a pixel right and below, so it goes one pixel further in and
  // shows as much as on the left.
  static int fromBorderOf(int width) { return width % 2 == 0 ? 2 : 1; }

  // On this the texts are measured. A resolution above that of logical pixels measures finer parts of them.
  virtual const QPaintDevice& textDevice() const = 0;
  virtual void wipe() = 0;
  // At the left end of its base line, logical pixels.
  virtual void drawText(QPointF base, const QString& text, double width, const QFont& font) = 0;

 private:
  bool showsTexts() const;
  double textUnits() const;
  double pixelWidth(std::string_view text) const;
  double pixelHeight() const;
  std::optional<QPointF> textAnchor(std::string_view text) const;
  void printAt(QPointF anchor, std::string_view text);

  QSizeF size_{0, 0};
  double pixelRatio_ = 1;
  bool textsStay_ = false;
  double textGap_ = 1;  // blanks
  CanvasState state_;
  std::optional<QFont> font_;
  std::vector<TextRectangle> textRectangles_;
};

}  // namespace zel
