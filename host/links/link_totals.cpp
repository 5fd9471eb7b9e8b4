#include "links/link_totals.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "links/json_text.h"

namespace zel::host {

const std::array<const char*, 4> kVerdictNames{"clear", "marginal", "blocked", "unknown"};

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

void addKinds(std::map<std::string, TextKind>& kinds, const std::vector<std::string>& texts, std::size_t line,
              std::size_t& others) {
  for (const std::string& text : texts) {
    const std::string kind = textKind(text);
    auto found = kinds.find(kind);
    if (found == kinds.end()) {
      if (kinds.size() >= LinkTotals::kMostKinds) {
        ++others;
        continue;
      }
      found = kinds.emplace(kind, TextKind{0, line, text}).first;
    }
    ++found->second.links;
  }
}

std::vector<std::pair<std::string, std::string>> modelMembers(const PathLossModelInputs& model) {
  std::vector<std::pair<std::string, std::string>> members;
  const auto add = [&](const char* name, double value) { members.emplace_back(name, jsonNumber(value)); };
  members.emplace_back("polarization",
                       jsonText(model.polarization == Polarization::kVertical ? "vertical" : "horizontal"));
  add("climate", model.climate);
  members.emplace_back("climate_name", jsonText(radioClimateName(model.climate)));
  add("permittivity", model.permittivity);
  add("conductivity_s_per_m", model.conductivity);
  add("surface_refractivity", model.surfaceRefractivity);
  add("confidence", model.confidence);
  add("reliability", model.reliability);
  add("confidence_deviate", model.confidenceDeviate);
  add("reliability_deviate", model.reliabilityDeviate);
  return members;
}

using Parts = std::vector<std::string>;

Parts partsOf(std::string_view line) {
  Parts parts;
  for (;;) {
    const std::size_t tab = line.find('\t');
    parts.push_back(unescapedLine(line.substr(0, tab)));
    if (tab == std::string_view::npos) return parts;
    line.remove_prefix(tab + 1);
  }
}

bool readCount(const Parts& parts, std::size_t index, std::size_t& count) {
  if (index >= parts.size()) return false;
  const char* end = parts[index].data() + parts[index].size();
  const auto result = std::from_chars(parts[index].data(), end, count);
  return result.ec == std::errc() && result.ptr == end;
}

bool readKind(const Parts& parts, std::map<std::string, TextKind>& kinds) {
  TextKind kind;
  if (parts.size() != 4 || !readCount(parts, 1, kind.links) || !readCount(parts, 2, kind.line)) return false;
  kind.example = parts[3];
  kinds.emplace(textKind(kind.example), kind);
  return true;
}

bool readVerdicts(const Parts& parts, LinkTotals& totals) {
  std::array<std::size_t, 4> counts{};
  if (parts.size() != 5) return false;
  for (std::size_t i = 0; i < counts.size(); ++i)
    if (!readCount(parts, i + 1, counts[i])) return false;
  totals.verdicts.push_back(counts);
  return true;
}

bool readLine(const Parts& parts, LinkTotals& totals) {
  const std::string& key = parts.front();
  if (key == "links") return parts.size() == 2 && readCount(parts, 1, totals.links);
  if (key == "errors") return parts.size() == 2 && readCount(parts, 1, totals.errors);
  if (key == "other") return parts.size() == 2 && readCount(parts, 1, totals.otherTexts);
  if (key == "verdicts") return readVerdicts(parts, totals);
  if (key == "note") return readKind(parts, totals.notes);
  if (key == "warning") return readKind(parts, totals.warnings);
  if (key == "model" && parts.size() == 3) {
    totals.model.emplace_back(parts[1], parts[2]);
    return true;
  }
  if (parts.size() != 2) return false;
  if (key == "file") return totals.files.insert(parts[1]).second;
  if (key == "interpolation") totals.interpolation = parts[1];
  if (key == "datum") totals.datumOperation = parts[1];
  return key == "interpolation" || key == "datum";
}

}  // namespace

std::string textKind(std::string_view text) {
  std::string kind;
  kind.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isDigit(text[i])) {
      kind += text[i];
      continue;
    }
    kind += '#';
    while (i + 1 < text.size() &&
           (isDigit(text[i + 1]) || (text[i + 1] == '.' && i + 2 < text.size() && isDigit(text[i + 2]))))
      ++i;
  }
  return kind;
}

void LinkTotals::add(const LinkInput& input, const LinkFigures& figures) {
  ++links;
  if (!figures.error.empty()) ++errors;
  if (verdicts.size() < figures.clearances.size()) verdicts.resize(figures.clearances.size());
  for (std::size_t i = 0; i < figures.clearances.size(); ++i)
    for (std::size_t name = 0; name < kVerdictNames.size(); ++name)
      if (std::string_view(figures.clearances[i].verdict) == kVerdictNames[name]) ++verdicts[i][name];
  addKinds(notes, figures.notes, input.line, otherTexts);
  addKinds(warnings, figures.warnings, input.line, otherTexts);
  if (figures.terrain) {
    for (const std::string& file : figures.terrain->files)
      if (files.size() < kMostFiles) files.insert(file);
    if (interpolation.empty()) interpolation = figures.terrain->method;
    if (datumOperation.empty()) datumOperation = figures.terrain->datumOperation;
  }
  if (model.empty() && figures.model) model = modelMembers(*figures.model);
}

std::string LinkTotals::text() const {
  std::string text;
  const auto line = [&text](std::initializer_list<std::string> parts) {
    bool first = true;
    for (const std::string& part : parts) {
      if (!first) text += '\t';
      first = false;
      text += escapedLine(part);
    }
    text += '\n';
  };
  line({"links", std::to_string(links)});
  line({"errors", std::to_string(errors)});
  line({"other", std::to_string(otherTexts)});
  for (const auto& counts : verdicts)
    line({"verdicts", std::to_string(counts[0]), std::to_string(counts[1]), std::to_string(counts[2]),
          std::to_string(counts[3])});
  for (const std::string& file : files) line({"file", file});
  line({"interpolation", interpolation});
  line({"datum", datumOperation});
  for (const auto& [name, value] : model) line({"model", name, value});
  for (const auto& [kind, count] : notes)
    line({"note", std::to_string(count.links), std::to_string(count.line), count.example});
  for (const auto& [kind, count] : warnings)
    line({"warning", std::to_string(count.links), std::to_string(count.line), count.example});
  return text;
}

bool LinkTotals::read(std::string_view text) {
  LinkTotals totals;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos || !readLine(partsOf(text.substr(0, end)), totals)) return false;
    text.remove_prefix(end + 1);
  }
  *this = std::move(totals);
  return true;
}

std::string escapedLine(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\n')
      escaped += "\\n";
    else if (c == '\t')
      escaped += "\\t";
    else if (c == '\\')
      escaped += "\\\\";
    else
      escaped += c;
  }
  return escaped;
}

std::string unescapedLine(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain += text[i];
      continue;
    }
    const char c = text[++i];
    plain += c == 'n' ? '\n' : c == 't' ? '\t' : c;
  }
  return plain;
}

}  // namespace zel::host
