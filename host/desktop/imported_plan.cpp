#include "desktop/imported_plan.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "zel/geodesic.h"

namespace zel::host {

void bringIntoDatum(ImportedStations& list, PlanDatum datum) {
  if (datum != PlanDatum::kNad27) return;
  if (list.kind == "CSV") {
    list.notes.emplace_back("positions taken as NAD-27, the plan's datum");
    return;
  }
  constexpr std::size_t kGone = std::numeric_limits<std::size_t>::max();
  std::vector<std::size_t> places(list.stations.size(), kGone);
  std::vector<Station> shifted;
  for (std::size_t i = 0; i < list.stations.size(); ++i) {
    Station station = list.stations[i];
    const DatumPosition there = stationPosition(station.position);
    if (!there.problem.empty()) {
      ++list.skipped;
      if (list.problems.size() < kMostProblems)
        list.problems.push_back({0, station.name + " cannot be shifted to NAD-27: " + there.problem});
      continue;
    }
    station.position = there.position;
    places[i] = shifted.size();
    shifted.push_back(std::move(station));
  }
  list.stations = std::move(shifted);
  for (auto& [from, to] : list.links) {
    from = from < places.size() ? places[from] : kGone;
    to = to < places.size() ? places[to] : kGone;
  }
  list.notes.emplace_back("positions shifted from WGS 84 to NAD-27");
}

void noteDoubles(ImportedStations& list, const Plan& plan) {
  using Place = std::tuple<std::string, double, double>;
  const auto placeOf = [](const Station& station) {
    return Place(tidyName(station.name), station.position.latitude, station.position.longitude);
  };
  std::set<Place> there;
  for (const auto& entry : plan.stations) there.insert(placeOf(entry.second));
  const auto doubles = std::count_if(list.stations.begin(), list.stations.end(),
                                     [&](const Station& each) { return there.contains(placeOf(each)); });
  if (doubles > 0)
    list.notes.push_back(std::to_string(doubles) + (doubles == 1 ? " stands" : " stand") +
                         " exactly where a station of the same name is");
}

void addFrequencies(PlanEdit& edit, const ImportedStations& result, const std::vector<StationId>& added) {
  auto link = edit.links.begin();
  for (std::size_t i = 0; i < result.links.size() && link != edit.links.end(); ++i) {
    const auto [from, to] = result.links[i];
    if (from >= added.size() || to >= added.size() || link->second->from != added[from] ||
        link->second->to != added[to])
      continue;
    if (i < result.frequenciesMhz.size()) link->second->frequencyMhz = result.frequenciesMhz[i];
    ++link;
  }
}

bool assumesSomething(const ImportedStations& result) {
  return std::any_of(result.notes.begin(), result.notes.end(), [](const std::string& note) {
    return note.rfind("delimiter ", 0) != 0 && note.rfind("read as ", 0) != 0;
  });
}

}  // namespace zel::host
