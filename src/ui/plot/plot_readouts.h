// The labels of the profile window that the plot and its pointer write, by their control names.
#pragma once

#include <string_view>

namespace zel::readout {

inline constexpr std::string_view kFreeSpaceLoss = "lblFSLoss";    // dB
inline constexpr std::string_view kModeledLoss = "lblMLoss";       // dB
inline constexpr std::string_view kCursorPosition = "lblCurPosn";  // distance unit, from the start
inline constexpr std::string_view kCursorHeight = "lblCurHt";      // height unit, above sea level
inline constexpr std::string_view kBelowMouse =
    "lblmbelowmouse";  // height unit, from the ground to the pointer

// What stands in the menu's item, "Expand" or "Normal".
inline constexpr std::string_view kExpandCaption = "mnuProfileExpand";

// The four labels of a marker.
struct MarkerLabels {
  std::string_view latitude;
  std::string_view longitude;
  std::string_view height;            // height unit, above sea level
  std::string_view distanceToCursor;  // distance unit
};
inline constexpr MarkerLabels kLeftMarker{"lblMk1Lat", "lblMk1Lon", "lblMk1Ht", "lblMk1Posn"};
inline constexpr MarkerLabels kRightMarker{"lblMk2Lat", "lblMk2Lon", "lblMk2Ht", "lblMk2Posn"};

}  // namespace zel::readout
