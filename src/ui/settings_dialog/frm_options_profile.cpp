#include "ui/settings_dialog/frm_options_profile.h"

#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "foundation/text.h"
#include "ui/settings_dialog/options_controls.h"

namespace zel {
namespace {

// Where the user's language writes decimals with a comma, one is read as the point.
std::string typedText(const QLineEdit& box) {
  QString text = box.text();
  if (QLocale().decimalPoint() == QLatin1String(",")) text.replace(u',', u'.');
  return text.toStdString();
}

std::string procedureName(OptionsBox box, std::string_view event) {
  return ":" + std::string(controlName(box)) + "_" + std::string(event) + ":";
}

bool movesFocus(const QKeyEvent& key) { return key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab; }

// True as long as it lives.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag) { flag_ = true; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;
  ~Raised() { flag_ = false; }

 private:
  bool& flag_;
};

// OK and Cancel are out of reach as long as it lives.
class ButtonsDisabled {
 public:
  explicit ButtonsDisabled(OptionsControls& controls) : controls_(controls) { enable(false); }
  ButtonsDisabled(const ButtonsDisabled&) = delete;
  ButtonsDisabled& operator=(const ButtonsDisabled&) = delete;
  ~ButtonsDisabled() { enable(true); }

 private:
  void enable(bool enabled) {
    controls_.cmdOK->setEnabled(enabled);
    controls_.cmdCancel->setEnabled(enabled);
  }
  OptionsControls& controls_;
};

}  // namespace

// ---- Life ----

FrmOptionsProfile::FrmOptionsProfile(Services services, const SettingsReader& reader,
                                     const SettingsWriter& writer, QWidget* parent)
    : UnloadedDialog(parent),
      services_(std::move(services)),
      reader_(reader),
      writer_(writer),
      trapped_(std::string(kName), *services_.trap),
      controls_(new OptionsControls(this)) {
  setObjectName(QString::fromUtf8(kName.data(), static_cast<int>(kName.size())));
  setWindowTitle(tr("Profiler Settings"));
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins({});
  whole->addWidget(controls_);
  // Its size follows the font; there is nothing in it that would use more room.
  whole->setSizeConstraint(QLayout::SetFixedSize);
  connectControls();
  watchControls();
  load();
}

FrmOptionsProfile::~FrmOptionsProfile() { unload(); }

void FrmOptionsProfile::connectControls() {
  for (const OptionsBox which : kAllOptionsBoxes)
    connect(controls_->box(which), &QLineEdit::textEdited, this, [this, which] { change(which); });
  for (int i = 0; i < 2; ++i)
    connect(controls_->optEarthModel.at(static_cast<std::size_t>(i)), &QRadioButton::clicked, this,
            [this, i] { optEarthModel_Click(i); });
  for (int i = 0; i < 3; ++i)
    connect(controls_->optCurve.at(static_cast<std::size_t>(i)), &QRadioButton::clicked, this,
            [this, i] { optCurve_Click(i); });
  for (int i = 0; i < 4; ++i)
    connect(controls_->optFresnel.at(static_cast<std::size_t>(i)), &QRadioButton::clicked, this,
            [this, i] { optFresnel_Click(i); });
  connect(controls_->cboUnits, &QComboBox::activated, this,
          [this](int index) { procedure(":cboUnits_Click:", [&] { fields_.dispUnits = index; }); });
  connect(controls_->cboMethod, &QComboBox::activated, this,
          [this](int index) { procedure(":cboMethod_Click:", [&] { fields_.calcMethod = index; }); });
  connect(controls_->cboTRes, &QComboBox::activated, this, [this] { cboTRes_Click(); });
  connect(controls_->cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
  connect(controls_->cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
}

void FrmOptionsProfile::watchControls() {
  for (QWidget* control : controls_->findChildren<QWidget*>()) control->installEventFilter(this);
}

void FrmOptionsProfile::load() {
  bool read = false;
  procedure(":Form_Load:", [&] {
    services_.module->settingsDialogLoaded = true;
    trapped_.step(1);
    read = readFields();
    if (!read) return;
    trapped_.step(2);
    if (services_.helpFile) helpFile_ = services_.helpFile();
    trapped_.step(3);
    adjustSize();
    if (services_.restorePlace) services_.restorePlace(*this, kName);
  });
  if (!read) unload();
}

void FrmOptionsProfile::Form_Unload() {
  procedure(":Form_Unload:", [this] {
    services_.module->settingsDialogLoaded = false;
    trapped_.step(1);
    if (hasBeenShown() && services_.storePlace) services_.storePlace(*this, kName);
  });
}

void FrmOptionsProfile::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::HelpContents) && services_.openHelp) {
    procedure(":Form_KeyDown:", [this] { services_.openHelp(); });
    return;
  }
  QDialog::keyPressEvent(event);
}

