#include "links/link_layout.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "import/column_names.h"
#include "import/station_collector.h"

namespace zel::host {

const std::array<const char*, kLinkFields> kLinkFieldNames{
    "name", "lat1", "lon1", "position1", "h1", "lat2", "lon2", "position2", "h2", "frequency"};

namespace {

constexpr std::size_t kPeeked = 64U << 10U;  // bytes that the delimiter is told by
constexpr std::size_t kRowsForDecimal = 20;

std::string lowerCase(std::string_view text) {
  std::string lower(withoutBlanks(text));
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

std::optional<LinkField> fieldOf(const ColumnMeaning& meaning) {
  const bool second = meaning.side == 2;
  if (meaning.role == ColumnRole::kFrequency) return LinkField::kFrequency;
  if (meaning.role == ColumnRole::kName && meaning.side == 0) return LinkField::kName;
  if (meaning.side == 0) return std::nullopt;
  switch (meaning.role) {
    case ColumnRole::kLatitude:
      return second ? LinkField::kLatitude2 : LinkField::kLatitude1;
    case ColumnRole::kLongitude:
      return second ? LinkField::kLongitude2 : LinkField::kLongitude1;
    case ColumnRole::kPosition:
      return second ? LinkField::kPosition2 : LinkField::kPosition1;
    case ColumnRole::kAntenna:
      return second ? LinkField::kHeight2 : LinkField::kHeight1;
    default:
      return std::nullopt;
  }
}

bool isAnglePart(ColumnRole role) {
  return role == ColumnRole::kLatitudeMinutes || role == ColumnRole::kLatitudeSeconds ||
         role == ColumnRole::kLatitudeLetter || role == ColumnRole::kLongitudeMinutes ||
         role == ColumnRole::kLongitudeSeconds || role == ColumnRole::kLongitudeLetter;
}

// Finds the columns of a first row.
class Columns {
 public:
  Columns(const Row& header, const LayoutOptions& options) : options_(options) {
    for (std::size_t i = 0; i < header.size(); ++i) {
      layout_.names.emplace_back(header.field(i));
      meanings_.push_back(columnMeaning(withoutBlanks(header.field(i))));
    }
    takeNamed();
    for (std::size_t field = 0; field < kLinkFields; ++field)
      if (options_.columns.count(static_cast<LinkField>(field)) == 0) find(field);
    preferTwoColumns();
    takeUnits();
    check();
  }

  const std::string& problem() const { return problem_; }
  LinkLayout take() { return std::move(layout_); }
  // How many of the fields have a column.
  std::size_t found() const {
    return static_cast<std::size_t>(std::count_if(layout_.columns.begin(), layout_.columns.end(),
                                                  [](const auto& column) { return column.has_value(); }));
  }

 private:
  void fail(std::string problem) {
    if (problem_.empty()) problem_ = std::move(problem);
  }

  void takeNamed() {
    for (const auto& [field, name] : options_.columns) {
      std::vector<std::size_t> places;
      for (const bool exact : {true, false})
        for (std::size_t i = 0; i < layout_.names.size() && places.size() < (exact ? 2U : 1U); ++i)
          if (exact ? withoutBlanks(layout_.names[i]) == name
                    : lowerCase(layout_.names[i]) == lowerCase(name))
            places.push_back(i);
      const std::string told =
          std::string("--columns ") + kLinkFieldNames[static_cast<std::size_t>(field)] + "=" + name + ": ";
      if (places.empty())
        return fail(told + "there is no such column; there are " + shownNames(layout_.names));
      if (places.size() > 1 && withoutBlanks(layout_.names[places[1]]) == name && places[0] != places[1])
        return fail(told + "columns " + std::to_string(places[0] + 1) + " and " +
                    std::to_string(places[1] + 1) + " both have that name");
      layout_.columns[static_cast<std::size_t>(field)] = places.front();
    }
  }

  bool isNamed(std::size_t column) const {
    return std::any_of(options_.columns.begin(), options_.columns.end(), [&](const auto& named) {
      return layout_.columns[static_cast<std::size_t>(named.first)] == column;
    });
  }

  // A column of the field's very name is better than one that means the same.
  int rankOf(std::size_t column, std::size_t field) const {
    return lowerCase(layout_.names[column]) == kLinkFieldNames[field] ? -1 : meanings_[column].rank;
  }

  void find(std::size_t field) {
    std::optional<std::size_t> best, equal;
    for (std::size_t i = 0; i < meanings_.size(); ++i) {
      const auto means = fieldOf(meanings_[i]);
      if (!means || static_cast<std::size_t>(*means) != field || isNamed(i)) continue;
      if (!best || rankOf(i, field) < rankOf(*best, field)) {
        best = i;
        equal.reset();
      } else if (rankOf(i, field) == rankOf(*best, field) && !equal) {
        equal = i;
      }
    }
    if (equal)
      return fail("columns " + std::to_string(*best + 1) + ", " + shownText(layout_.names[*best]) + ", and " +
                  std::to_string(*equal + 1) + ", " + shownText(layout_.names[*equal]) + ", may both be " +
                  kLinkFieldNames[field] + "; say which with --columns " + kLinkFieldNames[field] +
                  "=NAME, or rename one");
    layout_.columns[field] = best;
  }

  std::optional<std::size_t>& column(LinkField field) {
    return layout_.columns[static_cast<std::size_t>(field)];
  }

  // Beside latitude and longitude a column with both is one more to carry over.
  void preferTwoColumns() {
    if (column(LinkField::kLatitude1) && column(LinkField::kLongitude1) &&
        options_.columns.count(LinkField::kPosition1) == 0)
      column(LinkField::kPosition1).reset();
    if (column(LinkField::kLatitude2) && column(LinkField::kLongitude2) &&
        options_.columns.count(LinkField::kPosition2) == 0)
      column(LinkField::kPosition2).reset();
  }

  double unitOf(LinkField field, const std::optional<double>& told) {
    const auto found = column(field);
    return told ? *told : found ? meanings_[*found].unit : 1;
  }

  void takeUnits() {
    layout_.heightUnits = {unitOf(LinkField::kHeight1, options_.heightUnit),
                           unitOf(LinkField::kHeight2, options_.heightUnit)};
    layout_.frequencyUnit = unitOf(LinkField::kFrequency, options_.frequencyUnit);
  }

  void check() {
    for (std::size_t i = 0; i < meanings_.size(); ++i) {
      if (isAnglePart(meanings_[i].role) && meanings_[i].side != 0 && !isNamed(i))
        fail("column " + shownText(layout_.names[i]) +
             " is a part of a position; degrees, minutes and seconds must stand in one column, as in "
             "\"36 26 26.9 N\"");
      if (meanings_[i].role == ColumnRole::kSeaLevel && meanings_[i].side != 0 && !isNamed(i))
        layout_.notes.push_back("column " + shownText(layout_.names[i]) +
                                " is a height above sea level and not taken: the terrain gives the ground's "
                                "height");
    }
    std::vector<std::string> missing;
    const std::array<std::array<LinkField, 3>, 2> ends{
        {{LinkField::kLatitude1, LinkField::kLongitude1, LinkField::kPosition1},
         {LinkField::kLatitude2, LinkField::kLongitude2, LinkField::kPosition2}}};
    for (const auto& [latitude, longitude, position] : ends) {
      if (column(position)) continue;
      for (const LinkField field : {latitude, longitude})
        if (!column(field)) missing.emplace_back(kLinkFieldNames[static_cast<std::size_t>(field)]);
    }
    if (missing.empty()) return;
    std::string names;
    for (std::size_t i = 0; i < missing.size(); ++i)
      names += (i == 0 ? "" : i + 1 == missing.size() ? " and " : ", ") + missing[i];
    fail("there is no column " + names +
         "; the first line must name the columns, as in "
         "\"name,lat1,lon1,h1,lat2,lon2,h2,frequency\", or --columns say which is which; it has " +
         shownNames(layout_.names));
  }

  const LayoutOptions& options_;
  LinkLayout layout_;
  std::vector<ColumnMeaning> meanings_;
  std::string problem_;
};

// What spreadsheets write into the first line for one another: "sep=;".
std::optional<char> namedDelimiter(RowReader& reader) {
  const std::string_view start = reader.peek(6);
  if (start.size() < 5 || lowerCase(start.substr(0, 4)) != "sep=") return std::nullopt;
  if (start.size() > 5 && start[5] != '\n' && start[5] != '\r') return std::nullopt;
  const char delimiter = start[4];
  reader.skipLine();
  return delimiter;
}

// Whether the first row ends here, as far as that can be told before its delimiter is known.
bool hasFirstRow(std::string_view text) {
  bool inRow = false, comment = false, quoted = false;
  for (const char c : text) {
    if (quoted) {
      quoted = c != '"';
    } else if (c == '\n' || c == '\r') {
      if (inRow) return true;
      comment = false;
    } else if (!comment) {
      comment = c == '#' && !inRow;
      quoted = c == '"';
      inRow = inRow || (!comment && std::string_view(" ,;\t|").find(c) == std::string_view::npos);
    }
  }
  return false;
}

// So much of the text as tells the delimiter: no more is waited for than that takes.
std::string_view startOf(RowReader& reader) {
  for (std::size_t wanted = 1;;) {
    reader.peek(wanted);
    const std::string_view start = reader.peek(std::min(reader.unread(), kPeeked));
    if (start.size() < wanted || start.size() >= kPeeked || hasFirstRow(start)) return start;
    wanted = start.size() + 1;
  }
}

// The first row of a text.
Row firstRow(std::string_view text, char delimiter) {
  bool given = false;
  RowReader reader([&](std::string& buffer) {
    if (std::exchange(given, true)) return false;
    buffer.append(text);
    return true;
  });
  reader.setDelimiter(delimiter);
  Row row;
  reader.next(row);
  return row;
}

char likelyDelimiter(std::string_view text, const LayoutOptions& options) {
  constexpr std::array kDelimiters{',', ';', '\t', '|'};
  constexpr std::size_t kWorks = 1000;
  char best = kDelimiters.front();
  std::size_t bestScore = 0;
  for (const char delimiter : kDelimiters) {
    const Row row = firstRow(text, delimiter);
    const Columns columns(row, options);
    // A row that breaks off for its many fields has this delimiter, most likely.
    const std::size_t score = !row.problem.empty() ? kWorks / 2
                                                   : std::min(row.size(), kWorks / 2) + 10 * columns.found() +
                                                         (columns.problem().empty() ? kWorks : 0);
    if (score <= bestScore) continue;
    bestScore = score;
    best = delimiter;
  }
  return best;
}

// Whether the field is a number, alone or with a unit, with that mark in it.
bool isNumberWith(char mark, std::string_view field) {
  return field.find(mark) != std::string_view::npos && (decimalNumber(field) || lengthText(field, 1));
}

// By the first row with a mark in a number of these columns.
std::optional<DecimalMark> markIn(const LinkLayout& layout, const std::deque<Row>& rows,
                                  std::initializer_list<LinkField> fields) {
  for (const Row& row : rows) {
    bool point = false, comma = false;
    for (const LinkField field : fields) {
      const auto column = layout.columnOf(field);
      if (!column) continue;
      point = point || isNumberWith('.', row.field(*column));
      comma = comma || isNumberWith(',', row.field(*column));
    }
    if (point || comma) return point ? DecimalMark::kPoint : DecimalMark::kComma;
  }
  return std::nullopt;
}

std::optional<DecimalMark> markOfDegrees(const LinkLayout& layout, const Row& row) {
  return markIn(
      layout, {row},
      {LinkField::kLatitude1, LinkField::kLongitude1, LinkField::kLatitude2, LinkField::kLongitude2});
}

// Degrees are surest: a mark in a height may part thousands. Reads no further than they take.
DecimalMark readDecimal(const LinkLayout& layout, RowReader& reader, std::deque<Row>& rows) {
  while (rows.size() < kRowsForDecimal) {
    Row row;
    if (!reader.next(row)) break;
    rows.push_back(std::move(row));
    if (const auto mark = markOfDegrees(layout, rows.back())) return *mark;
  }
  return markIn(layout, rows, {LinkField::kHeight1, LinkField::kHeight2, LinkField::kFrequency})
      .value_or(DecimalMark::kPoint);
}

}  // namespace

std::string LinkLayout::nameOf(LinkField field) const {
  const auto column = columnOf(field);
  return column ? std::string(withoutBlanks(names[*column]))
                : std::string(kLinkFieldNames[static_cast<std::size_t>(field)]);
}

std::string delimiterName(char delimiter) {
  switch (delimiter) {
    case ',':
      return "comma";
    case ';':
      return "semicolon";
    case '\t':
      return "tab";
    case '|':
      return "vertical bar";
    default:
      return std::string("\"") + delimiter + "\"";
  }
}

LayoutResult readLayout(RowReader& reader, const LayoutOptions& options, std::deque<Row>& rows) {
  const auto named = namedDelimiter(reader);
  char delimiter = options.delimiter.value_or(named.value_or(','));
  if (!options.delimiter && !named) delimiter = likelyDelimiter(startOf(reader), options);
  reader.setDelimiter(delimiter);
  Row header;
  if (!reader.next(header)) return {std::nullopt, "there is nothing in it"};
  const std::string where = "line " + std::to_string(header.line) + ": ";
  if (!header.problem.empty()) return {std::nullopt, where + header.problem};
  Columns columns(header, options);
  if (!columns.problem().empty()) return {std::nullopt, where + columns.problem()};
  LayoutResult result{columns.take(), {}};
  result.layout->delimiter = delimiter;
  result.layout->decimal = options.decimal ? *options.decimal : readDecimal(*result.layout, reader, rows);
  return result;
}

}  // namespace zel::host
