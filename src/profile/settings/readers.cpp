#include "profile/settings/readers.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/rounding.h"

namespace zel {

std::int16_t repairedSource(std::int16_t code) {
  return terrainSourceSetting(code) != nullptr ? code : std::int16_t{3};
}

std::int32_t repairedChoice(std::int32_t value) { return value == 1 ? 1 : 0; }

CurvePreset curvePreset(float k) {
  const std::string shown = formatNumber(k, "0.00");
  if (shown == "1.33") return CurvePreset::k1333;
  if (shown == "1.00") return CurvePreset::k1000;
  return CurvePreset::kCustom;
}

FresnelPreset fresnelPreset(std::int16_t percent) {
  switch (percent) {
    case 100:
      return FresnelPreset::k100;
    case 60:
      return FresnelPreset::k60;
    case 0:
      return FresnelPreset::kNone;
    default:
      return FresnelPreset::kCustom;
  }
}

namespace {

CalculationSettings readDensity(const SettingsReader& reader, SettingsUser user) {
  CalculationSettings result;
  result.pointsPerKm = reader.int16(settings::kPrfPer, user);
  result.maxPoints = reader.int16(settings::kPrfMax, user);
  return result;
}

}  // namespace

CalculationSettings readCalculationSettings(const SettingsReader& reader) {
  return readDensity(reader, SettingsUser::kCalculation);
}

WindowSettings readWindowSettings(const SettingsReader& reader, const WindowSettingsRequest& request) {
  constexpr auto kUser = SettingsUser::kWindow;
  WindowSettings result;
  result.dispUnits = repairedChoice(reader.int32(settings::kDispUnits, kUser));
  result.calcMethod = repairedChoice(reader.int32(settings::kCalcMethod, kUser));
  if (!request.startHeightGiven) result.startHeight = reader.int16(settings::kPrfHtL, kUser);
  if (!request.endHeightGiven) result.endHeight = reader.int16(settings::kPrfHtR, kUser);
  result.source =
      repairedSource(reader.int16(request.contour ? settings::kConTRes : settings::kPrfTRes, kUser));
  result.k = reader.real32(settings::kPrfCrv, kUser);
  result.curve = curvePreset(result.k);
  result.frequency = reader.real32(settings::kPrfFreq, kUser);
  result.fresnelPercent = reader.int16(settings::kPrfFrez, kUser);
  result.fresnel = fresnelPreset(result.fresnelPercent);
  return result;
}

WindowlessSettings readWindowlessSettings(const SettingsReader& reader) {
  constexpr auto kUser = SettingsUser::kWindowless;
  WindowlessSettings result;
  result.calcMethod = repairedChoice(reader.int32(settings::kCalcMethod, kUser));
  result.source = repairedSource(reader.int16(settings::kPrfTRes, kUser));
  result.frequency = reader.real32(settings::kPrfFreq, kUser);
  result.density = readDensity(reader, kUser);
  return result;
}

std::int16_t readElevationLines(const SettingsReader& reader) {
  return reader.int16(settings::kPrfEle, SettingsUser::kDrawing);
}

std::int16_t readRangeLines(const SettingsReader& reader) {
  return reader.int16(settings::kPrfRng, SettingsUser::kDrawing);
}

std::int32_t readColour(const SettingsReader& reader, const Setting& colour) {
  return reader.int32(colour, SettingsUser::kDrawing) & 0xFFFFFF;
}

ItmSettings readItmSettings(const SettingsReader& reader, SettingsUser user) {
  ItmSettings result;
  result.polarization = reader.int16(settings::kItmPolarization, user);
  result.climate = reader.int16(settings::kItmClimate, user);
  result.permittivity = reader.real64(settings::kItmPermittivity, user);
  result.conductivity = reader.real64(settings::kItmConductivity, user);
  result.refractivity = reader.real64(settings::kItmRefractivity, user);
  result.confidence = reader.real64(settings::kItmConfidence, user);
  result.reliability = reader.real64(settings::kItmReliability, user);
  return result;
}

PtpSettings readPtpSettings(const SettingsReader& reader) {
  constexpr auto kUser = SettingsUser::kExport;
  PtpSettings result;
  result.polarization = reader.int16(settings::kPtpPolarization, kUser);
  result.permittivity = reader.real64(settings::kPtpPermittivity, kUser);
  result.conductivity = reader.real64(settings::kPtpConductivity, kUser);
  result.clutterCategory = reader.int16(settings::kPtpClutterCategory, kUser);
  result.clutterHeight = reader.real64(settings::kPtpClutterHeight, kUser);
  return result;
}

std::string readTerrainPaths(const SettingsReader& reader, int code) {
  const Setting* setting = terrainSourceSetting(code);
  return setting == nullptr ? std::string() : reader.text(*setting, SettingsUser::kTerrain);
}

std::int32_t readTerrainCacheMB(const SettingsReader& reader) {
  const SettingRange range = *settings::kTerrainCacheMB.range;
  return toInt32(
      std::clamp(reader.real64(settings::kTerrainCacheMB, SettingsUser::kTerrain), range.low, range.high));
}

}  // namespace zel
