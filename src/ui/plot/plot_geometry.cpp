#include "ui/plot/plot_geometry.h"

#include <algorithm>
#include <cmath>

namespace zel {
namespace {

bool isNear(double a, double b, double tolerance) { return std::abs(a - b) <= tolerance; }

bool isOnMast(double x, double y, double mastX, double top, double height, HitTolerance tolerance) {
  return isNear(x, mastX, tolerance.x) && y <= top + tolerance.y && y >= top - height - tolerance.y;
}

PlotPart mastAt(const ProfileViewState& state, double x, double y, HitTolerance tolerance) {
  const PlotIndex index = state.plotIndex();
  const LineOfSight& sight = state.lineOfSight;
  const auto& heights = state.inputs.antennaHeights;
  if (isOnMast(x, y, index.startX(), sight.startTop, heights[0], tolerance)) return PlotPart::kStartMast;
  if (isOnMast(x, y, index.endX(), sight.endTop, heights[1], tolerance)) return PlotPart::kEndMast;
  return PlotPart::kNothing;
}

}  // namespace

std::optional<double> groundUnder(const ProfileViewState& state, double x) {
  if (state.flags.resample) return std::nullopt;
  const std::optional<PointerPosition> pointer = state.plotIndex().pointerAt(x);
  if (!pointer) return std::nullopt;
  return PlotIndex::heightsAt(*pointer, state.elevation, state.curve).ground;
}

PlotPart plotPartAt(const ProfileViewState& state, double x, double y, HitTolerance tolerance) {
  if (state.leftMarker.shown && isNear(x, state.leftMarker.x, tolerance.x)) return PlotPart::kLeftMarker;
  if (state.rightMarker.shown && isNear(x, state.rightMarker.x, tolerance.x)) return PlotPart::kRightMarker;
  // A state without terrain has markers only.
  const std::optional<double> ground = groundUnder(state, x);
  if (!ground) return PlotPart::kNothing;
  if (!state.expanded) {
    const PlotPart mast = mastAt(state, x, y, tolerance);
    if (mast != PlotPart::kNothing) return mast;
  }
  if (isNear(y, *ground, tolerance.y)) return PlotPart::kGround;
  const PlotIndex index = state.plotIndex();
  const bool between = x >= index.startX() && x <= index.endX();
  if (between && isNear(y, index.lineOfSightAt(state.lineOfSight, x), tolerance.y))
    return PlotPart::kLineOfSight;
  return PlotPart::kNothing;
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
