// Menus and tool bar: every action with its name, keys and tip.
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTabWidget>
#include <QToolBar>
#include <array>

#include "desktop/link_text.h"
#include "desktop/main_window_self.h"
#include "zel/c_api.h"
#include "zel/settings.h"

namespace zel::host {

QAction* MainWindow::Self::add(QMenu* menu, const char* name, const QString& text, const QString& tip,
                               const QKeySequence& keys, std::function<void()> action) {
  QAction* item = menu->addAction(text);
  item->setObjectName(QLatin1String(name));
  item->setToolTip(tip);
  item->setStatusTip(tip);
  item->setShortcut(keys);
  connect(item, &QAction::triggered, &window, [this, action = std::move(action)] { confirm(action); });
  actions[name] = item;
  return item;
}

QAction* MainWindow::Self::addSwitch(QMenu* menu, const char* name, const QString& text, const QString& tip,
                                     bool on, std::function<void(bool)> action) {
  QAction* item = menu->addAction(text);
  item->setObjectName(QLatin1String(name));
  item->setToolTip(tip);
  item->setStatusTip(tip);
  item->setCheckable(true);
  item->setChecked(on);
  connect(item, &QAction::triggered, &window,
          [this, action = std::move(action)](bool now) { confirm([&] { action(now); }); });
  actions[name] = item;
  return item;
}

namespace {

QMenu* menuOf(QMainWindow& window, const char* name, const QString& title) {
  QMenu* menu = window.menuBar()->addMenu(title);
  menu->setObjectName(QLatin1String(name));
  menu->setToolTipsVisible(true);
  return menu;
}

}  // namespace

void MainWindow::Self::buildMenus() {
  buildFileMenu();
  buildEditMenu();
  buildStationMenu();
  buildLinkMenu();
  buildViewMenu();
  buildToolsMenu();
  buildHelpMenu();
}

void MainWindow::Self::buildFileMenu() {
  QMenu* menu = menuOf(window, "mnuFile", QStringLiteral("&File"));
  add(menu, "mnuFileNew", QStringLiteral("&New"), QStringLiteral("Begin an empty plan"), QKeySequence::New,
      [this] { newPlan(); });
  add(menu, "mnuFileOpen", QStringLiteral("&Open..."), QStringLiteral("Open a plan"), QKeySequence::Open,
      [this] { askOpen(); });
  recentMenu = menu->addMenu(QStringLiteral("Open &Recent"));
  recentMenu->setObjectName(QStringLiteral("mnuFileRecent"));
  add(menu, "mnuFileSave", QStringLiteral("&Save"), QStringLiteral("Save the plan"), QKeySequence::Save,
      [this] { save(); });
  add(menu, "mnuFileSaveAs", QStringLiteral("Save &As..."),
      QStringLiteral("Save the plan under another name"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S),
      [this] { saveAs(); });
  menu->addSeparator();
  add(menu, "mnuFileImport", QStringLiteral("&Import Stations..."),
      QStringLiteral("Add stations from CSV, GeoJSON, KML, KMZ or GPX"), QKeySequence(Qt::CTRL | Qt::Key_I),
      [this] { askImport(); });
  add(menu, "mnuFileExportLinks", QStringLiteral("&Export Link Table..."),
      QStringLiteral("Save the table of links, as it is shown, as CSV"), QKeySequence(Qt::CTRL | Qt::Key_E),
      [this] { saveLinkTable(); });
  add(menu, "mnuFileReport", QStringLiteral("Re&port..."),
      QStringLiteral("Save a PDF with a page for each link: map, profile and values"),
      QKeySequence(Qt::CTRL | Qt::Key_P), [this] { askReport(); });
  add(menu, "mnuFileAddTerrain", QStringLiteral("Add &Terrain..."),
      QStringLiteral("Use rasters of your own for the chosen source"),
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T), [this] { askTerrain(); });
  menu->addSeparator();
  add(menu, "mnuFileQuit", QStringLiteral("&Quit"), QStringLiteral("Close the window and end the program"),
      QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { window.close(); });
  fillRecentMenu();
}

