// CSV as RFC 4180 has it, with the list's delimiter and decimal mark, lines ended by LF.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "links/link_writer.h"
#include "planning/short_number.h"

namespace zel::host {
namespace {

class CsvLinks final : public LinkWriter {
 public:
  explicit CsvLinks(WriterOptions options)
      : options_(std::move(options)), names_(carriedNames(options_.layout, options_.figures)) {}

  std::string head() const override {
    std::string out = options_.mark ? "\xEF\xBB\xBF" : "";
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (i > 0) out += options_.layout.delimiter;
      appendField(out, names_[i], i == 0);
    }
    for (const std::string& name : figureNames(options_.figures)) appendNext(out, name);
    if (options_.notes) appendNext(out, "notes");
    out += '\n';
    return out;
  }

  void row(std::string& out, const Row& row, const LinkInput&, const LinkFigures& figures) const override {
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (i > 0) out += options_.layout.delimiter;
      appendField(out, row.field(i), i == 0);
    }
    for (const FigureCell& cell : figureCells(figures)) {
      if (cell.isText || cell.empty())
        appendNext(out, cell.text);
      else
        appendNext(out, numberText(*cell.number, cell.decimals));
    }
    if (options_.notes) appendNext(out, joined(figures));
    out += '\n';
  }

  std::string tail(const LinkTotals&) const override { return {}; }

 private:
  std::string numberText(double value, int decimals) const {
    std::string text = fixedNumber(value, decimals);
    if (options_.layout.decimal == DecimalMark::kComma)
      if (const std::size_t point = text.find('.'); point != std::string::npos) text[point] = ',';
    return text;
  }

  // Blanks at the ends are kept by readers that trim, and a first field with "#" begins no comment, when they
  // are quoted.
  bool needsQuotes(std::string_view text, bool first) const {
    if (text.empty()) return false;
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    if (isBlank(text.front()) || isBlank(text.back()) || (first && text.front() == '#')) return true;
    for (const char c : text)
      if (c == options_.layout.delimiter || c == '"' || c == '\n' || c == '\r') return true;
    return false;
  }

  void appendField(std::string& out, std::string_view text, bool first) const {
    const bool quotes = needsQuotes(text, first);
    if (quotes) out += '"';
    for (const char c : text) {
      if (c == '\0') {
        out += "\xEF\xBF\xBD";
        continue;
      }
      if (c == '"') out += '"';
      out += c;
    }
    if (quotes) out += '"';
  }

  void appendNext(std::string& out, std::string_view text) const {
    out += options_.layout.delimiter;
    appendField(out, text, false);
  }

  static std::string joined(const LinkFigures& figures) {
    std::string text;
    for (const auto* list : {&figures.warnings, &figures.notes})
      for (const std::string& each : *list) text += (text.empty() ? "" : "; ") + each;
    return text;
  }

  WriterOptions options_;
  std::vector<std::string> names_;
};

}  // namespace

std::unique_ptr<LinkWriter> makeCsvWriter(WriterOptions options) {
  return std::make_unique<CsvLinks>(std::move(options));
}

}  // namespace zel::host
