#include "profile/settings/settings_access.h"

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/rounding.h"
#include "foundation/text.h"
#include "profile/real32.h"

namespace zel {

std::string SettingsReader::text(const Setting& setting, SettingsUser user) const {
  return store_->ReadSetting(title_(), setting.section, setting.key, setting.defaultFor(user));
}

bool SettingsReader::isStored(const Setting& setting) const {
  constexpr std::string_view kNothing = "\x01";  // no stored text
  return store_->ReadSetting(title_(), setting.section, setting.key, kNothing) != kNothing;
}

std::int16_t SettingsReader::int16(const Setting& setting, SettingsUser user) const {
  return toInt16(real64(setting, user));
}

std::int32_t SettingsReader::int32(const Setting& setting, SettingsUser user) const {
  return toInt32(real64(setting, user));
}

float SettingsReader::real32(const Setting& setting, SettingsUser user) const {
  return toReal32(real64(setting, user));
}

double SettingsReader::real64(const Setting& setting, SettingsUser user) const {
  return leadingNumber(text(setting, user));
}

bool SettingsReader::boolean(const Setting& setting, SettingsUser user) const {
  const std::string stored = text(setting, user);
  if (equalIgnoringCase(trimmed(stored), "True")) return true;
  return leadingNumber(stored) != 0;
}

void SettingsWriter::write(const Setting& setting, std::string_view text) const {
  store_->WriteSetting(title_(), setting.section, setting.key, text);
}

void SettingsWriter::write(const Setting& setting, std::int32_t value) const {
  write(setting, std::string_view(std::to_string(value)));
}

void SettingsWriter::write(const Setting& setting, float value) const {
  write(setting, std::string_view(shortestNumber(value)));
}

void SettingsWriter::write(const Setting& setting, bool value) const {
  write(setting, std::string_view(value ? "True" : "False"));
}

}  // namespace zel
