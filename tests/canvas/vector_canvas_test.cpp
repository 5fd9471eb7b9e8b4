#include "canvas/qt/vector_canvas.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>
#include <limits>
#include <random>

#include "canvas/qt/raster_canvas.h"
#include "support/offscreen.h"

namespace zel {
namespace {

constexpr double kEndless = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// 200 x 100 logical pixels; a world unit is one, y upwards.
void scaleByPixels(Canvas& canvas) { canvas.setScale(0, 100, 200, 0); }

VectorCanvas plainCanvas() {
  VectorCanvas canvas(QSize(200, 100));
  scaleByPixels(canvas);
  return canvas;
}

template <typename Stroke>
const Stroke& strokeOf(const VectorCanvas& canvas, std::size_t index = 0) {
  return std::get<Stroke>(canvas.strokes().at(index));
}

TEST(VectorCanvas, StartsWithTheValuesOfANewCanvas) {
  const VectorCanvas canvas(QSize(20, 10));
  EXPECT_EQ(canvas.scale(), (CanvasScale{0, 0, 1, 1}));
  EXPECT_EQ(canvas.drawWidth(), 1);
  EXPECT_EQ(canvas.size(), QSize(20, 10));
  EXPECT_EQ(canvas.pixelRatio(), 1);
  EXPECT_TRUE(canvas.strokes().empty());
}

TEST(VectorCanvas, StrokesRunThroughTheMiddleOfTheirPixel) {
  VectorCanvas canvas = plainCanvas();
  canvas.line(10, 90, 20.25, 80, kRed);
  const VectorLines& lines = strokeOf<VectorLines>(canvas);
  EXPECT_EQ(lines.colour, kRed);
  EXPECT_EQ(lines.width, 1);
  EXPECT_EQ(lines.chains, (std::vector<std::vector<QPointF>>{{{10.5, 10.5}, {20.75, 20.5}}}));
}

TEST(VectorCanvas, AnEvenWidthLiesRightOfAndBelowItsPosition) {
  VectorCanvas canvas = plainCanvas();
  canvas.setDrawWidth(2);
  canvas.line(0, 100, 10, 100, kBlack);
  // The two upper rows, from their upper to their lower edge: 0 to 2.
  EXPECT_EQ(strokeOf<VectorLines>(canvas).chains[0], (std::vector<QPointF>{{1, 1}, {11, 1}}));
}

TEST(VectorCanvas, StrokesOnTheRightAndBottomBorderRunThroughTheLastPixels) {
  for (const int width : {1, 2, 3}) {
    VectorCanvas canvas = plainCanvas();
    canvas.setDrawWidth(width);
    canvas.line(200, 100, 200, 0, kBlack);
    const double fromBorder = width == 2 ? 1 : 0.5;
    EXPECT_EQ(strokeOf<VectorLines>(canvas).chains[0][0].x(), 200 - fromBorder) << width;
    EXPECT_EQ(strokeOf<VectorLines>(canvas).chains[0][1].y(), 100 - fromBorder) << width;
  }
}

TEST(VectorCanvas, LinesThatGoOnFromEachOtherAreOneChain) {
  VectorCanvas canvas = plainCanvas();
  canvas.line(0, 10, 10, 20, kBlack);
  canvas.line(10, 20, 20, 15, kBlack);
  canvas.line(50, 20, 60, 15, kBlack);
  ASSERT_EQ(canvas.strokes().size(), 1U);
  const VectorLines& lines = strokeOf<VectorLines>(canvas);
  ASSERT_EQ(lines.chains.size(), 2U);
  EXPECT_EQ(lines.chains[0].size(), 3U);
  EXPECT_EQ(lines.chains[1].size(), 2U);
}

TEST(VectorCanvas, ANewPenOrAnotherStrokeBetweenBeginsANewEntry) {
  VectorCanvas canvas = plainCanvas();
  canvas.line(0, 10, 10, 20, kBlack);
  canvas.line(10, 20, 20, 15, kRed);
  canvas.setDrawWidth(3);
  canvas.line(20, 15, 30, 15, kRed);
  canvas.circle(30, 15, 4);
  canvas.line(30, 15, 40, 15, kRed);
  EXPECT_EQ(canvas.strokes().size(), 5U);
}

TEST(VectorCanvas, TheXorPenDrawsTheColourThatItHasOverWhite) {
  constexpr Colour kGreen = 0x00FF00;
  VectorCanvas canvas = plainCanvas();
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.line(0, 10, 10, 20, kGreen ^ kWhite);
  EXPECT_EQ(strokeOf<VectorLines>(canvas).colour, kGreen);
  canvas.setDrawMode(DrawMode::kBlackness);
  canvas.line(0, 10, 10, 20, kGreen);
  EXPECT_EQ(strokeOf<VectorLines>(canvas, 1).colour, kBlack);
}

TEST(VectorCanvas, ClearForgetsWhatWasDrawn) {
  VectorCanvas canvas = plainCanvas();
  canvas.line(0, 10, 10, 20, kBlack);
  canvas.setDrawWidth(3);
  canvas.clear();
  EXPECT_TRUE(canvas.strokes().empty());
  EXPECT_EQ(canvas.drawWidth(), 3);
}

TEST(VectorCanvas, CircleIsRoundAndMeasuredInUnitsOfX) {
  VectorCanvas canvas(QSize(200, 100));
  canvas.setScale(0, 1, 20, 0);  // 10 pixels to a unit of x
  canvas.setFillColour(kRed);
  canvas.setDrawWidth(3);
  canvas.circle(10, 0.5, -1.5);
  const VectorCircle& circle = strokeOf<VectorCircle>(canvas);
  EXPECT_EQ(circle.centre, QPointF(100.5, 50.5));
  EXPECT_EQ(circle.radius, 15);
  EXPECT_EQ(circle.filling, kRed);
  EXPECT_EQ(circle.outline, kBlack);
  EXPECT_EQ(circle.width, 3);
}

TEST(VectorCanvas, RectanglesAreTakenByAnyTwoCornersAndCutAtThePicture) {
  VectorCanvas canvas = plainCanvas();
  canvas.fillRectangle(20, 90, 10, 95, kRed);
  canvas.fillRectangle(190, -50, 1e300, 10, kRed);
  canvas.fillRectangle(210, 0, 220, 10, kRed);
  canvas.fillRectangle(10, 10, 10, 20, kRed);
  ASSERT_EQ(canvas.strokes().size(), 1U);
  EXPECT_EQ(strokeOf<VectorRectangles>(canvas).rectangles,
            (std::vector<QRectF>{{10, 5, 10, 5}, {190, 90, 10, 10}}));
}

TEST(VectorCanvas, StrokesWithoutAFinitePlaceLeaveNothing) {
  VectorCanvas canvas = plainCanvas();
  for (const double nowhere : {kEndless, -kEndless, kNan}) {
    canvas.line(nowhere, 10, 10, 20, kBlack);
    canvas.line(0, 10, 10, nowhere, kBlack);
    canvas.circle(nowhere, 10, 10);
    canvas.circle(10, 10, nowhere);
    canvas.fillRectangle(0, 0, nowhere, 10, kBlack);
  }
  canvas.setScale(0, 0, 0, 0);
  canvas.line(0, 10, 10, 20, kBlack);
  canvas.circle(5, 10, 1);
  canvas.fillRectangle(0, 0, 10, 10, kBlack);
  VectorCanvas empty(QSize(0, 0));
  empty.line(0, 0, 1, 1, kBlack);
  empty.circle(0, 0, 1);
  empty.fillRectangle(0, 0, 1, 1, kBlack);
  EXPECT_TRUE(canvas.strokes().empty());
  EXPECT_TRUE(empty.strokes().empty());
}

TEST(VectorCanvas, LinesAreCutNearThePictureAndLeftOutBeyondIt) {
  VectorCanvas canvas = plainCanvas();
  canvas.line(0, 200, 200, 200, kBlack);
  canvas.line(-10, 0, -2, 100, kBlack);
  EXPECT_TRUE(canvas.strokes().empty());
  canvas.line(-1e12, 50, 1e12, 50, kBlack);
  canvas.line(100, -1e12, 100, 1e12, kRed);
  for (const std::size_t index : {0U, 1U})
    for (const QPointF end : strokeOf<VectorLines>(canvas, index).chains[0]) {
      EXPECT_GE(end.x(), -1.01);
      EXPECT_LE(end.x(), 201.01);
      EXPECT_GE(end.y(), -1.01);
      EXPECT_LE(end.y(), 101.01);
    }
  EXPECT_NEAR(strokeOf<VectorLines>(canvas, 0).chains[0][0].y(), 50.5, 1e-3);
}

TEST(VectorCanvas, CirclesBeyondThePictureAreLeftOut) {
  VectorCanvas canvas = plainCanvas();
  canvas.circle(-20, 50, 10);
  canvas.circle(100, 50, 1e9);
  EXPECT_TRUE(canvas.strokes().empty());
  canvas.circle(-5, 50, 10);
  EXPECT_EQ(canvas.strokes().size(), 1U);
}

// Ends of random lines against the pixels of the raster: they run through the same pixel or its neighbour.
TEST(VectorCanvas, LinesLieWhereTheRasterHasThem) {
  std::mt19937 random(20240607);
  std::uniform_real_distribution<double> x(0, 200);
  std::uniform_real_distribution<double> y(0, 100);
  for (int i = 0; i < 300; ++i) {
    const double x1 = x(random), y1 = y(random), x2 = x(random), y2 = y(random);
    const int width = 1 + i % 3;
    RasterCanvas raster(QSize(200, 100), 1);
    VectorCanvas vector = plainCanvas();
    scaleByPixels(raster);
    for (Canvas* canvas : {static_cast<Canvas*>(&raster), static_cast<Canvas*>(&vector)}) {
      canvas->setDrawWidth(width);
      canvas->line(x1, y1, x2, y2, kBlack);
    }
    QRect ink;
    for (int row = 0; row < 100; ++row)
      for (int column = 0; column < 200; ++column)
        if (raster.image().pixel(column, row) != 0xFFFFFFFF) ink |= QRect(column, row, 1, 1);
    const std::vector<QPointF>& ends = strokeOf<VectorLines>(vector).chains[0];
    const double half = width / 2.0;
    const QRectF drawn =
        QRectF(ends[0], ends[1]).normalized().adjusted(-half, -half, half, half) & QRectF(0, 0, 200, 100);
    // Half a pixel of rounding, and what a thin slanted line leaves out of its round end.
    constexpr double kTolerance = 1.01;  // pixels
    EXPECT_NEAR(drawn.left(), ink.left(), kTolerance) << i;
    EXPECT_NEAR(drawn.right(), ink.right() + 1, kTolerance) << i;
    EXPECT_NEAR(drawn.top(), ink.top(), kTolerance) << i;
    EXPECT_NEAR(drawn.bottom(), ink.bottom() + 1, kTolerance) << i;
  }
}

TEST(VectorCanvasWithoutApplication, KeepsTextsButDoesNotDrawThem) {
  VectorCanvas canvas = plainCanvas();
  canvas.setTextPosition(40, 80);
  canvas.print("1,250");
  EXPECT_TRUE(canvas.strokes().empty());
  ASSERT_EQ(canvas.textRectangles().size(), 1U);
  EXPECT_EQ(canvas.textWidth("1,250"), 0);
  EXPECT_EQ(canvas.textHeight(), 13);
}

class VectorCanvasText : public test::OffscreenTest<QGuiApplication> {
 protected:
  static void drawLabels(Canvas& canvas) {
    for (const auto& [x, y] : std::vector<std::pair<double, double>>{
             {10, 90}, {14, 88}, {30, 88}, {190, 50}, {0, 2}, {-8, 60}, {-300, 60}, {100.4, 49.6}}) {
      canvas.setTextPosition(x, y);
      canvas.print("1,250");
    }
  }
};

TEST_F(VectorCanvasText, LiesWhereTheRasterHasIt) {
  RasterCanvas raster(QSize(200, 100), 1);
  VectorCanvas vector = plainCanvas();
  scaleByPixels(raster);
  drawLabels(raster);
  drawLabels(vector);
  ASSERT_EQ(vector.textRectangles().size(), raster.textRectangles().size());
  EXPECT_EQ(vector.textRectangles().size(), 7U);
  for (std::size_t i = 0; i < raster.textRectangles().size(); ++i) {
    EXPECT_EQ(vector.textRectangles()[i].rectangle, raster.textRectangles()[i].rectangle) << i;
    EXPECT_EQ(vector.textRectangles()[i].text, raster.textRectangles()[i].text) << i;
    const auto& text = strokeOf<VectorText>(vector, i);
    EXPECT_EQ(text.text, QStringLiteral("1,250"));
    EXPECT_TRUE(vector.textRectangles()[i].rectangle.contains(text.base)) << i;
  }
}

TEST_F(VectorCanvasText, HasTheWidthThatItTakes) {
  for (const double factor : {1.0, 0.5, -2.0}) {
    RasterCanvas raster(QSize(200, 100), 2);
    VectorCanvas vector(QSize(200, 100));
    for (PictureCanvas* canvas :
         {static_cast<PictureCanvas*>(&raster), static_cast<PictureCanvas*>(&vector)}) {
      canvas->setScale(0, 100 * factor, 200 * factor, 0);
      canvas->setTextPosition(20 * factor, 80 * factor);
      canvas->print("1,250");
      const QRectF place = canvas->textRectangles()[0].rectangle;
      EXPECT_NEAR(canvas->textWidth("1,250"), place.width() * std::abs(factor), 1 * std::abs(factor));
      EXPECT_NEAR(canvas->textHeight(), place.height() * std::abs(factor), 2 * std::abs(factor));
      EXPECT_EQ(canvas->textWidth(""), 0);
    }
  }
}

TEST_F(VectorCanvasText, IsDrawnIntoTheRectangleAndCutThere) {
  VectorCanvas canvas = plainCanvas();
  canvas.setDrawWidth(9);
  canvas.line(0, 100, 0, 0, kRed);
  canvas.fillRectangle(100, 100, 200, 50, 0xFF0000);
  QImage image(500, 400, QImage::Format_RGB32);
  image.fill(Qt::gray);
  QPainter painter(&image);
  painter.setPen(Qt::green);
  canvas.paint(painter, QRectF(50, 100, 400, 200));
  EXPECT_EQ(painter.pen().color(), QColor(Qt::green));
  EXPECT_FALSE(painter.hasClipping());
  EXPECT_TRUE(painter.transform().isIdentity());
  painter.end();
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (!QRect(50, 100, 400, 200).contains(x, y)) {
        ASSERT_EQ(image.pixelColor(x, y), QColor(Qt::gray)) << x << "," << y;
      }
  EXPECT_EQ(image.pixelColor(50, 200), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(58, 200), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(62, 200), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(251, 101), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(449, 199), QColor(Qt::blue));
  EXPECT_EQ(image.pixelColor(249, 150), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(300, 201), QColor(Qt::white));
}

// The same text at every resolution of the device: an eighth of the picture's width here, too.
TEST_F(VectorCanvasText, GrowsWithTheRectangleAndNotWithTheResolution) {
  VectorCanvas canvas = plainCanvas();
  canvas.setTextPosition(10, 90);
  canvas.print("1,250");
  const QRectF place = canvas.textRectangles()[0].rectangle;
  for (const int dotsPerMetre : {2835, 3780, 11811}) {
    QImage image(800, 400, QImage::Format_RGB32);
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    QPainter painter(&image);
    canvas.paint(painter, image.rect());
    painter.end();
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x)
        if (image.pixel(x, y) != 0xFFFFFFFF) ink |= QRect(x, y, 1, 1);
    EXPECT_NEAR(ink.left() / 4.0, place.left(), 2) << dotsPerMetre;
    EXPECT_NEAR((ink.right() + 1) / 4.0, place.right(), 2) << dotsPerMetre;
    EXPECT_GE(ink.top() / 4.0, place.top()) << dotsPerMetre;
    EXPECT_LE((ink.bottom() + 1) / 4.0, place.bottom() + 0.5) << dotsPerMetre;
  }
}

TEST_F(VectorCanvasText, CanBeSelectedOnAPage) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("page.pdf"));
  {
    QPdfWriter page(file);
    QPainter painter(&page);
    VectorCanvas canvas = plainCanvas();
    drawLabels(canvas);
    canvas.line(0, 0, 200, 100, kBlack);
    canvas.paint(painter, QRectF(0, 0, page.width(), page.width() / 2.0));
  }
  QProcess reader;
  reader.start(QStringLiteral("pdftotext"), {file, QStringLiteral("-")});
  ASSERT_TRUE(reader.waitForFinished()) << "the test needs pdftotext (package poppler-utils)";
  EXPECT_EQ(reader.readAllStandardOutput().count("1,250"), 7);
}

}  // namespace
}  // namespace zel
