// Delimited text: which delimiter, which columns, and then row by row.
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "import/column_names.h"
#include "import/csv_records.h"
#include "import/formats.h"
#include "import/place_text.h"
#include "import/station_collector.h"

namespace zel::host {
namespace {

constexpr std::size_t kSampleBytes = 64U << 10;
constexpr std::size_t kSampleRows = 20;  // by which delimiter and columns are told
constexpr double kMetre = 1, kMegahertz = 1;

struct Column {
  std::size_t index = 0;
  double unit = 1;  // metres or megahertz
  int rank = 0;
};

// One angle; most files have it in one column.
struct AngleColumns {
  std::optional<Column> minutes, seconds, letter;

  bool inParts() const { return minutes || seconds; }
};

struct EndColumns {
  std::optional<Column> name, latitude, longitude, position, antenna;
  AngleColumns north, east;  // beside latitude and longitude

  bool hasPlace() const { return position || (latitude && longitude); }
};

struct Layout {
  std::array<EndColumns, 2> ends;
  std::optional<Column> linkName, frequency;
  bool links = false;  // two stations a row
  bool header = false;
  std::size_t headerRow = 0;  // of the sample
  std::size_t columns = 0;
  std::vector<std::string> names, unused;
  bool seaLevel = false;
  std::string problem;  // why a header that was found is of no use
};

struct Row {
  std::vector<std::string> fields;
  std::size_t line = 0;
  bool fromComment = false;
};

template <typename Fields>
std::string_view fieldAt(const Fields& fields, const std::optional<Column>& column) {
  return column && column->index < fields.size() ? std::string_view(fields[column->index])
                                                 : std::string_view();
}

// 60 parts make a whole. Nothing when the field is no such number; an empty one is 0.
std::optional<double> sixtieths(std::string_view field) {
  if (withoutBlanks(field).empty()) return 0;
  const auto number = decimalNumber(field);
  return number && *number >= 0 && *number < 60 ? number : std::nullopt;
}

struct Angle {
  std::string text;  // as a field of one column would have it
  std::string error;
};

// Degrees, minutes, seconds and letter out of columns of their own.
template <typename Fields>
Angle angleOf(const Fields& fields, const std::optional<Column>& whole, const AngleColumns& columns,
              std::string_view letters) {
  const std::string_view degrees = fieldAt(fields, whole),
                         letter = withoutBlanks(fieldAt(fields, columns.letter));
  if (degrees.empty()) return {};
  if (letter.size() > 1 || (!letter.empty() && letters.find(letter[0]) == std::string_view::npos))
    return {"", shownText(letter) + " is neither " + letters[0] + " nor " + letters[2]};
  const bool negative = degrees.front() == '-';
  if (negative && !letter.empty())
    return {"", shownText(degrees) + " has a sign, and a letter in a column of its own"};
  if (!columns.inParts() && !decimalNumber(degrees))
    return {std::string(degrees) + (letter.empty() ? "" : " " + std::string(letter)), ""};
  const auto number = decimalNumber(degrees), minutes = sixtieths(fieldAt(fields, columns.minutes)),
             seconds = sixtieths(fieldAt(fields, columns.seconds));
  if (!number) return {"", shownText(degrees) + " is no number of degrees"};
  if (!minutes || !seconds)
    return {"", shownText(fieldAt(fields, minutes ? columns.seconds : columns.minutes)) +
                    (minutes ? " are no seconds" : " are no minutes") + " from 0 to below 60"};
  const double angle = std::abs(*number) + *minutes / 60 + *seconds / 3600;
  const bool south =
      negative || (!letter.empty() && letters.substr(2).find(letter[0]) != std::string_view::npos);
  return {shownNumber(south ? -angle : angle), ""};
}

template <typename Fields>
Place placeOf(const Fields& fields, const EndColumns& columns) {
  if (columns.position) return placeOfOne(fieldAt(fields, columns.position));
  if (!columns.north.inParts() && !columns.north.letter && !columns.east.inParts() && !columns.east.letter)
    return placeOfTwo(fieldAt(fields, columns.latitude), fieldAt(fields, columns.longitude));
  const Angle north = angleOf(fields, columns.latitude, columns.north, "NnSs"),
              east = angleOf(fields, columns.longitude, columns.east, "EeWw");
  if (!north.error.empty() || !east.error.empty())
    return {0, 0, std::nullopt, !north.error.empty() ? north.error : east.error};
  return placeOfTwo(north.text, east.text);
}

// "1,200 ft" is "1200 ft"; where the digits are not in threes, the text stays.
std::string withoutGroups(std::string_view text) {
  const std::size_t end = std::min(text.find_first_not_of("0123456789,"), text.size());
  const std::string_view number = text.substr(0, end);
  const std::size_t first = number.find(',');
  if (first == 0 || first > 3 || first == std::string_view::npos || (number.size() - first) % 4 != 0)
    return std::string(text);
  std::string digits(number.substr(0, first));
  for (std::size_t i = first; i < number.size(); i += 4) {
    if (number[i] != ',' || number.substr(i + 1, 3).find(',') != std::string_view::npos)
      return std::string(text);
    digits += number.substr(i + 1, 3);
  }
  return digits + std::string(text.substr(end));
}

void keepBetter(std::optional<Column>& kept, const Column& column) {
  if (!kept || column.rank < kept->rank) kept = column;
}

std::optional<Column>* columnFor(Layout& layout, ColumnRole role, int side) {
  EndColumns& end = layout.ends[side == 2 ? 1 : 0];
  switch (role) {
    case ColumnRole::kName:
      return layout.links && side == 0 ? &layout.linkName : &end.name;
    case ColumnRole::kLatitude:
      return &end.latitude;
    case ColumnRole::kLongitude:
      return &end.longitude;
    case ColumnRole::kPosition:
      return &end.position;
    case ColumnRole::kLatitudeMinutes:
      return &end.north.minutes;
    case ColumnRole::kLatitudeSeconds:
      return &end.north.seconds;
    case ColumnRole::kLatitudeLetter:
      return &end.north.letter;
    case ColumnRole::kLongitudeMinutes:
      return &end.east.minutes;
    case ColumnRole::kLongitudeSeconds:
      return &end.east.seconds;
    case ColumnRole::kLongitudeLetter:
      return &end.east.letter;
    case ColumnRole::kAntenna:
      return &end.antenna;
    case ColumnRole::kFrequency:
      return layout.links ? &layout.frequency : nullptr;
    default:
      return nullptr;
  }
}

bool isPlace(ColumnRole role) {
  return role == ColumnRole::kLatitude || role == ColumnRole::kLongitude || role == ColumnRole::kPosition;
}

// Why a row of column names does not do.
std::string headerProblem(const Layout& layout, bool projected) {
  const EndColumns& end = layout.ends[0];
  if (end.hasPlace() && (!layout.links || layout.ends[1].hasPlace())) return {};
  if (projected && !end.latitude && !end.longitude)
    return "its positions are in metres of a map grid (projected): it has northings and eastings; save it "
           "with "
           "latitudes and longitudes";
  if (end.latitude) return "there is a column for the latitude, but none for the longitude";
  if (end.longitude) return "there is a column for the longitude, but none for the latitude";
  return "there are no columns for both ends of a link";
}

std::optional<Layout> layoutOfHeader(const Row& row) {
  std::vector<ColumnMeaning> meanings;
  bool place = false, projected = false, second = false;
  for (const std::string& field : row.fields) {
    meanings.push_back(columnMeaning(field));
    place = place || isPlace(meanings.back().role);
    projected = projected || meanings.back().role == ColumnRole::kProjected;
    second = second || (isPlace(meanings.back().role) && meanings.back().side == 2);
  }
  if (!place && !projected) return std::nullopt;

  Layout layout;
  layout.header = true;
  layout.links = second;
  layout.columns = row.fields.size();
  layout.names = row.fields;
  for (std::size_t i = 0; i < meanings.size(); ++i) {
    const ColumnMeaning& meaning = meanings[i];
    // Where rows are single stations, "id_2" is no second end.
    const int side = second ? meaning.side : 0;
    layout.seaLevel = layout.seaLevel || meaning.role == ColumnRole::kSeaLevel;
    if (std::optional<Column>* column = columnFor(layout, meaning.role, side))
      keepBetter(*column, {i, meaning.unit, meaning.rank});
  }
  for (std::size_t i = 0; i < meanings.size(); ++i) {
    const std::optional<Column>* column = columnFor(layout, meanings[i].role, second ? meanings[i].side : 0);
    if ((column == nullptr || !*column || (*column)->index != i) && !row.fields[i].empty())
      layout.unused.push_back(row.fields[i]);
  }
  layout.problem = headerProblem(layout, projected);
  return layout;
}

bool isNumber(const Row& row, std::size_t index) {
  return index < row.fields.size() && lengthText(row.fields[index], kMetre).has_value();
}

bool isPlaceAt(const Row& row, std::size_t index) {
  if (index + 1 >= row.fields.size() || row.fields[index].empty()) return false;
  const Place place = placeOfTwo(row.fields[index], row.fields[index + 1]);
  return place.error.empty();
}

EndColumns endAt(std::size_t index) {
  EndColumns end;
  end.latitude = Column{index};
  end.longitude = Column{index + 1};
  return end;
}

// Without names of columns: LAT,LON[,HEIGHT][,NAME], NAME,LAT,LON[,HEIGHT], a link of NAME and twice
// LAT,LON,HEIGHT, or one field with both.
std::optional<Layout> layoutOfContent(const Row& row) {
  Layout layout;
  layout.columns = row.fields.size();
  const std::size_t count = row.fields.size();
  if (isPlaceAt(row, 1) && isPlaceAt(row, 4) && isNumber(row, 3) && isNumber(row, 6)) {
    layout.links = true;
    layout.linkName = Column{0};
    layout.ends = {endAt(1), endAt(4)};
    layout.ends[0].antenna = Column{3};
    layout.ends[1].antenna = Column{6};
    if (isNumber(row, 7)) layout.frequency = Column{7, kMegahertz};
  } else if (isPlaceAt(row, 0)) {
    layout.ends[0] = endAt(0);
    const std::size_t next = isNumber(row, 2) ? 3 : 2;
    if (next == 3) layout.ends[0].antenna = Column{2};
    if (count > next) layout.ends[0].name = Column{next};
  } else if (isPlaceAt(row, 1)) {
    layout.ends[0] = endAt(1);
    layout.ends[0].name = Column{0};
    if (isNumber(row, 3)) layout.ends[0].antenna = Column{3};
  } else {
    for (std::size_t i = 0; i < std::min<std::size_t>(count, 2); ++i) {
      if (row.fields[i].empty() || !placeOfOne(row.fields[i]).error.empty()) continue;
      layout.ends[0].position = Column{i};
      if (count > 1) layout.ends[0].name = Column{1 - i};
      if (isNumber(row, 2)) layout.ends[0].antenna = Column{2};
      return layout;
    }
    return std::nullopt;
  }
  return layout;
}

std::vector<Row> sampleOf(std::string_view text, char delimiter) {
  // A cut last row does no harm: there are others.
  CsvRecords records(text.substr(0, kSampleBytes), delimiter);
  std::vector<Row> rows;
  std::string_view comment;
  while (rows.size() < kSampleRows && records.next()) {
    if (records.openQuote()) continue;
    // The names of the columns may stand behind a "#".
    if (rows.empty() && records.comment().data() != comment.data()) {
      comment = records.comment();
      CsvRecords names(comment, delimiter);
      if (names.next())
        rows.push_back({{names.fields().begin(), names.fields().end()}, records.line(), true});
    }
    rows.push_back({{records.fields().begin(), records.fields().end()}, records.line(), false});
  }
  return rows;
}

std::optional<Layout> layoutOf(const std::vector<Row>& rows) {
  std::optional<Layout> useless;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::optional<Layout> layout = layoutOfHeader(rows[i]);
    if (!layout) continue;
    layout->headerRow = i;
    // A title, or a remark, may have the word for a column in it.
    if (layout->problem.empty() && layout->columns > 0) return layout;
    if (!useless && layout->columns > 1 && !rows[i].fromComment) useless = std::move(layout);
  }
  for (const Row& row : rows)
    if (!row.fromComment)
      if (auto layout = layoutOfContent(row)) return useless && !useless->problem.empty() ? useless : layout;
  return useless;
}

// How many rows have the commonest number of fields, if that is several.
std::size_t evenness(const std::vector<Row>& rows) {
  std::map<std::size_t, std::size_t> counts;
  std::size_t best = 0;
  for (const Row& row : rows)
    if (row.fields.size() > 1) best = std::max(best, ++counts[row.fields.size()]);
  return best;
}

struct Dialect {
  char delimiter = ',';
  std::optional<Layout> layout;
  std::vector<Row> sample;
};

Dialect dialectOf(std::string_view text) {
  constexpr std::array kDelimiters = {'\t', ';', '|', ','};
  Dialect best;
  std::size_t bestScore = 0;
  for (const char delimiter : kDelimiters) {
    Dialect dialect{delimiter, std::nullopt, sampleOf(text, delimiter)};
    dialect.layout = layoutOf(dialect.sample);
    const bool useful = dialect.layout && dialect.layout->problem.empty();
    const std::size_t score = 1 + evenness(dialect.sample) + (useful ? 200 : dialect.layout ? 100 : 0);
    if (score <= bestScore) continue;
    bestScore = score;
    best = std::move(dialect);
  }
  return best;
}

const char* nameOf(char delimiter) {
  switch (delimiter) {
    case '\t':
      return "tab";
    case ';':
      return "semicolon";
    case '|':
      return "vertical bar";
    default:
      return "comma";
  }
}

class CsvReader {
 public:
  CsvReader(const Layout& layout, char delimiter, StationCollector& collector)
      : layout_(layout), delimiter_(delimiter), collector_(collector) {}

