// Terrain, units and the other settings that the window follows.
#include <QAction>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QUrl>
#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "desktop/main_window_self.h"
#include "desktop/notice_line.h"
#include "preferences/field_values.h"
#include "preferences/preferences_dialog.h"
#include "zel/profile_control.h"
#include "zel/settings.h"

namespace zel::host {
namespace {

constexpr int kLayoutVersion = 1;  // another one when bars and docks are others

// Sections whose settings every figure of a link depends on, and the others that do.
bool mattersToLinks(const SettingValue& setting) {
  if (setting.section == "ITM" || setting.section == "Terrain") return true;
  if (setting.section == "Settings") return setting.key == "CalcMethod";
  if (setting.section != "Profile") return false;
  constexpr std::array<std::string_view, 5> kKeys{"Prf_Per", "Prf_Max", "Prf_TRes", "Prf_Crv", "Prf_Freq"};
  return std::find(kKeys.begin(), kKeys.end(), setting.key) != kKeys.end();
}

std::map<std::string, std::string> settingsOfLinks() {
  std::map<std::string, std::string> values;
  for (const SettingValue& setting : storedSettings())
    if (mattersToLinks(setting)) values[setting.section + "/" + setting.key] = setting.value;
  return values;
}

std::map<std::string, std::string> settingsOfTerrain(const std::map<std::string, std::string>& settings) {
  std::map<std::string, std::string> chosen;
  for (const auto& [name, value] : settings)
    if (name == "Profile/Prf_TRes" || name.rfind("Terrain/", 0) == 0) chosen[name] = value;
  return chosen;
}

std::vector<std::string> storedPaths(int code) {
  return pathsOf(storedSetting("Terrain", "Source" + std::to_string(code)).value_or(std::string()));
}

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& more) {
  for (const std::string& path : more)
    if (std::find(first.begin(), first.end(), path) == first.end()) first.push_back(path);
  return first;
}

// What an open profile shows and no figure of a link depends on.
bool mattersToProfileAlone(const std::string& name) {
  constexpr std::array<std::string_view, 3> kSections{"Colors/", "PTP/", "Settings/"};
  return std::any_of(kSections.begin(), kSections.end(),
                     [&name](std::string_view section) { return name.rfind(section, 0) == 0; });
}

}  // namespace

void MainWindow::Self::store(const char* section, const char* key, const std::string& value) {
  confirm([&] {
    storeSetting(section, key, value);
    // One that was set for this run stands before what is stored; the choice is to be seen all the same.
    if (storedSetting(section, key) != value) overrideSetting(section, key, value);
  });
}

// Everything that follows the settings, read anew; links are computed anew when something of theirs is
// different.
void MainWindow::Self::settingsChanged(bool terrainToo) {
  units = {imperialUnits(), angleFormat()};
  stationModel->setUnits(units);
  linkModel->setUnits(units);
  unitsLabel->setText(units.imperial ? QStringLiteral("feet, miles") : QStringLiteral("metres, kilometres"));
  MapOptions options = map->options();
  options.imperial = units.imperial;
  options.angles = units.angles;
  if (options != map->options()) map->setOptions(options);
  confirm([&] {
    std::map<std::string, std::string> now = settingsOfLinks();
    const bool different = now != settingsSeen;
    const bool otherTerrain = terrainToo || settingsOfTerrain(now) != settingsOfTerrain(settingsSeen);
    settingsSeen = std::move(now);
    if (otherTerrain) openTerrain();
    if (different || terrainToo) {
      analysis.updateAll();
      profile.refresh();
    }
  });
  showChoices();
  showSummary();
}

void MainWindow::Self::openTerrain() {
  try {
    terrain = TerrainMap::open(chosenSource());
  } catch (const std::exception& error) {
    terrain.reset();
    tell(QString::fromStdString(error.what()));
  }
  rasters.clear();
  ground.reset();
  emptyView->hide();
  watch.setTerrain(terrain);
  analysis.setTerrain(terrain);
  map->setTerrain(terrain);
  showTerrainState();
  showWork();
}

void MainWindow::Self::showTerrainState() {
  if (!terrain) {
    terrainLabel->setText(QStringLiteral("no terrain"));
    notice->hide();
    return;
  }
  const TerrainSource& source = terrain->source();
  terrainLabel->setText(QString::fromStdString(source.name) +
                        (source.bundledSample ? QStringLiteral(" (bundled sample)") : QString()));
  notice->setVisible(source.bundledSample && !notice->dismissed());
}