void MainWindow::Self::buildEditMenu() {
  QMenu* menu = menuOf(window, "mnuEdit", QStringLiteral("&Edit"));
  add(menu, "mnuEditUndo", QStringLiteral("&Undo"), QStringLiteral("Take the last change back"),
      QKeySequence::Undo, [this] { confirm([this] { document.undo(); }); });
  add(menu, "mnuEditRedo", QStringLiteral("&Redo"), QStringLiteral("Make the change again"),
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), [this] { confirm([this] { document.redo(); }); });
  menu->addSeparator();
  add(menu, "mnuEditCut", QStringLiteral("Cu&t"), QStringLiteral("Copy the chosen stations and delete them"),
      QKeySequence::Cut, [this] { cut(); });
  add(menu, "mnuEditCopy", QStringLiteral("&Copy"),
      QStringLiteral("Copy the chosen stations as text, or the chosen rows of the links"), QKeySequence::Copy,
      [this] { copy(); });
  add(menu, "mnuEditPaste", QStringLiteral("&Paste"),
      QStringLiteral("Add stations from lines of text: latitude, longitude, height, name"),
      QKeySequence::Paste, [this] { paste(); });
  add(menu, "mnuEditDelete", QStringLiteral("&Delete"),
      QStringLiteral("Delete the chosen stations and links"), QKeySequence(Qt::Key_Delete),
      [this] { removeSelected(); });
  menu->addSeparator();
  add(menu, "mnuEditSelectAll", QStringLiteral("Select &All"),
      QStringLiteral("Choose all stations, or all links in their table"), QKeySequence::SelectAll,
      [this] { selectAll(); });
  add(menu, "mnuEditFind", QStringLiteral("&Find Station"), QStringLiteral("Show the stations of a name"),
      QKeySequence::Find, [this] { findStation(); });
}

void MainWindow::Self::buildStationMenu() {
  QMenu* menu = menuOf(window, "mnuStation", QStringLiteral("&Station"));
  add(menu, "mnuStationAdd", QStringLiteral("&Add Station..."), QStringLiteral("Type a station's position"),
      QKeySequence(Qt::CTRL | Qt::Key_T), [this] { addTypedStation(std::nullopt); });
  auto* tools = new QActionGroup(&window);
  const auto tool = [&](QMenu* where, const char* name, const QString& text, const QString& tip, Qt::Key key,
                        MapTool what) {
    QAction* item = add(where, name, text, tip, QKeySequence(Qt::CTRL | key), [this, what] {
      map->setTool(what);
      map->setFocus(Qt::ShortcutFocusReason);
    });
    item->setCheckable(true);
    tools->addAction(item);
    return item;
  };
  tool(menu, "mnuMapSelect", QStringLiteral("&Choose and Move"),
       QStringLiteral("Choose stations and links on the map, and drag stations"), Qt::Key_F2,
       MapTool::kSelect)
      ->setChecked(true);
  tool(menu, "mnuMapPlace", QStringLiteral("&Place on Map"), QStringLiteral("Each click places a station"),
       Qt::Key_F3, MapTool::kPlaceStation);
  menu->addSeparator();
  add(menu, "mnuStationEdit", QStringLiteral("&Edit Station..."),
      QStringLiteral("Name, position and antenna of the chosen station"),
      QKeySequence(Qt::ALT | Qt::Key_Return), [this] {
        if (!selection.stations.empty()) editStation(selection.stations.front());
      });
  add(menu, "mnuStationCentre", QStringLiteral("Ce&ntre on Station"),
      QStringLiteral("Show the chosen station in the middle of the map"), QKeySequence(Qt::CTRL | Qt::Key_J),
      [this] { centreOnStation(); });

  QMenu* links = menuOf(window, "mnuLink", QStringLiteral("&Link"));
  tool(links, "mnuMapLink", QStringLiteral("Link on &Map"),
       QStringLiteral("Click on one station and then on another to link them"), Qt::Key_F4, MapTool::kLink);
}

