// GeoJSON: Points are stations, LineStrings of two positions links. Read as a stream of events, so that
// memory goes with what is taken, and not with what else the file holds. Also as a sequence, one text a line,
// of which a damaged one is left out alone.
#include <algorithm>
#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "import/column_names.h"
#include "import/formats.h"
#include "import/station_collector.h"
#include "planning/watched_text.h"

namespace zel::host {
namespace {

constexpr std::size_t kDeepestJson = 100;
constexpr std::size_t kMostSeen = 40;  // bytes of a name of a coordinate system

// The parser's last token may have what stands before it.
std::string tailOf(const std::string& token) {
  constexpr std::size_t kMost = 12;  // bytes
  std::size_t begin = token.size() > kMost ? token.size() - kMost : 0;
  while (begin < token.size() && (static_cast<unsigned char>(token[begin]) & 0xC0U) == 0x80U) ++begin;
  return token.substr(begin);
}

struct JsonPosition {
  std::array<double, 3> values{};
  std::size_t count = 0;
};

struct Feature {
  std::size_t line = 0;
  std::string type, geometry, name;
  int nameRank = 0;
  std::vector<JsonPosition> positions;  // the first of them
  std::size_t allPositions = 0;
  std::size_t depth = 0;  // of the arrays around a number
  bool wrongValue = false;
  std::optional<double> antennaM, frequencyMhz;
  bool geometryIsNull = false;
};

// Hears the parser. Only what stands at the places where the format has it counts.
class GeoJsonReader {
 public:
  using number_integer_t = std::int64_t;
  using number_unsigned_t = std::uint64_t;
  using number_float_t = double;
  using string_t = std::string;
  using binary_t = nlohmann::json::binary_t;

  GeoJsonReader(StationCollector& collector, const TextProgress& progress, std::size_t size)
      : collector_(collector), progress_(progress), size_(static_cast<double>(size) + 1) {}

