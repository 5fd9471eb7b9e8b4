// The profile window's view of a path, made without the window: its state, computed and drawn by the window's
// own procedures over any canvas, with the request's values in the settings' place.
//
// What the window would tell in a box, or end the process over, is refused with its reason before anything is
// drawn. Failures stay here: they reach no log, no box and no flag of the host's component.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "canvas/canvas.h"
#include "component/api/path_request.h"
#include "component/component.h"
#include "component/desktop/desktop_process.h"
#include "component/services/error_log.h"
#include "component/services/error_trap.h"
#include "component/services/hourglass.h"
#include "profile/path/path_geometry.h"
#include "profile/view_state/profile_procedures.h"
#include "profile/view_state/profile_readouts.h"
#include "profile/view_state/profile_view_state.h"
#include "ui/plot/plot_procedures.h"
#include "zel/path_view.h"
#include "zel/terrain.h"

namespace zel {

// What boxes would say.
class KeptMessages final : public Dialogs {
 public:
  MessageAnswer message(const MessageBoxRequest& request) override;
  std::string input(const InputBoxRequest& request) override { return request.defaultText; }
  std::string save(const SaveDialogRequest&) override;

  std::vector<std::string> texts;  // their first lines
};

// The caller's events are the caller's: none is handled in the midst of its call.
class NoEvents final : public EventLoop {
 public:
  void postQuit(int) override {}
  void processPending() override {}
};

// Impossible heights are refused before anything is drawn. Should the terrain change in between, the drawing
// fails instead of ending the process.
class FailingStop final : public HardStop {
 public:
  void stop(std::string_view reason) override;
};

// The trap of one view: failures are handed to the caller, in no log and no box.
struct QuietTrap {
  explicit QuietTrap(Component& component);
  QuietTrap(const QuietTrap&) = delete;
  QuietTrap& operator=(const QuietTrap&) = delete;

  NoPointer pointer;
  NoEvents eventLoop;
  KeptMessages messages;
  FailingStop hardStop;
  SystemClock clock;
  KeptMessages unlogged;  // a log without a folder says so at each entry
  ErrorLog log;
  ErrorTrap trap;
  TrappedModule module;
};

// Texts need a graphical application. Throws Refusal when there can be none.
void requirePictureApplication();

class WindowlessView {
 public:
  // What is noted of samples without a height, and what is said to be impossible when the drawing fails.
  struct Wording {
    std::string voids;    // "they are drawn in red, at sea level"
    std::string failure;  // "the plot cannot be drawn"
    bool notesK = true;   // of a result that depends on the effective-earth factor
  };
  // All must outlive the view.
  WindowlessView(Component& component, const PathViewRequest& request, Wording wording,
                 std::vector<std::string>& notes, std::vector<std::string>& warnings);
  WindowlessView(const WindowlessView&) = delete;
  WindowlessView& operator=(const WindowlessView&) = delete;

  // ---- In this order; everything throws Refusal ----

  // Settings and request into the state, as the window has it when it is loaded.
  void load();
  // Lays out and samples the path: what would end the process, or be told in a box, is refused.
  void checkPath();
  // A number of the settings that does not fit is named here; the drawing could only say that one did not.
  void checkSettingsOfTheDrawing();
  // Draws the whole path, then the markers as clicks place them or the expanded view. Once; the canvas
  // is not touched afterwards.
  void draw(Canvas& canvas);

  // The view that was drawn, as the window prints it, into another canvas. The scale that it has there.
  void drawForPage(Canvas& canvas);

  // Of a picture: a plot without height shows nothing.
  void requirePlotHeight() const;

  // ---- What there is ----

  const ProfileViewState& state() const { return state_; }
  int fresnelPercent() const { return fresnelPercent_; }
  const TerrainProvenance& terrain() const { return terrain_; }
  const PathGeometry& path() const { return path_; }  // once it is checked
  PathInputs& inputs() { return inputs_; }
  ModuleState& module() { return module_; }
  QuietTrap& trap() { return trap_; }
  // After the drawing.
  const PlotView& plotView() const { return plot_->view(); }
  const KeptReadouts& readouts() const { return readouts_; }
  // The text of a control of the window by its name, "lblSLat" or "tbxAnt1AGL"; empty where it has none.
  std::string shownText(std::string_view control) const;

 private:
  template <typename Number>
  void noteDefault(const std::string& what, Number value, const std::string& unit, const Setting& setting);
  float positive(const std::optional<double>& given, const Setting& setting, const std::string& what,
                 const std::string& unit);
  int checkedFresnelPercent();
  void checkMarkerCount() const;
  void checkMarkers();
  void noteVoids(const std::vector<float>& heights);
  double onPath(double km, const char* what) const;
  std::shared_ptr<const DatumShift> shiftForMarkers() const;
  void makeProcedures(Canvas& canvas);
  PlotProcedures::Services drawingServices(Canvas& canvas);
  void requireDrawing(bool drawn) const;
  PlotPanel panel() const;
  void placeMarkers();

  Component& component_;
  const PathViewRequest& request_;
  Wording wording_;
  std::vector<std::string>& notes_;
  PathInputs inputs_;
  QuietTrap trap_;
  ModuleState module_;  // of this view alone: stations and failures are not the host's
  ProfileViewState state_;
  int fresnelPercent_ = 0;
  PathGeometry path_;
  TerrainProvenance terrain_;
  std::vector<float> markers_;  // plot x, km
  KeptReadouts readouts_;
  std::unique_ptr<TerrainSampler> sampler_;
  std::unique_ptr<CoordinateFormatter> formatter_;
  std::shared_ptr<const DatumShift> shift_;
  std::unique_ptr<ProfileProcedures> profile_;
  std::unique_ptr<PlotProcedures> plot_;
};

}  // namespace zel
