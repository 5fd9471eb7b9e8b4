// KML 2.2: a placemark for each link, in a style by its verdict (of the first k), its figures as data.
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "links/link_line.h"
#include "links/link_writer.h"
#include "planning/short_number.h"
#include "planning/utf8_text.h"

namespace zel::host {
namespace {

struct VerdictStyle {
  const char* id;
  const char* colour;  // alpha, blue, green, red
};
constexpr std::array kStyles{VerdictStyle{"clear", "ff3c9a2a"}, VerdictStyle{"marginal", "ff00a5ff"},
                             VerdictStyle{"blocked", "ff2b2bd6"}, VerdictStyle{"unknown", "ff909090"},
                             VerdictStyle{"error", "ff000000"}};
constexpr int kDegreeDigits = 9;

// Without the characters that XML cannot have.
std::string xmlText(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Character character = utf8CharacterAt(text, at);
    const char32_t code = character.code;
    const bool allowed =
        code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code != 0xFFFE && code != 0xFFFF);
    if (!character.valid || !allowed)
      out += "\xEF\xBF\xBD";
    else if (code == '&')
      out += "&amp;";
    else if (code == '<')
      out += "&lt;";
    else if (code == '>')
      out += "&gt;";
    else if (code == '"')
      out += "&quot;";
    else if (code == '\r')
      out += "&#13;";
    else
      out.append(text.substr(at, character.bytes));
    at += character.bytes;
  }
  return out;
}

void appendData(std::string& out, std::string_view name, std::string_view value) {
  out += "<Data name=\"" + xmlText(name) + "\"><value>" + xmlText(value) + "</value></Data>";
}

void appendLineString(std::string& out, const std::vector<Position>& line) {
  out += "<LineString><tessellate>1</tessellate><coordinates>";
  for (std::size_t i = 0; i < line.size(); ++i)
    out += (i == 0 ? "" : " ") + fixedNumber(line[i].longitude, kDegreeDigits) + "," +
           fixedNumber(line[i].latitude, kDegreeDigits);
  out += "</coordinates></LineString>";
}

void appendShape(std::string& out, const LinkInput& input) {
  if (!input.placed) return;
  const auto pieces = linkLine(input.mapFrom, input.mapTo);
  if (pieces.size() > 1) out += "<MultiGeometry>";
  for (const auto& piece : pieces) appendLineString(out, piece);
  if (pieces.size() > 1) out += "</MultiGeometry>";
}

class KmlLinks final : public LinkWriter {
 public:
  explicit KmlLinks(WriterOptions options)
      : options_(std::move(options)),
        figureNames_(figureNames(options_.figures)),
        names_(uniqueNames(carriedNames(options_.layout, options_.figures),
                           {"line", "frequency_mhz", "notes", "warnings"})),
        carried_(carriedColumns(options_.layout)) {}

  std::string head() const override {
    std::string out =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml "
        "xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n<name>" +
        xmlText(options_.from.input) + "</name>\n<description>" + xmlText(computedFromText()) +
        "</description>\n";
    for (const VerdictStyle& style : kStyles)
      out += std::string("<Style id=\"") + style.id + "\"><LineStyle><color>" + style.colour +
             "</color><width>2</width></LineStyle></Style>\n";
    return out;
  }

  void row(std::string& out, const Row& row, const LinkInput& input,
           const LinkFigures& figures) const override {
    const std::string_view verdict = figures.clearances.empty() ? "" : figures.clearances.front().verdict;
    out += "<Placemark><name>" + xmlText(linkTitle(input)) + "</name><styleUrl>#";
    out += verdict.empty() ? "error" : verdict;
    out += "</styleUrl><ExtendedData>";
    appendData(out, "line", std::to_string(input.line));
    if (figures.frequencyMhz) appendData(out, "frequency_mhz", shortNumber(*figures.frequencyMhz));
    for (const std::size_t column : carried_) appendData(out, names_[column], row.field(column));
    const std::vector<FigureCell> cells = figureCells(figures);
    for (std::size_t i = 0; i < cells.size(); ++i)
      if (!cells[i].empty())
        appendData(
            out, figureNames_[i],
            cells[i].isText ? std::string(cells[i].text) : fixedNumber(*cells[i].number, cells[i].decimals));
    for (const std::string& text : figures.warnings) appendData(out, "warnings", text);
    out += "</ExtendedData>";
    appendShape(out, input);
    out += "</Placemark>\n";
  }

  std::string tail(const LinkTotals&) const override { return "</Document>\n</kml>\n"; }

 private:
  std::string computedFromText() const {
    const ComputedFrom& from = options_.from;
    std::string text = "terrain-profiler " + from.version + "; terrain: " + from.sourceName +
                       (from.bundledSample ? ", bundled sample" : "");
    for (const std::string& path : from.terrainPaths) text += ", " + path;
    text += "; datum " + from.datum + "; k";
    for (const EarthFactor& factor : options_.figures.factors) text += " " + shortNumber(factor.used);
    text += "; clear from " + shortNumber(options_.figures.clearPercent) + " % of the first Fresnel zone; " +
            from.model + ";";
    for (const auto& [name, value] : from.settings) text += " " + name + "=" + value;
    return text;
  }

  WriterOptions options_;
  std::vector<std::string> figureNames_, names_;
  std::vector<std::size_t> carried_;
};

}  // namespace

std::unique_ptr<LinkWriter> makeKmlWriter(WriterOptions options) {
  return std::make_unique<KmlLinks>(std::move(options));
}

}  // namespace zel::host
