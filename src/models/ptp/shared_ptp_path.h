// Ground that several calculators share: each calculator's path is the one before, made longer, as the paths
// from one transmitter to every sample of a profile are.
//
// The heights that a path has in common with the one before are compared byte by byte with those, and not
// worked through again: a comparison of 5,000 heights took 0.7 us where it was measured. A path that begins
// otherwise (another height, spacing, transmitter, a shorter one) starts anew, so that a result never depends
// on what was asked before. Keeps 4 bytes a sample beside the path.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "models/ptp/growing_ptp_path.h"

namespace zel::ptp {

// For one thread at a time.
class SharedPtpPath {
 public:
  // The path over all the elevations, metres above sea level, until the next call. Kilometres, a_e in km,
  // metres above sea level. Throws ParameterError as GrowingPtpPath does.
  const GrowingPtpPath& over(std::span<const float> elevations, double spacing, double effectiveRadius,
                             double transmitterTop);

 private:
  bool isContinuedBy(std::span<const float> elevations, double spacing, double effectiveRadius,
                     double transmitterTop) const;

  std::optional<GrowingPtpPath> path_;
  std::vector<float> elevations_;  // that the path is over
};

}  // namespace zel::ptp
