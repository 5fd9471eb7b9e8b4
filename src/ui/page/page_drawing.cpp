#include "ui/page/page_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "foundation/rounding.h"
#include "foundation/runtime_error.h"
#include "ui/page/plot_on_page.h"
#include "ui/page/wrap_text.h"

namespace zel {
namespace {

// ---- Measures, in twips where nothing else is said ----

constexpr double kLeftText = 1400;          // from the paper's left edge
constexpr double kRightTextLimit = 3700;    // from its right edge
constexpr double kFirstLine = 700;          // from its upper edge
constexpr double kLastLine = 560;           // from its lower edge
constexpr double kLeastMargin = 360;        // on every side, whatever the printer can do
constexpr double kLargestMargin = 0.25;     // of the paper
constexpr double kRightColumnWidth = 3500;  // from the right end of the plot's box
constexpr double kColumnGap = 240;
constexpr double kHalfOutline = 5;  // a quarter of a point

constexpr double kMostIndent = 1.2;  // of the left column, to the plot's place

constexpr double kLargestFont = 10;           // points
constexpr double kNarrowestFont = 7;          // points; where the columns want room
constexpr double kSmallestFont = 6;           // points; where the page is low
constexpr double kFontStep = 0.5;             // points
constexpr double kNotesFont = 7;              // points, or the other texts' when that is smaller
constexpr std::size_t kLeastNotes = 2;        // lines
constexpr std::size_t kShortDescription = 4;  // lines
constexpr std::size_t kLongestHeader = 2;     // lines of each text

// Gaps in lines of text.
constexpr double kAbovePlot = 0.6;
constexpr double kBelowPlot = 0.8;
constexpr double kAboveNotes = 0.8;
constexpr double kWidestLines = 1.25;  // from line to line, of the font's own

constexpr Colour kRule = 0x808080;

// A side that the printer cannot print on, within what leaves room for a page.
double margin(double printers, double own, double extent) {
  return std::min(std::max(printers, own), extent * kLargestMargin);
}

PageBox printableArea(const PaperFormat& paper, double firstLine, double lastLine) {
  const PaperMargins& margins = paper.margins;
  return {margin(margins.left, kLeastMargin, paper.width),
          paper.height - margin(margins.top, firstLine, paper.height),
          paper.width - margin(margins.right, kLeastMargin, paper.width),
          margin(margins.bottom, lastLine, paper.height)};
}

// The 16-bit integers of the plot's box; as much as they hold on a sheet that is larger.
std::int16_t shortTwips(double twips) {
  return toInt16(std::min(twips, double{std::numeric_limits<std::int16_t>::max()}));
}

// ---- The page before it is drawn ----

class PageLayout {
 public:
  PageLayout(Page& page, const PaperFormat& paper, const PageContent& content)
      : page_(page),
        sheet_(page.sheet()),
        paper_(paper),
        area_(printableArea(paper, kFirstLine, kLastLine)),
        headerLines_(pageHeader(content)),
        rows_(pageRows(content)),
        description_(withoutBlankEnds(content.description)) {
    for (const std::string& note : content.notes) notes_ += note + '\n';
    plot_.left = shortTwips(paper.width * 0.1);
    plot_.right = plot_.left + shortTwips(paper.width * 0.8);
    leftText_ = std::min(kLeftText, plot_.left * kMostIndent);
    chooseFont();
    placeColumns();
    wrapDescription();
    wrapNotes();
    spreadLines();
    placePlot();
  }

  const PageBox& plot() const { return plot_; }
  bool descriptionCut() const { return descriptionCut_; }

  void printHeader() {
    double y = area_.top;
    for (const std::string& line : header_) {
      printAt((paper_.width - sheetWith(points_).textWidth(line)) / 2, y, line, points_);
      y -= line_;
    }
  }

  void printRows() {
    double y = rowsTop();
    for (const PageRow& row : rows_) {
      if (!row.left.empty()) printAt(leftText_, y, row.left, points_);
      if (!row.right.empty()) printAt(rightColumn_, y, row.right, points_);
      y -= line_;
    }
  }

