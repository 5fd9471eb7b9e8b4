#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>

#include "canvas/qt/raster_canvas.h"
#include "support/offscreen.h"

namespace zel {
namespace {

class RasterCanvasText : public test::OffscreenTest<QGuiApplication> {
 protected:
  // 200 x 100 logical pixels; a world unit is one, y upwards.
  static RasterCanvas canvasAt(double ratio) {
    RasterCanvas canvas(QSize(200, 100), ratio);
    canvas.setScale(0, 100, 200, 0);
    return canvas;
  }
  static void printAt(RasterCanvas& canvas, double x, double y, std::string_view text) {
    canvas.setTextPosition(x, y);
    canvas.print(text);
  }
};

const std::vector<double> kTextRatios{1, 1.25, 1.5, 2, 3};

// Logical pixels around everything that is not white.
QRectF ink(const QImage& image) {
  QRect box;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixel(x, y) != 0xFFFFFFFF) box |= QRect(x, y, 1, 1);
  const double ratio = image.devicePixelRatio();
  return {box.x() / ratio, box.y() / ratio, box.width() / ratio, box.height() / ratio};
}

int inkedPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) != 0xFFFFFFFF;
  return count;
}

TEST_F(RasterCanvasText, HasItsTopLeftCornerAtThePosition) {
  for (const double ratio : kTextRatios) {
    RasterCanvas canvas = canvasAt(ratio);
    printAt(canvas, 40, 80, "1,250");
    ASSERT_EQ(canvas.textRectangles().size(), 1U);
    const TextRectangle& text = canvas.textRectangles()[0];
    EXPECT_EQ(text.text, "1,250");
    EXPECT_EQ(text.position, (CanvasPoint{40, 80}));
    EXPECT_NEAR(text.rectangle.left(), 40, 1) << ratio;
    EXPECT_NEAR(text.rectangle.top(), 20, 1) << ratio;
    EXPECT_TRUE(text.rectangle.contains(ink(canvas.image()))) << ratio;
    // Half of a digit's height and of the width of five signs, at least, is really drawn on.
    EXPECT_GT(ink(canvas.image()).height(), text.rectangle.height() * 0.4);
    EXPECT_GT(ink(canvas.image()).width(), text.rectangle.width() * 0.7);
  }
}

TEST_F(RasterCanvasText, TakesAsManyLogicalPixelsAtEveryRatio) {
  RasterCanvas plain = canvasAt(1);
  printAt(plain, 40, 80, "1,250");
  for (const double ratio : kTextRatios) {
    RasterCanvas canvas = canvasAt(ratio);
    printAt(canvas, 40, 80, "1,250");
    const QRectF here = canvas.textRectangles()[0].rectangle;
    EXPECT_NEAR(here.width(), plain.textRectangles()[0].rectangle.width(), 1e-9);
    EXPECT_NEAR(here.height(), plain.textRectangles()[0].rectangle.height(), 1e-9);
  }
}

// Drawn with the pixels of the ratio, not blown up from those of 1: a picture of single pixels would show it.
TEST_F(RasterCanvasText, IsSharpAtARatioOfTwo) {
  RasterCanvas canvas = canvasAt(2);
  printAt(canvas, 40, 80, "1,250");
  const QImage& image = canvas.image();
  int different = 0;
  for (int y = 0; y + 1 < image.height(); y += 2)
    for (int x = 0; x + 1 < image.width(); x += 2)
      different +=
          image.pixel(x, y) != image.pixel(x + 1, y) || image.pixel(x, y) != image.pixel(x, y + 1) ? 1 : 0;
  EXPECT_GT(different, 20);
}

TEST_F(RasterCanvasText, ShowsWholeWhenItsPositionIsInThePicture) {
  for (const double ratio : kTextRatios)
    for (const double x : {0.0, 100.0, 180.0, 195.0, 199.9, 200.0})
      for (const double y : {100.0, 60.0, 10.0, 3.0, 0.0}) {
        RasterCanvas whole(QSize(400, 300), ratio);
        whole.setScale(0, 300, 400, 0);
        printAt(whole, 100, 200, "12,345");
        RasterCanvas canvas = canvasAt(ratio);
        printAt(canvas, x, y, "12,345");
        EXPECT_EQ(inkedPixels(canvas.image()), inkedPixels(whole.image())) << ratio << ' ' << x << ' ' << y;
        const QRectF rectangle = canvas.textRectangles()[0].rectangle;
        EXPECT_TRUE(QRectF(0, 0, 200, 100).adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(rectangle));
        EXPECT_TRUE(rectangle.contains(ink(canvas.image())));
      }
}

