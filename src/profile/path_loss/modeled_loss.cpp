#include "profile/path_loss/modeled_loss.h"

#include <algorithm>
#include <vector>

#include "foundation/rounding.h"
#include "models/longrice/calc_itm.h"
#include "profile/calculation/checked_math.h"
#include "profile/real32.h"

namespace zel {
namespace {

constexpr float kLowestFrequency = 20;      // MHz
constexpr float kHighestFrequency = 20000;  // MHz

}  // namespace

bool isModelFrequency(float frequency) {
  return frequency >= kLowestFrequency && frequency <= kHighestFrequency;
}

std::int16_t modelPoints(const CalculationSettings& density, double distance) {
  const std::int32_t points = toInt32(density.pointsPerKm * distance + 1.0);
  return toInt16(std::min<std::int32_t>(points, density.maxPoints));
}

float modelSpacing(double distance, std::int16_t points) {
  return toReal32(divided(distance, points) * 1000.0);
}

float modeledLoss(const ModelPath& path, const ModelParameters& parameters) {
  const std::int16_t points = toInt16(static_cast<double>(path.elevations.size()));
  double loss = 0;
  CalcITM(points, path.spacing, path.elevations.data(), path.antennaHeights[0], path.antennaHeights[1],
          parameters.polarization, parameters.climate, parameters.permittivity, parameters.conductivity,
          static_cast<double>(path.frequency), parameters.refractivity, &parameters.confidence, 1,
          &parameters.reliability, 1, &loss);
  return toReal32(loss);
}

longrice::Parameters longleyRiceParameters(const ModelParameters& parameters, float frequency) {
  longrice::Parameters model;
  model.frequency = static_cast<double>(frequency);
  model.polarization =
      parameters.polarization == 0 ? longrice::Polarization::kHorizontal : longrice::Polarization::kVertical;
  model.climate = parameters.climate;
  model.permittivity = parameters.permittivity;
  model.conductivity = parameters.conductivity;
  model.surfaceRefractivity = parameters.refractivity;
  return model;
}

longrice::Prediction modelPrediction(const ModelPath& path, const ModelParameters& parameters) {
  const longrice::Model model(longleyRiceParameters(parameters, path.frequency));
  longrice::GrowingPath ground = model.path(static_cast<double>(path.spacing), path.antennaHeights[0]);
  ground.reserve(path.elevations.size());
  ground.append(std::vector<double>(path.elevations.begin(), path.elevations.end()));
  return model.predict(ground, path.antennaHeights[1]);
}

}  // namespace zel