void MainWindow::Self::buildLinkMenu() {
  auto* menu = window.menuBar()->findChild<QMenu*>(QStringLiteral("mnuLink"));
  add(menu, "mnuLinkStations", QStringLiteral("&Link Chosen Stations"),
      QStringLiteral("Link the two chosen stations, from the first to the second"),
      QKeySequence(Qt::CTRL | Qt::Key_L), [this] { linkSelected(); });
  menu->addSeparator();
  add(menu, "mnuLinkProfile", QStringLiteral("Show &Profile"),
      QStringLiteral("Show the chosen link's profile"), QKeySequence(Qt::Key_F5), [this] {
        if (!selection.links.empty()) window.showProfile(selection.links.front());
      });
  add(menu, "mnuLinkSwap", QStringLiteral("&Swap Ends"),
      QStringLiteral("Let the chosen links begin where they end"), QKeySequence(Qt::CTRL | Qt::Key_R),
      [this] { swapSelected(); });
  add(menu, "mnuLinkFrequency", QStringLiteral("&Frequency..."),
      QStringLiteral("Give the chosen links a frequency of their own"),
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F), [this] { askFrequency(); });
}

void MainWindow::Self::buildViewMenu() {
  QMenu* menu = menuOf(window, "mnuView", QStringLiteral("&View"));
  constexpr double kStep = 0.5;  // levels of the map: a factor of 1.4
  add(menu, "mnuViewZoomIn", QStringLiteral("Zoom &In"), QStringLiteral("Show the map larger"),
      QKeySequence(Qt::CTRL | Qt::Key_Plus), [this] { map->zoomBy(kStep); })
      ->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
  add(menu, "mnuViewZoomOut", QStringLiteral("Zoom &Out"), QStringLiteral("Show more of the map"),
      QKeySequence(Qt::CTRL | Qt::Key_Minus), [this] { map->zoomBy(-kStep); });
  add(menu, "mnuViewFitPlan", QStringLiteral("Fit &Plan"), QStringLiteral("Show all stations"),
      QKeySequence(Qt::CTRL | Qt::Key_0), [this] { map->fitPlan(); });
  add(menu, "mnuViewFitTerrain", QStringLiteral("Fit &Terrain"),
      QStringLiteral("Show all terrain of the source"), QKeySequence(Qt::CTRL | Qt::Key_9),
      [this] { map->fitTerrain(); });
  add(menu, "mnuViewFitSelection", QStringLiteral("&Fit Selection"),
      QStringLiteral("Show the chosen stations and links"), QKeySequence(Qt::CTRL | Qt::Key_8),
      [this] { fitSelection(); });
  menu->addSeparator();
  struct Switch {
    const char* name;
    const char* text;
    const char* tip;
    bool MapOptions::*value;
  };
  constexpr std::array kSwitches{
      Switch{"mnuViewRelief", "&Relief", "Shade the slopes", &MapOptions::relief},
      Switch{"mnuViewGraticule", "&Graticule", "Lines of latitude and longitude", &MapOptions::graticule},
      Switch{"mnuViewLegend", "&Legend", "Heights of the colours", &MapOptions::legend},
      Switch{"mnuViewScaleBar", "Scal&e Bar", "A bar of a round length", &MapOptions::scaleBar},
      Switch{"mnuViewNames", "Station &Names", "Names beside the stations", &MapOptions::names},
      Switch{"mnuViewCoverage", "&Coverage", "Outlines of the rasters", &MapOptions::coverage}};
  for (const Switch& each : kSwitches)
    addSwitch(menu, each.name, QLatin1String(each.text), QLatin1String(each.tip), false,
              [this, value = each.value](bool on) {
                MapOptions options = map->options();
                options.*value = on;
                setMapOptions(options);
              });
  QMenu* scale = menu->addMenu(QStringLiteral("&Height Scale"));
  scale->setObjectName(QStringLiteral("mnuViewHeightScale"));
  auto* scales = new QActionGroup(&window);
  scales->addAction(addSwitch(scale, "mnuViewScaleFollows", QStringLiteral("&Follows the Map"),
                              QStringLiteral("The colours run over the heights that are seen"), true,
                              [this](bool) {
                                MapOptions options = map->options();
                                options.heightScale.reset();
                                setMapOptions(options);
                              }));
  scales->addAction(addSwitch(scale, "mnuViewScaleFixed", QStringLiteral("F&ixed..."),
                              QStringLiteral("The colours run over heights that you choose"), false,
                              [this](bool) { askHeightScale(); }));
  menu->addSeparator();
  QMenu* sources = menu->addMenu(QStringLiteral("Terrain So&urce"));
  sources->setObjectName(QStringLiteral("mnuViewSource"));
  auto* sourceGroup = new QActionGroup(&window);
  confirm([&] {
    for (const TerrainSource& source : terrainSources()) {
      const std::string name = "mnuViewSource" + std::to_string(source.code);
      QAction* item =
          addSwitch(sources, name.c_str(),
                    QStringLiteral("&%1  %2").arg(source.code).arg(QString::fromStdString(source.name)),
                    QStringLiteral("Show and compute with the terrain of this source"), false,
                    [this, code = source.code](bool) { chooseSource(code); });
      sourceGroup->addAction(item);
      sourceActions.emplace_back(item, source.code);
    }
  });
  addChoices(menu, "mnuViewUnits", QStringLiteral("Unit&s"),
             {{QStringLiteral("&Metres and Kilometres"), "0"}, {QStringLiteral("&Feet and Miles"), "1"}},
             [this](const std::string& value) {
               store("Settings", "DispUnits", value);
               settingsChanged(false);
               profile.refresh();
             });
  addChoices(
      menu, "mnuViewCoordinates", QStringLiteral("Coor&dinates"),
      {{QStringLiteral("Degrees, &Minutes, Seconds"), "DMS"}, {QStringLiteral("&Decimal Degrees"), "DD"}},
      [this](const std::string& value) {
        store("Settings", "CoordFormat", value);
        settingsChanged(false);
        profile.refresh();
      });
  addChoices(menu, "mnuViewDatum", QStringLiteral("D&atum"),
             {{QStringLiteral("NAD-&83 (WGS 84)"), "83"}, {QStringLiteral("NAD-&27"), "27"}},
             [this](const std::string& value) {
               chooseDatum(value == "27" ? PlanDatum::kNad27 : PlanDatum::kNad83);
               showChoices();
             });
  menu->addSeparator();
  QAction* tables = dock->toggleViewAction();
  tables->setObjectName(QStringLiteral("mnuViewTables"));
  tables->setText(QStringLiteral("Ta&bles"));
  tables->setToolTip(QStringLiteral("Tables of stations and links"));
  menu->addAction(tables);
  add(menu, "mnuViewGoMap", QStringLiteral("Go to &Map"), QStringLiteral("Give the keyboard to the map"),
      QKeySequence(Qt::Key_F6), [this] { map->setFocus(Qt::ShortcutFocusReason); });
  add(menu, "mnuViewGoStations", QStringLiteral("Go to Stations"),
      QStringLiteral("Give the keyboard to the table of stations"), QKeySequence(Qt::Key_F7),
      [this] { goTo(*stationPanel); });
  add(menu, "mnuViewGoLinks", QStringLiteral("Go to Links"),
      QStringLiteral("Give the keyboard to the table of links"), QKeySequence(Qt::Key_F8),
      [this] { goTo(*linkPanel); });
}

