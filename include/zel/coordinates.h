// Positions as people write and read them.
#ifndef ZEL_COORDINATES_H_
#define ZEL_COORDINATES_H_

#include <optional>
#include <string>
#include <string_view>

#include "zel/export.h"

namespace zel {

struct Position {
  double latitude = 0;   // degrees, north positive
  double longitude = 0;  // degrees, east positive, -180 up to 180

  friend bool operator==(const Position&, const Position&) = default;
};

// A station as a text gives it.
struct StationInput {
  Position position;
  std::optional<double> height;  // metres above ground; nothing when the text has none
};

struct ParsedStation {
  std::optional<StationInput> station;
  std::string error;  // what was wrong and where, when there is no station
};

// Reads "LAT,LON" or "LAT,LON,HEIGHT": decimal degrees with a sign or N/S/E/W, or degrees-minutes-seconds
// ("36-32-11.4 N", "36 32 11.4N", "36:32:11.4 N"). Heights are metres, or feet with "ft" behind them.
ZEL_API ParsedStation parseStationText(std::string_view text);

// "36-32-11.4 N" or "36.536500", as the setting Settings/CoordFormat ("DMS" or "DD") of the bound application
// says.
// Throw SettingsError when the setting cannot be read or the angle is no angle, AutomationError on a foreign
// thread.
ZEL_API std::string latitudeText(double degrees);
ZEL_API std::string longitudeText(double degrees);

}  // namespace zel

#endif  // ZEL_COORDINATES_H_
