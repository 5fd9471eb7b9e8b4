#include "profile/settings/overlay_settings_store.h"

#include "profile/settings/settings_table.h"

namespace zel {

void OverlaySettingsStore::overlay(std::string_view section, std::string_view key, std::string_view value) {
  if (const Setting* known = findSetting(section, key)) {
    section = known->section;
    key = known->key;
  }
  const std::lock_guard lock(mutex_);
  values_[{std::string(section), std::string(key)}] = value;
}

bool OverlaySettingsStore::isOverlaid(std::string_view section, std::string_view key) const {
  const std::lock_guard lock(mutex_);
  return values_.count({std::string(section), std::string(key)}) != 0;
}

OverlaySettingsStore::Values OverlaySettingsStore::values() const {
  const std::lock_guard lock(mutex_);
  return values_;
}

std::string OverlaySettingsStore::ReadSetting(std::string_view application, std::string_view section,
                                              std::string_view key, std::string_view defaultText) const {
  {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find({std::string(section), std::string(key)});
    if (found != values_.end()) return found->second;
  }
  return stored_.ReadSetting(application, section, key, defaultText);
}

void OverlaySettingsStore::WriteSetting(std::string_view application, std::string_view section,
                                        std::string_view key, std::string_view value) {
  stored_.WriteSetting(application, section, key, value);
}

std::vector<StoredSetting> OverlaySettingsStore::AllSettings(std::string_view application) const {
  Values merged = values();
  for (const StoredSetting& stored : stored_.AllSettings(application))
    merged.try_emplace({stored.section, stored.key}, stored.value);
  std::vector<StoredSetting> all;
  all.reserve(merged.size());
  for (const auto& [name, value] : merged) all.push_back({name.first, name.second, value});
  return all;
}

}  // namespace zel
