// Which height of the ground is under a position, and which position the keyboard's pointer goes to.
#pragma once

#include <cstdint>
#include <optional>

#include "profile/view_state/profile_view_state.h"
#include "ui/plot/plot_view.h"

namespace zel {

// The position so many samples from x, km: within the view and where the pointer can read the ground.
double steppedPosition(const ProfileViewState& state, const PlotView& view, double x, std::int32_t samples);

// The height of the ground that the pointer reads at x, metres in the plot; nothing where it reads none.
std::optional<double> groundUnder(const ProfileViewState& state, double x);

}  // namespace zel