QMenu* MainWindow::Self::addChoices(QMenu* menu, const char* name, const QString& title,
                                    const std::vector<std::pair<QString, std::string>>& choices,
                                    const std::function<void(const std::string&)>& choose) {
  QMenu* submenu = menu->addMenu(title);
  submenu->setObjectName(QLatin1String(name));
  auto* group = new QActionGroup(&window);
  for (const auto& choice : choices) {
    const std::string full = std::string(name) + choice.second;
    QString tip = choice.first;
    group->addAction(addSwitch(submenu, full.c_str(), choice.first, tip.remove(u'&'), false,
                               [choose, value = choice.second](bool) { choose(value); }));
  }
  return submenu;
}

// The checks of the actions as settings, map and plan are.
void MainWindow::Self::showChoices() {
  const MapOptions& options = map->options();
  const auto check = [this](const char* name, bool on) { actions.at(name)->setChecked(on); };
  check("mnuViewRelief", options.relief);
  check("mnuViewGraticule", options.graticule);
  check("mnuViewLegend", options.legend);
  check("mnuViewScaleBar", options.scaleBar);
  check("mnuViewNames", options.names);
  check("mnuViewCoverage", options.coverage);
  check(options.heightScale ? "mnuViewScaleFixed" : "mnuViewScaleFollows", true);
  check(units.imperial ? "mnuViewUnits1" : "mnuViewUnits0", true);
  check(units.angles == AngleFormat::kDecimalDegrees ? "mnuViewCoordinatesDD" : "mnuViewCoordinatesDMS",
        true);
  check(document.plan().datum == PlanDatum::kNad27 ? "mnuViewDatum27" : "mnuViewDatum83", true);
  const int source = chosenSource();
  for (const auto& [action, code] : sourceActions)
    if (code == source) action->setChecked(true);
}

