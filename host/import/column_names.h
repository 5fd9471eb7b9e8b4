// What the name of a column, or of a property, says about its values.
#pragma once

#include <string_view>

namespace zel::host {

inline constexpr double kMetresPerFoot = 0.3048;

enum class ColumnRole {
  kOther,
  kName,
  kLatitude,
  kLongitude,
  kPosition,  // both in one
  // Beside a column of whole degrees.
  kLatitudeMinutes,
  kLatitudeSeconds,
  kLatitudeLetter,  // N or S
  kLongitudeMinutes,
  kLongitudeSeconds,
  kLongitudeLetter,  // E or W
  kAntenna,          // height above ground
  kSeaLevel,         // a height or elevation above sea level: never an antenna height
  kProjected,        // metres of a map grid: never degrees
  kFrequency,
};

struct ColumnMeaning {
  ColumnRole role = ColumnRole::kOther;
  int rank = 0;     // among columns of the same role the least is taken
  int side = 0;     // of a link: 1 or 2; 0 when the name tells none
  double unit = 1;  // metres, or megahertz, that a one in the column stands for
};

// Case, blanks, accents, underscores and units behind the name do not matter: "Lat.", "LATITUDE_WGS84",
// "Antenna height (ft)", "Höhe", "site_a", "tx lon", "LON_MIN", "N/S".
ColumnMeaning columnMeaning(std::string_view name);

}  // namespace zel::host
