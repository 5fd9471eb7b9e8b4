// Positions as texts: "36-32-11.4 N" (degrees, minutes, seconds to a tenth: 3 m) or "36.536500" (decimal
// degrees, north and east positive, six decimals: 0.1 m). The decimal point is always ".", so that the texts
// read back (see station_text.h).
#pragma once

#include "platform/coordinate_formatter.h"

namespace zel {

class StandardCoordinateFormatter : public CoordinateFormatter {
 public:
  void SetFormat(std::string_view format) override;
  // RuntimeError 6 for angles that are not finite or beyond 360 degrees.
  std::string LatitudeText(double degrees) const override;
  std::string LongitudeText(double degrees) const override;

 private:
  std::string text(double degrees, char positive, char negative) const;

  bool decimalDegrees_ = false;
};

}  // namespace zel
