#include "import/place_text.h"

#include <algorithm>

#include "import/station_collector.h"
#include "zel/coordinates.h"

namespace zel::host {
namespace {

constexpr std::size_t kLongestPosition = 200;  // bytes of a field with degrees

// Degrees with a decimal comma; a text with two of them, or with a point, keeps its comma.
std::string withDecimalPoint(std::string_view text) {
  std::string point(text);
  if (std::count(point.begin(), point.end(), ',') == 1 && point.find('.') == std::string::npos)
    std::replace(point.begin(), point.end(), ',', '.');
  return point;
}

Place placeOfText(const std::string& text) {
  const ParsedStation parsed = parseStationText(text);
  // The column that it names is not one of the file's.
  if (!parsed.station) return {0, 0, std::nullopt, parsed.error.substr(0, parsed.error.rfind(" (column "))};
  const Position& position = parsed.station->position;
  return {position.latitude, position.longitude, parsed.station->height, {}};
}

// Goes past a word in any case; whether it was there.
bool takeWord(std::string_view& text, std::string_view word) {
  for (std::size_t i = 0; i < word.size(); ++i)
    if (i >= text.size() || (text[i] | 0x20) != word[i]) return false;
  text.remove_prefix(word.size());
  return true;
}

// What stands in the brackets behind the word for a shape.
std::string_view withinBrackets(std::string_view text) {
  const std::size_t open = text.find('('), close = text.find(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
  return withoutBlanks(text.substr(open + 1, close - open - 1));
}

// "-84.25 36.31": longitude first; a height behind them does not count.
std::optional<Place> placeOfPair(std::string_view text) {
  text = withoutBlanks(text);
  const std::size_t blank = text.find(' ');
  const std::string_view rest = blank == std::string_view::npos ? "" : withoutBlanks(text.substr(blank));
  const auto east = decimalNumber(text.substr(0, blank)),
             north = decimalNumber(rest.substr(0, rest.find(' ')));
  if (!east || !north) return std::nullopt;
  return Place{*north, *east, std::nullopt, {}};
}

// "POINT (-84.25 36.31)", as geographic programs write it.
std::optional<Place> placeOfPoint(std::string_view text) {
  const std::string_view whole = text;
  if (!takeWord(text, "point")) return std::nullopt;
  if (auto place = placeOfPair(withinBrackets(text))) return place;
  return Place{0, 0, std::nullopt, shownText(whole) + " is no point"};
}

}  // namespace

Place placeOfTwo(std::string_view latitude, std::string_view longitude) {
  const auto north = decimalNumber(latitude), east = decimalNumber(longitude);
  if (north && east) return {*north, *east, std::nullopt, {}};
  if (latitude.empty() || longitude.empty())
    return {0, 0, std::nullopt, latitude.empty() ? "there is no latitude" : "there is no longitude"};
  if (latitude.size() > kLongestPosition || longitude.size() > kLongestPosition)
    return {0, 0, std::nullopt, "its position is too long"};
  const auto both = withDecimalPoint(latitude) + "," + withDecimalPoint(longitude);
  if (std::count(both.begin(), both.end(), ',') + std::count(both.begin(), both.end(), ';') > 1)
    return {0, 0, std::nullopt, shownText(latitude) + ", " + shownText(longitude) + " is no position"};
  Place place = placeOfText(both);
  if (!place.error.empty())
    place.error = shownText(latitude) + ", " + shownText(longitude) + ": " + place.error;
  return place;
}

Place placeOfOne(std::string_view text) {
  if (text.empty()) return {0, 0, std::nullopt, "there is no position"};
  if (text.size() > kLongestPosition) return {0, 0, std::nullopt, "its position is too long"};
  if (auto point = placeOfPoint(text)) return *point;
  // Numbers beyond their range are told by the collector, in one way for all formats.
  const std::size_t comma = text.find(',');
  if (comma != std::string_view::npos && text.find(',', comma + 1) == std::string_view::npos)
    if (const auto north = decimalNumber(text.substr(0, comma)), east = decimalNumber(text.substr(comma + 1));
        north && east)
      return {*north, *east, std::nullopt, {}};
  Place place = placeOfText(std::string(text));
  if (!place.error.empty()) place.error = shownText(text) + ": " + place.error;
  return place;
}

std::optional<LineText> lineOfText(std::string_view text) {
  if (!takeWord(text, "linestring")) return std::nullopt;
  const std::string_view inner = withinBrackets(text);
  LineText line;
  const auto points = 1 + static_cast<std::size_t>(std::count(inner.begin(), inner.end(), ','));
  const std::size_t comma = inner.find(',');
  if (!inner.empty() && points != 2) {
    line.error = "a line of " + counted(points, "point", "points") + " is no link";
    return line;
  }
  const auto from = placeOfPair(inner.substr(0, comma)),
             to = inner.empty() ? std::nullopt : placeOfPair(inner.substr(comma + 1));
  if (from && to) {
    line.from = *from;
    line.to = *to;
  } else {
    line.error = "the ends of the line are no positions";
  }
  return line;
}

}  // namespace zel::host
