#include "report/link_plot.h"

#include <QSvgRenderer>
#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zel::host {
namespace {

constexpr double kPixelsPerMm = 4.4;  // of the plot: its texts then have some 7 points
constexpr double kLabelPoints = 6.5;

// The plot's labels are drawn as texts of the page, which can be searched; the toolkit would draw the
// picture's as outlines.
QByteArray withoutTexts(const std::string& svg) {
  QByteArray strokes;
  strokes.reserve(static_cast<qsizetype>(svg.size()));
  std::size_t at = 0;
  while (true) {
    const std::size_t begin = svg.find("<text", at);
    strokes.append(svg.data() + at, static_cast<qsizetype>(std::min(begin, svg.size()) - at));
    if (begin == std::string::npos) return strokes;
    const std::size_t end = svg.find("</text>", begin);
    if (end == std::string::npos) return strokes;
    at = end + std::string("</text>").size();
  }
}

void drawLabel(PageText& text, const PageBox& box, const PlotImage& plot, const PlotImageLabel& label) {
  const double xScale = box.width / plot.rectangle.width, yScale = box.height / plot.rectangle.height;
  TextStyle style;
  const QString words = QString::fromStdString(label.text);
  const double wide = label.rectangle.width * xScale, tall = label.rectangle.height * yScale;
  // As large as the picture's own, at whose size the places were found.
  style.points = kLabelPoints;
  const double natural = text.width(words, style);
  if (natural > wide && natural > 0) style.points *= wide / natural;
  const double line = text.lineHeight(style);
  PageBox place{box.left + label.rectangle.x * xScale, box.top + label.rectangle.y * yScale, wide, tall};
  // A seam, so that the lines of the plot do not run through the figures.
  text.painter().fillRect(text.rect(place), QColor(255, 255, 255, 215));
  place.top += (tall - line) / 2;
  place.width += 1;  // never cut
  text.line(place, words, style);
}

}  // namespace

PlotImage linkPlot(const Plan& plan, const Link& link, const LinkResult& result, const PageBox& box,
                   bool imperial) {
  const Station& from = plan.stations.at(link.from);
  const Station& to = plan.stations.at(link.to);
  PlotImageRequest request;
  request.from = from.position;
  request.to = to.position;
  request.fromHeight = from.antennaM;
  request.toHeight = to.antennaM;
  // Where no k is stored the window takes another than the figures do.
  request.k = result.k;
  request.frequencyMhz = result.frequencyMhz;
  request.units = imperial ? PlotUnits::kImperial : PlotUnits::kMetric;
  request.format = PictureFormat::kSvg;
  request.width = static_cast<std::int32_t>(std::lround(box.width * kPixelsPerMm));
  request.height = static_cast<std::int32_t>(std::lround(box.height * kPixelsPerMm));
  return renderPlotImage(request);
}

bool drawLinkPlot(PageText& text, const PageBox& box, const PlotImage& plot) {
  QSvgRenderer strokes(withoutTexts(plot.svg));
  if (!strokes.isValid()) return false;
  QPainter& painter = text.painter();
  painter.save();
  painter.setClipRect(text.rect(box));
  strokes.render(&painter, text.rect(box));
  for (const PlotImageLabel& label : plot.labels) drawLabel(text, box, plot, label);
  painter.restore();
  painter.setPen(QPen(QColor(0x80, 0x86, 0x8c), text.units() * 0.15));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(text.rect(box));
  return true;
}

std::string plotCaption(const PlotImage& plot) {
  char k[32], frequency[32];
  std::snprintf(k, sizeof k, "%.4g", plot.k);
  std::snprintf(frequency, sizeof frequency, "%.9g", plot.frequencyMhz);
  std::string caption = std::string("Profile: ground over the curved earth (k ") + k + "), line of sight";
  if (plot.fresnelPercent > 0)
    caption +=
        ", first Fresnel zone (" + std::to_string(plot.fresnelPercent) + " %) at " + frequency + " MHz";
  return caption + (plot.units == PlotUnits::kImperial ? "; heights in ft above sea level, distances in mi"
                                                       : "; heights in m above sea level, distances in km");
}

}  // namespace zel::host
