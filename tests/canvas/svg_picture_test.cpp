#include "canvas/qt/svg_picture.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "canvas/qt/raster_canvas.h"
#include "support/offscreen.h"

namespace zel {
namespace {

struct Element {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::string text;
};

// Fails the test when the document is not well-formed.
std::vector<Element> elementsOf(const std::string& svg) {
  std::vector<Element> found;
  bool inside = false;
  QXmlStreamReader reader(QByteArray::fromStdString(svg));
  while (!reader.atEnd()) {
    const auto token = reader.readNext();
    if (token == QXmlStreamReader::StartElement) {
      Element element{reader.name().toString().toStdString(), {}, {}};
      for (const QXmlStreamAttribute& attribute : reader.attributes())
        element.attributes[attribute.name().toString().toStdString()] =
            attribute.value().toString().toStdString();
      found.push_back(element);
      inside = true;
    } else if (token == QXmlStreamReader::EndElement) {
      inside = false;
    } else if (token == QXmlStreamReader::Characters && inside) {
      found.back().text += reader.text().toString().toStdString();
    }
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
  return found;
}

Element first(const std::vector<Element>& elements, const std::string& name) {
  for (const Element& element : elements)
    if (element.name == name) return element;
  ADD_FAILURE() << "no element " << name;
  return {};
}

void drawPlot(Canvas& canvas) {
  canvas.setScale(0, 100, 200, 0);
  canvas.clear();
  canvas.fillRectangle(150, 30, 180, 10, 0x00C0FF);
  canvas.setDrawMode(DrawMode::kXorPen);
  canvas.line(60, 0, 60, 100, 0xFF00FF);
  canvas.setDrawMode(DrawMode::kCopyPen);
  for (int i = 0; i < 20; ++i) canvas.line(i * 10, 20 + i % 5 * 8, i * 10 + 10, 20 + (i + 1) % 5 * 8, kRed);
  canvas.setDrawWidth(3);
  canvas.line(20, 20, 20, 80, 0xFF0000);
  canvas.circle(20, 80, 4);
  canvas.setDrawWidth(1);
  canvas.setTextPosition(90, 90);
  canvas.print("1,250 m < 4,100 ft");
}

class SvgPicture : public test::OffscreenTest<QGuiApplication> {};

TEST_F(SvgPicture, HasTheSizeOfThePicture) {
  const VectorCanvas canvas(QSize(640, 480));
  const Element svg = first(elementsOf(svgPicture(canvas, "", "")), "svg");
  EXPECT_EQ(svg.attributes.at("width"), "640");
  EXPECT_EQ(svg.attributes.at("height"), "480");
  EXPECT_EQ(svg.attributes.at("viewBox"), "0 0 640 480");
}

TEST_F(SvgPicture, CarriesTitleAndDescriptionWithEverySignOfTheirs) {
  const VectorCanvas canvas(QSize(640, 480));
  const auto elements = elementsOf(svgPicture(canvas, "A < B & \"C\" \xE2\x88\x92 \x01", "one\ntwo"));
  EXPECT_EQ(first(elements, "title").text, "A < B & \"C\" \xE2\x88\x92 \xEF\xBF\xBD");
  EXPECT_EQ(first(elements, "desc").text, "one\ntwo");
}

TEST_F(SvgPicture, LeavesOutATitleThatIsEmpty) {
  const std::string svg = svgPicture(VectorCanvas(QSize(640, 480)), "", "");
  EXPECT_EQ(svg.find("<title"), std::string::npos);
  EXPECT_EQ(svg.find("<desc"), std::string::npos);
}

TEST_F(SvgPicture, KeepsTextsAsTexts) {
  VectorCanvas canvas(QSize(200, 100));
  drawPlot(canvas);
  const auto elements = elementsOf(svgPicture(canvas, "", ""));
  const Element text = first(elements, "text");
  EXPECT_EQ(text.text, "1,250 m < 4,100 ft");
  EXPECT_NEAR(std::stod(text.attributes.at("x")), 90, 1);
  // What the text was placed with; a hundredth is kept.
  EXPECT_NEAR(std::stod(text.attributes.at("textLength")), canvas.textWidth("1,250 m < 4,100 ft"), 0.006);
  const Element group = first(elements, "g");
  EXPECT_EQ(group.attributes.at("font-family"), "'DejaVu Sans', sans-serif");
  // 8 points at 96 pixels to the inch.
  EXPECT_EQ(group.attributes.at("font-size"), "10.67");
}

TEST_F(SvgPicture, WritesStrokesWithColourAndWidth) {
  VectorCanvas canvas(QSize(200, 100));
  canvas.setScale(0, 100, 200, 0);
  canvas.setDrawWidth(3);
  canvas.line(10, 90, 20, 80, 0x3F80FE);
  canvas.line(20, 80, 30.125, 80, 0x3F80FE);
  canvas.circle(50, 50, 4);
  canvas.fillRectangle(0, 10, 10, 0, kRed);
  const auto elements = elementsOf(svgPicture(canvas, "", ""));
  const Element path = first(elements, "path");
  EXPECT_EQ(path.attributes.at("stroke"), "#fe803f");
  EXPECT_EQ(path.attributes.at("stroke-width"), "3");
  EXPECT_EQ(path.attributes.at("fill"), "none");
  EXPECT_EQ(path.attributes.at("d"), "M10.5,10.5L20.5,20.5 30.63,20.5");
  const Element circle = first(elements, "circle");
  EXPECT_EQ(circle.attributes.at("cx"), "50.5");
  EXPECT_EQ(circle.attributes.at("cy"), "50.5");
  EXPECT_EQ(circle.attributes.at("r"), "4");
  EXPECT_EQ(circle.attributes.at("fill"), "#ffffff");
  EXPECT_EQ(circle.attributes.at("stroke"), "#000000");
  EXPECT_EQ(elements.back().attributes.at("d"), "M0,90H10V100H0Z");
  EXPECT_EQ(elements.back().attributes.at("fill"), "#ff0000");
}

// Read by another program than the one that wrote it: what is inked here is inked there, at most a pixel off.
TEST_F(SvgPicture, LooksAsTheRasterDoes) {
  VectorCanvas vector(QSize(200, 100));
  RasterCanvas raster(QSize(200, 100), 1);
  drawPlot(vector);
  drawPlot(raster);
  QSvgRenderer renderer(QByteArray::fromStdString(svgPicture(vector, "", "")));
  ASSERT_TRUE(renderer.isValid());
  EXPECT_EQ(renderer.defaultSize(), QSize(200, 100));
  QImage drawn(200, 100, QImage::Format_RGB32);
  drawn.fill(Qt::white);
  QPainter painter(&drawn);
  renderer.render(&painter);
  painter.end();

  const auto inked = [](QRgb pixel) { return qGray(pixel) < 200; };
  const auto inkedAround = [&inked](const QImage& image, int x, int y) {
    for (int v = std::max(y - 1, 0); v <= std::min(y + 1, 99); ++v)
      for (int u = std::max(x - 1, 0); u <= std::min(x + 1, 199); ++u)
        if (inked(image.pixel(u, v))) return true;
    return false;
  };
  // That program does not stretch the text to the width it is told, so its letters drift.
  const QRect text = raster.textRectangles().at(0).rectangle.toAlignedRect();
  int here = 0;
  int there = 0;
  for (int y = 0; y < 100; ++y)
    for (int x = 0; x < 200; ++x) {
      if (text.contains(x, y)) continue;
      if (inked(raster.image().pixel(x, y))) {
        ++here;
        EXPECT_TRUE(inkedAround(drawn, x, y)) << "missing at " << x << ", " << y;
      }
      if (inked(drawn.pixel(x, y))) {
        ++there;
        EXPECT_TRUE(inkedAround(raster.image(), x, y)) << "more at " << x << ", " << y;
      }
    }
  EXPECT_GT(here, 900);
  EXPECT_NEAR(there, here, here * 0.25);
  EXPECT_TRUE(inkedAround(drawn, text.left() + 3, text.center().y()));
  EXPECT_TRUE(inkedAround(drawn, text.right() - 5, text.center().y()));
  // The inside of the rectangle, the marker's final colour, the mast.
  EXPECT_EQ(drawn.pixelColor(165, 80), QColor(0xFF, 0xC0, 0x00));
  EXPECT_EQ(drawn.pixelColor(60, 5), QColor(0x00, 0xFF, 0x00));
  EXPECT_EQ(drawn.pixelColor(20, 50), QColor(0x00, 0x00, 0xFF));
}

TEST_F(SvgPicture, APictureWithinAnotherIsOneWithinItsRectangle) {
  VectorCanvas canvas(QSizeF(200.4, 100.25), PaperTexts::kInPlace);
  canvas.setScale(0, 100.25, 200.4, 0);
  canvas.line(10, 50, 20, 50, kRed);
  const auto inset = canvas.inset({50, 80.25}, {150.5, 30});
  canvas.inset({50, 50}, {50, 20})->line(0, 0, 1, 1, kRed);
  inset->setDrawWidth(3);
  inset->line(0.5, 0, 0.5, 1, kRed);
  const std::string svg = svgPicture(canvas, "", "");
  const std::vector<Element> elements = elementsOf(svg);
  std::vector<Element> pictures;
  std::copy_if(elements.begin(), elements.end(), std::back_inserter(pictures),
               [](const Element& element) { return element.name == "svg"; });
  ASSERT_EQ(pictures.size(), 2U);
  EXPECT_EQ(pictures[0].attributes["width"], "200.4");
  EXPECT_EQ(pictures[1].attributes["x"], "50");
  EXPECT_EQ(pictures[1].attributes["y"], "20");
  EXPECT_EQ(pictures[1].attributes["width"], "100.5");
  EXPECT_EQ(pictures[1].attributes["height"], "50.25");
  // Pens of half a point and of three halves, in 1/96 inch.
  EXPECT_NE(svg.find("stroke-width=\"0.67\""), std::string::npos);
  EXPECT_NE(svg.find("stroke-width=\"2\" d=\"M50.25,1L50.25,49.25\""), std::string::npos) << svg;
}

}  // namespace
}  // namespace zel
