#include "planning/plan_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>
#include <vector>

#include "planning/plan_json.h"
#include "planning/short_number.h"
#include "planning/utf8_text.h"
#include "planning/watched_text.h"
#include "planning/whole_file.h"

namespace zel::host {
namespace {

constexpr const char* kFormat = "terrain-profiler plan";
constexpr std::uint64_t kVersion = 1;
constexpr std::size_t kDeepest = 16;  // objects and lists in each other
// Above, stations are numbered anew in reading, so that numbers never run out.
constexpr StationId kLargestKeptId = 1'000'000'000;

const char* datumText(PlanDatum datum) { return datum == PlanDatum::kNad27 ? "NAD-27" : "NAD-83"; }

// ---- Writing

void appendQuoted(std::string& out, const std::string& text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  out += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20 || byte == 0x7F) {
      out += "\\u00";
      out += kHex[byte >> 4U];
      out += kHex[byte & 15U];
    } else {
      out += c;
    }
  }
  out += '"';
}

void appendStation(std::string& out, StationId id, const Station& station) {
  out += "{\"id\": ";
  out += std::to_string(id);
  out += ", \"name\": ";
  appendQuoted(out, station.name);
  out += ", \"latitude\": ";
  out += shortNumber(station.position.latitude);
  out += ", \"longitude\": ";
  out += shortNumber(station.position.longitude);
  out += ", \"antenna_m\": ";
  out += shortNumber(station.antennaM);
  out += '}';
}

// Without its number: nothing refers to a link.
void appendLink(std::string& out, LinkId, const Link& link) {
  out += "{\"from\": ";
  out += std::to_string(link.from);
  out += ", \"to\": ";
  out += std::to_string(link.to);
  if (link.frequencyMhz) {
    out += ", \"frequency_mhz\": ";
    out += shortNumber(*link.frequencyMhz);
  }
  out += '}';
}

bool isView(const PlanView& view) {
  return positionProblem(view.centre).empty() && std::isfinite(view.metresPerPixel) &&
         view.metresPerPixel > 0;
}

std::string viewJson(const PlanView& view) {
  return "{\"latitude\": " + shortNumber(view.centre.latitude) +
         ", \"longitude\": " + shortNumber(view.centre.longitude) +
         ", \"metres_per_pixel\": " + shortNumber(view.metresPerPixel) + "}";
}

// One element a line, so that comparing two versions of a file shows what changed.
template <typename Map, typename AppendElement>
void appendList(std::string& out, const Map& elements, AppendElement appendElement) {
  out += '[';
  const char* separator = "\n    ";
  for (const auto& [id, element] : elements) {
    out += separator;
    appendElement(out, id, element);
    separator = ",\n    ";
  }
  out += elements.empty() ? "]" : "\n  ]";
}

// A path is any bytes; JSON is text.
std::string escapedPath(const std::string& path) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string text;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > 0x20 && byte < 0x7F && c != '%') {
      text += c;
      continue;
    }
    text += '%';
    text += kHex[byte >> 4U];
    text += kHex[byte & 15U];
  }
  return text;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string unescapedPath(const std::string& text) {
  std::string path;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair =
        text[i] == '%' && i + 2 < text.size() && hexDigit(text[i + 1]) >= 0 && hexDigit(text[i + 2]) >= 0;
    if (!pair) {
      path += text[i];
      continue;
    }
    path += static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
    i += 2;
  }
  return path;
}

void appendOrigin(std::string& out, const PlanOrigin& origin) {
  out += "{\"original\": ";
  appendQuoted(out, escapedPath(origin.path));
  out += ", \"saved_at\": " + std::to_string(origin.savedAt) + ", \"original_state\": ";
  appendQuoted(out, origin.state);
  out += '}';
}

// ---- Reading

// "line 12, column 7: ". Columns are characters.
std::string placeText(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  return "line " + std::to_string(line) + ", column " +
         std::to_string(utf8Length(before.substr(lineStart)) + 1) + ": ";
}

// A text of the file in a message.
std::string shown(std::string_view text) {
  constexpr std::size_t kMostCharacters = 40;
  const std::string_view start = utf8Start(text, kMostCharacters);
  return "\"" + tidyName(std::string(start)) + (start.size() < text.size() ? "..." : "") + "\"";
}

