#include "links/link_members.h"

#include "links/json_text.h"

namespace zel::host {
namespace {

constexpr int kInputDecimals = 9;

std::string factorsJson(const FigureOptions& options) {
  std::string out = "[";
  for (const EarthFactor& factor : options.factors) {
    if (out.size() > 1) out += ',';
    out += "{\"k\":" + jsonNumber(factor.used) + ",\"suffix\":" + jsonText(factor.suffix) + '}';
  }
  return out + ']';
}

std::string countsJson(const WriterOptions& options, const LinkTotals& totals) {
  std::string out = "{\"links\":" + std::to_string(totals.links) +
                    ",\"errors\":" + std::to_string(totals.errors) + ",\"verdicts\":[";
  for (std::size_t i = 0; i < options.figures.factors.size(); ++i) {
    if (i > 0) out += ',';
    out += "{\"k\":" + jsonNumber(options.figures.factors[i].used);
    for (std::size_t name = 0; name < kVerdictNames.size(); ++name)
      out += std::string(",\"") + kVerdictNames[name] +
             "\":" + std::to_string(i < totals.verdicts.size() ? totals.verdicts[i][name] : 0);
    out += '}';
  }
  return out + "]}";
}

}  // namespace

void appendMemberName(std::string& out, std::string_view name) {
  if (!out.empty() && out.back() != '{') out += ',';
  appendJsonText(out, name);
  out += ':';
}

void appendTexts(std::string& out, const std::vector<std::string>& texts) {
  out += '[';
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) out += ',';
    appendJsonText(out, texts[i]);
  }
  out += ']';
}

std::string computedFromMembers(const WriterOptions& options) {
  const ComputedFrom& from = options.from;
  std::string out;
  const auto text = [&out](const char* name, std::string_view value) {
    appendMemberName(out, name);
    appendJsonText(out, value);
  };
  text("program", "terrain-profiler");
  text("version", from.version);
  text("input", from.input);
  out += ",\"terrain\":{\"source_code\":" + std::to_string(from.sourceCode) +
         ",\"source\":" + jsonText(from.sourceName) +
         ",\"bundled_sample\":" + (from.bundledSample ? "true" : "false") + ",\"paths\":";
  appendTexts(out, from.terrainPaths);
  out += '}';
  text("datum", from.datum);
  out += ",\"settings\":{";
  for (const auto& [name, value] : from.settings) {
    appendMemberName(out, name);
    appendJsonText(out, value);
  }
  out += "},\"factors\":" + factorsJson(options.figures);
  out += ",\"clear_percent\":" + jsonNumber(options.figures.clearPercent);
  out += ",\"frequency_mhz\":" +
         (options.figures.frequencyMhz ? jsonNumber(*options.figures.frequencyMhz) : "null");
  text("geometry", "exact, station to station along the WGS 84 geodesic");
  text("model", from.model);
  return out;
}

std::string totalsMembers(const WriterOptions& options, const LinkTotals& totals) {
  std::string out = "\"terrain_files\":";
  appendTexts(out, {totals.files.begin(), totals.files.end()});
  out += ",\"interpolation\":" + jsonText(totals.interpolation);
  if (!totals.datumOperation.empty()) out += ",\"datum_operation\":" + jsonText(totals.datumOperation);
  out += ",\"model_parameters\":{";
  for (const auto& [name, value] : totals.model) {
    appendMemberName(out, name);
    out += value;
  }
  out += "},\"counts\":" + countsJson(options, totals);
  return out;
}

void appendFigures(std::string& out, const std::vector<std::string>& names, const LinkFigures& figures) {
  const std::vector<FigureCell> cells = figureCells(figures);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    appendMemberName(out, names[i]);
    if (cells[i].empty())
      out += "null";
    else if (cells[i].isText)
      appendJsonText(out, cells[i].text);
    else
      appendJsonNumber(out, *cells[i].number, cells[i].decimals);
  }
}

void appendNumberMember(std::string& out, std::string_view name, std::optional<double> value) {
  appendMemberName(out, name);
  if (value)
    appendJsonNumber(out, *value, kInputDecimals);
  else
    out += "null";
}

}  // namespace zel::host
