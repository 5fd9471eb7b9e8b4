#include "canvas/qt/text_places.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace zel {
namespace {

// Logical pixels that arithmetic may leave of "exactly there".
constexpr double kRounding = 1e-6;

// Whether two texts would be drawn over each other, or read as one for want of a gap between them.
bool overlaps(const QRectF& a, const QRectF& b, double gap) {
  return a.left() < b.right() + gap - kRounding && b.left() < a.right() + gap - kRounding &&
         a.top() < b.bottom() - kRounding && b.top() < a.bottom() - kRounding;
}

// Where a stretch from first to last around its anchor comes within 0 to size, moved by as few whole pixels
// as will do. What is too long keeps its beginning.
double movedInside(double anchor, double first, double last, double size) {
  return std::max(std::min(anchor, std::floor(size - last)), std::ceil(-first));
}

QPointF placeInside(const TextToPlace& text) {
  const double ratio = text.pixelRatio;
  const auto inside = [ratio](double anchor, double first, double last, double size) {
    return movedInside(anchor * ratio, first * ratio, last * ratio, size * ratio) / ratio;
  };
  return {inside(text.anchor.x(), text.cell.left(), text.cell.right(), text.picture.width()),
          inside(text.anchor.y(), text.cell.top(), text.cell.bottom(), text.picture.height())};
}

// The least way right, down or both, in whole device pixels, that leads off all texts before; none where the
// text is free, and none where there is no room so near. To the right three lines' heights are near enough:
// a number of four digits is that wide.
QPointF stepAside(const QRectF& cell, const TextToPlace& text, const std::vector<TextRectangle>& others) {
  std::vector<double> rights{0};
  std::vector<double> downs{0};
  const auto wholePixels = [&text](double way) {
    return std::ceil(way * text.pixelRatio - kRounding) / text.pixelRatio;
  };
  const double mostDown = wholePixels(text.line);
  const double mostRight = 3 * mostDown;
  for (const TextRectangle& other : others) {
    const double right = wholePixels(other.rectangle.right() + text.blank - cell.left());
    const double down = wholePixels(other.rectangle.bottom() - cell.top());
    if (right > 0 && right <= mostRight) rights.push_back(right);
    if (down > 0 && down <= mostDown) downs.push_back(down);
  }
  const auto isFree = [&](QPointF way) {
    const QRectF there = cell.translated(way);
    return there.right() <= text.picture.width() + kRounding &&
           there.bottom() <= text.picture.height() + kRounding &&
           std::none_of(others.begin(), others.end(), [&](const TextRectangle& other) {
             return overlaps(there, other.rectangle, text.blank);
           });
  };
  std::optional<QPointF> least;
  for (const double right : rights)
    for (const double down : downs)
      if ((!least || right + down < least->x() + least->y()) && isFree({right, down}))
        least = QPointF(right, down);
  return least.value_or(QPointF(0, 0));
}

}  // namespace

QPointF textPlace(const TextToPlace& text, const std::vector<TextRectangle>& others) {
  const QPointF corner = placeInside(text);
  return corner + stepAside(text.cell.translated(corner), text, others);
}

}  // namespace zel
