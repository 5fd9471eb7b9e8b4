// Public settings functions over the component's store, under the bound application's title.
#include <utility>

#include "component/api/ready_component.h"
#include "foundation/number_text.h"
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

std::string readerName(SettingsUser reader) {
  return reader == SettingsUser::kDialog ? "the settings dialog" : "the loss without a window";
}

SettingDescription described(const Setting& setting) {
  SettingDescription description;
  description.section = setting.section;
  description.key = setting.key;
  description.type = typeName(setting.type);
  description.defaultText = setting.defaultText;
  if (setting.otherDefault) {
    description.otherDefault = setting.otherDefault->text;
    description.otherReader = readerName(setting.otherDefault->reader);
  }
  description.unit = setting.unit;
  description.range = rangeText(setting);
  description.meaning = setting.meaning;
  return description;
}

// The table's spelling of a known setting's name, or the name as it is.
std::pair<std::string, std::string> properName(std::string_view section, std::string_view key) {
  const Setting* known = findSetting(section, key);
  if (known == nullptr) return {std::string(section), std::string(key)};
  return {std::string(known->section), std::string(known->key)};
}

}  // namespace

std::string settingsPlace(Component& component) noexcept {
  try {
    return component.settingsFile(component.host().clientTitle());
  } catch (...) {
    return {};
  }
}

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
  const auto name = properName(section, key);
  for (SettingValue& value : storedSettings())
    if (value.section == name.first && value.key == name.second) return std::move(value.value);
  return std::nullopt;
}

std::vector<SettingValue> storedSettings() {
  return accessing([](Component& component) {
    const std::string title = component.host().clientTitle();
    std::vector<SettingValue> values;
    for (StoredSetting& setting : component.settings().AllSettings(title)) {
      const bool forThisRun = component.settings().isOverlaid(setting.section, setting.key);
      values.push_back(
          {std::move(setting.section), std::move(setting.key), std::move(setting.value), forThisRun});
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
  return problem;
}

void storeSetting(std::string_view section, std::string_view key, std::string_view value) {
  const auto name = properName(section, key);
  accessing([&](Component& component) { component.host().WriteSetting(name.first, name.second, value); });
}

void overrideSetting(std::string_view section, std::string_view key, std::string_view value) {
  Component& component = readyComponent();
  component.settings().overlay(section, key, value);
  // What is read when a host is bound.
  component.host().RefreshTexts();
}

std::string settingsFile() {
  return accessing(
      [](Component& component) { return component.settingsFile(component.host().clientTitle()); });
}

std::optional<std::string> settingsProblem(std::string_view title) {
  try {
    static_cast<void>(Component::instance().storedSettings().AllSettings(title));
    return std::nullopt;
  } catch (...) {
    const std::string file = Component::instance().settingsFile(std::string(title));
    return "the settings in " + file + " cannot be used: " + currentError().description;
  }
}

}  // namespace zel
