// The settings of the bound host application (those under its Title), as the component reads them.
//
// The functions belong to the thread of the ProfileControl objects. Without a bound host they use the
// component's own application object, "zelProfiler01".
#ifndef ZEL_SETTINGS_H_
#define ZEL_SETTINGS_H_

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "zel/export.h"

namespace zel {

// What the functions below throw: the store cannot be read or written, or the host's application object
// fails; the text says which file and why. On another thread than the component's they throw AutomationError
// kWrongThread.
class ZEL_API SettingsError : public std::runtime_error {
 public:
  explicit SettingsError(const std::string& what);
  ~SettingsError() override;
};

// A setting that the component knows.
struct SettingDescription {
  std::string section;
  std::string key;
  std::string type;          // "16-bit integer", "text", ...
  std::string defaultText;   // what is used while nothing is stored
  std::string otherDefault;  // the same for one reader that differs on purpose; empty without one
  std::string otherReader;   // that reader, in words
  std::string unit;          // empty when it has none
  std::string range;         // valid values, for a person to read
  std::string meaning;
};

struct SettingValue {
  std::string section;
  std::string key;
  std::string value;
  bool forThisRun = false;  // set by overrideSetting, not stored
};

// Every setting that the component knows, by section and key in a fixed order.
ZEL_API std::vector<SettingDescription> knownSettings();
// The known setting of that name, sections and keys compared without regard to case.
ZEL_API std::optional<SettingDescription> knownSetting(std::string_view section, std::string_view key);

// Names of known settings are taken in any case, other names as they are written.

// The value for this run or the stored one; nothing when there is neither.
ZEL_API std::optional<std::string> storedSetting(std::string_view section, std::string_view key);
// Everything stored or set for this run.
ZEL_API std::vector<SettingValue> storedSettings();
// Why the text cannot be that setting's value; nothing when it can, or when the setting is not a known one.
ZEL_API std::optional<std::string> settingProblem(std::string_view section, std::string_view key,
                                                  std::string_view value);
// Stores the value; it is on disk when the call returns.
ZEL_API void storeSetting(std::string_view section, std::string_view key, std::string_view value);
// From here on, and in this process only, the value stands in the place of the stored one.
ZEL_API void overrideSetting(std::string_view section, std::string_view key, std::string_view value);
// Why the settings of an application of that title cannot be read; nothing when they can. Needs no bound
// host, so that a host may ask before it binds itself.
ZEL_API std::optional<std::string> settingsProblem(std::string_view title);
// The file that holds the bound application's settings.
ZEL_API std::string settingsFile();

}  // namespace zel

#endif  // ZEL_SETTINGS_H_
