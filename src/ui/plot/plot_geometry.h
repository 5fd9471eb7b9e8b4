// What of the plot is under a position, and which position the keyboard's pointer goes to.
#pragma once

#include <cstdint>

#include "profile/view_state/profile_view_state.h"
#include "ui/plot/plot_view.h"

namespace zel {

enum class PlotPart : std::uint8_t {
  kNothing,
  kLeftMarker,
  kRightMarker,
  kStartMast,
  kEndMast,
  kGround,
  kLineOfSight
};

// How far a position may lie off a stroke: pixels, turned into world units by the view's scale.
struct HitTolerance {
  double x = 0;  // km
  double y = 0;  // metres
};

// The first of the parts, in the order of their names, that is as near as that to plot x (km) and height y
// (metres). The expanded view has no masts; ground and line of sight are hit above and below only. The ground
// is the one that the pointer reads.
PlotPart plotPartAt(const ProfileViewState& state, double x, double y, HitTolerance tolerance);

// The position so many samples from x, km: within the view and where the pointer can read the ground.
double steppedPosition(const ProfileViewState& state, const PlotView& view, double x, std::int32_t samples);

// The height of the ground that the pointer reads at x, metres in the plot; nothing where it reads none.
std::optional<double> groundUnder(const ProfileViewState& state, double x);

}  // namespace zel