struct JsonValue {
  enum class Kind { kNull, kTruth, kNumber, kText, kList, kObject };
  Kind kind = Kind::kNull;
  double number = 0;
  std::uint64_t whole = 0;  // set with isWhole
  bool isWhole = false;     // not negative, and written without a fraction
  const std::string* text = nullptr;
};

const char* kindName(JsonValue::Kind kind) {
  switch (kind) {
    case JsonValue::Kind::kNull:
      return "null";
    case JsonValue::Kind::kTruth:
      return "true or false";
    case JsonValue::Kind::kNumber:
      return "a number";
    case JsonValue::Kind::kText:
      return "a text";
    case JsonValue::Kind::kList:
      return "a list";
    case JsonValue::Kind::kObject:
      break;
  }
  return "an object";
}

// Objects and lists whose members mean something.
enum class Place { kRoot, kStations, kStation, kLinks, kLink, kView, kRecovery, kElsewhere };

constexpr std::array<const char*, 7> kRootMembers{"format", "version", "datum",   "stations",
                                                  "links",  "view",    "recovery"};
constexpr std::array<const char*, 5> kStationMembers{"id", "name", "latitude", "longitude", "antenna_m"};
constexpr std::array<const char*, 3> kLinkMembers{"from", "to", "frequency_mhz"};
constexpr std::array<const char*, 3> kViewMembers{"latitude", "longitude", "metres_per_pixel"};
constexpr std::array<const char*, 3> kRecoveryMembers{"original", "saved_at", "original_state"};

// Takes a plan out of the parser's events. The first thing that is wrong with the plan is kept, and said at
// the end unless the text turns out to be no plan, or a later version's.
class PlanReader : public nlohmann::json_sax<nlohmann::json> {
 public:
  PlanReader(std::string_view text, const TextProgress& read) : text_(text), read_(read) {}

  bool null() override { return value({}); }
  bool boolean(bool) override { return value({JsonValue::Kind::kTruth, 0, 0, false, nullptr}); }
  bool number_integer(number_integer_t number) override {
    return value({JsonValue::Kind::kNumber, static_cast<double>(number), 0, number == 0, nullptr});
  }
  bool number_unsigned(number_unsigned_t number) override {
    return value({JsonValue::Kind::kNumber, static_cast<double>(number), number, true, nullptr});
  }
  bool number_float(number_float_t number, const string_t&) override {
    return value({JsonValue::Kind::kNumber, number, 0, false, nullptr});
  }
  bool string(string_t& text) override { return value({JsonValue::Kind::kText, 0, 0, false, &text}); }
  bool binary(binary_t&) override { return false; }  // JSON as text has none
  bool start_object(std::size_t) override { return enter(JsonValue::Kind::kObject); }
  bool start_array(std::size_t) override { return enter(JsonValue::Kind::kList); }
  bool key(string_t& name) override;
  bool end_object() override { return leave(); }
  bool end_array() override { return leave(); }
  bool parse_error(std::size_t, const std::string& token, const nlohmann::json::exception& failure) override;

  // After the parser has come to its end, or to an error.
  PlanFile finish(std::optional<PlanOrigin>& origin);

 private:
  struct Frame {
    Place place = Place::kElsewhere;
    std::size_t begin = 0;  // where in the text
    unsigned seen = 0;      // members that have been there, a bit each
  };

  // Where the next thing that the parser tells of begins.
  std::size_t nextBegin() const {
    return std::min(text_.find_first_not_of(" \t\r\n,:", told_), text_.size());
  }
  // To be called once for each. Behind a number the parser has read one character more, which separates.
  void advance() {
    begin_ = nextBegin();
    told_ = read_.bytes;
  }
  void complain(std::size_t offset, const std::string& what);
  bool stop(std::size_t offset, const std::string& what);

  bool enter(JsonValue::Kind kind);
  Place placeOf(JsonValue::Kind kind) const;
  bool leave();
  bool value(const JsonValue& value);
  void take(const JsonValue& value);
  template <std::size_t n>
  bool once(const std::array<const char*, n>& members);

  void rootMember(const JsonValue& value);
  void stationMember(const JsonValue& value);
  void linkMember(const JsonValue& value);
  void viewMember(const JsonValue& value);
  void recoveryMember(const JsonValue& value);
  void takeNumber(const JsonValue& value, double& number);
  void takeId(const JsonValue& value, StationId& id);
  void takeText(const JsonValue& value, std::string& text);
  void wrongKind(const JsonValue& value, const char* wanted);

