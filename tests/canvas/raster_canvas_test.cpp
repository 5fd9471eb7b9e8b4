// Lines, circles and the picture itself: all of it without an application object.
#include "canvas/qt/raster_canvas.h"

#include <gtest/gtest.h>

#include <QColor>
#include <cmath>
#include <limits>
#include <random>

#include "canvas/recording_canvas.h"
#include "foundation/runtime_error.h"
#include "support/offscreen.h"

namespace zel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const std::vector<double> kRatios{1, 1.25, 1.5, 2, 3};

constexpr QRgb kBlackPixel = 0xFF000000;
constexpr QRgb kWhitePixel = 0xFFFFFFFF;

bool isWhite(const QImage& image) {
  QImage white(image.size(), image.format());
  white.fill(Qt::white);
  return QImage(image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format()) ==
         QImage(white.constBits(), white.width(), white.height(), white.bytesPerLine(), white.format());
}

// 100 x 50 logical pixels; a world unit is a logical pixel, y upwards.
RasterCanvas pixelCanvas(double ratio = 1) {
  RasterCanvas canvas(QSize(100, 50), ratio);
  canvas.setScale(0, 50, 100, 0);
  return canvas;
}

TEST(RasterCanvas, StartsWithTheValuesOfANewCanvas) {
  const RasterCanvas canvas(QSize(20, 10), 1);
  EXPECT_EQ(canvas.scale(), (CanvasScale{0, 0, 1, 1}));
  EXPECT_EQ(canvas.scaleWidth(), 1);
  EXPECT_EQ(canvas.drawWidth(), 1);
  EXPECT_TRUE(isWhite(canvas.image()));
  EXPECT_TRUE(canvas.textRectangles().empty());
}

TEST(RasterCanvas, HasAPictureOfDevicePixels) {
  const std::vector<std::pair<double, QSize>> cases{{1, {101, 51}},
                                                    {1.25, {127, 64}},  // 126.25 x 63.75
                                                    {1.5, {152, 77}},   // 151.5 x 76.5
                                                    {2, {202, 102}},
                                                    {3, {303, 153}}};
  for (const auto& [ratio, size] : cases) {
    const RasterCanvas canvas(QSize(101, 51), ratio);
    EXPECT_EQ(canvas.image().size(), size) << ratio;
    EXPECT_EQ(canvas.image().devicePixelRatio(), ratio);
    EXPECT_EQ(canvas.image().format(), QImage::Format_RGB32);
    EXPECT_EQ(canvas.size(), QSize(101, 51));
    EXPECT_EQ(canvas.pixelRatio(), ratio);
  }
}

// 100 x 1.1 is 110.00000000000001 in binary.
TEST(RasterCanvas, NeedsNoPixelMoreForARatioThatBinaryCannotHold) {
  EXPECT_EQ(RasterCanvas(QSize(100, 10), 1.1).image().size(), QSize(110, 11));
}

TEST(RasterCanvas, MapsTheCornersOfTheScaleToTheCornersOfThePicture) {
  for (const double ratio : kRatios) {
    RasterCanvas canvas(QSize(200, 100), ratio);
    canvas.setScale(-10, 500, 30, -100);
    EXPECT_EQ(canvas.worldToPixel({-10, 500}), QPointF(0, 0));
    EXPECT_EQ(canvas.worldToPixel({30, -100}), QPointF(200, 100));
    EXPECT_EQ(canvas.worldToPixel({10, 200}), QPointF(100, 50));
    EXPECT_EQ(canvas.pixelToWorld(QPointF(0, 0)), (CanvasPoint{-10, 500}));
    EXPECT_EQ(canvas.pixelToWorld(QPointF(200, 100)), (CanvasPoint{30, -100}));
    EXPECT_EQ(canvas.pixelToWorld(QPointF(50, 25)), (CanvasPoint{0, 350}));
  }
}

