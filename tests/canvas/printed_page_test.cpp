#include "canvas/qt/printed_page.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPrinter>
#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "canvas/qt/pdf_document.h"
#include "support/offscreen.h"
#include "support/pdf_tools.h"

namespace zel {
namespace {

constexpr double kWidth = 11906;  // A4, twips
constexpr double kHeight = 16838;
constexpr double kSmallWidth = 5953;  // A6, twips
constexpr double kSmallHeight = 8391;
constexpr double kTwipsPerPixel = 15;
constexpr Colour kBlue = 0xFF0000;

// A world unit is a twip, y upwards.
void scaleByTwips(PrintedPage& page) {
  page.sheet().setScale(0, page.size().height(), page.size().width(), 0);
}

template <typename Stroke>
const Stroke& stroke(const VectorCanvas& canvas, std::size_t index = 0) {
  return std::get<Stroke>(canvas.strokes().at(index));
}

QImage painted(const PrintedPage& page, QSize size) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::gray);
  QPainter painter(&image);
  page.paint(painter, image.rect());
  return image;
}

// At so many pixels an inch; the paper's part of a pixel is not shown.
QImage paintedAt(const PrintedPage& page, double dotsPerInch) {
  const QSizeF size = page.size() * (dotsPerInch / 1440);
  QImage image(size.toSize(), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  page.paint(painter, QRectF(QPointF(0, 0), size));
  return image;
}

// The pixels that are darker than half, within a part of the picture.
QRect inkIn(const QImage& image, const QRect& part) {
  QRect ink;
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x)
      if (image.valid(x, y) && qGray(image.pixel(x, y)) < 128) ink |= QRect(x, y, 1, 1);
  return ink;
}

TEST(PrintedPageWithoutApplication, HasStrokesButNoTexts) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  page.sheet().line(0, 0, 100, 100, kBlack);
  page.sheet().setTextPosition(1000, 1000);
  page.sheet().print("Date");
  page.box(0, 2000, 1000, 1000).print("0");
  EXPECT_EQ(page.sheet().strokes().size(), 2U);
  EXPECT_EQ(page.sheet().textWidth("Date"), 0);
  EXPECT_EQ(page.size(), QSizeF(kWidth, kHeight));
}

TEST(PrintedPageWithoutApplication, StrokesRunThroughTheirVeryPlaces) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  page.sheet().line(1234, kHeight - 700, 9876.5, kHeight - 701, kRed);
  const std::vector<QPointF>& chain = stroke<VectorLines>(page.sheet()).chains[0];
  // 1e-9 pixels of arithmetic.
  EXPECT_NEAR(chain[0].x() * kTwipsPerPixel, 1234, 1e-9);
  EXPECT_NEAR(chain[0].y() * kTwipsPerPixel, 700, 1e-9);
  EXPECT_NEAR(chain[1].x() * kTwipsPerPixel, 9876.5, 1e-9);
  EXPECT_NEAR(chain[1].y() * kTwipsPerPixel, 701, 1e-9);
}

TEST(PrintedPageWithoutApplication, StrokesOnTheBorderOfABoxMoveInUntilTheyAreWhole) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& box = page.box(1191, 10000, 1191 + 9525, 10000 - 3175);
  box.setScale(0, 100, 9525, 0);
  const double width = 9525 / kTwipsPerPixel;
  const double height = 3175 / kTwipsPerPixel;
  for (const int pen : {1, 2, 3}) {
    const double half = pen * (0.5 / 72 * 96) / 2;  // half a point of width, 1/96 inch
    box.clear();
    box.setDrawWidth(pen);
    box.line(0, 100, 9525, 0, kBlack);
    box.line(0, 0, 9525, 100, kRed);
    box.line(4000, 40, 5000, 50, kBlue);
    const auto ends = [&box](std::size_t i) { return stroke<VectorLines>(box, i).chains[0]; };
    EXPECT_NEAR(ends(0)[0].x(), half, 1e-9) << pen;
    EXPECT_NEAR(ends(0)[0].y(), half, 1e-9) << pen;
    EXPECT_NEAR(ends(0)[1].x(), width - half, 1e-9) << pen;
    EXPECT_NEAR(ends(0)[1].y(), height - half, 1e-9) << pen;
    EXPECT_NEAR(ends(1)[0].y(), height - half, 1e-9) << pen;
    EXPECT_NEAR(ends(2)[0].x(), 4000 / kTwipsPerPixel, 1e-9) << pen;
    EXPECT_NEAR(ends(2)[1].y(), height / 2, 1e-9) << pen;
  }
}

