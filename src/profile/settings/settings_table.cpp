#include "profile/settings/settings_table.h"

#include <array>
#include <cmath>

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/runtime_error.h"
#include "foundation/text.h"

namespace zel {
namespace {

constexpr std::array kTable{&settings::kPrfPer,           &settings::kPrfMax,
                            &settings::kPrfTRes,          &settings::kPrfHtL,
                            &settings::kPrfHtR,           &settings::kPrfEle,
                            &settings::kPrfRng,           &settings::kPrfCrv,
                            &settings::kPrfFreq,          &settings::kPrfFrez,
                            &settings::kPrintDescription, &settings::kDispUnits,
                            &settings::kCalcMethod,       &settings::kGnuPlotExe,
                            &settings::kCoordFormat,      &settings::kFlatEarth,
                            &settings::kConTRes,          &settings::kColourFresnel,
                            &settings::kColourLos,        &settings::kColourMarker,
                            &settings::kColourElevation,  &settings::kColourRangeLines,
                            &settings::kColourStrobe,     &settings::kItmPolarization,
                            &settings::kItmClimate,       &settings::kItmPermittivity,
                            &settings::kItmConductivity,  &settings::kItmRefractivity,
                            &settings::kItmConfidence,    &settings::kItmReliability,
                            &settings::kTerrainSource1,   &settings::kTerrainSource2,
                            &settings::kTerrainSource3,   &settings::kTerrainSource7,
                            &settings::kTerrainSource9,   &settings::kTerrainCacheMB,
                            &settings::kPtpPolarization,  &settings::kPtpPermittivity,
                            &settings::kPtpConductivity,  &settings::kPtpClutterCategory,
                            &settings::kPtpClutterHeight, &settings::kBudgetTxPower,
                            &settings::kBudgetTxGain,     &settings::kBudgetTxLosses,
                            &settings::kBudgetRxGain,     &settings::kBudgetRxLosses,
                            &settings::kBudgetThreshold};

constexpr std::string_view kBooleanChoices = "True,False,1,-1,0";

bool isAmong(std::string_view choices, std::string_view text) {
  for (const std::string& choice : splitList(choices, ','))
    if (equalIgnoringCase(choice, text)) return true;
  return false;
}

bool isWholeType(SettingType type) {
  return type == SettingType::kInt16 || type == SettingType::kInt32 || type == SettingType::kColour;
}

bool isTextType(SettingType type) { return type == SettingType::kText || type == SettingType::kPaths; }

bool isNumberOf(const Setting& setting, std::string_view text) {
  try {
    const std::optional<double> number = wholeNumberText(text);
    if (!number) return false;
    if (isWholeType(setting.type) && std::floor(*number) != *number) return false;
    return !setting.range || (*number >= setting.range->low && *number <= setting.range->high);
  } catch (const RuntimeError&) {
    return false;  // beyond a 64-bit float, so out of every range
  }
}

std::string_view choicesOf(const Setting& setting) {
  return setting.type == SettingType::kBoolean ? kBooleanChoices : setting.choices;
}

}  // namespace

std::span<const Setting* const> settingsTable() { return kTable; }

const Setting* findSetting(std::string_view section, std::string_view key) {
  for (const Setting* setting : kTable)
    if (equalIgnoringCase(setting->section, section) && equalIgnoringCase(setting->key, key)) return setting;
  return nullptr;
}

const Setting* terrainSourceSetting(int code) {
  switch (code) {
    case 1:
      return &settings::kTerrainSource1;
    case 2:
      return &settings::kTerrainSource2;
    case 3:
      return &settings::kTerrainSource3;
    case 7:
      return &settings::kTerrainSource7;
    case 9:
      return &settings::kTerrainSource9;
    default:
      return nullptr;
  }
}

std::string settingExpectation(const Setting& setting) {
  const std::string_view choices = choicesOf(setting);
  if (!choices.empty()) return "one of " + std::string(choices);
  if (isTextType(setting.type)) return "any text";
  std::string text = isWholeType(setting.type) ? "a whole number" : "a number";
  if (setting.range)
    text += " from " + generalNumber(setting.range->low) + " to " + generalNumber(setting.range->high);
  if (!setting.unit.empty()) text += " (" + std::string(setting.unit) + ")";
  return text;
}

std::string settingProblem(const Setting& setting, std::string_view text) {
  const std::string_view choices = choicesOf(setting);
  if (choices.empty() && isTextType(setting.type)) return {};
  const bool valid = choices.empty() ? isNumberOf(setting, text) : isAmong(choices, trimmed(text));
  if (valid) return {};
  return std::string(setting.section) + "/" + std::string(setting.key) + " takes " +
         settingExpectation(setting) + ", not \"" + std::string(text) + "\"";
}

}  // namespace zel