TEST(RasterCanvas, MapsThereAndBack) {
  RasterCanvas canvas(QSize(613, 217), 1.25);
  for (const CanvasScale& scale : std::vector<CanvasScale>{{0, 812.4, 47.31, -61.7}, {9, -3, -4, 88}}) {
    canvas.setScale(scale.left, scale.top, scale.right, scale.bottom);
    const CanvasPoint there = canvas.pixelToWorld(canvas.worldToPixel({3.25, 17.5}));
    EXPECT_NEAR(there.x, 3.25, 1e-12);
    EXPECT_NEAR(there.y, 17.5, 1e-10);
  }
}

TEST(RasterCanvas, DrawsUpwardsAndToTheRight) {
  RasterCanvas canvas = pixelCanvas();
  canvas.line(10, 0, 10, 20, kRed);
  EXPECT_EQ(canvas.image().pixel(10, 30), 0xFFFF0000);  // y 20 from the bottom of 50
  EXPECT_EQ(canvas.image().pixel(10, 49), 0xFFFF0000);
  EXPECT_EQ(canvas.image().pixel(10, 29), kWhitePixel);
}

TEST(RasterCanvas, ReadsASpanThatRunsTheOtherWay) {
  RasterCanvas canvas(QSize(100, 50), 1);
  canvas.setScale(100, 0, 0, 50);
  canvas.line(90, 5, 90, 5, kBlack);
  EXPECT_EQ(canvas.image().pixel(10, 5), kBlackPixel);
  EXPECT_EQ(canvas.scaleWidth(), -100);
}

TEST(RasterCanvas, RoundsToTheNearestPixelWithHalvesUp) {
  RasterCanvas canvas(QSize(100, 50), 1);
  canvas.setScale(0, 0, 100, 50);
  canvas.line(10.49, 10, 10.49, 10, kBlack);
  canvas.line(20.5, 10, 20.5, 10, kBlack);
  EXPECT_EQ(canvas.image().pixel(10, 10), kBlackPixel);
  EXPECT_EQ(canvas.image().pixel(21, 10), kBlackPixel);
}

TEST(RasterCanvas, LineIsAsWideAsTheDrawWidthTimesTheRatio) {
  for (const auto& [ratio, width, pixels] : std::vector<std::tuple<double, int, int>>{
           {1, 1, 1}, {1, 3, 3}, {1.25, 1, 1}, {1.25, 3, 4}, {1.5, 1, 2}, {2, 1, 2}, {2, 3, 6}, {3, 2, 6}}) {
    RasterCanvas canvas = pixelCanvas(ratio);
    canvas.setDrawWidth(width);
    canvas.line(40, 0, 40, 50, kBlack);
    int black = 0;
    for (int x = 0; x < canvas.image().width(); ++x) black += canvas.image().pixel(x, 20) == kBlackPixel;
    EXPECT_EQ(black, pixels) << ratio << ' ' << width;
  }
}

TEST(RasterCanvas, RectanglesWithACommonSideLeaveNoGapAndDoNotOverlap) {
  for (const double ratio : kRatios) {
    RasterCanvas canvas = pixelCanvas(ratio);
    canvas.setDrawMode(DrawMode::kXorPen);
    for (double x = 0; x < 100; x += 7.3)
      for (double y = 0; y < 50; y += 3.1) canvas.fillRectangle(x, y, x + 7.3, y + 3.1, kRed ^ kWhite);
    for (int y = 0; y < canvas.image().height(); ++y)
      for (int x = 0; x < canvas.image().width(); ++x)
        ASSERT_EQ(canvas.image().pixel(x, y), 0xFFFF0000) << x << ", " << y << " at " << ratio;
  }
}

TEST(RasterCanvas, FillsARectangleByAnyTwoOppositeCorners) {
  for (const bool turned : {false, true}) {
    RasterCanvas canvas = pixelCanvas();
    if (turned)
      canvas.fillRectangle(20, 10, 10, 20, kRed);
    else
      canvas.fillRectangle(10, 10, 20, 20, kRed);
    QRect inked;
    for (int y = 0; y < 50; ++y)
      for (int x = 0; x < 100; ++x)
        if (canvas.image().pixel(x, y) == 0xFFFF0000) inked |= QRect(x, y, 1, 1);
    EXPECT_EQ(inked, QRect(10, 30, 10, 10));
  }
}

