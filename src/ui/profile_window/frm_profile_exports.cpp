// The menus "Edit" and "Export" of frmProfile: the plot and its values to the clipboard, the exports to
// files, and what the window shows while a long one runs.
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QMenu>
#include <QMenuBar>
#include <QSlider>

#include "canvas/qt/bitmap_file.h"
#include "component/services/save_path.h"
#include "export/copied_values.h"
#include "ui/profile_window/clearance_row.h"
#include "ui/profile_window/frm_profile.h"
#include "ui/profile_window/picture_box.h"
#include "ui/profile_window/progress_row.h"

namespace zel {
namespace {

constexpr int kExportRuns = 1102;

// "Copy" in a text of the window is the text's where something of it is selected, and the plot's elsewhere.
class CopyKeyFilter final : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::ShortcutOverride) return false;
    if (!static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) return false;
    const auto* box = qobject_cast<QLineEdit*>(watched);
    const auto* label = qobject_cast<QLabel*>(watched);
    const bool selected =
        (box != nullptr && box->hasSelectedText()) || (label != nullptr && label->hasSelectedText());
    event->setAccepted(selected);
    return true;
  }
};

}  // namespace

// ---- Menus ----

void FrmProfile::buildEditMenu() {
  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  edit->setObjectName(QStringLiteral("mnuEdit"));
  edit->setToolTipsVisible(true);
  addItem(edit, "mnuEditCopyPicture", tr("Copy &Picture"), tr("Copy the plot as a picture"),
          QKeySequence(QKeySequence::Copy), [this] { mnuEditCopyPicture_Click(); });
  addItem(edit, "mnuEditCopyValues", tr("Copy &Values"),
          tr("Copy the heights along the path for a spreadsheet"),
          QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), [this] { mnuEditCopyValues_Click(); });
  auto* filter = new CopyKeyFilter(this);
  for (QLineEdit* box : centralWidget()->findChildren<QLineEdit*>()) box->installEventFilter(filter);
  for (QLabel* label : centralWidget()->findChildren<QLabel*>()) label->installEventFilter(filter);
}

void FrmProfile::buildExportMenu() {
  QMenu* menu = menuBar()->addMenu(tr("E&xport"));
  menu->setObjectName(QStringLiteral("mnuExport"));
  menu->setToolTipsVisible(true);
  addItem(menu, "mnuExportBMP", tr("Path to &BMP..."), tr("Save the plot as a picture"),
          QKeySequence(QKeySequence::Save), [this] { mnuExportBMP_Click(); });
  addItem(menu, "mnuExportProfile", tr("&Height Profile"), tr("Save the heights along the path"),
          QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), [this] { mnuExportProfile_Click(); });
  addItem(menu, "mnuExportPathLoss", tr("&End-of-Path Loss"),
          tr("Save the modeled loss by confidence and reliability"), {},
          [this] { mnuExportPathLoss_Click(); });
  addItem(menu, "mnuExportPathLossGraph", tr("Path Loss &Graph"),
          tr("Has no action. The losses along the path are in Path Loss Profile"), {},
          [this] { mnuExportPathLossGraph_Click(); });
  addItem(menu, "mnuExportPathSignalGraph", tr("Path &Signal Graph"),
          tr("Draw the signal along the path with gnuplot"), {},
          [this] { mnuExportPathSignalGraph_Click(); });
  addItem(menu, "mnuExportPathLossProfile", tr("Path &Loss Profile"),
          tr("Save losses and signal along the path"), {}, [this] { mnuExportPathLossProfile_Click(); });
}