  std::string inElement(Place place) const;
  bool lacks(const Frame& frame, const char* const* members, unsigned needed, const std::string& where);
  void takeStation(const Frame& frame);
  void takeLink(const Frame& frame);
  void takeView(const Frame& frame);
  void checkLinkEnds();
  void checkFormat() const;

  std::string_view text_;
  const TextProgress& read_;
  std::size_t told_ = 0;   // as far as the parser has told what it read
  std::size_t begin_ = 0;  // of what it told last
  std::vector<Frame> frames_;
  std::string key_;
  std::string fatal_;      // why reading stopped
  std::string complaint_;  // the first

  std::optional<std::string> format_;
  std::optional<std::uint64_t> version_;
  bool geoJson_ = false;
  bool rootIsObject_ = false;
  PlanFile file_;
  std::optional<PlanOrigin> origin_;
  Station station_;
  StationId stationId_ = 0;
  std::size_t stationsRead_ = 0, linksRead_ = 0;
  Link link_;
  std::vector<std::size_t> linkBegins_;  // by link, from the first
  PlanView view_;
};

void PlanReader::complain(std::size_t offset, const std::string& what) {
  if (complaint_.empty()) complaint_ = placeText(text_, offset) + what;
}

bool PlanReader::stop(std::size_t offset, const std::string& what) {
  if (fatal_.empty()) fatal_ = placeText(text_, offset) + what;
  return false;
}

// "station 3: ": the number in the list, as a reader of the file counts.
std::string PlanReader::inElement(Place place) const {
  if (place == Place::kStation) return "station " + std::to_string(stationsRead_ + 1) + ": ";
  if (place == Place::kLink) return "link " + std::to_string(linksRead_ + 1) + ": ";
  if (place == Place::kView) return "view: ";
  return {};
}

Place PlanReader::placeOf(JsonValue::Kind kind) const {
  if (frames_.empty()) return kind == JsonValue::Kind::kObject ? Place::kRoot : Place::kElsewhere;
  const Place parent = frames_.back().place;
  if (kind == JsonValue::Kind::kList) {
    if (parent == Place::kRoot && key_ == "stations") return Place::kStations;
    if (parent == Place::kRoot && key_ == "links") return Place::kLinks;
    return Place::kElsewhere;
  }
  if (parent == Place::kStations) return Place::kStation;
  if (parent == Place::kLinks) return Place::kLink;
  if (parent == Place::kRoot && key_ == "view") return Place::kView;
  if (parent == Place::kRoot && key_ == "recovery") return Place::kRecovery;
  return Place::kElsewhere;
}

bool PlanReader::enter(JsonValue::Kind kind) {
  advance();
  if (frames_.size() == kDeepest)
    return stop(begin_, "objects and lists lie deeper than " + std::to_string(kDeepest) + " in each other");
  const Place place = placeOf(kind);
  // What is not to be an object or a list says so as a member; lists and objects count as seen, too.
  if (place == Place::kElsewhere || (!frames_.empty() && frames_.back().place == Place::kRoot)) {
    take({kind, 0, 0, false, nullptr});
  }
  frames_.push_back({place, begin_, 0});
  if (place == Place::kRoot) rootIsObject_ = true;
  if (place == Place::kStation) {
    station_ = Station{};
    stationId_ = 0;
  }
  if (place == Place::kLink) link_ = Link{};
  if (place == Place::kView) view_ = PlanView{};
  if (place == Place::kRecovery) origin_.emplace();
  return true;
}

bool PlanReader::leave() {
  advance();
  const Frame frame = frames_.back();
  frames_.pop_back();
  if (frame.place == Place::kStation) takeStation(frame);
  if (frame.place == Place::kLink) takeLink(frame);
  if (frame.place == Place::kView) takeView(frame);
  return true;
}

bool PlanReader::key(string_t& name) {
  advance();
  key_ = std::move(name);
  return true;
}

// Marks the member as seen; false when it has been, or is none of these.
template <std::size_t n>
bool PlanReader::once(const std::array<const char*, n>& members) {
  const auto found = std::find(members.begin(), members.end(), key_);
  if (found == members.end()) return false;
  Frame& frame = frames_.back();
  const unsigned bit = 1U << static_cast<unsigned>(found - members.begin());
  const bool first = (frame.seen & bit) == 0;
  frame.seen |= bit;
  if (!first) complain(begin_, inElement(frame.place) + "\"" + key_ + "\" stands there twice");
  return first;
}

bool PlanReader::value(const JsonValue& value) {
  advance();
  take(value);
  return true;
}