// ---- Settings ----

void FrmOptionsProfile::InitMe() { readFields(); }

bool FrmOptionsProfile::readFields() {
  return procedure(":InitMe:", [this] {
    const DialogSettings read = readDialogSettings(reader_);
    trapped_.step(1);
    SourceNames names;
    for (std::size_t i = 0; i < names.size(); ++i)
      names.at(i) = std::string(trimmed(services_.sourceName(kListedSources.at(i))));
    trapped_.step(2);
    before_ = fields_ = read;
    sourceNames_ = std::move(names);
    showFields();
  });
}

void FrmOptionsProfile::showFields() {
  OptionsControls& controls = *controls_;
  entered_.reset();
  controls.optEarthModel.at(fields_.flatEarth ? 0 : 1)->setChecked(true);
  controls.cboTRes->clear();
  for (const std::string& name : sourceNames_) controls.cboTRes->addItem(QString::fromStdString(name));
  const std::optional<std::size_t> source = listedSource(fields_.source);
  controls.cboTRes->setCurrentIndex(source ? static_cast<int>(*source) : -1);

  for (const OptionsBox which : kAllOptionsBoxes) write(which, loadedText(fields_, which));
  // A preset that is chosen here keeps the stored k; only a click sets the preset's own.
  const CurvePreset curve = curvePreset(fields_.k);
  controls.optCurve.at(static_cast<std::size_t>(curve))->setChecked(true);
  controls.enable(OptionsBox::kCurve, curve == CurvePreset::kCustom);
  controls.lblLambda->setText(QString::fromStdString(wavelengthLabel(fields_.frequency)));
  const FresnelPreset fresnel = fresnelPreset(fields_.fresnelPercent);
  controls.optFresnel.at(static_cast<std::size_t>(fresnel))->setChecked(true);
  controls.lock(OptionsBox::kFresnel, fresnel != FresnelPreset::kCustom);
  controls.cboUnits->setCurrentIndex(fields_.dispUnits);
  controls.cboMethod->setCurrentIndex(fields_.calcMethod);
}

void FrmOptionsProfile::UpdateMe() { writeFields(); }

bool FrmOptionsProfile::writeFields() {
  return procedure(":UpdateMe:", [this] { writeDialogSettings(writer_, fields_); });
}

// ---- Boxes ----

std::optional<OptionsBox> FrmOptionsProfile::boxOf(const QObject* control) const {
  for (const OptionsBox which : kAllOptionsBoxes)
    if (control != nullptr && controls_->box(which) == control) return which;
  return std::nullopt;
}

void FrmOptionsProfile::write(OptionsBox which, const std::string& text) {
  QLineEdit& box = *controls_->box(which);
  // A text that stays keeps the cursor where it is; any other has it behind the last digit.
  if (typedText(box) != text) box.setText(QString::fromStdString(text));
  box.setModified(false);
}

void FrmOptionsProfile::forget(OptionsBox which) {
  if (entered_ == which) entered_.reset();
}

