// Settings by their entry in the table: text in and out of the store, and numbers out of the text.
//
// The title under which everything stands is asked for at each reading and writing, because the host may be
// replaced at any time. Failures of the store or of the title pass through as they are thrown.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/settings_store.h"
#include "profile/settings/settings_table.h"

namespace zel {

// Reads as one user of the settings: the stored text, or that user's default.
class SettingsReader {
 public:
  SettingsReader(const SettingsStore& store, std::function<std::string()> title)
      : store_(&store), title_(std::move(title)) {}

  std::string text(const Setting& setting, SettingsUser user) const;
  bool isStored(const Setting& setting) const;
  // Numbers by the leading-number parse. RuntimeError 6 when the number does not fit the type.
  std::int16_t int16(const Setting& setting, SettingsUser user) const;
  std::int32_t int32(const Setting& setting, SettingsUser user) const;
  float real32(const Setting& setting, SettingsUser user) const;
  double real64(const Setting& setting, SettingsUser user) const;
  // "True" and "False" in any case; any other text by its leading number, so "1" and "-1" are true, "0" and
  // "x" false.
  bool boolean(const Setting& setting, SettingsUser user) const;

 private:
  const SettingsStore* store_;
  std::function<std::string()> title_;
};

class SettingsWriter {
 public:
  SettingsWriter(SettingsStore& store, std::function<std::string()> title)
      : store_(&store), title_(std::move(title)) {}

  void write(const Setting& setting, std::string_view text) const;
  void write(const Setting& setting, std::int32_t value) const;  // without a point
  void write(const Setting& setting, float value) const;         // the shortest text that reads back the same
  void write(const Setting& setting, bool value) const;          // "True" or "False"

 private:
  SettingsStore* store_;
  std::function<std::string()> title_;
};

}  // namespace zel
