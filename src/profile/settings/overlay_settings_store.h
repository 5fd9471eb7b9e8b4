// Settings for one run over the stored ones.
//
// A value of the overlay wins in every reading, for every application. Writing goes to the store underneath
// and leaves the overlay as it is: what is written lasts, but this run keeps on seeing the value that it was
// given.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/settings_store.h"

namespace zel {

class OverlaySettingsStore : public SettingsStore {
 public:
  explicit OverlaySettingsStore(SettingsStore& stored) : stored_(stored) {}

  // A name of the settings table is taken in any case, any other name as it is written.
  void overlay(std::string_view section, std::string_view key, std::string_view value);
  // Whether the overlay holds this very name.
  bool isOverlaid(std::string_view section, std::string_view key) const;

  std::string ReadSetting(std::string_view application, std::string_view section, std::string_view key,
                          std::string_view defaultText) const override;
  void WriteSetting(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view value) override;
  // The stored ones with the overlay's values in their place, and the overlay's own, by section and key.
  std::vector<StoredSetting> AllSettings(std::string_view application) const override;

 private:
  using Values = std::map<std::pair<std::string, std::string>, std::string>;

  Values values() const;

  SettingsStore& stored_;
  mutable std::mutex mutex_;  // guards values_
  Values values_;             // by section and key
};

}  // namespace zel
