#include "component/api/model_inputs.h"

#include <cmath>
#include <cstdint>

#include "foundation/number_text.h"
#include "models/longrice/normal_deviate.h"
#include "models/longrice/radio_climate.h"
#include "profile/path_loss/level_deviate.h"

namespace zel {
namespace {

ItmSettings storedParameters(PathInputs& inputs, SettingsUser user) {
  const SettingsReader& reader = inputs.settings();
  for (const Setting* setting : {&settings::kItmPolarization, &settings::kItmClimate})
    inputs.number(*setting, [&] { return reader.int16(*setting, user); });
  for (const Setting* setting :
       {&settings::kItmPermittivity, &settings::kItmConductivity, &settings::kItmRefractivity})
    inputs.number(*setting, [&] { return reader.real64(*setting, user); });
  for (const Setting* setting : {&settings::kItmConfidence, &settings::kItmReliability})
    inputs.fittingNumber(*setting, [&] { return reader.real64(*setting, user); });
  return readItmSettings(reader, user);
}

void noteDefaults(const PathInputs& inputs, std::vector<std::string>& notes) {
  std::string missing;
  for (const Setting* setting :
       {&settings::kItmPolarization, &settings::kItmClimate, &settings::kItmPermittivity,
        &settings::kItmConductivity, &settings::kItmRefractivity, &settings::kItmConfidence,
        &settings::kItmReliability})
    if (!inputs.isStored(*setting)) missing += (missing.empty() ? "" : ", ") + nameOf(*setting);
  if (!missing.empty()) notes.push_back("the model's defaults are used where nothing is stored: " + missing);
}

// The fraction in hundredths that a stored level comes to.
double level(PathInputs& inputs, double stored, const Setting& setting, const std::string& what,
             std::vector<std::string>& notes, std::vector<std::string>& warnings) {
  constexpr std::int64_t kWhole = 100;  // one past the deviates
  const std::int64_t hundredths = levelIndex(normalisedLevel(stored));
  if (hundredths >= kWhole)
    throw Refusal{inputs.settingInWords(setting) + " is " + generalNumber(stored) +
                  ", which is read as 100 %; a " + what +
                  " of 100 % has no loss, set 0.01 to 0.99 or the same in percent"};
  const double fraction = static_cast<double>(hundredths) / 100;
  const SettingRange range = *setting.range;
  if (!(stored >= range.low && stored <= range.high)) {
    warnings.push_back(inputs.settingInWords(setting) + " is " + generalNumber(stored) +
                       ", which is no level: it is used as " + std::to_string(hundredths) + " %");
    return fraction;
  }
  inputs.warnUnlessAsStored(setting, stored);
  if (stored != fraction && stored != static_cast<double>(hundredths))
    notes.push_back("the setting " + nameOf(setting) + ", " + generalNumber(stored) + ", is used as " +
                    formatNumber(fraction, "0.00") + ": levels are whole percents from 1 to 99");
  return fraction;
}

void noteDeviate(const std::string& what, double fraction, double deviate, std::vector<std::string>& notes) {
  const double exact = longrice::normalDeviate(fraction);
  constexpr double kSame = 1e-9;  // of a deviate, dimensionless
  if (std::abs(exact - deviate) < kSame) return;
  notes.push_back("the " + what + " of " + formatNumber(fraction * 100, "0") +
                  " % is used as the two-decimal normal deviate " + formatNumber(deviate, "0.00") +
                  " (exactly " + formatNumber(exact, "0.0000") + ")");
}

}  // namespace

PathLossModelInputs takeModelInputs(PathInputs& inputs, SettingsUser user, std::vector<std::string>& notes,
                                    std::vector<std::string>& warnings) {
  const ItmSettings stored = storedParameters(inputs, user);
  noteDefaults(inputs, notes);
  PathLossModelInputs model;
  model.confidence =
      level(inputs, stored.confidence, settings::kItmConfidence, "confidence", notes, warnings);
  model.reliability =
      level(inputs, stored.reliability, settings::kItmReliability, "reliability", notes, warnings);
  model.polarization = stored.polarization == 0 ? Polarization::kHorizontal : Polarization::kVertical;
  model.climate = longrice::isRadioClimate(stored.climate) ? stored.climate : longrice::kContinentalTemperate;
  model.permittivity = stored.permittivity;
  model.conductivity = stored.conductivity;
  model.surfaceRefractivity = stored.refractivity;
  return model;
}

void noteDeviates(const ModelParameters& parameters, PathLossModelInputs& inputs,
                  std::vector<std::string>& notes) {
  inputs.confidenceDeviate = parameters.confidence;
  inputs.reliabilityDeviate = parameters.reliability;
  noteDeviate("confidence", inputs.confidence, parameters.confidence, notes);
  noteDeviate("reliability", inputs.reliability, parameters.reliability, notes);
}

}  // namespace zel
