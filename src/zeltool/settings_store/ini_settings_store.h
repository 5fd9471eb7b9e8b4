// The settings of each application in a file of its own: "<folder>/<percent-escaped application>.ini".
//
// Several processes and threads may read and write at once: a write changes its one value in what the others
// wrote, and a read sees every finished write. A read costs a stat call and a look-up (about a microsecond);
// the parsed values are kept in memory. A write replaces the file whole and returns when it is on disk.
//
// A damaged file is kept beside under another name, reported once in words, and replaced by what could be
// read.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/settings_store.h"

namespace zel {

class IniSettingsStore : public SettingsStore {
 public:
  using Reporter = std::function<void(const std::string&)>;

  // The reporter is told about damage, from the thread that came upon it; it may use the store and
  // does not throw.
  IniSettingsStore(std::filesystem::path folder, Reporter reporter);
  ~IniSettingsStore() override;

  // "zelprofiler" under XDG_CONFIG_HOME, or under .config in the home folder; empty when neither is known.
  static std::filesystem::path defaultFolder();
  // Where the settings of an application stand.
  std::filesystem::path fileOf(std::string_view application) const;

  // Errors: 70 and 75 when a file cannot be read or written, 61 when the disk is full, 76 without a folder.
  // What was stored before a failed write still is.
  std::string ReadSetting(std::string_view application, std::string_view section, std::string_view key,
                          std::string_view defaultText) const override;
  void WriteSetting(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view value) override;
  std::vector<StoredSetting> AllSettings(std::string_view application) const override;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel
