// What becomes of a list of stations on its way into a plan.
#pragma once

#include <vector>

#include "import/station_list.h"
#include "planning/plan_edit.h"

namespace zel::host {

// All kinds but CSV are WGS 84 by their definitions and are shifted; a CSV's positions are the plan's, which
// is noted. Stations that cannot be shifted are left out, with the links that end there. On the component's
// thread, which knows the plan's datum.
void bringIntoDatum(ImportedStations& list, PlanDatum datum);
// A list that is imported twice is no mistake that can be seen on the map.
void noteDoubles(ImportedStations& list, const Plan& plan);
// To the links of the edit that adds the list; those that lead nowhere are not among them. `added` are the
// stations' ids.
void addFrequencies(PlanEdit& edit, const ImportedStations& list, const std::vector<StationId>& added);
// Whether more is to be told of a list than how its columns were read.
bool assumesSomething(const ImportedStations& list);

}  // namespace zel::host
