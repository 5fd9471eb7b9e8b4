#include "import/column_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zel::host {
namespace {

using Words = std::vector<std::string>;
using List = std::initializer_list<std::string_view>;

constexpr std::size_t kLongestColumnName = 100;  // bytes; longer ones mean nothing

// The second byte of the letters from U+00C0 to U+00FF, without their accents.
constexpr std::string_view kPlainLetters = "aaaaaaaceeeeiiiidnooooo ouuuuypsaaaaaaaceeeeiiiidnooooo ouuuuypy";

// Lower case without accents, letters and digits in words of their own; everything else ends a word.
Words wordsOf(std::string_view name) {
  Words words(1);
  const auto kind = [](char c) { return c >= '0' && c <= '9' ? 1 : 0; };
  bool lowerBefore = false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    char c = name[i];
    const bool upper = c >= 'A' && c <= 'Z';
    if (upper) c = static_cast<char>(c - 'A' + 'a');
    if (name[i] == '\xC3' && i + 1 < name.size())
      c = kPlainLetters[static_cast<unsigned char>(name[++i]) & 0x3FU];
    const bool letter = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    std::string& last = words.back();
    const bool newWord = !letter || (!last.empty() && kind(last.back()) != kind(c)) || (upper && lowerBefore);
    if (newWord && !last.empty()) words.emplace_back();
    if (letter) words.back() += c;
    lowerBefore = letter && !upper;
  }
  if (words.back().empty()) words.pop_back();
  return words;
}

bool isOneOf(const std::string& word, List list) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

bool anyOf(const Words& words, List list) {
  return std::any_of(words.begin(), words.end(),
                     [&](const std::string& word) { return isOneOf(word, list); });
}

// Takes those words away; whether there were any.
bool take(Words& words, List list) {
  return std::erase_if(words, [&](const std::string& word) { return isOneOf(word, list); }) > 0;
}

constexpr auto kLatitude = {"lat",    "latitude",    "latitud",     "latitudine",
                            "breite", "breitengrad", "breedtegraad"};
constexpr auto kLongitude = {"lon",   "lng",    "long",       "longitude",   "longitud",   "longitudine",
                             "lange", "laenge", "langengrad", "laengengrad", "lengtegraad"};

bool isLatitude(const std::string& word) {
  return std::find(kLatitude.begin(), kLatitude.end(), word) != kLatitude.end();
}
bool isLongitude(const std::string& word) {
  return std::find(kLongitude.begin(), kLongitude.end(), word) != kLongitude.end();
}

// "latlon" and the like, all in one word.
bool isBoth(const std::string& word) {
  return isOneOf(word, {"latlon", "latlong", "latlng", "lonlat", "wkt", "position", "pos", "coordinates",
                        "coordinate", "coords", "coord", "koordinaten", "coordenadas", "coordonnees"});
}

std::optional<ColumnRole> angleRole(const Words& words) {
  bool latitude = false, longitude = false;
  for (const std::string& word : words) {
    latitude = latitude || isLatitude(word);
    longitude = longitude || isLongitude(word);
    if (!isLatitude(word) && !isLongitude(word) &&
        !isOneOf(word, {"site", "station", "gps", "geo", "geographic", "coord", "coordinate", "coordinates",
                        "point", "position", "location", "and", "tower", "mast", "antenna"}))
      return std::nullopt;
  }
  if (latitude && longitude) return ColumnRole::kPosition;
  if (latitude) return ColumnRole::kLatitude;
  if (longitude) return ColumnRole::kLongitude;
  return std::nullopt;
}

// "lat_min", "LonSec", "latitude direction", "E/W"; the words for the side are gone.
std::optional<ColumnRole> anglePartRole(Words words) {
  take(words, {"site", "station", "gps", "geo", "coord", "position", "tower", "mast", "antenna", "of"});
  if (words == Words{"ns"} || words == Words{"n", "s"}) return ColumnRole::kLatitudeLetter;
  if (words == Words{"ew"} || words == Words{"e", "w"}) return ColumnRole::kLongitudeLetter;
  const bool latitude = std::any_of(words.begin(), words.end(), isLatitude),
             longitude = std::any_of(words.begin(), words.end(), isLongitude);
  if (latitude == longitude || words.size() < 2) return std::nullopt;
  std::erase_if(words, [](const std::string& word) { return isLatitude(word) || isLongitude(word); });
  const auto all = [&](List list) {
    return std::all_of(words.begin(), words.end(),
                       [&](const std::string& word) { return isOneOf(word, list); });
  };
  if (all({"d", "deg", "degree", "degrees"}))
    return latitude ? ColumnRole::kLatitude : ColumnRole::kLongitude;
  if (all({"m", "min", "mins", "minute", "minutes"}))
    return latitude ? ColumnRole::kLatitudeMinutes : ColumnRole::kLongitudeMinutes;
  if (all({"s", "sec", "secs", "second", "seconds"}))
    return latitude ? ColumnRole::kLatitudeSeconds : ColumnRole::kLongitudeSeconds;
  if (all({"dir", "direction", "hem", "hemi", "hemisphere", "ns", "ew", "n", "e", "w", "letter", "sign"}))
    return latitude ? ColumnRole::kLatitudeLetter : ColumnRole::kLongitudeLetter;
  return std::nullopt;
}

