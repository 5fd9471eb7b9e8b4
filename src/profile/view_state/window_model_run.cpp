#include "profile/view_state/window_model_run.h"

#include "profile/calculation/checked_math.h"
#include "profile/real32.h"

namespace zel {

ModelPath windowModelPath(const ProfileViewState& state) {
  const PathGeometry& path = state.path;
  if (path.firstIndex < 1 || path.lastIndex > state.elevation.size())
    throw RuntimeError::subscriptOutOfRange();
  ModelPath model;
  model.elevations = state.elevation.span().subspan(static_cast<std::size_t>(path.firstIndex - 1),
                                                    static_cast<std::size_t>(path.intervals) + 1);
  model.spacing = toReal32(divided(path.distance, path.intervals) * 1000);
  model.antennaHeights = state.inputs.antennaHeights;
  model.frequency = state.inputs.frequency;
  return model;
}

std::optional<float> windowModeledLoss(const ProfileViewState& state) {
  if (!state.model) return std::nullopt;
  if (!isModelFrequency(state.inputs.frequency)) return 0.0F;
  return modeledLoss(windowModelPath(state), *state.model);
}

}  // namespace zel
