// All that a page of the report says of one link: the figures of the map's table (analysis/link_analysis.h),
// and the profile and the loss that they were made from.
#pragma once

#include "analysis/link_analysis.h"
#include "planning/plan.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"

namespace zel::host {

struct PageFigures {
  LinkResult result;
  PathProfile profile;  // without its samples; status other than 0 where there are no figures
  PathLoss loss;        // status other than 0 where there is no modeled loss
  double distanceKm = 0, bearingDeg = 0, reverseBearingDeg = 0;  // known without terrain, too
};

// On the component's thread. Never throws for bad terrain. Cost: that of analyseLink.
PageFigures pageFigures(const Plan& plan, const Link& link);

}  // namespace zel::host
