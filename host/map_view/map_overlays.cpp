#include "map_view/map_overlays.h"

#include <QFontMetricsF>
#include <QLineF>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

#include "map/link_lines.h"

namespace zel::host {

namespace {

constexpr double kEdge = 8;     // pixels between the panels and the map's edge
constexpr double kPadding = 6;  // within a panel
constexpr double kBarWidth = 16;
constexpr double kTallestBar = 200, kShortestBar = 36;
constexpr QSizeF kLegendMap(360, 240);  // a smaller map has no room for a legend
constexpr double kLongestScaleBar = 160;
constexpr QColor kPanel(255, 255, 255, 225), kPanelRim(90, 96, 102, 150), kPanelInk(24, 30, 36);
constexpr QColor kMeridian(20, 30, 45, 85);
constexpr QColor kOutline(106, 27, 154);

QString qText(const std::string& text) { return QString::fromStdString(text); }

void panel(QPainter& painter, const QRectF& place) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(kPanelRim, 1));
  painter.setBrush(kPanel);
  painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setBrush(Qt::NoBrush);
}

// --- Legend ---

struct Swatch {
  QString text;
  bool isVoid = false;
};

std::vector<Swatch> swatchesOf(const LegendWish& wish) {
  std::vector<Swatch> swatches;
  if (wish.voids) swatches.push_back({QStringLiteral("No height"), true});
  if (wish.outside) swatches.push_back({QStringLiteral("No terrain"), false});
  return swatches;
}

void paintSwatch(QPainter& painter, const QRectF& place, const Swatch& swatch) {
  painter.fillRect(place, QColor::fromRgb(swatch.isVoid ? kVoidColour : kOutsideColour));
  if (swatch.isVoid) painter.fillRect(place, QBrush(QColor::fromRgb(kVoidHatch), Qt::BDiagPattern));
  painter.setPen(QPen(kPanelRim, 1));
  painter.drawRect(place);
}

// The colours of the scale, the highest at the top.
void paintRamp(QPainter& painter, const QRectF& bar) {
  const auto& colours = heightColours();
  QImage ramp(1, kShades, QImage::Format_RGB32);
  for (int i = 0; i < kShades; ++i) ramp.setPixel(0, kShades - 1 - i, colours[static_cast<std::size_t>(i)]);
  painter.drawImage(bar, ramp);
  painter.setPen(QPen(kPanelRim, 1));
  painter.drawRect(bar);
}

double widestText(const QFontMetricsF& metrics, const std::vector<LegendEntry>& entries,
                  const std::vector<Swatch>& swatches) {
  double widest = 0;
  for (const LegendEntry& entry : entries) {
    widest = std::max(widest, metrics.horizontalAdvance(qText(entry.text)));
  }
  for (const Swatch& swatch : swatches) widest = std::max(widest, metrics.horizontalAdvance(swatch.text));
  return std::ceil(widest);
}

}  // namespace

QRectF paintLegend(QPainter& painter, const MapFrame& frame, const LegendWish& wish) {
  if (frame.width() < kLegendMap.width() || frame.height() < kLegendMap.height()) return {};
  const QFontMetricsF metrics(painter.font());
  const double line = std::ceil(metrics.height());
  const std::vector<Swatch> swatches = swatchesOf(wish);
  const double below = static_cast<double>(swatches.size()) * (line + 3);
  // Half the map at most, and the texts at the ends of the bar reach over it by half a line.
  const double room = frame.height() / 2 - below - 2 * kPadding - line;
  const double bar = wish.heights ? std::min(room, kTallestBar) : 0;
  const bool barFits = bar >= kShortestBar;
  if (!barFits && (wish.heights || swatches.empty())) return {};
  std::vector<LegendEntry> entries;
  if (barFits) entries = legendEntries(wish.scale, wish.imperial, static_cast<int>(bar / (line * 1.4)) + 1);
  const double width = kPadding * 2 + kBarWidth + 8 + widestText(metrics, entries, swatches);
  const double height = kPadding * 2 + (barFits ? bar + line : 0) + below;
  if (width > frame.width() / 2 || height > frame.height() - 2 * kEdge) return {};
  const QRectF place(frame.width() - kEdge - width, frame.height() - kEdge - height, width, height);
  panel(painter, place);
  double y = place.top() + kPadding;
  const double x = place.left() + kPadding;
  if (barFits) {
    const QRectF ramp(std::round(x) + 0.5, std::round(y + line / 2) + 0.5, kBarWidth, std::round(bar));
    paintRamp(painter, ramp);
    for (const LegendEntry& entry : entries) {
      const double at = ramp.bottom() - entry.fraction * ramp.height();
      painter.setPen(kPanelInk);
      painter.drawLine(QPointF(ramp.right(), at), QPointF(ramp.right() + 4, at));
      painter.drawText(QPointF(ramp.right() + 8, at + (metrics.ascent() - metrics.descent()) / 2),
                       qText(entry.text));
    }
    y += bar + line;
  }
  for (const Swatch& swatch : swatches) {
    y += 3;
    paintSwatch(painter, QRectF(std::round(x) + 0.5, std::round(y) + 1.5, kBarWidth, line - 4), swatch);
    painter.setPen(kPanelInk);
    painter.drawText(QPointF(x + kBarWidth + 8, y + metrics.ascent()), swatch.text);
    y += line;
  }
  return place;
}

