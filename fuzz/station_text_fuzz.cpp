// Station texts: whatever the text, a position within its ranges or an error with its place; a position that
// was read is written by both formats and read back within their rounding.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "zeltool/coordinates/standard_coordinate_formatter.h"
#include "zeltool/coordinates/station_text.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

template <typename T>
bool checked(const zel::Parsed<T>& parsed, std::string_view text) {
  require(parsed.ok() == (parsed.column == 0) && parsed.ok() == parsed.text.empty());
  require(parsed.column <= text.size() + 1);
  return parsed.ok();
}

void checkRange(zel::GeoPoint point) {
  require(std::abs(point.latitude) <= 90 && std::abs(point.longitude) <= 180);
}

double apart(double a, double b) { return std::abs(std::remainder(a - b, 360.0)); }

void checkWrittenAndRead(zel::GeoPoint point, const char* format, double tolerance) {
  zel::StandardCoordinateFormatter formatter;
  formatter.SetFormat(format);
  const std::string text =
      formatter.LatitudeText(point.latitude) + "," + formatter.LongitudeText(point.longitude);
  const auto again = zel::parsePosition(text);
  require(again.ok());
  require(apart(again.value.latitude, point.latitude) <= tolerance);
  require(apart(again.value.longitude, point.longitude) <= tolerance);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto latitude = zel::parseLatitude(text);
  if (checked(latitude, text)) require(std::abs(latitude.value) <= 90);
  const auto longitude = zel::parseLongitude(text);
  if (checked(longitude, text)) require(std::abs(longitude.value) <= 180);

  const auto position = zel::parsePosition(text);
  const auto station = zel::parseStation(text);
  if (checked(position, text)) {
    checkRange(position.value);
    require(station.ok() && station.value.position == position.value && !station.value.height);
    checkWrittenAndRead(position.value, "DMS", 0.05 / 3600 + 1e-11);
    checkWrittenAndRead(position.value, "DD", 0.5e-6 + 1e-11);
  }
  if (checked(station, text)) {
    checkRange(station.value.position);
    require(!station.value.height || std::isfinite(*station.value.height));
  }
  return 0;
}
