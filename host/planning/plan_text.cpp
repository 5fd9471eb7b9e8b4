#include "planning/plan_text.h"

#include "planning/short_number.h"

namespace zel::host {
namespace {

std::string csvName(const std::string& name) {
  if (name.find_first_of(",;\"") == std::string::npos) return name;
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace

std::string stationText(const Station& station) {
  constexpr int kDecimals = 6;
  return fixedNumber(station.position.latitude, kDecimals) + "," +
         fixedNumber(station.position.longitude, kDecimals) + "," + shortNumber(station.antennaM) + "," +
         csvName(tidyName(station.name));
}

std::string stationsText(const Plan& plan, const std::vector<StationId>& ids) {
  std::string text;
  for (const StationId id : ids) {
    const auto found = plan.stations.find(id);
    if (found != plan.stations.end()) text += stationText(found->second) + "\n";
  }
  return text;
}

}  // namespace zel::host
