#include "ui/plot/loss_table_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "canvas/recording_canvas.h"
#include "foundation/runtime_error.h"
#include "ui/plot/loss_colours.h"

namespace zel {
namespace {

// A plane: 120 to 169 dB, more with confidence than with reliability.
std::vector<double> planeTable() {
  std::vector<double> losses;
  for (int confidence = 1; confidence <= 99; ++confidence)
    for (int reliability = 1; reliability <= 99; ++reliability)
      losses.push_back(120 + 0.4 * (confidence - 1) + 0.1 * (reliability - 1));
  return losses;
}

struct Drawn {
  RecordingCanvas canvas;
  LossTableLayout layout;

  Drawn(const std::vector<double>& losses, int width, int height, std::vector<std::string> title = {"Loss"},
        NumberStyle numbers = {}) {
    layout = drawLossTable(canvas, {losses, std::move(title), std::move(numbers)}, width, height);
  }
  // What is seen at a place: the last rectangle over it.
  Colour at(double x, double y) const {
    Colour colour = kWhite;
    for (const RecordedRectangle& r : canvas.rectangles())
      if (std::min(r.corner.x, r.opposite.x) <= x && x < std::max(r.corner.x, r.opposite.x) &&
          std::min(r.corner.y, r.opposite.y) <= y && y < std::max(r.corner.y, r.opposite.y))
        colour = r.colour;
    return colour;
  }
  Colour cell(int confidence, int reliability) const {
    return at(layout.cells.left + (reliability - 0.5) / 99 * layout.cells.width(),
              layout.cells.bottom - (confidence - 0.5) / 99 * layout.cells.height());
  }
  bool says(const std::string& text) const {
    const auto texts = canvas.texts();
    return std::any_of(texts.begin(), texts.end(),
                       [&text](const RecordedText& printed) { return printed.text == text; });
  }
  RecordedText text(const std::string& wanted) const {
    for (const RecordedText& printed : canvas.texts())
      if (printed.text == wanted) return printed;
    ADD_FAILURE() << "not printed: " << wanted;
    return {};
  }
};

TEST(LossTablePlot, ColoursEachCellByItsLossWithReliabilityToTheRightAndConfidenceUpwards) {
  const auto losses = planeTable();
  const Drawn drawn(losses, 1000, 500);
  int compared = 0;
  for (int confidence = 1; confidence <= 99; confidence += 7)
    for (int reliability = 1; reliability <= 99; reliability += 7) {
      const Colour found = drawn.cell(confidence, reliability);
      if (found == kWhite) continue;  // under a label
      const double loss = 120 + 0.4 * (confidence - 1) + 0.1 * (reliability - 1);
      EXPECT_EQ(found, lossColour((loss - 120) / 49)) << confidence << " " << reliability;
      ++compared;
    }
  EXPECT_GT(compared, 200);
  EXPECT_EQ(drawn.cell(1, 1), lossColour(0));
  EXPECT_EQ(drawn.cell(99, 99), lossColour(1));
}

TEST(LossTablePlot, TellsTheEndsOfItsColours) {
  const Drawn drawn(planeTable(), 1000, 500);
  EXPECT_EQ(drawn.layout.lowest, 120);
  EXPECT_NEAR(drawn.layout.highest, 169, 1e-9);
  EXPECT_TRUE(drawn.says("120.0"));
  EXPECT_TRUE(drawn.says("169.0"));
  EXPECT_TRUE(drawn.says("Loss, dB"));
  const auto& bar = drawn.layout.colourBar;
  const double middle = (bar.left + bar.right) / 2;
  EXPECT_EQ(drawn.at(middle, bar.bottom - 0.5), lossColour(0.5 / bar.height()));
  EXPECT_EQ(drawn.at(middle, bar.top + 0.5), lossColour(1 - 0.5 / bar.height()));
}

TEST(LossTablePlot, NamesBothAxesInPercent) {
  const Drawn drawn(planeTable(), 1000, 500);
  EXPECT_TRUE(drawn.says("Reliability, %"));
  EXPECT_TRUE(drawn.says("Confidence, %"));
  for (const char* tick : {"1", "10", "50", "90", "99"}) EXPECT_TRUE(drawn.says(tick)) << tick;
}

TEST(LossTablePlot, DrawsLinesOfEqualLossAtWholeDecibels) {
  const Drawn drawn(planeTable(), 1000, 500);
  ASSERT_FALSE(drawn.layout.contours.empty());
  EXPECT_LE(drawn.layout.contours.size(), 12U);
  for (const double level : drawn.layout.contours) EXPECT_EQ(level, std::round(level));
  // Each piece in the cells lies on one of the levels.
  const auto& cells = drawn.layout.cells;
  int pieces = 0;
  for (const RecordedLine& line : drawn.canvas.lines()) {
    const double column = (line.from.x - cells.left) / cells.width() * 99 - 0.5;
    const double row = (cells.bottom - line.from.y) / cells.height() * 99 - 0.5;
    const bool slanted = line.from.x != line.to.x && line.from.y != line.to.y;
    if (!slanted || column < 0 || column > 98) continue;
    const double loss = 120 + 0.4 * row + 0.1 * column;
    double nearest = std::numeric_limits<double>::infinity();
    for (const double level : drawn.layout.contours) nearest = std::min(nearest, std::abs(level - loss));
    EXPECT_LT(nearest, 1e-6);
    ++pieces;
  }
  EXPECT_GT(pieces, 500);
}

TEST(LossTablePlot, LabelsALineOnTheLineItself) {
  const Drawn drawn(planeTable(), 1000, 500);
  int labels = 0;
  for (const double level : drawn.layout.contours) {
    const std::string wanted = std::to_string(static_cast<int>(level));
    for (const RecordedText& text : drawn.canvas.texts()) {
      const auto& cells = drawn.layout.cells;
      if (text.text != wanted || text.position.x > cells.right) continue;
      const double x = text.position.x + drawn.canvas.textWidth(wanted) / 2;
      const double y = text.position.y + drawn.canvas.textHeight() / 2;
      const double column = (x - cells.left) / cells.width() * 99 - 0.5;
      const double row = (cells.bottom - y) / cells.height() * 99 - 0.5;
      // A whole pixel either way, of 9 to a column and 4 to a row.
      EXPECT_NEAR(120 + 0.4 * row + 0.1 * column, level, 0.4 / 4 + 0.1 / 8) << wanted;
      ++labels;
    }
  }
  EXPECT_GE(labels, 4);
}

TEST(LossTablePlot, FramesTheMiddleCellAndTellsItsLoss) {
  const Drawn drawn(planeTable(), 1000, 500);
  // 120 + 49 x 0.5.
  const RecordedText text = drawn.text("50 %, 50 %: 144.5 dB");
  const auto& cells = drawn.layout.cells;
  const double x = cells.left + 49.5 / 99 * cells.width(), y = cells.bottom - 49.5 / 99 * cells.height();
  EXPECT_NEAR(text.position.x + drawn.canvas.textWidth(text.text) / 2, x, 1);
  EXPECT_GT(text.position.y, y);
  EXPECT_EQ(drawn.at(x, y), lossColour(0.5));
  int framing = 0;
  for (const RecordedLine& line : drawn.canvas.lines())
    framing += std::abs(line.from.x - x) < 12 && std::abs(line.to.x - x) < 12 &&
               std::abs(line.from.y - y) < 12 && std::abs(line.to.y - y) < 12 &&
               (line.from.x == line.to.x || line.from.y == line.to.y);
  EXPECT_GE(framing, 12);
}

TEST(LossTablePlot, BreaksATitleThatIsTooWideBetweenItsParts) {
  const std::vector<std::string> title{"End-of-path loss", "28.734 km", "950 MHz",
                                       "Maritime Temperate, Over Land", "horizontal polarization"};
  const Drawn wide(planeTable(), 1600, 500, title);
  EXPECT_TRUE(
      wide.says("End-of-path loss, 28.734 km, 950 MHz, Maritime Temperate, Over Land, horizontal "
                "polarization"));
  // The recording canvas has room for 160 characters in any width; a title of twice that is broken.
  std::vector<std::string> longer = title;
  longer.insert(longer.end(), title.begin(), title.end());
  const Drawn narrow(planeTable(), 400, 300, longer);
  EXPECT_TRUE(narrow.canvas.texts()[0].text.ends_with(","));
  EXPECT_GT(narrow.layout.cells.top, wide.layout.cells.top * 300 / 500);
}

// Everything inside, nothing over another: at the smallest size and at others.
TEST(LossTablePlot, CrowdsNothing) {
  for (const auto& [width, height] : std::vector<std::pair<int, int>>{{kNarrowestLossTable, kLowestLossTable},
                                                                      {400, 300},
                                                                      {1000, 500},
                                                                      {1600, 1200},
                                                                      {300, 3000},
                                                                      {8000, 240}}) {
    const Drawn drawn(planeTable(), width, height);
    const auto& cells = drawn.layout.cells;
    EXPECT_GT(cells.width(), 0.5 * width) << width << " x " << height;
    EXPECT_GT(cells.height(), 0.5 * height) << width << " x " << height;
    const double line = drawn.canvas.textHeight();
    std::vector<LossTableRectangle> places;
    for (const RecordedText& text : drawn.canvas.texts()) {
      const LossTableRectangle place{text.position.x, text.position.y,
                                     text.position.x + drawn.canvas.textWidth(text.text),
                                     text.position.y + line};
      EXPECT_GE(place.left, 0) << text.text;
      EXPECT_GE(place.top, 0) << text.text;
      EXPECT_LE(place.right, width) << text.text;
      EXPECT_LE(place.bottom, height + 1) << text.text << " at " << width << " x " << height;
      for (const LossTableRectangle& other : places)
        EXPECT_FALSE(place.left < other.right - 0.01 && other.left < place.right - 0.01 &&
                     place.top < other.bottom - 0.01 && other.top < place.bottom - 0.01)
            << text.text << " at " << width << " x " << height;
      places.push_back(place);
    }
  }
}

TEST(LossTablePlot, OfOneLossEverywhereIsOfOneColour) {
  const Drawn drawn(std::vector<double>(99 * 99, 131.25), 1000, 500);
  EXPECT_EQ(drawn.cell(1, 1), lossColour(0.5));
  EXPECT_EQ(drawn.cell(99, 99), lossColour(0.5));
  EXPECT_TRUE(drawn.layout.contours.empty());
  EXPECT_TRUE(drawn.says("131.3"));
}

TEST(LossTablePlot, WritesNumbersInTheStyleItIsGiven) {
  EXPECT_TRUE(Drawn(planeTable(), 1000, 500, {"Loss"}, {",", "."}).says("50 %, 50 %: 144,5 dB"));
}

TEST(LossTablePlot, RefusesATableOfAnotherSizeOrWithoutAFiniteLoss) {
  const auto number = [](const std::vector<double>& losses) {
    try {
      Drawn drawn(losses, 1000, 500);
      return 0;
    } catch (const RuntimeError& error) {
      return error.number();
    }
  };
  EXPECT_EQ(number(std::vector<double>(99 * 98, 100.0)), 9);
  EXPECT_EQ(number({}), 9);
  for (const double none : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    auto losses = planeTable();
    losses[4000] = none;
    EXPECT_EQ(number(losses), 6);
  }
}

}  // namespace
}  // namespace zel
