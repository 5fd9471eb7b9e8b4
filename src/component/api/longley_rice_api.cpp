// The public function of the irregular terrain model: its request and result are plain values, the model
// below has the rules. What is checked here is what the model leaves to its caller.
#include <span>
#include <string_view>

#include "component/api/public_model.h"
#include "foundation/number_text.h"
#include "models/longrice/input_limits.h"
#include "models/longrice/longley_rice.h"
#include "models/longrice/normal_deviate.h"
#include "models/longrice/radio_climate.h"
#include "zel/longley_rice.h"

namespace zel {
namespace {

using longrice::Parameter;
using longrice::ParameterError;

// A fault in a member of the request that the model's own parameters do not have.
struct RequestFault {
  const char* member;
  std::string text;
};

const char* memberOf(Parameter parameter) {
  switch (parameter) {
    case Parameter::kElevations:
      return "elevationsM";
    case Parameter::kSpacing:
      return "spacingM";
    case Parameter::kTransmitterHeight:
      return "transmitterHeightM";
    case Parameter::kReceiverHeight:
      return "receiverHeightM";
    case Parameter::kFrequency:
      return "frequencyMhz";
    case Parameter::kPermittivity:
      return "permittivity";
    case Parameter::kConductivity:
      return "conductivity";
    case Parameter::kSurfaceRefractivity:
      return "surfaceRefractivity";
    case Parameter::kSeaLevelRefractivity:
      return "seaLevelRefractivity";
    case Parameter::kConfidence:
      return "confidence";
    case Parameter::kReliability:
      return "reliability";
  }
  return "";
}

longrice::Polarization modelPolarization(Polarization polarization) {
  switch (polarization) {
    case Polarization::kHorizontal:
      return longrice::Polarization::kHorizontal;
    case Polarization::kVertical:
      return longrice::Polarization::kVertical;
  }
  throw RequestFault{"polarization", "the polarization is neither horizontal nor vertical"};
}

void requireElevations(std::span<const double> elevations) {
  if (elevations.size() < 2)
    throw ParameterError(Parameter::kElevations, std::string(elevations.empty() ? "there are no elevations"
                                                                                : "there is 1 elevation") +
                                                     "; a path has at least 2");
  for (std::size_t i = 0; i < elevations.size(); ++i)
    if (!(elevations[i] >= longrice::limits::kElevation.low &&
          elevations[i] <= longrice::limits::kElevation.high))
      longrice::requireWithin(longrice::limits::kElevation, elevations[i],
                              "elevation of sample " + std::to_string(i + 1));
}

// Ns at the path. The elevations have been checked.
double surfaceRefractivity(const LongleyRiceRequest& request, std::span<const double> elevations) {
  if (!request.seaLevelRefractivity) return request.surfaceRefractivity;
  const double seaLevel = *request.seaLevelRefractivity;
  longrice::requireWithin(longrice::limits::kSeaLevelRefractivity, seaLevel);
  const double height = longrice::meanElevation(elevations);
  const double surface = longrice::surfaceRefractivityAt(height, seaLevel);
  const longrice::InputLimit& limit = longrice::limits::kSurfaceRefractivity;
  if (!(surface >= limit.low && surface <= limit.high))
    throw ParameterError(Parameter::kSeaLevelRefractivity,
                         "the sea-level refractivity of " + generalNumber(seaLevel) + limit.unit +
                             " makes a surface refractivity of " + formatNumber(surface, "0.#") + limit.unit +
                             " at the path's mean height of " + formatNumber(height, "0.#") +
                             " m; that must be " + generalNumber(limit.low) + " to " +
                             generalNumber(limit.high) + limit.unit);
  return surface;
}

longrice::Parameters modelParameters(const LongleyRiceRequest& request, std::span<const double> elevations) {
  if (!longrice::isRadioClimate(request.climate))
    throw RequestFault{"climate",
                       "the climate code is " + std::to_string(request.climate) + "; it must be 1 to 7"};
  longrice::Parameters parameters;
  parameters.frequency = request.frequencyMhz;
  parameters.polarization = modelPolarization(request.polarization);
  parameters.climate = request.climate;
  parameters.permittivity = request.permittivity;
  parameters.conductivity = request.conductivity;
  parameters.surfaceRefractivity = surfaceRefractivity(request, elevations);
  return parameters;
}

std::vector<double> deviatesOf(Parameter parameter, const std::vector<double>& fractions) {
  if (fractions.empty())
    throw ParameterError(parameter, std::string("no ") + memberOf(parameter) +
                                        " is given; at least one fraction above 0 and below 1 is needed");
  std::vector<double> deviates;
  deviates.reserve(fractions.size());
  for (const double fraction : fractions) {
    longrice::requireFraction(parameter, fraction);
    deviates.push_back(longrice::normalDeviate(fraction));
  }
  return deviates;
}

// Those of the path, and the one about levels that the model does not know.
std::vector<std::string> warningTexts(const longrice::Prediction& prediction, int climate,
                                      std::span<const double> confidences,
                                      std::span<const double> reliabilities) {
  longrice::WarningSet warnings = prediction.warnings();
  for (const std::span<const double> deviates : {confidences, reliabilities})
    for (const double deviate : deviates)
      warnings.addIf(longrice::isUnusualDeviate(deviate), longrice::Warning::kDeviateUnusual);
  return longrice::describe(warnings, prediction.link(), climate);
}

LongleyRiceResult compute(const LongleyRiceRequest& request, std::span<const double> elevations) {
  requireElevations(elevations);
  const std::vector<double> confidences = deviatesOf(Parameter::kConfidence, request.confidence);
  const std::vector<double> reliabilities = deviatesOf(Parameter::kReliability, request.reliability);
  const longrice::Model model(modelParameters(request, elevations));
  longrice::GrowingPath path = model.path(request.spacingM, request.transmitterHeightM);
  path.reserve(elevations.size());
  path.append(elevations);  // at once, so that an error names the path's whole length
  const longrice::Prediction prediction = model.predict(path, request.receiverHeightM);
  const longrice::PathTerrain& terrain = prediction.terrain();

  LongleyRiceResult result;
  result.distanceKm = terrain.distance / 1000;
  result.freeSpaceDb = prediction.freeSpace();
  result.mode = publicMode(terrain.mode);
  result.method = publicMethod(prediction.reference().method);
  result.warnings = warningTexts(prediction, request.climate, confidences, reliabilities);
  result.terrainIrregularityM = terrain.deltaH;
  result.effectiveHeightsM = terrain.effectiveHeights;
  result.horizonDistancesM = terrain.horizonDistances;
  result.horizonAnglesRad = terrain.horizonAngles;
  result.surfaceRefractivity = model.environment().surfaceRefractivity;
  result.referenceAttenuationDb = prediction.reference().attenuation;
  result.lossDb.reserve(reliabilities.size());
  for (const double reliability : reliabilities) {
    std::vector<double>& row = result.lossDb.emplace_back();
    row.reserve(confidences.size());
    for (const double confidence : confidences) row.push_back(prediction.loss(reliability, confidence));
  }
  return result;
}

LongleyRiceResult refused(const char* member, const std::string& text) {
  LongleyRiceResult result;
  result.error = text;
  result.parameter = member;
  return result;
}

}  // namespace

const char* pathModeText(PathMode mode, PropagationMethod method) {
  const bool scattered = method == PropagationMethod::kTroposcatter;
  switch (mode) {
    case PathMode::kLineOfSight:
      return "line of sight";
    case PathMode::kSingleHorizon:
      return scattered ? "single horizon, troposcatter dominant" : "single horizon, diffraction dominant";
    case PathMode::kDoubleHorizon:
      return scattered ? "double horizon, troposcatter dominant" : "double horizon, diffraction dominant";
  }
  return "";
}

const char* propagationMethodText(PropagationMethod method) {
  switch (method) {
    case PropagationMethod::kLineOfSight:
      return "line of sight";
    case PropagationMethod::kDiffraction:
      return "diffraction";
    case PropagationMethod::kTroposcatter:
      return "troposcatter";
  }
  return "";
}

const char* radioClimateName(int climate) {
  // The names are literals, so that each ends with a zero.
  const std::string_view name = longrice::radioClimateName(climate);
  return name.empty() ? "" : name.data();
}

LongleyRiceResult computeLongleyRice(const LongleyRiceRequest& request) {
  return computeLongleyRice(request, request.elevationsM);
}

LongleyRiceResult computeLongleyRice(const LongleyRiceRequest& request, std::span<const double> elevationsM) {
  try {
    return compute(request, elevationsM);
  } catch (const ParameterError& error) {
    return refused(memberOf(error.parameter()), error.description());
  } catch (const RequestFault& fault) {
    return refused(fault.member, fault.text);
  } catch (const RuntimeError& error) {
    return refused("", error.description());
  }
}

}  // namespace zel
