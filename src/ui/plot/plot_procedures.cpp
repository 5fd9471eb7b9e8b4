#include "ui/plot/plot_procedures.h"

#include "component/services/hourglass.h"
#include "foundation/rounding.h"
#include "profile/path_loss/free_space_loss.h"
#include "profile/real32.h"
#include "profile/view_state/window_model_run.h"
#include "ui/plot/plot_readouts.h"
#include "ui/plot/plot_scale.h"

namespace zel {
namespace {

constexpr std::string_view kLossPattern = "###.##";
constexpr std::string_view kPrintQuestion = "Print Profile?";

// The hourglass and the flag of a drawing in progress, taken back on every way out.
class DrawingInProgress {
 public:
  DrawingInProgress(Pointer& pointer, ProfileFlags& flags) : hourglass_(pointer), flags_(flags) {
    flags_.drawing = true;
  }
  ~DrawingInProgress() { flags_.drawing = false; }
  DrawingInProgress(const DrawingInProgress&) = delete;
  DrawingInProgress& operator=(const DrawingInProgress&) = delete;

 private:
  Hourglass hourglass_;
  ProfileFlags& flags_;
};

PlotMarkers::Services markerServices(const PlotProcedures::Services& all) {
  return {all.canvas,    all.readouts, all.geodesy,      all.datumShift,
          all.formatter, all.module,   all.style.numbers};
}

}  // namespace

PlotProcedures::PlotProcedures(Services services, const SettingsReader& settings, ProfileViewState& state)
    : services_(std::move(services)),
      settings_(settings),
      state_(state),
      markers_(markerServices(services_), settings, state, view_) {}

PlotDrawing PlotProcedures::drawing() {
  return {*services_.canvas, state_, settings_, services_.style, view_};
}

bool PlotProcedures::panelIsComplete(const PlotPanel& panel) const {
  return !panel.startAntenna.empty() && !panel.endAntenna.empty() && !panel.frequency.empty();
}

void PlotProcedures::drawLine() {
  services_.profile->runOrFail(services_.names.line, [&] {
    const PlotPanel panel = services_.panel();
    if (!panelIsComplete(panel) || state_.flags.profileError || state_.flags.loading) return;
    const DrawingInProgress progress(*services_.pointer, state_.flags);
    if (services_.profile->prepareDrawing(state_)) draw(panel.exaggeration);
  });
}

// The parts that have a name of their own begin at step 0 again, so the step is set after each.
void PlotProcedures::draw(double exaggeration) {
  services_.trapped->step(5);
  if (services_.prepareCanvas) services_.prepareCanvas();
  if (!drawing().begin(exaggeration)) {
    leaveExpandedView();
    return;
  }
  services_.trapped->step(6);
  drawRangeAndHeight(toInt16(view_.drawn.first), toInt16(view_.drawn.last));
  drawFresnel1();
  services_.trapped->step(7);
  updateLosses();
  services_.trapped->step(8);
  drawing().ground();
  state_.flags.resample = false;
  ++drawings_;
}

// The toggle draws the whole path. The terrain of this drawing serves that one too, and is sampled anew by
// the next when that one fails.
void PlotProcedures::leaveExpandedView() {
  const bool resample = state_.flags.resample;
  const std::int64_t drawings = drawings_;
  state_.flags.resample = false;
  mnuProfileExpand_Click();
  if (drawings_ == drawings) state_.flags.resample = resample;
}

void PlotProcedures::drawRangeAndHeight(std::int16_t firstIndex, std::int16_t lastIndex) {
  services_.profile->runOrFail(services_.names.rangeAndHeight, [&] {
    PlotDrawing lines = drawing();
    services_.module->elevLines = readElevationLines(settings_);
    services_.trapped->step(1);
    lines.elevationLines(services_.module->elevLines, firstIndex, lastIndex);
    services_.trapped->step(2);
    services_.module->rangeLines = readRangeLines(settings_);
    services_.trapped->step(3);
    lines.rangeLines(services_.module->rangeLines);
    lines.labels();
  });
}

void PlotProcedures::drawFresnel1() {
  services_.profile->runOrFail(services_.names.fresnel1, [&] { drawing().fresnelAndSight(); });
}

void PlotProcedures::updateLosses() {
  const float loss = FreeSpaceLoss(state_.inputs.frequency, toReal32(state_.path.distance));
  view_.freeSpaceLoss = formatNumber(loss, kLossPattern, services_.style.numbers);
  services_.readouts->show(readout::kFreeSpaceLoss, view_.freeSpaceLoss);
  if (!state_.flags.modeledLossPending) return;
  UpdateModeledLoss();
  state_.flags.modeledLossPending = false;
}

void PlotProcedures::UpdateModeledLoss() {
  services_.trapped->run(":UpdateModeledLoss:", [&] {
    services_.readouts->show(readout::kModeledLoss, {});
    services_.trapped->step(1);
    const std::optional<float> loss = windowModeledLoss(state_);
    if (!loss) return;
    services_.trapped->step(2);
    services_.readouts->show(readout::kModeledLoss,
                             formatNumber(*loss, kLossPattern, services_.style.numbers));
  });
}

// The height of the click is of no matter.
void PlotProcedures::Picture1_MouseDown(float x, float) {
  services_.trapped->run(":Picture1_MouseDown:", [&] { markers_.place(x); });
}

void PlotProcedures::Picture1_MouseMove(float x, float y) {
  services_.trapped->run(":Picture1_MouseMove:", [&] { markers_.point(x, y); });
}

void PlotProcedures::cmdClear1_Click() { clearMarker(":cmdClear1_Click:", MarkerSide::kLeft); }

void PlotProcedures::cmdClear2_Click() { clearMarker(":cmdClear2_Click:", MarkerSide::kRight); }

void PlotProcedures::clearMarker(std::string_view procedure, MarkerSide side) {
  services_.trapped->run(procedure, [&] {
    if (markers_.clear(side)) drawLine();
  });
}

void PlotProcedures::mnuProfileExpand_Click() {
  services_.trapped->run(":mnuProfileExpand_Click:", [&] {
    const bool bothShown = state_.leftMarker.shown && state_.rightMarker.shown;
    if (!state_.expanded && !(bothShown && canExpandBetweenMarkers(state_))) return;
    state_.expanded = !state_.expanded;
    services_.readouts->show(readout::kExpandCaption, state_.expanded ? "Normal" : "Expand");
    services_.trapped->step(1);
    drawLine();
  });
}

void PlotProcedures::Form_DblClick() {
  if (!services_.printProfile) return;
  services_.trapped->run(":Form_DblClick:", [&] {
    const MessageAnswer answer = services_.dialogs->message(
        {std::string(kPrintQuestion), {}, MessageIcon::kQuestion, MessageButtons::kYesNo});
    if (answer == MessageAnswer::kYes) services_.printProfile();
  });
}

}  // namespace zel
