// The readers of the settings: each takes what it needs, in its order, with its defaults and its repairs.
// None writes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "profile/settings/settings_access.h"

namespace zel {

// A terrain source code other than 1, 2, 3, 7 or 9 becomes 3.
std::int16_t repairedSource(std::int16_t code);
// A value other than 0 or 1 becomes 0.
std::int32_t repairedChoice(std::int32_t value);

// The option that stands for k: decided on k as "0.00" shows it, so everything from 1.325 to 1.335 is the
// preset 1.333 and keeps its own value.
enum class CurvePreset : std::int8_t { k1333 = 0, k1000 = 1, kCustom = 2 };
CurvePreset curvePreset(float k);

// The option that stands for a percentage of the first Fresnel zone.
enum class FresnelPreset : std::int8_t { k100 = 0, k60 = 1, kCustom = 2, kNone = 3 };
FresnelPreset fresnelPreset(std::int16_t percent);

// What lays out a path.
struct CalculationSettings {
  std::int16_t pointsPerKm = 0;  // 1/km
  std::int16_t maxPoints = 0;    // dimensionless
};
CalculationSettings readCalculationSettings(const SettingsReader& reader);

// What the profile window needs of the settings depends on its path.
struct WindowSettingsRequest {
  bool startHeightGiven = true;  // the host has given the antenna height: the setting is not read
  bool endHeightGiven = true;
  bool contour = false;  // the source is Con_TRes instead of Prf_TRes
};

struct WindowSettings {
  std::int32_t dispUnits = 0;               // 0 or 1
  std::int32_t calcMethod = 0;              // 0 or 1
  std::optional<std::int16_t> startHeight;  // m above ground, when asked for
  std::optional<std::int16_t> endHeight;    // m above ground, when asked for
  std::int16_t source = 3;                  // 1, 2, 3, 7 or 9
  float k = 0;                              // dimensionless
  CurvePreset curve = CurvePreset::kCustom;
  float frequency = 0;              // MHz
  std::int16_t fresnelPercent = 0;  // %
  FresnelPreset fresnel = FresnelPreset::kCustom;
};
WindowSettings readWindowSettings(const SettingsReader& reader, const WindowSettingsRequest& request);

// What the calculation without a window needs, in its order. The source is repaired as in the window.
struct WindowlessSettings {
  std::int32_t calcMethod = 0;  // 0 or 1
  std::int16_t source = 3;      // 1, 2, 3, 7 or 9
  float frequency = 0;          // MHz, 100 when it is not set
  CalculationSettings density;
};
WindowlessSettings readWindowlessSettings(const SettingsReader& reader);

// The numbers of reference lines, read at each redraw.
std::int16_t readElevationLines(const SettingsReader& reader);
std::int16_t readRangeLines(const SettingsReader& reader);

// One of the colours as 0x00BBGGRR; bits above the 24 are dropped. Read anew for each stroke that uses it.
std::int32_t readColour(const SettingsReader& reader, const Setting& colour);

// The parameters of the irregular terrain model as they are stored; confidence and reliability may be
// percentages.
struct ItmSettings {
  std::int16_t polarization = 0;  // 0 horizontal, anything else vertical
  std::int16_t climate = 0;       // 1 to 7
  double permittivity = 0;        // relative
  double conductivity = 0;        // S/m
  double refractivity = 0;        // N-units
  double confidence = 0;          // fraction or percent
  double reliability = 0;         // fraction or percent
};
ItmSettings readItmSettings(const SettingsReader& reader, SettingsUser user);

// The constants of the point-to-point model.
struct PtpSettings {
  std::int16_t polarization = 0;     // 0 horizontal, 1 vertical
  double permittivity = 0;           // relative
  double conductivity = 0;           // S/m
  std::int16_t clutterCategory = 0;  // 0 none
  double clutterHeight = 0;          // m above ground
};
PtpSettings readPtpSettings(const SettingsReader& reader);

// The files and folders of a terrain source as stored, ";" between; empty when it is not set and for a code
// that is none.
std::string readTerrainPaths(const SettingsReader& reader, int code);
// Memory for decoded terrain in MiB; a value outside the setting's range is brought into it.
std::int32_t readTerrainCacheMB(const SettingsReader& reader);

}  // namespace zel
