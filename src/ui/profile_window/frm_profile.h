// The profile window, frmProfile, "Terrain Profile": plot, slider row and control panel over one view's
// state.
//
// The rules stand elsewhere: the calculation in profile/view_state, the drawing, markers and pointer in
// ui/plot, what a typed text means in panel_inputs. Here is when they run: load order, layout, timers, focus,
// menus. Every procedure runs under the trap of "frmProfile", under its given name.
//
// A long export handles events at each sample: everything in the window can be used meanwhile but the menu of
// the exports, and a window that is unloaded cancels it.
//
// The page is drawn from a copy of the view's state, so that printing leaves picture, markers, strobe and
// read-outs as they are; it is not held up by a long export.
//
// A window is made, opened and unloaded once. It is never deleted while one of its procedures is running: a
// box that a procedure shows handles events, and those may unload the window. The owner asks busy() and is
// told when it has become false.
#pragma once

#include <QDialog>
#include <QMainWindow>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "component/services/host_services.h"
#include "export/export_procedures.h"
#include "foundation/number_text.h"
#include "platform/datum_shift.h"
#include "platform/print_service.h"
#include "profile/settings/dialog_settings.h"
#include "profile/view_state/clearance_readout.h"
#include "profile/view_state/profile_procedures.h"
#include "ui/plot/plot_procedures.h"
#include "ui/profile_window/panel_inputs.h"

class QAction;
class QKeyEvent;
class QMenu;
class QSlider;

namespace zel {

class ClearanceRow;
class ControlPanel;
class PictureBox;
class ProgressRow;

struct ProfileWindowServices {
  ModuleState* module = nullptr;  // the component's
  // The component's one window: it keeps loaded flag, handle and bProfileFailed of the module state and its
  // place on the screen. Another one works on a copy of its own.
  bool shared = true;
  HostServices* host = nullptr;
  ErrorTrap* trap = nullptr;
  ErrorLog* errorLog = nullptr;
  Dialogs* dialogs = nullptr;
  Pointer* pointer = nullptr;
  EventLoop* eventLoop = nullptr;
  ProcessRunner* programs = nullptr;  // may be null: no program can be started
  PrintService* printing = nullptr;   // may be null: nothing can be printed
  const Clock* clock = nullptr;
  HardStop* hardStop = nullptr;
  const UnitsTable* units = nullptr;
  const NormalTable* normalTable = nullptr;
  const Geodesy* geodesy = nullptr;
  std::function<std::shared_ptr<const DatumShift>()> datumShift;  // made when a position needs it
  std::function<std::unique_ptr<TerrainSampler>()> makeSampler;
  std::function<std::shared_ptr<TerrainData>()> terrain;
  std::function<std::unique_ptr<CoordinateFormatter>()> makeFormatter;
  std::function<NumberStyle()> numbers;  // of the user's locale, asked for at each export

  std::function<void()> openOptions;  // the settings dialog, until it is closed
  std::function<void()> openHelp;
  std::function<void()> idle;  // an unloaded window may be deleted now
};

class FrmProfile final : public QMainWindow {
 public:
  // The stations and the host's antenna heights that a window is opened for.
  struct Path {
    GeoPoint start;
    GeoPoint end;
    std::array<std::int16_t, 2> antennaHeights{};  // as given, below 0 where the settings hold
  };
  // Where a window stands on the screen.
  struct Place {
    QRect rectangle;  // without the frame, logical pixels
    bool maximised = false;
  };

  // For the stored stations of the module state, or for a path of its own.
  FrmProfile(ProfileWindowServices services, const SettingsReader& settings,
             std::optional<Path> path = std::nullopt);
  ~FrmProfile() override;

  // Form_Load, the first drawing, and the window on the screen, unless its path cannot be profiled
  // (profileFailed). Without a place it comes up where it was last. A window that is open is brought to the
  // front.
  void open(const std::optional<Place>& place = std::nullopt);
  // Loads it anew and draws, with the settings as they are now; what was typed is lost.
  void reload();
  // Hides it for good. Nothing happens in it afterwards.
  void unload();
  bool isLoaded() const { return loaded_; }
  bool isUnloaded() const { return unloaded_; }
  bool busy() const { return running_ > 0; }
  bool profileFailed() const { return module_->bProfileFailed; }

  // What the settings dialog has written: units, k, frequency, Fresnel percentage, reference lines and
  // colours are taken over and everything is drawn anew; typed antenna heights stay.
  void takeSettings(const DialogSettings& values);
  // Whether density, terrain source or method of the settings are no longer those that the terrain was
  // sampled with.
  bool samplingChanged();
  const Path& path() const { return path_; }
  Place place() const;
  const ProfileViewState& state() const { return state_; }
  const PlotView* plotView() const { return plot_ ? &plot_->view() : nullptr; }
  ControlPanel& panel() { return *panel_; }
  PictureBox& picture() { return *picture_; }

