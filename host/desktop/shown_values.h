// Lengths, angles and positions as the window shows them, and as a person types them.
#pragma once

#include <QString>
#include <cstddef>
#include <optional>
#include <string>

#include "map/graticule.h"
#include "planning/plan.h"

namespace zel::host {

// What the settings say about units and coordinates.
struct ShownUnits {
  bool imperial = false;  // feet and miles
  AngleFormat angles = AngleFormat::kDegreesMinutesSeconds;

  friend bool operator==(const ShownUnits&, const ShownUnits&) = default;
};

QString heightUnit(const ShownUnits& units);    // "m", "ft"
QString distanceUnit(const ShownUnits& units);  // "km", "mi"
// Without the unit; `decimals` after the point, and none of them more than is needed where it is negative.
QString heightNumber(double metres, const ShownUnits& units, int decimals);
QString distanceNumber(double km, const ShownUnits& units, int decimals);
QString heightText(double metres, const ShownUnits& units, int decimals = 0);  // "30 m", "98 ft"
QString distanceText(double km, const ShownUnits& units, int decimals = 2);    // "28.70 km"
QString plainNumber(double value, int mostDecimals);                           // "450", "450.25"

QString shownLatitude(double degrees, const ShownUnits& units);  // "36-24-00.0 N", "36.400000"
QString shownLongitude(double degrees, const ShownUnits& units);
QString shownPosition(const Position& position, const ShownUnits& units);  // "36-24-00.0 N, 84-21-00.0 W"

// "1 link", "2 links".
QString counted(std::size_t count, const char* one);
// A height of the terrain, or "no height", "no terrain" for what stands in its place (zel/terrain_map.h).
QString heightOrNone(float metres, const ShownUnits& units);

// For tool tips, which take what looks like HTML for it: names and paths as they are, line by line.
QString plainTip(const QString& text);

// A value that was typed: the value, or why it is none.
template <typename Value>
struct Typed {
  std::optional<Value> value;
  QString problem;
};

Typed<double> typedLatitude(const QString& text);
Typed<double> typedLongitude(const QString& text);
Typed<Position> typedPosition(const QString& text);  // "36.4, -84.35" or degrees-minutes-seconds
// Metres; a number is in the units shown unless "m" or "ft" stands behind it.
Typed<double> typedAntenna(const QString& text, const ShownUnits& units);
// MHz; an empty text is no frequency of its own.
Typed<std::optional<double>> typedFrequency(const QString& text);

}  // namespace zel::host
