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
constexpr double kSmallestSeen = 12;  // pixels: what terrain is smaller has a box around it
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

constexpr double kRowGap = 3;         // between rows
constexpr double kTextGap = 8;        // between a sample and its text
constexpr double kVerdictWidth = 30;  // of a link's sample
constexpr double kLowestOfMap = 0.5;  // of the map's height that a tall legend takes at most

// A row below the bar.
struct LegendRow {
  QString text;
  enum class Kind { kVoid, kOutside, kLink } kind = Kind::kVoid;
  PathVerdict verdict = PathVerdict::kUnknown;  // of kLink
};

// Those that are left away first come last.
std::vector<LegendRow> rowsOf(const LegendWish& wish) {
  using Kind = LegendRow::Kind;
  std::vector<LegendRow> rows;
  if (wish.voids) rows.push_back({QStringLiteral("No height"), Kind::kVoid});
  if (wish.outside) rows.push_back({QStringLiteral("No terrain"), Kind::kOutside});
  const auto link = [&](PathVerdict verdict, const QString& words) {
    if (wish.verdicts.at(static_cast<std::size_t>(verdict))) rows.push_back({words, Kind::kLink, verdict});
  };
  link(PathVerdict::kBlocked, QStringLiteral("Blocked link"));
  link(PathVerdict::kMarginal, QStringLiteral("Marginal link"));
  link(PathVerdict::kClear, QStringLiteral("Clear link"));
  link(PathVerdict::kUnknown, QStringLiteral("No verdict"));
  return rows;
}

void paintSwatch(QPainter& painter, const QRectF& place, bool isVoid) {
  painter.fillRect(place, QColor::fromRgb(isVoid ? kVoidColour : kOutsideColour));
  if (isVoid) painter.fillRect(place, QBrush(QColor::fromRgb(kVoidHatch), Qt::BDiagPattern));
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

// What the legend has, and how large it is.
struct LegendPlan {
  double bar = 0;  // height; 0 without
  std::vector<LegendEntry> entries;
  std::vector<LegendRow> rows;
  double sample = kBarWidth;  // width of the widest sample of a row
  double width = 0, height = 0;

  bool empty() const { return bar <= 0 && rows.empty(); }
};

LegendPlan legendPlan(const MapFrame& frame, const LegendWish& wish, const QFontMetricsF& metrics) {
  const double line = std::ceil(metrics.height()), rowHeight = line + kRowGap;
  LegendPlan plan;
  plan.rows = rowsOf(wish);
  const auto heightOfRows = [&] { return static_cast<double>(plan.rows.size()) * rowHeight; };
  // The texts at the ends of the bar reach over it by half a line.
  const double shortest = wish.heights ? kShortestBar + line : 0;
  const double most = frame.height() - 2 * kEdge - 2 * kPadding;
  while (!plan.rows.empty() && shortest + heightOfRows() > most) plan.rows.pop_back();
  if (wish.heights && shortest <= most) {
    const double wanted = kLowestOfMap * frame.height() - 2 * kPadding - heightOfRows() - line;
    plan.bar = std::clamp(wanted, kShortestBar, kTallestBar);
    plan.entries = legendEntries(wish.scale, wish.imperial, static_cast<int>(plan.bar / (line * 1.4)) + 1);
  }
  double texts = 0;
  for (const LegendEntry& entry : plan.entries) {
    texts = std::max(texts, kBarWidth + kTextGap + metrics.horizontalAdvance(qText(entry.text)));
  }
  for (const LegendRow& row : plan.rows) {
    if (row.kind == LegendRow::Kind::kLink) plan.sample = kVerdictWidth;
  }
  for (const LegendRow& row : plan.rows) {
    texts = std::max(texts, plan.sample + kTextGap + metrics.horizontalAdvance(row.text));
  }
  plan.width = std::ceil(texts) + 2 * kPadding;
  plan.height = 2 * kPadding + (plan.bar > 0 ? plan.bar + line : 0) + heightOfRows();
  if (plan.width > frame.width() / 2) return {};
  return plan;
}

}  // namespace

QRectF paintLegend(QPainter& painter, const MapFrame& frame, const LegendWish& wish) {
  const QFontMetricsF metrics(painter.font());
  const double line = std::ceil(metrics.height());
  const LegendPlan plan = legendPlan(frame, wish, metrics);
  if (plan.empty()) return {};
  const QRectF place(frame.width() - kEdge - plan.width, frame.height() - kEdge - plan.height, plan.width,
                     plan.height);
  panel(painter, place);
  double y = place.top() + kPadding;
  const double x = place.left() + kPadding;
  if (plan.bar > 0) {
    const QRectF ramp(std::round(x) + 0.5, std::round(y + line / 2) + 0.5, kBarWidth, std::round(plan.bar));
    paintRamp(painter, ramp);
    for (const LegendEntry& entry : plan.entries) {
      const double at = ramp.bottom() - entry.fraction * ramp.height();
      painter.setPen(kPanelInk);
      painter.drawLine(QPointF(ramp.right(), at), QPointF(ramp.right() + 4, at));
      painter.drawText(QPointF(ramp.right() + kTextGap, at + (metrics.ascent() - metrics.descent()) / 2),
                       qText(entry.text));
    }
    y += plan.bar + line;
  }
  for (const LegendRow& row : plan.rows) {
    y += kRowGap;
    if (row.kind == LegendRow::Kind::kLink) {
      paintVerdictSample(painter, QRectF(std::round(x), std::round(y), plan.sample, line), row.verdict);
    } else {
      paintSwatch(painter, QRectF(std::round(x) + 0.5, std::round(y) + 1.5, kBarWidth, line - 4),
                  row.kind == LegendRow::Kind::kVoid);
    }
    painter.setPen(kPanelInk);
    painter.drawText(QPointF(x + plan.sample + kTextGap, y + metrics.ascent()), row.text);
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

void paintCoverageMarks(QPainter& painter, const MapFrame& frame, const std::vector<WorldArea>& rasters) {
  painter.setPen(QPen(kOutline, 1.5));
  for (const PixelBox& mark : coverageMarks(frame, rasters, kSmallestSeen)) {
    painter.drawRect(
        QRectF(std::floor(mark.left) + 0.5, std::floor(mark.top) + 0.5, mark.width, mark.height));
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