  // ---- Procedures with given names ----
  void Form_Load();
  void Form_Resize();
  void Form_GotFocus();
  void Form_DblClick();
  void cmdExit_Click();
  void InitFromRegistry();
  void SetDistanceLabels();
  void SetStartEndPointLabels();
  int MenuHeight() const;         // logical pixels
  int WindowTitleHeight() const;  // logical pixels
  void ValidateInfo();
  void LoadFormSettings();
  void DoPreCalc();
  void MinMaxAv();
  void UpdateModeledLoss();
  void drawLine();
  void cmdClear_Click(int marker);  // 0 left, 1 right
  void mnuProfileExpand_Click();
  void mnuProfileLinkBudget_Click();
  void mnuProfileOptions_Click();
  void mnuEditCopyPicture_Click();
  void mnuEditCopyValues_Click();
  std::string GetBMPDialog();  // the path of a new bitmap file; empty when the user cancels
  void mnuExportBMP_Click();
  void mnuExportProfile_Click();
  void mnuExportPathLoss_Click();
  void mnuExportPathLossGraph_Click();
  void mnuExportPathSignalGraph_Click();
  void mnuExportPathLossProfile_Click();
  // What was typed is taken and drawn first. The latter two are refused (error 1102) while one of them runs.
  void lExportDataToCSV(const std::string& outfile);
  void lExportITMToCSV(const std::string& outfile);
  void lExportSignalProfileToCSV(const std::string& outfile);
  void lMakeGNUSignalPlot(const std::string& outfile);
  void mnuPrint_Click();
  void mnuPrintPreview_Click();
  // Prints one page of what the window shows, once what was typed is taken and drawn; whether it was sent.
  // Without a description the host's is printed; without that one, frmPrtDesc asks and its text is stored. A
  // failure of the plot prints nothing and sets bProfileFailed, as in the window; a failure of the printer or
  // of the file leaves that flag alone.
  bool PrintProfile(const PrintRequest& request,
                    const std::optional<std::string>& description = std::nullopt);
  // The same without the printer dialog: printer and copies as PrintService::request takes them, orientation
  // 1 (portrait) or 2 (landscape).
  bool PrintProfileOn(const std::string& printer, std::int32_t copies, std::int32_t orientation,
                      const std::optional<std::string>& description);
  // The plot on the canvas of its box on a page, by the drawing of the window, whose parts run as
  // PrintRangeAndHeight and PrintFresnel1; whether all of it was drawn. Tells the scale it was drawn with.
  bool PrintLine(Canvas& box);
  void tbxAntAGL_Change(int station);  // 0 start, 1 end
  void tbxFreq_Change();
  void tbxFreq_Validate();
  void tbxpctFresnel_Change();
  void tbxCurve_Validate();
  void optCurve_Click(int index);
  void optFresnel_Click(int index);
  void Slider1_Change();
  void Timer1_Timer();
  void Timer2_Timer();
  void Picture1_MouseDown(float x, float y);
  void Picture1_MouseMove(float x, float y);

  // The source is read from Con_TRes; to be set before Form_Load or InitFromRegistry. Only another host's own
  // window sets it.
  bool contour = false;

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  // The labels and the menu item by their names.
  class Readouts final : public ProfileReadouts {
   public:
    void bind(std::string name, std::function<void(const QString&)> set) {
      setters_.insert_or_assign(std::move(name), std::move(set));
    }
    void show(std::string_view control, const std::string& text) override;
    std::string text(std::string_view control) const;

   private:
    std::map<std::string, std::function<void(const QString&)>, std::less<>> setters_;
    std::map<std::string, std::string, std::less<>> texts_;
  };

  // Made when the first marker of a path in the older datum asks for it; it takes long.
  class DeferredDatumShift final : public DatumShift {
   public:
    explicit DeferredDatumShift(const std::function<std::shared_ptr<const DatumShift>()>& make)
        : make_(make) {}
    GeoPoint toNad83(GeoPoint nad27) const override { return made().toNad83(nad27); }
    DatumOperation operationAt(GeoPoint nad27) const override { return made().operationAt(nad27); }

   private:
    const DatumShift& made() const;
    const std::function<std::shared_ptr<const DatumShift>()>& make_;
    mutable std::shared_ptr<const DatumShift> shift_;
  };

  // A procedure of the window is on the stack.
  class Running {
   public:
    explicit Running(FrmProfile& window) : window_(window) { ++window_.running_; }
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    FrmProfile& window_;
  };

  // The plot on a page: the window's drawing over a copy of the view's state.
  class PagePlot;
  struct MadePage;

  // A long export is on the stack: its progress is shown and no other is begun.
  class LongExport;

  // The host's event loop as a long export uses it: its progress is seen before the first events are handled,
  // after which another program may be waited for.
  class ExportEvents final : public EventLoop {
   public:
    explicit ExportEvents(FrmProfile& window) : window_(window) {}
    void postQuit(int exitCode) override { window_.services_.eventLoop->postQuit(exitCode); }
    void processPending() override;

