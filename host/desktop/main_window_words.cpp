// What the window says: the line over the map, the status bar, the title.
#include <QFileInfo>
#include <QLabel>
#include <QStatusBar>
#include <QStringList>
#include <exception>

#include "desktop/link_text.h"
#include "desktop/main_window_self.h"
#include "zel/geodesic.h"

namespace zel::host {
namespace {

constexpr int kTellMs = 15'000;

}  // namespace

void MainWindow::Self::showSummary() {
  QString tip;
  const auto link = selection.links.empty() ? document.plan().links.end()
                                            : document.plan().links.find(selection.links.front());
  if (!dragged && link != document.plan().links.end()) {
    const LinkResult* result = analysis.find(link->first);
    if (result != nullptr && result->done) tip = linkTip(*result);
  }
  summary->setText(summaryText());
  summary->setToolTip(plainTip(tip));
}

QString MainWindow::Self::summaryText() {
  const Plan& plan = document.plan();
  if (dragged) {
    const auto station = plan.stations.find(dragged->first);
    if (station != plan.stations.end()) return stationSummary(station->second, dragged->second);
  }
  if (!selection.links.empty()) {
    const auto link = plan.links.find(selection.links.front());
    if (link != plan.links.end()) return linkSummary(plan, link->second, analysis.find(link->first), units);
  }
  if (selection.stations.size() == 1) {
    const auto station = plan.stations.find(selection.stations.front());
    if (station != plan.stations.end()) return stationSummary(station->second, station->second.position);
  }
  if (selection.stations.size() == 2 && plan.stations.contains(selection.stations[0]) &&
      plan.stations.contains(selection.stations[1]))
    return pairSummary(plan, selection.stations[0], selection.stations[1], units);
  if (plan.stations.empty())
    return QStringLiteral(
        "Place stations with Station, Place on Map; type or import them; then link two of them");
  const QString stations = counted(plan.stations.size(), "station");
  if (plan.links.empty())
    return stations + QStringLiteral(
                          ", no links; choose two stations and link them with Link, Link Chosen Stations "
                          "(Ctrl+L)");
  return stations + QStringLiteral(", ") + counted(plan.links.size(), "link") +
         QStringLiteral("; choose a link to see its loss and clearance");
}

QString MainWindow::Self::stationSummary(const Station& station, const Position& place) {
  QString text = shownName(QString::fromStdString(station.name)) + QStringLiteral(": ") +
                 shownPosition(place, units) + QStringLiteral(", antenna ") +
                 heightText(station.antennaM, units, -2);
  const Position there = mapPosition(place).position;
  if (ground && ground->place == there)
    return text + QStringLiteral(", ground: ") + heightOrNone(ground->heightM, units);
  watch.askHeight(there);
  return text;
}

void MainWindow::Self::showPointer(const PointerPlace& place) {
  QString text = shownPosition(place.position, units);
  if (place.heightM) text += QStringLiteral("  ") + heightOrNone(*place.heightM, units);
  pointerLabel->setText(text);
}

void MainWindow::Self::showWork() {
  QStringList parts;
  if (!watch.known()) {
    parts += QStringLiteral("looking through the terrain");
  } else if (tilesWaiting > 0) {
    parts += QStringLiteral("reading terrain");
  }
  if (analysis.waiting() > 0) parts += QStringLiteral("computing ") + counted(analysis.waiting(), "link");
  const QString text = parts.join(QStringLiteral(", "));
  if (text != workLabel->text()) workLabel->setText(text);
}

void MainWindow::Self::showFileState() {
  const QString path = QString::fromStdString(document.path());
  window.setWindowFilePath(path);
  QString name = path.isEmpty() ? QStringLiteral("Untitled") : QFileInfo(path).fileName();
  name.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));  // as the toolkit wants what is no mark
  window.setWindowTitle(name + QStringLiteral("[*] - Terrain Profiler"));
  window.setWindowModified(document.modified());
  if (!document.modified()) {
    keepTimer.stop();
    recovery.discard();
  }
  updateActions();
}

void MainWindow::Self::tell(const QString& text) { window.statusBar()->showMessage(text, kTellMs); }

bool MainWindow::Self::confirm(const std::function<void()>& action) {
  try {
    action();
    return true;
  } catch (const std::exception& error) {
    tell(QString::fromStdString(error.what()));
    return false;
  }
}

}  // namespace zel::host
