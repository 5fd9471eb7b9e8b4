#include "profile/view_state/profile_view_state.h"

#include "profile/real32.h"

namespace zel {

float ProfileViewState::fresnelHeight(std::int32_t sample) const {
  if (!fresnel.empty()) return fresnel[sample];
  const PlotIndex index = plotIndex();
  return toReal32(index.lineOfSightAt(lineOfSight, index.sampleX(sample)));
}

ProfileViewState loadedViewState(const ModuleState& module, const SettingsReader& reader,
                                 const UnitsTable& units, bool contour) {
  const auto& heights = module.antennaHeights;
  const WindowSettings settings = readWindowSettings(reader, {heights[0] >= 0, heights[1] >= 0, contour});

  ProfileViewState state;
  ProfileInputs& inputs = state.inputs;
  inputs.start = module.station1;
  inputs.end = module.station2;
  inputs.antennaHeights = {settings.startHeight.value_or(heights[0]),
                           settings.endHeight.value_or(heights[1])};
  inputs.k = settings.k;
  inputs.curve = settings.curve;
  inputs.frequency = settings.frequency;
  inputs.fresnelFraction = static_cast<float>(settings.fresnelPercent) / 100.0F;
  inputs.fresnel = settings.fresnel;
  inputs.source = settings.source;
  inputs.calcMethod = settings.calcMethod;
  inputs.dispUnits = settings.dispUnits;
  inputs.units = unitsFor(units, settings.dispUnits);
  inputs.contour = contour;
  return state;
}

}  // namespace zel