  void printNotes() {
    if (noteLines_.empty()) return;
    double y = area_.bottom + static_cast<double>(noteLines_.size()) * notesLine_;
    sheet_.line(plot_.left, y + notesLine_ / 2, plot_.right, y + notesLine_ / 2, kRule);
    for (const std::string& line : noteLines_) {
      printAt(plot_.left, y, line, notesPoints());
      y -= notesLine_;
    }
  }

 private:
  // The sheet, with texts of this size. Whatever measures or prints names its own.
  Canvas& sheetWith(double points) {
    if (points != sheetPoints_) page_.setFontSize(points);
    sheetPoints_ = points;
    return sheet_;
  }
  TextWidth widthWith(double points) {
    return [this, points](std::string_view text) { return sheetWith(points).textWidth(text); };
  }
  double notesPoints() const { return std::min(points_, kNotesFont); }
  void printAt(double x, double y, const std::string& text, double points) {
    sheetWith(points).setTextPosition(x, y);
    sheet_.print(text);
  }

  // Sets the size of the texts with what follows from it.
  void measure(double points) {
    points_ = points;
    notesLine_ = sheetWith(notesPoints()).textHeight();
    line_ = sheetWith(points).textHeight();
    const TextWidth widthOf = widthWith(points);
    widestHeader_ = widestLeft_ = widestRight_ = 0;
    header_.clear();
    for (const std::string& line : headerLines_) {
      widestHeader_ = std::max(widestHeader_, widthOf(line));
      for (std::string& part : fitTextInColumn(line, area_.width(), kLongestHeader, widthOf).lines)
        header_.push_back(std::move(part));
    }
    pageLines_ = header_.size();
    for (const PageRow& row : rows_) {
      widestLeft_ = std::max(widestLeft_, widthOf(row.left));
      widestRight_ = std::max(widestRight_, widthOf(row.right));
    }
  }

  // The largest that the page has room for, in its width and in its height; else the smallest, up to the
  // edges.
  void chooseFont() {
    measure(kLargestFont);
    while (points_ > kNarrowestFont && !isWideEnough()) measure(points_ - kFontStep);
    while (points_ > kSmallestFont && !isHighEnough()) measure(points_ - kFontStep);
    if (!isHighEnough()) area_ = printableArea(paper_, kLeastMargin, kLeastMargin);
  }

  double rightColumnWanted() const { return plot_.right - kRightColumnWidth; }

  bool isWideEnough() const {
    return widestHeader_ <= area_.width() && leftText_ + widestLeft_ + kColumnGap <= rightColumnWanted() &&
           rightColumnWanted() + widestRight_ <= area_.right;
  }

  // A short description is whole whatever font it takes; the length of others does not make it smaller.
  bool isHighEnough() {
    return room(pageLines_ + wrappedDescription(kShortDescription).lines.size()) >= leastNotesHeight();
  }

  double plotHeightWanted() const { return shortTwips(plot_.width() / 3); }
  double leastNotesHeight() const {
    return notes_.empty() ? 0 : static_cast<double>(kLeastNotes) * notesLine_;
  }
  // Of everything but plot and notes, with so many lines of header.
  double textHeight(std::size_t headerLines) const {
    return (static_cast<double>(headerLines + rows_.size()) + kAbovePlot + kBelowPlot + kAboveNotes) * line_;
  }
  // What these and the plot leave; below 0 when they leave nothing.
  double room(std::size_t headerLines) const {
    return area_.height() - textHeight(headerLines) - plotHeightWanted();
  }
  static std::size_t wholeLines(double room, double line) {
    return static_cast<std::size_t>(std::max(std::floor(room / line), 0.0));
  }

  // Where the right texts have no room in their column they begin further left, but not on the left ones.
  void placeColumns() {
    rightColumn_ = std::max(std::min(rightColumnWanted(), area_.right - widestRight_),
                            leftText_ + widestLeft_ + kColumnGap);
  }

  // Between the text limits, which lie too near to each other on narrow paper.
  double descriptionWidth() const {
    return std::max(paper_.width - kRightTextLimit - kLeftText, paper_.width / 2);
  }

