#include "profile/settings/overlay_settings_store.h"

#include "profile/settings/settings_table.h"

namespace zel {

void OverlaySettingsStore::overlay(std::string_view section, std::string_view key, std::string_view value) {
  if (const Setting* known = findSetting(section, key)) {
    section = known->section;
    key = known->key;
  }
  values_[{std::string(section), std::string(key)}] = value;
}

std::string OverlaySettingsStore::ReadSetting(std::string_view application, std::string_view section,
                                              std::string_view key, std::string_view defaultText) const {
  const auto found = values_.find({std::string(section), std::string(key)});
  return found != values_.end() ? found->second : stored_.ReadSetting(application, section, key, defaultText);
}

void OverlaySettingsStore::WriteSetting(std::string_view application, std::string_view section,
                                        std::string_view key, std::string_view value) {
  stored_.WriteSetting(application, section, key, value);
}

std::vector<StoredSetting> OverlaySettingsStore::AllSettings(std::string_view application) const {
  auto merged = values_;
  for (const StoredSetting& stored : stored_.AllSettings(application))
    merged.try_emplace({stored.section, stored.key}, stored.value);
  std::vector<StoredSetting> all;
  all.reserve(merged.size());
  for (const auto& [name, value] : merged) all.push_back({name.first, name.second, value});
  return all;
}

}  // namespace zel