void PlanReader::take(const JsonValue& value) {
  if (frames_.empty()) return;
  switch (frames_.back().place) {
    case Place::kRoot:
      rootMember(value);
      break;
    case Place::kStations:
    case Place::kLinks: {
      const bool stations = frames_.back().place == Place::kStations;
      complain(begin_, inElement(stations ? Place::kStation : Place::kLink) + kindName(value.kind) +
                           " where an object is needed");
      break;
    }
    case Place::kStation:
      if (once(kStationMembers)) stationMember(value);
      break;
    case Place::kLink:
      if (once(kLinkMembers)) linkMember(value);
      break;
    case Place::kView:
      if (once(kViewMembers)) viewMember(value);
      break;
    case Place::kRecovery:
      if (once(kRecoveryMembers)) recoveryMember(value);
      break;
    case Place::kElsewhere:
      break;
  }
}

void PlanReader::rootMember(const JsonValue& value) {
  using Kind = JsonValue::Kind;
  if (key_ == "type" && value.kind == Kind::kText) {
    geoJson_ =
        *value.text == "FeatureCollection" || *value.text == "Feature" || *value.text == "GeometryCollection";
  }
  if (!once(kRootMembers)) return;
  if (key_ == "format") {
    if (value.kind == Kind::kText) format_ = *value.text;
  } else if (key_ == "version") {
    if (value.isWhole && value.whole > 0)
      version_ = value.whole;
    else
      complain(begin_, "\"version\" is not a whole number from 1");
  } else if (key_ == "datum") {
    if (value.kind != Kind::kText)
      wrongKind(value, "a text");
    else if (*value.text == "NAD-27")
      file_.plan.datum = PlanDatum::kNad27;
    else if (*value.text != "NAD-83")
      complain(begin_, "\"datum\" is " + shown(*value.text) + ", neither \"NAD-83\" nor \"NAD-27\"");
  } else if (key_ == "stations" || key_ == "links") {
    if (value.kind != Kind::kList) wrongKind(value, "a list");
  } else if (value.kind != Kind::kObject) {
    wrongKind(value, "an object");
  }
}

void PlanReader::wrongKind(const JsonValue& value, const char* wanted) {
  complain(begin_, inElement(frames_.back().place) + "\"" + key_ + "\" is " + kindName(value.kind) +
                       ", not " + wanted);
}

void PlanReader::takeNumber(const JsonValue& value, double& number) {
  if (value.kind == JsonValue::Kind::kNumber)
    number = value.number;
  else
    wrongKind(value, "a number");
}

void PlanReader::takeText(const JsonValue& value, std::string& text) {
  if (value.kind == JsonValue::Kind::kText)
    text = *value.text;
  else
    wrongKind(value, "a text");
}

void PlanReader::takeId(const JsonValue& value, StationId& id) {
  constexpr std::uint64_t kMost = std::numeric_limits<StationId>::max();
  if (value.kind != JsonValue::Kind::kNumber) return wrongKind(value, "a number");
  if (!value.isWhole || value.whole == 0 || value.whole > kMost) {
    return complain(begin_, inElement(frames_.back().place) + "\"" + key_ +
                                "\" is not a whole number from 1 to " + std::to_string(kMost));
  }
  id = static_cast<StationId>(value.whole);
}

void PlanReader::stationMember(const JsonValue& value) {
  if (key_ == "id") return takeId(value, stationId_);
  if (key_ == "name") return takeText(value, station_.name);
  if (key_ == "latitude") return takeNumber(value, station_.position.latitude);
  if (key_ == "longitude") return takeNumber(value, station_.position.longitude);
  takeNumber(value, station_.antennaM);
}

void PlanReader::linkMember(const JsonValue& value) {
  if (key_ == "from") return takeId(value, link_.from);
  if (key_ == "to") return takeId(value, link_.to);
  takeNumber(value, link_.frequencyMhz.emplace());
}

void PlanReader::viewMember(const JsonValue& value) {
  if (key_ == "latitude") return takeNumber(value, view_.centre.latitude);
  if (key_ == "longitude") return takeNumber(value, view_.centre.longitude);
  takeNumber(value, view_.metresPerPixel);
}

