#include "planning/plan_text.h"

#include <array>
#include <charconv>

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

// Six decimals, or as many as it takes to be read as the same value again.
std::string degreesText(double degrees) {
  constexpr int kDecimals = 6;
  std::string text = fixedNumber(degrees, kDecimals);
  double read = 0;
  std::from_chars(text.data(), text.data() + text.size(), read);
  if (read == degrees) return text;
  std::array<char, 400> digits{};  // the smallest doubles have more than 300 behind the point
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), degrees, std::chars_format::fixed).ptr;
  return {digits.data(), end};
}

}  // namespace

std::string stationText(const Station& station) {
  return degreesText(station.position.latitude) + "," + degreesText(station.position.longitude) + "," +
         shortNumber(station.antennaM) + "," + csvName(tidyName(station.name));
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