  void take(const CsvRecords& records) {
    const auto& fields = records.fields();
    if (!layout_.links)
      if (const auto line = lineOfText(fieldAt(fields, layout_.ends[0].position)))
        return takeLine(*line, fields, records.line());
    FoundStation from, to;
    if (!endOf(fields, 0, records.line(), from)) return;
    if (!layout_.links) return collector_.addStation(from, records.line());
    if (!endOf(fields, 1, records.line(), to)) return;
    nameEnds(std::string(fieldAt(fields, layout_.linkName)), from, to);
    collector_.addLine(from, to, records.line(), frequencyOf(fields));
  }

  std::size_t unreadableHeights() const { return unreadableHeights_; }

 private:
  using Fields = std::vector<std::string_view>;

  bool endOf(const Fields& fields, std::size_t side, std::size_t line, FoundStation& station) {
    const EndColumns& columns = layout_.ends[side];
    const Place place = placeOf(fields, columns);
    if (!place.error.empty()) {
      const std::string end = !layout_.links ? "" : side == 0 ? "first end: " : "second end: ";
      collector_.leaveOut(line, end + place.error);
      return false;
    }
    station.name = std::string(fieldAt(fields, columns.name));
    station.latitude = place.latitude;
    station.longitude = place.longitude;
    station.antennaM = place.height;
    if (const std::string_view height = fieldAt(fields, columns.antenna); !height.empty()) {
      station.antennaM =
          lengthText(groupsByCommas(fields, columns) ? withoutGroups(height) : std::string(height),
                     columns.antenna->unit);
      if (!station.antennaM) ++unreadableHeights_;
    }
    return true;
  }

