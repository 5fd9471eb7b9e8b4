// Markers and strobe: what a click, a move of the pointer and the clear buttons do to state, picture and
// labels.
//
// All strokes are drawn with the XOR pen in colours that a second stroke takes away again. A marker is placed
// exactly where the pointer is, not at the nearest sample. Pointer positions left of the back point, and
// those that would need a sample beyond the last, are ignored.
//
// Failures of settings, geodesy, datum shift and formatter pass through; what was drawn before stays known to
// the view.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "canvas/canvas.h"
#include "foundation/number_text.h"
#include "platform/coordinate_formatter.h"
#include "platform/datum_shift.h"
#include "platform/geodesy.h"
#include "profile/settings/readers.h"
#include "profile/view_state/profile_readouts.h"
#include "profile/view_state/profile_view_state.h"
#include "ui/plot/plot_readouts.h"
#include "ui/plot/plot_view.h"

namespace zel {

enum class MarkerSide { kLeft, kRight };

class PlotMarkers {
 public:
  // All must outlive the markers.
  struct Services {
    Canvas* canvas = nullptr;
    ProfileReadouts* readouts = nullptr;
    const Geodesy* geodesy = nullptr;
    const DatumShift* datumShift = nullptr;
    const CoordinateFormatter* formatter = nullptr;
    const ModuleState* module = nullptr;  // for the datum's name
    NumberStyle numbers;
  };
  PlotMarkers(Services services, SettingsReader settings, ProfileViewState& state, PlotView& view)
      : services_(std::move(services)), settings_(std::move(settings)), state_(state), view_(view) {}

  // A click at plot x, km. With one marker shown the new one takes the side where it lies, and the shown one
  // the other; with both shown nothing happens.
  void place(float x);

  // The pointer is at plot x (km) and height y (metres, in the plot): read-outs and strobe.
  void point(float x, float y);

  // Hides a shown marker, erases its line and empties its labels; its position is kept. True when the erased
  // line has left traces, because strokes of a drawing crossed it or its colour was changed since: then the
  // picture is to be drawn anew.
  bool clear(MarkerSide side);

  // Shows the texts of both markers again, from the state: after a change of units or of the coordinate
  // format.
  void showLabels();

 private:
  struct Side {
    ProfileMarker& marker;
    MarkerStroke& stroke;
    MarkerTexts& texts;
    const readout::MarkerLabels& labels;
  };
  Side side(MarkerSide which);
  bool terrainStands() const;

  void put(Side side, float x, const PointerHeights& heights);
  void handOver(Side from, Side to);
  void locate(ProfileMarker& marker) const;
  void showPosition(Side side);
  void showDistance(Side side, float x);
  void moveStrobe(float x, float ground);
  void strobeCircle(const Strobe& strobe);
  void show(std::string_view control, std::string& kept, std::string text);
  void showNumber(std::string_view control, double value, std::string_view pattern);
  std::string number(double value, std::string_view pattern) const;

  Services services_;
  SettingsReader settings_;
  ProfileViewState& state_;
  PlotView& view_;
};

}  // namespace zel
