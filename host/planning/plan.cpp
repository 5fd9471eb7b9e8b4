#include "planning/plan.h"

#include <cmath>

#include "planning/short_number.h"
#include "planning/utf8_text.h"

namespace zel::host {
namespace {

// Line breaks and control characters of Unicode.
bool breaksTheLine(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x2028 || code == 0x2029;
}

std::string outside(const char* what, double value, double low, double high, const std::string& unit = {}) {
  if (value >= low && value <= high) return {};
  if (std::isnan(value)) return std::string(what) + " is not a number";
  return std::string(what) + " " + shortNumber(value) + unit + " is not from " + shortNumber(low) + " to " +
         shortNumber(high) + unit;
}

std::string nameProblem(const std::string& name) {
  if (firstBadUtf8(name)) return "the name is not UTF-8";
  bool blank = true;
  std::size_t characters = 0;
  for (std::size_t at = 0; at < name.size(); ++characters) {
    const Utf8Character character = utf8CharacterAt(name, at);
    if (breaksTheLine(character.code)) return "the name has a line break or another control character in it";
    blank = blank && character.code == ' ';
    at += character.bytes;
  }
  if (blank) return "the name is empty";
  if (characters <= kLongestName) return {};
  return "the name has " + std::to_string(characters) + " characters; at most " +
         std::to_string(kLongestName) + " are possible";
}

std::string linkEndProblem(const Plan& plan, StationId id) {
  return plan.stations.count(id) != 0 ? std::string() : "there is no station " + std::to_string(id);
}

std::string trimmedBlanks(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string positionProblem(const Position& position) {
  if (std::string problem = outside("latitude", position.latitude, -90, 90); !problem.empty()) return problem;
  return outside("longitude", position.longitude, -180, 180);
}

std::string stationProblem(const Station& station) {
  if (std::string problem = nameProblem(station.name); !problem.empty()) return problem;
  if (std::string problem = positionProblem(station.position); !problem.empty()) return problem;
  return outside("antenna height", station.antennaM, kLowestAntenna, kHighestAntenna, " m");
}

std::string linkProblem(const Link& link) {
  if (link.from == link.to) return "the link ends at the station where it starts";
  if (!link.frequencyMhz) return {};
  return outside("frequency", *link.frequencyMhz, kLowestFrequency, kHighestFrequency, " MHz");
}

std::string planProblem(const Plan& plan) {
  if (plan.stations.size() > kMostStations)
    return "a plan has at most " + std::to_string(kMostStations) + " stations";
  if (plan.links.size() > kMostLinks) return "a plan has at most " + std::to_string(kMostLinks) + " links";
  for (const auto& [id, station] : plan.stations) {
    const std::string problem = id == 0 ? "0 is no number of a station" : stationProblem(station);
    if (!problem.empty()) return "station " + std::to_string(id) + ": " + problem;
  }
  for (const auto& [id, link] : plan.links) {
    std::string problem = id == 0 ? "0 is no number of a link" : linkProblem(link);
    if (problem.empty()) problem = linkEndProblem(plan, link.from);
    if (problem.empty()) problem = linkEndProblem(plan, link.to);
    if (!problem.empty()) return "link " + std::to_string(id) + ": " + problem;
  }
  return {};
}

std::string tidyName(const std::string& name) {
  std::string tidy;
  for (std::size_t at = 0; at < name.size();) {
    const Utf8Character character = utf8CharacterAt(name, at);
    if (!character.valid)
      tidy += "\xEF\xBF\xBD";
    else if (breaksTheLine(character.code))
      tidy += ' ';
    else
      tidy.append(name, at, character.bytes);
    at += character.bytes;
  }
  return trimmedBlanks(std::string(utf8Start(trimmedBlanks(tidy), kLongestName)));
}

FreshNames::FreshNames(const Plan& plan) {
  for (const auto& [id, station] : plan.stations) taken_.insert(station.name);
}

std::string FreshNames::next() {
  for (;; ++number_) {
    std::string name = "Station " + std::to_string(number_);
    if (taken_.insert(name).second) return name;
  }
}

std::string freshName(const Plan& plan) { return FreshNames(plan).next(); }

}  // namespace zel::host