TEST(PrintedPageWithoutApplication, ABoxHasTheExactShapeOfItsRectangle) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& box = page.box(1191, 10000, 10716, 6825);
  EXPECT_NEAR(box.exactSize().width(), 9525 / kTwipsPerPixel, 1e-9);
  EXPECT_NEAR(box.exactSize().height(), 3175 / kTwipsPerPixel, 1e-9);
  EXPECT_EQ(box.scale(), (CanvasScale{0, 0, 1, 1}));
  const QRectF place = stroke<VectorInset>(page.sheet()).rectangle;
  EXPECT_NEAR(place.left() * kTwipsPerPixel, 1191, 1e-9);
  EXPECT_NEAR(place.top() * kTwipsPerPixel, kHeight - 10000, 1e-9);
  // Whichever corner is named first.
  EXPECT_EQ(page.box(10716, 6825, 1191, 10000).exactSize(), box.exactSize());
}

TEST(PrintedPageWithoutApplication, ABoxWithoutAPlaceTakesStrokesAndShowsNone) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  for (const double nowhere :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 500.0}) {
    VectorCanvas& box = page.box(500, 1000, nowhere, 2000);
    box.line(0, 0, 1, 1, kBlack);
    box.print("1,250");
    EXPECT_TRUE(box.strokes().empty()) << nowhere;
  }
  PrintedPage empty(0, -1);
  empty.sheet().line(0, 0, 1, 1, kBlack);
  empty.box(0, 0, 1, 1).line(0, 0, 1, 1, kBlack);
  EXPECT_EQ(empty.size(), QSizeF(0, -1));
}

class PrintedPageTest : public test::OffscreenTest<QGuiApplication> {
 protected:
  // Crosses and texts all over a small page, and a box.
  static void drawPattern(PrintedPage& page) {
    VectorCanvas& sheet = page.sheet();
    for (const CanvasPoint& middle : middles()) {
      sheet.line(middle.x - 200, middle.y, middle.x + 200, middle.y, kBlack);
      sheet.line(middle.x, middle.y - 200, middle.x, middle.y + 200, kBlack);
      sheet.setTextPosition(middle.x + 400, middle.y);
      sheet.print("HHH");
    }
    VectorCanvas& box = page.box(595, 5000, 5358, 3000);
    box.setScale(0, 1, 1, 0);
    box.fillRectangle(0.5, 0.5, 0.75, 0.25, kRed);
  }
  static std::vector<CanvasPoint> middles() {
    return {{700, 7500}, {3400.5, 7503.25}, {701, 950.75}, {3577, 1177}};
  }
  // Where the pattern's parts lie in a picture of so many pixels an inch.
  static std::vector<QRectF> patternPlaces(const QImage& image, double dotsPerInch) {
    std::vector<QRectF> places;
    const double scale = dotsPerInch / 1440;
    const auto ink = [&](double left, double top, double right, double bottom) {
      const QRectF part(QPointF(left, kSmallHeight - top) * scale,
                        QPointF(right, kSmallHeight - bottom) * scale);
      const QRect found = inkIn(image, part.toAlignedRect());
      places.push_back({QPointF(found.topLeft()) / scale, QSizeF(found.size()) / scale});
    };
    for (const CanvasPoint& middle : middles()) {
      ink(middle.x - 300, middle.y + 300, middle.x + 300, middle.y - 300);
      ink(middle.x + 350, middle.y + 100, middle.x + 2000, middle.y - 400);
    }
    ink(1000, 4900, 5000, 3100);
    return places;
  }
};

TEST_F(PrintedPageTest, TextsOfTheSheetStandWhereTheyAreAskedForEvenOverEachOther) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& sheet = page.sheet();
  const std::vector<CanvasPoint> places{{1400, 16138}, {1403, 16130}, {kWidth - 50, 5000}, {-30, 4000}};
  for (const CanvasPoint& place : places) {
    sheet.setTextPosition(place.x, place.y);
    sheet.print("Average Height: 301.2");
  }
  ASSERT_EQ(sheet.textRectangles().size(), places.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    // A twip.
    EXPECT_NEAR(stroke<VectorText>(sheet, i).base.x() * kTwipsPerPixel, places[i].x, 1) << i;
    EXPECT_NEAR(sheet.textRectangles()[i].rectangle.top() * kTwipsPerPixel, kHeight - places[i].y, 1) << i;
  }
}

