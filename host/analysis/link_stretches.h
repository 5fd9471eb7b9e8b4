// The stretches of a profiled path by what the ground leaves free there, for a line on the map.
//
// A sample is unknown over a void, blocked where the line of sight is below the ground, marginal where less
// than 60 % of the first Fresnel zone is free, else clear: as the verdict of the whole path. A stretch ends
// half way between two samples of different kinds.
#pragma once

#include <vector>

#include "analysis/link_analysis.h"

namespace zel::host {

inline constexpr double kFreePartOfZone = 0.6;  // of the first Fresnel zone's radius, dimensionless

std::vector<LinkStretch> linkStretches(const PathProfile& profile);

}  // namespace zel::host
