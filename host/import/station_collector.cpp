#include "import/station_collector.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "import/column_names.h"

namespace zel::host {
namespace {

constexpr double kFullCircle = 360;        // degrees
constexpr std::size_t kMostShown = 40;     // bytes of the file in a message
constexpr std::size_t kMostOfName = 2000;  // bytes that are looked at to make a name of them
constexpr double kProgressStep = 0.01;

// Not within a character.
std::string_view cutText(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80U) --most;
  return text.substr(0, most);
}

std::string stemOf(const std::string& fileName) {
  const std::size_t slash = fileName.find_last_of('/');
  std::string stem = slash == std::string::npos ? fileName : fileName.substr(slash + 1);
  const std::size_t dot = stem.find_last_of('.');
  if (dot != std::string::npos && dot > 0) stem.resize(dot);
  stem = tidyName(std::string(cutText(stem, kMostShown)));
  return stem.empty() ? "Station" : stem;
}

std::string shownPosition(const FoundStation& station) {
  return shownNumber(station.latitude) + ", " + shownNumber(station.longitude);
}

std::string theyGet(std::size_t count, double antennaM) {
  return (count == 1 ? "; it gets " : "; they get ") + shownNumber(antennaM) + " m";
}

// "100 ft": a number, and in lower case what stands behind it.
struct Measure {
  double number = 0;
  std::string unit;
};

std::optional<Measure> measureOf(std::string_view text) {
  text = withoutBlanks(text);
  const std::size_t letters = std::min(text.find_last_of("0123456789.,") + 1, text.size());
  const auto number = decimalNumber(text.substr(0, letters));
  if (!number) return std::nullopt;
  Measure measure{*number, {}};
  for (const char c : withoutBlanks(text.substr(letters)))
    measure.unit += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return measure;
}

}  // namespace

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n", kNoBreakSpace = "\xC2\xA0";
  for (;;) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    text = text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
    // They come with what was copied from a page.
    if (text.substr(0, 2) == kNoBreakSpace)
      text.remove_prefix(2);
    else if (text.size() > 2 && text.substr(text.size() - 2) == kNoBreakSpace)
      text.remove_suffix(2);
    else
      return text;
  }
}

std::string shownText(std::string_view text) {
  const std::string_view piece = cutText(text, kMostShown);
  std::string shown = "\"";
  for (const char c : piece) shown += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
  return shown + (piece.size() < text.size() ? "...\"" : "\"");
}

std::string shownNames(const std::vector<std::string>& names) {
  constexpr std::size_t kMostNamed = 12;
  std::string list;
  for (std::size_t i = 0; i < std::min(names.size(), kMostNamed); ++i)
    list += (i > 0 ? ", " : "") + shownText(names[i]);
  if (names.size() > kMostNamed) list += " and " + std::to_string(names.size() - kMostNamed) + " more";
  return list;
}

