// Opening, saving, importing, and the copies that outlive a crash.
#include <QAction>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QStringList>
#include <algorithm>
#include <exception>
#include <fstream>
#include <utility>

#include "desktop/dropped_file.h"
#include "desktop/imported_plan.h"
#include "desktop/main_window_self.h"
#include "desktop/report_dialog.h"
#include "planning/whole_file.h"
#include "zel/c_api.h"

namespace zel::host {
namespace {

QString fileName(const std::string& path) { return QFileInfo(QString::fromStdString(path)).fileName(); }

QString startFolder(const PlanDocument& document) {
  const std::vector<std::string> recent = recentFiles();
  const std::string near = !document.path().empty() ? document.path() : recent.empty() ? "" : recent.front();
  return near.empty() ? QDir::homePath() : QFileInfo(QString::fromStdString(near)).absolutePath();
}

// As other programs see it, wherever this one was started.
std::string absolutePath(const std::string& path) {
  return QFileInfo(QString::fromStdString(path)).absoluteFilePath().toStdString();
}

}  // namespace

void MainWindow::Self::box(const QString& title, const QString& text) {
  QMessageBox message(QMessageBox::Warning, title, text, QMessageBox::Ok, &window);
  message.setObjectName(QStringLiteral("message"));
  message.setTextFormat(Qt::PlainText);
  message.exec();
}

void MainWindow::Self::notify(const char* name, const QString& title, const QString& text) {
  delete window.findChild<QMessageBox*>(QLatin1String(name));
  auto* message = new QMessageBox(QMessageBox::Information, title, text, QMessageBox::Ok, &window);
  message->setObjectName(QLatin1String(name));
  message->setTextFormat(Qt::PlainText);
  message->setTextInteractionFlags(Qt::TextSelectableByMouse);
  message->setAttribute(Qt::WA_DeleteOnClose);
  message->setModal(false);
  message->show();
}

// ---- New, open, save ----

bool MainWindow::Self::mayReplaceWork() {
  if (!document.modified()) return true;
  keepNow();  // the question may stay open for long
  QMessageBox question(
      QMessageBox::Question, QStringLiteral("Unsaved Work"),
      QStringLiteral("Save the changes of %1?")
          .arg(document.path().empty() ? QStringLiteral("the untitled plan") : fileName(document.path())),
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &window);
  question.setObjectName(QStringLiteral("unsavedWork"));
  question.setDefaultButton(QMessageBox::Save);
  question.setTextFormat(Qt::PlainText);
  const int answer = question.exec();
  if (answer == QMessageBox::Save) return save();
  return answer == QMessageBox::Discard;
}

PlanFile MainWindow::Self::fileNow() const {
  return {document.plan(), PlanView{map->frame().centre(), map->frame().metresPerPixel()}};
}

void MainWindow::Self::openDocument(Plan plan, const std::string& path, bool unsaved,
                                    const std::optional<PlanView>& view) {
  if (import) tell(QStringLiteral("The list that was being read was for the plan before; nothing was added"));
  import.reset();
  listsToImport.clear();
  profileWanted.reset();
  profile.close();
  document.open(std::move(plan), path, unsaved);
  fileSeen = path.empty() ? std::string() : fileState(path);
  columnsFitted = Fitted::kNot;
  selection = {};
  select({});
  stationPanel->fitColumns();
  linkPanel->fitColumns();
  if (view && view->metresPerPixel > 0) {
    MapFrame frame = map->frame();
    frame.setCentre(view->centre);
    frame.setMetresPerPixel(view->metresPerPixel);
    map->setFrame(frame);
  } else if (!document.plan().stations.empty()) {
    map->fitPlan();
  }
  showTerrainState();
  viewTimer.start();
}

void MainWindow::Self::newPlan() {
  if (!mayReplaceWork()) return;
  Plan plan;
  plan.datum = services.datum;
  openDocument(std::move(plan), {}, false, PlanView{map->frame().centre(), map->frame().metresPerPixel()});
}

void MainWindow::Self::askOpen() {
  const QString path =
      QFileDialog::getOpenFileName(&window, QStringLiteral("Open Plan"), startFolder(document),
                                   QStringLiteral("Plans (*.json);;All files (*)"));
  if (!path.isEmpty()) window.openFile(path.toStdString());
}

bool MainWindow::openFile(const std::string& given) {
  Self& self = *self_;
  const std::string path = absolutePath(given);
  PlanFile file;
  try {
    file = readPlanFile(path);
  } catch (const std::exception& error) {
    self.box(
        QStringLiteral("Open Plan"),
        QStringLiteral("%1 cannot be opened.\n%2").arg(fileName(path), QString::fromStdString(error.what())));
    return false;
  }
  if (!self.mayReplaceWork()) return false;
  if (!self.confirm([&] { self.openDocument(std::move(file.plan), path, false, file.view); })) return false;
  rememberFile(path);
  self.fillRecentMenu();
  return true;
}

bool MainWindow::Self::save() {
  if (document.path().empty()) return saveAs();
  const std::string now = fileState(document.path());
  // One that is gone is written again.
  return now == fileSeen || now.empty() ? saveTo(document.path()) : saveOverAnother();
}

bool MainWindow::Self::saveOverAnother() {
  QMessageBox question(
      QMessageBox::Warning, QStringLiteral("Save Plan"),
      QStringLiteral("%1 was changed by another program since it was opened here. Saving takes that "
                     "change away.")
          .arg(fileName(document.path())),
      QMessageBox::Cancel, &window);
  question.setObjectName(QStringLiteral("fileChanged"));
  question.setTextFormat(Qt::PlainText);
  auto* overwrite = question.addButton(QStringLiteral("&Overwrite"), QMessageBox::DestructiveRole);
  auto* other = question.addButton(QStringLiteral("Save &As..."), QMessageBox::AcceptRole);
  overwrite->setObjectName(QStringLiteral("fileChangedOverwrite"));
  other->setObjectName(QStringLiteral("fileChangedSaveAs"));
  overwrite->setToolTip(QStringLiteral("Keep the plan as it is here"));
  other->setToolTip(QStringLiteral("Keep both, this one under another name"));
  question.setDefaultButton(other);
  question.exec();
  if (question.clickedButton() == other) return saveAs();
  return question.clickedButton() == overwrite && saveTo(document.path());
}

bool MainWindow::Self::saveAs() {
  const QString suggested = document.path().empty() ? startFolder(document) + QStringLiteral("/plan.json")
                                                    : QString::fromStdString(document.path());
  QFileDialog dialog(&window, QStringLiteral("Save Plan"), QFileInfo(suggested).absolutePath(),
                     QStringLiteral("Plans (*.json);;All files (*)"));
  dialog.setObjectName(QStringLiteral("saveDialog"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("json"));
  dialog.selectFile(QFileInfo(suggested).fileName());
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
  return saveTo(dialog.selectedFiles().front().toStdString());
}

bool MainWindow::Self::saveTo(const std::string& path) {
  try {
    writePlanFile(path, fileNow());
  } catch (const std::exception& error) {
    box(QStringLiteral("Save Plan"),
        QStringLiteral("The plan was not saved; what is open stays as it is.\n%1")
            .arg(QString::fromStdString(error.what())));
    return false;
  }
  document.saved(path);
  fileSeen = fileState(path);
  recovery.discard();
  rememberFile(path);
  fillRecentMenu();
  tell(QStringLiteral("Saved ") + fileName(path));
  return true;
}

void MainWindow::Self::saveLinkTable() {
  QFileDialog dialog(&window, QStringLiteral("Export Link Table"), startFolder(document),
                     QStringLiteral("Tables (*.csv);;All files (*)"));
  dialog.setObjectName(QStringLiteral("linkTableDialog"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("csv"));
  dialog.selectFile(QStringLiteral("links.csv"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  QSaveFile file(dialog.selectedFiles().front());
  const QByteArray bytes = linkPanel->commaSeparated().toUtf8();
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
      !file.commit()) {
    box(QStringLiteral("Export Link Table"),
        QStringLiteral("%1 cannot be written: %2").arg(file.fileName(), file.errorString()));
    return;
  }
  tell(QStringLiteral("Saved ") + QFileInfo(file.fileName()).fileName() +
       (analysis.waiting() > 0 ? QStringLiteral("; not computed yet: ") + counted(analysis.waiting(), "link")
                               : QString()));
}

// ---- Report ----

void MainWindow::Self::askReport() {
  if (report) return;
  const auto& links = document.plan().links;
  ReportDialog question(links.size(), selection.links.size(), &window);
  if (question.exec() != QDialog::Accepted) return;
  QFileDialog dialog(&window, QStringLiteral("Save Report"), startFolder(document),
                     QStringLiteral("PDF (*.pdf);;All files (*)"));
  dialog.setObjectName(QStringLiteral("reportFileDialog"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("pdf"));
  const QString stem = document.path().empty()
                           ? QStringLiteral("plan")
                           : QFileInfo(QString::fromStdString(document.path())).completeBaseName();
  dialog.selectFile(stem + QStringLiteral(".pdf"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  const QString path = dialog.selectedFiles().front();

  ReportRequest request;
  request.plan = document.plan();
  for (const auto& entry : links)
    if (!question.onlyChosen() ||
        std::find(selection.links.begin(), selection.links.end(), entry.first) != selection.links.end())
      request.links.push_back(entry.first);
  request.planName = document.path().empty() ? "Untitled plan" : stem.toStdString();
  request.sheet = question.sheet();
  request.units.imperial = units.imperial;
  request.angles = units.angles;
  request.terrain = terrain;
  request.date = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")).toStdString();
  request.program = std::string("Terrain Profiler ") + zelProfilerVersion();
  report = std::make_unique<ReportSaver>(
      std::move(request), path, &window,
      [this, path](const QString& problem, const Report& made) { reportEnded(path, problem, made); });
}

void MainWindow::Self::reportEnded(const QString& path, const QString& problem, const Report& made) {
  report.reset();
  const QString name = QFileInfo(path).fileName();
  if (!problem.isEmpty()) {
    box(QStringLiteral("Report"), QStringLiteral("%1 was not written: %2").arg(name, problem));
    return;
  }
  if (made.cancelled) {
    tell(QStringLiteral("The report was cancelled; nothing was written"));
    return;
  }
  const auto without = static_cast<std::size_t>(std::count_if(
      made.rows.begin(), made.rows.end(), [](const LinkRow& row) { return !row.error.empty(); }));
  tell(QStringLiteral("Saved %1: %2").arg(name, counted(static_cast<std::size_t>(made.pages), "page")) +
       (without > 0 ? QStringLiteral("; without figures: ") + counted(without, "link") : QString()));
}

void MainWindow::Self::fillRecentMenu() {
  recentMenu->clear();
  int number = 0;
  for (const std::string& path : recentFiles()) {
    ++number;
    QString shown = QDir::toNativeSeparators(QString::fromStdString(path));
    shown.replace(u'&', QLatin1String("&&"));
    QAction* action = recentMenu->addAction(QStringLiteral("&%1 %2").arg(number).arg(shown));
    action->setObjectName(QStringLiteral("mnuFileRecent%1").arg(number));
    connect(action, &QAction::triggered, &window, [this, path] {
      // The menu is made anew by what this does.
      QTimer::singleShot(0, &window, [this, path] {
        if (!window.openFile(path) && !QFileInfo::exists(QString::fromStdString(path))) {
          forgetFile(path);
          fillRecentMenu();
        }
      });
    });
  }
  recentMenu->setEnabled(number > 0);
}

// ---- Copies of unsaved work ----

void MainWindow::Self::keepSoon() {
  if (keepsCopies() && document.modified() && !keepTimer.isActive())
    keepTimer.start(services.recoverySeconds * 1000);
}

void MainWindow::Self::keepNow() {
  keepTimer.stop();
  if (!keepsCopies() || !document.modified()) return;
  try {
    recovery.keep(fileNow(), document.path());
  } catch (const std::exception& error) {
    tell(QStringLiteral("Unsaved work cannot be kept for a crash: ") + QString::fromStdString(error.what()));
  }
}

// True when one was restored. With `only`, no others are asked about than the copies of that file.
bool MainWindow::Self::offerLeftPlans(const std::string& only) {
  if (!keepsCopies()) {
    tell(QStringLiteral("There is no home folder; unsaved work is not kept for a crash"));
    return false;
  }
  std::vector<std::string> problems;
  const std::vector<LeftPlan> all = recovery.left(problems);
  if (!problems.empty()) tell(QString::fromStdString(problems.front()));
  for (const LeftPlan& left : all) {
    if (!only.empty() && left.originalPath != only) continue;
    QMessageBox question(&window);
    question.setObjectName(QStringLiteral("leftPlan"));
    question.setIcon(QMessageBox::Question);
    question.setWindowTitle(QStringLiteral("Unsaved Work"));
    question.setTextFormat(Qt::PlainText);
    QString text =
        QStringLiteral("Unsaved work on %1 was left on %2: %3, %4.")
            .arg(left.originalPath.empty() ? QStringLiteral("an untitled plan") : fileName(left.originalPath),
                 QDateTime::fromSecsSinceEpoch(left.savedAt).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
                 counted(left.file.plan.stations.size(), "station"),
                 counted(left.file.plan.links.size(), "link"));
    if (left.originalChanged) text += QStringLiteral("\nThe file has been changed since.");
    if (left.originalMissing) text += QStringLiteral("\nThe file is no longer there.");
    question.setText(text);
    auto* restore = question.addButton(QStringLiteral("&Restore"), QMessageBox::AcceptRole);
    auto* discard = question.addButton(QStringLiteral("&Discard"), QMessageBox::DestructiveRole);
    auto* later = question.addButton(QStringLiteral("&Later"), QMessageBox::RejectRole);
    restore->setObjectName(QStringLiteral("leftPlanRestore"));
    discard->setObjectName(QStringLiteral("leftPlanDiscard"));
    later->setObjectName(QStringLiteral("leftPlanLater"));
    restore->setToolTip(QStringLiteral("Open it; it is unsaved still"));
    discard->setToolTip(QStringLiteral("Take it away for good"));
    later->setToolTip(QStringLiteral("Ask again at the next start"));
    question.setDefaultButton(restore);
    question.setEscapeButton(later);
    question.exec();
    if (question.clickedButton() == discard) recovery.remove(left);
    if (question.clickedButton() != restore) continue;
    if (!confirm([&] { openDocument(left.file.plan, left.originalPath, true, std::nullopt); })) continue;
    if (left.originalChanged) fileSeen.clear();  // so that saving asks
    // The copy of this window stands before the one that was left is taken away.
    try {
      if (recovery.keep(fileNow(), document.path())) recovery.remove(left);
    } catch (const std::exception& error) {
      tell(QString::fromStdString(error.what()));
    }
    return true;
  }
  return false;
}

void MainWindow::start(const std::string& file) {
  Self& self = *self_;
  self.started = true;
  self.map->fitTerrain();
  const std::string named = file.empty() ? std::string() : absolutePath(file);
  if (self.offerLeftPlans(named)) return;
  if (!named.empty()) {
    takeFiles({named});
    if (!self.document.path().empty() || self.import) return;
  }
  const std::vector<std::string> recent = recentFiles();
  if (named.empty() && !recent.empty()) {
    // A file that is gone is no reason to begin with a box.
    if (!QFileInfo::exists(QString::fromStdString(recent.front()))) {
      self.tell(QStringLiteral("The last plan, %1, is no longer there")
                    .arg(QString::fromStdString(recent.front())));
    } else if (openFile(recent.front())) {
      return;
    }
  }
  if (!self.document.plan().stations.empty() || !self.terrain || !self.terrain->source().bundledSample)
    return;
  Plan plan = samplePlan();
  plan.datum = self.services.datum;
  self.openDocument(std::move(plan), {}, false, std::nullopt);
  self.select({{}, {self.document.plan().links.begin()->first}});
}

// ---- Import ----

void MainWindow::Self::askImport() {
  QStringList patterns;
  for (const std::string& ending : stationListEndings()) patterns += u'*' + QString::fromStdString(ending);
  const QString path =
      QFileDialog::getOpenFileName(&window, QStringLiteral("Import Stations"), startFolder(document),
                                   QStringLiteral("Stations (%1);;All files (*)").arg(patterns.join(u' ')));
  if (!path.isEmpty()) startImport(path.toStdString());
}

void MainWindow::Self::startImport(const std::string& path) {
  if (import) {
    listsToImport.push_back(path);
    tell(fileName(path) + QStringLiteral(" is read next"));
    return;
  }
  keepNow();
  const auto taken = [this, path](const ImportedStations& result) {
    takeImport(path, result);
    nextImport();
  };
  const auto cancelled = [this] {
    import.reset();
    listsToImport.clear();
    tell(QStringLiteral("The import was cancelled; nothing was added"));
  };
  import = std::make_unique<ImportJob>(path, &window, taken, cancelled);
}

void MainWindow::Self::nextImport() {
  if (import || listsToImport.empty()) return;
  const std::string path = listsToImport.front();
  listsToImport.pop_front();
  startImport(path);
}

void MainWindow::Self::takeImport(const std::string& path, ImportedStations result) {
  import.reset();
  const QString name = fileName(path);
  const auto refuse = [&](const std::string& why) {
    box(QStringLiteral("Import Stations"), QStringLiteral("%1 cannot be imported; nothing was added.\n%2")
                                               .arg(name, QString::fromStdString(why)));
  };
  if (!result.error.empty()) return refuse(result.error);
  std::vector<StationId> added;
  try {
    bringIntoDatum(result, document.plan().datum);
    if (result.stations.empty() && !result.problems.empty()) return refuse(result.problems.back().text);
    noteDoubles(result, document.plan());
    PlanEdit edit = addNetwork(document.plan(), document.nextStation(), document.nextLink(), result.stations,
                               result.links, &added);
    edit.text = "import of " + counted(added.size(), "station").toStdString();
    addFrequencies(edit, result, added);
    document.apply(edit);
  } catch (const std::exception& error) {
    return refuse(error.what());
  }
  select({added, {}});
  fitSelection();
  stationPanel->fitColumns();
  tell(QStringLiteral("Imported %1 from %2").arg(counted(added.size(), "station"), name));
  if (result.links.empty()) tabs->setCurrentWidget(stationPanel);
  if (result.skipped > 0 || assumesSomething(result))
    notify("importSummary", QStringLiteral("Import Stations"),
           name + QStringLiteral("\n\n") + QString::fromStdString(importSummary(result)));
}

void MainWindow::takeFiles(const std::vector<std::string>& paths) {
  Self& self = *self_;
  std::vector<std::string> rasters, lists;
  for (const std::string& path : paths) {
    switch (droppedKind(path)) {
      case DroppedKind::kPlan:
        openFile(path);
        break;
      case DroppedKind::kStations:
        lists.push_back(path);
        break;
      case DroppedKind::kTerrain:
        rasters.push_back(absolutePath(path));
        break;
      case DroppedKind::kUnreadable:
        self.box(QStringLiteral("Open"),
                 QStringLiteral("%1 cannot be read").arg(QString::fromStdString(path)));
        break;
    }
  }
  // After the plan that came with them.
  for (const std::string& list : lists) self.startImport(list);
  if (!rasters.empty()) self.takeRasters(rasters);
}

}  // namespace zel::host
