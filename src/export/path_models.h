// Both radio models from a transmitter to one sample after the other of a stretch of ground: each path is the
// one before, made longer by a sample, and costs what the sample adds.
//
// The stretch begins under the transmitter. Losses are in dB, equal to the last bit to those of a separate
// run over the same samples.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "models/longrice/longley_rice.h"
#include "models/ptp/ptp_calculator.h"
#include "profile/path_loss/model_parameters.h"
#include "profile/settings/readers.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {

inline constexpr double kMetresPerKm = 1000;

// What both models are told. The elevations outlive the models.
struct PathStretch {
  std::span<const float> elevations;             // metres above sea level, the transmitter's sample first
  double spacing = 0;                            // km
  float spacingMetres = 0;                       // as the irregular terrain model is told it
  std::array<std::int16_t, 2> antennaHeights{};  // metres above ground, transmitting and receiving
  float frequency = 0;                           // MHz
};

// A run of the state's samples; it looks into the state. Empty for an empty run. Throws RuntimeError 9 for
// samples outside the ground.
PathStretch pathStretch(const ProfileViewState& state, const SampleRange& samples);

class LongleyRiceAlongPath {
 public:
  LongleyRiceAlongPath(const PathStretch& stretch, const ModelParameters& parameters);

  // The basic transmission loss over the first `samples` of the stretch, at least two and not fewer than
  // before. Throws the model's ParameterError (number 5) when it has none.
  double lossOver(std::size_t samples);

 private:
  PathStretch stretch_;
  ModelParameters parameters_;
  std::optional<longrice::Model> model_;
  std::optional<longrice::GrowingPath> path_;
};

// Beyond free space.
struct PointToPointLosses {
  double diffraction = 0;
  double clutter = 0;
};

class PointToPointAlongPath {
 public:
  PointToPointAlongPath(const PathStretch& stretch, const ptp::PtpParameters& parameters);

  // Over the first `samples` of the stretch. Nothing where a loss has no value: where the calculator says so,
  // and where it fails, so that no line carries the losses of another.
  std::optional<PointToPointLosses> lossesOver(std::size_t samples);

 private:
  PathStretch stretch_;
  ptp::PtpParameters parameters_;
  ptp::SharedPtpPath shared_;
};

// The settings as the model is told them. Throws ParameterError (number 5) for what it does not take: once
// before a file is begun, where the calculator would leave its columns out of every line.
ptp::PtpParameters pointToPointParameters(const PtpSettings& settings);

}  // namespace zel
