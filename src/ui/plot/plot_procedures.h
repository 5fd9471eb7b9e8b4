// The procedures of the profile window that draw the plot and follow the pointer over it, under their given
// names: each runs under the trap, reads the settings anew and shows its results in the labels.
//
// The drawing sets the pointer to the hourglass and the state's drawing flag, and takes both back on every
// way out. Nothing here is a widget: a picture without a window is drawn in the same way.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "canvas/canvas.h"
#include "platform/coordinate_formatter.h"
#include "platform/datum_shift.h"
#include "platform/dialogs.h"
#include "platform/geodesy.h"
#include "platform/process_services.h"
#include "profile/view_state/profile_procedures.h"
#include "ui/plot/plot_drawing.h"
#include "ui/plot/plot_markers.h"
#include "ui/plot/plot_view.h"

namespace zel {

// What the drawing asks of the control panel, at each drawing anew.
struct PlotPanel {
  std::string startAntenna;  // texts of tbxAnt1AGL, tbxAnt2AGL and tbxFreq: only whether they are empty
  std::string endAntenna;
  std::string frequency;
  double exaggeration = 100;  // %, Slider1
};

// Under which names the drawing's procedures run: those of the window, or their twins for the page.
struct PlotProcedureNames {
  std::string_view line = ":drawLine:";
  std::string_view rangeAndHeight = ":drawRangeAndHeight:";
  std::string_view fresnel1 = ":drawFresnel1:";
};
inline constexpr PlotProcedureNames kPrintProcedures{
    ":PrintLine:", ":PrintRangeAndHeight:", ":PrintFresnel1:"};

class PlotProcedures {
 public:
  // All must outlive the procedures.
  struct Services {
    Canvas* canvas = nullptr;
    ProfileProcedures* profile = nullptr;
    std::function<PlotPanel()> panel;
    ProfileReadouts* readouts = nullptr;
    Pointer* pointer = nullptr;
    Dialogs* dialogs = nullptr;
    const Geodesy* geodesy = nullptr;
    const DatumShift* datumShift = nullptr;
    const CoordinateFormatter* formatter = nullptr;
    ModuleState* module = nullptr;
    TrappedModule* trapped = nullptr;    // of the window, "frmProfile"
    std::function<void()> printProfile;  // nothing when there is no printing
    // Called when a drawing is about to begin, before the scale is set; may be empty. The profile is up to
    // date by then, and everything on the canvas may be given up: it is drawn anew.
    std::function<void()> prepareCanvas;
    PlotStyle style;
    PlotProcedureNames names;
  };
  PlotProcedures(Services services, const SettingsReader& settings, ProfileViewState& state);
  PlotProcedures(const PlotProcedures&) = delete;  // the markers hold on to this one's view
  PlotProcedures& operator=(const PlotProcedures&) = delete;

  // --- drawing; a failure sets bProfileFailed ---

  // Draws everything anew, after bringing rise, terrain, statistics and lines up to date. Nothing, without a
  // message, while a panel text is empty, the profile-error flag is set or the view is loading; after a
  // failed sampling the picture keeps what it showed.
  void drawLine();
  // Its parts for the samples that the view has. A failure in one does not keep the others from being drawn.
  void drawRangeAndHeight(std::int16_t firstIndex, std::int16_t lastIndex);
  void drawFresnel1();
  // The modeled loss with the current inputs in lblMLoss; empty when there is none. A failure of the model
  // leaves the profile itself alone.
  void UpdateModeledLoss();

  // --- pointer; plot x in km, y in metres ---
  void Picture1_MouseDown(float x, float y);
  void Picture1_MouseMove(float x, float y);
  // A line that cannot be taken away without a trace is followed by a drawing.
  void cmdClear1_Click();
  void cmdClear2_Click();

  // Between the whole path and the stretch between the markers.
  void mnuProfileExpand_Click();
  // Asks "Print Profile?" and prints on yes.
  void Form_DblClick();

  // Shows the labels of the placed markers again, after a change of units or of the coordinate format.
  void showMarkerLabels() { markers_.showLabels(); }
  // The picture was made anew, white: at a resize.
  void forgetStrokes() { view_.forgetStrokes(); }
  const PlotView& view() const { return view_; }
  // Whether the last stroke of a drawing was reached, since these procedures were made.
  bool hasDrawn() const { return drawings_ > 0; }

 private:
  bool panelIsComplete(const PlotPanel& panel) const;
  void draw(double exaggeration);
  void leaveExpandedView();
  void updateLosses();
  void clearMarker(std::string_view procedure, MarkerSide side);
  PlotDrawing drawing();

  Services services_;
  SettingsReader settings_;
  ProfileViewState& state_;
  PlotView view_;
  std::int64_t drawings_ = 0;  // that succeeded
  PlotMarkers markers_;
};

}  // namespace zel
