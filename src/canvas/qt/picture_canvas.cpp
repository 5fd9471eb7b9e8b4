#include "canvas/qt/picture_canvas.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QStringList>
#include <cmath>

#include "canvas/qt/fonts.h"

namespace zel {
namespace {

constexpr double kFontPoints = 8;
// Of 8 point text, where no font can be asked: logical pixels.
constexpr double kNominalLineHeight = 13;

QFont defaultFont() {
  QFont font = fontsAreThere() ? QGuiApplication::font() : QFont();
  font.setFamilies(font.families() +
                   QStringList{QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans")});
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(kFontPoints);
  return font;
}

QString shownText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

void PictureCanvas::startPicture(QSizeF size, double pixelRatio) {
  size_ = size.isEmpty() ? QSizeF(0, 0) : size;
  pixelRatio_ = pixelRatio;
  textRectangles_.clear();
  state_.textPosition = {state_.scale.left, state_.scale.top};
}

QFont PictureCanvas::font() const { return font_ ? *font_ : defaultFont(); }

CanvasPoint PictureCanvas::pixelToWorld(QPointF pixel) const {
  const CanvasScale& scale = state_.scale;
  return {scale.left + pixel.x() / size_.width() * scale.width(),
          scale.top + pixel.y() / size_.height() * scale.height()};
}

void PictureCanvas::setScale(double left, double top, double right, double bottom) {
  state_.scale = {left, top, right, bottom};
}

double PictureCanvas::scaleWidth() const { return state_.scale.width(); }

void PictureCanvas::clear() {
  wipe();
  textRectangles_.clear();
  state_.textPosition = {state_.scale.left, state_.scale.top};
}

void PictureCanvas::setDrawMode(DrawMode mode) { state_.drawMode = mode; }

void PictureCanvas::setFillStyle(FillStyle style) { state_.fillStyle = style; }

void PictureCanvas::setFillColour(Colour colour) { state_.fillColour = colour; }

void PictureCanvas::setDrawWidth(int pixels) { state_.drawWidth = allowedDrawWidth(pixels); }

int PictureCanvas::drawWidth() const { return state_.drawWidth; }

void PictureCanvas::setTextPosition(double x, double y) { state_.textPosition = {x, y}; }

void PictureCanvas::print(std::string_view text) {
  const auto anchor = textAnchor(text);
  if (anchor && !text.empty()) printAt(*anchor, text);
  const double down = size_.isEmpty() ? 0 : pixelHeight() / size_.height() * state_.scale.height();
  state_.textPosition = {state_.scale.left, state_.textPosition.y + down};
}

bool PictureCanvas::showsTexts() const { return fontsAreThere() && !size_.isEmpty(); }

// Of the device that texts are measured on, to a logical pixel.
double PictureCanvas::textUnits() const {
  return static_cast<double>(textDevice().logicalDpiY()) / kPixelsPerInch;
}

double PictureCanvas::pixelWidth(std::string_view text) const {
  if (!showsTexts()) return 0;
  const QString shown = shownText(text);
  return QFontMetricsF(fontForText(font(), shown), &textDevice()).horizontalAdvance(shown) / textUnits();
}

double PictureCanvas::pixelHeight() const {
  return showsTexts() ? QFontMetricsF(font(), &textDevice()).lineSpacing() / textUnits() : kNominalLineHeight;
}

double PictureCanvas::textWidth(std::string_view text) const {
  return size_.isEmpty() ? 0 : std::abs(pixelWidth(text) / size_.width() * state_.scale.width());
}

double PictureCanvas::textHeight() const {
  return size_.isEmpty() ? 0 : std::abs(pixelHeight() / size_.height() * state_.scale.height());
}

// On the nearest device pixel; nothing for a position outside of the picture. By whole logical pixels, so
// that every pixel ratio, and paper, has the same texts.
std::optional<QPointF> PictureCanvas::textAnchor(std::string_view text) const {
  const QPointF logical = worldToPixel(state_.textPosition);
  const QPointF device(nearestWhole(logical.x() * pixelRatio_), nearestWhole(logical.y() * pixelRatio_));
  if (size_.isEmpty() || !std::isfinite(device.x()) || !std::isfinite(device.y())) return std::nullopt;
  const QPointF whole(nearestWhole(logical.x()), nearestWhole(logical.y()));
  // The first label of an expanded view stands up to half a sample left of the picture.
  const bool inside = (whole.x() >= 0 || whole.x() > -pixelWidth(text)) &&
                      whole.x() <= nearestWhole(size_.width()) && whole.y() >= 0 &&
                      whole.y() <= nearestWhole(size_.height());
  return inside ? std::optional(device / pixelRatio_) : std::nullopt;
}

void PictureCanvas::printAt(QPointF anchor, std::string_view text) {
  if (!fontsAreThere()) {
    textRectangles_.push_back({std::string(text), state_.textPosition, QRectF(anchor, QSizeF(0, 0))});
    return;
  }
  const QString shown = shownText(text);
  QFont textFont = fontForText(font(), shown);
  // Coloured fringes would not survive a copy of the picture to another screen.
  textFont.setStyleStrategy(
      static_cast<QFont::StyleStrategy>(textFont.styleStrategy() | QFont::NoSubpixelAntialias));
  const QFontMetricsF metrics(textFont, &textDevice());
  const double units = textUnits();
  const double width = metrics.horizontalAdvance(shown);
  // The cell of the text, and what sticks out of it.
  const QRectF measured = QRectF(0, 0, width, metrics.height())
                              .united(metrics.boundingRect(shown).translated(0, metrics.ascent()));
  const QRectF cell(measured.topLeft() / units, measured.size() / units);
  const QPointF place = textsStay_
                            ? anchor
                            : textPlace({size_, pixelRatio_, anchor, cell,
                                         textGap_ * metrics.horizontalAdvance(QLatin1Char(' ')) / units,
                                         metrics.lineSpacing() / units},
                                        textRectangles_);
  drawText(place + QPointF(0, metrics.ascent() / units), shown, width / units, textFont);
  textRectangles_.push_back({std::string(text), state_.textPosition, cell.translated(place)});
}

}  // namespace zel