TEST_F(RasterCanvasText, MovesInsideByAsLittleAsIsNeeded) {
  for (const double ratio : kTextRatios) {
    RasterCanvas canvas = canvasAt(ratio);
    printAt(canvas, 195, 2, "12,345");
    const QRectF rectangle = canvas.textRectangles()[0].rectangle;
    EXPECT_LE(rectangle.right(), 200 + 1e-9);
    EXPECT_GT(rectangle.right(), 200 - 1 / ratio - 1e-9);
    EXPECT_LE(rectangle.bottom(), 100 + 1e-9);
    EXPECT_GT(rectangle.bottom(), 100 - 1 / ratio - 1e-9);
  }
}

bool overlap(const QRectF& a, const QRectF& b) {
  return a.left() < b.right() - 1e-6 && b.left() < a.right() - 1e-6 && a.top() < b.bottom() - 1e-6 &&
         b.top() < a.bottom() - 1e-6;
}

TEST_F(RasterCanvasText, StepsAsideByAsLittleAsFreesIt) {
  for (const double ratio : kTextRatios) {
    RasterCanvas free = canvasAt(ratio);
    printAt(free, 40, 80, "1,250");
    const QRectF first = free.textRectangles()[0].rectangle;
    // Asked for this far left of the first one's right end, and above its lower end.
    for (const double into : {1.0, 3.0})
      for (const double above : {2.0, 5.0, 9.0}) {
        RasterCanvas canvas = canvasAt(ratio);
        printAt(canvas, 40, 80, "1,250");
        const CanvasPoint asked{first.right() - into, 100 - (first.bottom() - above)};
        printAt(canvas, asked.x, asked.y, "0");
        const TextRectangle& second = canvas.textRectangles()[1];
        EXPECT_FALSE(overlap(first, second.rectangle)) << ratio << ' ' << into << ' ' << above;
        EXPECT_EQ(second.position, asked);
        const double right = second.rectangle.left() - asked.x;
        const double down = second.rectangle.top() - (100 - asked.y);
        EXPECT_GE(right, -1.0);
        EXPECT_GE(down, -1.0);
        const double gap = QFontMetricsF(canvas.font(), &canvas.image()).horizontalAdvance(QLatin1Char(' '));
        EXPECT_LE(right + down, std::min(into + gap, above) + 2) << ratio << ' ' << into << ' ' << above;
      }
  }
}

TEST_F(RasterCanvasText, KeepsTheGapOfABlankFromTheTextBesideIt) {
  RasterCanvas canvas = canvasAt(1);
  printAt(canvas, 40, 80, "634");
  const double end = canvas.textRectangles()[0].rectangle.right();
  printAt(canvas, end, 80, "0");
  const double gap = QFontMetricsF(canvas.font(), &canvas.image()).horizontalAdvance(QLatin1Char(' '));
  EXPECT_GE(canvas.textRectangles()[1].rectangle.left(), end + gap - 1e-6);
  EXPECT_LT(canvas.textRectangles()[1].rectangle.left(), end + gap + 1);
}

TEST_F(RasterCanvasText, StaysWhereItIsAskedForWhenALineIsNotEnough) {
  RasterCanvas canvas = canvasAt(1);
  for (const double y : {80.0, 70.0, 60.0}) printAt(canvas, 40, y, "a long text in the way");
  const std::size_t before = canvas.textRectangles().size();
  printAt(canvas, 60, 80, "0");
  EXPECT_NEAR(canvas.textRectangles()[before].rectangle.left(), 60, 1);
  EXPECT_NEAR(canvas.textRectangles()[before].rectangle.top(), 20, 1);
}

TEST_F(RasterCanvasText, NeverStepsOutOfThePicture) {
  for (const double ratio : kTextRatios) {
    RasterCanvas canvas = canvasAt(ratio);
    printAt(canvas, 190, 5, "1,250");
    printAt(canvas, 190, 5, "0");
    EXPECT_TRUE(QRectF(0, 0, 200, 100)
                    .adjusted(-1e-6, -1e-6, 1e-6, 1e-6)
                    .contains(canvas.textRectangles()[1].rectangle));
  }
}

