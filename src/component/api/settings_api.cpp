// Public settings functions over the component's store, under the bound application's title.
#include "component/api/ready_component.h"
#include "foundation/number_text.h"
#include "foundation/runtime_error.h"
#include "profile/settings/settings_table.h"
#include "zel/settings.h"

namespace zel {
namespace {

std::string typeName(SettingType type) {
  switch (type) {
    case SettingType::kInt16:
      return "16-bit integer";
    case SettingType::kInt32:
      return "32-bit integer";
    case SettingType::kReal32:
      return "32-bit real";
    case SettingType::kReal64:
      return "64-bit real";
    case SettingType::kBoolean:
      return "boolean";
    case SettingType::kColour:
      return "colour";
    case SettingType::kText:
      return "text";
    case SettingType::kPaths:
      break;
  }
  return "paths";
}

std::string rangeText(const Setting& setting) {
  if (!setting.choices.empty()) {
    std::string text = "one of ";
    for (const char c : setting.choices) text += c == ',' ? std::string(", ") : std::string(1, c);
    return text;
  }
  if (!setting.range) return {};
  return generalNumber(setting.range->low) + " to " + generalNumber(setting.range->high);
}

SettingDescription described(const Setting& setting) {
  SettingDescription description;
  description.section = setting.section;
  description.key = setting.key;
  description.type = typeName(setting.type);
  description.defaultText = setting.defaultText;
  description.unit = setting.unit;
  description.range = rangeText(setting);
  description.meaning = setting.meaning;
  return description;
}

// Runs an access to the store and turns its failure into the public one.
template <typename Access>
auto accessing(Access&& access) {
  try {
    return access(readyComponent());
  } catch (const RuntimeError& error) {
    throw SettingsError("the settings in " + settingsFile() + " cannot be used: " + error.description() +
                        " (error " + std::to_string(error.number()) +
                        "); see that the file and its folder may be read and written");
  }
}

}  // namespace

SettingsError::SettingsError(const std::string& what) : std::runtime_error(what) {}
SettingsError::~SettingsError() = default;

std::vector<SettingDescription> knownSettings() {
  std::vector<SettingDescription> descriptions;
  for (const Setting* setting : settingsTable()) descriptions.push_back(described(*setting));
  return descriptions;
}

std::optional<SettingDescription> knownSetting(std::string_view section, std::string_view key) {
  const Setting* setting = findSetting(section, key);
  if (setting == nullptr) return std::nullopt;
  return described(*setting);
}

std::optional<std::string> storedSetting(std::string_view section, std::string_view key) {
  for (SettingValue& value : storedSettings())
    if (value.section == section && value.key == key) return std::move(value.value);
  return std::nullopt;
}

std::vector<SettingValue> storedSettings() {
  return accessing([](Component& component) {
    const std::string title = component.host().clientTitle();
    const std::vector<StoredSetting> stored = component.storedSettings().AllSettings(title);
    std::vector<SettingValue> values;
    for (const StoredSetting& effective : component.settings().AllSettings(title)) {
      bool fromStore = false;
      for (const StoredSetting& candidate : stored)
        fromStore = fromStore || (candidate.section == effective.section && candidate.key == effective.key &&
                                  candidate.value == effective.value);
      values.push_back({effective.section, effective.key, effective.value, !fromStore});
    }
    return values;
  });
}

std::optional<std::string> settingProblem(std::string_view section, std::string_view key,
                                          std::string_view value) {
  const Setting* setting = findSetting(section, key);
  if (setting == nullptr) return std::nullopt;
  std::string problem = settingProblem(*setting, value);
  if (problem.empty()) return std::nullopt;
  if (problem.back() == '.') problem.pop_back();
  return problem;
}

void storeSetting(std::string_view section, std::string_view key, std::string_view value) {
  accessing([&](Component& component) { component.host().WriteSetting(section, key, value); });
}

void overrideSetting(std::string_view section, std::string_view key, std::string_view value) {
  readyComponent().settings().overlay(section, key, value);
}

std::string settingsFile() {
  Component& component = readyComponent();
  return component.settingsFile(component.host().clientTitle());
}

}  // namespace zel