std::string counted(std::size_t count, const std::string& one, const std::string& several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string shownNumber(double value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  return {buffer.data(), end};
}

std::optional<double> decimalNumber(std::string_view text) {
  text = withoutBlanks(text);
  constexpr std::size_t kLongestNumber = 60;  // characters
  if (text.empty() || text.size() > kLongestNumber) return std::nullopt;
  std::array<char, kLongestNumber> digits{};
  std::copy(text.begin(), text.end(), digits.begin());
  const char* begin = digits.data();
  char* end = digits.data() + text.size();
  if (std::count(begin, static_cast<const char*>(end), ',') == 1 && text.find('.') == std::string_view::npos)
    std::replace(digits.data(), end, ',', '.');
  if (*begin == '+') ++begin;
  // The words for infinite and for no number begin with letters.
  const char first = begin != end && *begin == '-' ? begin[1] : *begin;
  if (begin == end || !((first >= '0' && first <= '9') || first == '.')) return std::nullopt;
  double value = 0;
  const auto [stop, error] = std::from_chars(begin, static_cast<const char*>(end), value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::optional<double> lengthText(std::string_view text, double unit) {
  const auto measure = measureOf(text);
  if (!measure) return std::nullopt;
  const std::string& name = measure->unit;
  if (name == "ft" || name == "feet" || name == "foot" || name == "'")
    unit = kMetresPerFoot;
  else if (name == "m" || name == "metres" || name == "meters")
    unit = 1;
  else if (!name.empty())
    return std::nullopt;
  return measure->number * unit;
}

std::optional<double> frequencyText(std::string_view text, double unit) {
  if (withoutBlanks(text).empty()) return std::nullopt;
  const auto measure = measureOf(text);
  const std::string name = measure ? measure->unit : "none";
  if (name == "ghz")
    unit = 1e3;
  else if (name == "mhz")
    unit = 1;
  else if (name == "khz")
    unit = 1e-3;
  else if (!name.empty())
    return std::numeric_limits<double>::quiet_NaN();
  return measure->number * unit;
}

StationCollector::StationCollector(const ImportOptions& options, std::string kind,
                                   const std::string& fileName)
    : options_(options), stem_(stemOf(fileName)) {
  result_.kind = std::move(kind);
}

void StationCollector::leaveOut(std::size_t line, std::string why) {
  ++result_.skipped;
  if (result_.problems.size() < kMostProblems) result_.problems.push_back({line, std::move(why)});
}

void StationCollector::leaveOutBeyond(std::size_t line) {
  if (!toldBeyond_)
    leaveOut(line, "a plan has " + std::to_string(kMostStations) +
                       " stations at most; this one and those behind it are left out");
  else
    ++result_.skipped;
  toldBeyond_ = true;
}

bool StationCollector::advance(double fraction) {
  if (options_.cancelled != nullptr && options_.cancelled->load(std::memory_order_relaxed)) cancelled_ = true;
  if (options_.progress && fraction >= toldFraction_ + kProgressStep) {
    toldFraction_ = std::min(fraction, 1.0);
    options_.progress(toldFraction_);
  }
  return !cancelled_;
}

bool StationCollector::checkPosition(FoundStation& station, std::size_t line) {
  if (!std::isfinite(station.latitude) || !std::isfinite(station.longitude)) {
    leaveOut(line, "its position is no number");
    return false;
  }
  const double north = std::abs(station.latitude), east = std::abs(station.longitude);
  if (north > kFullCircle || east > kFullCircle) {
    ++projected_;
    leaveOut(line,
             shownPosition(station) + " are no degrees; they look like metres of a map grid (projected)");
    return false;
  }
  if (north > 90) {
    if (east <= 90) ++exchanged_;
    leaveOut(line, "latitude " + shownNumber(station.latitude) + " is not from -90 to 90");
    return false;
  }
  if (station.longitude > kFullCircle / 2) station.longitude -= kFullCircle;
  if (station.longitude < -kFullCircle / 2) station.longitude += kFullCircle;
  return true;
}

double StationCollector::antennaOf(const FoundStation& station) {
  const double fallback = std::clamp(options_.antennaM, kLowestAntenna, kHighestAntenna);
  if (!station.antennaM) {
    ++missingHeights_;
    return fallback;
  }
  if (*station.antennaM >= kLowestAntenna && *station.antennaM <= kHighestAntenna) return *station.antennaM;
  ++badHeights_;
  return fallback;
}

std::optional<std::size_t> StationCollector::place(const FoundStation& found, std::size_t line) {
  if (full()) {
    leaveOutBeyond(line);
    return std::nullopt;
  }
  Station station{tidyName(std::string(cutText(found.name, kMostOfName))),
                  {found.latitude, found.longitude},
                  antennaOf(found)};
  const bool named = !station.name.empty();
  if (!named) {
    ++unnamed_;
    station.name = stem_ + " " + std::to_string(result_.stations.size() + 1);
  }
  if (std::string problem = stationProblem(station); !problem.empty()) {
    leaveOut(line, std::move(problem));
    return std::nullopt;
  }
  result_.stations.push_back(std::move(station));
  ownNames_.push_back(named && found.ownName);
  ownHeights_.push_back(found.antennaM.has_value());
  return result_.stations.size() - 1;
}

void StationCollector::addStation(const FoundStation& station, std::size_t line) {
  FoundStation checked = station;
  if (checkPosition(checked, line)) place(checked, line);
}

void StationCollector::addLine(const FoundStation& from, const FoundStation& to, std::size_t line,
                               std::optional<double> frequencyMhz) {
  Line checked{from, to, line, frequencyMhz};
  if (!checkPosition(checked.from, line) || !checkPosition(checked.to, line)) return;
  if (checked.from.latitude == checked.to.latitude && checked.from.longitude == checked.to.longitude) {
    leaveOut(line, "the line begins and ends at the same place");
    return;
  }
  if (lines_.size() >= kMostLinks) {
    leaveOut(line, "a plan has " + std::to_string(kMostLinks) + " links at most");
    return;
  }
  lines_.push_back(std::move(checked));
}

void StationCollector::addRoute(const std::vector<FoundStation>& points, std::size_t line) {
  if (points.size() == 1) addStation(points.front(), line);
  for (std::size_t i = 1; i < points.size(); ++i) addLine(points[i - 1], points[i], line);
}

bool StationCollector::sameStation(std::size_t index, const FoundStation& end) const {
  const Station& station = result_.stations[index];
  if (end.ownName && ownNames_[index] && !end.name.empty() &&
      tidyName(std::string(cutText(end.name, kMostOfName))) != station.name)
    return false;
  return !end.antennaM || !ownHeights_[index] || *end.antennaM == station.antennaM;
}

std::optional<std::size_t> StationCollector::placeEnd(const FoundStation& end, std::size_t line) {
  const Place place{end.latitude, end.longitude};
  const auto [first, last] = places_.equal_range(place);
  for (auto it = first; it != last; ++it)
    if (sameStation(it->second, end)) return it->second;
  const auto index = this->place(end, line);
  if (index) places_.emplace(place, *index);
  return index;
}

// Behind all stations: a file may show its lines before them.
void StationCollector::joinLines() {
  if (lines_.empty()) return;
  for (std::size_t i = 0; i < result_.stations.size(); ++i) {
    const Position& position = result_.stations[i].position;
    places_.emplace(Place{position.latitude, position.longitude}, i);
  }
  for (const Line& line : lines_) {
    const auto from = placeEnd(line.from, line.line);
    const auto to = from ? placeEnd(line.to, line.line) : std::nullopt;
    if (from && to) link(*from, *to, line.line, line.frequencyMhz);
  }
}

void StationCollector::link(std::size_t from, std::size_t to, std::size_t line,
                            std::optional<double> frequencyMhz) {
  if (!linked_.emplace(from, to).second) {
    leaveOut(line, "the same link stands in the file before");
    return;
  }
  if (frequencyMhz && !(*frequencyMhz >= kLowestFrequency && *frequencyMhz <= kHighestFrequency)) {
    ++badFrequencies_;
    frequencyMhz.reset();
  }
  result_.links.emplace_back(from, to);
  result_.frequenciesMhz.push_back(frequencyMhz);
}

void StationCollector::tellCounts() {
  const double fallback = std::clamp(options_.antennaM, kLowestAntenna, kHighestAntenna);
  const auto stations = [](std::size_t count) { return counted(count, "station", "stations"); };
  if (unnamed_ > 0)
    note(stations(unnamed_) + (unnamed_ == 1 ? " has" : " have") + " no name; named \"" + stem_ +
         " ...\" by number");
  if (missingHeights_ > 0)
    note(stations(missingHeights_) + (missingHeights_ == 1 ? " has" : " have") + " no antenna height" +
         theyGet(missingHeights_, fallback));
  if (badHeights_ > 0)
    note(stations(badHeights_) + (badHeights_ == 1 ? " has" : " have") +
         " an antenna height that is not from " + shownNumber(kLowestAntenna) + " to " +
         shownNumber(kHighestAntenna) + " m" + theyGet(badHeights_, fallback));
  if (heightsOverGround_ > 0)
    note(counted(heightsOverGround_, "altitude", "altitudes") +
         " relative to the ground taken as antenna height");
  if (seaLevelHeights_ > 0)
    note(counted(seaLevelHeights_, "altitude is", "altitudes are") +
         " above sea level and not taken: the terrain gives the ground's height");
  if (badFrequencies_ > 0)
    note(counted(badFrequencies_, "frequency", "frequencies") + " not from " + shownNumber(kLowestFrequency) +
         " to " + shownNumber(kHighestFrequency) + " MHz not taken");
  if (seemExchanged())
    note(counted(exchanged_, "row has", "rows have") +
         " a latitude beyond 90: latitude and longitude may be exchanged in the file");
}

// A single wrong latitude is no sign of it.
bool StationCollector::seemExchanged() const {
  return exchanged_ > 0 && 2 * exchanged_ > result_.stations.size() + result_.skipped;
}

std::string StationCollector::nothingTaken() const {
  if (result_.skipped == 0) return "there are no stations in it";
  const ImportProblem& first = result_.problems.front();
  const std::string where = first.line > 0 ? "line " + std::to_string(first.line) + ": " : "";
  if (projected_ == result_.skipped)
    return "its positions are in metres of a map grid (projected); save it in degrees (WGS 84, EPSG:4326) "
           "and import that; " +
           where + first.text;
  if (seemExchanged())
    return "latitude and longitude seem to be exchanged in it; exchange the columns' names; " + where +
           first.text;
  if (result_.skipped == 1) return where + first.text;
  return "none of the " + std::to_string(result_.skipped) + " entries can be taken; " + where + first.text;
}

ImportedStations StationCollector::finish() && {
  if (cancelled_) return std::move(*this).refuse("the import was cancelled");
  joinLines();
  tellCounts();
  // Lines are joined behind the stations.
  std::stable_sort(result_.problems.begin(), result_.problems.end(),
                   [](const ImportProblem& a, const ImportProblem& b) { return a.line < b.line; });
  if (result_.stations.empty()) result_.error = nothingTaken();
  advance(1);
  return std::move(result_);
}

ImportedStations StationCollector::refuse(std::string error) && {
  ImportedStations refused;
  refused.kind = std::move(result_.kind);
  refused.error = std::move(error);
  return refused;
}

}  // namespace zel::host
