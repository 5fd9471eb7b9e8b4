#include "ui/plot/plot_scale.h"

#include <algorithm>
#include <cmath>

#include "foundation/runtime_error.h"

namespace zel {

double markerDistance(const ProfileViewState& state) {
  return std::abs(double{state.rightMarker.x} - double{state.leftMarker.x});
}

bool canExpandBetweenMarkers(const ProfileViewState& state) {
  return markerDistance(state) > kNarrowestExpansion;
}

PlotScale plotScale(const ProfileViewState& state, double exaggeration) {
  const HeightStatistics& ground = state.statistics;
  const double highest = ground.plotMaximum;
  const double startTop = double{ground.startGround} + state.inputs.antennaHeights[0];
  const double endTop = double{ground.endGround} + state.inputs.antennaHeights[1];

  PlotScale scale;
  scale.bottom = double{ground.plotMinimum} - 0.1 * highest;
  scale.top = (1 + exaggeration / 100) * std::max({highest, startTop, endTop});
  scale.left = state.expanded ? double{state.leftMarker.x} : 0;
  scale.right = state.expanded ? double{state.rightMarker.x} : state.path.extendedLength;
  for (const double corner : {scale.left, scale.top, scale.right, scale.bottom})
    if (!std::isfinite(corner)) throw RuntimeError::overflow();
  return scale;
}

}  // namespace zel