// The terrain has been looked through.
void MainWindow::Self::terrainKnown(const std::vector<std::string>& problems) {
  showWork();
  showSummary();
  viewTimer.start();
  if (const auto wanted = std::exchange(profileWanted, std::nullopt)) {
    window.statusBar()->clearMessage();
    if (document.plan().links.contains(*wanted)) window.showProfile(*wanted);
  }
  // What is wrong with files that were just named, rather than an empty map.
  if (std::exchange(problemsWanted, false)) tellTerrainProblems(problems);
}

// A plain grey map is told of when it comes from other terrain or another plan, not from moving the map.
void MainWindow::Self::showWhetherTerrainIsInView() {
  const TerrainExtent seen = map->frame().extent();
  const auto isSeen = [&seen](const TerrainCoverage& raster) {
    const TerrainExtent& its = raster.extent;
    if (its.north < seen.south || its.south > seen.north) return false;
    // At any turn.
    const double turns = 360 * std::ceil((seen.west - its.east) / 360);
    return its.west + turns <= seen.east;
  };
  emptyView->setVisible(started && !rasters.empty() && !emptyView->dismissed() &&
                        std::none_of(rasters.begin(), rasters.end(), isSeen));
}

void MainWindow::Self::tellTerrainProblems(const std::vector<std::string>& problems) {
  if (problems.empty()) return;
  QString text;
  constexpr std::size_t kMostShown = 10;
  for (std::size_t i = 0; i < std::min(problems.size(), kMostShown); ++i)
    text += QString::fromStdString(problems[i]) + u'\n';
  if (problems.size() > kMostShown)
    text += QStringLiteral("... and %1 more").arg(problems.size() - kMostShown);
  box(QStringLiteral("Terrain"), QStringLiteral("Some terrain cannot be used.\n\n") + text.trimmed());
}

void MainWindow::Self::askTerrain() {
  const QStringList files = QFileDialog::getOpenFileNames(
      &window, QStringLiteral("Add Terrain"), QString(),
      QStringLiteral("Rasters (*.hgt *.hgt.zip *.tif *.tiff *.dt0 *.dt1 *.dt2 *.asc *.img *.bil *.flt *.vrt "
                     "*.dem);;All files (*)"));
  std::vector<std::string> paths;
  for (const QString& file : files) paths.push_back(file.toStdString());
  if (!paths.empty()) takeRasters(paths);
}

void MainWindow::Self::takeRasters(const std::vector<std::string>& paths) {
  const int code = chosenSource();
  TerrainSource source;
  if (!confirm([&] {
        for (const TerrainSource& each : terrainSources())
          if (each.code == code) source = each;
      }))
    return;
  QMessageBox question(&window);
  question.setObjectName(QStringLiteral("useTerrain"));
  question.setIcon(QMessageBox::Question);
  question.setWindowTitle(QStringLiteral("Add Terrain"));
  question.setTextFormat(Qt::PlainText);
  const QString what = paths.size() == 1 ? QFileInfo(QString::fromStdString(paths.front())).fileName()
                                         : QStringLiteral("%1 files and folders").arg(paths.size());
  question.setText(QStringLiteral("Use %1 for source %2 (%3)?")
                       .arg(what, QString::number(code), QString::fromStdString(source.name)));
  const auto addButton = [&question](const char* name, const QString& text, const QString& tip,
                                     QMessageBox::ButtonRole role) {
    QPushButton* button = question.addButton(text, role);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    return button;
  };
  auto* addTo = addButton("useTerrainAdd", QStringLiteral("&Add"),
                          QStringLiteral("Before the rasters that the source has"), QMessageBox::AcceptRole);
  auto* replace =
      addButton("useTerrainReplace", QStringLiteral("&Replace"),
                QStringLiteral("In the place of the rasters that the source has"), QMessageBox::AcceptRole);
  auto* once = addButton("useTerrainOnce", QStringLiteral("This Run &Only"),
                         QStringLiteral("Until the program ends, for every source"), QMessageBox::AcceptRole);
  question.addButton(QMessageBox::Cancel);
  question.setDefaultButton(addTo);
  question.exec();
  const auto* answer = question.clickedButton();
  keepNow();
  const bool done = confirm([&] {
    if (answer == once) {
      useTerrainForThisRun(paths);
      return;
    }
    if (answer != addTo && answer != replace) throw std::runtime_error("The terrain is as it was");
    for (const std::string& path : paths)
      if (path.find(';') != std::string::npos)
        throw std::runtime_error(
            path + ": a name with \";\" cannot be stored, since it separates the paths; rename it");
    const std::vector<std::string> stored = storedPaths(code);
    setTerrainSource(code, answer == addTo ? joined(paths, stored) : paths);
    // Rasters that were given for this run stand before the stored ones and would hide the new.
    if (!source.bundledSample && source.paths != stored)
      useTerrainForThisRun(answer == addTo ? joined(paths, source.paths) : paths);
  });
  if (!done) return;
  problemsWanted = true;
  settingsChanged(true);
  map->fitTerrain();
}

