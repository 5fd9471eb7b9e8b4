// The Longley-Rice irregular terrain model, version 1.2.2, point-to-point, over heights that the caller has.
//
// The result is the basic transmission loss between isotropic antennas, in dB, for each pair of a confidence
// and a reliability: the loss that is not exceeded in the given fraction of time (reliability), in the given
// fraction of comparable situations (confidence), between mobile stations whose location is not varied.
//
// The model is meant for 20 MHz to 20 GHz, 1 to 2,000 km and antennas 0.5 to 3,000 m above ground. What lies
// outside is computed where it can be, and comes with warnings.
//
// The function keeps no state and may be called from several threads at once. Its cost grows in proportion to
// the number of heights, about 20 us for 1,000; more levels cost nanoseconds each.
#ifndef ZEL_LONGLEY_RICE_H_
#define ZEL_LONGLEY_RICE_H_

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "zel/export.h"

namespace zel {

enum class Polarization { kHorizontal, kVertical };

struct LongleyRiceRequest {
  std::vector<double>
      elevationsM;                // metres above sea level, evenly spaced, the transmitter's first; 2 or more
  double spacingM = 0;            // metres between neighbours, above 0
  double transmitterHeightM = 0;  // metres above ground
  double receiverHeightM = 0;     // metres above ground
  double frequencyMhz = 0;
  Polarization polarization = Polarization::kHorizontal;
  int climate = 5;              // 1 to 7, see radioClimateName
  double permittivity = 15;     // of the ground, relative to free space, dimensionless
  double conductivity = 0.005;  // of the ground, S/m
  // Ns in N-units, as it is at the height of the path.
  double surfaceRefractivity = 301;
  // N0 in N-units, at sea level. When given, Ns = N0 exp(-z / 9460 m) with z the mean height of the path's
  // middle eight tenths, and surfaceRefractivity is not looked at.
  std::optional<double> seaLevelRefractivity;
  // Fractions, above 0 and below 1. The normal deviates are exact.
  std::vector<double> confidence = {0.5};
  std::vector<double> reliability = {0.5};
};

// What of the path the antennas see of each other.
enum class PathMode {
  kLineOfSight,    // no ground in between reaches the straight ray
  kSingleHorizon,  // one obstacle is the horizon of both
  kDoubleHorizon,  // each has a horizon of its own
};
// Which formula gave the reference attenuation at the path's distance.
enum class PropagationMethod {
  kLineOfSight,   // nearer than the smooth-earth horizons
  kDiffraction,   // beyond them
  kTroposcatter,  // where scatter loses less than diffraction
};

// What the antennas see, and past a horizon what carries the signal: "line of sight",
// "single horizon, diffraction dominant", "double horizon, troposcatter dominant" and so on. Diffraction is
// dominant wherever scatter is not, also on obstructed paths within the smooth-earth horizons.
ZEL_API const char* pathModeText(PathMode mode, PropagationMethod method);
// "line of sight", "diffraction", "troposcatter".
ZEL_API const char* propagationMethodText(PropagationMethod method);
// "Equatorial" for 1 ... "Maritime Temperate, Over Sea" for 7; empty for any other code.
ZEL_API const char* radioClimateName(int climate);

struct LongleyRiceResult {
  // Empty when the loss was computed; else what was wrong, with the parameter's name and value. The other
  // members are set only without an error.
  std::string error;
  // The member of the request that the error is about ("frequencyMhz"), or empty.
  std::string parameter;

  double distanceKm = 0;
  double freeSpaceDb = 0;
  PathMode mode = PathMode::kLineOfSight;
  PropagationMethod method = PropagationMethod::kLineOfSight;
  std::vector<std::string> warnings;  // in words

  double terrainIrregularityM = 0;            // delta h: interdecile range of the heights about their trend
  std::array<double, 2> effectiveHeightsM{};  // transmitter, receiver
  std::array<double, 2> horizonDistancesM{};
  std::array<double, 2> horizonAnglesRad{};
  double surfaceRefractivity = 0;     // Ns as used, N-units
  double referenceAttenuationDb = 0;  // median beyond free space, in a reference atmosphere
  // Basic transmission loss in dB: lossDb[r][c] is for reliability[r] and confidence[c] of the request.
  std::vector<std::vector<double>> lossDb;
};

// Never throws for bad numbers: the error says what was wrong. The loss is always a number.
ZEL_API LongleyRiceResult computeLongleyRice(const LongleyRiceRequest& request);
// The same over elevations that are read where they lie; those of the request are not looked at.
ZEL_API LongleyRiceResult computeLongleyRice(const LongleyRiceRequest& request,
                                             std::span<const double> elevationsM);

}  // namespace zel

#endif  // ZEL_LONGLEY_RICE_H_
