// A settings store in memory that keeps the order in which it was asked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/scripted_platform.h"

namespace zel::test {

class RecordingSettingsStore final : public SettingsStore {
 public:
  std::string ReadSetting(std::string_view application, std::string_view section, std::string_view key,
                          std::string_view defaultText) const override {
    reads.push_back(std::string(section) + "/" + std::string(key) + "=" + std::string(defaultText));
    applications.emplace_back(application);
    return memory.ReadSetting(application, section, key, defaultText);
  }
  void WriteSetting(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view value) override {
    writes.push_back(std::string(section) + "/" + std::string(key) + "=" + std::string(value));
    applications.emplace_back(application);
    memory.WriteSetting(application, section, key, value);
  }
  std::vector<StoredSetting> AllSettings(std::string_view application) const override {
    return memory.AllSettings(application);
  }

  // Stores a value without recording it, for the application "Host Planner".
  void set(std::string_view section, std::string_view key, std::string_view value) {
    memory.WriteSetting("Host Planner", section, key, value);
  }

  MemorySettingsStore memory;
  mutable std::vector<std::string> reads;         // "Section/Key=default", in order
  std::vector<std::string> writes;                // "Section/Key=value", in order
  mutable std::vector<std::string> applications;  // of reads and writes alike
};

}  // namespace zel::test
