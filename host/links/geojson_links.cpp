// GeoJSON (RFC 7946): a feature for each link, with the figures as properties. What was computed from stands
// in members of the collection beside the features.
#include <string>
#include <utility>
#include <vector>

#include "links/json_text.h"
#include "links/link_line.h"
#include "links/link_members.h"
#include "links/link_writer.h"

namespace zel::host {
namespace {

constexpr int kDegreeDecimals = 9;

void appendLine(std::string& out, const std::vector<Position>& line) {
  out += '[';
  for (std::size_t i = 0; i < line.size(); ++i) {
    out += i == 0 ? "[" : ",[";
    appendJsonNumber(out, line[i].longitude, kDegreeDecimals);
    out += ',';
    appendJsonNumber(out, line[i].latitude, kDegreeDecimals);
    out += ']';
  }
  out += ']';
}

void appendGeometry(std::string& out, const LinkInput& input) {
  if (!input.placed) {
    out += "null";
    return;
  }
  const auto pieces = linkLine(input.mapFrom, input.mapTo);
  out += pieces.size() == 1 ? R"({"type":"LineString","coordinates":)"
                            : R"({"type":"MultiLineString","coordinates":[)";
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0) out += ',';
    appendLine(out, pieces[i]);
  }
  out += pieces.size() == 1 ? "}" : "]}";
}

class GeoJsonLinks final : public LinkWriter {
 public:
  explicit GeoJsonLinks(WriterOptions options)
      : options_(std::move(options)),
        figureNames_(figureNames(options_.figures)),
        names_(uniqueNames(carriedNames(options_.layout, options_.figures),
                           {"line", "name", "h1_m", "h2_m", "frequency_mhz", "warnings"})),
        carried_(carriedColumns(options_.layout)) {}

  std::string head() const override {
    return "{\"type\":\"FeatureCollection\"," + computedFromMembers(options_) + ",\"features\":[\n";
  }

  void row(std::string& out, const Row& row, const LinkInput& input,
           const LinkFigures& figures) const override {
    out += "{\"type\":\"Feature\",\"geometry\":";
    appendGeometry(out, input);
    std::string properties = "{\"line\":" + std::to_string(input.line) + ",\"name\":";
    appendJsonText(properties, linkTitle(input));
    appendNumberMember(properties, "h1_m", figures.fromHeightM);
    appendNumberMember(properties, "h2_m", figures.toHeightM);
    appendNumberMember(properties, "frequency_mhz", figures.frequencyMhz);
    for (const std::size_t column : carried_) {
      appendMemberName(properties, names_[column]);
      appendJsonText(properties, row.field(column));
    }
    appendFigures(properties, figureNames_, figures);
    appendMemberName(properties, "notes");
    appendTexts(properties, figures.notes);
    appendMemberName(properties, "warnings");
    appendTexts(properties, figures.warnings);
    out += ",\"properties\":" + properties + "}}";
  }

  std::string separator() const override { return ",\n"; }
  std::string tail(const LinkTotals& totals) const override {
    return "\n]," + totalsMembers(options_, totals) + "}\n";
  }

 private:
  WriterOptions options_;
  std::vector<std::string> figureNames_, names_;
  std::vector<std::size_t> carried_;
};

}  // namespace

std::unique_ptr<LinkWriter> makeGeoJsonWriter(WriterOptions options) {
  return std::make_unique<GeoJsonLinks>(std::move(options));
}

}  // namespace zel::host
