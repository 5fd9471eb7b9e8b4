// A list of links with their figures as a file: CSV, JSON, GeoJSON or KML, row by row.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "links/link_figures.h"
#include "links/link_input.h"
#include "links/link_layout.h"
#include "links/link_totals.h"
#include "links/row_reader.h"

namespace zel::host {

enum class LinkFormat { kCsv, kJson, kGeoJson, kKml };

// What a list was computed from, as far as it is known before the first link.
struct ComputedFrom {
  std::string version;  // of the program
  std::string input;    // the list's name
  int sourceCode = 0;
  std::string sourceName;
  bool bundledSample = false;
  std::vector<std::string> terrainPaths;                      // rasters and folders of the source
  std::string datum;                                          // of the positions
  std::vector<std::pair<std::string, std::string>> settings;  // "Profile/Prf_Per" and its value
  std::string model;                                          // of the modeled loss, in words
};

struct WriterOptions {
  LinkLayout layout;
  FigureOptions figures;
  ComputedFrom from;
  bool notes = false;  // a column of them, in CSV
  bool mark = false;   // a byte order mark, in CSV
};

// head(), then the rows with separator() between them, then tail().
class LinkWriter {
 public:
  LinkWriter() = default;
  LinkWriter(const LinkWriter&) = delete;
  LinkWriter& operator=(const LinkWriter&) = delete;
  virtual ~LinkWriter();

  virtual std::string head() const = 0;
  // Appends a row; from any thread.
  virtual void row(std::string& out, const Row& row, const LinkInput& input,
                   const LinkFigures& figures) const = 0;
  virtual std::string separator() const { return {}; }
  virtual std::string tail(const LinkTotals& totals) const = 0;
};

std::unique_ptr<LinkWriter> makeLinkWriter(LinkFormat format, WriterOptions options);
std::unique_ptr<LinkWriter> makeCsvWriter(WriterOptions options);
std::unique_ptr<LinkWriter> makeJsonWriter(WriterOptions options);
std::unique_ptr<LinkWriter> makeGeoJsonWriter(WriterOptions options);
std::unique_ptr<LinkWriter> makeKmlWriter(WriterOptions options);

// "csv", "json", "geojson", "kml", in any case and with or without a dot before; nothing for any other.
std::optional<LinkFormat> linkFormat(std::string_view ending);
const char* formatName(LinkFormat format);

// A figure as every format has it.
struct FigureCell {
  std::string_view text;         // where it is no number
  std::optional<double> number;  // to so many decimals
  int decimals = 0;
  bool isText = false;

  bool empty() const { return isText ? text.empty() : !number; }
};

// The names of the figures, "distance_km" to "error", and the figures in the same order.
std::vector<std::string> figureNames(const FigureOptions& options);
std::vector<FigureCell> figureCells(const LinkFigures& figures);

// The list's own columns under names that no figure has: one that has such a name gets "_input" behind it.
std::vector<std::string> carriedNames(const LinkLayout& layout, const FigureOptions& options);
// The same where each name may stand once only, "owner (2)"; and which columns are carried over, those that
// are no link's name, position, height or frequency.
std::vector<std::string> uniqueNames(std::vector<std::string> names, const std::vector<std::string>& taken);
std::vector<std::size_t> carriedColumns(const LinkLayout& layout);

// How a map calls a link: its name, or "line 17".
std::string linkTitle(const LinkInput& input);

}  // namespace zel::host
