#include "profile/settings/dialog_settings.h"

namespace zel {

DialogSettings readDialogSettings(const SettingsReader& reader) {
  constexpr auto kUser = SettingsUser::kDialog;
  DialogSettings result;
  result.pointsPerKm = reader.int16(settings::kPrfPer, kUser);
  result.maxPoints = reader.int16(settings::kPrfMax, kUser);
  result.source = reader.int16(settings::kPrfTRes, kUser);
  // Only the two marks of "none chosen" are repaired here; another unknown code is shown as no choice.
  if (result.source == 0 || result.source == -1) result.source = 3;
  result.startHeight = reader.int16(settings::kPrfHtL, kUser);
  result.endHeight = reader.int16(settings::kPrfHtR, kUser);
  result.elevationLines = reader.int16(settings::kPrfEle, kUser);
  result.rangeLines = reader.int16(settings::kPrfRng, kUser);
  result.k = reader.real32(settings::kPrfCrv, kUser);
  result.frequency = reader.real32(settings::kPrfFreq, kUser);
  result.fresnelPercent = reader.int16(settings::kPrfFrez, kUser);
  result.dispUnits = repairedChoice(reader.int32(settings::kDispUnits, kUser));
  result.calcMethod = repairedChoice(reader.int32(settings::kCalcMethod, kUser));
  result.flatEarth = reader.boolean(settings::kFlatEarth, kUser);
  return result;
}

void writeDialogSettings(const SettingsWriter& writer, const DialogSettings& values) {
  writer.write(settings::kPrfPer, std::int32_t{values.pointsPerKm});
  writer.write(settings::kPrfMax, std::int32_t{values.maxPoints});
  writer.write(settings::kPrfTRes, std::int32_t{values.source});
  writer.write(settings::kPrfHtL, std::int32_t{values.startHeight});
  writer.write(settings::kPrfHtR, std::int32_t{values.endHeight});
  writer.write(settings::kPrfEle, std::int32_t{values.elevationLines});
  writer.write(settings::kPrfRng, std::int32_t{values.rangeLines});
  writer.write(settings::kPrfCrv, values.k);
  writer.write(settings::kPrfFreq, values.frequency);
  writer.write(settings::kPrfFrez, std::int32_t{values.fresnelPercent});
  writer.write(settings::kDispUnits, values.dispUnits);
  writer.write(settings::kCalcMethod, values.calcMethod);
  writer.write(settings::kFlatEarth, values.flatEarth);
}

}  // namespace zel
