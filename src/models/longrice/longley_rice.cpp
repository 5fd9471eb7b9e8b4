#include "models/longrice/longley_rice.h"

#include <cmath>

#include "models/longrice/input_limits.h"

namespace zel::longrice {

double freeSpaceLoss(double frequency, double distance) {
  return 32.45 + 20 * std::log10(frequency * distance / 1000);
}

Prediction::Prediction(const Parameters& parameters, const Environment& environment,
                       const PathTerrain& terrain)
    : climate_(parameters.climate),
      link_(environment, terrain),
      freeSpace_(freeSpaceLoss(parameters.frequency, terrain.distance)),
      reference_(referenceAttenuation(link_)),
      variability_(link_, parameters.climate),
      warnings_(warningsOf(link_, parameters.climate)) {
  // No limit of a single input is to blame, but what they make together.
  if (!std::isfinite(reference_.attenuation))
    throw ParameterError(
        Parameter::kElevations,
        "the model has no finite loss for these heights, antennas and ground; see that they are those "
        "of a real path");
}

double Prediction::loss(double reliabilityDeviate, double confidenceDeviate) const {
  requireWithin(limits::kReliabilityDeviate, reliabilityDeviate);
  requireWithin(limits::kConfidenceDeviate, confidenceDeviate);
  return freeSpace_ + variability_.attenuation(reference_.attenuation, reliabilityDeviate, confidenceDeviate);
}

std::vector<double> Prediction::losses(std::span<const double> reliabilityDeviates,
                                       std::span<const double> confidenceDeviates) const {
  for (const double deviate : reliabilityDeviates) requireWithin(limits::kReliabilityDeviate, deviate);
  for (const double deviate : confidenceDeviates) requireWithin(limits::kConfidenceDeviate, deviate);
  std::vector<double> losses;
  losses.reserve(reliabilityDeviates.size() * confidenceDeviates.size());
  for (const double reliability : reliabilityDeviates) {
    const QuantilesOfSituation quantiles = variability_.at(reference_.attenuation, reliability);
    for (const double confidence : confidenceDeviates)
      losses.push_back(freeSpace_ + quantiles.attenuation(confidence));
  }
  return losses;
}

Model::Model(const Parameters& parameters)
    : parameters_(parameters), environment_(environmentOf(parameters)) {}

GrowingPath Model::path(double spacing, double transmitterHeight) const {
  return {spacing, environment_.effectiveCurvature, transmitterHeight};
}

Prediction Model::predict(const GrowingPath& path, double receiverHeight) const {
  return {parameters_, environment_, path.describe(receiverHeight)};
}

}  // namespace zel::longrice
