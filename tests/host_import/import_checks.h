// What the tests of imports look at.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "import/station_list.h"

namespace zel::host {

inline ImportedStations importText(const std::string& text, const std::string& name = "masts.csv") {
  return importStationsFrom(text, name);
}

// "Hill 36.4 -84.3 30", each station, to six digits.
inline std::vector<std::string> stationTexts(const ImportedStations& result) {
  const auto number = [](double value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
  };
  std::vector<std::string> texts;
  for (const Station& station : result.stations)
    texts.push_back(station.name + " " + number(station.position.latitude) + " " +
                    number(station.position.longitude) + " " + number(station.antennaM));
  return texts;
}

inline std::vector<std::string> problemTexts(const ImportedStations& result) {
  std::vector<std::string> texts;
  for (const ImportProblem& problem : result.problems)
    texts.push_back(std::to_string(problem.line) + ": " + problem.text);
  return texts;
}

inline bool hasNote(const ImportedStations& result, const std::string& part) {
  return std::any_of(result.notes.begin(), result.notes.end(),
                     [&](const std::string& note) { return note.find(part) != std::string::npos; });
}

using Texts = std::vector<std::string>;
using Links = std::vector<std::pair<std::size_t, std::size_t>>;

}  // namespace zel::host