TEST(RasterCanvas, ARectangleWithoutAnExtentOrAPlaceLeavesNothing) {
  RasterCanvas canvas = pixelCanvas();
  canvas.fillRectangle(10, 10, 10, 20, kRed);
  canvas.fillRectangle(10, 10, std::nan(""), 20, kRed);
  canvas.fillRectangle(10, 10, kInfinity, 20, kRed);
  canvas.fillRectangle(200, 10, 300, 20, kRed);
  EXPECT_TRUE(isWhite(canvas.image()));
  RasterCanvas().fillRectangle(0, 0, 1, 1, kRed);
}

TEST(RasterCanvas, TakesTheNearestAllowedDrawWidth) {
  RasterCanvas canvas = pixelCanvas();
  canvas.setDrawWidth(0);
  EXPECT_EQ(canvas.drawWidth(), 1);
  canvas.setDrawWidth(100000);
  EXPECT_EQ(canvas.drawWidth(), 32767);
}

TEST(RasterCanvas, CircleIsRoundAndMeasuredInUnitsOfX) {
  RasterCanvas canvas(QSize(100, 100), 1);
  canvas.setScale(0, 1000, 10, 0);  // a unit of x is 10 pixels, a unit of y a tenth of one
  canvas.setFillColour(kRed);
  canvas.circle(5, 500, 2);
  const QImage& image = canvas.image();
  for (const QPoint& rim : {QPoint(30, 50), QPoint(70, 50), QPoint(50, 30), QPoint(50, 70)})
    EXPECT_EQ(image.pixel(rim), kBlackPixel);
  EXPECT_EQ(image.pixel(50, 50), 0xFFFF0000);
  EXPECT_EQ(image.pixel(31, 50), 0xFFFF0000);
  EXPECT_EQ(image.pixel(29, 50), kWhitePixel);
}

TEST(RasterCanvas, RadiusCountsWithoutItsSign) {
  RasterCanvas with = pixelCanvas();
  RasterCanvas without = pixelCanvas();
  with.circle(50, 25, -7);
  without.circle(50, 25, 7);
  EXPECT_EQ(with.image(), without.image());
}

// The foreground colour is black, and XOR with black changes nothing: of a strobe only the filling is seen.
TEST(RasterCanvas, CircleOfTheXorPenShowsItsFillingOnly) {
  RasterCanvas canvas = pixelCanvas();
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.setFillColour(0xFFFF00);  // on white: red
  canvas.circle(50, 25, 5);
  EXPECT_EQ(canvas.image().pixel(50, 25), 0xFFFF0000);
  EXPECT_EQ(canvas.image().pixel(45, 25), kWhitePixel);
}

TEST(RasterCanvas, BlacknessPaintsBlackWhateverTheColours) {
  RasterCanvas canvas = pixelCanvas();
  canvas.setDrawMode(DrawMode::kBlackness);
  canvas.line(10, 10, 10, 10, kRed);
  canvas.circle(50, 25, 5);
  EXPECT_EQ(canvas.image().pixel(10, 40), kBlackPixel);
  EXPECT_EQ(canvas.image().pixel(50, 25), kBlackPixel);
}

// Erasing.

class ErasingStrokes : public testing::TestWithParam<double> {};

INSTANTIATE_TEST_SUITE_P(AtEveryRatio, ErasingStrokes, testing::ValuesIn(kRatios));

// A picture with ground, reference lines and filled circles to cross.
RasterCanvas busyCanvas(double ratio) {
  RasterCanvas canvas(QSize(307, 211), ratio);
  canvas.setScale(0, 600, 25, -40);
  std::mt19937 random(7);
  for (int i = 0; i < 60; ++i) {
    canvas.setDrawWidth(1 + i % 3);
    canvas.setDrawMode(i % 2 == 0 ? DrawMode::kCopyPen : DrawMode::kBlackness);
    const auto place = [&](int most) { return static_cast<double>(random() % static_cast<unsigned>(most)); };
    canvas.line(place(25), place(600), place(25), place(600), static_cast<Colour>(random() % 0x1000000));
    canvas.setFillColour(static_cast<Colour>(random() % 0x1000000));
    canvas.circle(place(25), place(600), 0.1 * place(9));
  }
  canvas.setDrawWidth(1);
  return canvas;
}