  bool null() {
    if (isFeature() && key_ == "geometry") feature().geometryIsNull = true;
    return scalar();
  }
  bool boolean(bool) { return scalar(); }
  bool number_integer(number_integer_t value) { return number(static_cast<double>(value)); }
  bool number_unsigned(number_unsigned_t value) { return number(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t&) { return number(value); }
  bool binary(binary_t&) { return scalar(); }

  bool string(string_t& value) {
    const Place place = here();
    if (place == Place::kCoordinates) feature().wrongValue = true;
    if (key_ == "type" && (place == Place::kRoot || place == Place::kFeature)) feature().type = value;
    if (key_ == "type" && place == Place::kGeometry) feature().geometry = value;
    if (place == Place::kProperties) property(value, std::nullopt);
    if (place == Place::kCrsProperties && key_ == "name")
      crs_ = value.size() > kMostSeen ? value.substr(0, kMostSeen) : value;
    return scalar();
  }

  bool key(string_t& value) {
    key_ = value;
    return true;
  }

  bool start_object(std::size_t) { return open(placeOfObject()); }
  bool start_array(std::size_t) {
    const Place place = placeOfArray();
    if (place == Place::kCoordinates) position_ = JsonPosition{};
    return open(place);
  }

  bool end_object() {
    const Place place = here();
    places_.pop_back();
    if (place == Place::kFeature) finishFeature();
    if (place == Place::kRoot && root_.type != "FeatureCollection") finishRoot();
    return goOn();
  }

  bool end_array() {
    if (here() == Place::kCoordinates && position_.count > 0) {
      Feature& current = feature();
      if (current.positions.size() < kMostStations) current.positions.push_back(position_);
      ++current.allPositions;
      current.depth = std::max(current.depth, coordinatesDepth());
      position_ = JsonPosition{};
    }
    places_.pop_back();
    return goOn();
  }

  bool parse_error(std::size_t, const std::string& token, const nlohmann::detail::exception& problem) {
    const std::string end = tailOf(token);
    error_ = "line " + std::to_string(progress_.line) + ": the JSON is damaged" +
             (problem.id == kOutOfRange ? ": the number " + shownText(end) + " is beyond any number"
              : end.empty()             ? ""
                                        : " at " + shownText(end));
    return false;
  }

  // Before another text of a sequence.
  void begin() {
    places_.clear();
    key_.clear();
    error_.clear();
    root_ = feature_ = Feature{};
    inFeature_ = false;
    position_ = JsonPosition{};
  }

  const std::string& error() const { return error_; }
  const std::string& crs() const { return crs_; }
  const std::string& rootType() const { return root_.type; }
  bool sawFeatures() const { return sawFeatures_; }

 private:
  static constexpr int kOutOfRange = 406;  // the parser's number for it

  enum class Place : std::uint8_t {
    kNone,
    kRoot,
    kFeatures,
    kFeature,
    kGeometry,
    kCoordinates,
    kProperties,
    kCrs,
    kCrsProperties,
    kOther
  };

  Place here() const { return places_.empty() ? Place::kNone : places_.back(); }
  bool isFeature() const { return here() == Place::kFeature || here() == Place::kRoot; }
  Feature& feature() { return inFeature_ ? feature_ : root_; }

  Place placeOfObject() {
    switch (here()) {
      case Place::kNone:
        root_.line = progress_.line;
        return Place::kRoot;
      case Place::kFeatures:
        feature_ = Feature{};
        feature_.line = progress_.line;
        inFeature_ = true;
        return Place::kFeature;
      case Place::kRoot:
        if (key_ == "crs") return Place::kCrs;
        [[fallthrough]];
      case Place::kFeature:
        if (key_ == "geometry") return Place::kGeometry;
        if (key_ == "properties") return Place::kProperties;
        return Place::kOther;
      case Place::kCrs:
        return key_ == "properties" ? Place::kCrsProperties : Place::kOther;
      case Place::kCoordinates:
        feature().wrongValue = true;
        return Place::kOther;
      default:
        return Place::kOther;
    }
  }

  Place placeOfArray() {
    switch (here()) {
      case Place::kRoot:
        if (key_ == "features") {
          sawFeatures_ = true;
          return Place::kFeatures;
        }
        return key_ == "coordinates" ? Place::kCoordinates : Place::kOther;
      case Place::kGeometry:
        return key_ == "coordinates" ? Place::kCoordinates : Place::kOther;
      case Place::kCoordinates:
        if (position_.count > 0) feature().wrongValue = true;
        return Place::kCoordinates;
      default:
        return Place::kOther;
    }
  }

  std::size_t coordinatesDepth() const {
    std::size_t depth = 0;
    for (auto it = places_.rbegin(); it != places_.rend() && *it == Place::kCoordinates; ++it) ++depth;
    return depth;
  }

  bool open(Place place) {
    if (places_.size() >= kDeepestJson) {
      error_ = "line " + std::to_string(progress_.line) + ": arrays and objects are nested deeper than " +
               std::to_string(kDeepestJson);
      return false;
    }
    places_.push_back(place);
    return goOn();
  }

  bool goOn() { return collector_.advance(static_cast<double>(progress_.bytes) / size_); }

  bool scalar() {
    if (here() == Place::kFeatures) collector_.leaveOut(progress_.line, "this is no feature");
    return true;
  }

  bool number(double value) {
    if (here() == Place::kCoordinates) {
      if (position_.count < position_.values.size()) position_.values[position_.count] = value;
      ++position_.count;
    }
    if (here() == Place::kProperties) property(shownNumber(value), value);
    return scalar();
  }

  void property(const std::string& text, std::optional<double> value) {
    const ColumnMeaning meaning = columnMeaning(key_);
    Feature& current = feature();
    if (meaning.role == ColumnRole::kName && !withoutBlanks(text).empty()) {
      if (current.name.empty() || meaning.rank < current.nameRank) {
        current.name = text;
        current.nameRank = meaning.rank;
      }
    } else if (meaning.role == ColumnRole::kAntenna) {
      const auto height = value ? std::optional(*value * meaning.unit) : lengthText(text, meaning.unit);
      if (height) current.antennaM = height;
    } else if (meaning.role == ColumnRole::kFrequency) {
      const auto frequency = value ? std::optional(*value * meaning.unit) : frequencyText(text, meaning.unit);
      if (frequency) current.frequencyMhz = frequency;
    }
  }

  void finishRoot() {
    if (root_.type != "Feature") root_.geometry = root_.type;
    if (root_.type == "Feature" || root_.allPositions > 0) finish(root_);
  }

  void finishFeature() {
    inFeature_ = false;
    finish(feature_);
    feature_ = Feature{};
  }

  void finish(const Feature& found) {
    const auto leaveOut = [&](const std::string& why) { collector_.leaveOut(found.line, why); };
    if (found.geometry.empty())
      return leaveOut(found.geometryIsNull ? "the feature has no geometry"
                                           : "this is no feature with a geometry");
    const bool line = found.geometry == "LineString";
    const std::size_t depth = found.geometry == "Point" ? 1 : 2;
    if (!line && found.geometry != "Point" && found.geometry != "MultiPoint")
      return leaveOut("a geometry " + shownText(found.geometry) + " is neither a station nor a link");
    if (found.wrongValue || found.depth != depth || found.positions.front().count < 2)
      return leaveOut("the coordinates of the " + found.geometry + " are no position");
    if (line && found.allPositions != 2)
      return leaveOut("a line of " + counted(found.allPositions, "point", "points") + " is no link");
    if (line) return takeLine(found);
    for (const JsonPosition& position : found.positions) {
      if (collector_.full()) {
        collector_.leaveOutBeyond(found.line);
      } else if (position.count < 2) {
        leaveOut("a point of the MultiPoint is no position");
      } else {
        if (position.count > 2 && position.values[2] != 0) collector_.seaLevelHeight();
        collector_.addStation(stationAt(found, position, ""), found.line);
      }
    }
  }

  void takeLine(const Feature& found) {
    if (found.positions[1].count < 2)
      return collector_.leaveOut(found.line, "the line's second end is no position");
    FoundStation from = stationAt(found, found.positions[0], " A"),
                 to = stationAt(found, found.positions[1], " B");
    from.ownName = to.ownName = false;
    collector_.addLine(from, to, found.line, found.frequencyMhz);
  }

  // The format has the longitude first.
  static FoundStation stationAt(const Feature& found, const JsonPosition& position, const char* end) {
    return {found.name.empty() ? found.name : found.name + end, position.values[1], position.values[0],
            found.antennaM};
  }

  StationCollector& collector_;
  const TextProgress& progress_;
  double size_;
  std::vector<Place> places_;
  std::string key_, error_, crs_;
  Feature root_, feature_;
  bool inFeature_ = false, sawFeatures_ = false;
  JsonPosition position_;
};

bool isPlainDegrees(const std::string& crs) {
  for (const char* known : {"CRS84", "4326", "4269", "4979", "4258"})
    if (crs.find(known) != std::string::npos) return true;
  return false;
}

constexpr char kRecordSeparator = '\x1E';  // may stand before each text of a sequence

// Goes on to the next text; whether there is one.
bool skipToText(std::string_view text, TextProgress& progress) {
  for (; progress.bytes < text.size(); ++progress.bytes) {
    const char c = text[progress.bytes];
    if (c == '\n') ++progress.line;
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n' && c != kRecordSeparator) return true;
  }
  return false;
}

bool isSequenceName(const std::string& name) {
  const std::string ending = name.substr(std::min(name.find_last_of('.'), name.size()));
  return std::find(kSequenceEndings.begin(), kSequenceEndings.end(), ending) != kSequenceEndings.end();
}

class GeoJsonTexts {
 public:
  GeoJsonTexts(std::string_view text, bool sequence, StationCollector& collector)
      : text_(text), sequence_(sequence), collector_(collector), reader_(collector, progress_, text.size()) {}

