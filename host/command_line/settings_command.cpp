// settings: get, set and list what the component keeps between runs.
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "zel/settings.h"

namespace zel::host {
namespace {

struct SettingName {
  std::string section, key;
  bool known = false;
};

SettingName settingName(const std::string& text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string::npos || slash == 0 || slash + 1 == text.size())
    throw UsageError("\"" + text + "\" is not SECTION/KEY, as in Profile/Prf_Freq");
  SettingName name{text.substr(0, slash), text.substr(slash + 1)};
  if (const auto setting = knownSetting(name.section, name.key))
    name = {setting->section, setting->key, true};
  return name;
}

void getSetting(const std::string& text) {
  const SettingName name = settingName(text);
  if (const auto stored = storedSetting(name.section, name.key)) {
    std::cout << *stored << '\n';
  } else if (name.known) {
    std::cout << knownSetting(name.section, name.key)->defaultText << '\n';
  } else {
    throw CommandFailure(
        text +
        " is neither a setting of the profiler nor stored; 'terrain-profiler settings list' shows all");
  }
}

void setSetting(std::string text, std::string value, bool hasValue) {
  if (!hasValue) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) throw UsageError("settings set " + text + ": a value is missing");
    value = text.substr(equals + 1);
    text.resize(equals);
  }
  const SettingName name = settingName(text);
  storeSetting(name.section, name.key, value);
  if (!name.known) note(text + " is not a setting that the profiler reads; it is stored all the same");
  if (const auto problem = settingProblem(name.section, name.key, value))
    note(text + " = \"" + value + "\": " + *problem + "; it is stored all the same");
}

// A value as it stands in a list of lines.
std::string oneLine(const std::string& value) {
  std::string text;
  for (const char c : value) {
    if (c == '\n')
      text += "\\n";
    else if (c == '\r')
      text += "\\r";
    else
      text += c;
  }
  return text;
}

std::string defaultRemark(const SettingDescription& setting) {
  if (setting.otherDefault.empty()) return "default";
  return "default, " + setting.otherDefault + " in " + setting.otherReader;
}

void listSettings() {
  std::map<std::pair<std::string, std::string>, SettingValue> stored;
  for (const SettingValue& value : storedSettings()) stored[{value.section, value.key}] = value;
  std::cout << "# " << settingsFile() << '\n';
  for (const SettingDescription& setting : knownSettings()) {
    const auto found = stored.find({setting.section, setting.key});
    const bool isStored = found != stored.end();
    std::cout << setting.section << '/' << setting.key << '='
              << oneLine(isStored ? found->second.value : setting.defaultText) << "  # "
              << (!isStored                  ? defaultRemark(setting)
                  : found->second.forThisRun ? "for this run"
                                             : "stored")
              << "; " << setting.meaning;
    if (!setting.unit.empty()) std::cout << ", " << setting.unit;
    if (!setting.range.empty()) std::cout << "; " << setting.range;
    std::cout << '\n';
    if (isStored) stored.erase(found);
  }
  for (const auto& [name, value] : stored)
    std::cout << name.first << '/' << name.second << '=' << oneLine(value.value)
              << (value.forThisRun ? "  # for this run" : "  # stored") << "; not read by the profiler\n";
}

}  // namespace

void addSettingsCommand(CLI::App& program) {
  CLI::App* settings = program.add_subcommand("settings", "Settings that are kept between runs");
  settings->require_subcommand(1);
  settings->fallthrough();
  settings->footer(
      "Examples:\n  terrain-profiler settings list\n  terrain-profiler settings get Profile/Prf_Freq\n"
      "  terrain-profiler settings set Profile/Prf_Freq 450");

  auto name = std::make_shared<std::string>();
  auto value = std::make_shared<std::string>();
  CLI::App* get = settings->add_subcommand("get", "Print a setting's value");
  get->add_option("SECTION/KEY", *name)->required();
  get->callback([name] { getSetting(*name); });

  CLI::App* set = settings->add_subcommand("set", "Store a setting");
  set->add_option("SECTION/KEY", *name)->required();
  CLI::Option* valueOption = set->add_option("VALUE", *value);
  set->callback([name, value, valueOption] { setSetting(*name, *value, valueOption->count() > 0); });

  settings->add_subcommand("list", "Every setting with its value, unit, range and meaning")
      ->callback(listSettings);
}

}  // namespace zel::host
