#include "canvas/qt/raster_canvas.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

// The logical pixels of an inch, for the size of the fonts: the picture is the same whatever the desktop's
// setting.
constexpr double kPixelsPerInch = 96;
constexpr double kInchesPerMetre = 1 / 0.0254;
constexpr double kFontPoints = 8;
// Of 8 point text, where no font can be asked: logical pixels.
constexpr double kNominalLineHeight = 13;

bool fontsAreThere() { return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr; }

QFont defaultFont() {
  QFont font = fontsAreThere() ? QGuiApplication::font() : QFont();
  font.setFamilies(font.families() +
                   QStringList{QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans")});
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(kFontPoints);
  return font;
}

// Halves go up everywhere, so that what is moved by whole pixels looks the same.
double nearestWhole(double value) { return std::floor(value + 0.5); }

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
  const int dotsPerMetre = qRound(kPixelsPerInch * kInchesPerMetre);
  image.setDotsPerMeterX(dotsPerMetre);
  image.setDotsPerMeterY(dotsPerMetre);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::white);
  return image;
}

// A device position on the border of the picture or in its last pixels, brought so far in; others stay.
double insideBorder(double device, double logical, int logicalSize, int deviceSize, int fromBorder) {
  constexpr double kRounding = 1e-9;  // of the size: what arithmetic leaves of "exactly on the border"
  const bool inside = logical <= logicalSize * (1 + kRounding);
  return inside ? std::min(device, static_cast<double>(std::max(deviceSize - fromBorder, 0))) : device;
}

// Whether two texts would be drawn over each other, or read as one for want of a gap between them.
bool overlaps(const QRectF& a, const QRectF& b, double gap) {
  constexpr double kRounding = 1e-6;  // logical pixels
  return a.left() < b.right() + gap - kRounding && b.left() < a.right() + gap - kRounding &&
         a.top() < b.bottom() - kRounding && b.top() < a.bottom() - kRounding;
}

// Where a stretch from first to last around its anchor comes within 0 to size, moved by as few whole pixels
// as will do. What is too long keeps its beginning.
double movedInside(double anchor, double first, double last, double size) {
  return std::max(std::min(anchor, std::floor(size - last)), std::ceil(-first));
}

}  // namespace

void RasterCanvas::resize(QSize size, double pixelRatio) {
  const double ratio = pixelRatio > 0 && std::isfinite(pixelRatio) ? pixelRatio : 1;
  image_ = whitePicture(size, ratio);
  size_ = size.isEmpty() ? QSize(0, 0) : size;
  pixelRatio_ = ratio;
  textRectangles_.clear();
  state_.textPosition = {state_.scale.left, state_.scale.top};
}

QFont RasterCanvas::font() const { return font_ ? *font_ : defaultFont(); }

QPointF RasterCanvas::worldToPixel(CanvasPoint world) const {
  const CanvasScale& scale = state_.scale;
  return {(world.x - scale.left) / scale.width() * size_.width(),
          (world.y - scale.top) / scale.height() * size_.height()};
}

CanvasPoint RasterCanvas::pixelToWorld(QPointF pixel) const {
  const CanvasScale& scale = state_.scale;
  return {scale.left + pixel.x() / size_.width() * scale.width(),
          scale.top + pixel.y() / size_.height() * scale.height()};
}

void RasterCanvas::setScale(double left, double top, double right, double bottom) {
  state_.scale = {left, top, right, bottom};
}

double RasterCanvas::scaleWidth() const { return state_.scale.width(); }

void RasterCanvas::clear() {
  if (!image_.isNull()) image_.fill(Qt::white);
  textRectangles_.clear();
  state_.textPosition = {state_.scale.left, state_.scale.top};
}

void RasterCanvas::setDrawMode(DrawMode mode) { state_.drawMode = mode; }

void RasterCanvas::setFillStyle(FillStyle style) { state_.fillStyle = style; }

void RasterCanvas::setFillColour(Colour colour) { state_.fillColour = colour; }

void RasterCanvas::setDrawWidth(int pixels) { state_.drawWidth = allowedDrawWidth(pixels); }

int RasterCanvas::drawWidth() const { return state_.drawWidth; }

void RasterCanvas::line(double x1, double y1, double x2, double y2, Colour colour) {
  const auto from = strokePoint({x1, y1});
  const auto to = strokePoint({x2, y2});
  if (from && to) strokeLine(pixelRows(), *from, *to, deviceDrawWidth(), {state_.drawMode, colour});
}

void RasterCanvas::circle(double x, double y, double radius) {
  const auto centre = strokePoint({x, y});
  const double deviceRadius =
      nearestWhole(std::abs(radius / state_.scale.width() * size_.width() * pixelRatio_));
  if (centre && std::isfinite(deviceRadius))
    strokeCircle(pixelRows(), *centre, deviceRadius, deviceDrawWidth(), {state_.drawMode, kBlack},
                 {state_.drawMode, state_.fillColour});
}

void RasterCanvas::setTextPosition(double x, double y) { state_.textPosition = {x, y}; }

void RasterCanvas::print(std::string_view text) {
  const auto anchor = devicePoint(state_.textPosition);
  // The first label of an expanded view stands up to half a sample left of the picture.
  const bool inside = anchor && !image_.isNull() && (anchor->x >= 0 || anchor->x > -deviceWidthOf(text)) &&
                      anchor->x <= nearestWhole(size_.width() * pixelRatio_) && anchor->y >= 0 &&
                      anchor->y <= nearestWhole(size_.height() * pixelRatio_);
  if (inside && !text.empty()) printAt(*anchor, text);

  const double lineHeight =
      fontsAreThere() && !image_.isNull() ? QFontMetricsF(font(), &image_).lineSpacing() : kNominalLineHeight;
  const double down = size_.isEmpty() ? 0 : lineHeight / size_.height() * state_.scale.height();
  state_.textPosition = {state_.scale.left, state_.textPosition.y + down};
}