  void takeLine(const LineText& line, const Fields& fields, std::size_t number) {
    if (!line.error.empty()) return collector_.leaveOut(number, line.error);
    FoundStation from, to;
    const auto place = [](const Place& at, FoundStation& end) {
      end.latitude = at.latitude;
      end.longitude = at.longitude;
    };
    place(line.from, from);
    place(line.to, to);
    nameEnds(std::string(fieldAt(fields, layout_.ends[0].name)), from, to);
    collector_.addLine(from, to, number, std::nullopt);
  }

  // Whether a comma in a height stands between thousands and hundreds. Where the degrees have a decimal
  // point, or commas part the columns, it is no decimal comma; unless the degrees have one.
  bool groupsByCommas(const Fields& fields, const EndColumns& columns) const {
    bool point = false, comma = false;
    for (const auto& column : {columns.position, columns.latitude, columns.longitude}) {
      point = point || fieldAt(fields, column).find('.') != std::string_view::npos;
      comma = comma || fieldAt(fields, column).find(',') != std::string_view::npos;
    }
    return point || (delimiter_ == ',' && !comma);
  }

  static void nameEnds(const std::string& link, FoundStation& from, FoundStation& to) {
    for (FoundStation* end : {&from, &to}) {
      end->ownName = !end->name.empty();
      if (!end->ownName && !link.empty()) end->name = link + (end == &from ? " A" : " B");
    }
  }

