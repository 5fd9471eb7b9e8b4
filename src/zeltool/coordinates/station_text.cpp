#include "zeltool/coordinates/station_text.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/runtime_error.h"
#include "foundation/text.h"
#include "zeltool/coordinates/coordinate_text.h"

namespace zel {

namespace {

constexpr double kMetresPerFoot = 0.3048;

// A part of a longer text.
struct Piece {
  std::string_view text;
  std::size_t at = 0;  // byte
};

Piece pieceOf(std::string_view whole, std::size_t begin, std::size_t end) {
  return {whole.substr(begin, end - begin), begin};
}

// Columns of the piece become columns of the whole text.
template <typename T>
Parsed<T> within(std::string_view whole, const Piece& piece, Parsed<T> parsed) {
  if (!parsed.ok()) parsed.column += columnOf(whole, piece.at) - 1;
  return parsed;
}

std::string shown(double degrees) { return generalNumber(std::min(std::abs(degrees), 1e300)); }

std::size_t firstColumn(std::string_view text) {
  return columnOf(text, std::min(text.find_first_not_of(" \t"), text.size()));
}

Parsed<double> latitudeOf(std::string_view text, const CoordinateText& coordinate) {
  if (coordinate.axis == Axis::kLongitude)
    return Parsed<double>::bad(TextError::kWrongLetter, "a latitude has the letter N or S",
                               firstColumn(text));
  if (!(std::abs(coordinate.degrees) <= 90))
    return Parsed<double>::bad(TextError::kLatitudeRange,
                               "the latitude " + shown(coordinate.degrees) + " is beyond 90 degrees",
                               firstColumn(text));
  return Parsed<double>::good(coordinate.degrees);
}

Parsed<double> longitudeOf(std::string_view text, const CoordinateText& coordinate) {
  constexpr double kFullCircle = 360;  // degrees
  double degrees = coordinate.degrees;
  if (coordinate.axis == Axis::kLatitude)
    return Parsed<double>::bad(TextError::kWrongLetter, "a longitude has the letter E or W",
                               firstColumn(text));
  if (!(std::abs(degrees) <= kFullCircle))
    return Parsed<double>::bad(TextError::kLongitudeRange,
                               "the longitude " + shown(degrees) + " is beyond 360 degrees",
                               firstColumn(text));
  if (degrees > kFullCircle / 2) degrees -= kFullCircle;
  if (degrees < -kFullCircle / 2) degrees += kFullCircle;
  return Parsed<double>::good(degrees);
}

std::vector<Piece> splitAt(std::string_view text, char separator) {
  std::vector<Piece> pieces;
  std::size_t begin = 0;
  for (std::size_t end = text.find(separator); end != std::string_view::npos;
       end = text.find(separator, begin)) {
    pieces.push_back(pieceOf(text, begin, end));
    begin = end + 1;
  }
  pieces.push_back(pieceOf(text, begin, text.size()));
  return pieces;
}

std::vector<Piece> words(std::string_view text) {
  std::vector<Piece> found;
  for (std::size_t begin = text.find_first_not_of(" \t"); begin != std::string_view::npos;
       begin = text.find_first_not_of(" \t", begin)) {
    const std::size_t end = std::min(text.find_first_of(" \t", begin), text.size());
    found.push_back(pieceOf(text, begin, end));
    begin = end;
  }
  return found;
}

// Two coordinates with their letters and nothing else between them: behind the first letter, or before the
// second where the letters stand in front.
std::vector<Piece> splitAtLetters(std::string_view text) {
  std::vector<std::size_t> letters;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isHemisphereLetter(text[i])) continue;
    // The mark of seconds, as in "11.4s N".
    const bool seconds = lowerCase(text.substr(i, 1)) == "s" && i + 1 < text.size() &&
                         text.find_first_of("NSEWnsew", i + 1) == text.find_first_not_of(" \t", i + 1);
    if (!seconds) letters.push_back(i);
  }
  if (letters.size() != 2) return {};
  const bool inFront = letters[0] < text.find_first_of("0123456789.");
  const std::size_t split = inFront ? letters[1] : letters[0] + 1;
  return {pieceOf(text, 0, split), pieceOf(text, split, text.size())};
}

Parsed<std::vector<Piece>> split(std::string_view text) {
  using Result = Parsed<std::vector<Piece>>;
  if (trimmed(text).empty()) return Result::bad(TextError::kEmpty, "there is no position", 1);
  for (const char separator : {',', ';'})
    if (text.find(separator) != std::string_view::npos) return Result::good(splitAt(text, separator));
  if (auto pieces = splitAtLetters(text); !pieces.empty()) return Result::good(std::move(pieces));
  const std::vector<Piece> found = words(text);
  if (found.size() == 2 && !(found[1].text.size() == 1 && isHemisphereLetter(found[1].text.front())) &&
      !(found[0].text.size() == 1 && isHemisphereLetter(found[0].text.front())))
    return Result::good(found);
  if (found.size() > 2 && parseCoordinate(text).error == TextError::kTooManyParts)
    return Result::bad(
        TextError::kAmbiguous,
        "it is not clear where the longitude begins; put a comma between latitude and longitude",
        columnOf(text, found[1].at));
  const Parsed<CoordinateText> alone = parseCoordinate(text);
  if (!alone.ok() && found.size() > 2 && alone.error == TextError::kTwoSigns)
    return Result::bad(
        TextError::kAmbiguous,
        "it is not clear where the longitude begins; put a comma between latitude and longitude",
        alone.column);
  if (!alone.ok()) return Result::bad(alone);
  return Result::bad(TextError::kMissingLongitude, "there is no longitude; a position is LAT,LON",
                     columnOf(text, text.size()));
}

