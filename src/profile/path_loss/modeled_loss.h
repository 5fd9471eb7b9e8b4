// The modeled loss of a path: what the irregular terrain model makes of its samples.
//
// The stage that the windowless calculation, the profile window and the exports share. It knows neither
// stations nor settings.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "models/longrice/longley_rice.h"
#include "profile/path_loss/model_parameters.h"
#include "profile/settings/readers.h"

namespace zel {

struct ModelPath {
  std::span<const float> elevations;             // metres above sea level, station 1 first
  float spacing = 0;                             // metres, as the model is told
  std::array<std::int16_t, 2> antennaHeights{};  // metres above ground, of station 1 and 2
  float frequency = 0;                           // MHz
};

// Whether the model is asked for a frequency in MHz: 20 to 20000, both included. Outside, the loss is 0.
bool isModelFrequency(float frequency);

// The number of samples of a path of so many km: points per kilometre x distance + 1, half to even, at most
// the maximum. Throws RuntimeError 6 when it does not fit 16 bits. 0 and less are no path, as the sampler
// will say.
std::int16_t modelPoints(const CalculationSettings& density, double distance);

// The spacing in metres that the model is told for a path of so many km. The division by the number of
// points, where the samples have one interval less, is meant: the model sees the path shorter by one part in
// the number of points. Throws RuntimeError 11 without points.
float modelSpacing(double distance, std::int16_t points);

// Basic transmission loss in dB, positive. Throws ParameterError (a RuntimeError, number 5) when the model
// has none, RuntimeError 6 for more samples than 16 bits count.
float modeledLoss(const ModelPath& path, const ModelParameters& parameters);

// The parameters and a frequency in MHz as the model is told them.
longrice::Parameters longleyRiceParameters(const ModelParameters& parameters, float frequency);

// Everything else that the model knows of the same path: mode, method, warnings.
longrice::Prediction modelPrediction(const ModelPath& path, const ModelParameters& parameters);

}  // namespace zel
