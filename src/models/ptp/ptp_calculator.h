// PtpCalculator: diffraction and clutter loss from a transmitter to a receiver over a terrain profile.
//
// The way through this folder:
//     elevations -> SharedPtpPath -> GrowingPtpPath   horizons, fit of a smooth earth
//                -> deltaBullingtonLoss               bullington, spherical_earth, knife_edge
//     antennas   -> clutterLoss                       terminal correction at both ends
// Sources: Recommendations ITU-R P.526 (diffraction) and ITU-R P.2108 (clutter); the section stands beside
// the line.
//
// Both losses come on top of free space, in dB. Where a clutter category is set, an antenna below the top of
// the cover has a clutter loss, and the diffraction is computed from the top of the cover. The same cover is
// taken for both ends, so that the sum of the losses is the same in both directions.
//
// A calculator is for one path. One that is given a SharedPtpPath takes up what calculators before it worked
// out about the same ground, with results equal to the last bit to those of a calculator of its own.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "models/ptp/delta_bullington.h"
#include "models/ptp/parameters.h"
#include "models/ptp/shared_ptp_path.h"

namespace zel::ptp {

class PtpCalculator {
 public:
  // Stands for a loss that has no value.
  static constexpr double kNoLoss = -999;

  explicit PtpCalculator(const PtpParameters& parameters = {}) : parameters_(parameters) {}
  // The ground is shared with other calculators and outlives this one.
  PtpCalculator(const PtpParameters& parameters, SharedPtpPath& shared)
      : parameters_(parameters), shared_(&shared) {}

  // Each throws ParameterError for a value outside its limits, and leaves what was set before.

  // Metres above sea level, transmitter first; not copied, so they outlive the reading of the losses.
  void setElevations(std::span<const float> elevations);
  void setSpacing(double kilometres);
  void setReceiverHeight(double metres);  // above ground
  // How many of the elevations, from the first on, are the path; a whole number, 2 or more.
  void setSampleCount(double count);
  void setFrequency(double megahertz);
  void setTransmitterHeight(double metres);  // above sea level

  // Each throws ParameterError where an input is missing, the path has not so many elevations, an elevation
  // is no height, the transmitter is below its ground, or a parameter is outside its limits. Neither is ever
  // without a finite value otherwise.

  // dB, 0 or more.
  double diffractionLoss();
  // dB, of both ends, 0 or more; 0 without a category, kNoLoss where the correction has no value (see
  // clutter_loss.h).
  double clutterLoss() const;

  // The diffraction loss with its parts.
  DiffractionLoss diffraction();

 private:
  std::span<const float> path() const;
  double transmitterAboveGround() const;

  PtpParameters parameters_;
  SharedPtpPath own_;
  SharedPtpPath* shared_ = nullptr;  // null: its own
  std::span<const float> elevations_;
  std::optional<double> spacing_;            // km
  std::optional<double> receiverHeight_;     // metres above ground
  std::optional<std::size_t> count_;         // samples
  std::optional<double> frequency_;          // MHz
  std::optional<double> transmitterHeight_;  // metres above sea level
};

}  // namespace zel::ptp