bool isAntenna(const Words& words) {
  const bool height = anyOf(words, {"height", "heights", "ht", "hgt", "h", "agl", "antenna", "ant", "hauteur",
                                    "hohe", "hoehe", "altura", "altezza", "antennenhohe", "antennenhoehe",
                                    "hoogte", "antennehoogte", "hag", "haat"});
  return height && std::all_of(words.begin(), words.end(), [](const std::string& word) {
           return isOneOf(word, {"height",
                                 "heights",
                                 "ht",
                                 "hgt",
                                 "h",
                                 "agl",
                                 "antenna",
                                 "ant",
                                 "antenne",
                                 "antena",
                                 "hauteur",
                                 "hohe",
                                 "hoehe",
                                 "altura",
                                 "altezza",
                                 "antennenhohe",
                                 "antennenhoehe",
                                 "above",
                                 "ground",
                                 "level",
                                 "hag",
                                 "uber",
                                 "ueber",
                                 "grund",
                                 "center",
                                 "centre",
                                 "radiation",
                                 "hoogte",
                                 "antennehoogte",
                                 "de",
                                 "d",
                                 "da",
                                 "do",
                                 "di",
                                 "del",
                                 "della",
                                 "dell",
                                 "mast",
                                 "tower"});
         });
}

int nameRank(const std::string& joined) {
  constexpr std::array kNames = {"name",        "stationname", "sitename",    "station",      "site",
                                 "title",       "label",       "link",        "linkname",     "path",
                                 "hop",         "nom",         "nombre",      "nome",         "naam",
                                 "bezeichnung", "standort",    "place",       "locationname", "towername",
                                 "callsign",    "call",        "stationid",   "siteid",       "code",
                                 "id",          "location",    "description", "desc"};
  const auto found = std::find(kNames.begin(), kNames.end(), joined);
  return found == kNames.end() ? -1 : static_cast<int>(found - kNames.begin());
}

void takeUnits(Words& words, ColumnMeaning& meaning) {
  if (words.size() > 1 && take(words, {"ft", "feet", "foot"})) meaning.unit = kMetresPerFoot;
  if (words.size() > 1) take(words, {"m", "meter", "meters", "metre", "metres", "mtr"});
  take(words, {"deg", "degree", "degrees", "dd", "ddd", "dms", "decimal", "dec", "wgs", "84", "in", "the",
               "of", "nad", "83", "4326", "epsg", "grad"});
}

void takeSide(Words& words, ColumnMeaning& meaning) {
  if (take(words,
           {"1", "a", "from", "tx", "start", "near", "transmitter", "von", "anfang", "depart", "inicio"}))
    meaning.side = 1;
  if (take(words, {"2", "b", "to", "rx", "end", "far", "receiver", "nach", "ende", "arrivee", "fin"}))
    meaning.side = 2;
}

bool takeFrequency(const Words& words, ColumnMeaning& meaning) {
  if (!anyOf(words, {"frequency", "freq", "frequenz", "frequence", "frecuencia", "mhz", "ghz"})) return false;
  meaning.role = ColumnRole::kFrequency;
  meaning.unit = anyOf(words, {"ghz"}) ? 1e3 : anyOf(words, {"khz"}) ? 1e-3 : anyOf(words, {"hz"}) ? 1e-6 : 1;
  return true;
}

}  // namespace

ColumnMeaning columnMeaning(std::string_view name) {
  ColumnMeaning meaning;
  if (name.size() > kLongestColumnName) return meaning;
  Words words = wordsOf(name);
  if (words.empty() || takeFrequency(words, meaning)) return meaning;
  takeSide(words, meaning);
  if (const auto part = anglePartRole(words)) {
    meaning.role = *part;
    return meaning;
  }
  takeUnits(words, meaning);
  std::string joined;
  for (const std::string& word : words) joined += word;

  if (joined.empty()) {
    if (meaning.side != 0) meaning.role = ColumnRole::kName;
  } else if (anyOf(words,
                   {"northing", "easting", "northings", "eastings", "utm", "rechtswert", "hochwert"})) {
    meaning.role = ColumnRole::kProjected;
  } else if (anyOf(words, {"amsl", "asl", "msl", "elevation", "elev", "ele", "altitude", "alt", "z", "sea",
                           "cota", "haat"})) {
    meaning.role = ColumnRole::kSeaLevel;
  } else if (isBoth(joined)) {
    meaning.role = ColumnRole::kPosition;
  } else if (const auto angle = angleRole(words)) {
    meaning.role = *angle;
  } else if (joined == "y" || joined == "x") {
    meaning.role = joined == "y" ? ColumnRole::kLatitude : ColumnRole::kLongitude;
    meaning.rank = 1;
  } else if (isAntenna(words)) {
    meaning.role = ColumnRole::kAntenna;
    // A mast may be higher than the antenna on it.
    meaning.rank = anyOf(words, {"antenna", "ant", "agl"}) ? 0 : anyOf(words, {"mast", "tower"}) ? 2 : 1;
  } else if (const int rank = nameRank(joined); rank >= 0) {
    meaning.role = ColumnRole::kName;
    meaning.rank = rank;
  }
  return meaning;
}

}  // namespace zel::host
