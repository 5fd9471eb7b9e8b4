// The model's own names for what it found, as the public headers have them.
#pragma once

#include "models/longrice/path_terrain.h"
#include "models/longrice/reference_attenuation.h"
#include "zel/longley_rice.h"

namespace zel {

inline PathMode publicMode(longrice::PathMode mode) {
  switch (mode) {
    case longrice::PathMode::kSingleHorizon:
      return PathMode::kSingleHorizon;
    case longrice::PathMode::kDoubleHorizon:
      return PathMode::kDoubleHorizon;
    case longrice::PathMode::kLineOfSight:
      break;
  }
  return PathMode::kLineOfSight;
}

inline PropagationMethod publicMethod(longrice::PropagationMethod method) {
  switch (method) {
    case longrice::PropagationMethod::kDiffraction:
      return PropagationMethod::kDiffraction;
    case longrice::PropagationMethod::kTroposcatter:
      return PropagationMethod::kTroposcatter;
    case longrice::PropagationMethod::kLineOfSight:
      break;
  }
  return PropagationMethod::kLineOfSight;
}

}  // namespace zel
