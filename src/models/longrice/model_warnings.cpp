#include "models/longrice/model_warnings.h"

#include <cmath>
#include <cstddef>

#include "foundation/number_text.h"
#include "models/longrice/radio_climate.h"

namespace zel::longrice {
namespace {

// What the model was tested with, and what it may be used for (Algorithm section 1; NTIA Report 82-100,
// section 2).
struct Range {
  double low;
  double high;
  bool contains(double value) const { return value >= low && value <= high; }
};
constexpr Range kUsualFrequency{40, 10000};    // MHz
constexpr Range kAllowedFrequency{20, 20000};  // MHz
constexpr Range kUsualHeight{1, 1000};         // metres
constexpr Range kAllowedHeight{0.5, 3000};     // metres
constexpr Range kRefractivity{250, 400};       // N-units
constexpr double kShortest = 1e3;              // metres
constexpr double kLong = 1000e3;               // metres
constexpr double kLongest = 2000e3;            // metres
constexpr double kSteepestHorizon = 0.2;       // radians
constexpr double kNearestHorizon = 0.1;        // of the smooth-earth one
constexpr double kFarthestHorizon = 3;         // of the smooth-earth one
constexpr double kGreatestDeviate = 3.1;       // 0.1 % and 99.9 %

// The wave number's rounding must not make 20 MHz less than 20 MHz.
double megahertz(const Link& link) {
  const double frequency = link.environment.waveNumber * kFrequencyOfUnitWaveNumber;
  const double nearest = std::round(frequency * 1e6) / 1e6;
  return std::abs(frequency - nearest) < 1e-9 * frequency ? nearest : frequency;
}

// Shortest distance at which the line between the antennas is not too steep.
double leastDistance(const Link& link) {
  return std::abs(link.terrain.effectiveHeights[0] - link.terrain.effectiveHeights[1]) / kSteepestHorizon;
}

// As given, so that a value just outside a limit does not read like the limit.
std::string metres(double value) { return generalNumber(value) + " m"; }
std::string roundedMetres(double value) { return formatNumber(value, "0.#") + " m"; }
// To the millimetre.
std::string kilometres(double value) { return formatNumber(value / 1000, "0.0#####") + " km"; }
std::string roundedKilometres(double value) { return formatNumber(value / 1000, "0.0##") + " km"; }

std::string horizonText(const Link& link, std::size_t j, const char* which, const char* how) {
  return std::string("the ") + which + "'s horizon is " +
         roundedKilometres(link.terrain.horizonDistances[j]) + " away, " + how + " the " +
         roundedKilometres(link.smoothHorizonDistances[j]) +
         " that its effective height has over a smooth earth: the terrain is not what the model averages "
         "over";
}

std::string describe(Warning warning, const Link& link, int climate) {
  const PathTerrain& terrain = link.terrain;
  const auto height = [&terrain](std::size_t j) { return metres(terrain.structuralHeights[j]); };
  const auto angle = [&terrain](std::size_t j) {
    return formatNumber(terrain.horizonAngles[j], "0.0##") + " rad";
  };
  switch (warning) {
    case Warning::kFrequencyUnusual:
      return "the frequency of " + generalNumber(megahertz(link)) +
             " MHz is outside 40 to 10000 MHz, which the model was tested for: take the loss with caution";
    case Warning::kFrequencyOutOfRange:
      return "the frequency of " + generalNumber(megahertz(link)) +
             " MHz is outside the model's range of 20 to 20000 MHz: the loss is probably not valid";
    case Warning::kTransmitterHeightUnusual:
      return "the transmitter's antenna height of " + height(0) +
             " is outside 1 to 1000 m, which the model was tested for: take the loss with caution";
    case Warning::kTransmitterHeightOutOfRange:
      return "the transmitter's antenna height of " + height(0) +
             " is outside the model's range of 0.5 to 3000 m: the loss is probably not valid";
    case Warning::kReceiverHeightUnusual:
      return "the receiver's antenna height of " + height(1) +
             " is outside 1 to 1000 m, which the model was tested for: take the loss with caution";
    case Warning::kReceiverHeightOutOfRange:
      return "the receiver's antenna height of " + height(1) +
             " is outside the model's range of 0.5 to 3000 m: the loss is probably not valid";
    case Warning::kRefractivityOutOfRange:
      return "the surface refractivity of " + formatNumber(link.environment.surfaceRefractivity, "0.######") +
             " N-units is outside the model's range of 250 to 400: the loss is probably not valid";
    case Warning::kGroundOutOfRange:
      return "the ground's permittivity and conductivity are those of no ground that the model knows: the "
             "loss is "
             "probably not valid";
    case Warning::kClimateUnknown:
      return "the climate code " + std::to_string(climate) +
             " is none of 1 to 7: 5, Continental Temperate, is used in its place";
    case Warning::kDistanceLong:
      return "the path of " + kilometres(terrain.distance) +
             " is longer than 1000 km, which the model was tested for: take the loss with caution";
    case Warning::kDistanceTooLong:
      return "the path of " + kilometres(terrain.distance) +
             " is longer than the model's 2000 km: the loss is probably not valid";
    case Warning::kDistanceTooShort:
      return "the path of " + kilometres(terrain.distance) +
             " is shorter than the model's 1 km: the loss is probably not valid";
    case Warning::kDistanceTooShortForHeights:
      return "the path of " + kilometres(terrain.distance) + " is too short for effective heights of " +
             roundedMetres(terrain.effectiveHeights[0]) + " and " +
             roundedMetres(terrain.effectiveHeights[1]) +
             ": the ray is steeper than the model's small angles";
    case Warning::kTransmitterHorizonSteep:
      return "the transmitter's horizon stands at " + angle(0) +
             ", steeper than the 0.2 rad of the model's small angles";
    case Warning::kReceiverHorizonSteep:
      return "the receiver's horizon stands at " + angle(1) +
             ", steeper than the 0.2 rad of the model's small angles";
    case Warning::kTransmitterHorizonNear:
      return horizonText(link, 0, "transmitter", "less than a tenth of");
    case Warning::kReceiverHorizonNear:
      return horizonText(link, 1, "receiver", "less than a tenth of");
    case Warning::kTransmitterHorizonFar:
      return horizonText(link, 0, "transmitter", "more than three times");
    case Warning::kReceiverHorizonFar:
      return horizonText(link, 1, "receiver", "more than three times");
    case Warning::kDeviateUnusual:
      return "a confidence or reliability lies beyond 0.1 % or 99.9 %, where the model's distributions are "
             "not known";
    case Warning::kCount:
      break;
  }
  return {};
}

}  // namespace

WarningSet warningsOf(const Link& link, int climate) {
  const PathTerrain& terrain = link.terrain;
  const std::complex<double>& impedance = link.environment.surfaceImpedance;
  WarningSet set;
  const double frequency = megahertz(link);
  set.addIf(!kAllowedFrequency.contains(frequency), Warning::kFrequencyOutOfRange);
  set.addIf(kAllowedFrequency.contains(frequency) && !kUsualFrequency.contains(frequency),
            Warning::kFrequencyUnusual);
  const auto checkHeight = [&set](double height, Warning unusual, Warning outOfRange) {
    set.addIf(!kAllowedHeight.contains(height), outOfRange);
    set.addIf(kAllowedHeight.contains(height) && !kUsualHeight.contains(height), unusual);
  };
  checkHeight(terrain.structuralHeights[0], Warning::kTransmitterHeightUnusual,
              Warning::kTransmitterHeightOutOfRange);
  checkHeight(terrain.structuralHeights[1], Warning::kReceiverHeightUnusual,
              Warning::kReceiverHeightOutOfRange);
  set.addIf(!kRefractivity.contains(link.environment.surfaceRefractivity), Warning::kRefractivityOutOfRange);
  set.addIf(impedance.real() <= std::abs(impedance.imag()), Warning::kGroundOutOfRange);
  set.addIf(!isRadioClimate(climate), Warning::kClimateUnknown);

  set.addIf(terrain.distance > kLongest, Warning::kDistanceTooLong);
  set.addIf(terrain.distance > kLong && terrain.distance <= kLongest, Warning::kDistanceLong);
  set.addIf(terrain.distance < kShortest, Warning::kDistanceTooShort);
  set.addIf(terrain.distance < leastDistance(link), Warning::kDistanceTooShortForHeights);

  const auto checkHorizon = [&set, &link](std::size_t j, Warning steep, Warning near, Warning far) {
    const double horizon = link.terrain.horizonDistances[j];
    const double smooth = link.smoothHorizonDistances[j];
    set.addIf(std::abs(link.terrain.horizonAngles[j]) > kSteepestHorizon, steep);
    set.addIf(horizon < kNearestHorizon * smooth, near);
    set.addIf(horizon > kFarthestHorizon * smooth, far);
  };
  checkHorizon(0, Warning::kTransmitterHorizonSteep, Warning::kTransmitterHorizonNear,
               Warning::kTransmitterHorizonFar);
  checkHorizon(1, Warning::kReceiverHorizonSteep, Warning::kReceiverHorizonNear,
               Warning::kReceiverHorizonFar);
  return set;
}

bool isUnusualDeviate(double deviate) { return std::abs(deviate) > kGreatestDeviate; }

std::vector<std::string> describe(const WarningSet& warnings, const Link& link, int climate) {
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(Warning::kCount); ++i)
    if (warnings.has(static_cast<Warning>(i)))
      texts.push_back(describe(static_cast<Warning>(i), link, climate));
  return texts;
}

}  // namespace zel::longrice