TEST_F(PrintedPageTest, TextsOfABoxAreWholeWithinItAndOffOneAnother) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& box = page.box(1191, 9000, 10716, 6000);
  box.setScale(0, 100, 100, 0);
  for (const CanvasPoint& place : std::vector<CanvasPoint>{{0, 50}, {1, 50}, {99.5, 0}, {99.9, 100}}) {
    box.setTextPosition(place.x, place.y);
    box.print("1,250");
  }
  ASSERT_EQ(box.textRectangles().size(), 4U);
  const QRectF whole(QPointF(-1e-6, -1e-6), box.exactSize() + QSizeF(2e-6, 2e-6));
  for (std::size_t i = 0; i < 4; ++i) {
    const QRectF one = box.textRectangles()[i].rectangle;
    EXPECT_TRUE(whole.contains(one)) << i;
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_FALSE(one.intersects(box.textRectangles()[j].rectangle)) << i << " and " << j;
  }
}

TEST_F(PrintedPageTest, StartsWithTenPointsAndChangesTheSizeOfWhatFollows) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  const double atTen = page.sheet().textWidth("Range: 24.3 km");
  page.setFontSize(10);
  EXPECT_EQ(page.sheet().textWidth("Range: 24.3 km"), atTen);
  page.sheet().setTextPosition(0, kHeight);
  page.sheet().print("Range");
  page.setFontSize(7);
  EXPECT_NEAR(page.sheet().textWidth("Range: 24.3 km"), atTen * 0.7, atTen * 0.002);
  page.sheet().print("Range");
  EXPECT_EQ(stroke<VectorText>(page.sheet(), 0).font.pointSizeF(), 10);
  EXPECT_EQ(stroke<VectorText>(page.sheet(), 1).font.pointSizeF(), 7);
  page.setFontSize(-1);
  EXPECT_GT(page.sheet().textHeight(), 0);
  VectorCanvas& box = page.box(0, 5000, 5000, 0);
  box.print("0");
  EXPECT_EQ(stroke<VectorText>(box).font.pointSizeF(), 8);
}

TEST_F(PrintedPageTest, HasItsOwnFontWhateverTheApplications) {
  QGuiApplication::setFont(QFont(QStringLiteral("DejaVu Serif"), 30));
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  EXPECT_EQ(page.sheet().font().families().first(), QStringLiteral("MS Sans Serif"));
  EXPECT_EQ(page.box(0, 5000, 5000, 0).font().families(), page.sheet().font().families());
  // Advance of a digit in fonts that are metrically Arial: 1139/2048 of the size, 200 twips.
  const QString family = QFontInfo(page.sheet().font()).family();
  if (family != QStringLiteral("Liberation Sans") && family != QStringLiteral("Arial"))
    GTEST_SKIP() << "the width of a digit is known for Liberation Sans and Arial";
  // A hundred of them to a twip: what a centred line is off by is a fraction of that.
  EXPECT_NEAR(page.sheet().textWidth(std::string(100, '0')), 100 * 200 * 1139 / 2048.0, 2);
}

TEST_F(PrintedPageTest, DrawWidthsAreHalfPointsOnPaper) {
  PrintedPage page(400, 100);  // a scrap, of which a pixel a twip is no large picture
  scaleByTwips(page);
  for (const int width : {1, 3}) {
    page.sheet().setDrawWidth(width);
    page.sheet().line(100 * width, 0, 100 * width, 100, kBlack);
  }
  // 20 pixels to a point; a pixel of rounding at both edges.
  const QImage image = paintedAt(page, 1440);
  EXPECT_NEAR(inkIn(image, QRect(0, 50, 200, 1)).width(), 10, 1);
  EXPECT_NEAR(inkIn(image, QRect(200, 50, 200, 1)).width(), 30, 1);
}

TEST_F(PrintedPageTest, StrokesAreNeverThinnerThanAPixel) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  page.sheet().line(0, 8000, kWidth, 8000, kBlack);
  // A tenth of 1/96 inch would be a grey that nobody sees. Between two pixels the line is half as dark.
  const QImage image = paintedAt(page, 20);
  int darkest = 255;
  for (int y = 0; y < image.height(); ++y) darkest = std::min(darkest, qGray(image.pixel(80, y)));
  EXPECT_LE(darkest, 135);
}

