// The line that lies a part of the first Fresnel zone below the line of sight.
#pragma once

#include "foundation/sample_array.h"
#include "profile/calculation/line_of_sight.h"
#include "profile/path/path_geometry.h"

namespace zel {

// Metres, for a frequency in MHz. Throws RuntimeError 11 for a frequency of 0 and 6 for one next to it.
float wavelengthOf(float frequency);

// Heights in metres, indexed up to the end antenna's sample N + E, with 0 before the start antenna's sample
// E; empty for a fraction of 0, which means no line. `fraction` is the part of the zone (percentage / 100),
// `wavelength` in metres.
//
// The distance x from the start is summed up spacing by spacing. Where the sum reaches the end, a sample
// takes the height that the sample before the end antenna has at that moment: `previous` is the line that
// this one replaces. Throws RuntimeError 11 for a distance of 0, 5 for a negative wavelength.
SampleArray<float> fresnelLine(const PathGeometry& path, const LineOfSight& line, float wavelength,
                               float fraction, SampleArray<float> previous = {});

}  // namespace zel
