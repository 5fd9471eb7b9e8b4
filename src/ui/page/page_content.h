// What the printed page of a profile says beside the plot. All of it are texts, those of the window's values
// as the window shows them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/process_services.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {

struct PageStation {
  std::string latitude, longitude;
  std::string groundHeight;   // height unit, above sea level
  std::string antennaHeight;  // height unit, above ground
};

struct PageMarker {
  std::string latitude, longitude;
  std::string groundHeight;  // height unit, above sea level
};

struct PageContent {
  std::string date, time;
  std::string product, version;  // of the host; "0.1.0"
  PageStation start, end;
  std::optional<PageMarker> left, right;  // those that are shown
  bool expanded = false;
  std::string description;  // empty: none
  std::string heightUnit, distanceUnit;
  std::string range, bearing;                               // distance unit, degrees
  std::string averageHeight, minimumHeight, maximumHeight;  // height unit
  std::string k, fresnel, frequency;                        // factor, percent, MHz
  std::string freeSpaceLoss, modeledLoss;                   // dB
  // What it was computed from, in small print at the foot of the page: one paragraph each.
  std::vector<std::string> notes;
};

// The text of a control of the window by its name, "lblSLat" or "tbxAnt1AGL"; empty when it has none.
using ShownText = std::function<std::string(std::string_view control)>;

struct PageOrigin {
  LocalTime now;
  std::string product, version;  // of the host
  std::string datum;             // of the stations; empty: not told
};

// Of a view that is up to date, whose texts are given by `shown`.
PageContent pageContent(const ProfileViewState& state, const ShownText& shown, const PageOrigin& origin,
                        const std::string& description);

// The centred lines above the plot, without the description.
std::vector<std::string> pageHeader(const PageContent& content);

// A line of the two columns below the plot. A side may be empty.
struct PageRow {
  std::string left, right;
};
std::vector<PageRow> pageRows(const PageContent& content);

}  // namespace zel
