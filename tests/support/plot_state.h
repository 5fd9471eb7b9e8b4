// A profile in round numbers: 10 km in 10 intervals of 1 km with 1 sample beyond each end, flat ground at 100
// m without curvature rise, masts of 30 m.
//
// Hence T = 12 samples, L = 12 km, the start antenna on sample 1 at x = 1 km, the end antenna on sample 11 at
// x = 11 km, antenna tops and line of sight at 130 m, bottom 100 - 0.1 x 100 = 90 m, top at 100 %
// exaggeration 2 x 130 = 260 m.
#pragma once

#include "profile/view_state/profile_view_state.h"

namespace zel::test {

inline ProfileViewState flatProfile() {
  ProfileViewState state;
  PathGeometry& path = state.path;
  path.distance = 10;
  path.azimuth = 0;
  path.intervals = 10;
  path.extension = path.firstIndex = 1;
  path.lastIndex = 11;
  path.samples = 12;
  path.spacing = 1;
  path.extendedLength = 12;
  path.end = {0.1, 0};

  ProfileInputs& inputs = state.inputs;
  inputs.end = path.end;
  inputs.antennaHeights = {30, 30};
  inputs.k = 1.33F;
  inputs.frequency = 950;
  inputs.fresnelFraction = 1;
  inputs.units = unitsFor(Init_GUC(), 0);

  state.rawElevation = state.elevation = SampleArray<float>(12, 100.0F);
  state.curve = SampleArray<float>(12, 0.0F);
  state.fresnel = SampleArray<float>(11, 120.0F);
  state.lineOfSight = {130, 130, 0};
  state.statistics = {100, 100, 100, 100, 110, 100, 100};
  state.flags = {};
  state.flags.resample = state.flags.recomputeCurvature = state.flags.modeledLossPending = false;
  return state;
}

inline void useFeetAndMiles(ProfileViewState& state) { state.inputs.units = unitsFor(Init_GUC(), 1); }

inline void showMarkersAt(ProfileViewState& state, float left, float right) {
  state.leftMarker.x = state.leftMarker.keptX = left;
  state.rightMarker.x = state.rightMarker.keptX = right;
  state.leftMarker.shown = state.rightMarker.shown = true;
}

inline void expandBetween(ProfileViewState& state, float left, float right) {
  showMarkersAt(state, left, right);
  state.expanded = true;
}

}  // namespace zel::test
