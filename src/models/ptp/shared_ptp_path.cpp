#include "models/ptp/shared_ptp_path.h"

#include <cstring>

namespace zel::ptp {

bool SharedPtpPath::isContinuedBy(std::span<const float> elevations, double spacing, double effectiveRadius,
                                  double transmitterTop) const {
  return path_ && path_->spacing() == spacing && path_->effectiveRadius() == effectiveRadius &&
         path_->transmitterTop() == transmitterTop && !elevations_.empty() &&
         elevations_.size() == path_->samples() && elevations_.size() <= elevations.size() &&
         std::memcmp(elevations_.data(), elevations.data(), elevations_.size() * sizeof(float)) == 0;
}

const GrowingPtpPath& SharedPtpPath::over(std::span<const float> elevations, double spacing,
                                          double effectiveRadius, double transmitterTop) {
  if (!isContinuedBy(elevations, spacing, effectiveRadius, transmitterTop)) {
    path_.reset();
    elevations_.clear();
    path_.emplace(spacing, effectiveRadius, transmitterTop);
  }
  const auto added = elevations.subspan(elevations_.size());
  path_->append(added);
  elevations_.insert(elevations_.end(), added.begin(), added.end());
  return *path_;
}

}  // namespace zel::ptp
