// What a link has: losses, and for each k the worst obstacle, the clearance and the verdict.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "links/link_input.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"

namespace zel::host {

// Where profiles and losses come from; called from several threads.
struct PathSource {
  // One for each effective-earth factor, as PathCalculator::profiles.
  std::function<std::vector<PathProfile>(const PathProfileRequest&,
                                         const std::vector<std::optional<double>>&)>
      profiles;
  std::function<PathLoss(const PathLossRequest&)> loss;
};

struct EarthFactor {
  std::optional<double> k;  // without one the setting Prf_Crv
  double used = 0;          // what that is
  std::string suffix;       // of the columns; empty for the first
};

struct FigureOptions {
  std::vector<EarthFactor> factors{EarthFactor{}};  // one or more
  // Of the first Fresnel zone, free everywhere: what is called clear.
  double clearPercent = 60;
  std::optional<double> frequencyMhz;  // of rows without one; without it the setting Prf_Freq
};

struct ClearanceFigures {
  double k = 0;
  std::optional<PathObstacle> worst;
  const char* verdict = "";  // "clear", "marginal", "blocked", "unknown"; empty without a profile
};

struct LinkFigures {
  // Why something of it is missing; empty when nothing is.
  std::string error;
  std::optional<double> distanceKm, bearingDeg, freeSpaceDb, modeledDb, frequencyMhz;
  std::optional<int> fromHeightM, toHeightM;  // as used
  const char* mode = "";                      // of the modeled loss
  std::vector<ClearanceFigures> clearances;   // of each factor
  std::vector<std::string> notes, warnings;
  std::optional<TerrainProvenance> terrain;
  std::optional<PathLossModelInputs> model;
};

// The figures are those of computePathProfile and computePathLoss. What one of the two cannot compute is an
// error, beside what the other has.
LinkFigures linkFigures(const LinkInput& input, const PathSource& source, const FigureOptions& options);

// The verdict of a profile when so much of the first zone is called clear: that of the profile itself for
// 60 %.
const char* verdictOf(const PathProfile& profile, double clearPercent);

}  // namespace zel::host
