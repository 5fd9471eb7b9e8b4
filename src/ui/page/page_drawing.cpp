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

constexpr double kLargestFont = 10;           // points
constexpr double kNarrowestFont = 7;          // points; where the columns want room
constexpr double kSmallestFont = 6;           // points; where the page is low
constexpr double kFontStep = 0.5;             // points
constexpr double kNotesFont = 7;              // points, or the other texts' when that is smaller
constexpr std::size_t kLeastNotes = 2;        // lines
constexpr std::size_t kShortDescription = 4;  // lines

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

// A description of nothing but blanks is none.
std::string withoutBlanks(const std::string& text) {
  return text.find_first_not_of(" \t\r\n") == std::string::npos ? std::string() : text;
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
        description_(withoutBlanks(content.description)) {
    for (const std::string& note : content.notes) notes_ += note + '\n';
    plot_.left = shortTwips(paper.width * 0.1);
    plot_.right = plot_.left + shortTwips(paper.width * 0.8);
    leftText_ = std::clamp(kLeftText, plot_.left, plot_.left * 1.2);
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
    use(points_);
    double y = area_.top;
    for (const std::string& line : header_) {
      printAt((paper_.width - sheet_.textWidth(line)) / 2, y, line);
      y -= line_;
    }
  }

  void printRows() {
    use(points_);
    double y = rowsTop();
    for (const PageRow& row : rows_) {
      if (!row.left.empty()) printAt(leftText_, y, row.left);
      if (!row.right.empty()) printAt(rightColumn_, y, row.right);
      y -= line_;
    }
  }

  void printNotes() {
    if (noteLines_.empty()) return;
    use(notesPoints());
    double y = area_.bottom + static_cast<double>(noteLines_.size()) * notesLine_;
    sheet_.line(plot_.left, y + notesLine_ / 2, plot_.right, y + notesLine_ / 2, kRule);
    for (const std::string& line : noteLines_) {
      printAt(plot_.left, y, line);
      y -= notesLine_;
    }
  }

 private:
  TextWidth widthOf() const {
    return [this](std::string_view text) { return sheet_.textWidth(text); };
  }
  double notesPoints() const { return std::min(points_, kNotesFont); }
  void use(double points) { page_.setFontSize(points); }
  void printAt(double x, double y, const std::string& text) {
    sheet_.setTextPosition(x, y);
    sheet_.print(text);
  }

  // Sets the font with what follows from it.
  void measure(double points) {
    points_ = points;
    use(notesPoints());
    notesLine_ = sheet_.textHeight();
    use(points);
    line_ = sheet_.textHeight();
    widestHeader_ = widestLeft_ = widestRight_ = 0;
    header_.clear();
    for (const std::string& line : headerLines_) {
      widestHeader_ = std::max(widestHeader_, sheet_.textWidth(line));
      for (std::string& part : WrapTextInColumn(line, area_.width(), widthOf()))
        header_.push_back(std::move(part));
    }
    pageLines_ = header_.size();
    for (const PageRow& row : rows_) {
      widestLeft_ = std::max(widestLeft_, sheet_.textWidth(row.left));
      widestRight_ = std::max(widestRight_, sheet_.textWidth(row.right));
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
  bool isHighEnough() const {
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

  FittedText wrappedDescription(std::size_t mostLines) const {
    if (description_.empty()) return {};
    return fitTextInColumn("Description: " + description_, descriptionWidth(), mostLines, widthOf());
  }

  void wrapDescription() {
    const std::size_t lines = wholeLines(room(pageLines_) - leastNotesHeight(), line_);
    FittedText fitted = wrappedDescription(std::max<std::size_t>(lines, 1));
    descriptionCut_ = fitted.cut;
    for (std::string& line : fitted.lines) header_.push_back(std::move(line));
  }

  void wrapNotes() {
    use(notesPoints());
    const std::size_t lines = wholeLines(room(header_.size()), notesLine_);
    noteLines_ = fitTextInColumn(notes_, plot_.width(), lines, widthOf()).lines;
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

  double points_ = 0;
  double line_ = 0;
  double notesLine_ = 0;
  double leftText_ = 0;
  double rightColumn_ = 0;
  double widestHeader_ = 0;
  double widestLeft_ = 0;
  double widestRight_ = 0;
};

// Along the borders of the plot's scale; one without a span has borders all the same.
void drawOutline(Canvas& sheet, PlotScale scale, const PageBox& box) {
  if (scale.right == scale.left) scale.right = scale.left + 1;
  if (scale.top == scale.bottom) scale.top = scale.bottom + 1;
  const PagePoint first = ConvertPrintCoords(scale, box, scale.left, scale.top);
  const PagePoint last = ConvertPrintCoords(scale, box, scale.right, scale.bottom);
  sheet.line(first.x, first.y, last.x, first.y, kBlack);
  sheet.line(last.x, first.y, last.x, last.y, kBlack);
  sheet.line(last.x, last.y, first.x, last.y, kBlack);
  sheet.line(first.x, last.y, first.x, first.y, kBlack);
}

}  // namespace

PagePoint ConvertPrintCoords(const PlotScale& scale, const PageBox& box, double x, double y) {
  return {box.left + (x - scale.left) / (scale.right - scale.left) * box.width(),
          box.bottom + (y - scale.bottom) / (scale.top - scale.bottom) * box.height()};
}

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
  PlotScale scale;
  Canvas& box = page.box(drawn.plot.left, drawn.plot.top, drawn.plot.right, drawn.plot.bottom);
  if (!drawPlot(box, scale)) return drawn;
  drawOutline(sheet, scale, drawn.plot);
  layout.printRows();
  layout.printNotes();
  drawn.drawn = true;
  return drawn;
}

}  // namespace zel