void MainWindow::Self::buildToolsMenu() {
  QMenu* menu = menuOf(window, "mnuTools", QStringLiteral("&Tools"));
  add(menu, "mnuToolsProfiler", QStringLiteral("Profiler &Settings..."),
      QStringLiteral("Sampling, source, heights, frequency and k of the profiler"),
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Comma), [this] { showProfilerSettings(); });
  add(menu, "mnuToolsPreferences", QStringLiteral("&Preferences..."),
      QStringLiteral("Terrain sources, radio model, colours and helper programs"),
      QKeySequence(Qt::CTRL | Qt::Key_Comma), [this] { showPreferences(); });
}

void MainWindow::Self::buildHelpMenu() {
  QMenu* menu = menuOf(window, "mnuHelp", QStringLiteral("&Help"));
  add(menu, "mnuHelpGuide", QStringLiteral("&User's Guide"), QStringLiteral("Open the guide"),
      QKeySequence::HelpContents, [this] { openGuide({}); });
  add(menu, "mnuHelpTerrain", QStringLiteral("Adding &Terrain..."),
      QStringLiteral("Where free terrain data comes from, and how to lay it in a folder"), {},
      [this] { openGuide(QStringLiteral("free-data.html")); });
  menu->addSeparator();
  add(menu, "mnuHelpAbout", QStringLiteral("&About"), QStringLiteral("Show the version"), {}, [this] {
    QMessageBox about(QMessageBox::NoIcon, QStringLiteral("About Terrain Profiler"),
                      QStringLiteral("Terrain Profiler %1\n\nThe ground between two radio stations, and what "
                                     "it does to the signal.")
                          .arg(QLatin1String(zelProfilerVersion())),
                      QMessageBox::Ok, &window);
    about.setObjectName(QStringLiteral("about"));
    about.exec();
  });
}

void MainWindow::Self::buildToolBar() {
  auto* bar = new QToolBar(QStringLiteral("Tools"), &window);
  bar->setObjectName(QStringLiteral("toolBar"));
  bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  bar->setMovable(false);
  bar->toggleViewAction()->setObjectName(QStringLiteral("mnuViewToolBar"));
  window.addToolBar(bar);
  window.setContextMenuPolicy(Qt::NoContextMenu);
  const auto put = [&](const char* name, const QString& text) {
    QAction* action = actions.at(name);
    action->setIconText(text);
    bar->addAction(action);
  };
  put("mnuMapSelect", QStringLiteral("Choose"));
  put("mnuMapPlace", QStringLiteral("Place Station"));
  put("mnuMapLink", QStringLiteral("Link"));
  bar->addSeparator();
  put("mnuLinkProfile", QStringLiteral("Profile"));
  put("mnuLinkSwap", QStringLiteral("Swap"));
  bar->addSeparator();
  put("mnuEditUndo", QStringLiteral("Undo"));
  put("mnuEditRedo", QStringLiteral("Redo"));
  bar->addSeparator();
  put("mnuViewZoomIn", QStringLiteral("Zoom In"));
  put("mnuViewZoomOut", QStringLiteral("Zoom Out"));
  put("mnuViewFitPlan", QStringLiteral("Fit Plan"));
  put("mnuViewFitTerrain", QStringLiteral("Fit Terrain"));
}