void PlanReader::recoveryMember(const JsonValue& value) {
  if (key_ == "original") {
    takeText(value, origin_->path);
    origin_->path = unescapedPath(origin_->path);
  } else if (key_ == "original_state") {
    takeText(value, origin_->state);
  } else {
    constexpr double kMost = 1e15;  // some million years
    double seconds = 0;
    takeNumber(value, seconds);
    if (std::abs(seconds) <= kMost) origin_->savedAt = static_cast<std::int64_t>(seconds);
  }
}

// Complains about the first needed member that is not there.
bool PlanReader::lacks(const Frame& frame, const char* const* members, unsigned needed,
                       const std::string& where) {
  const unsigned missing = needed & ~frame.seen;
  if (missing == 0) return false;
  unsigned i = 0;
  while ((missing >> i & 1U) == 0) ++i;
  complain(frame.begin, where + "\"" + members[i] + "\" is missing");
  return true;
}

void PlanReader::takeStation(const Frame& frame) {
  constexpr unsigned kNeeded = 0b1111;  // all but the antenna
  const std::string where = inElement(Place::kStation);
  ++stationsRead_;
  if (!complaint_.empty() || lacks(frame, kStationMembers.data(), kNeeded, where)) return;
  if (stationsRead_ > kMostStations)
    return complain(frame.begin, "more than " + std::to_string(kMostStations) + " stations");
  if (const std::string problem = stationProblem(station_); !problem.empty())
    return complain(frame.begin, where + problem);
  auto& stations = file_.plan.stations;
  const std::size_t before = stations.size();
  stations.emplace_hint(stations.end(), stationId_, std::move(station_));
  if (stations.size() == before)
    complain(frame.begin, where + "another station has the id " + std::to_string(stationId_));
}

void PlanReader::takeLink(const Frame& frame) {
  constexpr unsigned kNeeded = 0b11;  // all but the frequency
  const std::string where = inElement(Place::kLink);
  ++linksRead_;
  if (!complaint_.empty() || lacks(frame, kLinkMembers.data(), kNeeded, where)) return;
  if (linksRead_ > kMostLinks)
    return complain(frame.begin, "more than " + std::to_string(kMostLinks) + " links");
  if (const std::string problem = linkProblem(link_); !problem.empty())
    return complain(frame.begin, where + problem);
  auto& links = file_.plan.links;
  links.emplace_hint(links.end(), static_cast<LinkId>(linksRead_), link_);
  linkBegins_.push_back(frame.begin);
}

void PlanReader::takeView(const Frame& frame) {
  constexpr unsigned kNeeded = 0b111;
  const std::string where = inElement(Place::kView);
  if (lacks(frame, kViewMembers.data(), kNeeded, where)) return;
  std::string problem = positionProblem(view_.centre);
  if (problem.empty() && !isView(view_)) problem = "\"metres_per_pixel\" is not above 0";
  if (!problem.empty()) return complain(frame.begin, where + problem);
  file_.view = view_;
}

// Stations may stand behind the links in the file.
void PlanReader::checkLinkEnds() {
  if (!complaint_.empty()) return;
  std::size_t number = 0;
  for (const auto& [id, link] : file_.plan.links) {
    for (const StationId end : {link.from, link.to}) {
      if (file_.plan.stations.count(end) != 0) continue;
      return complain(linkBegins_[number], "link " + std::to_string(number + 1) +
                                               ": there is no station with the id " + std::to_string(end));
    }
    ++number;
  }
}

bool PlanReader::parse_error(std::size_t, const std::string& token,
                             const nlohmann::json::exception& failure) {
  constexpr int kTooLarge = 406;
  if (failure.id == kTooLarge) return stop(nextBegin(), "the number " + shown(token) + " is too large");
  // "... syntax error while parsing value - invalid literal; last read: 'x'; expected ..."
  const std::string_view what = failure.what();
  const std::size_t dash = what.find(" - ");
  std::string_view reason = dash == std::string_view::npos ? "no JSON" : what.substr(dash + 3);
  reason = reason.substr(0, reason.find("; "));
  if (reason == "unexpected end of input") return stop(read_.bytes, "the file ends in the middle");
  return stop(read_.bytes == 0 ? 0 : read_.bytes - 1, "this is no JSON here: " + std::string(reason));
}

void PlanReader::checkFormat() const {
  if (!rootIsObject_ || format_ != std::optional<std::string>(kFormat)) {
    throw PlanFileError(
        geoJson_ ? "this is GeoJSON, not a plan; its points can be imported as stations"
                 : "this is no plan of this program: the text has no member \"format\" that says \"" +
                       std::string(kFormat) + "\"");
  }
  if (version_ && *version_ > kVersion) {
    throw PlanFileError("this plan is of a later version of the program (its format is " +
                        std::to_string(*version_) + ", this program reads " + std::to_string(kVersion) +
                        "); open it with that version, or install it");
  }
}

