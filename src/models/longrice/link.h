// A path in its environment, with what every part of the irregular terrain model asks of the two.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "models/longrice/environment.h"
#include "models/longrice/path_terrain.h"

namespace zel::longrice {

struct Link {
  Environment environment;
  PathTerrain terrain;
  std::array<double, 2> smoothHorizonDistances{};  // d_Lsj, metres (Algorithm 3.5)
  double horizonDistance = 0;                      // d_L, of both together, metres (3.6)
  double smoothHorizonDistance = 0;                // d_Ls, metres (3.7)
  double horizonAngle = 0;                         // theta_e, radians (3.8)

  Link(const Environment& givenEnvironment, const PathTerrain& givenTerrain)
      : environment(givenEnvironment), terrain(givenTerrain) {
    for (std::size_t j = 0; j < 2; ++j)
      smoothHorizonDistances[j] = std::sqrt(2 * terrain.effectiveHeights[j] / environment.effectiveCurvature);
    smoothHorizonDistance = smoothHorizonDistances[0] + smoothHorizonDistances[1];
    horizonDistance = terrain.horizonDistances[0] + terrain.horizonDistances[1];
    horizonAngle = std::max(terrain.horizonAngles[0] + terrain.horizonAngles[1],
                            -horizonDistance * environment.effectiveCurvature);
  }

  // theta(d) = theta_e + gamma_e d: the angle between the horizon rays at a distance, radians.
  double angularDistance(double distance) const {
    return horizonAngle + distance * environment.effectiveCurvature;
  }
};

}  // namespace zel::longrice
