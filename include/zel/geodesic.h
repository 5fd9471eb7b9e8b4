// Lines between positions, without terrain; and between the datum of the stations and that of the maps.
#ifndef ZEL_GEODESIC_H_
#define ZEL_GEODESIC_H_

#include <cstdint>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"

namespace zel {

struct GeodesicLine {
  double distanceKm = 0;
  double bearingDeg = 0;         // at the start, clockwise from north, 0 up to 360; 0 for coincident ends
  double reverseBearingDeg = 0;  // from the end back to the start
  std::vector<Position> positions;
};

// The WGS 84 geodesic with `points` evenly spaced positions (2 or more), both ends included. From any thread.
// Positions that are no place on the earth give not-a-number and no positions.
ZEL_API GeodesicLine geodesicLine(Position from, Position to, std::int32_t points);

// Position `distanceKm` along the geodesic that leaves `from` at the bearing. From any thread.
ZEL_API Position geodesicDestination(Position from, double bearingDeg, double distanceKm);

struct DatumPosition {
  Position position;
  std::string problem;  // why it cannot be converted; the position is then the one given
};

// A station's position on WGS 84, where terrain and maps are: shifted when the host has set StaDatum to 0
// (NAD-27), else the same. On the component's thread.
ZEL_API DatumPosition mapPosition(Position station);
// The other way, to a millimetre.
ZEL_API DatumPosition stationPosition(Position map);

}  // namespace zel

#endif  // ZEL_GEODESIC_H_
