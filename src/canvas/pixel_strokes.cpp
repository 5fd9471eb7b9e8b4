#include "canvas/pixel_strokes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace zel {
namespace {

constexpr std::uint32_t kOpaque = 0xFF000000;

std::uint32_t pixelOf(Colour colour) {
  const auto bgr = static_cast<std::uint32_t>(colour);
  return (bgr & 0xFF) << 16 | (bgr & 0xFF00) | (bgr >> 16 & 0xFF);
}

// Every mode leaves (old AND keep) XOR change.
class Brush {
 public:
  explicit Brush(PixelPen pen) {
    switch (pen.mode) {
      case DrawMode::kBlackness:
        change_ = kOpaque;
        break;
      case DrawMode::kXorPen:
        keep_ = ~std::uint32_t{0};
        change_ = pixelOf(pen.colour);
        break;
      case DrawMode::kCopyPen:
        change_ = kOpaque | pixelOf(pen.colour);
        break;
    }
  }

  void paint(std::uint32_t& pixel) const { pixel = (pixel & keep_) ^ change_; }

 private:
  std::uint32_t keep_ = 0;
  std::uint32_t change_ = 0;
};

// The whole numbers of [first, last] that are within 0 to size - 1; none of NaN.
struct Range {
  int first = 0;
  int last = -1;
};

Range visible(double first, double last, int size) {
  if (!(first < size) || !(last >= 0)) return {};
  const double start = std::max(first, 0.0);
  const int below = static_cast<int>(start);
  return {below < start ? below + 1 : below, static_cast<int>(std::min(last, size - 1.0))};
}

void paintSpan(const PixelRows& picture, int y, double first, double last, const Brush& brush) {
  const Range columns = visible(first, last, picture.width);
  std::uint32_t* row = picture.pixels + y * picture.pitch;
  for (int x = columns.first; x <= columns.last; ++x) brush.paint(row[x]);
}

// The middle of a pen of an even width lies between pixels.
double middle(double position, int width) { return width % 2 == 0 ? position + 0.5 : position; }

// Farther out no pixel tells the difference, and the squares of distances stay finite.
double withinReach(double position) {
  constexpr double kFarthest = 1e100;
  return std::clamp(position, -kFarthest, kFarthest);
}

// A line as position across over position along: |slope| <= 1.
struct Run {
  double fromAlong;
  double fromAcross;
  double toAlong;
  double toAcross;
};

// One pixel at each visible place along the line.
void paintRun(Run run, int sizeAlong, int sizeAcross, std::ptrdiff_t stepAlong, std::ptrdiff_t stepAcross,
              std::uint32_t* pixels, const Brush& brush) {
  // The order of the ends must not decide which of two equally near pixels is taken.
  if (run.fromAlong > run.toAlong) run = {run.toAlong, run.toAcross, run.fromAlong, run.fromAcross};
  const double length = run.toAlong - run.fromAlong;
  const double slope = length > 0 ? (run.toAcross - run.fromAcross) / length : 0;
  if (std::max(run.fromAcross, run.toAcross) < 0 || std::min(run.fromAcross, run.toAcross) >= sizeAcross)
    return;
  // To the nearest pixel, halves up, also where the rounding of the slope leaves a half a hair too low.
  constexpr double kHalf = 0.5 + 1e-7;
  const Range along = visible(run.fromAlong, run.toAlong, sizeAlong);
  for (int i = along.first; i <= along.last; ++i) {
    const double across = run.fromAcross + (i - run.fromAlong) * slope + kHalf;
    if (across >= 0 && across < sizeAcross)
      brush.paint(pixels[i * stepAlong + static_cast<int>(across) * stepAcross]);
  }
}

void strokeThinLine(const PixelRows& picture, PixelPoint from, PixelPoint to, const Brush& brush) {
  if (std::abs(to.x - from.x) >= std::abs(to.y - from.y)) {
    paintRun({from.x, from.y, to.x, to.y}, picture.width, picture.height, 1, picture.pitch, picture.pixels,
             brush);
  } else {
    paintRun({from.y, from.x, to.y, to.x}, picture.height, picture.width, picture.pitch, 1, picture.pixels,
             brush);
  }
}

// What a convex shape covers of a row.
struct RowCover {
  double first = std::numeric_limits<double>::infinity();
  double last = -std::numeric_limits<double>::infinity();

