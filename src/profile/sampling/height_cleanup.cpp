#include "profile/sampling/height_cleanup.h"

#include <cmath>

#include "foundation/number_text.h"

namespace zel {

bool isMissingHeight(float rawHeight) { return !std::isfinite(rawHeight) || rawHeight < kLowestTakenHeight; }

CleanedHeights cleanedHeights(SampleArray<float> raw) {
  CleanedHeights result{std::move(raw), {}};
  std::int32_t sample = 0;
  for (float& height : result.heights.span()) {
    ++sample;
    if (height < kLowestTakenHeight) height = 0;
    if (height < kLowestPossibleHeight) {
      result.impossible = ImpossibleHeight{sample, height};
      break;
    }
  }
  return result;
}

std::optional<ImpossibleHeight> firstImpossibleHeight(const SampleArray<float>& raw) {
  return cleanedHeights(raw).impossible;
}

std::string describe(const ImpossibleHeight& impossible, std::optional<GeoPoint> place) {
  std::string text = "The terrain height of sample " + std::to_string(impossible.sample);
  if (place)
    text += " at " + formatNumber(place->latitude, "0.000000") + ", " +
            formatNumber(place->longitude, "0.000000");
  return text + " is " + generalNumber(impossible.height) +
         " m; heights from -500 m up to -100 m are not carried";
}

}  // namespace zel
