// Changes of a plan as values: what each touched station and link was and is. Applying one gives the edit
// that takes it back, so undo and redo need no more than a list of them.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "planning/plan.h"

namespace zel::host {

struct PlanEdit {
  std::string text;  // for "Undo ...": "move Station 3", "import of 40 stations"
  // What they are to be; nothing removes one.
  std::map<StationId, std::optional<Station>> stations;
  std::map<LinkId, std::optional<Link>> links;
  std::optional<PlanDatum> datum;

  bool empty() const { return stations.empty() && links.empty() && !datum; }
};

// Changes the plan and gives the edit that undoes it, with the same text. An edit that would leave a link
// without its station, a station or link that has a problem (stationProblem, linkProblem), or more than the
// plan may have, changes nothing and throws std::invalid_argument.
PlanEdit applyEdit(Plan& plan, const PlanEdit& edit);

// Ready-made edits. Names are made tidy (tidyName); a station without a name is given a fresh one where it is
// added. Those that add give the ids through `added` when asked. An edit that would change nothing is empty.
// A station or link that is to be changed and is not there: std::invalid_argument; one that is to be removed
// and is not there is passed over.
PlanEdit addStations(const Plan& plan, StationId firstFree, const std::vector<Station>& stations,
                     std::vector<StationId>* added = nullptr);
// Stations and links between them in one step, as imports bring them; `links` are pairs of indexes into
// `stations`, and those that lead nowhere or back are left out.
PlanEdit addNetwork(const Plan& plan, StationId firstFreeStation, LinkId firstFreeLink,
                    const std::vector<Station>& stations,
                    const std::vector<std::pair<std::size_t, std::size_t>>& links,
                    std::vector<StationId>* added = nullptr);
PlanEdit changeStation(const Plan& plan, StationId id, const Station& station);
PlanEdit moveStation(const Plan& plan, StationId id, Position to);
PlanEdit removeStations(const Plan& plan, const std::vector<StationId>& ids);  // and the links that end there
PlanEdit addLink(const Plan& plan, LinkId firstFree, const Link& link);
PlanEdit changeLink(const Plan& plan, LinkId id, const Link& link);
PlanEdit swapLink(const Plan& plan, LinkId id);  // from and to exchanged
PlanEdit removeLinks(const Plan& plan, const std::vector<LinkId>& ids);
PlanEdit setDatum(const Plan& plan, PlanDatum datum);

// "North ridge to Depot"; names longer than 30 characters are cut.
std::string linkName(const Plan& plan, const Link& link);

}  // namespace zel::host