  void add(double from, double to) {
    first = std::min(first, from);
    last = std::max(last, to);
  }
  void addDisc(PixelPoint centre, double radius, double y) {
    const double rise = std::abs(y - centre.y);
    if (rise >= radius) return;
    const double half = std::sqrt((radius - rise) * (radius + rise));
    add(centre.x - half, centre.x + half);
  }
};

// One side of a shape, a level one left out: it adds nothing to the ends of the others.
class Edge {
 public:
  Edge(PixelPoint a, PixelPoint b)
      : top_(std::min(a.y, b.y)), bottom_(std::max(a.y, b.y)), start_(a), slope_((b.x - a.x) / (b.y - a.y)) {}

  void addTo(RowCover& cover, double y) const {
    if (top_ == bottom_ || y < top_ || y > bottom_) return;
    const double x = start_.x + (y - start_.y) * slope_;
    cover.add(x, x);
  }

 private:
  double top_;
  double bottom_;
  PixelPoint start_;
  double slope_;
};

// The pixels nearer to the line than half the width.
void strokeWideLine(const PixelRows& picture, PixelPoint from, PixelPoint to, int width, const Brush& brush) {
  if (from.y > to.y || (from.y == to.y && from.x > to.x)) std::swap(from, to);
  const double half = width / 2.0;
  if (!(std::min(from.x, to.x) - half <= picture.width) || !(std::max(from.x, to.x) + half >= 0)) return;

  const double along = to.x - from.x;
  const double down = to.y - from.y;
  const double length = std::sqrt(along * along + down * down);
  const double sideX = length > 0 ? -down / length * half : 0;
  const double sideY = length > 0 ? along / length * half : 0;
  const PixelPoint fromLeft{from.x + sideX, from.y + sideY};
  const PixelPoint fromRight{from.x - sideX, from.y - sideY};
  const PixelPoint toLeft{to.x + sideX, to.y + sideY};
  const PixelPoint toRight{to.x - sideX, to.y - sideY};
  const std::array<Edge, 4> edges{Edge(fromLeft, toLeft), Edge(fromRight, toRight), Edge(fromLeft, fromRight),
                                  Edge(toLeft, toRight)};
  const Range rows = visible(from.y - half, to.y + half, picture.height);
  for (int y = rows.first; y <= rows.last; ++y) {
    RowCover cover;
    cover.addDisc(from, half, y);
    cover.addDisc(to, half, y);
    for (const Edge& edge : edges) edge.addTo(cover, y);
    paintSpan(picture, y, cover.first, cover.last, brush);
  }
}

}  // namespace

void strokeLine(const PixelRows& picture, PixelPoint from, PixelPoint to, int width, PixelPen pen) {
  const Brush brush(pen);
  from = {withinReach(from.x), withinReach(from.y)};
  to = {withinReach(to.x), withinReach(to.y)};
  if (width <= 1) {
    strokeThinLine(picture, from, to, brush);
  } else {
    strokeWideLine(picture, {middle(from.x, width), middle(from.y, width)},
                   {middle(to.x, width), middle(to.y, width)}, width, brush);
  }
}

void strokeCircle(const PixelRows& picture, PixelPoint centre, double radius, int width, PixelPen outline,
                  PixelPen filling) {
  centre = {withinReach(centre.x), withinReach(centre.y)};
  radius = withinReach(radius);
  const Brush outlineBrush(outline);
  const Brush fillingBrush(filling);
  const PixelPoint middlePoint{middle(centre.x, width), middle(centre.y, width)};
  const double outer = radius + width / 2.0;
  const double inner = radius - width / 2.0;
  const Range rows = visible(middlePoint.y - outer, middlePoint.y + outer, picture.height);
  for (int y = rows.first; y <= rows.last; ++y) {
    RowCover whole;
    whole.addDisc(middlePoint, outer, y);
    RowCover within;
    within.addDisc(middlePoint, inner, y);
    if (within.first <= within.last) {
      const double firstWithin = std::ceil(within.first);
      const double lastWithin = std::floor(within.last);
      paintSpan(picture, y, whole.first, firstWithin - 1, outlineBrush);
      paintSpan(picture, y, firstWithin, lastWithin, fillingBrush);
      paintSpan(picture, y, lastWithin + 1, whole.last, outlineBrush);
    } else {
      paintSpan(picture, y, whole.first, whole.last, outlineBrush);
    }
  }
}

void fillPixels(const PixelRows& picture, PixelPoint leftTop, PixelPoint rightBottom, PixelPen pen) {
  const Brush brush(pen);
  const Range rows = visible(leftTop.y, rightBottom.y - 1, picture.height);
  for (int y = rows.first; y <= rows.last; ++y) paintSpan(picture, y, leftTop.x, rightBottom.x - 1, brush);
}

}  // namespace zel