  FittedText wrappedDescription(std::size_t mostLines) {
    if (description_.empty()) return {};
    return fitTextInColumn("Description: " + description_, descriptionWidth(), mostLines, widthWith(points_));
  }

  void wrapDescription() {
    const std::size_t lines = wholeLines(room(pageLines_) - leastNotesHeight(), line_);
    FittedText fitted = wrappedDescription(std::max<std::size_t>(lines, 1));
    descriptionCut_ = fitted.cut;
    for (std::string& line : fitted.lines) header_.push_back(std::move(line));
  }

  void wrapNotes() {
    const std::size_t lines = wholeLines(room(header_.size()), notesLine_);
    noteLines_ = fitTextInColumn(notes_, plot_.width(), lines, widthWith(notesPoints())).lines;
  }

  double notesHeight() const { return static_cast<double>(noteLines_.size()) * notesLine_; }

  // Where there is room to spare the lines get some of it.
  void spreadLines() {
    const double height = textHeight(header_.size());
    const double spare = room(header_.size()) - notesHeight();
    line_ *= std::clamp((height + spare) / height, 1.0, kWidestLines);
  }

  // A page that is too low even in the smallest font has a lower plot.
  void placePlot() {
    const double wanted = plotHeightWanted();
    const double height = wanted + std::min(room(header_.size()) - notesHeight(), 0.0);
    plot_.top = area_.top - (static_cast<double>(header_.size()) + kAbovePlot) * line_;
    plot_.bottom = plot_.top - std::max(height, std::min(line_, wanted));
  }

  double rowsTop() const { return plot_.bottom - kBelowPlot * line_; }

  Page& page_;
  Canvas& sheet_;
  const PaperFormat& paper_;
  PageBox area_;  // from the first line's top to the last one's end
  PageBox plot_;
  std::vector<std::string> headerLines_;  // as they are wanted
  std::vector<std::string> header_;       // as they fit, then the description
  std::vector<PageRow> rows_;
  std::size_t pageLines_ = 0;  // of the header, without the description
  std::string description_;
  std::string notes_;
  std::vector<std::string> noteLines_;
  bool descriptionCut_ = false;

  double sheetPoints_ = 0;  // as the sheet was last told
  double points_ = 0;       // of all texts but the notes
  double line_ = 0;
  double notesLine_ = 0;
  double leftText_ = 0;
  double rightColumn_ = 0;
  double widestHeader_ = 0;
  double widestLeft_ = 0;
  double widestRight_ = 0;
};

// Around the box and outside of it, so that what the plot has on its border is seen.
void drawOutline(Canvas& sheet, const PageBox& plot) {
  const double left = plot.left - kHalfOutline;
  const double right = plot.right + kHalfOutline;
  const double top = plot.top + kHalfOutline;
  const double bottom = plot.bottom - kHalfOutline;
  sheet.line(left, top, right, top, kBlack);
  sheet.line(right, top, right, bottom, kBlack);
  sheet.line(right, bottom, left, bottom, kBlack);
  sheet.line(left, bottom, left, top, kBlack);
}

}  // namespace

DrawnPage drawPage(Page& page, const PaperFormat& paper, const PageContent& content,
                   const DrawPlotOnPage& drawPlot) {
  if (!(paper.width > 0 && paper.height > 0)) throw RuntimeError(5, "Paper without a size");
  Canvas& sheet = page.sheet();
  sheet.setScale(0, paper.height, paper.width, 0);
  PageLayout layout(page, paper, content);
  DrawnPage drawn;
  drawn.plot = layout.plot();
  drawn.descriptionCut = layout.descriptionCut();

  layout.printHeader();
  drawOutline(sheet, drawn.plot);
  PlotOnPage plot(page.box(drawn.plot.left, drawn.plot.top, drawn.plot.right, drawn.plot.bottom), drawn.plot);
  if (!drawPlot(plot)) return drawn;
  layout.printRows();
  layout.printNotes();
  drawn.drawn = true;
  return drawn;
}

}  // namespace zel