// Stations numbered from 1 in their order.
Plan numberedAnew(const Plan& plan) {
  Plan anew;
  anew.datum = plan.datum;
  std::map<StationId, StationId> ids;
  for (const auto& [id, station] : plan.stations) {
    const auto number = static_cast<StationId>(ids.size() + 1);
    ids.emplace(id, number);
    anew.stations.emplace_hint(anew.stations.end(), number, station);
  }
  for (const auto& [id, link] : plan.links)
    anew.links.emplace_hint(anew.links.end(), id,
                            Link{ids.at(link.from), ids.at(link.to), link.frequencyMhz});
  return anew;
}

PlanFile PlanReader::finish(std::optional<PlanOrigin>& origin) {
  if (!fatal_.empty()) throw PlanFileError(fatal_);
  checkFormat();
  if (!version_) complain(0, "\"version\" is missing");
  checkLinkEnds();
  if (!complaint_.empty()) throw PlanFileError(complaint_);
  const auto& stations = file_.plan.stations;
  if (!stations.empty() && stations.rbegin()->first > kLargestKeptId) file_.plan = numberedAnew(file_.plan);
  origin = std::move(origin_);
  return std::move(file_);
}

std::string_view withoutMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.substr(0, kMark.size()) == kMark) text.remove_prefix(kMark.size());
  return text;
}

// Two bytes a character show in a mark at the start, or in the zero byte of the opening brace.
bool isUtf16(std::string_view text) {
  const std::string_view start = text.substr(0, 2);
  return start == "\xFF\xFE" || start == "\xFE\xFF" ||
         (start.size() == 2 && (start[0] == '\0') != (start[1] == '\0'));
}

void checkEncoding(std::string_view text) {
  if (isUtf16(text)) throw PlanFileError("the text is UTF-16; save it as UTF-8");
  const auto bad = firstBadUtf8(text);
  if (!bad) return;
  throw PlanFileError(placeText(text, *bad) +
                      "this is no UTF-8 (but perhaps Latin-1, or no text at all); save the file as UTF-8");
}

}  // namespace

std::string planText(const PlanFile& file, const std::optional<PlanOrigin>& origin) {
  if (const std::string problem = planProblem(file.plan); !problem.empty()) throw PlanFileError(problem);
  std::string text = "{\n  \"format\": \"" + std::string(kFormat) +
                     "\",\n  \"version\": " + std::to_string(kVersion) + ",\n  \"datum\": \"" +
                     datumText(file.plan.datum) + "\"";
  if (origin) {
    text += ",\n  \"recovery\": ";
    appendOrigin(text, *origin);
  }
  text += ",\n  \"stations\": ";
  appendList(text, file.plan.stations, appendStation);
  text += ",\n  \"links\": ";
  appendList(text, file.plan.links, appendLink);
  // What the map showed is no work: a view that cannot be is left out.
  if (file.view && isView(*file.view)) text += ",\n  \"view\": " + viewJson(*file.view);
  return text + "\n}\n";
}

PlanFile readPlanText(const std::string& whole, std::optional<PlanOrigin>& origin) {
  if (whole.size() > kLargestPlanFile)
    throw PlanFileError("the text is larger than " + std::to_string(kLargestPlanFile >> 20U) + " MiB");
  const std::string_view text = withoutMark(whole);
  checkEncoding(text);
  if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) throw PlanFileError("the file is empty");
  TextProgress read;
  PlanReader reader(text, read);
  nlohmann::json::sax_parse(WatchedText::begin(text, read), WatchedText::end(text, read), &reader);
  return reader.finish(origin);
}

std::string planText(const PlanFile& file) { return planText(file, std::nullopt); }

PlanFile readPlanText(const std::string& text) {
  std::optional<PlanOrigin> origin;
  return readPlanText(text, origin);
}

PlanFile readPlanFile(const std::string& path) {
  const std::string text = readWholeFile(path, kLargestPlanFile);
  try {
    return readPlanText(text);
  } catch (const PlanFileError& error) {
    throw PlanFileError(path + ": " + error.what());
  }
}

void writePlanFile(const std::string& path, const PlanFile& file) { replaceWholeFile(path, planText(file)); }

}  // namespace zel::host
