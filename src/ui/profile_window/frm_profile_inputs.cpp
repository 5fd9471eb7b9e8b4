// What the controls of frmProfile do: boxes, options, slider, timers, pointer and keys.
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <algorithm>
#include <array>
#include <cmath>

#include "profile/view_state/clearance_readout.h"
#include "ui/plot/plot_geometry.h"
#include "ui/profile_window/clearance_row.h"
#include "ui/profile_window/control_panel.h"
#include "ui/profile_window/frm_profile.h"
#include "ui/profile_window/panel_inputs.h"
#include "ui/profile_window/picture_box.h"

namespace zel {
namespace {

constexpr int kFarStep = 10;  // samples, with Shift

// Where the user's language writes decimals with a comma, one is read as the point.
std::string typedText(const QLineEdit& box) {
  QString text = box.text();
  if (QLocale().decimalPoint() == QLatin1String(",")) text.replace(u',', u'.');
  return text.toStdString();
}

void write(QLineEdit& box, const std::string& text) {
  const QString wanted = QString::fromStdString(text);
  if (box.text() != wanted) box.setText(wanted);
  box.setModified(false);
}

}  // namespace

void FrmProfile::connectPanel() {
  const std::array<QLineEdit*, 2> antennas{panel_->tbxAnt1AGL, panel_->tbxAnt2AGL};
  for (int station = 0; station < 2; ++station) {
    QLineEdit* box = antennas.at(static_cast<std::size_t>(station));
    connect(box, &QLineEdit::textEdited, this, [this, station] { tbxAntAGL_Change(station); });
    connect(box, &QLineEdit::editingFinished, this, [this, station] { commitAntennaHeight(station); });
  }
  connect(panel_->tbxFreq, &QLineEdit::textEdited, this, [this] { tbxFreq_Change(); });
  connect(panel_->tbxFreq, &QLineEdit::editingFinished, this, [this] { tbxFreq_Validate(); });
  connect(panel_->tbxpctFresnel, &QLineEdit::textEdited, this, [this] { tbxpctFresnel_Change(); });
  connect(panel_->tbxpctFresnel, &QLineEdit::editingFinished, this, [this] { commitFresnel(); });
  connect(panel_->tbxCurve, &QLineEdit::editingFinished, this, [this] { tbxCurve_Validate(); });
  // Enter is a click on the custom option: the value that was typed is wanted now.
  connect(panel_->tbxCurve, &QLineEdit::returnPressed, this, [this] { optCurve_Click(2); });
  for (int i = 0; i < 3; ++i)
    connect(panel_->optCurve.at(static_cast<std::size_t>(i)), &QRadioButton::clicked, this,
            [this, i] { optCurve_Click(i); });
  for (int i = 0; i < 4; ++i)
    connect(panel_->optFresnel.at(static_cast<std::size_t>(i)), &QRadioButton::clicked, this,
            [this, i] { optFresnel_Click(i); });
  for (int marker = 0; marker < 2; ++marker)
    connect(panel_->cmdClear.at(static_cast<std::size_t>(marker)), &QPushButton::clicked, this,
            [this, marker] { cmdClear_Click(marker); });
  connect(panel_->cmdExit, &QPushButton::clicked, this, [this] { cmdExit_Click(); });
  connect(slider_, &QSlider::valueChanged, this, [this] { Slider1_Change(); });
}

void FrmProfile::connectPicture() {
  picture_->onPress = [this](QPointF at) {
    Picture1_MouseDown(static_cast<float>(at.x()), static_cast<float>(at.y()));
  };
  picture_->onMove = [this](QPointF at) {
    Picture1_MouseMove(static_cast<float>(at.x()), static_cast<float>(at.y()));
  };
  picture_->onKey = [this](const QKeyEvent& key) { return pictureKey(key); };
  picture_->onMisfit = [this] { deferRedraw(); };
}

// ---- The panel's texts ----

void FrmProfile::InitFromRegistry() {
  const bool read = procedure(":InitFromRegistry:", [this] {
    ModuleState asked = *module_;
    asked.station1 = path_.start;
    asked.station2 = path_.end;
    asked.antennaHeights = path_.antennaHeights;
    ProfileViewState stored = loadedViewState(asked, settings_, *services_.units, contour);
    if (state_.flags.loading) {
      state_ = std::move(stored);
      state_.flags.loading = true;
    } else {
      takeInputs(std::move(stored.inputs));
    }
    trapped_.step(1);
    showInputs();
    showCurve(QString::fromStdString(loadedCurveText(state_.inputs.k)));
  });
  if (!read && !unloaded_) module_->bProfileFailed = true;
}

// Path, terrain and markers of a window that is loaded stay.
void FrmProfile::takeInputs(ProfileInputs inputs) {
  const bool otherTerrain =
      inputs.source != state_.inputs.source || inputs.calcMethod != state_.inputs.calcMethod;
  if (otherTerrain) state_.flags.resample = true;
  state_.inputs = std::move(inputs);
  state_.flags.recomputeCurvature = true;
  state_.flags.modeledLossPending = true;
}

void FrmProfile::showInputs() {
  write(*panel_->tbxAnt1AGL, antennaHeightText(state_.inputs.antennaHeights[0], state_.inputs.units.height));
  write(*panel_->tbxAnt2AGL, antennaHeightText(state_.inputs.antennaHeights[1], state_.inputs.units.height));
  write(*panel_->tbxFreq, frequencyText(state_.inputs.frequency));
  panel_->tbxFreq->setCursorPosition(0);  // a long number is read from its first digit
  showWavelength();
  selectCurve(state_.inputs.curve);
  showFresnel();
}

void FrmProfile::showWavelength() {
  panel_->lblLambda->setText(QString::fromStdString(wavelengthText(state_.inputs.frequency)));
}

void FrmProfile::showCurve(const QString& text) {
  panel_->tbxCurve->setText(text);
  panel_->tbxCurve->setModified(false);
}

void FrmProfile::showFresnel() {
  selectFresnel(state_.inputs.fresnel);
  write(*panel_->tbxpctFresnel, percentText(state_.inputs.fresnelFraction));
}

void FrmProfile::selectCurve(CurvePreset preset) {
  state_.inputs.curve = preset;
  panel_->optCurve.at(static_cast<std::size_t>(preset))->setChecked(true);
  panel_->tbxCurve->setEnabled(preset == CurvePreset::kCustom);
}

void FrmProfile::selectFresnel(FresnelPreset preset) {
  state_.inputs.fresnel = preset;
  panel_->optFresnel.at(static_cast<std::size_t>(preset))->setChecked(true);
}

void FrmProfile::SetDistanceLabels() {
  procedure(":SetDistanceLabels:", [this] {
    const DisplayUnits& units = state_.inputs.units;
    panel_->showUnits({QString::fromStdString(units.height.name),
                       QString::fromStdString(units.height.abbreviation),
                       QString::fromStdString(units.distance.abbreviation)});
  });
}

void FrmProfile::SetStartEndPointLabels() {
  procedure(":SetStartEndPointLabels:", [this] {
    panel_->lblSLat->setText(QString::fromStdString(formatter_->LatitudeText(path_.start.latitude)));
    panel_->lblSLon->setText(QString::fromStdString(formatter_->LongitudeText(path_.start.longitude)));
    trapped_.step(1);
    panel_->lblELat->setText(QString::fromStdString(formatter_->LatitudeText(path_.end.latitude)));
    panel_->lblELon->setText(QString::fromStdString(formatter_->LongitudeText(path_.end.longitude)));
    trapped_.step(2);
    panel_->showDatum(QString::fromStdString(module_->datumText));
  });
}

void FrmProfile::LoadFormSettings() {
  procedure(":LoadFormSettings:", [this] {
    showInputs();
    trapped_.step(1);
    tbxFreq_Validate();
    trapped_.step(2);
    if (plot_) plot_->showMarkerLabels();
    trapped_.step(3);
    showCurve(QString::fromStdString(curveText(state_.inputs.k)));
  });
}

void FrmProfile::takeSettings(const DialogSettings& values) {
  procedure(":mnuProfileOptions_Click:", [this, &values] {
    ProfileInputs& inputs = state_.inputs;
    inputs.dispUnits = values.dispUnits;
    inputs.units = unitsFor(*services_.units, values.dispUnits);
    inputs.k = values.k;
    inputs.curve = curvePreset(values.k);
    inputs.frequency = values.frequency;
    inputs.fresnelFraction = static_cast<float>(values.fresnelPercent) / 100.0F;
    inputs.fresnel = fresnelPreset(values.fresnelPercent);
    trapped_.step(1);
    SetDistanceLabels();
    LoadFormSettings();
    if (profile_) profile_->showPath(state_);
    trapped_.step(2);
    timer1_.stop();
    timer2_.stop();
    state_.flags.recomputeCurvature = true;
    state_.flags.modeledLossPending = true;
    drawLine();
  });
}

// ---- The working values ----

void FrmProfile::ValidateInfo() {
  procedure(":ValidateInfo:", [this] {
    const ProfileInputs before = state_.inputs;
    clampWorkingValues(state_.inputs);
    trapped_.step(1);
    // The panel shows what is drawn.
    if (state_.inputs.antennaHeights != before.antennaHeights || state_.inputs.frequency != before.frequency)
      state_.flags.modeledLossPending = true;
    const DisplayUnit& unit = state_.inputs.units.height;
    if (state_.inputs.antennaHeights[0] != before.antennaHeights[0])
      write(*panel_->tbxAnt1AGL, antennaHeightText(state_.inputs.antennaHeights[0], unit));
    if (state_.inputs.antennaHeights[1] != before.antennaHeights[1])
      write(*panel_->tbxAnt2AGL, antennaHeightText(state_.inputs.antennaHeights[1], unit));
    if (state_.inputs.frequency != before.frequency)
      write(*panel_->tbxFreq, frequencyText(state_.inputs.frequency));
    showWavelength();
    if (state_.inputs.fresnelFraction != before.fresnelFraction) {
      state_.inputs.fresnel = FresnelPreset::kCustom;
      showFresnel();
    }
    if (state_.inputs.k != before.k) showCurve(QString::fromStdString(curveText(state_.inputs.k)));
  });
}

void FrmProfile::DoPreCalc() {
  act([this] {
    if (!profile_) return;
    profile_->DoPreCalc(state_);
    // The path is laid out anew and has no heights yet.
    state_.flags.resample = true;
    state_.flags.recomputeCurvature = true;
  });
}

// Neither says anything of terrain that has not been sampled: what is shown stays.
void FrmProfile::MinMaxAv() {
  act([this] {
    if (profile_ && !state_.flags.resample) profile_->MinMaxAv(state_);
  });
}

void FrmProfile::UpdateModeledLoss() {
  act([this] {
    if (plot_ && !state_.flags.resample) plot_->UpdateModeledLoss();
  });
}

// A box that a drawing shows handles events: what they want drawn is drawn after it.
void FrmProfile::drawLine() {
  act([this] {
    if (!plot_) return;
    if (state_.flags.drawing) {
      redrawWanted_ = true;
      return;
    }
    redrawWanted_ = false;
    plot_->drawLine();
    afterDrawing();
    if (std::exchange(reloadWanted_, false)) reload();
    if (std::exchange(redrawWanted_, false)) deferRedraw();
  });
}

void FrmProfile::deferRedraw() {
  if (!state_.flags.loading && opened_ && !unloaded_) timer1_.start();
}

// ---- Boxes ----

void FrmProfile::tbxAntAGL_Change(int station) {
  procedure(station == 0 ? ":tbxAnt1AGL_Change:" : ":tbxAnt2AGL_Change:",
            [&] { takeAntennaHeight(station, TypedWhen::kTyping); });
}

void FrmProfile::commitAntennaHeight(int station) {
  QLineEdit& box = station == 0 ? *panel_->tbxAnt1AGL : *panel_->tbxAnt2AGL;
  if (!box.isModified()) return;
  procedure(station == 0 ? ":tbxAnt1AGL_Validate:" : ":tbxAnt2AGL_Validate:",
            [&] { takeAntennaHeight(station, TypedWhen::kLeaving); });
}

void FrmProfile::takeAntennaHeight(int station, TypedWhen when) {
  QLineEdit& box = station == 0 ? *panel_->tbxAnt1AGL : *panel_->tbxAnt2AGL;
  const auto typed = typedAntennaHeight(typedText(box), state_.inputs.units.height, when);
  std::int16_t& height = state_.inputs.antennaHeights.at(static_cast<std::size_t>(station));
  trapped_.step(1);
  if (typed.hasValue()) {
    if (height != typed.value) state_.flags.modeledLossPending = true;
    height = typed.value;
    if (typed.state == TypedState::kClamped) write(box, typed.text);
  }
  if (when == TypedWhen::kTyping) {
    state_.flags.modeledLossPending = true;
    deferRedraw();
  } else {
    box.setModified(false);
  }
}

void FrmProfile::tbxFreq_Change() {
  procedure(":tbxFreq_Change:", [this] {
    const auto typed = typedFrequency(typedText(*panel_->tbxFreq), TypedWhen::kTyping);
    trapped_.step(1);
    timer2_.stop();
    if (typed.hasValue()) {
      state_.inputs.frequency = typed.value;
      if (typed.state == TypedState::kClamped) write(*panel_->tbxFreq, typed.text);
      showWavelength();
    } else if (typed.state == TypedState::kInMaking && !state_.flags.loading) {
      timer2_.start();
    }
    state_.flags.modeledLossPending = true;
    deferRedraw();
  });
}

void FrmProfile::tbxFreq_Validate() {
  procedure(":tbxFreq_Validate:", [this] {
    timer2_.stop();
    const auto typed = typedFrequency(typedText(*panel_->tbxFreq), TypedWhen::kLeaving);
    trapped_.step(1);
    if (!typed.hasValue()) return;
    if (typed.state == TypedState::kClamped) write(*panel_->tbxFreq, typed.text);
    panel_->tbxFreq->setModified(false);
    panel_->tbxFreq->setCursorPosition(0);
    // The box may show fewer digits than the frequency has.
    if (frequencyText(state_.inputs.frequency) == frequencyText(typed.value)) return;
    state_.inputs.frequency = typed.value;
    showWavelength();
    state_.flags.modeledLossPending = true;
    // A redraw that is on its way is not put off.
    if (!timer1_.isActive()) deferRedraw();
  });
}

void FrmProfile::tbxpctFresnel_Change() {
  procedure(":tbxpctFresnel_Change:", [this] {
    const auto typed = typedFresnelFraction(typedText(*panel_->tbxpctFresnel), TypedWhen::kTyping);
    trapped_.step(1);
    selectFresnel(FresnelPreset::kCustom);
    if (typed.hasValue()) {
      state_.inputs.fresnelFraction = typed.value;
      if (typed.state == TypedState::kClamped) write(*panel_->tbxpctFresnel, typed.text);
    }
    deferRedraw();
  });
}

void FrmProfile::commitFresnel() {
  if (!panel_->tbxpctFresnel->isModified()) return;
  procedure(":tbxpctFresnel_Validate:", [this] {
    const auto typed = typedFresnelFraction(typedText(*panel_->tbxpctFresnel), TypedWhen::kLeaving);
    trapped_.step(1);
    panel_->tbxpctFresnel->setModified(false);
    if (!typed.hasValue()) return;
    state_.inputs.fresnelFraction = typed.value;
    if (typed.state == TypedState::kClamped) write(*panel_->tbxpctFresnel, typed.text);
  });
}

// The rise keeps the k before until the next click on an option: that is meant, and the clearance read-out
// says so.
void FrmProfile::tbxCurve_Validate() {
  if (!panel_->tbxCurve->isModified()) return;
  procedure(":tbxCurve_Validate:", [this] {
    const auto typed = typedCurve(typedText(*panel_->tbxCurve));
    trapped_.step(1);
    if (!typed.hasValue()) return;
    state_.inputs.k = typed.value;
    showCurve(QString::fromStdString(typed.text));
    afterDrawing();
  });
}

// ---- Options and slider ----

void FrmProfile::optCurve_Click(int index) {
  procedure(":optCurve_Click:", [this, index] {
    if (state_.leftMarker.shown && state_.rightMarker.shown) {
      const MessageAnswer answer =
          services_.dialogs->message({"Warning, Changing E-Curve will clear your markers.\r\nContinue?",
                                      {},
                                      MessageIcon::kNone,
                                      MessageButtons::kYesNo});
      if (unloaded_) return;
      if (answer == MessageAnswer::kNo) {
        // A factor that Enter has asked for is refused with the click.
        if (panel_->tbxCurve->isModified()) showCurve(QString::fromStdString(curveText(state_.inputs.k)));
        selectCurve(refusedCurvePreset(state_.inputs.k));
        return;
      }
    }
    trapped_.step(1);
    if (index == 0) changeCurve(kStandardCurve);
    if (index == 1) changeCurve(kTrueCurve);
    selectCurve(static_cast<CurvePreset>(index));
    if (index == 2) {
      const auto typed = typedCurve(typedText(*panel_->tbxCurve));
      if (typed.hasValue()) changeCurve(typed.value);
      if (!typed.hasValue()) showCurve(QString::fromStdString(curveText(state_.inputs.k)));
    }
    trapped_.step(2);
    cmdClear_Click(0);
    cmdClear_Click(1);
    state_.flags.recomputeCurvature = true;
    trapped_.step(3);
    drawLine();
  });
}

void FrmProfile::changeCurve(float k) {
  state_.inputs.k = k;
  showCurve(QString::fromStdString(curveText(k)));
}

void FrmProfile::optFresnel_Click(int index) {
  procedure(":optFresnel_Click:", [this, index] {
    const auto preset = static_cast<FresnelPreset>(index);
    ProfileInputs& inputs = state_.inputs;
    if (preset == FresnelPreset::k100) inputs.fresnelFraction = 1.0F;
    if (preset == FresnelPreset::k60) inputs.fresnelFraction = 0.6F;
    if (preset == FresnelPreset::kNone) inputs.fresnelFraction = 0.0F;
    if (preset == FresnelPreset::kCustom) {
      const auto typed = typedFresnelFraction(typedText(*panel_->tbxpctFresnel), TypedWhen::kLeaving);
      if (typed.hasValue()) inputs.fresnelFraction = typed.value;
    }
    trapped_.step(1);
    inputs.fresnel = preset;
    showFresnel();
    trapped_.step(2);
    drawLine();
  });
}

void FrmProfile::Slider1_Change() {
  procedure(":Slider1_Change:", [this] {
    if (!state_.flags.loading && opened_) drawLine();
  });
}

// ---- Timers ----

// What is still in the making is complete now.
void FrmProfile::commitTyping() {
  if (timer2_.isActive()) Timer2_Timer();
  commitAntennaHeight(0);
  commitAntennaHeight(1);
  commitFresnel();
}

void FrmProfile::Timer1_Timer() {
  procedure(":Timer1_Timer:", [this] {
    commitTyping();
    timer1_.stop();
    trapped_.step(1);
    ValidateInfo();
    trapped_.step(2);
    drawLine();
  });
}

void FrmProfile::Timer2_Timer() {
  procedure(":Timer2_Timer:", [this] {
    timer2_.stop();
    tbxFreq_Validate();
  });
}

// ---- Plot ----

void FrmProfile::cmdClear_Click(int marker) {
  act([this, marker] {
    if (!plot_) return;
    if (marker == 0) plot_->cmdClear1_Click();
    if (marker == 1) plot_->cmdClear2_Click();
    afterDrawing();
  });
}

void FrmProfile::Picture1_MouseDown(float x, float y) {
  act([&] {
    if (!plot_) return;
    plot_->Picture1_MouseDown(x, y);
    picture_->update();
  });
}

void FrmProfile::Picture1_MouseMove(float x, float y) {
  act([&] {
    if (!plot_) return;
    const Strobe before = plot_->view().strobe;
    plot_->Picture1_MouseMove(x, y);
    showPointerClearance(double{x});
    // Nothing else of the picture has changed.
    for (const Strobe& strobe : {before, plot_->view().strobe})
      if (strobe.shown)
        picture_->updateCircle({double{strobe.x}, double{strobe.height}}, plot_->view().circleRadius);
  });
}

bool FrmProfile::pictureKey(const QKeyEvent& key) {
  if (!plot_ || unloaded_ || state_.flags.resample) return false;
  const PlotIndex index = state_.plotIndex();
  const Strobe& strobe = plot_->view().strobe;
  const double x = strobe.shown ? double{strobe.x} : index.startX();
  const int step = key.modifiers().testFlag(Qt::ShiftModifier) ? kFarStep : 1;
  switch (key.key()) {
    case Qt::Key_Left:
      // The first key shows where the pointer is.
      strobeTo(steppedPosition(state_, plot_->view(), x, strobe.shown ? -step : 0));
      return true;
    case Qt::Key_Right:
      strobeTo(steppedPosition(state_, plot_->view(), x, strobe.shown ? step : 0));
      return true;
    case Qt::Key_Home:
      strobeTo(steppedPosition(state_, plot_->view(), index.startX(), 0));
      return true;
    case Qt::Key_End:
      strobeTo(steppedPosition(state_, plot_->view(), index.endX(), 0));
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter: {
      const double at = steppedPosition(state_, plot_->view(), x, 0);
      if (!strobe.shown) strobeTo(at);
      Picture1_MouseDown(static_cast<float>(at), 0);
      return true;
    }
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      deleteMarker(key.modifiers().testFlag(Qt::ShiftModifier));
      return true;
    case Qt::Key_Escape:
      if (!state_.expanded) return false;
      mnuProfileExpand_Click();
      return true;
    default:
      return false;
  }
}

void FrmProfile::strobeTo(double x) {
  Picture1_MouseMove(static_cast<float>(x), static_cast<float>(groundUnder(state_, x).value_or(0)));
}

// Of two markers the one nearer to the pointer, or both.
void FrmProfile::deleteMarker(bool both) {
  const ProfileMarker& left = state_.leftMarker;
  const ProfileMarker& right = state_.rightMarker;
  const Strobe& strobe = plot_->view().strobe;
  const float x = strobe.shown ? strobe.x : right.x;
  const bool leftIsNearer = std::abs(left.x - x) < std::abs(right.x - x);
  if (both || (left.shown && (!right.shown || leftIsNearer))) {
    cmdClear_Click(0);
    if (both) cmdClear_Click(1);
  } else {
    cmdClear_Click(1);
  }
}

// ---- Clearance ----

void FrmProfile::afterDrawing() {
  picture_->update();
  showWhatCanBeDone();
  if (state_.flags.resample || state_.flags.profileError) return;
  pathClearance_ = pathClearance(state_);
  clearance_->showPath(QString::fromStdString(pathClearanceText(state_, pathClearance_)),
                       pathClearance_.verdict);
  if (!plot_->view().strobe.shown) showPointerClearance(std::nullopt);
}

void FrmProfile::showPointerClearance(std::optional<double> x) {
  if (state_.flags.resample || state_.flags.drawing || state_.flags.loading) return;
  clearance_->showPointer(x ? QString::fromStdString(pointerClearanceText(state_, *x)) : QString());
}

}  // namespace zel
