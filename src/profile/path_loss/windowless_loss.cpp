#include "profile/path_loss/windowless_loss.h"

#include <utility>

#include "profile/path_loss/modeled_loss.h"
#include "profile/sampling/ground_heights.h"
#include "profile/sampling/sampler_messages.h"
#include "profile/sampling/terrain_sampling.h"

namespace zel {

WindowlessLoss::WindowlessLoss(Services services, SettingsReader settings)
    : services_(std::move(services)),
      settings_(std::move(settings)),
      trapped_("modTerPro", *services_.trap) {}

float WindowlessLoss::NVCalcPathLoss() {
  return trapped_.run(":NVCalcPathLoss:", [this] { return calculate(); });
}

// The order is given: so a sampling or a parameter that fails is told even where the frequency would have
// made the loss 0.
float WindowlessLoss::calculate() {
  const ModuleState& module = *services_.module;
  const WindowlessSettings settings = readWindowlessSettings(settings_);
  const double distance = services_.geodesy->DistanceAndBearing(module.station1, module.station2).distance;
  trapped_.step(1);
  const std::int16_t points = modelPoints(settings.density, distance);
  trapped_.step(2);
  const SampleArray<float> elevations = sampledGround(settings, points);
  trapped_.step(3);
  const ModelParameters parameters =
      modelParameters(readItmSettings(settings_, SettingsUser::kWindowless), *services_.normalTable);
  trapped_.step(4);
  if (!isModelFrequency(settings.frequency)) return 0;
  trapped_.step(5);
  const float spacing = modelSpacing(distance, points);
  trapped_.step(6);
  return modeledLoss({elevations.span(), spacing, module.antennaHeights, settings.frequency}, parameters);
}

SampleArray<float> WindowlessLoss::sampledGround(const WindowlessSettings& settings, std::int16_t points) {
  const std::shared_ptr<TerrainData> terrain = services_.terrain();
  if (sampler_ == nullptr) sampler_ = services_.makeSampler();
  RawSamples sampled =
      sampleTerrain(*sampler_, terrain,
                    stationToStationRequest(services_.module->station1, services_.module->station2, points,
                                            settings.calcMethod, settings.source));
  if (const SamplerMessage* message = samplerMessage(sampled.status)) throw samplerFailure(*message);
  return groundHeights(std::move(sampled.heights), *sampler_, *services_.errorLog, *services_.hardStop);
}

}  // namespace zel
