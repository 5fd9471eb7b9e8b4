// The state of one view of a profile, as a value without widgets: what the window shows, the plot draws, the
// printer prints and the exports write.
//
// Distances are kilometres, heights metres, angles degrees unless a field says otherwise. The procedures of
// profile_procedures.h fill it; everything else reads it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "component/services/display_units.h"
#include "component/services/module_state.h"
#include "foundation/geo_point.h"
#include "foundation/sample_array.h"
#include "platform/terrain.h"
#include "profile/calculation/height_statistics.h"
#include "profile/calculation/line_of_sight.h"
#include "profile/path/path_geometry.h"
#include "profile/path_loss/model_parameters.h"
#include "profile/plot_index/plot_index.h"
#include "profile/settings/readers.h"

namespace zel {

// What the view is computed from, as the control panel holds it.
struct ProfileInputs {
  GeoPoint start;
  GeoPoint end;
  std::array<std::int16_t, 2> antennaHeights{};  // metres above ground, at start and end
  float k = 0;                                   // effective-earth factor
  CurvePreset curve = CurvePreset::kCustom;
  float frequency = 0;        // MHz
  float fresnelFraction = 0;  // percentage / 100; 0 draws no Fresnel line
  FresnelPreset fresnel = FresnelPreset::kCustom;
  std::int16_t source = 3;      // terrain source code
  std::int32_t calcMethod = 0;  // 0 "FCC 4-Point", 1 "Bivariate  Interpolation"
  std::int32_t dispUnits = 0;   // 0 meters/kilometers, 1 feet/miles
  DisplayUnits units;
  bool contour = false;  // the source comes from Con_TRes
};

struct ProfileFlags {
  bool resample = true;            // the terrain must be sampled before the next drawing
  bool recomputeCurvature = true;  // the rise must be computed before the next drawing
  bool loading = false;            // input changes start nothing, nothing is drawn
  bool profileError = false;       // the path cannot be profiled: plot and exports skip it
  bool terrainError = false;       // because of the terrain data
  bool underRange = false;         // because it is too short
  bool modeledLossPending = true;  // the modeled loss must be computed by the next drawing
  bool drawing = false;            // a drawing is in progress
};

struct ProfileMarker {
  float x = 0;  // km in the plot; keeps its value when the marker is cleared
  bool shown = false;
  // For exports and printing; kept x becomes 0 when the marker is cleared.
  float keptX = 0;         // km in the plot
  float groundHeight = 0;  // metres above sea level
  GeoPoint position;       // as computed, in the stations' datum
  GeoPoint converted;      // the same after the datum conversion
};

struct ProfileViewState {
  ProfileInputs inputs;
  ProfileFlags flags;

  PathGeometry path;
  SampleArray<float> rawElevation;  // 1 to T, metres as sampled, voids included
  SampleArray<float> elevation;     // 1 to T, metres after clean-up
  SampleArray<float> curve;         // 1 to T, curvature rise in metres
  // The effective-earth factor of that rise. A k that is typed becomes the inputs' at once, and the rise's
  // when the rise is computed anew.
  float riseK = 0;
  SampleArray<float> fresnel;  // up to N + E, metres; empty without a Fresnel line
  LineOfSight lineOfSight;
  float wavelength = 0;  // metres
  HeightStatistics statistics;
  SamplingReport samplingReport;
  // Of the modeled loss; none when they could not be read: there is no modeled loss then.
  std::optional<ModelParameters> model;

  ProfileMarker leftMarker;
  ProfileMarker rightMarker;
  bool expanded = false;  // the view shows the stretch between the markers

  PlotIndex plotIndex() const { return PlotIndex(path); }
  // The Fresnel line at a sample; the line of sight when there is none. Metres.
  float fresnelHeight(std::int32_t sample) const;
};

// The state at load: stations and heights of the component, everything else from the settings, flags as for a
// first drawing. An antenna height below 0 is taken from the settings.
ProfileViewState loadedViewState(const ModuleState& module, const SettingsReader& reader,
                                 const UnitsTable& units, bool contour);

}  // namespace zel