void FrmOptionsProfile::change(OptionsBox which) {
  // Whoever types in a box is in it, also where the desktop gives no window the focus.
  entered_ = which;
  procedure(procedureName(which, "Change"), [this, which] {
    const std::optional<OptionsEntry> entry = typedEntry(which, typedText(*controls_->box(which)));
    if (!entry) return;
    trapped_.step(1);
    storeEntry(fields_, which, entry->value);
    trapped_.step(2);
    write(which, entry->text);
  });
}

std::optional<std::string> FrmOptionsProfile::refusalOf(OptionsBox which) {
  const QLineEdit& box = *controls_->box(which);
  forget(which);
  // What takes no entry has none to check.
  if (!box.isEnabled() || box.isReadOnly()) return std::nullopt;
  const CheckedEntry checked = checkedEntry(which, typedText(box));
  if (!checked.refusal.empty()) {
    entered_ = which;
    return checked.refusal;
  }
  // Nobody has typed: the field may hold more digits than the box shows.
  if (!box.isModified()) return std::nullopt;
  trapped_.step(1);
  storeEntry(fields_, which, checked.entry.value);
  write(which, checked.entry.text);
  if (which == OptionsBox::kFrequency)
    controls_->lblLambda->setText(QString::fromStdString(wavelengthLabel(fields_.frequency)));
  return std::nullopt;
}

bool FrmOptionsProfile::mayLeave(OptionsBox which) {
  if (isUnloaded() || checking_) return false;
  const Raised checking(checking_);
  return trapped_.run(procedureName(which, "Validate"), [this, which] {
    const std::optional<std::string> refusal = refusalOf(which);
    if (!refusal) return true;
    trapped_.step(2);
    refuse(which, *refusal);
    return false;
  });
}

void FrmOptionsProfile::refuse(OptionsBox which, const std::string& message) {
  QLineEdit& box = *controls_->box(which);
  box.setFocus(Qt::OtherFocusReason);
  services_.dialogs->message({message, {}, MessageIcon::kNone, MessageButtons::kOk});
  // The message handles events: they may have moved the focus, or closed the dialog.
  if (!isUnloaded()) box.setFocus(Qt::OtherFocusReason);
}

std::optional<OptionsBox> FrmOptionsProfile::openBox() const {
  return entered_ ? entered_ : boxOf(focusWidget());
}

bool FrmOptionsProfile::mayLeaveOpenBox() {
  const std::optional<OptionsBox> open = openBox();
  return !open || mayLeave(*open);
}

// The focus has gone to another control by the mouse or from the code; keys and mnemonics are held up before
// they move it.
void FrmOptionsProfile::focusIsLeaving(const QObject* control, Qt::FocusReason reason) {
  const QWidget* to = QApplication::focusWidget();
  const std::optional<OptionsBox> open = entered_ ? entered_ : boxOf(control);
  // Turned to another window: the focus will be back.
  if (!open || checking_ || to == nullptr || to->window() != this) return;
  const OptionsBox which = *open;
  // A menu of the box leaves it the focus.
  if (to == controls_->box(which) || to == controls_->cmdCancel) return;
  if (reason != Qt::MouseFocusReason) {
    mayLeave(which);
    return;
  }
  // The press that moves the focus comes to its control after this. The focus goes back now; the press is
  // then swallowed and the message shown in its place.
  const Raised checking(checking_);
  procedure(procedureName(which, "Validate"), [this, which] {
    pendingRefusal_ = refusalOf(which);
    if (!pendingRefusal_) return;
    controls_->box(which)->setFocus(Qt::OtherFocusReason);
    QTimer::singleShot(0, this, [this] { showPendingRefusal(); });
  });
}

void FrmOptionsProfile::showPendingRefusal() {
  const std::optional<std::string> refusal = std::exchange(pendingRefusal_, std::nullopt);
  if (!refusal || isUnloaded() || !entered_) return;
  const Raised checking(checking_);
  const OptionsBox which = *entered_;
  procedure(procedureName(which, "Validate"), [&] {
    trapped_.step(2);
    refuse(which, *refusal);
  });
}