TEST_F(RasterCanvasText, OneThatFitsIsNotMoved) {
  RasterCanvas canvas = canvasAt(1);
  printAt(canvas, 0, 100, "0");
  EXPECT_EQ(canvas.textRectangles()[0].rectangle.top(), 0);
  EXPECT_EQ(canvas.textRectangles()[0].rectangle.left(), 0);
}

TEST_F(RasterCanvasText, OneLargerThanThePictureKeepsItsBeginning) {
  RasterCanvas canvas(QSize(20, 6), 1);
  canvas.setScale(0, 6, 20, 0);
  printAt(canvas, 10, 3, "a rather long label");
  ASSERT_EQ(canvas.textRectangles().size(), 1U);
  EXPECT_EQ(canvas.textRectangles()[0].rectangle.topLeft(), QPointF(0, 0));
}

TEST_F(RasterCanvasText, IsNotDrawnWhenItLiesOutside) {
  RasterCanvas canvas = canvasAt(1);
  printAt(canvas, -60, 50, "left");
  printAt(canvas, 201, 50, "right");
  printAt(canvas, 50, 101, "above");
  printAt(canvas, 50, -1, "below");
  EXPECT_EQ(inkedPixels(canvas.image()), 0);
  EXPECT_TRUE(canvas.textRectangles().empty());
}

// The first elevation label of an expanded view stands up to half a sample left of the picture; it used to be
// left out, at one pixel ratio and not at another.
TEST_F(RasterCanvasText, ShowsWholeWhenItReachesIntoThePictureFromTheLeft) {
  for (const double ratio : kTextRatios) {
    RasterCanvas canvas = canvasAt(ratio);
    printAt(canvas, -5, 60, "1370");
    ASSERT_EQ(canvas.textRectangles().size(), 1U) << ratio;
    EXPECT_GE(canvas.textRectangles()[0].rectangle.left(), 0) << ratio;
    EXPECT_LT(canvas.textRectangles()[0].rectangle.left(), 1) << ratio;
  }
}

TEST_F(RasterCanvasText, IsBlackInEveryDrawMode) {
  RasterCanvas copied = canvasAt(2);
  printAt(copied, 40, 80, "350");
  for (const DrawMode mode : {DrawMode::kXorPen, DrawMode::kBlackness}) {
    RasterCanvas canvas = canvasAt(2);
    canvas.setDrawMode(mode);
    printAt(canvas, 40, 80, "350");
    EXPECT_EQ(canvas.image(), copied.image());
  }
  int black = 0;
  for (int y = 0; y < 200; ++y)
    for (int x = 0; x < 400; ++x) {
      const QRgb pixel = copied.image().pixel(x, y);
      black += pixel == 0xFF000000;
      ASSERT_EQ(qRed(pixel), qGreen(pixel));
      ASSERT_EQ(qRed(pixel), qBlue(pixel));
    }
  // Strokes of a digit are wider than a pixel here: within their smooth edges they are opaque.
  EXPECT_GT(black, 20);
}

TEST_F(RasterCanvasText, OverAXorStrokeLeavesNoTraceOfTheStrokeWhenThatIsErasedFirst) {
  RasterCanvas canvas = canvasAt(1.5);
  printAt(canvas, 40, 80, "350");
  const QImage before = canvas.image().copy();
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.line(45, 0, 45, 100, 0x00FFFF);
  EXPECT_NE(canvas.image(), before);
  canvas.line(45, 0, 45, 100, 0x00FFFF);
  EXPECT_EQ(canvas.image(), before);
}

TEST_F(RasterCanvasText, PrintMovesOnToTheStartOfTheNextLine) {
  RasterCanvas canvas = canvasAt(2);
  canvas.setScale(10, 100, 210, 0);
  printAt(canvas, 50, 80, "first");
  canvas.print("second");
  ASSERT_EQ(canvas.textRectangles().size(), 2U);
  const QImage device(canvas.image());
  const double line = QFontMetricsF(canvas.font(), &device).lineSpacing();
  EXPECT_EQ(canvas.textRectangles()[1].position, (CanvasPoint{10, 80 - line}));
  EXPECT_NEAR(canvas.textRectangles()[1].rectangle.top(), 20 + line, 1);
  EXPECT_NEAR(canvas.textRectangles()[1].rectangle.left(), 0, 1);
}

