#include "canvas/qt/raster_canvas.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kInchesPerMetre = 1 / 0.0254;

// Device pixels that cover the logical ones. What is above a whole number by rounding alone needs no pixel
// more.
int coveringPixels(int logical, double ratio) {
  const double pixels = std::max(std::ceil(logical * ratio - 1e-6), 1.0);
  if (!(pixels <= std::numeric_limits<int>::max())) throw RuntimeError::outOfMemory();
  return static_cast<int>(pixels);
}

QImage whitePicture(QSize size, double ratio) {
  if (size.isEmpty()) return {};
  QImage image(coveringPixels(size.width(), ratio), coveringPixels(size.height(), ratio),
               QImage::Format_RGB32);
  if (image.isNull()) throw RuntimeError::outOfMemory();
  const int dotsPerMetre = qRound(PictureCanvas::kPixelsPerInch * kInchesPerMetre);
  image.setDotsPerMeterX(dotsPerMetre);
  image.setDotsPerMeterY(dotsPerMetre);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::white);
  return image;
}

}  // namespace

void RasterCanvas::resize(QSize size, double pixelRatio) {
  const double ratio = pixelRatio > 0 && std::isfinite(pixelRatio) ? pixelRatio : 1;
  image_ = whitePicture(size, ratio);
  startPicture(size, ratio);
}

void RasterCanvas::wipe() {
  if (!image_.isNull()) image_.fill(Qt::white);
}

void RasterCanvas::line(double x1, double y1, double x2, double y2, Colour colour) {
  const auto from = strokePoint({x1, y1});
  const auto to = strokePoint({x2, y2});
  if (from && to) strokeLine(pixelRows(), *from, *to, deviceDrawWidth(), {state().drawMode, colour});
}

void RasterCanvas::circle(double x, double y, double radius) {
  const auto centre = strokePoint({x, y});
  const double deviceRadius =
      nearestWhole(std::abs(radius / state().scale.width() * size().width() * pixelRatio()));
  if (centre && std::isfinite(deviceRadius))
    strokeCircle(pixelRows(), *centre, deviceRadius, deviceDrawWidth(), {state().drawMode, kBlack},
                 {state().drawMode, state().fillColour});
}

void RasterCanvas::fillRectangle(double x1, double y1, double x2, double y2, Colour colour) {
  const auto one = devicePoint({x1, y1});
  const auto other = devicePoint({x2, y2});
  if (one && other)
    fillPixels(pixelRows(), {std::min(one->x, other->x), std::min(one->y, other->y)},
               {std::max(one->x, other->x), std::max(one->y, other->y)}, {state().drawMode, colour});
}

void RasterCanvas::drawText(QPointF base, const QString& text, double, const QFont& font) {
  QPainter painter(&image_);
  painter.setFont(font);
  painter.setPen(Qt::black);
  painter.drawText(base, text);
}

std::optional<PixelPoint> RasterCanvas::devicePoint(CanvasPoint world) const {
  const QPointF logical = worldToPixel(world);
  const PixelPoint device{nearestWhole(logical.x() * pixelRatio()), nearestWhole(logical.y() * pixelRatio())};
  if (!std::isfinite(device.x) || !std::isfinite(device.y)) return std::nullopt;
  return device;
}

// What lies on the right or bottom border rounds to the pixel beyond the last one.
std::optional<PixelPoint> RasterCanvas::strokePoint(CanvasPoint world) const {
  auto point = devicePoint(world);
  if (!point) return point;
  const QPointF logical = worldToPixel(world);
  const int fromBorder = fromBorderOf(deviceDrawWidth());
  point->x = insideBorder(point->x, logical.x(), size().width(), image_.width(), fromBorder);
  point->y = insideBorder(point->y, logical.y(), size().height(), image_.height(), fromBorder);
  return point;
}

int RasterCanvas::deviceDrawWidth() const {
  const double width = nearestWhole(state().drawWidth * pixelRatio());
  return static_cast<int>(std::clamp(width, 1.0, 1e9));
}

PixelRows RasterCanvas::pixelRows() {
  return {reinterpret_cast<std::uint32_t*>(image_.bits()), image_.width(), image_.height(),
          image_.bytesPerLine() / 4};
}

}  // namespace zel
