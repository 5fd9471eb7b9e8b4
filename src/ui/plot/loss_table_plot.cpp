#include "ui/plot/loss_table_plot.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "foundation/runtime_error.h"
#include "ui/plot/contour_lines.h"
#include "ui/plot/loss_colours.h"

namespace zel {
namespace {

constexpr double kTick = 4;  // length of a tick
constexpr double kGap = 3;   // between a tick and its label, a text and its box
constexpr double kBarWidth = 16;
constexpr double kBarGap = 18;  // between cells and colour bar
constexpr int kMostContours = 12;
constexpr double kLinesPerContour = 2;  // heights of a line of text to each contour, at least
constexpr int kMiddle = 50;             // percent

constexpr const char* kBarName = "Loss, dB";

std::string lossText(double loss, const LossTablePlot& plot) {
  return formatNumber(loss, "0.0", plot.numbers);
}

bool overlap(const LossTableRectangle& a, const LossTableRectangle& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

class LossTableDrawing {
 public:
  LossTableDrawing(Canvas& canvas, const LossTablePlot& plot, int width, int height)
      : canvas_(canvas), plot_(plot), width_(width), height_(height) {}

  LossTableLayout run() {
    canvas_.setScale(0, 0, width_, height_);
    canvas_.clear();
    canvas_.setDrawMode(DrawMode::kCopyPen);
    canvas_.setDrawWidth(1);
    line_ = canvas_.textHeight();
    findRange();
    layOut();
    title();
    cells();
    contours();
    frame(layout_.cells);
    percentAxes();
    colourBar();
    middleCell();
    contourLabels();
    return layout_;
  }

 private:
  double loss(int confidence, int reliability) const {
    return plot_.losses[static_cast<std::size_t>((confidence - 1) * kLossTableSide + reliability - 1)];
  }
  double part(double loss) const {
    const double span = layout_.highest - layout_.lowest;
    return span > 0 ? (loss - layout_.lowest) / span : 0.5;
  }
  // The left side of a column, counted from 0, and the lower side of a row; fractions lie between.
  double columnX(double column) const {
    return layout_.cells.left + column / kLossTableSide * layout_.cells.width();
  }
  double rowY(double row) const {
    return layout_.cells.bottom - row / kLossTableSide * layout_.cells.height();
  }
  double barY(double loss) const {
    return layout_.colourBar.bottom - part(loss) * layout_.colourBar.height();
  }

  void findRange() {
    for (const double loss : plot_.losses)
      if (!std::isfinite(loss)) throw RuntimeError::overflow();
    const auto [lowest, highest] = std::minmax_element(plot_.losses.begin(), plot_.losses.end());
    layout_.lowest = *lowest;
    layout_.highest = *highest;
  }

  void layOut() {
    const double border = std::round(line_ / 2);
    const double barLabels = std::max(canvas_.textWidth(lossText(layout_.lowest, plot_)),
                                      canvas_.textWidth(lossText(layout_.highest, plot_)));
    const double barSide = std::max(kBarWidth + kTick + kGap + barLabels, canvas_.textWidth(kBarName));
    breakTitle(width_ - 2 * border);
    // Whole pixels, so that frames and ticks meet.
    LossTableRectangle& cells = layout_.cells;
    cells.left = std::ceil(border + canvas_.textWidth("99") + kGap + kTick) + 1;
    namesTop_ = border + line_ * static_cast<double>(titleLines_.size()) + border;
    // The uppermost tick's label stands half above the cells.
    cells.top = std::ceil(namesTop_ + 1.5 * line_ + kGap);
    cells.right = std::floor(width_ - border - barSide - kBarGap);
    cells.bottom = std::floor(height_ - border - 2 * line_ - kGap - kTick);
    layout_.colourBar = {cells.right + kBarGap, cells.top, cells.right + kBarGap + kBarWidth, cells.bottom};
    const double room = cells.height() / (kLinesPerContour * line_);
    const int most = std::clamp(static_cast<int>(room), 1, kMostContours);
    layout_.contours =
        contourLevels(layout_.lowest, layout_.highest, contourStep(layout_.lowest, layout_.highest, most));
  }

  void breakTitle(double room) {
    for (const std::string& part : plot_.title) {
      const bool fits =
          !titleLines_.empty() && canvas_.textWidth(titleLines_.back() + ", " + part + ",") <= room;
      if (!titleLines_.empty()) titleLines_.back() += fits ? ", " + part : ",";
      if (!fits) titleLines_.push_back(part);
    }
  }

  void textAt(double x, double y, const std::string& text) {
    canvas_.setTextPosition(x, y);
    canvas_.print(text);
  }
  // The baseline of capitals is somewhat above the middle of a line's box.
  void textBeside(double x, double middle, const std::string& text) { textAt(x, middle - line_ / 2, text); }
  void textUnder(double middle, double y, const std::string& text) {
    textAt(middle - canvas_.textWidth(text) / 2, y, text);
  }

  void title() {
    double y = std::round(line_ / 2);
    for (const std::string& text : titleLines_) {
      textAt(std::round(line_ / 2), y, text);
      y += line_;
    }
  }

  // Each cell reaches under those that follow it, so that no seam between them shows where edges are smooth.
  void cells() {
    for (int confidence = 1; confidence <= kLossTableSide; ++confidence)
      for (int reliability = 1; reliability <= kLossTableSide; ++reliability)
        canvas_.fillRectangle(columnX(reliability - 1), rowY(confidence - 1),
                              columnX(std::min(reliability + 1, kLossTableSide)),
                              rowY(std::min(confidence + 1, kLossTableSide)),
                              lossColour(part(loss(confidence, reliability))));
  }

  Colour lineColour(double level) const { return isLight(part(level)) ? kBlack : kWhite; }

  // The losses hold in the middle of their cells.
  void contours() {
    const SquareGrid grid{plot_.losses, kLossTableSide};
    for (const double level : layout_.contours)
      for (const ContourPiece& piece : contourLine(grid, level))
        canvas_.line(columnX(piece.from.x + 0.5), rowY(piece.from.y + 0.5), columnX(piece.to.x + 0.5),
                     rowY(piece.to.y + 0.5), lineColour(level));
  }

  // On the pixels around the rectangle.
  void frame(const LossTableRectangle& inside, double distance = 1, Colour colour = kBlack) {
    const double left = inside.left - distance, right = inside.right + distance - 1;
    const double top = inside.top - distance, bottom = inside.bottom + distance - 1;
    canvas_.line(left, top, right, top, colour);
    canvas_.line(right, top, right, bottom, colour);
    canvas_.line(right, bottom, left, bottom, colour);
    canvas_.line(left, bottom, left, top, colour);
  }

  // Both ends of the axis and as many round percentages between as have room: an interval of ten per cent is
  // never narrower than from 1 to 10 or 90 to 99.
  static std::vector<int> percentTicks(double pixelsPerPercent, double labelRoom) {
    for (const int step : {10, 20, 25, 50}) {
      std::vector<int> ticks{1};
      for (int percent = step; percent < 100; percent += step) ticks.push_back(percent);
      ticks.push_back(kLossTableSide);
      bool fits = true;
      for (std::size_t i = 1; i < ticks.size(); ++i)
        fits = fits && (ticks[i] - ticks[i - 1]) * pixelsPerPercent >= labelRoom;
      if (fits) return ticks;
    }
    return {1, kLossTableSide};
  }

  void percentAxes() {
    const LossTableRectangle& cells = layout_.cells;
    const double under = cells.bottom + kTick + kGap;
    for (const int percent : percentTicks(cells.width() / kLossTableSide, canvas_.textWidth("99") * 1.7)) {
      const double x = columnX(percent - 0.5);
      canvas_.line(x, cells.bottom + 1, x, cells.bottom + kTick, kBlack);
      textUnder(x, under, std::to_string(percent));
    }
    textUnder((cells.left + cells.right) / 2, under + line_, "Reliability, %");
    for (const int percent : percentTicks(cells.height() / kLossTableSide, line_)) {
      const double y = rowY(percent - 0.5);
      const std::string text = std::to_string(percent);
      canvas_.line(cells.left - 2, y, cells.left - 1 - kTick, y, kBlack);
      textBeside(cells.left - 1 - kTick - kGap - canvas_.textWidth(text), y, text);
    }
    textAt(std::round(line_ / 2), namesTop_, "Confidence, %");
  }

  void colourBar() {
    const LossTableRectangle& bar = layout_.colourBar;
    for (double y = bar.top; y < bar.bottom; y += 1)
      canvas_.fillRectangle(bar.left, y, bar.right, std::min(y + 2, bar.bottom),
                            lossColour((bar.bottom - y - 0.5) / bar.height()));
    frame(bar);
    textAt(bar.left, namesTop_, kBarName);
    std::vector<double> taken;
    barTick(layout_.lowest, lossText(layout_.lowest, plot_), taken);
    barTick(layout_.highest, lossText(layout_.highest, plot_), taken);
    for (const double level : layout_.contours)
      barTick(level, formatNumber(level, "0", plot_.numbers), taken);
  }

  // A label that has no room between those that are there is left out, the line across the bar is not.
  void barTick(double loss, const std::string& text, std::vector<double>& taken) {
    const LossTableRectangle& bar = layout_.colourBar;
    const double y = std::min(barY(loss), bar.bottom - 1);
    canvas_.line(bar.left, y, bar.right - 1, y, lineColour(loss));
    const bool isFree =
        std::none_of(taken.begin(), taken.end(), [&](double other) { return std::abs(other - y) < line_; });
    if (!isFree) return;
    taken.push_back(y);
    canvas_.line(bar.right + 1, y, bar.right + kTick, y, kBlack);
    textBeside(bar.right + kTick + kGap, y, text);
  }

  // A text on white, so that it can be read on every colour. False, with nothing drawn, where it would touch
  // one that is there, or the border.
  bool boxedText(double left, double top, const std::string& text) {
    const LossTableRectangle box{std::floor(left) - kGap, std::floor(top),
                                 std::floor(left) + std::ceil(canvas_.textWidth(text)) + kGap,
                                 std::floor(top) + std::ceil(line_)};
    const LossTableRectangle& cells = layout_.cells;
    const bool inside = box.left >= cells.left && box.right <= cells.right && box.top >= cells.top &&
                        box.bottom <= cells.bottom;
    const bool isFree = std::none_of(boxes_.begin(), boxes_.end(), [&box](const LossTableRectangle& other) {
      return overlap(box, {other.left - kGap, other.top - kGap, other.right + kGap, other.bottom + kGap});
    });
    if (!inside || !isFree) return false;
    canvas_.fillRectangle(box.left, box.top, box.right, box.bottom, kWhite);
    textAt(std::floor(left), std::floor(top), text);
    boxes_.push_back(box);
    return true;
  }

  void middleCell() {
    const LossTableRectangle cell{std::round(columnX(kMiddle - 1)), std::round(rowY(kMiddle)),
                                  std::round(columnX(kMiddle)), std::round(rowY(kMiddle - 1))};
    frame(cell, 1, kBlack);
    frame(cell, 2, kWhite);
    frame(cell, 3, kBlack);
    boxes_.push_back({cell.left - 3, cell.top - 3, cell.right + 3, cell.bottom + 3});
    const std::string text = "50 %, 50 %: " + lossText(loss(kMiddle, kMiddle), plot_) + " dB";
    boxedText((cell.left + cell.right - canvas_.textWidth(text)) / 2, cell.bottom + 2 * kGap + 1, text);
  }

  // On the diagonal, where the losses grow fastest and each line passes once.
  void contourLabels() {
    for (const double level : layout_.contours)
      for (int percent = 1; percent < kLossTableSide; ++percent) {
        const double here = loss(percent, percent), next = loss(percent + 1, percent + 1);
        if ((here < level) == (next < level)) continue;
        const std::string text = formatNumber(level, "0", plot_.numbers);
        const double place = percent - 0.5 + (level - here) / (next - here);
        boxedText(columnX(place) - canvas_.textWidth(text) / 2, rowY(place) - line_ / 2, text);
        break;
      }
  }

  Canvas& canvas_;
  const LossTablePlot& plot_;
  double width_, height_;
  double line_ = 0;      // height of a line of text
  double namesTop_ = 0;  // of the names of upward axis and colour bar
  LossTableLayout layout_;
  std::vector<std::string> titleLines_;
  std::vector<LossTableRectangle> boxes_;  // of the texts on the cells
};

}  // namespace

LossTableLayout drawLossTable(Canvas& canvas, const LossTablePlot& plot, int width, int height) {
  if (plot.losses.size() != static_cast<std::size_t>(kLossTableSide) * kLossTableSide)
    throw RuntimeError::subscriptOutOfRange();
  return LossTableDrawing(canvas, plot, width, height).run();
}

}  // namespace zel
