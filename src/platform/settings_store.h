// The per-user store of settings, keyed by application, section and key. Values are text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zel {

struct StoredSetting {
  std::string section;
  std::string key;
  std::string value;
};

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // The stored text, or the default when there is none. Throws RuntimeError when the store cannot be read.
  virtual std::string ReadSetting(std::string_view application, std::string_view section,
                                  std::string_view key, std::string_view defaultText) const = 0;
  // Stores the text; when it returns, the text is on disk. Throws RuntimeError when it cannot be written.
  virtual void WriteSetting(std::string_view application, std::string_view section, std::string_view key,
                            std::string_view value) = 0;
  // Everything stored for the application, by section and key.
  virtual std::vector<StoredSetting> AllSettings(std::string_view application) const = 0;
};

}  // namespace zel