void MainWindow::Self::chooseSource(int code) {
  store("Profile", "Prf_TRes", std::to_string(code));
  settingsChanged(false);
}

// ---- The map's own ----

void MainWindow::Self::setMapOptions(const MapOptions& options) {
  std::string problem;
  storeMapOptions(options, &problem);
  if (!problem.empty()) tell(QString::fromStdString(problem));
  map->setOptions(options);
  showChoices();
}

void MainWindow::Self::askHeightScale() {
  const HeightScale shown = map->shownScale();
  QDialog dialog(&window);
  dialog.setObjectName(QStringLiteral("heightScaleDialog"));
  dialog.setWindowTitle(QStringLiteral("Height Scale"));
  auto* form = new QFormLayout(&dialog);
  constexpr double kLowest = -500, kHighest = 9000;  // metres, of the earth's surface
  const double unit = units.imperial ? 0.3048 : 1;
  const auto addBox = [&](const QString& caption, const char* name, double metres) {
    auto* box = new QDoubleSpinBox(&dialog);
    box->setObjectName(QLatin1String(name));
    box->setRange(kLowest / unit, kHighest / unit);
    box->setDecimals(0);
    box->setSuffix(u' ' + heightUnit(units));
    box->setValue(metres / unit);
    box->setToolTip(QStringLiteral("Height above sea level at this end of the colours"));
    form->addRow(caption, box);
    return box;
  };
  auto* lowest = addBox(QStringLiteral("&Lowest:"), "heightScaleLowest", shown.lowest);
  auto* highest = addBox(QStringLiteral("&Highest:"), "heightScaleHighest", shown.highest);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  form->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  MapOptions options = map->options();
  if (dialog.exec() == QDialog::Accepted) {
    if (lowest->value() < highest->value()) {
      options.heightScale = HeightScale{lowest->value() * unit, highest->value() * unit};
    } else {
      tell(QStringLiteral("The lowest height is not under the highest; the scale is as it was"));
    }
  }
  setMapOptions(options);
}

// ---- The window's place ----

void MainWindow::Self::restorePlace() {
  const StoredWindow stored = storedWindow();
  // The toolkit brings a window that would come up off the screen back onto one.
  if (!stored.geometry.empty())
    window.restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(stored.geometry)));
  if (!stored.layout.empty())
    window.restoreState(QByteArray::fromBase64(QByteArray::fromStdString(stored.layout)), kLayoutVersion);
}

void MainWindow::Self::storePlace() {
  storeWindow({window.saveGeometry().toBase64().toStdString(),
               window.saveState(kLayoutVersion).toBase64().toStdString()});
}

// ---- Dialogs ----

void MainWindow::Self::showPreferences() {
  keepNow();
  PreferencesDialog dialog(&window);
  dialog.onStored = [this](const std::vector<std::string>& changed) { preferencesStored(changed); };
  dialog.onHelp = [this](PreferencesPage) { openGuide(QStringLiteral("preferences.html")); };
  dialog.exec();
}

void MainWindow::Self::preferencesStored(const std::vector<std::string>& changed) {
  settingsChanged(std::any_of(changed.begin(), changed.end(),
                              [](const std::string& name) { return name.rfind("Terrain/", 0) == 0; }));
  if (std::any_of(changed.begin(), changed.end(), mattersToProfileAlone)) profile.refresh();
}

void MainWindow::Self::showProfilerSettings() {
  keepNow();
  component.ShowOptionsForm();
  settingsChanged(false);
}

void MainWindow::Self::openGuide(const QString& page) {
  if (services.guide.empty()) {
    tell(QStringLiteral("The guide is not there; install it with the program"));
    return;
  }
  QString file = QString::fromStdString(services.guide);
  const QString wanted = QFileInfo(file).absolutePath() + u'/' + page;
  if (!page.isEmpty() && QFileInfo::exists(wanted)) file = wanted;
  if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
    tell(QStringLiteral("The desktop has no program to open the guide; it is ") + file);
}

}  // namespace zel::host
