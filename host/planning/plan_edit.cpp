#include "planning/plan_edit.h"

#include <algorithm>
#include <stdexcept>

#include "planning/utf8_text.h"

namespace zel::host {
namespace {

// Of a name in a menu.
std::string shortName(const std::string& name) {
  constexpr std::size_t kMost = 30;
  const std::string_view start = utf8Start(name, kMost);
  return start.size() == name.size() ? name : std::string(start) + "...";
}

std::string stationName(const Plan& plan, StationId id) {
  const auto found = plan.stations.find(id);
  return found == plan.stations.end() ? "station " + std::to_string(id) : shortName(found->second.name);
}

std::string counted(std::size_t count, const char* thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

template <typename Id, typename Value>
const Value& existing(const std::map<Id, Value>& all, Id id, const char* thing) {
  const auto found = all.find(id);
  if (found == all.end())
    throw std::invalid_argument("there is no " + std::string(thing) + " " + std::to_string(id));
  return found->second;
}

// ---- What an edit would leave

bool existsAfter(const Plan& plan, const PlanEdit& edit, StationId id) {
  const auto change = edit.stations.find(id);
  return change != edit.stations.end() ? change->second.has_value() : plan.stations.count(id) != 0;
}

template <typename Id, typename Value>
std::size_t countAfter(const std::map<Id, Value>& all, const std::map<Id, std::optional<Value>>& changes) {
  std::size_t count = all.size();
  for (const auto& [id, value] : changes) {
    const std::size_t before = all.count(id);
    count = count - before + (value ? 1 : 0);
  }
  return count;
}

bool removesAny(const Plan& plan, const PlanEdit& edit) {
  return std::any_of(edit.stations.begin(), edit.stations.end(), [&](const auto& change) {
    return !change.second && plan.stations.count(change.first) != 0;
  });
}

void checkStations(const PlanEdit& edit) {
  for (const auto& [id, station] : edit.stations) {
    if (id == 0) throw std::invalid_argument("0 is no number of a station");
    if (!station) continue;
    const std::string problem = stationProblem(*station);
    if (!problem.empty()) throw std::invalid_argument("station " + std::to_string(id) + ": " + problem);
  }
}

void checkEnds(const Plan& plan, const PlanEdit& edit, LinkId id, const Link& link) {
  for (const StationId end : {link.from, link.to}) {
    if (!existsAfter(plan, edit, end))
      throw std::invalid_argument("link " + std::to_string(id) + ": there is no station " +
                                  std::to_string(end));
  }
}

void checkLinks(const Plan& plan, const PlanEdit& edit) {
  for (const auto& [id, link] : edit.links) {
    if (id == 0) throw std::invalid_argument("0 is no number of a link");
    if (!link) continue;
    const std::string problem = linkProblem(*link);
    if (!problem.empty()) throw std::invalid_argument("link " + std::to_string(id) + ": " + problem);
    checkEnds(plan, edit, id, *link);
  }
  if (!removesAny(plan, edit)) return;
  for (const auto& [id, link] : plan.links) {
    if (edit.links.count(id) == 0) checkEnds(plan, edit, id, link);
  }
}

void checkCounts(const Plan& plan, const PlanEdit& edit) {
  if (countAfter(plan.stations, edit.stations) > kMostStations)
    throw std::invalid_argument("a plan has at most " + std::to_string(kMostStations) + " stations");
  if (countAfter(plan.links, edit.links) > kMostLinks)
    throw std::invalid_argument("a plan has at most " + std::to_string(kMostLinks) + " links");
}

// ---- Applying

template <typename Id, typename Value>
std::map<Id, std::optional<Value>> before(const std::map<Id, Value>& all,
                                          const std::map<Id, std::optional<Value>>& changes) {
  std::map<Id, std::optional<Value>> values;
  for (const auto& [id, value] : changes) {
    const auto found = all.find(id);
    values.emplace_hint(values.end(), id,
                        found == all.end() ? std::optional<Value>() : std::optional<Value>(found->second));
  }
  return values;
}

template <typename Id, typename Value>
void apply(std::map<Id, Value>& all, const std::map<Id, std::optional<Value>>& changes) {
  for (const auto& [id, value] : changes) {
    if (value)
      all.insert_or_assign(id, *value);
    else
      all.erase(id);
  }
}

std::string changeText(const Station& from, const Station& to) {
  const std::string name = shortName(from.name);
  const bool renamed = from.name != to.name;
  const bool moved = from.position != to.position;
  const bool raised = from.antennaM != to.antennaM;
  if (renamed && !moved && !raised) return "rename " + name;
  if (moved && !renamed && !raised) return "move " + name;
  if (raised && !renamed && !moved) return "change the antenna of " + name;
  return "change " + name;
}

void nameTheNameless(const Plan& plan, PlanEdit& edit) {
  const auto nameless = [](const auto& added) { return added.second->name.empty(); };
  if (std::none_of(edit.stations.begin(), edit.stations.end(), nameless)) return;
  FreshNames fresh(plan);
  for (const auto& [id, station] : edit.stations) fresh.take(station->name);
  for (auto& [id, station] : edit.stations) {
    if (station->name.empty()) station->name = fresh.next();
  }
}

}  // namespace

std::string linkName(const Plan& plan, const Link& link) {
  return stationName(plan, link.from) + " to " + stationName(plan, link.to);
}

PlanEdit applyEdit(Plan& plan, const PlanEdit& edit) {
  checkStations(edit);
  checkLinks(plan, edit);
  checkCounts(plan, edit);
  PlanEdit undo{edit.text, before(plan.stations, edit.stations), before(plan.links, edit.links), {}};
  if (edit.datum) undo.datum = plan.datum;
  apply(plan.stations, edit.stations);
  apply(plan.links, edit.links);
  if (edit.datum) plan.datum = *edit.datum;
  return undo;
}

PlanEdit addStations(const Plan& plan, StationId firstFree, const std::vector<Station>& stations,
                     std::vector<StationId>* added) {
  PlanEdit edit;
  if (added) added->clear();
  if (stations.empty()) return edit;
  StationId id = firstFree;
  for (const Station& station : stations) {
    Station tidy = station;
    tidy.name = tidyName(station.name);
    edit.stations.emplace_hint(edit.stations.end(), id, std::move(tidy));
    if (added) added->push_back(id);
    ++id;
  }
  nameTheNameless(plan, edit);
  edit.text = "add " + (stations.size() == 1 ? shortName(edit.stations.begin()->second->name)
                                             : counted(stations.size(), "station"));
  return edit;
}

PlanEdit addNetwork(const Plan& plan, StationId firstFreeStation, LinkId firstFreeLink,
                    const std::vector<Station>& stations,
                    const std::vector<std::pair<std::size_t, std::size_t>>& links,
                    std::vector<StationId>* added) {
  PlanEdit edit = addStations(plan, firstFreeStation, stations, added);
  if (edit.empty()) return edit;
  LinkId id = firstFreeLink;
  for (const auto& [from, to] : links) {
    if (from == to || from >= stations.size() || to >= stations.size()) continue;
    const Link link{
        firstFreeStation + static_cast<StationId>(from), firstFreeStation + static_cast<StationId>(to), {}};
    edit.links.emplace_hint(edit.links.end(), id++, link);
  }
  edit.text = "import of " + counted(stations.size(), "station");
  if (!edit.links.empty()) edit.text += " and " + counted(edit.links.size(), "link");
  return edit;
}

PlanEdit changeStation(const Plan& plan, StationId id, const Station& station) {
  const Station& was = existing(plan.stations, id, "station");
  Station tidy = station;
  tidy.name = tidyName(station.name);
  PlanEdit edit;
  if (tidy == was) return edit;
  edit.text = changeText(was, tidy);
  edit.stations[id] = std::move(tidy);
  return edit;
}

PlanEdit moveStation(const Plan& plan, StationId id, Position to) {
  Station station = existing(plan.stations, id, "station");
  station.position = to;
  return changeStation(plan, id, station);
}

PlanEdit removeStations(const Plan& plan, const std::vector<StationId>& ids) {
  PlanEdit edit;
  for (const StationId id : ids) {
    if (plan.stations.count(id) != 0) edit.stations[id] = std::nullopt;
  }
  if (edit.stations.empty()) return edit;
  for (const auto& [id, link] : plan.links) {
    if (edit.stations.count(link.from) != 0 || edit.stations.count(link.to) != 0)
      edit.links[id] = std::nullopt;
  }
  edit.text = "remove " + (edit.stations.size() == 1 ? stationName(plan, edit.stations.begin()->first)
                                                     : counted(edit.stations.size(), "station"));
  return edit;
}

PlanEdit addLink(const Plan& plan, LinkId firstFree, const Link& link) {
  PlanEdit edit;
  edit.text = "link " + linkName(plan, link);
  edit.links[firstFree] = link;
  return edit;
}

PlanEdit changeLink(const Plan& plan, LinkId id, const Link& link) {
  const Link& was = existing(plan.links, id, "link");
  PlanEdit edit;
  if (link == was) return edit;
  const bool sameEnds = link.from == was.from && link.to == was.to;
  edit.text = (sameEnds ? "change the frequency of " : "change the link ") + linkName(plan, was);
  edit.links[id] = link;
  return edit;
}

PlanEdit swapLink(const Plan& plan, LinkId id) {
  const Link& was = existing(plan.links, id, "link");
  PlanEdit edit;
  edit.text = "swap the ends of " + linkName(plan, was);
  edit.links[id] = Link{was.to, was.from, was.frequencyMhz};
  return edit;
}

PlanEdit removeLinks(const Plan& plan, const std::vector<LinkId>& ids) {
  PlanEdit edit;
  for (const LinkId id : ids) {
    if (plan.links.count(id) != 0) edit.links[id] = std::nullopt;
  }
  if (edit.links.empty()) return edit;
  edit.text = "remove the link " + linkName(plan, plan.links.at(edit.links.begin()->first));
  if (edit.links.size() > 1) edit.text = "remove " + counted(edit.links.size(), "link");
  return edit;
}

PlanEdit setDatum(const Plan& plan, PlanDatum datum) {
  PlanEdit edit;
  if (plan.datum == datum) return edit;
  edit.text = "change the datum";
  edit.datum = datum;
  return edit;
}

}  // namespace zel::host
