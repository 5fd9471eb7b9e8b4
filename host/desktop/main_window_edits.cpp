// What the window's actions change in the plan.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <algorithm>

#include "desktop/link_text.h"
#include "desktop/main_window_self.h"
#include "desktop/station_dialog.h"
#include "desktop/station_text.h"
#include "planning/plan_text.h"

namespace zel::host {
namespace {

TerrainExtent around(const Plan& plan, const MapSelection& selection) {
  std::vector<StationId> ids = selection.stations;
  for (const LinkId id : selection.links) {
    const Link& link = plan.links.at(id);
    ids.insert(ids.end(), {link.from, link.to});
  }
  const Position first = plan.stations.at(ids.front()).position;
  TerrainExtent extent{first.latitude, first.longitude, first.latitude, first.longitude};
  for (const StationId id : ids) {
    const Position place = plan.stations.at(id).position;
    // At the turn that is nearest to the first, so that stations on both sides of 180 degrees are neighbours.
    double longitude = place.longitude;
    if (longitude - first.longitude > 180) longitude -= 360;
    if (longitude - first.longitude < -180) longitude += 360;
    extent.south = std::min(extent.south, place.latitude);
    extent.north = std::max(extent.north, place.latitude);
    extent.west = std::min(extent.west, longitude);
    extent.east = std::max(extent.east, longitude);
  }
  return extent;
}

}  // namespace

bool MainWindow::Self::apply(const PlanEdit& edit) {
  return confirm([&] { document.apply(edit); });
}

void MainWindow::Self::placeStation(Position position) {
  Station station;
  station.name = freshName(document.plan());
  station.position = position;
  std::vector<StationId> added;
  if (apply(addStations(document.plan(), document.nextStation(), {station}, &added))) select({added, {}});
}

void MainWindow::Self::linkStations(StationId from, StationId to) {
  if (from == to) return;
  for (const auto& [id, link] : document.plan().links)
    if ((link.from == from && link.to == to) || (link.from == to && link.to == from)) {
      tell(QStringLiteral("These stations are linked already"));
      select({{}, {id}});
      return;
    }
  const LinkId id = document.nextLink();
  if (apply(addLink(document.plan(), id, {from, to, std::nullopt}))) select({{}, {id}});
}

void MainWindow::Self::linkSelected() {
  if (selection.stations.size() == 2) linkStations(selection.stations[0], selection.stations[1]);
}

void MainWindow::Self::addTypedStation(std::optional<Position> place) {
  Station station;
  station.name = freshName(document.plan());
  if (place) station.position = *place;
  StationDialog dialog(QStringLiteral("Add Station"), station, place.has_value(), units, &window);
  if (dialog.exec() != QDialog::Accepted) return;
  std::vector<StationId> added;
  if (!apply(addStations(document.plan(), document.nextStation(), {dialog.station()}, &added))) return;
  select({added, {}});
  const Position position = dialog.station().position;
  const TerrainExtent seen = map->frame().extent();
  if (position.latitude < seen.south || position.latitude > seen.north ||
      ((position.longitude < seen.west || position.longitude > seen.east) &&
       (position.longitude + 360 < seen.west || position.longitude + 360 > seen.east)))
    centreOnStation();
}

void MainWindow::Self::editStation(StationId id) {
  const auto found = document.plan().stations.find(id);
  if (found == document.plan().stations.end()) return;
  StationDialog dialog(QStringLiteral("Edit Station"), found->second, true, units, &window);
  if (dialog.exec() != QDialog::Accepted) return;
  confirm([&] { document.apply(changeStation(document.plan(), id, dialog.station())); });
}

void MainWindow::Self::removeSelected() {
  if (selection.stations.empty() && selection.links.empty()) return;
  PlanEdit edit = removeStations(document.plan(), selection.stations);
  const PlanEdit links = removeLinks(document.plan(), selection.links);
  edit.links.insert(links.links.begin(), links.links.end());
  if (selection.stations.empty()) edit.text = links.text;
  apply(edit);
}

void MainWindow::Self::swapSelected() {
  PlanEdit edit;
  for (const LinkId id : selection.links) {
    const PlanEdit one = swapLink(document.plan(), id);
    if (edit.text.empty()) edit.text = one.text;
    edit.links.insert(one.links.begin(), one.links.end());
  }
  if (selection.links.size() > 1)
    edit.text = "swap of " + counted(selection.links.size(), "link").toStdString();
  apply(edit);
}

void MainWindow::Self::setFrequency(const std::vector<LinkId>& links, std::optional<double> frequencyMhz) {
  confirm([&] {
    PlanEdit edit;
    for (const LinkId id : links) {
      Link link = document.plan().links.at(id);
      link.frequencyMhz = frequencyMhz;
      const PlanEdit one = changeLink(document.plan(), id, link);
      edit.links.insert(one.links.begin(), one.links.end());
    }
    edit.text = links.size() == 1
                    ? "frequency of " +
                          linkTitle(document.plan(), document.plan().links.at(links.front())).toStdString()
                    : "frequency of " + counted(links.size(), "link").toStdString();
    document.apply(edit);
  });
}

void MainWindow::Self::askFrequency() {
  if (selection.links.empty()) return;
  const std::vector<LinkId> links = selection.links;
  const auto now = document.plan().links.at(links.front()).frequencyMhz;
  QInputDialog dialog(&window);
  dialog.setObjectName(QStringLiteral("frequencyDialog"));
  dialog.setWindowTitle(QStringLiteral("Frequency"));
  dialog.setLabelText(QStringLiteral("Frequency in MHz; empty for that of the settings:"));
  dialog.setTextValue(now ? plainNumber(*now, 6) : QString());
  while (dialog.exec() == QDialog::Accepted) {
    const auto typed = typedFrequency(dialog.textValue());
    if (typed.value) return setFrequency(links, *typed.value);
    dialog.setLabelText(typed.problem);
    for (auto* label : dialog.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  }
}

// ---- Clipboard ----

void MainWindow::Self::copy() {
  if (summary->hasFocus() && summary->hasSelectedText()) return copyText(summary->selectedText());
  QString text;
  if (linkPanel->isAncestorOf(QApplication::focusWidget()) || selection.stations.empty()) {
    if (selection.links.empty()) return;
    text = linkPanel->tabSeparated();
    tell(QStringLiteral("Copied ") + counted(selection.links.size(), "link"));
  } else {
    text = QString::fromStdString(stationsText(document.plan(), selection.stations));
    tell(QStringLiteral("Copied ") + counted(selection.stations.size(), "station"));
  }
  QApplication::clipboard()->setText(text);
}

void MainWindow::Self::cut() {
  if (selection.stations.empty()) return;
  selection.links.clear();
  QApplication::clipboard()->setText(
      QString::fromStdString(stationsText(document.plan(), selection.stations)));
  removeSelected();
}

void MainWindow::Self::paste() {
  const StationLines lines =
      parseStationLines(QApplication::clipboard()->text().toStdString(), document.plan());
  const QString problem = QString::fromStdString(lines.firstProblem);
  if (lines.stations.empty()) {
    tell(lines.refused == 0 ? QStringLiteral("There is no text to paste")
                            : QStringLiteral("Nothing was pasted: ") + problem);
    return;
  }
  std::vector<StationId> added;
  PlanEdit edit = addStations(document.plan(), document.nextStation(), lines.stations, &added);
  edit.text = "paste of " + counted(added.size(), "station").toStdString();
  if (!apply(edit)) return;
  select({added, {}});
  QString said = QStringLiteral("Pasted ") + counted(added.size(), "station");
  if (lines.refused > 0)
    said += QStringLiteral("; left out ") + counted(lines.refused, "line") + QStringLiteral(", ") + problem;
  tell(said);
}

// ---- Choosing and finding ----

void MainWindow::Self::selectAll() {
  MapSelection all;
  if (linkPanel->isAncestorOf(QApplication::focusWidget())) {
    all.links = linkModel->ids();
  } else {
    all.stations = stationModel->ids();
  }
  select(all);
}

void MainWindow::Self::findStation() {
  dock->show();
  tabs->setCurrentWidget(stationPanel);
  stationPanel->filter()->setFocus(Qt::ShortcutFocusReason);
  stationPanel->filter()->selectAll();
}

void MainWindow::Self::goTo(TablePanel& panel) {
  dock->show();
  tabs->setCurrentWidget(&panel);
  panel.table()->setFocus(Qt::ShortcutFocusReason);
  panel.chooseCurrent();
}

void MainWindow::Self::centreOnStation() {
  if (selection.stations.empty()) return;
  MapFrame frame = map->frame();
  frame.setCentre(document.plan().stations.at(selection.stations.front()).position);
  map->setFrame(frame);
}

void MainWindow::Self::fitSelection() {
  if (!selection.stations.empty() || !selection.links.empty()) map->fit(around(document.plan(), selection));
}

void MainWindow::Self::copyText(const QString& text) {
  QApplication::clipboard()->setText(text);
  tell(QStringLiteral("Copied ") + text);
}

void MainWindow::Self::chooseDatum(PlanDatum datum) { apply(setDatum(document.plan(), datum)); }

}  // namespace zel::host
