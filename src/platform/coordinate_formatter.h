// Display texts of positions.
#pragma once

#include <string>
#include <string_view>

namespace zel {

class CoordinateFormatter {
 public:
  virtual ~CoordinateFormatter() = default;
  // "DMS" ("36-32-11.4 N") or "DD" (decimal degrees); anything else is taken as "DMS".
  virtual void SetFormat(std::string_view format) = 0;
  virtual std::string LatitudeText(double degrees) const = 0;
  virtual std::string LongitudeText(double degrees) const = 0;
};

}  // namespace zel
