// A path as the profile window has it, for functions that do the window's work without one: what to show of
// which path, with the settings in the place of everything that is not given.
#ifndef ZEL_PATH_VIEW_H_
#define ZEL_PATH_VIEW_H_

#include <cstdint>
#include <optional>
#include <vector>

#include "zel/coordinates.h"

namespace zel {

// Kilometres from the start, in either order.
struct PlotStretch {
  double fromKm = 0;
  double toKm = 0;
};

enum class PlotUnits : std::uint8_t { kMetric = 0, kImperial = 1 };

struct PathViewRequest {
  Position from;
  Position to;
  // Metres above ground, 0 or more; whole metres are used, rounded half to even. Without one the settings
  // Prf_HtL and Prf_HtR hold.
  std::optional<double> fromHeight;
  std::optional<double> toHeight;
  // Without them the settings hold, with the defaults of the window.
  std::optional<double> frequencyMhz;    // Prf_Freq
  std::optional<double> k;               // effective-earth factor, Prf_Crv
  std::optional<double> fresnelPercent;  // Prf_Frez, 0 (no Fresnel line) to 100, whole
  std::optional<PlotUnits> units;        // Settings/DispUnits

  // The view of this stretch alone, more than 0.1 km long. It lies between the markers, so there are no
  // others.
  std::optional<PlotStretch> expanded;
  // One or two, kilometres from the start, in any order.
  std::vector<double> markersKm;
};

}  // namespace zel

#endif  // ZEL_PATH_VIEW_H_
