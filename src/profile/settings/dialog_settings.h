// The settings that the settings dialog edits: read when it opens, written when it is left with OK.
#pragma once

#include <cstdint>

#include "profile/settings/readers.h"

namespace zel {

struct DialogSettings {
  std::int16_t pointsPerKm = 50;  // 1/km
  std::int16_t maxPoints = 1000;
  std::int16_t source = 3;  // as stored: a code that no source has is kept, and chooses nothing in the list
  std::int16_t startHeight = 30;  // m above ground
  std::int16_t endHeight = 30;    // m above ground
  std::int16_t elevationLines = 3;
  std::int16_t rangeLines = 3;
  float k = 1.333F;       // dimensionless
  float frequency = 950;  // MHz
  std::int16_t fresnelPercent = 100;
  std::int32_t dispUnits = 0;   // 0 or 1
  std::int32_t calcMethod = 0;  // 0 or 1
  bool flatEarth = true;

  friend bool operator==(const DialogSettings&, const DialogSettings&) = default;
};

// In the order of the fields. A source of 0 or -1 becomes 3; units and method other than 1 become 0.
DialogSettings readDialogSettings(const SettingsReader& reader);

// In the order of the fields.
void writeDialogSettings(const SettingsWriter& writer, const DialogSettings& values);

}  // namespace zel