TEST_F(PrintedPageTest, TextsOfABoxStayReadableOverTheStrokesBeforeThemAndUnderThoseAfter) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& box = page.box(1000, kHeight - 1000, 4000, kHeight - 2000);
  box.setScale(0, 1, 1, 0);
  // Through the middle of a digit.
  constexpr double kMiddle = 0.5 - 0.09;
  box.setDrawMode(DrawMode::kCopyPen);
  box.line(0, kMiddle, 1, kMiddle, kRed);
  box.setTextPosition(0.3, 0.5);
  box.print("800");
  const QRectF letters = box.textRectangles().front().rectangle;
  const double middle = (1 - kMiddle) * box.exactSize().height();
  ASSERT_LT(letters.top() + 2, middle);
  ASSERT_GT(letters.bottom() - 2, middle);

  constexpr double kDots = 720;  // an inch
  const double dots = kDots / PictureCanvas::kPixelsPerInch;
  constexpr int kCorner = 500;  // pixels, of the box
  const auto count = [&](const auto& fits) {
    const QImage image = paintedAt(page, kDots);
    int found = 0;
    for (int x = kCorner + int(letters.left() * dots); x < kCorner + int(letters.right() * dots); ++x)
      for (int y = kCorner + int(letters.top() * dots); y < kCorner + int(letters.bottom() * dots); ++y)
        found += fits(image.pixelColor(x, y)) ? 1 : 0;
    return found;
  };
  const auto isRed = [](const QColor& pixel) { return pixel.red() > 200 && pixel.green() < 100; };
  EXPECT_EQ(count(isRed), 0);
  EXPECT_GT(count([](const QColor& pixel) { return pixel.red() < 60; }), 500);
  box.line(0, kMiddle, 1, kMiddle, kRed);
  EXPECT_GT(count(isRed), 500);
}

TEST_F(PrintedPageTest, ABoxIsCutAtItsRectangle) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& box = page.box(3000, 9000, 9000, 6000);
  box.setScale(0, 100, 100, 0);
  box.setDrawWidth(20);
  box.line(-1e5, -1e5, 1e5, 1e5, kRed);
  box.line(0, 0, 100, 0, kRed);
  box.circle(0, 100, 50);
  const QImage image = paintedAt(page, 144);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      // 300 to 900 and 784 to 1084 pixels, the latter not on a pixel.
      if (!QRect(300, 783, 600, 302).contains(x, y)) {
        ASSERT_EQ(image.pixel(x, y), 0xFFFFFFFF) << x << "," << y;
      }
  EXPECT_EQ(image.pixelColor(600, 1082), QColor(Qt::red));
}

TEST_F(PrintedPageTest, ABoxLiesOverWhatTheSheetHasAndUnderWhatItDrawsLater) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& sheet = page.sheet();
  sheet.setDrawWidth(20);
  sheet.line(0, 8000, kWidth, 8000, kRed);
  VectorCanvas& box = page.box(3000, 9000, 9000, 6000);
  // The same pen goes on where it was, but over the box.
  sheet.line(kWidth, 8000, kWidth, 7000, kRed);
  sheet.line(kWidth, 7000, 0, 7000, kRed);
  box.fillRectangle(0, 0, 1, 0.5, kBlue);  // from 9000 to 7500
  box.fillRectangle(0, 0.9, 1, 1, kBlue);  // from 6300 to 6000
  const QImage image = paintedAt(page, 144);
  const auto at = [&image](double x, double y) {
    return image.pixelColor(qRound(x / 10), qRound((kHeight - y) / 10));
  };
  EXPECT_EQ(at(1000, 8000), QColor(Qt::red));
  EXPECT_EQ(at(5000, 8000), QColor(Qt::blue));
  EXPECT_EQ(at(5000, 7000), QColor(Qt::red));
  EXPECT_EQ(at(5000, 7250), QColor(Qt::white));
  EXPECT_EQ(at(5000, 6100), QColor(Qt::blue));
}