void FrmProfile::showWhatCanBeDone() {
  const bool hasProfile = isExportable(state_);
  for (const char* name : {"mnuEditCopyPicture", "mnuEditCopyValues"})
    actions_.at(name)->setEnabled(hasProfile);
  for (const char* name : {"mnuPrint", "mnuPrintPreview"})
    actions_.at(name)->setEnabled(hasProfile && services_.printing != nullptr);
  for (const char* name : {"mnuExportBMP", "mnuExportProfile", "mnuExportPathLoss", "mnuExportPathLossGraph",
                           "mnuExportPathSignalGraph", "mnuExportPathLossProfile"})
    actions_.at(name)->setEnabled(!exporting_);
}

// ---- Edit ----

void FrmProfile::mnuEditCopyPicture_Click() {
  procedure(":mnuEditCopyPicture_Click:", [this] {
    bringUpToDate();
    if (unloaded_ || !isExportable(state_)) return;
    QImage picture = picture_->canvas().image().copy();
    picture.setDevicePixelRatio(1);  // pixel for pixel
    QGuiApplication::clipboard()->setImage(picture);
  });
}

void FrmProfile::mnuEditCopyValues_Click() {
  procedure(":mnuEditCopyValues_Click:", [this] {
    bringUpToDate();
    if (unloaded_ || !isExportable(state_)) return;
    trapped_.step(1);
    const ExportProfile copied =
        exportProfile(state_, *services_.geodesy, module_->datumText, services_.numbers());
    trapped_.step(2);
    QGuiApplication::clipboard()->setText(QString::fromStdString(copiedValues(copied)));
  });
}

// ---- Files ----

std::string FrmProfile::GetBMPDialog() {
  std::string path;
  procedure(":GetBMPDialog:", [&] {
    path = chosenSavePath(*services_.dialogs,
                          {"Save to Bitmap File", ".bmp", "Bitmap File (*.bmp)|*.bmp", true, true});
  });
  return path;
}

void FrmProfile::mnuExportBMP_Click() {
  procedure(":mnuExportBMP_Click:", [this] {
    const std::string path = GetBMPDialog();
    if (unloaded_) return;
    trapped_.step(1);
    try {
      writeBitmap(picture_->canvas().image(), path);
    } catch (const std::exception&) {
      // Meant: whatever keeps the picture from being saved, an empty name included, is passed over in
      // silence.
      return;
    }
  });
}

void FrmProfile::mnuExportProfile_Click() {
  procedure(":mnuExportProfile_Click:", [this] { lExportDataToCSV(services_.host->GetCSVDialog()); });
}

void FrmProfile::mnuExportPathLoss_Click() {
  procedure(":mnuExportPathLoss_Click:", [this] { lExportITMToCSV(services_.host->GetCSVDialog()); });
}

// The item has no action, as is meant.
void FrmProfile::mnuExportPathLossGraph_Click() {}

void FrmProfile::mnuExportPathSignalGraph_Click() {
  procedure(":mnuExportPathSignalGraph_Click:",
            [this] { lMakeGNUSignalPlot(services_.host->GetPNGDialog()); });
}

void FrmProfile::mnuExportPathLossProfile_Click() {
  procedure(":mnuExportPathLossProfile_Click:",
            [this] { lExportSignalProfileToCSV(services_.host->GetCSVDialog()); });
}

void FrmProfile::lExportDataToCSV(const std::string& outfile) {
  act([&] {
    bringUpToDate();
    if (!unloaded_) exports().lExportDataToCSV(outfile);
  });
}

void FrmProfile::lExportITMToCSV(const std::string& outfile) {
  act([&] {
    bringUpToDate();
    if (!unloaded_) exports().lExportITMToCSV(outfile);
  });
}

void FrmProfile::lExportSignalProfileToCSV(const std::string& outfile) {
  runLong(":lExportSignalProfileToCSV:", tr("Signal profile"),
          [&outfile](ExportProcedures& procedures) { procedures.lExportSignalProfileToCSV(outfile); });
}