TEST_P(ErasingStrokes, LeaveNoPixelBehind) {
  RasterCanvas canvas = busyCanvas(GetParam());
  const QImage before = canvas.image().copy();
  std::mt19937 random(11);
  std::uniform_real_distribution<double> x(-10, 35);
  std::uniform_real_distribution<double> y(-300, 900);
  canvas.setDrawMode(DrawMode::kXorPen);
  RecordingCanvas strokes;
  for (int i = 0; i < 200; ++i) {
    strokes.setDrawWidth(1 + i % 7);
    strokes.setFillColour(static_cast<Colour>(random() % 0x1000000));
    const double markerX = x(random);
    strokes.line(markerX, -40, markerX, 600, 0x00FFFF);
    strokes.line(x(random), y(random), x(random), y(random), 0x123456);
    strokes.line(markerX, 100, markerX, 100, 0x654321);
    strokes.circle(x(random), y(random), 0.02 * i);
  }
  strokes.replay(canvas);
  EXPECT_NE(canvas.image(), before);
  strokes.replay(canvas);
  EXPECT_EQ(canvas.image(), before);
}

TEST_P(ErasingStrokes, LeaveNoPixelBehindAfterAResize) {
  RasterCanvas canvas = busyCanvas(GetParam());
  canvas.resize(QSize(411, 99), GetParam());
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.line(12, -40, 12, 600, 0x00FFFF);
  canvas.circle(12, 300, 0.125);
  EXPECT_FALSE(isWhite(canvas.image()));
  canvas.circle(12, 300, 0.125);
  canvas.line(12, -40, 12, 600, 0x00FFFF);
  EXPECT_TRUE(isWhite(canvas.image()));
}

TEST_P(ErasingStrokes, ShowAMarkerOverTheWholeHeight) {
  RasterCanvas canvas = busyCanvas(GetParam());
  canvas.clear();
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.line(12.5, -40, 12.5, 600, 0xFFFF00 ^ 0xFFFFFF);
  const int x = static_cast<int>(std::floor(153.5 * GetParam() + 0.5));
  for (int y = 0; y < canvas.image().height(); ++y)
    ASSERT_EQ(canvas.image().pixel(x, y), 0xFF00FFFF) << y;  // 0xFFFF00 in blue-green-red
}

// What has no place.

TEST(RasterCanvas, StrokesOnTheRightAndBottomBorderFallOnTheLastPixels) {
  for (const double ratio : {0.5, 1.0, 1.25, 1.5, 2.0, 3.0}) {
    RasterCanvas canvas(QSize(40, 30), ratio);
    canvas.setScale(3.7, 900, 11.2, 100);
    canvas.line(11.2, 100, 11.2, 900, kRed);
    canvas.line(3.7, 100, 11.2, 100, kRed);
    const QImage& image = canvas.image();
    for (int y = 0; y < image.height(); ++y)
      EXPECT_EQ(image.pixel(image.width() - 1, y), 0xFFFF0000U) << ratio << ' ' << y;
    for (int x = 0; x < image.width(); ++x)
      EXPECT_EQ(image.pixel(x, image.height() - 1), 0xFFFF0000U) << ratio << ' ' << x;
    EXPECT_EQ(image.pixel(image.width() / 2, image.height() / 2), 0xFFFFFFFFU);
  }
}

TEST(RasterCanvas, ShowsAsMuchOfALineOnTheRightBorderAsOnTheLeft) {
  for (const double ratio : {1.0, 2.0, 3.0, 4.0}) {
    RasterCanvas canvas(QSize(40, 30), ratio);
    canvas.setScale(0, 1, 1, 0);
    canvas.line(0, 0, 0, 1, kBlack);
    canvas.line(1, 0, 1, 1, kBlack);
    const QImage& image = canvas.image();
    int left = 0;
    int right = 0;
    for (int x = 0; x < image.width() / 2; ++x) {
      left += image.pixel(x, 5) == 0xFF000000U ? 1 : 0;
      right += image.pixel(image.width() - 1 - x, 5) == 0xFF000000U ? 1 : 0;
    }
    EXPECT_EQ(left, right) << ratio;
    EXPECT_GE(left, 1);
  }
}

