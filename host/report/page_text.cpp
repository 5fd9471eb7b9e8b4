#include "report/page_text.h"

#include <QFontMetricsF>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace zel::host {
namespace {

constexpr double kMmPerPoint = 25.4 / 72;

QTextOption optionOf(bool wrapped) {
  QTextOption option;
  option.setWrapMode(wrapped ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
  // A name of another direction stays on its side of the page.
  option.setTextDirection(Qt::LeftToRight);
  option.setAlignment(Qt::AlignLeft);
  return option;
}

// A text of one line, cut in the order in which it is read.
QString cutText(const QFont& font, QPaintDevice* device, const QString& text, double width) {
  return QFontMetricsF(font, device).elidedText(text, Qt::ElideRight, width);
}

}  // namespace

QFont PageText::font(const TextStyle& style) const {
  QFont font;
  font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
  font.setStyleHint(QFont::SansSerif);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(style.points * kMmPerPoint * units_))));
  font.setBold(style.bold);
  return font;
}

double PageText::lineHeight(const TextStyle& style) const {
  return QFontMetricsF(font(style), painter_.device()).lineSpacing() / units_;
}

double PageText::width(const QString& text, const TextStyle& style) const {
  return QFontMetricsF(font(style), painter_.device()).horizontalAdvance(text) / units_;
}

double PageText::lay(const PageBox& box, const QString& text, const TextStyle& style, int mostLines,
                     bool draw) const {
  if (text.isEmpty() || mostLines < 1) return 0;
  const QFont used = font(style);
  const double wide = box.width * units_, tall = lineHeight(style) * units_;
  QTextLayout layout(text, used, painter_.device());
  layout.setTextOption(optionOf(true));
  layout.setCacheEnabled(false);
  layout.beginLayout();
  int lines = 0;
  qsizetype lastFrom = 0;
  bool more = false;
  while (true) {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(wide);
    // Texts in other scripts have lines of other heights; they stand in this one's.
    line.setPosition(QPointF(0, lines * tall));
    lastFrom = line.textStart();
    if (++lines < mostLines) continue;
    more = line.textStart() + line.textLength() < text.size();
    break;
  }
  layout.endLayout();
  if (!draw) return lines * tall / units_;
  const QPointF corner(box.left * units_, box.top * units_);
  painter_.setPen(style.colour);
  const int whole = more ? lines - 1 : lines;
  for (int i = 0; i < whole; ++i) layout.lineAt(i).draw(&painter_, corner);
  if (more) {
    // What does not fit is at least a character too wide, so that an ellipsis comes.
    QString rest = text.mid(lastFrom);
    QString cut = cutText(used, painter_.device(), rest, wide);
    if (cut == rest) cut = rest + QChar(0x2026);
    QTextLayout last(cut, used, painter_.device());
    last.setTextOption(optionOf(false));
    last.beginLayout();
    QTextLine line = last.createLine();
    line.setLineWidth(wide);
    last.endLayout();
    last.draw(&painter_, corner + QPointF(0, (lines - 1) * tall));
  }
  return lines * tall / units_;
}

double PageText::height(const QString& text, const TextStyle& style, double width, int mostLines) const {
  return lay({0, 0, width, 0}, text, style, mostLines, false);
}

double PageText::paragraph(const PageBox& box, const QString& text, const TextStyle& style, int mostLines) {
  return lay(box, text, style, mostLines, true);
}

void PageText::line(const PageBox& box, const QString& text, const TextStyle& style,
                    Qt::AlignmentFlag align) {
  const QFont used = font(style);
  const double wide = box.width * units_;
  QTextLayout layout(cutText(used, painter_.device(), text, wide), used, painter_.device());
  layout.setTextOption(optionOf(false));
  layout.beginLayout();
  QTextLine line = layout.createLine();
  if (line.isValid()) line.setLineWidth(wide);
  layout.endLayout();
  if (!line.isValid()) return;
  const double spare = wide - line.naturalTextWidth();
  const double shift = align == Qt::AlignRight ? spare : align == Qt::AlignHCenter ? spare / 2 : 0.0;
  painter_.setPen(style.colour);
  layout.draw(&painter_, QPointF(box.left * units_ + shift, box.top * units_));
}

}  // namespace zel::host
