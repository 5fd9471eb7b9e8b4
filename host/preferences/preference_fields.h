// The settings that the preferences show, one line each: where it is stored, under which page and heading,
// what its label says and how it is edited. Unit, range and default come from the component.
#pragma once

#include <string>
#include <vector>

#include "preferences/preferences_dialog.h"

namespace zel::host {

enum class FieldKind {
  kNumber,
  kPercent,  // stored as a fraction
  kChoice,
  kColour,
  kProgram,
};

struct FieldChoice {
  std::string code;  // as stored
  std::string words;
};

struct PreferenceField {
  PreferencesPage page = PreferencesPage::kTerrain;
  const char* group = "";
  const char* section = "";
  const char* key = "";
  const char* label = "";  // with its mnemonic, unique on the page
  FieldKind kind = FieldKind::kNumber;
  const char* tip = "";
  // Of kChoice. May throw SettingsError.
  std::vector<FieldChoice> (*choices)() = nullptr;
  // Of kChoice: the code as which any other is read; null where another has no meaning.
  const char* othersReadAs = nullptr;
  // Of kNumber: what a model is meant for, narrower than what it takes; both 0 without such a range.
  double sensibleLow = 0, sensibleHigh = 0;
};

const std::vector<PreferenceField>& preferenceFields();

// "1 second (source 3)", by code. Throws SettingsError.
std::vector<FieldChoice> terrainSourceChoices();

}  // namespace zel::host
