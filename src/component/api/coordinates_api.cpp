// Public texts of positions over the component's formatter and the tool library's parser.
#include "component/api/ready_component.h"
#include "zel/coordinates.h"
#include "zeltool/coordinates/station_text.h"

namespace zel {

ParsedStation parseStationText(std::string_view text) {
  const Parsed<StationText> parsed = parseStation(text);
  ParsedStation result;
  if (parsed.ok())
    result.station =
        StationInput{{parsed.value.position.latitude, parsed.value.position.longitude}, parsed.value.height};
  else
    result.error = parsed.text + " (column " + std::to_string(parsed.column) + ")";
  return result;
}

std::string latitudeText(double degrees) {
  return readyComponent().makeCoordinateFormatter()->LatitudeText(degrees);
}

std::string longitudeText(double degrees) {
  return readyComponent().makeCoordinateFormatter()->LongitudeText(degrees);
}

}  // namespace zel
