// Delta h, the terrain irregularity: how far the heights of a path spread about their straight trend.
//
// The heights between two distances are read at 35 to 245 even steps, their trend is taken out, and delta h
// is what lies between the highest and the lowest tenth of them, scaled to what it would be over a very long
// path: over a stretch of length s one sees Delta h (1 - 0.8 exp(-s / 50 km)) (Algorithm 3.9 and section 7).
#pragma once

#include <span>

namespace zel::longrice {

// Delta h as seen over a stretch, metres, both lengths in metres (Algorithm 3.9).
double terrainIrregularityOver(double distance, double deltaH);

// The height above which the ground is rough to a wave: the spread of the heights over a stretch, metres
// (Algorithm 3.10).
double terrainRoughnessOver(double distance, double deltaH);

// Delta h in metres of the stretch from one distance to another, both in metres from sample 0. A stretch of
// less than two intervals has none, 0. Costs the same for any path of more than some 250 samples.
double terrainIrregularity(std::span<const double> elevations, double spacing, double from, double to);

}  // namespace zel::longrice
