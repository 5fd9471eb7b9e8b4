#include "ui/plot/plot_geometry.h"

#include <algorithm>

namespace zel {

std::optional<double> groundUnder(const ProfileViewState& state, double x) {
  if (state.flags.resample) return std::nullopt;
  const std::optional<PointerPosition> pointer = state.plotIndex().pointerAt(x);
  if (!pointer) return std::nullopt;
  return PlotIndex::heightsAt(*pointer, state.elevation, state.curve).ground;
}

double steppedPosition(const ProfileViewState& state, const PlotView& view, double x, std::int32_t samples) {
  const PathGeometry& path = state.path;
  // Half a sample inside the last position that the pointer can read, so that rounding cannot lead beyond it.
  const double lastRead = path.extendedLength * (path.samples - 1.5) / path.samples;
  const double right = std::min(view.scale.right, lastRead);
  const double left = std::min(std::max(view.scale.left, 0.0), right);
  const double stepped = x + samples * path.spacing;
  return stepped > left ? std::min(stepped, right) : left;
}

}  // namespace zel
