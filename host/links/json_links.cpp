// JSON: one object, with the list "links" and a link a line.
#include <string>
#include <utility>
#include <vector>

#include "links/json_text.h"
#include "links/link_members.h"
#include "links/link_writer.h"

namespace zel::host {
namespace {

class JsonLinks final : public LinkWriter {
 public:
  explicit JsonLinks(WriterOptions options)
      : options_(std::move(options)),
        figureNames_(figureNames(options_.figures)),
        names_(uniqueNames(options_.layout.names, {})),
        carried_(carriedColumns(options_.layout)) {}

  std::string head() const override { return "{" + computedFromMembers(options_) + ",\"links\":[\n"; }

  void row(std::string& out, const Row& row, const LinkInput& input,
           const LinkFigures& figures) const override {
    std::string object = "{\"line\":" + std::to_string(input.line) + ",\"name\":";
    appendJsonText(object, input.name);
    appendStation(object, "from", input, input.from, figures.fromHeightM);
    appendStation(object, "to", input, input.to, figures.toHeightM);
    appendNumberMember(object, "frequency_mhz", figures.frequencyMhz);
    appendMemberName(object, "columns");
    object += '{';
    for (const std::size_t column : carried_) {
      appendMemberName(object, names_[column]);
      appendJsonText(object, row.field(column));
    }
    object += '}';
    appendFigures(object, figureNames_, figures);
    appendMemberName(object, "notes");
    appendTexts(object, figures.notes);
    appendMemberName(object, "warnings");
    appendTexts(object, figures.warnings);
    out += object + '}';
  }

  std::string separator() const override { return ",\n"; }
  std::string tail(const LinkTotals& totals) const override {
    return "\n]," + totalsMembers(options_, totals) + "}\n";
  }

 private:
  static void appendStation(std::string& out, const char* name, const LinkInput& input, Position position,
                            std::optional<int> height) {
    appendMemberName(out, name);
    if (!input.placed) {
      out += "null";
      return;
    }
    out += '{';
    appendNumberMember(out, "latitude", position.latitude);
    appendNumberMember(out, "longitude", position.longitude);
    appendNumberMember(out, "antenna_m", height);
    out += '}';
  }

  WriterOptions options_;
  std::vector<std::string> figureNames_, names_;
  std::vector<std::size_t> carried_;
};

}  // namespace

std::unique_ptr<LinkWriter> makeJsonWriter(WriterOptions options) {
  return std::make_unique<JsonLinks>(std::move(options));
}

}  // namespace zel::host
