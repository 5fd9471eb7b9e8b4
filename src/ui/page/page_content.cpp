#include "ui/page/page_content.h"

#include "foundation/number_text.h"
#include "foundation/text.h"
#include "profile/view_state/profile_readouts.h"
#include "ui/page/page_notes.h"
#include "ui/plot/plot_readouts.h"

namespace zel {
namespace {

// At least so many digits.
std::string digits(int value, std::size_t least) {
  const std::string text = std::to_string(value);
  return text.size() < least ? std::string(least - text.size(), '0') + text : text;
}

std::string dateText(const LocalTime& time) {
  return digits(time.year, 4) + "-" + digits(time.month, 2) + "-" + digits(time.day, 2);
}

std::string timeText(const LocalTime& time) {
  return digits(time.hour, 2) + ":" + digits(time.minute, 2) + ":" + digits(time.second, 2);
}

std::optional<PageMarker> pageMarker(const ProfileMarker& marker, const readout::MarkerLabels& labels,
                                     const ShownText& shown) {
  if (!marker.shown) return std::nullopt;
  return PageMarker{shown(labels.latitude), shown(labels.longitude), shown(labels.height)};
}

// The lines of the start and the end, or of the left and the right marker.
PageRow pair(std::string_view what, const std::string& left, const std::string& right,
             const std::string& unit) {
  const std::string middle = " Point " + std::string(what) + ": ";
  return {"Start" + middle + left + unit, "End" + middle + right + unit};
}

std::string markerText(std::string_view what, const std::optional<PageMarker>& marker,
                       std::string PageMarker::*value) {
  return marker ? std::string(what) + (*marker).*value : std::string();
}

void addMarkerRows(std::vector<PageRow>& rows, const PageContent& content) {
  if (!content.left && !content.right) return;
  rows.push_back({markerText("Left Marker Latitude: ", content.left, &PageMarker::latitude),
                  markerText("Right Marker Latitude: ", content.right, &PageMarker::latitude)});
  rows.push_back({markerText("Left Marker Longitude: ", content.left, &PageMarker::longitude),
                  markerText("Right Marker Longitude: ", content.right, &PageMarker::longitude)});
  rows.push_back({markerText("Left Marker AMSL: ", content.left, &PageMarker::groundHeight),
                  markerText("Right Marker AMSL: ", content.right, &PageMarker::groundHeight)});
}

}  // namespace

PageContent pageContent(const ProfileViewState& state, const ShownText& shown, const PageOrigin& origin,
                        const std::string& description) {
  const auto box = [&shown](std::string_view control) { return std::string(trimmed(shown(control))); };
  PageContent content;
  content.date = dateText(origin.now);
  content.time = timeText(origin.now);
  content.product = origin.product;
  content.version = origin.version;
  content.start = {shown("lblSLat"), shown("lblSLon"), shown(readout::kStartGround), box("tbxAnt1AGL")};
  content.end = {shown("lblELat"), shown("lblELon"), shown(readout::kEndGround), box("tbxAnt2AGL")};
  content.left = pageMarker(state.leftMarker, readout::kLeftMarker, shown);
  content.right = pageMarker(state.rightMarker, readout::kRightMarker, shown);
  content.expanded = state.expanded;
  content.description = description;
  content.heightUnit = state.inputs.units.height.abbreviation;
  content.distanceUnit = state.inputs.units.distance.abbreviation;
  content.range = shown(readout::kDistance);
  content.bearing = shown(readout::kAzimuth);
  content.averageHeight = shown(readout::kAverage);
  content.minimumHeight = shown(readout::kMinimum);
  content.maximumHeight = shown(readout::kMaximum);
  content.k = formatNumber(state.inputs.k, "0.000");
  content.fresnel = generalNumber(state.inputs.fresnelFraction * 100);
  content.frequency = box("tbxFreq");
  content.freeSpaceLoss = shown(readout::kFreeSpaceLoss);
  content.modeledLoss = shown(readout::kModeledLoss);
  content.notes = pageNotes(state, shown(readout::kModeledLoss), origin.datum);
  return content;
}

std::vector<std::string> pageHeader(const PageContent& content) {
  const std::string version = content.version.empty() ? "" : " Version " + content.version;
  std::vector<std::string> lines{"Date: " + content.date + " " + content.time, content.product + version,
                                 "Terrain Profile from " + content.start.latitude + " / " +
                                     content.start.longitude + " to " + content.end.latitude + " / " +
                                     content.end.longitude};
  if (content.expanded) lines.emplace_back("Expanded to show between markers");
  return lines;
}

// Marker, average, minimum and maximum heights go without their unit; so it is meant.
std::vector<PageRow> pageRows(const PageContent& content) {
  const std::string heightUnit = " " + content.heightUnit;
  std::vector<PageRow> rows{pair("Latitude", content.start.latitude, content.end.latitude, {}),
                            pair("Longitude", content.start.longitude, content.end.longitude, {}),
                            pair("AMSL", content.start.groundHeight, content.end.groundHeight, heightUnit),
                            {"Start Antenna AGL: " + content.start.antennaHeight + heightUnit,
                             "End Antenna AGL: " + content.end.antennaHeight + heightUnit}};
  addMarkerRows(rows, content);
  rows.push_back({"Range: " + content.range + " " + content.distanceUnit, "E-Curve: " + content.k});
  rows.push_back({"Bearing: " + content.bearing + " degrees", "% Fresnel: " + content.fresnel});
  rows.push_back({"Average Height: " + content.averageHeight, "Frequency: " + content.frequency + " MHz"});
  rows.push_back(
      {"Minimum Height: " + content.minimumHeight, "Free Space Path Loss: " + content.freeSpaceLoss + " dB"});
  rows.push_back(
      {"Maximum Height: " + content.maximumHeight, "Modeled Path Loss: " + content.modeledLoss + " dB"});
  return rows;
}

}  // namespace zel
