#include "profile/plot_index/plot_index.h"

#include <algorithm>

#include "foundation/rounding.h"

namespace zel {
namespace {

// The sample before x, moved by some samples and kept within low to high so that far-off positions do not
// overflow.
std::int32_t boundedSample(double x, double spacing, double moved, double low, double high) {
  const double sample = intFloor(x / spacing) + moved;
  return static_cast<std::int32_t>(sample >= low ? std::min(sample, high) : low);
}

}  // namespace

std::optional<double> PlotIndex::riseX(std::int32_t sample) const {
  if (sample <= 1 || sample >= path_.samples) return std::nullopt;
  return sampleX(sample);
}

SampleRange PlotIndex::expandedPlot(double left, double right) const {
  const double last = path_.samples;
  return {boundedSample(left, path_.spacing, -1, 1, last + 1),
          boundedSample(right, path_.spacing, 1, 0, last)};
}

SampleRange PlotIndex::expandedStationToStation(double left, double right) const {
  const SampleRange drawn = expandedPlot(left, right);
  return {std::max<std::int32_t>(drawn.first, path_.firstIndex),
          std::min<std::int32_t>(drawn.last, path_.lastIndex)};
}

SampleRange PlotIndex::expandedFresnel(double left, double right) const {
  return {std::max(toInt16(left / path_.spacing), path_.firstIndex),
          std::min(toInt16(right / path_.spacing), path_.lastIndex)};
}

std::int32_t PlotIndex::markerSample(double x) const { return toInt32(x / path_.spacing); }

std::optional<PointerPosition> PlotIndex::pointerAt(double x) const {
  if (!(x >= 0)) return std::nullopt;
  const double sample = intFloor(x / path_.extendedLength * path_.samples) + 1;
  if (!(sample + 1 <= path_.samples)) return std::nullopt;
  return PointerPosition{static_cast<std::int32_t>(sample),
                         (x - (sample - 1) * path_.spacing) / path_.spacing};
}

PointerHeights PlotIndex::heightsAt(const PointerPosition& pointer, const SampleArray<float>& elevation,
                                    const SampleArray<float>& rise) {
  const std::int32_t k = pointer.sample;
  const double riseHere = rise[k] + (double{rise[k + 1]} - rise[k]) * pointer.fraction;
  const double ground =
      elevation[k] + riseHere + (double{elevation[k + 1]} - elevation[k]) * pointer.fraction;
  return {riseHere, ground};
}

}  // namespace zel
