#include "links/link_figures.h"

#include <algorithm>
#include <utility>

#include "zel/geodesic.h"

namespace zel::host {
namespace {

constexpr double kUsualClear = 60;  // percent; the bound of PathVerdict

void addTexts(std::vector<std::string>& texts, std::vector<std::string>&& more) {
  for (std::string& text : more)
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(std::move(text));
}

class Figures {
 public:
  Figures(const LinkInput& input, const PathSource& source, const FigureOptions& options)
      : input_(input), source_(source), options_(options) {}

  LinkFigures take() {
    figures_.clearances.resize(options_.factors.size());
    figures_.error = input_.error;
    if (!figures_.error.empty()) {
      layOut();
      return std::move(figures_);
    }
    const std::string problem = profiles();
    const std::string lossProblem = loss();
    if (!problem.empty())
      figures_.error = problem;
    else if (!lossProblem.empty())
      figures_.error = "no modeled loss: " + lossProblem;
    if (!figures_.distanceKm) layOut();
    return std::move(figures_);
  }

 private:
  template <typename Request>
  Request request() const {
    Request request;
    request.from = input_.from;
    request.to = input_.to;
    request.fromHeight = input_.fromHeight;
    request.toHeight = input_.toHeight;
    request.frequencyMhz = input_.frequencyMhz ? input_.frequencyMhz : options_.frequencyMhz;
    return request;
  }

  template <typename Result>
  void takeShared(Result& result) {
    figures_.distanceKm = result.distanceKm;
    figures_.bearingDeg = result.bearingDeg;
    figures_.freeSpaceDb = result.freeSpaceDb;
    figures_.frequencyMhz = result.frequencyMhz;
    figures_.fromHeightM = result.startHeightM;
    figures_.toHeightM = result.endHeightM;
    addTexts(figures_.notes, std::move(result.notes));
    addTexts(figures_.warnings, std::vector<std::string>(result.terrain.warnings));
    if (!figures_.terrain) figures_.terrain = std::move(result.terrain);
  }

  // What needs no ground.
  void layOut() {
    if (!input_.placed) return;
    const GeodesicLine line = geodesicLine(input_.from, input_.to, 2);
    figures_.distanceKm = line.distanceKm;
    figures_.bearingDeg = line.bearingDeg;
  }

  std::string profiles() {
    std::vector<std::optional<double>> factors;
    for (const EarthFactor& factor : options_.factors) factors.push_back(factor.k);
    std::size_t index = 0;
    for (PathProfile& profile : source_.profiles(request<PathProfileRequest>(), factors)) {
      if (profile.status != 0) return profile.error;
      figures_.clearances[index++] = {profile.k, profile.worst, verdictOf(profile, options_.clearPercent)};
      takeShared(profile);
    }
    return {};
  }

  std::string loss() {
    auto wanted = request<PathLossRequest>();
    wanted.wantReverse = false;
    PathLoss loss = source_.loss(wanted);
    if (loss.status != 0) return loss.error;
    figures_.modeledDb = loss.modeledDb;
    if (loss.modeledDb) figures_.mode = pathModeText(loss.mode, loss.method);
    figures_.model = loss.model;
    takeShared(loss);
    addTexts(figures_.warnings, std::move(loss.warnings));
    return {};
  }

  const LinkInput& input_;
  const PathSource& source_;
  const FigureOptions& options_;
  LinkFigures figures_;
};

}  // namespace

const char* verdictOf(const PathProfile& profile, double clearPercent) {
  const bool decided = profile.verdict == PathVerdict::kClear || profile.verdict == PathVerdict::kMarginal;
  if (!decided || clearPercent == kUsualClear || !profile.worst) return verdictText(profile.verdict);
  return verdictText(profile.worst->clearancePercent >= clearPercent ? PathVerdict::kClear
                                                                     : PathVerdict::kMarginal);
}

LinkFigures linkFigures(const LinkInput& input, const PathSource& source, const FigureOptions& options) {
  return Figures(input, source, options).take();
}

}  // namespace zel::host
