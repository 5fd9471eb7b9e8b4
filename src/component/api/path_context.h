// What a computation over a path takes from its surroundings: settings, terrain, datum. As they are at each
// look (presentContext), or as they were at one moment (PathCalculator).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "component/component.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"
#include "zel/terrain.h"

namespace zel {

struct PathContext {
  SettingsReader settings;
  const Geodesy* geodesy = nullptr;
  std::shared_ptr<TerrainLibrary> terrain;
  std::function<std::unique_ptr<TerrainSampler>()> makeSampler;  // still without terrain
  std::string datum;                                             // as ModuleState::datumText
  NormalTable normalTable;
};

PathContext presentContext(Component& component);

// The public functions of these names, within a context. Whatever fails in the store passes through.
PathProfile computePathProfile(const PathContext& context, const PathProfileRequest& request);
std::vector<PathProfile> computePathProfiles(const PathContext& context, const PathProfileRequest& request,
                                             const std::vector<std::optional<double>>& factors);
PathLoss computePathLoss(const PathContext& context, const PathLossRequest& request);
SampledTerrain sampleTerrain(const PathContext& context, Position from, Position to, std::int32_t points,
                             std::int32_t method, int source);

}  // namespace zel
