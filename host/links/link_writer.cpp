#include "links/link_writer.h"

#include <algorithm>
#include <array>
#include <set>

#include "import/station_collector.h"

namespace zel::host {
namespace {

constexpr std::array kFormatNames{"csv", "json", "geojson", "kml"};

std::string inLowerCase(std::string_view text) {
  std::string lower(withoutBlanks(text));
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

}  // namespace

LinkWriter::~LinkWriter() = default;

std::unique_ptr<LinkWriter> makeLinkWriter(LinkFormat format, WriterOptions options) {
  switch (format) {
    case LinkFormat::kJson:
      return makeJsonWriter(std::move(options));
    case LinkFormat::kGeoJson:
      return makeGeoJsonWriter(std::move(options));
    case LinkFormat::kKml:
      return makeKmlWriter(std::move(options));
    case LinkFormat::kCsv:
      break;
  }
  return makeCsvWriter(std::move(options));
}

std::optional<LinkFormat> linkFormat(std::string_view ending) {
  std::string name = inLowerCase(ending);
  if (!name.empty() && name.front() == '.') name.erase(0, 1);
  for (std::size_t i = 0; i < kFormatNames.size(); ++i)
    if (name == kFormatNames[i]) return static_cast<LinkFormat>(i);
  return std::nullopt;
}

const char* formatName(LinkFormat format) { return kFormatNames[static_cast<std::size_t>(format)]; }

std::vector<std::string> figureNames(const FigureOptions& options) {
  std::vector<std::string> names{"distance_km", "bearing_deg", "free_space_db", "modeled_db", "mode"};
  for (const EarthFactor& factor : options.factors)
    for (const char* name : {"obstacle_km", "obstacle_m", "clearance_m", "clearance_percent", "verdict"})
      names.push_back(name + factor.suffix);
  names.emplace_back("error");
  return names;
}

std::vector<FigureCell> figureCells(const LinkFigures& figures) {
  const auto number = [](std::optional<double> value, int decimals) {
    return FigureCell{{}, value, decimals, false};
  };
  const auto text = [](std::string_view value) { return FigureCell{value, {}, 0, true}; };
  std::vector<FigureCell> cells{number(figures.distanceKm, 6), number(figures.bearingDeg, 4),
                                number(figures.freeSpaceDb, 4), number(figures.modeledDb, 4),
                                text(figures.mode)};
  for (const ClearanceFigures& clearance : figures.clearances) {
    const auto of = [&](double PathObstacle::*member) {
      return clearance.worst ? std::optional((*clearance.worst).*member) : std::nullopt;
    };
    cells.push_back(number(of(&PathObstacle::distanceKm), 6));
    cells.push_back(number(of(&PathObstacle::groundM), 3));
    cells.push_back(number(of(&PathObstacle::clearanceM), 3));
    cells.push_back(number(of(&PathObstacle::clearancePercent), 2));
    cells.push_back(text(clearance.verdict));
  }
  cells.push_back(text(figures.error));
  return cells;
}

std::vector<std::string> carriedNames(const LinkLayout& layout, const FigureOptions& options) {
  std::set<std::string> taken;
  for (const std::string& name : figureNames(options)) taken.insert(name);
  taken.insert("notes");
  for (const std::string& name : layout.names) taken.insert(inLowerCase(name));
  std::set<std::string> ours;
  for (const std::string& name : figureNames(options)) ours.insert(name);
  ours.insert("notes");
  std::vector<std::string> names;
  for (const std::string& name : layout.names) {
    std::string carried = name;
    if (ours.count(inLowerCase(name)) > 0) {
      carried = std::string(withoutBlanks(name));
      do carried += "_input";
      while (!taken.insert(inLowerCase(carried)).second);
    }
    names.push_back(std::move(carried));
  }
  return names;
}

std::vector<std::string> uniqueNames(std::vector<std::string> names, const std::vector<std::string>& taken) {
  std::set<std::string> known(taken.begin(), taken.end());
  for (std::string& name : names) {
    if (withoutBlanks(name).empty()) name = "column";
    const std::string first = name;
    for (int number = 2; !known.insert(name).second; ++number)
      name = first + " (" + std::to_string(number) + ")";
  }
  return names;
}

std::vector<std::size_t> carriedColumns(const LinkLayout& layout) {
  std::vector<std::size_t> columns;
  for (std::size_t i = 0; i < layout.names.size(); ++i)
    if (std::find(layout.columns.begin(), layout.columns.end(), std::optional(i)) == layout.columns.end())
      columns.push_back(i);
  return columns;
}

std::string linkTitle(const LinkInput& input) {
  return input.name.empty() ? "line " + std::to_string(input.line) : input.name;
}

}  // namespace zel::host
