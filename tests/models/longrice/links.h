// Links that the parts of the irregular terrain model are tested with.
#pragma once

#include <cmath>
#include <cstddef>

#include "grounds.h"
#include "models/longrice/longley_rice.h"

namespace zel::longrice {

inline Parameters usualParameters(double frequency = 450) {
  Parameters parameters;
  parameters.frequency = frequency;
  return parameters;
}

inline Parameters overSea(double frequency, Polarization polarization = Polarization::kHorizontal) {
  Parameters parameters;
  parameters.frequency = frequency;
  parameters.polarization = polarization;
  parameters.climate = 7;
  parameters.permittivity = 80;
  parameters.conductivity = 5;
  return parameters;
}

// A path over the smooth earth: the antennas' horizons are those of their heights, in metres above ground.
inline PathTerrain smoothTerrain(double curvature, double transmitter, double receiver, double distance) {
  PathTerrain terrain;
  terrain.distance = distance;
  terrain.structuralHeights = terrain.effectiveHeights = {transmitter, receiver};
  for (std::size_t j = 0; j < 2; ++j) {
    terrain.horizonDistances[j] = std::sqrt(2 * terrain.effectiveHeights[j] / curvature);
    terrain.horizonAngles[j] = -std::sqrt(2 * terrain.effectiveHeights[j] * curvature);
  }
  const bool seen = terrain.horizonDistances[0] + terrain.horizonDistances[1] >= distance;
  terrain.mode = seen ? PathMode::kLineOfSight : PathMode::kDoubleHorizon;
  return terrain;
}

inline Link smoothLink(const Parameters& parameters, double transmitter, double receiver, double distance) {
  const Environment environment = environmentOf(parameters);
  return {environment, smoothTerrain(environment.effectiveCurvature, transmitter, receiver, distance)};
}

inline GrowingPath pathOver(const Model& model, const Ground& ground, double spacing, double transmitter) {
  GrowingPath path = model.path(spacing, transmitter);
  path.append(ground);
  return path;
}

inline Prediction predicted(const Parameters& parameters, const Ground& ground, double spacing,
                            double transmitter, double receiver) {
  const Model model(parameters);
  return model.predict(pathOver(model, ground, spacing, transmitter), receiver);
}

// A plausible set of parameters. Vertical polarization over sea is kept to frequencies where the rounded
// earth has a value past near horizons too.
inline Parameters anyParameters(Random& random) {
  Parameters parameters;
  parameters.frequency = random.decades(20, 20000);
  parameters.climate = static_cast<int>(random.below(7)) + 1;
  const bool sea = random.below(4) == 0;
  const bool vertical = random.below(2) == 0 && !(sea && parameters.frequency < 300);
  parameters.polarization = vertical ? Polarization::kVertical : Polarization::kHorizontal;
  parameters.permittivity = sea ? 80 : random.uniform(4, 30);
  parameters.conductivity = sea ? 5 : random.decades(0.001, 0.05);
  parameters.surfaceRefractivity = random.uniform(250, 400);
  return parameters;
}

// A path over any ground with plausible antennas. Ends of waves and bowls may leave a bare 0.5 m antenna, so
// that all regimes turn up: in sight, over one edge or two, diffraction and scatter.
inline Link anyLink(Random& random) {
  const Model model(anyParameters(random));
  const std::size_t samples = 3 + random.below(300);
  const Ground ground = anyGround(random, samples);
  const double length = random.decades(1e3, 800e3);
  const GrowingPath path =
      pathOver(model, ground, length / static_cast<double>(samples - 1), random.decades(0.5, 1000));
  return {model.environment(), path.describe(random.decades(0.5, 1000))};
}

}  // namespace zel::longrice