void FrmProfile::lMakeGNUSignalPlot(const std::string& outfile) {
  runLong(":lMakeGNUSignalPlot:", tr("Signal graph"), [&](ExportProcedures& procedures) {
    procedures.lMakeGNUSignalPlot(outfile);
    if (unloaded_) return;
    if (procedures.failure())
      hintAtFailure(*procedures.failure());
    else if (!procedures.warnings().empty())
      clearance_->showPointer(QString::fromStdString(procedures.warnings().front()));
  });
}

// The failure of a signal graph has no box. Its reason without the names in it, until the pointer moves on.
void FrmProfile::hintAtFailure(const RuntimeError& failure) {
  const QString reason = QString::fromStdString(failure.description()).section(QLatin1Char(':'), 0, 0);
  clearance_->showPointer(tr("No signal graph: %1 (see the error log)").arg(reason));
}

// What is written is what the plot shows: a drawing that is on its way is made first, and a window that is
// not on the screen, where none is ever on its way, is drawn now.
void FrmProfile::bringUpToDate() {
  if (timer1_.isActive() || timer2_.isActive()) {
    Timer1_Timer();
  } else if (!opened_ || state_.flags.resample) {
    drawLine();
  }
}

ExportProcedures FrmProfile::exports() {
  ExportProcedures::Services services;
  services.geodesy = services_.geodesy;
  services.dialogs = services_.dialogs;
  services.pointer = services_.pointer;
  services.eventLoop = &exportEvents_;
  services.module = module_;
  services.trapped = &trapped_;
  services.normalTable = services_.normalTable;
  services.host = services_.host;
  services.errorLog = services_.errorLog;
  services.programs = services_.programs;
  services.numbers = services_.numbers();
  services.progress = [this](std::int32_t done, std::int32_t all) { return exportGoesOn(done, all); };
  return {std::move(services), settings_, state_};
}

// ---- Long exports ----

class FrmProfile::LongExport {
 public:
  LongExport(FrmProfile& window, const QString& what) : window_(window) {
    window_.exporting_ = true;
    window_.progress_->begin(what);
    window_.showWhatCanBeDone();
  }
  ~LongExport() {
    window_.exporting_ = false;
    window_.showProgressRow(false);
    window_.showWhatCanBeDone();
  }
  LongExport(const LongExport&) = delete;
  LongExport& operator=(const LongExport&) = delete;

 private:
  FrmProfile& window_;
};

template <typename Export>
void FrmProfile::runLong(std::string_view name, const QString& what, const Export& run) {
  procedure(name, [&] {
    if (exporting_) throw RuntimeError(kExportRuns, "Another export of this window is still running");
    bringUpToDate();
    if (unloaded_) return;
    const LongExport running(*this, what);
    ExportProcedures procedures = exports();
    run(procedures);
  });
}

void FrmProfile::ExportEvents::processPending() {
  if (!window_.unloaded_) window_.showProgressRow(true);
  window_.services_.eventLoop->processPending();
}

bool FrmProfile::exportGoesOn(std::int32_t done, std::int32_t all) {
  if (unloaded_ || progress_->isCancelled()) return false;
  progress_->showStep(done, all);
  // A drawing that the events have caused took it away.
  services_.pointer->set(PointerShape::kHourglass);
  return true;
}

void FrmProfile::showProgressRow(bool shown) {
  if (progress_->isHidden() != shown) return;
  const bool keyboard = focusWidget() == slider_ || progress_->isAncestorOf(focusWidget());
  QList<QWidget*> replaced{slider_, clearance_};
  if (auto* caption = centralWidget()->findChild<QLabel*>(QStringLiteral("lblZoom")))
    replaced.append(caption);
  // Shown before the others go, and the other way round, so that the keyboard does not wander off.
  if (shown) progress_->show();
  if (!shown)
    for (QWidget* widget : replaced) widget->show();
  if (keyboard) (shown ? progress_->focusProxy() : slider_)->setFocus(Qt::OtherFocusReason);
  if (shown)
    for (QWidget* widget : replaced) widget->hide();
  if (!shown) progress_->hide();
}

}  // namespace zel
