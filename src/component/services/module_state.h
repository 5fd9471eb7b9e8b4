// The state of the component: one for the process, shared by every ProfileControl, the windows and the
// exports.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "foundation/geo_point.h"

namespace zel {

struct ModuleState {
  GeoPoint station1;
  GeoPoint station2;
  std::array<std::int16_t, 2> antennaHeights{};  // whole metres above ground, of station 1 and 2

  std::int32_t datumCode = 0;
  std::string datumText;  // "NAD-27" or "NAD-83"; empty until StaDatum is first set

  std::int16_t elevLines = 0;
  std::int16_t rangeLines = 0;
  bool optionButtonVisible = false;

  std::string printDescription;
  bool printDescriptionSet = false;  // the host has given one: printing does not ask
  bool printLandscape = false;
  std::string ownerName;
  std::string progName;

  bool profileWindowLoaded = false;
  bool settingsDialogLoaded = false;
  std::int32_t profileWindowHandle = 0;  // 0 while no window is loaded
  bool bProfileFailed = false;

  // What was last answered when a signal graph asked, offered at the next.
  double graphErp = 0;                  // kW
  double graphLongleyRiceClutter = 0;   // dB
  double graphPointToPointClutter = 0;  // dB

  std::string linkBudgetLoss;       // dB, as the profile window shows the modeled loss
  std::string helperProgramFolder;  // the first string of the ToolApplication, refreshed by SetClientApp
  std::string coordinateFormat;     // the second
};

}  // namespace zel