  std::optional<double> frequencyOf(const Fields& fields) const {
    if (!layout_.frequency) return std::nullopt;
    return frequencyText(fieldAt(fields, layout_.frequency), layout_.frequency->unit);
  }

  const Layout& layout_;
  char delimiter_;
  StationCollector& collector_;
  std::size_t unreadableHeights_ = 0;
};

std::string namedColumns(const Layout& layout) {
  std::vector<std::string> parts;
  const auto add = [&](const char* what, const std::optional<Column>& column) {
    if (column) parts.push_back(what + (" " + shownText(layout.names[column->index])));
  };
  const auto addParts = [&](const std::string& what, const AngleColumns& columns) {
    add((what + " minutes").c_str(), columns.minutes);
    add((what + " seconds").c_str(), columns.seconds);
    add((what + " letter").c_str(), columns.letter);
  };
  add("link", layout.linkName);
  for (const EndColumns& end : layout.ends) {
    add("name", end.name);
    add("position", end.position);
    if (!end.position) {
      add("latitude", end.latitude);
      addParts("latitude", end.north);
      add("longitude", end.longitude);
      addParts("longitude", end.east);
    }
    add("antenna height", end.antenna);
  }
  add("frequency", layout.frequency);
  std::string list;
  for (const std::string& part : parts) list += (list.empty() ? "" : ", ") + part;
  return list;
}

// A first row without any digit is one of names, in words that mean nothing here.
bool hasUnknownNames(const Dialect& dialect) {
  if (dialect.layout->header || dialect.sample.empty()) return false;
  const Row& first = dialect.sample.front();
  return first.fields.size() > 1 && !first.fromComment &&
         std::all_of(first.fields.begin(), first.fields.end(), [](const std::string& field) {
           return field.find_first_of("0123456789") == std::string::npos;
         });
}

void tellLayout(const Dialect& dialect, StationCollector& collector) {
  const Layout& layout = *dialect.layout;
  if (layout.columns > 1) collector.note(std::string("delimiter ") + nameOf(dialect.delimiter));
  if (!layout.header) {
    const EndColumns& end = layout.ends[0];
    std::string columns = end.position                       ? "position"
                          : end.name && end.name->index == 0 ? "name, latitude, longitude"
                          : layout.links                     ? "name, latitude, longitude"
                                                             : "latitude, longitude";
    if (end.antenna) columns += ", antenna height";
    if (layout.links) columns += ", and the same of the other end";
    collector.note((hasUnknownNames(dialect) ? "the names of the columns are not understood; read as "
                                             : "the first line names no columns; read as ") +
                   columns);
  }
  for (const EndColumns& end : layout.ends)
    if (end.antenna && end.antenna->unit != kMetre) {
      collector.note("antenna heights in feet");
      break;
    }
  if (layout.header) collector.note("read as " + namedColumns(layout));
  if (layout.seaLevel)
    collector.note("heights above sea level are not taken: the terrain gives the ground's height");
  if (!layout.unused.empty()) collector.note("columns that are not used: " + shownNames(layout.unused));
}

// What spreadsheets write into the first line for one another: "sep=;".
std::optional<char> namedDelimiter(std::string_view& text, std::size_t& line) {
  if (text.size() < 5 || (text.substr(0, 4) != "sep=" && text.substr(0, 4) != "SEP=")) return std::nullopt;
  const char delimiter = text[4];
  const std::size_t end = text.find('\n');
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  ++line;
  return delimiter;
}

}  // namespace