void MainWindow::Self::updateActions() {
  const auto text = [](const QString& verb, const std::string& what) {
    QString name = QString::fromStdString(what);
    name.replace(u'&', QLatin1String("&&"));
    return what.empty() ? verb : verb + u' ' + name;
  };
  const auto enable = [this](const char* name, bool on) { actions.at(name)->setEnabled(on); };
  actions.at("mnuEditUndo")->setText(text(QStringLiteral("&Undo"), document.undoText()));
  actions.at("mnuEditUndo")->setIconText(QStringLiteral("Undo"));
  actions.at("mnuEditRedo")->setText(text(QStringLiteral("&Redo"), document.redoText()));
  actions.at("mnuEditRedo")->setIconText(QStringLiteral("Redo"));
  const bool stations = !selection.stations.empty(), links = !selection.links.empty();
  enable("mnuEditUndo", document.canUndo());
  enable("mnuEditRedo", document.canRedo());
  enable("mnuEditCut", stations);
  enable("mnuEditCopy", stations || links);
  enable("mnuEditDelete", stations || links);
  enable("mnuStationEdit", selection.stations.size() == 1);
  enable("mnuStationCentre", stations);
  enable("mnuLinkStations", selection.stations.size() == 2);
  enable("mnuLinkProfile", links);
  enable("mnuLinkSwap", links);
  enable("mnuLinkFrequency", links);
  enable("mnuViewFitSelection", stations || links);
  enable("mnuFileExportLinks", !document.plan().links.empty());
  enable("mnuFileReport", !document.plan().links.empty());
}

void MainWindow::Self::contextMenu(QPoint global, std::optional<StationId> station,
                                   std::optional<LinkId> link, Position place) {
  QMenu menu(&window);
  menu.setObjectName(QStringLiteral("mapMenu"));
  const auto addCopy = [&](const char* name, const QString& title, const QString& text) {
    QAction* item = menu.addAction(title);
    item->setObjectName(QLatin1String(name));
    connect(item, &QAction::triggered, &window, [this, text] { copyText(text); });
  };
  if (station) {
    for (const char* name :
         {"mnuStationEdit", "mnuStationCentre", "mnuLinkStations", "mnuEditCopy", "mnuEditDelete"})
      menu.addAction(actions.at(name));
    addCopy("mapMenuCopyPosition", QStringLiteral("Copy &Position"),
            shownPosition(document.plan().stations.at(*station).position, units));
  } else if (link) {
    for (const char* name : {"mnuLinkProfile", "mnuLinkSwap", "mnuLinkFrequency", "mnuEditDelete"})
      menu.addAction(actions.at(name));
    addCopy("mapMenuCopySummary", QStringLiteral("Copy &Line over the Map"),
            linkSummary(document.plan(), document.plan().links.at(*link), analysis.find(*link), units));
  } else {
    addCopy("mapMenuCopyPosition", QStringLiteral("Copy &Position"), shownPosition(place, units));
    QAction* here = menu.addAction(QStringLiteral("&Add Station Here..."));
    here->setObjectName(QStringLiteral("mapMenuAddHere"));
    connect(here, &QAction::triggered, &window, [this, place] { addTypedStation(place); });
    for (const char* name : {"mnuEditPaste", "mnuViewFitPlan", "mnuViewFitTerrain"})
      menu.addAction(actions.at(name));
  }
  menu.exec(global);
}

}  // namespace zel::host
