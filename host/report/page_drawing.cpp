#include "report/page_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "map_view/plan_painter.h"
#include "report/link_plot.h"

namespace zel::host {
namespace {

constexpr QColor kGrey(0x5a, 0x5f, 0x66), kRule(0x9a, 0xa0, 0xa6), kStripe(0xf2, 0xf4, 0xf6);
const TextStyle kTitle{15, true, {0x18, 0x1e, 0x24}};
const TextStyle kPlan{8.5, false, kGrey};
const TextStyle kStationName{9.5, true, {0x18, 0x1e, 0x24}};
const TextStyle kPlain{8, false, {0x18, 0x1e, 0x24}};
const TextStyle kLabel{8, false, kGrey};
const TextStyle kSmall{6.5, false, {0x30, 0x36, 0x3c}};
const TextStyle kCaption{7, false, kGrey};
const TextStyle kFailure{9, false, {0xa0, 0x14, 0x14}};
constexpr int kTitleLines = 2, kNameLines = 4, kValueLines = 3, kNoteLines = 4;
constexpr int kCaptionLines = 2;
constexpr double kColumnGap = 6;   // millimetres between the columns
constexpr double kLabelWide = 25;  // of a column's labels, or more where the font is wide
constexpr double kLabelGap = 1;    // between a label and its value
constexpr double kValueGap = 0.5;
constexpr double kNoteIndent = 2.5;

QString qt(const std::string& text) { return QString::fromStdString(text); }

void rule(PageText& text, double left, double right, double y) {
  text.painter().setPen(QPen(kRule, text.units() * 0.15));
  text.painter().drawLine(QPointF(left * text.units(), y * text.units()),
                          QPointF(right * text.units(), y * text.units()));
}

PageBox half(const PageBox& box, bool right) {
  const double width = (box.width - kColumnGap) / 2;
  return {box.left + (right ? width + kColumnGap : 0), box.top, width, box.height};
}

// A walk down a column. Without drawing it only measures.
class Column {
 public:
  Column(PageText& text, const PageBox& box, bool draw) : text_(text), box_(box), draw_(draw) {}

  void paragraph(const QString& words, const TextStyle& style, int mostLines, double indent = 0) {
    const PageBox place{box_.left + indent, y(), box_.width - indent, 0};
    used_ += draw_ ? text_.paragraph(place, words, style, mostLines)
                   : text_.height(words, style, place.width, mostLines);
  }
  void gap(double millimetres) { used_ += millimetres; }
  double y() const { return box_.top + used_; }
  double used() const { return used_; }

