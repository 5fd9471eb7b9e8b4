#include "profile/path_loss/model_parameters.h"

#include "profile/path_loss/level_deviate.h"

namespace zel {

ModelParameters modelParameters(const ItmSettings& settings, const NormalTable& table) {
  ModelParameters parameters;
  parameters.polarization = settings.polarization;
  parameters.climate = settings.climate;
  parameters.permittivity = settings.permittivity;
  parameters.conductivity = settings.conductivity;
  parameters.refractivity = settings.refractivity;
  parameters.confidence = levelDeviate(settings.confidence, table);
  parameters.reliability = levelDeviate(settings.reliability, table);
  return parameters;
}

}  // namespace zel
