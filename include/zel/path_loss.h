// The loss of a path over the terrain of the settings: free space, and the Longley-Rice model both ways.
//
// The modeled loss is the number that ProfileControl's GetPathLoss gives for the same stations, frequency and
// settings, made by the same calculation: N = round(points per km x D + 1) samples from station to station
// (at most the maximum), handed to the model with a spacing of D / N, so that the model sees the path shorter
// by one part in N; confidence and reliability become two-decimal normal deviates; the result is a 32-bit
// float. computeLongleyRice (zel/longley_rice.h) has none of these roundings.
//
// The function belongs to the thread of the ProfileControl objects. Without a bound host it uses the settings
// of the component's own application object, "zelProfiler01".
#ifndef ZEL_PATH_LOSS_H_
#define ZEL_PATH_LOSS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"
#include "zel/longley_rice.h"
#include "zel/terrain.h"

namespace zel {

struct PathLossRequest {
  Position from;
  Position to;
  // Metres above ground, 0 or more; whole metres are used, rounded half to even. Without one the settings
  // Prf_HtL and Prf_HtR hold.
  std::optional<double> fromHeight;
  std::optional<double> toHeight;
  // MHz; without one the setting Prf_Freq, 950 by default. (GetPathLoss takes 100 MHz when nothing is
  // stored.)
  std::optional<double> frequencyMhz;
  // Without it reverseModeledDb has no value, and half of the work is saved.
  bool wantReverse = true;
};

// The model's parameters, section "ITM" of the settings, as used.
struct PathLossModelInputs {
  Polarization polarization = Polarization::kHorizontal;
  int climate = 5;                 // 1 to 7; 5 where the setting is none of them
  double permittivity = 0;         // dimensionless
  double conductivity = 0;         // S/m
  double surfaceRefractivity = 0;  // N-units
  double confidence = 0;           // fraction, hundredths
  double reliability = 0;          // fraction, hundredths
  double confidenceDeviate = 0;    // two-decimal standard normal deviate, dimensionless
  double reliabilityDeviate = 0;
};

struct PathLoss {
  // As SampledTerrain::status, and 5: the request itself cannot be computed. Other members are set only with
  // 0.
  int status = 0;
  std::string error;

  Position from, to;  // as used
  double distanceKm = 0;
  double bearingDeg = 0;                          // from the start to the end, clockwise from north
  std::int32_t points = 0;                        // samples, both ends included
  double modelSpacingM = 0;                       // as the model was told: distance / points
  double spacingM = 0;                            // as the samples lie: distance / (points - 1)
  std::int16_t startHeightM = 0, endHeightM = 0;  // antennas above ground, as used
  // Ground above sea level, voids left out; not a number for an end over a void. The model is given 0 m for a
  // void, as GetPathLoss gives it, and a warning counts them; a path of nothing but voids is refused.
  double startGroundM = 0, endGroundM = 0;
  double minimumM = 0, maximumM = 0, averageM = 0;
  double frequencyMhz = 0;
  double freeSpaceDb = 0;
  // Without a value when the frequency lies outside 20 to 20000 MHz, where the model is not asked.
  std::optional<double> modeledDb;         // from the start to the end
  std::optional<double> reverseModeledDb;  // from the end to the start
  // Of the way from the start to the end; set with a modeled loss.
  PathMode mode = PathMode::kLineOfSight;
  PropagationMethod method = PropagationMethod::kLineOfSight;
  double terrainIrregularityM = 0;  // delta h: interdecile range of the heights about their trend
  // Of the start and the end.
  std::array<double, 2> effectiveHeightsM{};
  std::array<double, 2> horizonDistancesM{};
  std::array<double, 2> horizonAnglesRad{};
  double referenceAttenuationDb = 0;  // median beyond free space, in a reference atmosphere
  PathLossModelInputs model;

  TerrainProvenance terrain;
  std::vector<std::string> notes;     // defaults taken, roundings and clampings made, in words
  std::vector<std::string> warnings;  // of settings misread, the terrain and the model, in words
};

// Never throws for bad input: the status and the error say what was wrong. Throws SettingsError
// (zel/settings.h) when the settings cannot be read.
ZEL_API PathLoss computePathLoss(const PathLossRequest& request);

}  // namespace zel

#endif  // ZEL_PATH_LOSS_H_