QRectF paintScaleBar(QPainter& painter, const MapFrame& frame, bool bar, bool imperial, const QString& line) {
  const QFontMetricsF metrics(painter.font());
  const double lineHeight = std::ceil(metrics.height());
  const double most = std::min(kLongestScaleBar, frame.width() / 3);
  const ScaleBar scale = bar ? scaleBar(frame, imperial, most) : ScaleBar();
  const bool withBar = bar && scale.pixels > 0;
  if (!withBar && line.isEmpty()) return {};
  const double barText = withBar ? metrics.horizontalAdvance(qText(scale.text)) : 0;
  const double lineWidth = line.isEmpty() ? 0 : metrics.horizontalAdvance(line);
  const double width = std::ceil(std::max({scale.pixels, barText, lineWidth})) + 2 * kPadding + 1;
  const double barHeight = withBar ? lineHeight + 8 : 0;
  const double height = barHeight + (line.isEmpty() ? 0 : lineHeight) + 2 * kPadding;
  const QRectF place(kEdge, frame.height() - kEdge - height, width, height);
  panel(painter, place);
  painter.setPen(kPanelInk);
  const double x = place.left() + kPadding;
  double y = place.top() + kPadding;
  if (withBar) {
    painter.drawText(QPointF(x, y + metrics.ascent()), qText(scale.text));
    const double top = std::round(y + lineHeight) + 2.5, left = std::round(x) + 0.5;
    const double right = left + scale.pixels;
    painter.setPen(QPen(kPanelInk, 2, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.drawPolyline(QPolygonF(
        {QPointF(left, top - 2), QPointF(left, top + 3), QPointF(right, top + 3), QPointF(right, top - 2)}));
    y += barHeight;
  }
  painter.setPen(kPanelInk);
  if (!line.isEmpty()) painter.drawText(QPointF(x, y + metrics.ascent()), line);
  return place;
}

void paintGraticule(QPainter& painter, MapText& text, const MapFrame& frame, AngleFormat format,
                    const std::vector<QRectF>& panels) {
  const std::vector<GraticuleLine> lines = graticule(frame, format);
  painter.setPen(QPen(kMeridian, 1));
  for (const GraticuleLine& line : lines) {
    const double at = std::floor(line.pixel) + 0.5;
    if (line.meridian) {
      painter.drawLine(QPointF(at, 0), QPointF(at, frame.height()));
    } else {
      painter.drawLine(QPointF(0, at), QPointF(frame.width(), at));
    }
  }
  // Texts beside their lines: at the top, and at the left. In the corner the meridian's has the room.
  const QRectF whole(0, 0, frame.width(), frame.height());
  const double corner = text.size(QStringLiteral("0")).height() + 2;
  for (const GraticuleLine& line : lines) {
    const QString words = qText(line.text);
    const QSizeF size = text.size(words);
    const QRectF place(
        line.meridian ? QPointF(line.pixel + 2, 1) : QPointF(3, std::max(0.0, line.pixel - size.height())),
        size);
    const bool free = std::none_of(panels.begin(), panels.end(),
                                   [&place](const QRectF& panel) { return panel.intersects(place); });
    if (free && whole.contains(place) && (line.meridian || place.top() >= corner)) {
      text.draw(painter, place.topLeft(), words);
    }
  }
}

void paintCoverage(QPainter& painter, const MapFrame& frame, const std::vector<TerrainCoverage>& rasters) {
  painter.setPen(QPen(kOutline, 1.5, Qt::DashLine));
  for (const TerrainCoverage& raster : rasters) {
    const TerrainExtent& extent = raster.extent;
    // Lines go the short way round, so a side is parted into pieces of far less than half the earth.
    const int pieces = std::max(2, static_cast<int>(std::ceil((extent.east - extent.west) / 60)));
    std::vector<Position> ring;
    for (int i = 0; i <= pieces; ++i)
      ring.push_back({extent.north, extent.west + (extent.east - extent.west) * i / pieces});
    for (int i = pieces; i >= 0; --i)
      ring.push_back({extent.south, extent.west + (extent.east - extent.west) * i / pieces});
    ring.push_back(ring.front());
    for (const PixelLine& piece : pixelLines(frame, ring, 4)) {
      QPolygonF line;
      for (const MapPoint& point : piece.points) line.append(QPointF(point.x, point.y));
      painter.drawPolyline(line);
    }
  }
}

void paintCrosshair(QPainter& painter, const MapFrame& frame) {
  const QPointF middle(std::floor(frame.width() / 2) + 0.5, std::floor(frame.height() / 2) + 0.5);
  const auto strokes = [&](const QPen& pen) {
    painter.setPen(pen);
    for (const QPointF& way : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
      painter.drawLine(QLineF(middle + way * 5, middle + way * 14));
    }
  };
  strokes(QPen(QColor(255, 255, 255, 230), 4, Qt::SolidLine, Qt::SquareCap));
  strokes(QPen(kPanelInk, 2, Qt::SolidLine, Qt::FlatCap));
}

}  // namespace zel::host