TEST_F(RasterCanvasText, AnEmptyTextMovesOnAndShowsNothing) {
  RasterCanvas canvas = canvasAt(1);
  printAt(canvas, 50, 80, "");
  EXPECT_TRUE(canvas.textRectangles().empty());
  canvas.print("x");
  EXPECT_LT(canvas.textRectangles().at(0).position.y, 80);
}

TEST_F(RasterCanvasText, StartsInTheLeftTopCornerAndReturnsThereWhenCleared) {
  RasterCanvas canvas(QSize(200, 100), 1);
  canvas.print("new");
  canvas.setScale(0, 100, 200, 0);
  canvas.clear();
  EXPECT_TRUE(canvas.textRectangles().empty());
  canvas.print("cleared");
  ASSERT_EQ(canvas.textRectangles().size(), 1U);
  EXPECT_EQ(canvas.textRectangles()[0].position, (CanvasPoint{0, 100}));
}

TEST_F(RasterCanvasText, RectanglesAreForgottenByClearAndResize) {
  RasterCanvas canvas = canvasAt(1);
  printAt(canvas, 50, 80, "x");
  canvas.clear();
  EXPECT_TRUE(canvas.textRectangles().empty());
  printAt(canvas, 50, 80, "x");
  canvas.resize(QSize(300, 100), 1);
  EXPECT_TRUE(canvas.textRectangles().empty());
}

TEST_F(RasterCanvasText, FontIsEightPointsOfTheApplicationsUntilOneIsSet) {
  RasterCanvas canvas = canvasAt(1);
  EXPECT_EQ(canvas.font().pointSizeF(), 8);
  EXPECT_EQ(canvas.font().families().value(0), QGuiApplication::font().family());
  // What stands in for a font without glyphs or without a file.
  EXPECT_TRUE(canvas.font().families().contains(QStringLiteral("Liberation Sans")));
  printAt(canvas, 40, 80, "350");
  QFont large(pinnedFamily());
  large.setPointSizeF(16);
  canvas.setFont(large);
  EXPECT_EQ(canvas.font(), large);
  printAt(canvas, 40, 80, "350");
  EXPECT_NEAR(canvas.textRectangles()[1].rectangle.height(),
              2 * canvas.textRectangles()[0].rectangle.height(), 3);
}

// 8 points are 8/72 inch, 10.67 pixels at 96 to the inch; the line of this font is 1.164 times that.
TEST_F(RasterCanvasText, HasTheSizeOfNinetySixPixelsToTheInch) {
  RasterCanvas canvas = canvasAt(1);
  printAt(canvas, 40, 80, "350");
  EXPECT_NEAR(canvas.textRectangles()[0].rectangle.height(), 8.0 / 72 * 96 * 1.164, 1.1);
}

TEST_F(RasterCanvasText, TakesUtf8AndSurvivesWhatIsNot) {
  RasterCanvas canvas = canvasAt(1);
  printAt(canvas, 10, 80, "35\xC2\xB0");
  printAt(canvas, 10, 50, "\xFF\xFE");
  ASSERT_EQ(canvas.textRectangles().size(), 2U);
  EXPECT_EQ(canvas.textRectangles()[0].text, "35\xC2\xB0");
  RasterCanvas two = canvasAt(1);
  printAt(two, 10, 80, "35");
  EXPECT_GT(canvas.textRectangles()[0].rectangle.width(), two.textRectangles()[0].rectangle.width());
}

TEST_F(RasterCanvasText, LeavesEveryPixelOpaque) {
  RasterCanvas canvas = canvasAt(1.25);
  printAt(canvas, 40, 80, "350");
  for (int y = 0; y < canvas.image().height(); ++y)
    for (int x = 0; x < canvas.image().width(); ++x)
      ASSERT_EQ(*(reinterpret_cast<const QRgb*>(canvas.image().constScanLine(y)) + x) >> 24, 0xFFU);
}

}  // namespace
}  // namespace zel