double RasterCanvas::deviceWidthOf(std::string_view text) const {
  if (!fontsAreThere()) return 0;
  const QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  return QFontMetricsF(font(), &image_).horizontalAdvance(shown) * pixelRatio_;
}

void RasterCanvas::printAt(PixelPoint anchor, std::string_view text) {
  if (!fontsAreThere()) {
    const QPointF logical(anchor.x / pixelRatio_, anchor.y / pixelRatio_);
    textRectangles_.push_back({std::string(text), state_.textPosition, QRectF(logical, QSizeF(0, 0))});
    return;
  }
  QFont textFont = font();
  // Coloured fringes would not survive a copy of the picture to another screen.
  textFont.setStyleStrategy(
      static_cast<QFont::StyleStrategy>(textFont.styleStrategy() | QFont::NoSubpixelAntialias));
  const QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  const QFontMetricsF metrics(textFont, &image_);
  // The cell of the text, and what sticks out of it.
  const QRectF cell = QRectF(0, 0, metrics.horizontalAdvance(shown), metrics.height())
                          .united(metrics.boundingRect(shown).translated(0, metrics.ascent()));
  const QPointF corner(movedInside(anchor.x, cell.left() * pixelRatio_, cell.right() * pixelRatio_,
                                   size_.width() * pixelRatio_) /
                           pixelRatio_,
                       movedInside(anchor.y, cell.top() * pixelRatio_, cell.bottom() * pixelRatio_,
                                   size_.height() * pixelRatio_) /
                           pixelRatio_);
  const QPointF place = corner + stepAside(cell.translated(corner), metrics);
  QPainter painter(&image_);
  painter.setFont(textFont);
  painter.setPen(Qt::black);
  painter.drawText(place + QPointF(0, metrics.ascent()), shown);
  textRectangles_.push_back({std::string(text), state_.textPosition, cell.translated(place)});
}

// The least way right, down or both, in whole device pixels, that leads off all texts before; none where the
// text is free, and none where there is no room so near. To the right three lines' heights are near enough:
// a number of four digits is that wide.
QPointF RasterCanvas::stepAside(const QRectF& cell, const QFontMetricsF& metrics) const {
  const double gap = metrics.horizontalAdvance(QLatin1Char(' '));
  std::vector<double> rights{0};
  std::vector<double> downs{0};
  const auto wholePixels = [this](double way) { return std::ceil(way * pixelRatio_ - 1e-6) / pixelRatio_; };
  const double mostDown = wholePixels(metrics.lineSpacing());
  const double mostRight = 3 * mostDown;
  for (const TextRectangle& other : textRectangles_) {
    const double right = wholePixels(other.rectangle.right() + gap - cell.left());
    const double down = wholePixels(other.rectangle.bottom() - cell.top());
    if (right > 0 && right <= mostRight) rights.push_back(right);
    if (down > 0 && down <= mostDown) downs.push_back(down);
  }
  const auto isFree = [&](QPointF way) {
    const QRectF there = cell.translated(way);
    return there.right() <= size_.width() + 1e-6 && there.bottom() <= size_.height() + 1e-6 &&
           std::none_of(textRectangles_.begin(), textRectangles_.end(),
                        [&](const TextRectangle& other) { return overlaps(there, other.rectangle, gap); });
  };
  std::optional<QPointF> least;
  for (const double right : rights)
    for (const double down : downs)
      if ((!least || right + down < least->x() + least->y()) && isFree({right, down}))
        least = QPointF(right, down);
  return least.value_or(QPointF(0, 0));
}

std::optional<PixelPoint> RasterCanvas::devicePoint(CanvasPoint world) const {
  const QPointF logical = worldToPixel(world);
  const PixelPoint device{nearestWhole(logical.x() * pixelRatio_), nearestWhole(logical.y() * pixelRatio_)};
  if (!std::isfinite(device.x) || !std::isfinite(device.y)) return std::nullopt;
  return device;
}

// What lies on the right or bottom border rounds to the pixel beyond the last one. A pen of an even width has
// its middle half a pixel right and below, so it goes one pixel further in and shows as much as on the left.
std::optional<PixelPoint> RasterCanvas::strokePoint(CanvasPoint world) const {
  auto point = devicePoint(world);
  if (!point) return point;
  const QPointF logical = worldToPixel(world);
  const int fromBorder = deviceDrawWidth() % 2 == 0 ? 2 : 1;
  point->x = insideBorder(point->x, logical.x(), size_.width(), image_.width(), fromBorder);
  point->y = insideBorder(point->y, logical.y(), size_.height(), image_.height(), fromBorder);
  return point;
}

int RasterCanvas::deviceDrawWidth() const {
  const double width = nearestWhole(state_.drawWidth * pixelRatio_);
  return static_cast<int>(std::clamp(width, 1.0, 1e9));
}

PixelRows RasterCanvas::pixelRows() {
  return {reinterpret_cast<std::uint32_t*>(image_.bits()), image_.width(), image_.height(),
          image_.bytesPerLine() / 4};
}

}  // namespace zel