TEST(RasterCanvas, StrokesBeyondTheBorderStayUnseen) {
  RasterCanvas canvas(QSize(40, 30), 1);
  canvas.setScale(0, 30, 40, 0);
  canvas.line(40.01, 0, 40.01, 30, kBlack);
  canvas.line(0, -0.01, 40, -0.01, kBlack);
  for (int y = 0; y < 30; ++y) EXPECT_EQ(canvas.image().pixel(39, y), 0xFFFFFFFFU);
  for (int x = 0; x < 40; ++x) EXPECT_EQ(canvas.image().pixel(x, 29), 0xFFFFFFFFU);
}

TEST(RasterCanvas, StrokesWithoutAFinitePlaceLeaveNothing) {
  RasterCanvas canvas = pixelCanvas();
  const std::vector<double> numbers{kInfinity, -kInfinity, std::nan("")};
  for (const double bad : numbers) {
    canvas.line(bad, 10, 20, 10, kBlack);
    canvas.line(10, bad, 10, 20, kBlack);
    canvas.line(10, 10, bad, 20, kBlack);
    canvas.line(10, 10, 20, bad, kBlack);
    canvas.circle(bad, 10, 5);
    canvas.circle(10, bad, 5);
    canvas.circle(10, 10, bad);
    canvas.setTextPosition(bad, 10);
    canvas.print("text");
  }
  EXPECT_TRUE(isWhite(canvas.image()));
  EXPECT_TRUE(canvas.textRectangles().empty());
}

TEST(RasterCanvas, AScaleWithoutASpanGivesNothingAPlace) {
  for (const CanvasScale& scale : std::vector<CanvasScale>{
           {5, 50, 5, 0}, {0, 5, 100, 5}, {std::nan(""), 0, 1, 1}, {-kInfinity, 0, kInfinity, 1}}) {
    RasterCanvas canvas = pixelCanvas();
    canvas.setScale(scale.left, scale.top, scale.right, scale.bottom);
    canvas.line(0, 0, 10, 10, kBlack);
    canvas.circle(5, 5, 1);
    canvas.setTextPosition(5, 5);
    canvas.print("text");
    EXPECT_TRUE(isWhite(canvas.image()));
    EXPECT_FALSE(std::isfinite(canvas.worldToPixel({1, 1}).x()) &&
                 std::isfinite(canvas.worldToPixel({1, 1}).y()));
  }
}

TEST(RasterCanvas, HugeCoordinatesShowWhereTheyCross) {
  RasterCanvas canvas = pixelCanvas();
  canvas.line(30, -1e300, 30, 1e300, kBlack);
  canvas.line(-1e17, 20, 1e17, 20, kRed);
  EXPECT_EQ(canvas.image().pixel(30, 0), kBlackPixel);
  EXPECT_EQ(canvas.image().pixel(30, 49), kBlackPixel);
  EXPECT_EQ(canvas.image().pixel(0, 30), 0xFFFF0000);
  EXPECT_EQ(canvas.image().pixel(99, 30), 0xFFFF0000);
}

// The picture.

TEST(RasterCanvas, ClearPaintsEverythingWhiteAndKeepsThePen) {
  RasterCanvas canvas = busyCanvas(1.5);
  canvas.setDrawWidth(4);
  canvas.clear();
  EXPECT_TRUE(isWhite(canvas.image()));
  EXPECT_EQ(canvas.drawWidth(), 4);
  EXPECT_EQ(canvas.scale(), (CanvasScale{0, 600, 25, -40}));
}

TEST(RasterCanvas, ANewScaleLeavesWhatIsDrawn) {
  RasterCanvas canvas = busyCanvas(1);
  const QImage before = canvas.image().copy();
  canvas.setScale(3, 4, 5, 6);
  EXPECT_EQ(canvas.image(), before);
}

