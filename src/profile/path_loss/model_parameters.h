// The irregular terrain model's parameters as it is given them: the stored ones, with confidence and
// reliability turned into normal deviates.
#pragma once

#include <cstdint>

#include "component/services/normal_table.h"
#include "profile/settings/readers.h"

namespace zel {

struct ModelParameters {
  std::int16_t polarization = 0;  // 0 horizontal, anything else vertical
  std::int16_t climate = 0;       // 1 to 7
  double permittivity = 0;        // of the ground, relative, dimensionless
  double conductivity = 0;        // of the ground, S/m
  double refractivity = 0;        // at the surface, N-units
  double confidence = 0;          // standard normal deviate, dimensionless
  double reliability = 0;         // standard normal deviate, dimensionless

  friend bool operator==(const ModelParameters&, const ModelParameters&) = default;
};

// Throws RuntimeError 6 and 9 as levelDeviate does.
ModelParameters modelParameters(const ItmSettings& settings, const NormalTable& table);

}  // namespace zel
