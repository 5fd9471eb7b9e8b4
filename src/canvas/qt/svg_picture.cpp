#include "canvas/qt/svg_picture.h"

#include <QFontInfo>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>
#include <variant>

namespace zel {
namespace {

// At most two decimals, none that are 0.
std::string number(double value) {
  const double hundredths = std::round(value * 100) + 0.0;  // never "-0"
  std::array<char, 32> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), hundredths / 100, std::chars_format::fixed).ptr;
  return {text.data(), end};
}

std::string point(QPointF position) { return number(position.x()) + "," + number(position.y()); }

std::string colourText(Colour colour) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const int shift : {4, 0, 12, 8, 20, 16})  // red is the lowest byte
    text += kDigits[static_cast<std::size_t>(colour >> shift & 0xF)];
  return text;
}

bool isXmlCharacter(char32_t character) {
  return character == U'\t' || character == U'\n' || character == U'\r' ||
         (character >= 0x20 && character < 0xD800) || (character >= 0xE000 && character < 0xFFFE) ||
         (character >= 0x10000 && character <= 0x10FFFF);
}

// For contents and for attributes in double quotes.
std::string xmlText(const QString& text) {
  QString safe;
  for (const char32_t character : text.toUcs4())
    safe += isXmlCharacter(character) ? QString::fromUcs4(&character, 1) : QString(QChar(0xFFFD));
  return safe.toHtmlEscaped().toStdString();
}

std::string xmlText(std::string_view text) {
  return xmlText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

// The family that the texts were measured with, whatever it was asked for as.
std::string fontAttributes(const QFont& font) {
  const QString family = QFontInfo(font).family().remove(u'\'');
  const double pixels =
      font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * PictureCanvas::kPixelsPerInch / 72;
  std::string text =
      " font-family=\"'" + xmlText(family) + "', sans-serif\" font-size=\"" + number(pixels) + "\"";
  if (font.weight() != QFont::Normal)
    text += " font-weight=\"" + std::to_string(static_cast<int>(font.weight())) + "\"";
  if (font.italic()) text += " font-style=\"italic\"";
  return text;
}

std::string svgStrokes(const VectorCanvas& picture, const std::string& font);

class SvgWriter {
 public:
  // Of texts the font that they have without their saying so, and the width of a draw width of 1.
  SvgWriter(std::string font, double pen) : font_(std::move(font)), pen_(pen) {}

  void operator()(const VectorLines& lines) {
    out_ += "<path fill=\"none\" stroke=\"" + colourText(lines.colour) + "\" stroke-width=\"" +
            number(lines.width * pen_) + "\" d=\"";
    for (const std::vector<QPointF>& chain : lines.chains) {
      out_ += "M" + point(chain.front()) + "L";
      for (std::size_t i = 1; i < chain.size(); ++i) out_ += (i > 1 ? " " : "") + point(chain[i]);
    }
    out_ += "\"/>\n";
  }
  void operator()(const VectorCircle& circle) {
    out_ += "<circle cx=\"" + number(circle.centre.x()) + "\" cy=\"" + number(circle.centre.y()) + "\" r=\"" +
            number(circle.radius) + "\" fill=\"" + colourText(circle.filling) + "\" stroke=\"" +
            colourText(circle.outline) + "\" stroke-width=\"" + number(circle.width * pen_) + "\"/>\n";
  }
  void operator()(const VectorRectangles& rectangles) {
    out_ += "<path fill=\"" + colourText(rectangles.colour) + "\" class=\"r\" d=\"";
    for (const QRectF& rectangle : rectangles.rectangles)
      out_ += "M" + point(rectangle.topLeft()) + "H" + number(rectangle.right()) + "V" +
              number(rectangle.bottom()) + "H" + number(rectangle.left()) + "Z";
    out_ += "\"/>\n";
  }
  void operator()(const VectorText& text) {
    const std::string font = fontAttributes(text.font);
    out_ += "<text" + (font == font_ ? std::string() : font) + " x=\"" + number(text.base.x()) + "\" y=\"" +
            number(text.base.y()) + "\" textLength=\"" + number(text.width) +
            "\" lengthAdjust=\"spacingAndGlyphs\">" + xmlText(text.text) + "</text>\n";
  }

  void operator()(const VectorInset& inset) {
    const QRectF& place = inset.rectangle;
    if (place.isEmpty()) return;
    out_ += "<svg x=\"" + number(place.left()) + "\" y=\"" + number(place.top()) + "\" width=\"" +
            number(place.width()) + "\" height=\"" + number(place.height()) + "\">\n" +
            svgStrokes(*inset.picture, font_) + "</svg>\n";
  }

  std::string take() { return std::move(out_); }

 private:
  std::string font_;
  double pen_;
  std::string out_;
};

std::string svgStrokes(const VectorCanvas& picture, const std::string& font) {
  SvgWriter writer(font, picture.pen());
  for (const VectorStroke& stroke : picture.strokes())
    std::visit([&writer](const auto& value) { writer(value); }, stroke);
  return writer.take();
}

std::string element(const char* name, std::string_view text) {
  if (text.empty()) return {};
  return "<" + std::string(name) + ">" + xmlText(text) + "</" + name + ">\n";
}

}  // namespace

std::string svgPicture(const VectorCanvas& canvas, std::string_view title, std::string_view description) {
  const std::string width = number(canvas.exactSize().width());
  const std::string height = number(canvas.exactSize().height());
  const std::string font = fontAttributes(canvas.font());
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" +
         width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height + "\">\n" +
         element("title", title) + element("desc", description) +
         "<style>.r{shape-rendering:crispEdges}</style>\n<rect width=\"" + width + "\" height=\"" + height +
         "\" fill=\"#ffffff\"/>\n"
         "<g stroke-linecap=\"round\" stroke-linejoin=\"round\"" +
         font + ">\n" + svgStrokes(canvas, font) + "</g>\n</svg>\n";
}

}  // namespace zel
