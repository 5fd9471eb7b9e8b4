// The modeled loss that the profile window shows: the run of the irregular terrain model with what the panel
// holds.
#pragma once

#include "profile/path_loss/modeled_loss.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {

// The cleaned ground from station to station, samples E to N + E, whatever stretch is drawn. Unlike the
// windowless run, the model is told the true spacing D / N. It looks into the state. Throws RuntimeError 9
// for arrays that do not reach the stations and 11 without intervals.
ModelPath windowModelPath(const ProfileViewState& state);

// dB. 0 for a frequency that the model is not asked for. Nothing without model parameters, which could not be
// read at load. Throws as modeledLoss does.
std::optional<float> windowModeledLoss(const ProfileViewState& state);

}  // namespace zel
