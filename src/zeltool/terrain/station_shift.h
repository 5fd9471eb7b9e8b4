// Positions of stations moved to the datum of the terrain.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "foundation/geo_point.h"
#include "platform/datum_shift.h"

namespace zel {

// NAD-83 positions of NAD-27 positions that run evenly along a path of `length` km. The shift is taken at
// positions at most 5 km apart and interpolated between them where that is within 1 cm. Throws RuntimeError
// when no operation serves one.
std::vector<GeoPoint> shiftedPath(const DatumShift& shift, std::span<const GeoPoint> path, double length);

}  // namespace zel
