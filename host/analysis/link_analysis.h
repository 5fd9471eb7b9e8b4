// Loss, clearance and verdict of the plan's links, computed one after the other while the window stays
// responsive.
//
// The terrain along a link is read by a thread in the background first; the rest, some milliseconds over
// terrain that is in memory, runs on the user-interface thread between events. Results are those of
// computePathProfile and computePathLoss.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "planning/plan.h"
#include "zel/path_profile.h"
#include "zel/terrain_map.h"

namespace zel::host {

struct LinkStretch {
  enum class Kind {
    kClear,
    kMarginal,
    kBlocked,
    kUnknown
  };  // as the verdict, of a stretch; unknown is over a void
  Kind kind = Kind::kClear;
  double fromKm = 0, toKm = 0;  // from the link's start
  std::vector<Position>
      positions;  // in the plan's datum, both ends included; few: enough for a line on the map
};

struct LinkResult {
  bool done = false;  // false: waiting or under way, and what follows is of the time before
  // Why there are no figures: the ground cannot be used (no terrain, impossible heights), with the place;
  // empty when there are.
  std::string error;
  bool noTerrain = false;           // the error is that no raster covers all of the way
  std::optional<Position> outside;  // the first such place, in the plan's datum, where it is known
  // Why the profile window cannot show the link although there may be figures; empty when it can.
  std::string profileProblem;
  double distanceKm = 0, bearingDeg = 0;
  double freeSpaceDb = 0;
  std::optional<double> modeledDb;
  double frequencyMhz = 0, k = 0;
  PathVerdict verdict = PathVerdict::kUnknown;
  std::optional<PathObstacle> worst;
  std::vector<LinkStretch> stretches;
  std::vector<std::string> notes;  // what it was computed from, roundings, warnings
  std::string terrain;             // "1 second (bundled sample terrain)"
};

class LinkAnalysis {
 public:
  // The plan is looked at when a link's turn comes and must outlive this.
  explicit LinkAnalysis(const Plan& plan);
  ~LinkAnalysis();

  // What waits is read anew from the new one.
  void setTerrain(std::shared_ptr<const TerrainMap> terrain);
  // These have to be computed (anew); links that are gone are forgotten. The result of before stays to be
  // seen until then.
  void update(const std::vector<LinkId>& links);
  void updateAll();
  // Nothing is left to be seen or to be computed, as of a plan that is gone.
  void forgetAll();
  // Before all others, as the one that is selected.
  void first(LinkId link);
  void pause(bool paused);
  // Nothing more is read or computed. Does not wait: the threads of others may be kept waiting by this one's.
  void end();

  const LinkResult* find(LinkId link) const;
  std::size_t waiting() const;

  std::function<void(LinkId)> onResult;  // on the user-interface thread
  std::function<void()> onProgress;      // waiting() has changed

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

// The result of one link at once, as the analysis computes it. Never throws for bad terrain.
LinkResult analyseLink(const Plan& plan, const Link& link);

}  // namespace zel::host
