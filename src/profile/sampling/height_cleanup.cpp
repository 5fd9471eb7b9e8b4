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
  if (place) text += " at " + generalNumber(place->latitude) + ", " + generalNumber(place->longitude);
  return text + " is " + generalNumber(impossible.height) +
         " m, and no ground lies between -500 m and -100 m.";
}

}  // namespace zel
