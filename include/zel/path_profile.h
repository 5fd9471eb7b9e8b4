// The profile of a path in exact geometry, from station to station.
//
// The samples lie evenly on the WGS 84 geodesic between the stations, ends included. At d1 km from the start
// and d2 km from the end, with the effective-earth factor k and the wavelength 300 / f:
//   rise      = 1000 d1 d2 / (2 k 6371)                                    metres
//   los       = straight line between the antenna tops, above sea level    metres
//   fresnel1  = first Fresnel zone radius, sqrt(1000 lambda d1 d2 / D)     metres
//   clearance = los - ground - rise                                        metres
// The plot of the profile window follows rules of its own (samples a little past both ends, an earth radius
// in whole kilometres), so its read-outs can differ from these by some decimetres.
//
// The function belongs to the thread of the ProfileControl objects. Without a bound host it uses the settings
// of the component's own application object, "zelProfiler01".
#ifndef ZEL_PATH_PROFILE_H_
#define ZEL_PATH_PROFILE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"
#include "zel/station_profile.h"
#include "zel/terrain.h"

namespace zel {

struct PathProfileRequest {
  Position from;
  Position to;
  // Metres above ground, 0 or more; whole metres are used, rounded half to even. Without one the settings
  // Prf_HtL and Prf_HtR hold.
  std::optional<double> fromHeight;
  std::optional<double> toHeight;
  std::optional<double> k;  // effective-earth factor; without one the setting Prf_Crv, 1.333 by default
  std::optional<double> frequencyMhz;  // without one the setting Prf_Freq, 950 by default
};

enum class PathVerdict {
  kClear,     // 60 % of the first Fresnel zone or more is free everywhere
  kMarginal,  // the line of sight is free, but less than 60 % of the zone
  kBlocked,   // the ground reaches above the line of sight
  kUnknown,   // ground between the ends has no height, and none that has one blocks the path
};

// "clear", "marginal", "blocked", "unknown".
ZEL_API const char* verdictText(PathVerdict verdict);

struct PathObstacle {
  double distanceKm = 0;  // from the start
  Position position;
  double groundM = 0;     // above sea level, without the rise
  double clearanceM = 0;  // of the line of sight above ground and rise; negative when the ground is higher
  double clearancePercent = 0;  // of the first Fresnel zone's radius there
};

struct PathProfile {
  // As SampledTerrain::status, and 5: the request itself cannot be profiled. Other members are set only with
  // 0.
  int status = 0;
  std::string error;

  double distanceKm = 0;
  double bearingDeg = 0;    // from the start to the end, clockwise from north
  std::int32_t points = 0;  // samples, both ends included
  double spacingM = 0;
  std::int16_t startHeightM = 0, endHeightM = 0;  // antennas above ground, as used
  double startGroundM = 0, endGroundM = 0;
  double minimumM = 0, maximumM = 0, averageM = 0;  // of the ground, voids left out
  double k = 0;
  double frequencyMhz = 0;
  double wavelengthM = 0;
  double freeSpaceDb = 0;
  std::optional<PathObstacle> worst;  // least clearance in percent of the zone, ends excluded
  PathVerdict verdict = PathVerdict::kUnknown;

  std::vector<double> distancesKm;
  std::vector<Position> positions;
  std::vector<double> groundM;  // NaN where the terrain has a void
  std::vector<double> riseM;
  std::vector<double> lineOfSightM;
  std::vector<double> fresnel1M;
  std::vector<double> clearanceM;  // NaN at a void

  TerrainProvenance terrain;
  // Defaults taken, roundings and clampings made, settings that were not read as they stand, voids, in words.
  std::vector<std::string> notes;
};

// Never throws for bad input: the status and the error say what was wrong. Throws SettingsError
// (zel/settings.h) when the settings cannot be read.
ZEL_API PathProfile computePathProfile(const PathProfileRequest& request);

}  // namespace zel

#endif  // ZEL_PATH_PROFILE_H_