bool FrmOptionsProfile::eventFilter(QObject* watched, QEvent* event) {
  if (isUnloaded()) return QDialog::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::FocusIn:
      if (const auto which = boxOf(watched); which && !entered_) entered_ = which;
      break;
    case QEvent::FocusOut:
      focusIsLeaving(watched, static_cast<QFocusEvent*>(event)->reason());
      break;
    case QEvent::KeyPress:
      if (movesFocus(*static_cast<QKeyEvent*>(event)) && !mayLeaveOpenBox()) return true;
      break;
    case QEvent::Shortcut:
      if (watched != controls_->cmdCancel && !mayLeaveOpenBox()) return true;
      break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      if (!pendingRefusal_) break;
      showPendingRefusal();
      return true;
    case QEvent::Wheel:
      // Scrolling past a list is no choice.
      if (qobject_cast<QComboBox*>(watched) != nullptr && !static_cast<QWidget*>(watched)->hasFocus()) {
        event->ignore();
        return true;
      }
      break;
    default:
      break;
  }
  return QDialog::eventFilter(watched, event);
}

// ---- Options, lists and buttons ----

void FrmOptionsProfile::optEarthModel_Click(int index) {
  procedure(":optEarthModel_Click:", [this, index] { fields_.flatEarth = index == 0; });
}

void FrmOptionsProfile::optCurve_Click(int index) {
  procedure(":optCurve_Click:", [this, index] {
    if (index == 2) {
      controls_->enable(OptionsBox::kCurve, true);
      return;
    }
    fields_.k = index == 0 ? kPresetCurveStandard : kPresetCurveTrue;
    trapped_.step(1);
    forget(OptionsBox::kCurve);
    write(OptionsBox::kCurve, presetCurveText(fields_.k));
    controls_->enable(OptionsBox::kCurve, false);
  });
}

// The text of a locked box stays: it is the percentage that the custom option will take.
void FrmOptionsProfile::optFresnel_Click(int index) {
  procedure(":optFresnel_Click:", [this, index] {
    const auto preset = static_cast<FresnelPreset>(index);
    controls_->lock(OptionsBox::kFresnel, preset != FresnelPreset::kCustom);
    trapped_.step(1);
    if (preset == FresnelPreset::k100) fields_.fresnelPercent = 100;
    if (preset == FresnelPreset::k60) fields_.fresnelPercent = 60;
    if (preset == FresnelPreset::kNone) fields_.fresnelPercent = 0;
    if (preset != FresnelPreset::kCustom) return;
    const OptionsEntry entry =
        clampedEntry(OptionsBox::kFresnel, typedText(*controls_->box(OptionsBox::kFresnel)));
    storeEntry(fields_, OptionsBox::kFresnel, entry.value);
    write(OptionsBox::kFresnel, entry.text);
  });
}

void FrmOptionsProfile::cboTRes_Click() {
  procedure(":cboTRes_Click:", [this] {
    services_.pointer->set(PointerShape::kHourglass);
    trapped_.step(1);
    {
      const ButtonsDisabled disabled(*controls_);
      const auto code = sourceNamed(sourceNames_, controls_->cboTRes->currentText().toStdString());
      if (code) fields_.source = *code;
    }
    trapped_.step(2);
    services_.pointer->set(PointerShape::kDefault);
  });
}

void FrmOptionsProfile::cmdOK_Click() {
  procedure(":cmdOK_Click:", [this] {
    if (!mayLeaveOpenBox()) return;
    trapped_.step(1);
    if (!writeFields()) return;
    outcome_ = SettingsDialogResult{before_, fields_};
    trapped_.step(2);
    accept();
  });
}

void FrmOptionsProfile::cmdCancel_Click() {
  procedure(":cmdCancel_Click:", [this] { reject(); });
}

}  // namespace zel
