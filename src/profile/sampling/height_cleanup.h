// From the heights that a sampler gave to the heights that are calculated with.
//
// The cleaned heights are what the given rules of plot, statistics and model work on. They do not tell a void
// from the sea: whoever must know looks at the raw heights.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/geo_point.h"
#include "foundation/sample_array.h"

namespace zel {

inline constexpr float kLowestTakenHeight = -500.0F;  // metres; below it a sample counts as missing
// metres; a height between the two is taken for a fault of the data, not for ground
inline constexpr float kLowestPossibleHeight = -100.0F;

// Whether the sampler had no ground to give: a void, a height below -500 m, or no number.
bool isMissingHeight(float rawHeight);

// A height from -500 m up to, but excluding, -100 m. The component halts on one.
struct ImpossibleHeight {
  std::int32_t sample = 0;  // counted from 1
  float height = 0;         // metres
};

struct CleanedHeights {
  SampleArray<float> heights;                  // metres; a height below -500 m has become 0
  std::optional<ImpossibleHeight> impossible;  // the first one; the clean-up ended there
};

CleanedHeights cleanedHeights(SampleArray<float> raw);

// Whether the component would halt on these raw heights. For callers that refuse such a path instead.
std::optional<ImpossibleHeight> firstImpossibleHeight(const SampleArray<float>& raw);

// A sentence without its full stop, naming the sample, its height and, when known, its place in decimal
// degrees.
std::string describe(const ImpossibleHeight& impossible, std::optional<GeoPoint> place);

}  // namespace zel
