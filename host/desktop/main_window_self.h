// The inside of the main window, shared by the files that make it up: building, edits, files, terrain.
#pragma once

#include <QTimer>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "analysis/link_analysis.h"
#include "desktop/host_settings.h"
#include "desktop/import_job.h"
#include "desktop/link_table.h"
#include "desktop/main_window.h"
#include "desktop/report_saver.h"
#include "desktop/shown_profile.h"
#include "desktop/shown_values.h"
#include "desktop/station_table.h"
#include "desktop/table_panel.h"
#include "desktop/terrain_watch.h"
#include "planning/plan_document.h"
#include "planning/recovery.h"
#include "zel/terrain_map.h"

class QAction;
class QActionGroup;
class QDockWidget;
class QKeySequence;
class QLabel;
class QMenu;
class QTabWidget;

namespace zel::host {

class NoticeLine;

struct MainWindow::Self {
  Self(MainWindow& window, ProfileControl& component, MainWindowServices services);
  ~Self();

  MainWindow& window;
  ProfileControl& component;
  MainWindowServices services;
  PlanDocument document;
  LinkAnalysis analysis;
  Recovery recovery;
  ShownProfile profile;
  TerrainWatch watch;

  // Widgets; the window owns them.
  NoticeLine* notice = nullptr;
  NoticeLine* emptyView = nullptr;
  QLabel* summary = nullptr;
  MapView* map = nullptr;
  QDockWidget* dock = nullptr;
  QTabWidget* tabs = nullptr;
  TablePanel* stationPanel = nullptr;
  TablePanel* linkPanel = nullptr;
  StationModel* stationModel = nullptr;
  LinkModel* linkModel = nullptr;
  QLabel* pointerLabel = nullptr;
  QLabel* workLabel = nullptr;
  QLabel* terrainLabel = nullptr;
  QLabel* unitsLabel = nullptr;
  QLabel* datumLabel = nullptr;
  QMenu* recentMenu = nullptr;
  std::map<std::string, QAction*> actions;
  std::vector<std::pair<QAction*, int>> sourceActions;

  // State.
  std::shared_ptr<const TerrainMap> terrain;
  std::vector<TerrainCoverage> rasters;  // of the terrain, once they are known
  bool problemsWanted = false;           // of files that were just named
  std::optional<LinkId> profileWanted;   // to be shown when the terrain is known
  struct Ground {
    Position place;  // WGS 84
    float heightM = 0;
  };
  std::optional<Ground> ground;  // under the place that was asked about last
  std::optional<std::pair<StationId, Position>> dragged;
  ShownUnits units;
  MapSelection selection;
  bool discarded = false;  // the user wants nothing of the open work kept
  bool tellingSelection = false;
  int tilesWaiting = 0;
  QTimer keepTimer;      // of the recovery copy
  QTimer summaryTimer;   // the line over the map, once for many results
  QTimer dragTimer;      // since the last move of a dragged station
  QTimer viewTimer;      // since other terrain or another plan came, which the map is fitted to
  bool started = false;  // the map has been given something to show
  std::unique_ptr<ImportJob> import;
  std::unique_ptr<ReportSaver> report;
  std::deque<std::string> listsToImport;  // when the one that is read is done
  std::string fileSeen;                   // the state of the plan's file when it was read or written
  enum class Fitted { kNot, kToFirst, kToAll } columnsFitted = Fitted::kNot;  // to the figures of the links
  std::map<std::string, std::string> settingsSeen;  // those that links are computed with

  // main_window.cpp
  void buildWidgets();
  void connectMap();
  void connectTables();
  void connectDocument();
  void planChanged(const PlanChange& change);
  void select(const MapSelection& wanted);  // in tables and map
  void pruneSelection();
  void fitColumnsOnce();
  void showSelectionInTables();
  void drawCrosses();
  void refuseProfile(LinkId link, const QString& problem);

  // main_window_words.cpp
  void showSummary();
  QString summaryText();
  QString stationSummary(const Station& station, const Position& place);
  void showFileState();
  void showWork();
  void showPointer(const PointerPlace& place);
  void tell(const QString& text);                     // in the status bar
  bool confirm(const std::function<void()>& action);  // tells what it throws; false then

  // main_window_actions.cpp
  void buildMenus();
  void buildToolBar();
  QAction* add(QMenu* menu, const char* name, const QString& text, const QString& tip,
               const QKeySequence& keys, std::function<void()> action);
  QAction* addSwitch(QMenu* menu, const char* name, const QString& text, const QString& tip, bool on,
                     std::function<void(bool)> action);
  void buildFileMenu();
  void buildEditMenu();
  void buildStationMenu();
  void buildLinkMenu();
  void buildViewMenu();
  void buildToolsMenu();
  void buildHelpMenu();
  void updateActions();
  void fillRecentMenu();
  QMenu* addChoices(QMenu* menu, const char* name, const QString& title,
                    const std::vector<std::pair<QString, std::string>>& choices,
                    const std::function<void(const std::string&)>& choose);
  void showChoices();
  void contextMenu(QPoint global, std::optional<StationId> station, std::optional<LinkId> link,
                   Position place);

  // main_window_edits.cpp
  bool apply(const PlanEdit& edit);
  void placeStation(Position position);
  void linkStations(StationId from, StationId to);
  void linkSelected();
  void addTypedStation(std::optional<Position> place);
  void editStation(StationId id);
  void removeSelected();
  void swapSelected();
  void askFrequency();
  void setFrequency(const std::vector<LinkId>& links, std::optional<double> frequencyMhz);
  void copy();
  void cut();
  void paste();
  void copyText(const QString& text);
  void selectAll();
  void findStation();
  void goTo(TablePanel& panel);  // with the keyboard, to a row of it
  void centreOnStation();
  void fitSelection();
  void chooseDatum(PlanDatum datum);

  // main_window_files.cpp
  bool mayReplaceWork();  // asks Save / Discard / Cancel
  void newPlan();
  void askOpen();
  void openDocument(Plan plan, const std::string& path, bool unsaved, const std::optional<PlanView>& view);
  bool save();
  bool saveAs();
  bool saveTo(const std::string& path);
  bool saveOverAnother();  // asks, since another program has changed the plan's file
  PlanFile fileNow() const;
  void keepSoon();
  void keepNow();
  bool offerLeftPlans(const std::string& only);
  bool keepsCopies() const { return !services.recoveryFolder.empty(); }
  void askImport();
  void startImport(const std::string& path);
  void takeImport(const std::string& path, ImportedStations result);
  void nextImport();
  void saveLinkTable();
  void askReport();
  void reportEnded(const QString& path, const QString& problem, const Report& made);
  void box(const QString& title, const QString& text);
  // A box that waits for no answer; a later one of its name takes its place.
  void notify(const char* name, const QString& title, const QString& text);

  // main_window_terrain.cpp
  void settingsChanged(bool terrainToo);
  void preferencesStored(const std::vector<std::string>& changed);
  void restorePlace();  // of the window and of what stands in it
  void storePlace();
  void openTerrain();
  void showTerrainState();
  void terrainKnown(const std::vector<std::string>& problems);
  void tellTerrainProblems(const std::vector<std::string>& problems);
  void showWhetherTerrainIsInView();
  void askTerrain();
  void takeRasters(const std::vector<std::string>& paths);
  void chooseSource(int code);
  void store(const char* section, const char* key, const std::string& value);
  void askHeightScale();
  void setMapOptions(const MapOptions& options);
  void showPreferences();
  void showProfilerSettings();
  void openGuide(const QString& anchor);
};

}  // namespace zel::host