ImportedStations csvStations(std::string_view text, const std::string& name, const ImportOptions& options) {
  StationCollector collector(options, "CSV", name);
  std::size_t firstLine = 1;
  const auto named = namedDelimiter(text, firstLine);
  Dialect dialect;
  if (named) {
    dialect.delimiter = *named;
    dialect.sample = sampleOf(text, *named);
    dialect.layout = layoutOf(dialect.sample);
  } else {
    dialect = dialectOf(text);
  }
  if (!dialect.layout)
    return std::move(collector).refuse(
        "there are no stations in it: no column for latitude and longitude was found; name the columns in "
        "the "
        "first line, as in \"name,latitude,longitude,height\"");
  const Layout& layout = *dialect.layout;
  const bool unknownNames = hasUnknownNames(dialect);
  const std::size_t headerLine =
      layout.header || unknownNames ? dialect.sample[layout.headerRow].line + firstLine - 1 : std::size_t{0};
  if (!layout.problem.empty())
    return std::move(collector).refuse("line " + std::to_string(headerLine) + ": " + layout.problem);

  tellLayout(dialect, collector);
  CsvReader reader(layout, dialect.delimiter, collector);
  CsvRecords records(text, dialect.delimiter, firstLine);
  const bool headerIsRow = unknownNames || (layout.header && !dialect.sample[layout.headerRow].fromComment);
  while (records.next()) {
    if (!collector.advance(static_cast<double>(records.position()) / static_cast<double>(text.size()))) break;
    if (records.openQuote()) {
      collector.leaveOut(records.line(), "a quote begins here and does not end");
    } else if (headerIsRow && records.line() <= headerLine) {
      continue;
    } else if (collector.full()) {
      collector.leaveOutBeyond(records.line());
    } else {
      reader.take(records);
    }
  }
  if (reader.unreadableHeights() > 0)
    collector.note(counted(reader.unreadableHeights(), "antenna height is", "antenna heights are") +
                   " no number");
  return std::move(collector).finish();
}

}  // namespace zel::host