TEST_F(PrintedPageTest, AClearOfTheSheetHidesTheBoxesBeforeIt) {
  PrintedPage page(kWidth, kHeight);
  scaleByTwips(page);
  VectorCanvas& hidden = page.box(3000, 9000, 9000, 6000);
  page.sheet().clear();
  hidden.fillRectangle(0, 0, 1, 1, kRed);
  VectorCanvas& seen = page.box(0, 3000, 9000, 0);
  seen.fillRectangle(0, 0, 1, 1, kBlue);
  const QImage image = paintedAt(page, 72);
  EXPECT_EQ(image.pixelColor(300, 450), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(300, 780), QColor(Qt::blue));
}

TEST_F(PrintedPageTest, IsPaintedWithinTheRectangleOfAnyPainterAndLeavesItAsItWas) {
  PrintedPage page(kSmallWidth, kSmallHeight);
  scaleByTwips(page);
  drawPattern(page);
  const QImage plain = painted(page, QSize(200, 280));
  QImage image(900, 700, QImage::Format_RGB32);
  image.fill(Qt::gray);
  QPainter painter(&image);
  painter.translate(600, 100);
  painter.rotate(90);
  painter.scale(0.5, 0.5);
  painter.setPen(Qt::green);
  const QTransform before = painter.transform();
  page.paint(painter, QRectF(20, 40, 400, 560));
  EXPECT_EQ(painter.transform(), before);
  EXPECT_EQ(painter.pen().color(), QColor(Qt::green));
  EXPECT_FALSE(painter.hasClipping());
  EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
  painter.end();
  // A turn to the right: x of the page goes down from 110, its y to the left from 580.
  int different = 0;
  for (int y = 0; y < 280; ++y)
    for (int x = 0; x < 200; ++x)
      different += std::abs(qGray(plain.pixel(x, y)) - qGray(image.pixel(579 - y, 110 + x))) > 64;
  EXPECT_LE(different, 60);  // texts are smoothed another way when they stand upright
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (!QRect(300, 110, 280, 200).contains(x, y)) {
        ASSERT_EQ(image.pixelColor(x, y), QColor(Qt::gray)) << x << "," << y;
      }
}

// On a printer of every resolution, and in previews of every size, all lies at the same places of the page.
TEST_F(PrintedPageTest, LiesAtTheSamePlacesInEveryPreviewAndOnEveryPrinter) {
  PrintedPage page(kSmallWidth, kSmallHeight);
  scaleByTwips(page);
  drawPattern(page);
  const std::vector<QRectF> places = patternPlaces(paintedAt(page, 288), 288);
  ASSERT_EQ(places.size(), 9U);
  ASSERT_NEAR(places[0].left(), 500, 10);  // twips
  ASSERT_NEAR(places[8].left(), 595 + 4763 / 2.0, 10);
  const auto expectSame = [&places](const std::vector<QRectF>& others, double tolerance, double context) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      EXPECT_NEAR(others[i].left(), places[i].left(), tolerance) << i << " at " << context;
      EXPECT_NEAR(others[i].top(), places[i].top(), tolerance) << i << " at " << context;
      EXPECT_NEAR(others[i].right(), places[i].right(), tolerance) << i << " at " << context;
      EXPECT_NEAR(others[i].bottom(), places[i].bottom(), tolerance) << i << " at " << context;
    }
  };
  // Half of 1/96 inch, or a pixel of a coarser picture: what smoothing makes of an edge between two.
  constexpr double kTolerance = 7.5;  // twips
  for (const double dotsPerInch : {96.0, 144.0, 250.0, 600.0})
    expectSame(patternPlaces(paintedAt(page, dotsPerInch), dotsPerInch),
               std::max(kTolerance, 1440 / dotsPerInch), dotsPerInch);
  if (const std::string missing = test::missingPdfTool(); !missing.empty()) GTEST_SKIP() << missing;
  const std::string document = pdfDocument(page, 1, {"Profile", "Tests"});
  expectSame(patternPlaces(test::PdfFile(document).picture(288), 288), kTolerance, 0);
  for (const int resolution : {300, 1200}) {
    test::TemporaryFolder folder;
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(folder / "printed.pdf"));
    printer.setResolution(resolution);
    printer.setPageSize(QPageSize(QPageSize::A6));
    printer.setFullPage(true);
    QPainter painter(&printer);
    page.paint(painter, QRectF(QPointF(0, 0), page.size() * (resolution / 1440.0)));
    painter.end();
    const QImage image = test::PdfFile(test::fileBytes(folder / "printed.pdf")).picture(288);
    expectSame(patternPlaces(image, 288), kTolerance, resolution);
  }
}

}  // namespace
}  // namespace zel
