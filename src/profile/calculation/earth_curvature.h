// The rise of the curved earth between the ends of a path, for an effective-earth factor k.
//
// The rise of a sample is its height over the chord between the path's ends, on a sphere of the effective
// radius. The radius is deliberately coarse: k times the equatorial radius of the International 1924
// ellipsoid, rounded to whole kilometres, so that k = 1.333 gives 8502 km and k = 1.33333 gives 8504 km.
#pragma once

#include <cstdint>

#include "foundation/sample_array.h"

namespace zel {

inline constexpr double kInternationalEquatorialRadius = 6378388.0;  // metres, International 1924

// R in whole kilometres, halves to even. Throws RuntimeError 6 beyond 32 bits.
std::int32_t effectiveRadius(float k);

// The rise in metres of samples 1 to T of a path of `length` (L, km) with `samples` (T). Sample i carries the
// rise of the angle i / T of the path, one step further than it lies, and the first and the last carry none;
// both are meant.
//
// Throws RuntimeError 6 when R squared does not fit 32 bits (R above 46340, k above about 7.265), 11 for R =
// 0 and for a length at which the centre angle is 0 or 180 degrees, 5 for a length beyond the sphere's
// diameter, 9 without samples.
SampleArray<float> curvatureRise(float k, std::int32_t samples, double length);

}  // namespace zel
