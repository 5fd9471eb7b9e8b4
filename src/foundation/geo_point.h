// A position on the earth.
#pragma once

namespace zel {

struct GeoPoint {
  double latitude = 0;   // degrees, north positive
  double longitude = 0;  // degrees, east positive

  friend bool operator==(const GeoPoint&, const GeoPoint&) = default;
};

}  // namespace zel
