// What a planner works on: stations, and links between them. A value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "zel/coordinates.h"

namespace zel::host {

// Counted up in a plan, never used twice while the program runs; their order is the order in the tables.
using StationId = std::uint32_t;
using LinkId = std::uint32_t;

inline constexpr std::size_t kMostStations = 200'000;
inline constexpr std::size_t kMostLinks = 200'000;
inline constexpr double kLowestAntenna = 0, kHighestAntenna = 750;          // metres above ground
inline constexpr double kLowestFrequency = 20, kHighestFrequency = 20'000;  // MHz, as the model takes it
inline constexpr std::size_t kLongestName = 200;                            // characters
inline constexpr double kDefaultAntenna = 30;                               // metres above ground

struct Station {
  std::string name;                   // UTF-8, one line
  Position position;                  // in the plan's datum
  double antennaM = kDefaultAntenna;  // above ground; the component uses whole metres, rounded half to even

  friend bool operator==(const Station&, const Station&) = default;
};

struct Link {
  StationId from = 0, to = 0;
  std::optional<double> frequencyMhz;  // without one the setting Prf_Freq

  friend bool operator==(const Link&, const Link&) = default;
};

enum class PlanDatum : std::uint8_t { kNad83, kNad27 };  // NAD-83 stands for WGS 84 too

// What the map showed.
struct PlanView {
  Position centre;
  double metresPerPixel = 0;  // logical pixels, at the centre

  friend bool operator==(const PlanView&, const PlanView&) = default;
};

struct Plan {
  std::map<StationId, Station> stations;
  std::map<LinkId, Link> links;  // of stations that exist, from and to different
  PlanDatum datum = PlanDatum::kNad83;

  friend bool operator==(const Plan&, const Plan&) = default;
};

// Why a station cannot be in a plan, naming the value that is wrong; empty when it can. A name has at least
// one character that is no blank, at most kLongestName, and no line break or control character.
std::string stationProblem(const Station& station);
// The same of a link by itself; whether its stations exist is not asked.
std::string linkProblem(const Link& link);
// The same of a plan as a whole.
std::string planProblem(const Plan& plan);
// "latitude 95 is not from -90 to 90"; empty for a position on earth. A longitude of 180 stays what it is.
std::string positionProblem(const Position& position);
// A name with line breaks and control characters as blanks, what is no UTF-8 as U+FFFD, trimmed, cut to
// kLongestName characters (not bytes).
std::string tidyName(const std::string& name);
// "Station 3": the first that no station of the plan has.
std::string freshName(const Plan& plan);

// Fresh names one after the other, quickly for thousands.
class FreshNames {
 public:
  explicit FreshNames(const Plan& plan);
  void take(const std::string& name) { taken_.insert(name); }
  std::string next();

 private:
  std::set<std::string> taken_;
  std::size_t number_ = 1;
};

}  // namespace zel::host