Parsed<GeoPoint> positionOf(std::string_view whole, Piece first, Piece second) {
  using Result = Parsed<GeoPoint>;
  if (trimmed(second.text).empty() && !trimmed(first.text).empty())
    return Result::bad(TextError::kMissingLongitude, "there is no longitude; a position is LAT,LON",
                       columnOf(whole, second.at));
  auto latitude = within(whole, first, parseCoordinate(first.text));
  if (!latitude.ok()) return Result::bad(latitude);
  auto longitude = within(whole, second, parseCoordinate(second.text));
  if (!longitude.ok()) return Result::bad(longitude);
  if (latitude.value.axis != Axis::kUnknown && latitude.value.axis == longitude.value.axis)
    return Result::bad(TextError::kWrongLetter,
                       std::string("both coordinates are ") +
                           (latitude.value.axis == Axis::kLatitude ? "latitudes" : "longitudes"),
                       columnOf(whole, second.at) + firstColumn(second.text) - 1);
  if (latitude.value.axis == Axis::kLongitude || longitude.value.axis == Axis::kLatitude) {
    std::swap(latitude, longitude);
    std::swap(first, second);
  }
  const auto north = within(whole, first, latitudeOf(first.text, latitude.value));
  if (!north.ok()) return Result::bad(north);
  const auto east = within(whole, second, longitudeOf(second.text, longitude.value));
  if (!east.ok()) return Result::bad(east);
  return Result::good({north.value, east.value});
}

// Metres.
Parsed<double> parseHeight(std::string_view text) {
  using Result = Parsed<double>;
  const std::size_t column = firstColumn(text);
  std::string_view number = trimmed(text);
  if (number.empty())
    return Result::bad(TextError::kHeight, "there is no height behind the separator", column);
  double unit = 1;
  if (number.size() > 2 && equalIgnoringCase(number.substr(number.size() - 2), "ft")) {
    unit = kMetresPerFoot;
    number.remove_suffix(2);
  } else if (number.size() > 1 && equalIgnoringCase(number.substr(number.size() - 1), "m")) {
    number.remove_suffix(1);
  }
  std::optional<double> value;
  try {
    value = wholeNumberText(number);
  } catch (const RuntimeError&) {
    return Result::bad(TextError::kHeight, "the height is beyond any number", column);
  }
  if (!value)
    return Result::bad(TextError::kHeight, "the height is no number of metres (m) or feet (ft)", column);
  return Result::good(*value * unit);
}

template <typename Convert>
Parsed<double> parseAngle(std::string_view text, Convert convert) {
  const Parsed<CoordinateText> coordinate = parseCoordinate(text);
  return coordinate.ok() ? convert(text, coordinate.value) : Parsed<double>::bad(coordinate);
}

}  // namespace

Parsed<double> parseLatitude(std::string_view text) { return parseAngle(text, latitudeOf); }

Parsed<double> parseLongitude(std::string_view text) { return parseAngle(text, longitudeOf); }

Parsed<GeoPoint> parsePosition(std::string_view text) {
  const auto pieces = split(text);
  if (!pieces.ok()) return Parsed<GeoPoint>::bad(pieces);
  if (pieces.value.size() > 2)
    return Parsed<GeoPoint>::bad(TextError::kTooManyParts, "there is more than a latitude and a longitude",
                                 columnOf(text, pieces.value[2].at));
  return positionOf(text, pieces.value[0], pieces.value[1]);
}

Parsed<StationText> parseStation(std::string_view text) {
  using Result = Parsed<StationText>;
  const auto pieces = split(text);
  if (!pieces.ok()) return Result::bad(pieces);
  if (pieces.value.size() > 3)
    return Result::bad(TextError::kTooManyParts, "there is more than a latitude, a longitude and a height",
                       columnOf(text, pieces.value[3].at));
  const auto position = positionOf(text, pieces.value[0], pieces.value[1]);
  if (!position.ok()) return Result::bad(position);
  StationText station{position.value, std::nullopt};
  if (pieces.value.size() == 3) {
    const auto height = within(text, pieces.value[2], parseHeight(pieces.value[2].text));
    if (!height.ok()) return Result::bad(height);
    station.height = height.value;
  }
  return Result::good(station);
}

}  // namespace zel