 private:
  PageText& text_;
  PageBox box_;
  bool draw_;
  double used_ = 0;
};

double stationColumn(PageText& text, const PageBox& box, const char* title, const StationTexts& station,
                     bool draw) {
  Column column(text, box, draw);
  column.paragraph(QString::fromLatin1(title), kLabel, 1);
  column.paragraph(qt(station.name), kStationName, kNameLines);
  column.paragraph(qt(station.position), kPlain, 2);
  column.paragraph(QStringLiteral("Antenna ") + qt(station.antenna), kPlain, 2);
  if (!station.ground.empty()) column.paragraph(QStringLiteral("Ground ") + qt(station.ground), kPlain, 1);
  return column.used();
}

double head(PageText& text, const PageBox& box, const QString& title, const QString& below, bool draw) {
  Column column(text, box, draw);
  column.paragraph(title, kTitle, kTitleLines);
  column.paragraph(below, kPlan, 1);
  column.gap(1.5);
  if (draw) rule(text, box.left, box.right(), column.y());
  column.gap(1.5);
  return column.used();
}

double linkHead(PageText& text, const PageBox& box, const LinkPage& page, const std::string& planName,
                bool draw) {
  const double top = head(text, box, qt(page.title), qt(planName), draw);
  double tallest = 0;
  for (const bool right : {false, true}) {
    PageBox place = half(box, right);
    place.top += top;
    tallest = std::max(tallest,
                       stationColumn(text, place, right ? "To" : "From", page.stations[right ? 1 : 0], draw));
  }
  return top + tallest;
}

double valueColumn(PageText& text, const PageBox& box, const std::vector<LabelledValue>& values, bool draw) {
  Column column(text, box, draw);
  double labels = kLabelWide;
  for (const LabelledValue& value : values)
    labels = std::max(labels, text.width(qt(value.label), kLabel) + kLabelGap);
  for (const LabelledValue& value : values) {
    if (draw) text.line({box.left, column.y(), labels, 0}, qt(value.label), kLabel);
    column.paragraph(qt(value.text), kPlain, kValueLines, labels);
    column.gap(kValueGap);
  }
  return column.used();
}

double noteHeight(PageText& text, double width, const std::string& note) {
  return text.height(qt(note), kSmall, width, kNoteLines);
}

void drawNotes(PageText& text, const PageBox& box, const std::vector<std::string>& notes) {
  std::vector<double> heights;
  heights.reserve(notes.size());
  for (const std::string& note : notes) heights.push_back(noteHeight(text, box.width - kNoteIndent, note));
  const double line = text.lineHeight(kSmall);
  const std::size_t count = notesThatFit(heights, box.height, line);
  Column column(text, box, true);
  for (std::size_t i = 0; i < count; ++i) {
    text.line({box.left, column.y(), kNoteIndent, 0}, QString(QChar(0x2022)), kSmall);
    column.paragraph(qt(notes[i]), kSmall, kNoteLines, kNoteIndent);
  }
  if (count == notes.size() || box.height < line) return;
  const std::size_t left = notes.size() - count;
  column.paragraph(QStringLiteral("%1 and %2 more %3")
                       .arg(QChar(0x2026))
                       .arg(left)
                       .arg(left == 1 ? QStringLiteral("note") : QStringLiteral("notes")),
                   kSmall, 1, kNoteIndent);
}

QString mapCaption() {
  return QStringLiteral(
      "Map: north is up, the scale is true in the middle; the colours are heights above sea level");
}

// Of both captions, below pictures of that width. The plot is made only when its place is known; this one's
// numbers are as long as any.
double captionHeight(PageText& text, double width) {
  PlotImage any;
  any.k = 1.333;
  any.frequencyMhz = 10'000.25;
  any.fresnelPercent = 100;
  return std::max(text.height(mapCaption(), kCaption, width, kCaptionLines),
                  text.height(qt(plotCaption(any)), kCaption, width, kCaptionLines));
}

// In the place of a picture.
void drawReason(PageText& text, const PageBox& box, const std::string& reason) {
  QPainter& painter = text.painter();
  painter.fillRect(text.rect(box), kStripe);
  painter.setPen(QPen(kRule, text.units() * 0.15));
  painter.drawRect(text.rect(box));
  constexpr double kInset = 6;
  PageBox place{box.left + kInset, box.top, box.width - 2 * kInset, 0};
  constexpr int kMostLines = 6;
  const double tall = text.height(qt(reason), kFailure, place.width, kMostLines);
  place.top += std::max(1.0, (box.height - tall) / 2);
  text.paragraph(place, qt(reason), kFailure, kMostLines);
}

void drawFoot(PageText& text, const PageFrame& frame) {
  const PageBox foot = footOf(frame.sheet);
  rule(text, foot.left, foot.right(), foot.top + 1);
  const PageBox line{foot.left, foot.top + 2, foot.width, 0};
  text.line(line, qt(frame.program), kCaption);
  text.line(line, qt(frame.date), kCaption, Qt::AlignHCenter);
  text.line(line, QStringLiteral("Page %1 of %2").arg(frame.page).arg(frame.pages), kCaption, Qt::AlignRight);
}

void drawMap(PageText& text, const LinkPageLayout& layout, const QImage& map) {
  if (map.isNull()) {
    drawReason(text, layout.map, "The map cannot be drawn: there is not enough memory");
    return;
  }
  QImage plain = map;
  plain.setDevicePixelRatio(1);
  QPainter& painter = text.painter();
  painter.drawImage(text.rect(layout.map), plain);
  painter.setPen(QPen(kRule, text.units() * 0.15));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(text.rect(layout.map));
  text.paragraph(layout.mapCaption, mapCaption(), kCaption, kCaptionLines);
}

// --- Table ---

struct TableColumn {
  double share;  // of the width
  bool number;
};
constexpr std::array<TableColumn, kRowColumns> kColumns = {{{0.165, false},
                                                            {0.165, false},
                                                            {0.085, true},
                                                            {0.08, true},
                                                            {0.07, true},
                                                            {0.085, true},
                                                            {0.075, true},
                                                            {0.08, true},
                                                            {0.14, false},
                                                            {0.055, true}}};
constexpr std::size_t kVerdictColumn = 8;
constexpr double kCellGap = 1.5;   // within a column, at its right
constexpr double kVerdictGap = 2;  // more, ahead of the verdict
constexpr double kRowTall = 5.2;
constexpr double kSampleWide = 8;  // a verdict's line on the map
constexpr double kLogicalPerMm = 96 / 25.4;

// The last column ends where the table does.
PageBox cellOf(PageBox column, std::size_t i) {
  if (i + 1 < kRowColumns) column.width -= kCellGap;
  if (i != kVerdictColumn) return column;
  return {column.left + kVerdictGap, column.top, column.width - kVerdictGap, column.height};
}

double tableHead(PageText& text, const PageBox& box, const ReportUnits& units, bool draw) {
  double tallest = 0, x = box.left;
  const auto heads = rowHeads(units);
  for (std::size_t i = 0; i < kRowColumns; ++i) {
    const double width = kColumns[i].share * box.width;
    const PageBox place = cellOf({x, box.top, width, 0}, i);
    // Broken before the unit, and each line at the column's side.
    const QString words = qt(heads[i]);
    const qsizetype unit = words.indexOf(QLatin1String(" ("));
    const auto side = kColumns[i].number ? Qt::AlignRight : Qt::AlignLeft;
    const double line = text.lineHeight(kCaption);
    if (draw) {
      text.line(place, unit < 0 ? words : words.left(unit), kCaption, side);
      if (unit >= 0)
        text.line({place.left, place.top + line, place.width, 0}, words.mid(unit + 1), kCaption, side);
    }
    tallest = 2 * line;
    x += width;
  }
  if (draw) rule(text, box.left, box.right(), box.top + tallest + 1);
  return tallest + 1.5;
}

// As the map draws a link of that verdict.
void drawVerdict(PageText& text, const PageBox& cell, PathVerdict verdict) {
  QPainter& painter = text.painter();
  painter.save();
  constexpr double kSmaller = 0.75;
  const double scale = text.units() / kLogicalPerMm * kSmaller;
  painter.translate(cell.left * text.units(), cell.top * text.units());
  painter.scale(scale, scale);
  const double perMm = kLogicalPerMm / kSmaller;
  paintVerdictSample(painter, QRectF(0, 0, kSampleWide * perMm, cell.height * perMm), verdict);
  painter.restore();
}

void drawRow(PageText& text, const PageBox& box, const LinkRow& row, const ReportUnits& units) {
  const auto texts = rowTexts(row, units);
  double x = box.left;
  const double down = (kRowTall - text.lineHeight(kPlain)) / 2;
  for (std::size_t i = 0; i < kRowColumns; ++i) {
    const double width = kColumns[i].share * box.width;
    PageBox cell = cellOf({x, box.top + down, width, 0}, i);
    if (i == kVerdictColumn && row.error.empty()) {
      drawVerdict(text, {cell.left, box.top + 0.5, kSampleWide, kRowTall - 1.5}, row.verdict);
      cell.left += kSampleWide + 1;
      cell.width -= kSampleWide + 1;
    }
    text.line(cell, qt(texts[i]), kPlain, kColumns[i].number ? Qt::AlignRight : Qt::AlignLeft);
    x += width;
  }
}

}  // namespace

LinkPageLayout measureLinkPage(PageText& text, const Sheet& sheet, const LinkPage& page) {
  const PageBox content = contentOf(sheet);
  PartHeights heights;
  heights.head = linkHead(text, content, page, "M", false);
  for (const bool right : {false, true})
    heights.values = std::max(heights.values,
                              valueColumn(text, half(content, right), right ? page.right : page.left, false));
  constexpr double kBelow = 0.5;
  heights.captions =
      captionHeight(text, sheet.width > sheet.height ? (content.width - kBlockGap) / 2 : content.width) +
      kBelow;
  for (const std::string& note : page.notes)
    heights.notes += noteHeight(text, content.width - kNoteIndent, note);
  return linkPageLayout(sheet, heights);
}

void drawLinkPage(PageText& text, const PageFrame& frame, const LinkPageLayout& layout, const LinkPage& page,
                  const LinkPictures& pictures) {
  linkHead(text, layout.head, page, frame.planName, true);
  drawMap(text, layout, pictures.map);
  if (pictures.plot && page.plotProblem.empty() && drawLinkPlot(text, layout.plot, *pictures.plot)) {
    text.paragraph(layout.plotCaption, qt(plotCaption(*pictures.plot)), kCaption, kCaptionLines);
  } else {
    const std::string what = page.failure.empty() ? "The profile cannot be shown: " : "No figures: ";
    drawReason(text, layout.plot, what + page.plotProblem);
  }
  valueColumn(text, half(layout.values, false), page.left, true);
  valueColumn(text, half(layout.values, true), page.right, true);
  drawNotes(text, layout.notes, page.notes);
  drawFoot(text, frame);
}

std::size_t tableRows(PageText& text, const PageFrame& frame, bool first) {
  const PageBox content = contentOf(frame.sheet);
  double room = content.height - tableHead(text, content, {}, false);
  if (first) room -= head(text, content, qt(frame.planName), QStringLiteral("M"), false) + kBlockGap;
  return rowsThatFit(room, kRowTall);
}

void drawTablePage(PageText& text, const PageFrame& frame, std::span<const LinkRow> rows,
                   const std::vector<LinkRow>& all, const ReportUnits& units) {
  PageBox content = contentOf(frame.sheet);
  if (frame.page == 1) {
    const double used = head(text, content, qt(frame.planName), qt(rowsSentence(all)), true) + kBlockGap;
    content.top += used;
    content.height -= used;
  }
  content.top += tableHead(text, content, units, true);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const PageBox row{content.left, content.top + static_cast<double>(i) * kRowTall, content.width, kRowTall};
    if (i % 2 == 1) text.painter().fillRect(text.rect(row), kStripe);
    drawRow(text, row, rows[i], units);
  }
  drawFoot(text, frame);
}

}  // namespace zel::host
