#include "zeltool/coordinates/standard_coordinate_formatter.h"

#include <cmath>

#include "foundation/number_text.h"
#include "foundation/runtime_error.h"
#include "foundation/text.h"

namespace zel {

namespace {

constexpr double kLargestAngle = 360;  // degrees

std::string twoDigits(long value) { return formatNumber(static_cast<double>(value), "00"); }

// The tenths of a second are rounded as a whole, so that 59.95 seconds carry into the minute.
std::string sexagesimalText(double degrees, char positive, char negative) {
  const long tenths = std::lround(std::abs(degrees) * 36000);
  const long seconds = tenths / 10;
  std::string text = std::to_string(seconds / 3600) + "-" + twoDigits(seconds / 60 % 60) + "-" +
                     twoDigits(seconds % 60) + "." + std::to_string(tenths % 10) + " ";
  text += degrees < 0 && tenths > 0 ? negative : positive;
  return text;
}

}  // namespace

void StandardCoordinateFormatter::SetFormat(std::string_view format) {
  decimalDegrees_ = equalIgnoringCase(trimmed(format), "DD");
}

std::string StandardCoordinateFormatter::LatitudeText(double degrees) const {
  return text(degrees, 'N', 'S');
}

std::string StandardCoordinateFormatter::LongitudeText(double degrees) const {
  return text(degrees, 'E', 'W');
}

std::string StandardCoordinateFormatter::text(double degrees, char positive, char negative) const {
  if (!(std::abs(degrees) <= kLargestAngle)) throw RuntimeError::overflow();
  return decimalDegrees_ ? formatNumber(degrees, "0.000000") : sexagesimalText(degrees, positive, negative);
}

}  // namespace zel
