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

QPen penOf(Colour colour, int width) {
  return {colourOf(colour), static_cast<double>(width), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

class StrokePainter {
 public:
  StrokePainter(QPainter& painter, double dotsPerInch) : painter_(painter), dotsPerInch_(dotsPerInch) {}

  void operator()(const VectorLines& lines) {
    QPainterPath path;
    for (const std::vector<QPointF>& chain : lines.chains) {
      path.moveTo(chain.front());
      for (std::size_t i = 1; i < chain.size(); ++i) path.lineTo(chain[i]);
    }
    painter_.strokePath(path, penOf(lines.colour, lines.width));
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
  void operator()(const VectorText& text) {
    QFont font = text.font;
    // The painter's scale is the size of the picture alone; the device's resolution would come on top.
    if (font.pointSizeF() > 0)
      font.setPointSizeF(font.pointSizeF() * PictureCanvas::kPixelsPerInch / dotsPerInch_);
    font.setHintingPreference(QFont::PreferNoHinting);
    painter_.setFont(font);
    painter_.setPen(Qt::black);
    painter_.drawText(text.base, text.text);
  }

 private:
  QPainter& painter_;
  double dotsPerInch_;
};

}  // namespace

VectorCanvas::VectorCanvas(QSize size) : textDevice_(1, 1, QImage::Format_RGB32) {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  textDevice_.setDotsPerMeterX(qRound(kPixelsPerInch * kInchesPerMetre));
  textDevice_.setDotsPerMeterY(qRound(kPixelsPerInch * kInchesPerMetre));
  startPicture(size, 1);
}

void VectorCanvas::paint(QPainter& painter, const QRectF& rectangle) const {
  if (size().isEmpty() || rectangle.isEmpty()) return;
  painter.save();
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  painter.setClipRect(rectangle, Qt::IntersectClip);
  painter.fillRect(rectangle, Qt::white);
  painter.translate(rectangle.topLeft());
  painter.scale(rectangle.width() / size().width(), rectangle.height() / size().height());
  StrokePainter strokePainter(painter, painter.device()->logicalDpiY());
  for (const VectorStroke& stroke : strokes_)
    std::visit([&strokePainter](const auto& value) { strokePainter(value); }, stroke);
  painter.restore();
}

void VectorCanvas::line(double x1, double y1, double x2, double y2, Colour colour) {
  const QLineF whole(strokePoint({x1, y1}), strokePoint({x2, y2}));
  if (!isFinite(whole.p1()) || !isFinite(whole.p2()) || size().isEmpty()) return;
  const int width = drawWidth();
  const auto seen = visiblePart(whole, QRectF(QPointF(0, 0), size()).adjusted(-width, -width, width, width));
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
  const double pixels = std::abs(radius / state().scale.width() * size().width());
  const double reach = pixels + drawWidth();
  if (!isFinite(centre) || !(pixels <= kLargestRadius) ||
      !QRectF(centre - QPointF(reach, reach), centre + QPointF(reach, reach))
           .intersects(QRectF(QPointF(0, 0), size())))
    return;
  strokes_.emplace_back(
      VectorCircle{centre, pixels, penColour(kBlack), drawWidth(), penColour(state().fillColour)});
}

void VectorCanvas::fillRectangle(double x1, double y1, double x2, double y2, Colour colour) {
  const QPointF one = worldToPixel({x1, y1});
  const QPointF other = worldToPixel({x2, y2});
  if (!isFinite(one) || !isFinite(other)) return;
  const QRectF seen = QRectF(one, other).normalized() & QRectF(QPointF(0, 0), size());
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
  const int fromBorder = fromBorderOf(drawWidth());
  const QPointF middle = drawWidth() % 2 == 0 ? QPointF(1, 1) : QPointF(0.5, 0.5);
  const auto inside = [fromBorder](double position, int size) {
    return insideBorder(position, position, size, size, fromBorder);
  };
  return QPointF(inside(logical.x(), size().width()), inside(logical.y(), size().height())) + middle;
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
