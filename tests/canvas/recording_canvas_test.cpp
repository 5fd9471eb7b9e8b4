#include "canvas/recording_canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace zel {
namespace {

TEST(RecordingCanvas, StartsWithTheValuesOfANewCanvas) {
  const RecordingCanvas canvas;
  EXPECT_EQ(canvas.state().scale, (CanvasScale{0, 0, 1, 1}));
  EXPECT_EQ(canvas.scaleWidth(), 1);
  EXPECT_EQ(canvas.drawWidth(), 1);
  EXPECT_EQ(canvas.state().drawMode, DrawMode::kCopyPen);
  EXPECT_EQ(canvas.state().fillColour, kWhite);
  EXPECT_EQ(canvas.state().textPosition, (CanvasPoint{0, 0}));
  EXPECT_TRUE(canvas.operations().empty());
  EXPECT_FALSE(canvas.wasCleared());
}

TEST(RecordingCanvas, RecordsEveryOperationInOrder) {
  RecordingCanvas canvas;
  canvas.setScale(-1, 500, 40, -20);
  canvas.clear();
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.setFillStyle(FillStyle::kSolid);
  canvas.setFillColour(0x123456);
  canvas.setDrawWidth(3);
  canvas.line(0, 1, 2, 3, 0x00FFFF);
  canvas.circle(4, 5, 0.5);
  canvas.setTextPosition(6, 7);
  canvas.print("350");
  const std::vector<RecordedOperation> expected{
      RecordedScale{{-1, 500, 40, -20}},
      RecordedClear{},
      RecordedDrawMode{DrawMode::kXorPen},
      RecordedFillStyle{FillStyle::kSolid},
      RecordedFillColour{0x123456},
      RecordedDrawWidth{3},
      RecordedLine{{0, 1}, {2, 3}, 0x00FFFF, DrawMode::kXorPen, 3},
      RecordedCircle{{4, 5}, 0.5, 0x123456, DrawMode::kXorPen, 3},
      RecordedTextPosition{{6, 7}},
      RecordedText{{6, 7}, "350", DrawMode::kXorPen},
  };
  EXPECT_EQ(canvas.operations(), expected);
}

TEST(RecordingCanvas, GivesAStrokeThePenOfItsMoment) {
  RecordingCanvas canvas;
  canvas.line(0, 0, 1, 0, kRed);
  canvas.setDrawMode(DrawMode::kBlackness);
  canvas.setDrawWidth(2);
  canvas.line(0, 0, 1, 0, kRed);
  ASSERT_EQ(canvas.lines().size(), 2U);
  EXPECT_EQ(canvas.lines()[0], (RecordedLine{{0, 0}, {1, 0}, kRed, DrawMode::kCopyPen, 1}));
  EXPECT_EQ(canvas.lines()[1], (RecordedLine{{0, 0}, {1, 0}, kRed, DrawMode::kBlackness, 2}));
}

TEST(RecordingCanvas, ShowsWhatWasDrawnSinceTheLastClear) {
  RecordingCanvas canvas;
  canvas.line(0, 0, 9, 9, kBlack);
  canvas.circle(0, 0, 1);
  canvas.print("old");
  canvas.clear();
  canvas.line(1, 1, 2, 2, kRed);
  canvas.line(1, 1, 2, 3, kBlack);
  canvas.circle(3, 3, 1);
  canvas.print("new");
  EXPECT_TRUE(canvas.wasCleared());
  ASSERT_EQ(canvas.lines().size(), 2U);
  ASSERT_EQ(canvas.linesIn(kRed).size(), 1U);
  EXPECT_EQ(canvas.linesIn(kRed)[0].to, (CanvasPoint{2, 2}));
  ASSERT_EQ(canvas.circles().size(), 1U);
  EXPECT_EQ(canvas.circles()[0].centre, (CanvasPoint{3, 3}));
  ASSERT_EQ(canvas.texts().size(), 1U);
  EXPECT_EQ(canvas.texts()[0].text, "new");
  EXPECT_EQ(canvas.operations().size(), 8U);
}

TEST(RecordingCanvas, PrintMovesOnToTheStartOfTheNextLine) {
  RecordingCanvas canvas;
  canvas.setScale(10, 400, 50, 0);
  canvas.setTextPosition(20, 300);
  canvas.print("a");
  // A fortieth of -400 down from 300.
  EXPECT_EQ(canvas.state().textPosition, (CanvasPoint{10, 290}));
  canvas.print("b");
  EXPECT_EQ(canvas.texts()[1].position, (CanvasPoint{10, 290}));
}

TEST(RecordingCanvas, ClearPutsTheTextPositionIntoTheLeftTopCorner) {
  RecordingCanvas canvas;
  canvas.setScale(10, 400, 50, 0);
  canvas.setTextPosition(20, 300);
  canvas.clear();
  EXPECT_EQ(canvas.state().textPosition, (CanvasPoint{10, 400}));
}

TEST(RecordingCanvas, ForgetsOperationsButKeepsThePen) {
  RecordingCanvas canvas;
  canvas.setScale(0, 10, 8, 0);
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.setDrawWidth(4);
  canvas.forgetOperations();
  EXPECT_TRUE(canvas.operations().empty());
  EXPECT_EQ(canvas.scaleWidth(), 8);
  canvas.line(0, 0, 1, 1, kRed);
  EXPECT_EQ(canvas.lines()[0].mode, DrawMode::kXorPen);
  EXPECT_EQ(canvas.lines()[0].width, 4);
}

TEST(RecordingCanvas, ReadsTheScaleWidthWithItsSign) {
  RecordingCanvas canvas;
  canvas.setScale(12, 0, 2, 1);
  EXPECT_EQ(canvas.scaleWidth(), -10);
}

TEST(RecordingCanvas, TakesTheNearestAllowedDrawWidth) {
  RecordingCanvas canvas;
  for (const auto& [asked, taken] :
       std::vector<std::pair<int, int>>{{1, 1}, {3, 3}, {0, 1}, {-5, 1}, {32767, 32767}, {40000, 32767}}) {
    canvas.setDrawWidth(asked);
    EXPECT_EQ(canvas.drawWidth(), taken) << asked;
  }
}

TEST(RecordingCanvas, ReplaysTheSameOperationsOnAnotherCanvas) {
  RecordingCanvas canvas;
  canvas.setScale(0, 10, 8, 0);
  canvas.clear();
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.setFillStyle(FillStyle::kSolid);
  canvas.setFillColour(kRed);
  canvas.setDrawWidth(2);
  canvas.line(0, 0, 1, 1, kRed);
  canvas.circle(1, 1, 3);
  canvas.setTextPosition(4, 4);
  canvas.print("x");
  canvas.print("y");
  RecordingCanvas other;
  canvas.replay(other);
  EXPECT_EQ(other.operations(), canvas.operations());
}

TEST(RecordingCanvas, KeepsCoordinatesThatHaveNoPlace) {
  RecordingCanvas canvas;
  canvas.line(std::nan(""), 1, std::numeric_limits<double>::infinity(), 2, kBlack);
  ASSERT_EQ(canvas.lines().size(), 1U);
  EXPECT_TRUE(std::isnan(canvas.lines()[0].from.x));
  EXPECT_TRUE(std::isinf(canvas.lines()[0].to.x));
}

TEST(RecordingCanvas, DescribesAnOperationInOneLine) {
  EXPECT_EQ(describe(RecordedScale{{0, 500.5, 40, -20}}), "scale (0, 500.5)-(40, -20)");
  EXPECT_EQ(describe(RecordedClear{}), "clear");
  EXPECT_EQ(describe(RecordedDrawMode{DrawMode::kBlackness}), "draw mode blackness");
  EXPECT_EQ(describe(RecordedFillStyle{FillStyle::kSolid}), "fill style solid");
  EXPECT_EQ(describe(RecordedFillColour{kWhite}), "fill colour 0xFFFFFF");
  EXPECT_EQ(describe(RecordedDrawWidth{3}), "draw width 3");
  EXPECT_EQ(describe(RecordedLine{{0, 1}, {2, 3}, kRed, DrawMode::kCopyPen, 1}),
            "line (0, 1)-(2, 3) colour 0x0000FF copy pen width 1");
  EXPECT_EQ(describe(RecordedCircle{{0, 1}, 2, kWhite, DrawMode::kXorPen, 1}),
            "circle (0, 1) radius 2 fill 0xFFFFFF XOR pen width 1");
  EXPECT_EQ(describe(RecordedTextPosition{{1, 2}}), "text position (1, 2)");
  EXPECT_EQ(describe(RecordedText{{1, 2}, "1,000", DrawMode::kBlackness}), "text (1, 2) \"1,000\" blackness");
  std::ostringstream stream;
  stream << RecordedOperation(RecordedClear{});
  EXPECT_EQ(stream.str(), "clear");
}

TEST(RecordingCanvas, KeepsARectangleWithItsColourAndMode) {
  RecordingCanvas canvas;
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.fillRectangle(1, 2, 3, 4, kRed);
  ASSERT_EQ(canvas.rectangles().size(), 1U);
  EXPECT_EQ(canvas.rectangles()[0], (RecordedRectangle{{1, 2}, {3, 4}, kRed, DrawMode::kXorPen}));
  EXPECT_EQ(describe(canvas.operations().back()), "rectangle (1, 2)-(3, 4) colour 0x0000FF XOR pen");
  RecordingCanvas copy;
  canvas.replay(copy);
  EXPECT_EQ(copy.operations(), canvas.operations());
}

// 160 characters to a line and 40 lines to the picture, whichever way the scale runs.
TEST(RecordingCanvas, MeasuresTextsByTheirCharacters) {
  RecordingCanvas canvas;
  canvas.setScale(320, 0, 0, 80);
  EXPECT_EQ(canvas.textWidth("50 \xE2\x88\x92 dB"), 14);
  EXPECT_EQ(canvas.textWidth(""), 0);
  EXPECT_EQ(canvas.textHeight(), 2);
}

}  // namespace
}  // namespace zel
