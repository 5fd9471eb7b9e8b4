// The part of the world that a picture of the profile shows.
#pragma once

#include "profile/view_state/profile_view_state.h"
#include "ui/plot/plot_view.h"

namespace zel {

// Markers this near to each other, km, are not expanded between.
inline constexpr double kNarrowestExpansion = 0.1;

// Between the two marker positions, km.
double markerDistance(const ProfileViewState& state);

// Whether the stretch between the markers is wide enough for a view of its own.
bool canExpandBetweenMarkers(const ProfileViewState& state);

// The corners for a vertical exaggeration in percent: from the lowest ground less a tenth of the highest (of
// the height itself, not of the span; so it is meant) to the highest of ground and antennas, raised by the
// percentage. The antennas count without their curvature rise, the ground with it. Throws RuntimeError 6 when
// a corner is not a finite number.
PlotScale plotScale(const ProfileViewState& state, double exaggeration);

}  // namespace zel
