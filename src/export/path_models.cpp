#include "export/path_models.h"

#include "models/ptp/clutter_loss.h"
#include "models/ptp/input_limits.h"
#include "profile/path_loss/modeled_loss.h"
#include "profile/real32.h"

namespace zel {

PathStretch pathStretch(const ProfileViewState& state, const SampleRange& samples) {
  PathStretch stretch;
  stretch.spacing = state.path.spacing;
  stretch.spacingMetres = toReal32(state.path.spacing * kMetresPerKm);
  stretch.antennaHeights = state.inputs.antennaHeights;
  stretch.frequency = state.inputs.frequency;
  if (samples.first > samples.last) return stretch;
  if (samples.first < 1 || samples.last > state.elevation.size()) throw RuntimeError::subscriptOutOfRange();
  stretch.elevations =
      state.elevation.span().subspan(static_cast<std::size_t>(samples.first - 1),
                                     static_cast<std::size_t>(samples.last - samples.first) + 1);
  return stretch;
}

LongleyRiceAlongPath::LongleyRiceAlongPath(const PathStretch& stretch, const ModelParameters& parameters)
    : stretch_(stretch), parameters_(parameters) {}

// What a separate run would refuse is refused here by the first run, not when this is made.
double LongleyRiceAlongPath::lossOver(std::size_t samples) {
  if (!path_) {
    model_.emplace(longleyRiceParameters(parameters_, stretch_.frequency));
    path_.emplace(model_->path(double{stretch_.spacingMetres}, stretch_.antennaHeights[0]));
    path_->reserve(stretch_.elevations.size());
  }
  for (std::size_t i = path_->samples(); i < samples; ++i) path_->append(double{stretch_.elevations[i]});
  return model_->predict(*path_, stretch_.antennaHeights[1])
      .loss(parameters_.reliability, parameters_.confidence);
}

PointToPointAlongPath::PointToPointAlongPath(const PathStretch& stretch, const ptp::PtpParameters& parameters)
    : stretch_(stretch), parameters_(parameters) {}

std::optional<PointToPointLosses> PointToPointAlongPath::lossesOver(std::size_t samples) {
  PointToPointLosses losses;
  try {
    ptp::PtpCalculator calculator(parameters_, shared_);
    calculator.setElevations(stretch_.elevations.first(samples));
    calculator.setSpacing(stretch_.spacing);
    calculator.setReceiverHeight(stretch_.antennaHeights[1]);
    calculator.setSampleCount(static_cast<double>(samples));
    calculator.setFrequency(double{stretch_.frequency});
    calculator.setTransmitterHeight(double{stretch_.elevations.front()} + stretch_.antennaHeights[0]);
    losses.diffraction = calculator.diffractionLoss();
    losses.clutter = calculator.clutterLoss();
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
  if (losses.diffraction > ptp::PtpCalculator::kNoLoss && losses.clutter > ptp::PtpCalculator::kNoLoss)
    return losses;
  return std::nullopt;
}

ptp::PtpParameters pointToPointParameters(const PtpSettings& settings) {
  ptp::PtpParameters parameters;
  parameters.ground.polarization =
      settings.polarization == 0 ? ptp::Polarization::kHorizontal : ptp::Polarization::kVertical;
  parameters.ground.permittivity = settings.permittivity;
  parameters.ground.conductivity = settings.conductivity;
  parameters.clutter.category = static_cast<ptp::ClutterCategory>(settings.clutterCategory);
  parameters.clutter.height = settings.clutterHeight;
  ptp::requireWithin(ptp::limits::kPermittivity, settings.permittivity);
  ptp::requireWithin(ptp::limits::kConductivity, settings.conductivity);
  ptp::clutterHeight(parameters.clutter);
  return parameters;
}

}  // namespace zel
