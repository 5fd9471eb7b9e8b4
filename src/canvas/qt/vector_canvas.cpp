#include "canvas/qt/vector_canvas.h"

#include <QColor>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace zel {
namespace {

constexpr double kLargestRadius = 1e7;  // logical pixels
constexpr Colour kColourBits = 0xFFFFFF;
// Places and metrics of texts on paper, and sizes of painted fonts, are whole numbers of this part of a
// logical pixel: 1/1440 inch.
constexpr int kTextParts = 15;
// Painted lines go through whole numbers of this part of a logical pixel, 1/5760 inch, which no eye tells
// from their places: a PDF is half as large.
constexpr int kLineParts = 60;
// Two numbers beside each other are not read as one.
constexpr double kBlanksBetweenTexts = 3;
constexpr double kTextSeam = 1.6;  // logical pixels around the letters

QColor colourOf(Colour colour) { return {colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF}; }

bool isFinite(QPointF point) { return std::isfinite(point.x()) && std::isfinite(point.y()); }

// A line as two parameters from 0, its beginning, to 1, its end.
struct Cut {
  double first = 0;
  double last = 1;

  // Leaves what lies from low to high.
  void keep(double from, double to, double low, double high) {
    const double way = to - from;
    if (way == 0) {
      if (from < low || from > high) last = -1;
      return;
    }
    const double one = (low - from) / way;
    const double other = (high - from) / way;
    first = std::max(first, std::min(one, other));
    last = std::min(last, std::max(one, other));
  }
};

// What is seen of a line. Numbers of any size are brought to those of the picture, which every reader can
// take.
std::optional<QLineF> visiblePart(const QLineF& line, const QRectF& view) {
  Cut cut;
  cut.keep(line.x1(), line.x2(), view.left(), view.right());
  cut.keep(line.y1(), line.y2(), view.top(), view.bottom());
  if (!(cut.first <= cut.last)) return std::nullopt;
  const auto at = [&line](double part) {
    return QPointF(line.x1() + (line.x2() - line.x1()) * part, line.y1() + (line.y2() - line.y1()) * part);
  };
  return QLineF(cut.first == 0 ? line.p1() : at(cut.first), cut.last == 1 ? line.p2() : at(cut.last));
}

QPointF inLineParts(QPointF point) {
  return {std::round(point.x() * kLineParts), std::round(point.y() * kLineParts)};
}

// So many pixels high as there are parts in the font's height.
QFont fontInParts(QFont font) {
  const double pixels =
      font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * PictureCanvas::kPixelsPerInch / 72;
  font.setPixelSize(std::max(qRound(pixels * kTextParts), 1));
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

class StrokePainter {
 public:
  // The pen's draw width of 1 and the thinnest stroke, logical pixels.
  StrokePainter(QPainter& painter, double pen, double thinnest)
      : painter_(painter), pen_(pen), thinnest_(thinnest) {}

  void operator()(const VectorLines& lines) {
    QPainterPath path;
    for (const std::vector<QPointF>& chain : lines.chains) {
      path.moveTo(inLineParts(chain.front()));
      for (std::size_t i = 1; i < chain.size(); ++i) path.lineTo(inLineParts(chain[i]));
    }
    QPen pen = penOf(lines.colour, lines.width);
    pen.setWidthF(pen.widthF() * kLineParts);
    painter_.save();
    painter_.scale(1.0 / kLineParts, 1.0 / kLineParts);
    painter_.strokePath(path, pen);
    painter_.restore();
  }
  void operator()(const VectorCircle& circle) {
    painter_.setPen(penOf(circle.outline, circle.width));
    painter_.setBrush(colourOf(circle.filling));
    painter_.drawEllipse(circle.centre, circle.radius, circle.radius);
  }
  // Smooth edges would let the ground shine through between two that touch.
  void operator()(const VectorRectangles& rectangles) {
    const bool smooth = painter_.testRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::Antialiasing, false);
    for (const QRectF& rectangle : rectangles.rectangles)
      painter_.fillRect(rectangle, colourOf(rectangles.colour));
    painter_.setRenderHint(QPainter::Antialiasing, smooth);
  }
  // In a large font on a small scale: letters have their exact widths at every size and resolution.
  void operator()(const VectorText& text) {
    painter_.save();
    painter_.translate(text.base);
    painter_.scale(1.0 / kTextParts, 1.0 / kTextParts);
    painter_.setFont(fontInParts(text.font));
    painter_.setPen(Qt::black);
    painter_.drawText(QPointF(0, 0), text.text);
    painter_.restore();
  }
  void seam(const VectorText& text) {
    QPainterPath letters;
    letters.addText(0, 0, fontInParts(text.font), text.text);
    painter_.save();
    painter_.translate(text.base);
    painter_.scale(1.0 / kTextParts, 1.0 / kTextParts);
    painter_.strokePath(letters,
                        {Qt::white, 2 * kTextSeam * kTextParts, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter_.restore();
  }
  void operator()(const VectorInset& inset) { inset.picture->paintOver(painter_, inset.rectangle); }

 private:
  QPen penOf(Colour colour, int width) const {
    return {colourOf(colour), std::max(width * pen_, thinnest_), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
  }

  QPainter& painter_;
  double pen_;
  double thinnest_;
};

// Of the painter's coordinates.
double devicePixel(const QPainter& painter) {
  const double area = std::abs(painter.deviceTransform().determinant());
  return area > 0 ? 1 / std::sqrt(area) : 0;
}

}  // namespace

VectorCanvas::VectorCanvas(QSize size) : VectorCanvas(size, false) {}

VectorCanvas::VectorCanvas(QSizeF size, PaperTexts texts) : VectorCanvas(size, true) {
  seams_ = texts == PaperTexts::kApart;
  if (seams_) {
    setTextGap(kBlanksBetweenTexts);
  } else {
    keepTextsInPlace();
  }
}

VectorCanvas::VectorCanvas(QSizeF size, bool onPaper)
    : onPaper_(onPaper), textDevice_(1, 1, QImage::Format_RGB32) {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  const int textParts = onPaper ? kTextParts : 1;
  textDevice_.setDotsPerMeterX(qRound(textParts * kPixelsPerInch * kInchesPerMetre));
  textDevice_.setDotsPerMeterY(qRound(textParts * kPixelsPerInch * kInchesPerMetre));
  startPicture(size, textParts);
}

void VectorCanvas::paint(QPainter& painter, const QRectF& rectangle) const {
  if (exactSize().isEmpty() || rectangle.isEmpty()) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rectangle, Qt::white);
  painter.restore();
  paintOver(painter, rectangle);
}

void VectorCanvas::paintOver(QPainter& painter, const QRectF& rectangle) const {
  const QSizeF size = exactSize();
  if (size.isEmpty() || rectangle.isEmpty()) return;
  painter.save();
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  painter.setClipRect(rectangle, Qt::IntersectClip);
  painter.translate(rectangle.topLeft());
  painter.scale(rectangle.width() / size.width(), rectangle.height() / size.height());
  StrokePainter strokePainter(painter, pen(), devicePixel(painter));
  for (const VectorStroke& stroke : strokes_) {
    if (const auto* text = seams_ ? std::get_if<VectorText>(&stroke) : nullptr) strokePainter.seam(*text);
    std::visit([&strokePainter](const auto& value) { strokePainter(value); }, stroke);
  }
  painter.restore();
}

std::shared_ptr<VectorCanvas> VectorCanvas::inset(CanvasPoint corner, CanvasPoint opposite) {
  const QPointF one = worldToPixel(corner);
  const QPointF other = worldToPixel(opposite);
  const bool isPlace = isFinite(one) && isFinite(other);
  const QRectF rectangle = isPlace ? QRectF(one, other).normalized() : QRectF();
  auto picture = std::make_shared<VectorCanvas>(rectangle.size(), PaperTexts::kApart);
  strokes_.emplace_back(VectorInset{rectangle, picture});
  return picture;
}

void VectorCanvas::line(double x1, double y1, double x2, double y2, Colour colour) {
  const QLineF whole(strokePoint({x1, y1}), strokePoint({x2, y2}));
  if (!isFinite(whole.p1()) || !isFinite(whole.p2()) || exactSize().isEmpty()) return;
  const int width = drawWidth();
  const auto seen =
      visiblePart(whole, QRectF(QPointF(0, 0), exactSize()).adjusted(-width, -width, width, width));
  if (!seen) return;
  const Colour drawn = penColour(colour);
  auto* last = strokes_.empty() ? nullptr : std::get_if<VectorLines>(&strokes_.back());
  if (!last || last->colour != drawn || last->width != width)
    last = &std::get<VectorLines>(strokes_.emplace_back(VectorLines{drawn, width, {}}));
  if (!last->chains.empty() && last->chains.back().back() == seen->p1())
    last->chains.back().push_back(seen->p2());
  else
    last->chains.push_back({seen->p1(), seen->p2()});
}

void VectorCanvas::circle(double x, double y, double radius) {
  const QPointF centre = strokePoint({x, y});
  const double pixels = std::abs(radius / state().scale.width() * exactSize().width());
  const double reach = pixels + drawWidth();
  if (!isFinite(centre) || !(pixels <= kLargestRadius) ||
      !QRectF(centre - QPointF(reach, reach), centre + QPointF(reach, reach))
           .intersects(QRectF(QPointF(0, 0), exactSize())))
    return;
  strokes_.emplace_back(
      VectorCircle{centre, pixels, penColour(kBlack), drawWidth(), penColour(state().fillColour)});
}

void VectorCanvas::fillRectangle(double x1, double y1, double x2, double y2, Colour colour) {
  const QPointF one = worldToPixel({x1, y1});
  const QPointF other = worldToPixel({x2, y2});
  if (!isFinite(one) || !isFinite(other)) return;
  const QRectF seen = QRectF(one, other).normalized() & QRectF(QPointF(0, 0), exactSize());
  if (seen.isEmpty()) return;
  const Colour drawn = penColour(colour);
  auto* last = strokes_.empty() ? nullptr : std::get_if<VectorRectangles>(&strokes_.back());
  if (!last || last->colour != drawn)
    last = &std::get<VectorRectangles>(strokes_.emplace_back(VectorRectangles{drawn, {}}));
  last->rectangles.push_back(seen);
}

void VectorCanvas::drawText(QPointF base, const QString& text, double width, const QFont& font) {
  strokes_.emplace_back(VectorText{base, text, width, font});
}

QPointF VectorCanvas::strokePoint(CanvasPoint world) const {
  const QPointF logical = worldToPixel(world);
  if (onPaper_) return onPaper(logical);
  const int fromBorder = fromBorderOf(drawWidth());
  const QPointF middle = drawWidth() % 2 == 0 ? QPointF(1, 1) : QPointF(0.5, 0.5);
  const auto inside = [fromBorder](double position, int size) {
    return insideBorder(position, position, size, size, fromBorder);
  };
  return QPointF(inside(logical.x(), size().width()), inside(logical.y(), size().height())) + middle;
}

// A border that a stroke is asked for on shows half of it; it moves in by that half.
QPointF VectorCanvas::onPaper(QPointF logical) const {
  const double half = drawWidth() * kPaperPen / 2;
  const auto whole = [half](double position, double size) {
    if (position < 0 || position > size) return position;
    return size < 2 * half ? size / 2 : std::clamp(position, half, size - half);
  };
  return {whole(logical.x(), exactSize().width()), whole(logical.y(), exactSize().height())};
}

Colour VectorCanvas::penColour(Colour colour) const {
  switch (state().drawMode) {
    case DrawMode::kBlackness:
      return kBlack;
    case DrawMode::kXorPen:
      return (colour ^ kWhite) & kColourBits;
    case DrawMode::kCopyPen:
      break;
  }
  return colour & kColourBits;
}

}  // namespace zel