TEST(RasterCanvas, ResizeStartsAWhitePictureWithTheSameScaleAndPen) {
  RasterCanvas canvas = busyCanvas(1);
  canvas.setDrawWidth(5);
  canvas.setDrawMode(DrawMode::kBlackness);
  canvas.resize(QSize(50, 40), 2);
  EXPECT_TRUE(isWhite(canvas.image()));
  EXPECT_EQ(canvas.image().size(), QSize(100, 80));
  EXPECT_EQ(canvas.scale(), (CanvasScale{0, 600, 25, -40}));
  EXPECT_EQ(canvas.worldToPixel({25, -40}), QPointF(50, 40));
  EXPECT_EQ(canvas.drawWidth(), 5);
}

TEST(RasterCanvas, AnEmptySizeIsAnEmptyPicture) {
  for (const QSize& size : {QSize(0, 0), QSize(0, 10), QSize(10, 0), QSize(-5, 10), QSize()}) {
    RasterCanvas canvas(size, 1);
    EXPECT_TRUE(canvas.image().isNull());
    EXPECT_EQ(canvas.size(), QSize(0, 0));
    canvas.clear();
    canvas.line(0, 0, 1, 1, kBlack);
    canvas.circle(0, 0, 1);
    canvas.print("text");
    EXPECT_TRUE(canvas.textRectangles().empty());
  }
  RasterCanvas unsized;
  unsized.line(0, 0, 1, 1, kBlack);
  EXPECT_TRUE(unsized.image().isNull());
}

TEST(RasterCanvas, ARatioThatIsNoneCountsAsOne) {
  for (const double ratio : {0.0, -2.0, kInfinity, std::nan("")})
    EXPECT_EQ(RasterCanvas(QSize(10, 10), ratio).image().size(), QSize(10, 10)) << ratio;
  EXPECT_EQ(RasterCanvas(QSize(10, 10), 1e-9).image().size(), QSize(1, 1));
}

TEST(RasterCanvas, APictureTooLargeForMemoryIsAnErrorAndTheOldOneStays) {
  RasterCanvas canvas = pixelCanvas();
  canvas.line(0, 0, 100, 50, kBlack);
  for (const auto& [size, ratio] :
       std::vector<std::pair<QSize, double>>{{{2000000000, 2000000000}, 1}, {{2000000000, 1}, 2}}) {
    try {
      canvas.resize(size, ratio);
      ADD_FAILURE() << "no error";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 7);
    }
  }
  EXPECT_EQ(canvas.size(), QSize(100, 50));
  EXPECT_FALSE(isWhite(canvas.image()));
}

TEST(RasterCanvas, ACopyOfThePictureStaysAsItWas) {
  RasterCanvas canvas = pixelCanvas();
  const QImage copy = canvas.image();
  canvas.line(0, 0, 100, 50, kBlack);
  EXPECT_TRUE(isWhite(copy));
  EXPECT_FALSE(isWhite(canvas.image()));
}

// Texts without an application.

TEST(RasterCanvasWithoutApplication, KeepsTextsButDoesNotDrawThem) {
  RasterCanvas canvas = pixelCanvas();
  canvas.setTextPosition(30, 40);
  canvas.print("350");
  canvas.setTextPosition(-30, 40);
  canvas.print("outside");
  EXPECT_TRUE(isWhite(canvas.image()));
  ASSERT_EQ(canvas.textRectangles().size(), 1U);
  EXPECT_EQ(canvas.textRectangles()[0].text, "350");
  EXPECT_EQ(canvas.textRectangles()[0].position, (CanvasPoint{30, 40}));
  EXPECT_EQ(canvas.textRectangles()[0].rectangle, QRectF(30, 10, 0, 0));
}

TEST(RasterCanvasWithoutApplication, PrintMovesOnByANominalLine) {
  RasterCanvas canvas = pixelCanvas();
  canvas.setTextPosition(30, 40);
  canvas.print("a");
  canvas.print("b");
  ASSERT_EQ(canvas.textRectangles().size(), 2U);
  EXPECT_EQ(canvas.textRectangles()[1].position, (CanvasPoint{0, 27}));  // 13 pixels below
}

}  // namespace
}  // namespace zel
