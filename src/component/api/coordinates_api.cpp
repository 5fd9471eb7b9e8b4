// Public texts of positions over the component's formatter and the tool library's parser.
#include <memory>

#include "component/api/ready_component.h"
#include "profile/settings/settings_table.h"
#include "zel/coordinates.h"
#include "zeltool/coordinates/station_text.h"

namespace zel {
namespace {

// The format is read anew each time, so that a changed setting holds at once.
std::unique_ptr<CoordinateFormatter> formatter(Component& component) {
  auto made = component.makeCoordinateFormatter();
  made->SetFormat(component.settingsReader().text(settings::kCoordFormat, SettingsUser::kWindow));
  return made;
}

}  // namespace

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
  return accessing([=](Component& component) { return formatter(component)->LatitudeText(degrees); });
}

std::string longitudeText(double degrees) {
  return accessing([=](Component& component) { return formatter(component)->LongitudeText(degrees); });
}

}  // namespace zel
