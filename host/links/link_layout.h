// Which column of a list of links is which, and how its numbers are written.
//
// The first row names the columns, in any order and case: name, lat1, lon1, h1, lat2, lon2, h2, frequency,
// or what else such columns are called ("Latitude A", "tx lon", "Höhe 2 (ft)", "freq_ghz"; see
// import/column_names.h), or position1 and position2 with both numbers in one field. The delimiter is the one
// with which the first row makes most sense.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "links/row_reader.h"

namespace zel::host {

enum class LinkField {
  kName,
  kLatitude1,
  kLongitude1,
  kPosition1,
  kHeight1,
  kLatitude2,
  kLongitude2,
  kPosition2,
  kHeight2,
  kFrequency,
};
inline constexpr std::size_t kLinkFields = 10;
// "name", "lat1", "lon1", "position1", "h1", ..., in the order of LinkField.
extern const std::array<const char*, kLinkFields> kLinkFieldNames;

enum class DecimalMark { kPoint, kComma };

struct LayoutOptions {
  std::optional<char> delimiter;
  std::optional<DecimalMark> decimal;
  // A one stands for so many metres, or MHz, in every column of that kind; without it as the column's name
  // says, else 1.
  std::optional<double> heightUnit, frequencyUnit;
  std::map<LinkField, std::string> columns;  // the name of a field's column in the file
};

struct LinkLayout {
  char delimiter = ',';
  DecimalMark decimal = DecimalMark::kPoint;
  std::vector<std::string> names;  // of all columns, as the file has them
  std::array<std::optional<std::size_t>, kLinkFields> columns;
  std::array<double, 2> heightUnits{1, 1};  // metres, of each end
  double frequencyUnit = 1;                 // MHz
  std::vector<std::string> notes;           // what was assumed, in words

  std::optional<std::size_t> columnOf(LinkField field) const {
    return columns[static_cast<std::size_t>(field)];
  }
  // As the file calls it; of a field without a column the field's own name.
  std::string nameOf(LinkField field) const;
};

// The error has the line where there is one.
struct LayoutResult {
  std::optional<LinkLayout> layout;
  std::string error;
};

// Reads the first row, which names the columns, and the next ones that it looks at for the decimal mark: they
// are put into `rows`, to be taken before those that the reader gives.
LayoutResult readLayout(RowReader& reader, const LayoutOptions& options, std::deque<Row>& rows);

// "comma", "semicolon", "tab", "vertical bar", or the character in quotes.
std::string delimiterName(char delimiter);

}  // namespace zel::host