  // Why nothing can be taken; empty when all was read, or the collector is cancelled.
  std::string read() {
    while (!collector_.cancelled() && skipToText(text_, progress_)) {
      const TextProgress start = progress_;
      // A second text in a file makes it a sequence.
      sequence_ = sequence_ || (start.bytes > 0 && readOne_ && text_[start.bytes] == '{');
      reader_.begin();
      const bool begins = text_[start.bytes] == '{' || (!sequence_ && !readOne_);
      if (begins && parse()) {
        readOne_ = true;
        continue;
      }
      if (collector_.cancelled()) break;
      std::string error = begins && !reader_.error().empty() ? reader_.error() : damagedAt(start);
      if (!sequence_) return error;
      collector_.leaveOut(start.line, error.substr(error.find(": ") + 2));
      goBehindLine(start);
    }
    return {};
  }

  const GeoJsonReader& reader() const { return reader_; }

 private:
  bool parse() {
    return nlohmann::json::sax_parse(WatchedText::begin(text_, progress_), WatchedText::end(text_, progress_),
                                     &reader_, nlohmann::json::input_format_t::json, false);
  }

  std::string damagedAt(const TextProgress& start) const {
    constexpr std::size_t kShown = 12;  // bytes
    return "line " + std::to_string(start.line) + ": the JSON is damaged at " +
           shownText(
               text_.substr(start.bytes, std::min(text_.find('\n', start.bytes) - start.bytes, kShown)));
  }

  // An object that does not end takes following lines with it, which are read again.
  void goBehindLine(const TextProgress& start) {
    const std::size_t end = std::min(text_.find('\n', start.bytes), text_.size());
    progress_ = {end, start.line};
  }

  std::string_view text_;
  bool sequence_, readOne_ = false;
  StationCollector& collector_;
  TextProgress progress_;
  GeoJsonReader reader_;
};

}  // namespace

ImportedStations geoJsonStations(std::string_view text, const std::string& name,
                                 const ImportOptions& options) {
  StationCollector collector(options, "GeoJSON", name);
  GeoJsonTexts texts(text, isSequenceName(name), collector);
  if (std::string error = texts.read(); !error.empty()) return std::move(collector).refuse(std::move(error));
  const GeoJsonReader& reader = texts.reader();
  const std::string& crs = reader.crs();
  if (!crs.empty() && !isPlainDegrees(crs))
    collector.note("the file names the coordinate system " + shownText(crs) +
                   "; its coordinates were read as WGS 84");
  const std::string type = reader.rootType();
  ImportedStations result = std::move(collector).finish();
  if (result.stations.empty() && result.skipped == 0 && !reader.sawFeatures() &&
      result.error.find("cancel") == std::string::npos)
    result.error = type.empty()
                       ? "this is JSON, but no GeoJSON: it has no type"
                       : "this is JSON, but no GeoJSON with features: its type is " + shownText(type);
  return result;
}

}  // namespace zel::host