   private:
    FrmProfile& window_;
  };

  // Runs what needs a loaded window, kept alive meanwhile.
  template <typename Body>
  void act(Body&& body) {
    if (unloaded_) return;
    const Running running(*this);
    std::forward<Body>(body)();
  }
  // The same under the trap, as a procedure.
  template <typename Body>
  bool procedure(std::string_view name, Body&& body) {
    if (unloaded_) return false;
    const Running running(*this);
    return trapped_.run(name, [&] {
      body();
      return true;
    });
  }

  QAction* addItem(QMenu* menu, const char* name, const QString& text, const QString& tip,
                   const QKeySequence& keys, std::function<void()> action);
  void buildMenus();
  void buildEditMenu();
  void buildExportMenu();
  void showWhatCanBeDone();
  void connectPanel();
  void connectPicture();
  void bindReadouts();
  void makeProcedures();
  ProfileProcedures::Services profileServices();
  PlotProcedures::Services plotServices();
  PlotPanel plotPanel() const;

  bool firstShow(const std::optional<Place>& place);
  bool isMaximised() const;
  void layOutParts();
  void placeInitially();
  void takeInputs(ProfileInputs inputs);
  void showInputs();  // all boxes and options from the state
  void showCurve(const QString& text);
  void showFresnel();
  void showWavelength();
  void selectCurve(CurvePreset preset);
  void selectFresnel(FresnelPreset preset);
  void changeCurve(float k);
  void takeAntennaHeight(int station, TypedWhen when);
  void commitTyping();
  void commitAntennaHeight(int station);
  void commitFresnel();
  void deferRedraw();
  void afterDrawing();
  void showPointerClearance(std::optional<double> x);
  bool pictureKey(const QKeyEvent& key);
  void strobeTo(double x);
  void deleteMarker(bool both);
  void bringUpToDate();
  void hintAtFailure(const RuntimeError& failure);
  ExportProcedures exports();
  template <typename Export>
  void runLong(std::string_view name, const QString& what, const Export& run);
  bool exportGoesOn(std::int32_t done, std::int32_t all);
  void showProgressRow(bool shown);

  template <typename Body>
  void printingProcedure(std::string_view name, Body&& body);
  PrintService& requirePrinting() const;
  std::optional<PrintRequest> chooseRequest(PageOrientation orientation,
                                            const std::optional<PaperFormat>& paper);
  bool readyToPrint();
  bool bringUpToDateForPrinting();
  template <typename Body>
  bool toldAFailure(Body&& body);
  bool printPage(const PrintRequest& request, const std::optional<std::string>& description);
  std::optional<MadePage> sendPage(const PrintRequest& request, const std::string& description);
  std::optional<std::string> wantedDescription(const std::optional<std::string>& given);
  std::optional<std::string> askForDescription();
  void storeDescription(const std::string& description);
  std::string storedDescription() const;
  std::string shownText(std::string_view control) const;
  std::optional<MadePage> makePage(const PaperFormat& paper, const std::string& description);
  void showPreview();
  bool printFromPreview(const PaperFormat& paper, PageOrientation orientation,
                        const std::string& description);
  std::string savePreviewed(const PaperFormat& paper, const std::string& description);
  bool printPreviewed(const PrintRequest& request, const std::string& description);
  void showModally(QDialog& dialog);

  ProfileWindowServices services_;
  SettingsReader settings_;
  ModuleState ownModule_;  // of a window that is not the component's one
  ModuleState* module_;
  TrappedModule trapped_;
  Readouts readouts_;
  DeferredDatumShift datumShift_;
  ExportEvents exportEvents_{*this};
  std::unique_ptr<TerrainSampler> sampler_;
  std::unique_ptr<CoordinateFormatter> formatter_;
  Path path_;
  CalculationSettings density_;  // at load
  ProfileViewState state_;
  std::unique_ptr<ProfileProcedures> profile_;
  std::unique_ptr<PlotProcedures> plot_;
  PathClearance pathClearance_;
  std::string version_;

  PictureBox* picture_;
  QSlider* slider_;
  ClearanceRow* clearance_;
  ProgressRow* progress_;  // in the place of the slider and the clearance
  ControlPanel* panel_;
  std::map<std::string, QAction*, std::less<>> actions_;
  std::vector<QPointer<QDialog>> dialogs_;  // of the window's own that are open, the last one on top

  // Before the timers: a child that is made is an event.
  bool loaded_ = false;
  bool opened_ = false;
  bool unloaded_ = false;
  bool exporting_ = false;      // a long one
  bool redrawWanted_ = false;   // during a drawing
  bool reloadWanted_ = false;   // the same
  bool leftForOwnBox_ = false;  // the window became inactive because of a box of this program
  int running_ = 0;

  QTimer timer1_{this};  // a redraw after typing
  QTimer timer2_{this};  // the check of the frequency after typing
};

}  // namespace zel
