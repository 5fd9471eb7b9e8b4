// A link's result in words, for the line over the map and the table.
#pragma once

#include <QString>

#include "analysis/link_analysis.h"
#include "desktop/shown_values.h"

namespace zel::host {

// For a line of text: a name, cut where it is long.
QString shownName(const QString& name);
QString stationName(const Plan& plan, StationId id);
QString linkTitle(const Plan& plan, const Link& link);  // "North ridge - South hill"
// "North ridge - South hill: 28.70 km, 134.1°, free space 121.1 dB, modeled 137.7 dB, marginal: 34 % of zone
// 1 at 11.1 km (950 MHz, k 1.333; 1 second, bundled sample terrain)"; `result` may be null.
QString linkSummary(const Plan& plan, const Link& link, const LinkResult* result, const ShownUnits& units);
// Line by line: frequency, k and terrain that the figures were computed with, and what is to be noted of
// them.
QString linkOrigin(const LinkResult& result);
// What a tip about it says: that, or why there are no figures.
QString linkTip(const LinkResult& result);
// Of a link that leaves the terrain: "no terrain at 36-24-00.0 N, 84-21-00.0 W; add some in ...".
QString noTerrainText(const LinkResult& result, const ShownUnits& units);
// Of two stations that may become a link: distance, bearing and how.
QString pairSummary(const Plan& plan, StationId from, StationId to, const ShownUnits& units);
// "clear", "marginal", "blocked", "unknown"; "computing" while it is not (anew), "no terrain" or "refused"
// when there are no figures.
QString verdictWord(const LinkResult* result);

}  // namespace zel::host
