// Profiles, losses and heights of many paths at once, from any thread.
//
// A PathCalculator has the settings of the bound application (without one, of the component's own,
// "zelProfiler01") as they were when it was opened: computePathProfile, computePathLoss and sampleTerrain of
// a moment, with the same figures to the last bit. It is opened on the component's thread, or on any while no
// ProfileControl is alive, on one at a time; its functions may be called from several threads at once.
// Terrain sources and the datum of the stations (StaDatum) are those of that moment too; the rasters are
// looked at as they are now. When something of it has changed, another calculator is opened: that costs some
// 50 us.
//
// Decoded terrain is shared with every other user of the process and bounded by the setting CacheMB.
#ifndef ZEL_PATH_CALCULATOR_H_
#define ZEL_PATH_CALCULATOR_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"
#include "zel/terrain.h"

namespace zel {

class ZEL_API PathCalculator {
 public:
  // Throws SettingsError (zel/settings.h) when the settings cannot be read, AutomationError on a foreign
  // thread. Reads no terrain yet.
  static std::shared_ptr<const PathCalculator> open();
  ~PathCalculator();
  PathCalculator(const PathCalculator&) = delete;
  PathCalculator& operator=(const PathCalculator&) = delete;

  // As the functions of the same requests; none throws for bad input or terrain.
  PathProfile profile(const PathProfileRequest& request) const;
  // One for each effective-earth factor in place of the request's own, as profile() of each; nothing is the
  // setting Prf_Crv. The terrain is sampled once for all of them.
  std::vector<PathProfile> profiles(const PathProfileRequest& request,
                                    const std::vector<std::optional<double>>& factors) const;
  PathLoss loss(const PathLossRequest& request) const;
  SampledTerrain sample(Position from, Position to, std::int32_t points, std::int32_t method,
                        int source) const;

  // What stands in for a missing argument of sample(): the settings CalcMethod and Prf_TRes, as used.
  std::int32_t method() const;
  int source() const;
  // What GetPathLoss takes, MHz: the setting Prf_Freq, and 100 when nothing is stored.
  double windowlessFrequencyMhz() const;

 private:
  struct Self;
  explicit PathCalculator(std::unique_ptr<Self> self);
  std::unique_ptr<Self> self_;
};

}  // namespace zel

#endif  // ZEL_PATH_CALCULATOR_H_
