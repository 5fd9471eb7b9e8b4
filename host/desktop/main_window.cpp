#include "desktop/main_window.h"

#include <QAbstractButton>
#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QTabWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "analysis/link_computation.h"
#include "desktop/link_text.h"
#include "desktop/main_window_self.h"
#include "desktop/notice_line.h"
#include "zel/profile_control.h"

namespace zel::host {
namespace {

constexpr QSize kUsualSize(1280, 800);
constexpr QSize kSmallestSize(800, 600);
constexpr QSize kWindowFrame(20, 50);  // of the desktop, around the window: title bar and borders
constexpr int kUsualTables = 230;      // pixels, high
constexpr int kSummaryDelayMs = 50;
constexpr int kViewRestMs = 200;
constexpr int kDragRestMs = 300;  // without a move of the pointer, after which computing goes on

QLabel* statusLabel(QMainWindow& window, const char* name, const QString& tip, int stretch = 0) {
  auto* label = new QLabel(&window);
  label->setObjectName(QLatin1String(name));
  label->setAccessibleName(tip);
  label->setToolTip(tip);
  label->setTextFormat(Qt::PlainText);
  window.statusBar()->addPermanentWidget(label, stretch);
  return label;
}

}  // namespace

Plan samplePlan() {
  Plan plan;
  plan.stations[1] = {"North ridge", {36.40, -84.35}, 30};
  plan.stations[2] = {"South hill", {36.22, -84.12}, 30};
  plan.links[1] = {1, 2, std::nullopt};
  return plan;
}

// ---- Building ----

MainWindow::Self::Self(MainWindow& theWindow, ProfileControl& theComponent, MainWindowServices theServices)
    : window(theWindow),
      component(theComponent),
      services(std::move(theServices)),
      analysis(document.plan()),
      recovery(services.recoveryFolder),
      profile(component, document, &window) {}

MainWindow::Self::~Self() {
  import.reset();
  report.reset();
}

void MainWindow::Self::buildWidgets() {
  window.setObjectName(QStringLiteral("mainWindow"));
  // Docks that glide cost frames.
  window.setAnimated(false);
  const QSize screen = window.screen()->availableSize();
  window.setMinimumSize(kSmallestSize.boundedTo(screen));
  window.resize(kUsualSize.boundedTo(screen - kWindowFrame));
  window.setAcceptDrops(true);

  auto* middle = new QWidget(&window);
  auto* layout = new QVBoxLayout(middle);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  notice = makeSampleNotice([this] { confirm([this] { showPreferences(); }); },
                            [this] { openGuide(QStringLiteral("free-data.html")); }, middle);
  notice->hide();
  emptyView = makeEmptyViewNotice([this] { map->fitTerrain(); }, middle);
  emptyView->hide();
  summary = new QLabel(middle);
  summary->setObjectName(QStringLiteral("linkSummary"));
  summary->setAccessibleName(QStringLiteral("Chosen link"));
  summary->setToolTip(QStringLiteral("What the chosen link loses, and what stands in its way"));
  summary->setTextFormat(Qt::PlainText);
  summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
  summary->setWordWrap(true);
  summary->setMargin(4);
  map = new MapView(middle);
  map->setObjectName(QStringLiteral("map"));
  map->setAccessibleName(QStringLiteral("Map"));
  layout->addWidget(notice);
  layout->addWidget(emptyView);
  layout->addWidget(summary);
  layout->addWidget(map, 1);
  window.setCentralWidget(middle);

  stationModel = new StationModel(document.plan(), &window);
  linkModel = new LinkModel(document.plan(), analysis, &window);
  stationPanel = new TablePanel({QStringLiteral("stations"), QStringLiteral("Stations"),
                                 QStringLiteral("Show the stations with this in their names")},
                                stationModel, &window);
  linkPanel = new TablePanel({QStringLiteral("links"), QStringLiteral("Links"),
                              QStringLiteral("Show the links with this in their names or their verdict")},
                             linkModel, &window);
  // Seen without scrolling, also in a small window.
  linkPanel->table()->horizontalHeader()->moveSection(LinkModel::kVerdict, LinkModel::kDistance);
  tabs = new QTabWidget(&window);
  tabs->setObjectName(QStringLiteral("tables"));
  tabs->addTab(linkPanel, QStringLiteral("Links"));
  tabs->addTab(stationPanel, QStringLiteral("Stations"));
  dock = new QDockWidget(QStringLiteral("Tables"), &window);
  dock->setObjectName(QStringLiteral("tablesDock"));
  dock->setWidget(tabs);
  window.addDockWidget(Qt::BottomDockWidgetArea, dock);
  window.resizeDocks({dock}, {std::min(kUsualTables, window.height() / 4)}, Qt::Vertical);

  pointerLabel = statusLabel(window, "pointerPlace", QStringLiteral("Place and height under the pointer"));
  workLabel = statusLabel(window, "workProgress", QStringLiteral("What is being read and computed"));
  terrainLabel = statusLabel(window, "terrainSource", QStringLiteral("Terrain source"));
  unitsLabel = statusLabel(window, "displayUnits", QStringLiteral("Units"));
  datumLabel = statusLabel(window, "planDatum", QStringLiteral("Datum of the stations"));
}

void MainWindow::Self::connectMap() {
  map->setPlan(&document.plan(), &analysis);
  map->onPlaceStation = [this](Position position) { placeStation(position); };
  map->onMoveStation = [this](StationId id, Position to) {
    dragTimer.stop();
    analysis.pause(false);
    confirm([&] { document.apply(moveStation(document.plan(), id, to)); });
  };
  map->onDragStation = [this](StationId id, Position place) {
    analysis.pause(true);
    dragTimer.start();  // a drag that is given up ends without a word
    showPointer({place, std::nullopt});
    dragged = {id, place};
    confirm([this] { showSummary(); });
  };
  map->onDragEnded = [this] {
    dragTimer.stop();
    analysis.pause(false);
    dragged.reset();
    confirm([this] { showSummary(); });
  };
  map->onFrameChanged = [this] {
    if (!emptyView->isHidden()) showWhetherTerrainIsInView();
  };
  map->onStationActivated = [this](StationId id) { confirm([&] { editStation(id); }); };
  map->onLinkActivated = [this](LinkId id) { confirm([&] { window.showProfile(id); }); };
  map->onLinkStations = [this](StationId from, StationId to) { linkStations(from, to); };
  map->onSelectionChanged = [this](const MapSelection& chosen) { select(chosen); };
  map->onPointer = [this](const PointerPlace& place) { showPointer(place); };
  map->onPointerLeft = [this] { pointerLabel->clear(); };
  map->onContextMenu = [this](QPoint global, std::optional<StationId> station, std::optional<LinkId> link,
                              Position place) {
    confirm([&] { contextMenu(global, station, link, place); });
  };
  map->onLoading = [this](int waiting) {
    tilesWaiting = waiting;
    showWork();
  };
  map->onToolDone = [this] { actions.at("mnuMapSelect")->trigger(); };
}

void MainWindow::Self::connectTables() {
  stationModel->onEdited = [this](StationId id, const Station& station) {
    confirm([&] { document.apply(changeStation(document.plan(), id, station)); });
  };
  stationModel->onProblem = [this](const QString& problem) { tell(problem); };
  linkModel->onEdited = [this](LinkId id, std::optional<double> mhz) { setFrequency({id}, mhz); };
  linkModel->onProblem = stationModel->onProblem;
  stationPanel->onSelectionChanged = [this] {
    MapSelection chosen;
    for (const int row : stationPanel->selectedRows()) chosen.stations.push_back(stationModel->idAt(row));
    select(chosen);
  };
  linkPanel->onSelectionChanged = [this] {
    MapSelection chosen;
    for (const int row : linkPanel->selectedRows()) chosen.links.push_back(linkModel->idAt(row));
    select(chosen);
  };
  // A double click on a cell that can be changed begins to change it.
  linkPanel->onActivated = [this](int row, int column) {
    if (column != LinkModel::kFrequency) confirm([&] { window.showProfile(linkModel->idAt(row)); });
  };
  stationPanel->onContextMenu = [this](int row, QPoint global) {
    const StationId id = stationModel->idAt(row);
    contextMenu(global, id, std::nullopt, document.plan().stations.at(id).position);
  };
  linkPanel->onContextMenu = [this](int row, QPoint global) {
    contextMenu(global, std::nullopt, linkModel->idAt(row), {});
  };
  stationPanel->onActivated = [this](int row, int column) {
    if (column < 0) confirm([&] { editStation(stationModel->idAt(row)); });
  };
}

void MainWindow::Self::connectDocument() {
  document.onChanged([this](const PlanChange& change) { planChanged(change); });
  document.onFileStateChanged([this] { showFileState(); });
  analysis.onResult = [this](LinkId id) {
    linkModel->changed(id);
    map->resultsChanged();
    fitColumnsOnce();
    if (!selection.links.empty() && selection.links.front() == id) summaryTimer.start();
  };
  analysis.onProgress = [this] { showWork(); };
  profile.onShowing = [this] { keepNow(); };  // the component ends the process over what it refuses to carry
  profile.mayShow = [this] { return watch.known(); };
  watch.onKnown = [this](const std::vector<TerrainCoverage>& found,
                         const std::vector<std::string>& problems) {
    rasters = found;
    confirm([&] { terrainKnown(problems); });
  };
  watch.onHeight = [this](const Position& place, float heightM) {
    ground = {place, heightM};
    confirm([this] { showSummary(); });
  };
  watch.onOutdated = [this] { confirm([this] { settingsChanged(true); }); };
  profile.onProblem = [this](const std::string& problem) {
    tell(QStringLiteral("The profile was closed: ") + QString::fromStdString(problem));
  };
  dragTimer.setSingleShot(true);
  dragTimer.setInterval(kDragRestMs);
  connect(&dragTimer, &QTimer::timeout, &window, [this] { analysis.pause(false); });
  viewTimer.setSingleShot(true);
  viewTimer.setInterval(kViewRestMs);
  connect(&viewTimer, &QTimer::timeout, &window, [this] { showWhetherTerrainIsInView(); });
  summaryTimer.setSingleShot(true);
  summaryTimer.setInterval(kSummaryDelayMs);
  connect(&summaryTimer, &QTimer::timeout, &window, [this] { confirm([this] { showSummary(); }); });
  keepTimer.setSingleShot(true);
  connect(&keepTimer, &QTimer::timeout, &window, [this] { keepNow(); });
}

// ---- What the plan has become ----

void MainWindow::Self::planChanged(const PlanChange& change) {
  // Before anything is drawn or computed of the new positions.
  if (change.datum || change.everything) {
    component.let_StaDatum(document.plan().datum == PlanDatum::kNad27 ? 0 : 1);
    datumLabel->setText(document.plan().datum == PlanDatum::kNad27 ? QStringLiteral("NAD-27")
                                                                   : QStringLiteral("NAD-83 (WGS 84)"));
    showChoices();
  }
  if (change.everything) {
    stationModel->reset(document.plan().stations);
    // What another plan's links came to is not to be seen under this one's.
    analysis.forgetAll();
    linkModel->reset(document.plan().links);
    analysis.updateAll();
  } else {
    stationModel->update(document.plan().stations, change.stations);
    linkModel->update(document.plan().links, change.links);
    if (change.datum) {
      analysis.updateAll();
    } else {
      analysis.update(change.links);
    }
  }
  pruneSelection();
  map->planChanged();
  profile.planChanged();
  keepSoon();
  showFileState();
  showSummary();
  updateActions();
}

// ---- Selection ----

void MainWindow::Self::select(const MapSelection& wanted) {
  if (tellingSelection) return;
  tellingSelection = true;
  selection = wanted;
  map->setSelection(selection);
  showSelectionInTables();
  tellingSelection = false;
  if (!selection.links.empty()) analysis.first(selection.links.front());
  showSummary();
  updateActions();
}

void MainWindow::Self::showSelectionInTables() {
  const auto show = [](TablePanel& panel, const auto& model, const auto& ids) {
    std::vector<int> rows;
    for (const auto id : ids) {
      const int row = model.rowOf(id);
      if (row >= 0) rows.push_back(row);
    }
    // Told by the table itself, it is what the table shows.
    std::vector<int> shown = panel.selectedRows();
    std::sort(shown.begin(), shown.end());
    std::sort(rows.begin(), rows.end());
    if (shown == rows) return;
    panel.selectRows(rows);
    if (!rows.empty()) panel.showRow(rows.front());
  };
  show(*stationPanel, *stationModel, selection.stations);
  show(*linkPanel, *linkModel, selection.links);
}

void MainWindow::Self::pruneSelection() {
  const Plan& plan = document.plan();
  std::erase_if(selection.stations, [&](StationId id) { return !plan.stations.contains(id); });
  std::erase_if(selection.links, [&](LinkId id) { return !plan.links.contains(id); });
  tellingSelection = true;
  map->setSelection(selection);
  showSelectionInTables();
  tellingSelection = false;
}

// To the first figures of a plan, and to all that are seen when the last has come; widths that the user gives
// later stay.
void MainWindow::Self::fitColumnsOnce() {
  const Fitted now = analysis.waiting() == 0 ? Fitted::kToAll : Fitted::kToFirst;
  if (columnsFitted >= now) return;
  columnsFitted = now;
  linkPanel->fitColumns();
}

// ---- The window ----

MainWindow::MainWindow(ProfileControl& component, MainWindowServices services)
    : self_(std::make_unique<Self>(*this, component, std::move(services))) {
  Self& self = *self_;
  self.buildWidgets();
  self.buildMenus();
  self.buildToolBar();
  self.connectMap();
  self.connectTables();
  self.connectDocument();
  Plan empty;
  empty.datum = self.services.datum;
  self.document.open(std::move(empty), {});
  self.map->setOptions(storedMapOptions());
  self.settingsChanged(true);
  self.stationPanel->fitColumns();  // to their headings
  self.linkPanel->fitColumns();
  self.restorePlace();
  self.drawCrosses();
}

MainWindow::~MainWindow() {
  // However the program ends: only its user throws work away.
  self_->keepTimer.stop();
  if (!self_->discarded) self_->keepNow();
  // Before anything waits for its thread: all of them may be kept waiting by one that looks through a folder.
  self_->watch.end();
  self_->analysis.end();
  // The callbacks of the map and the tables lead into what is going.
  self_->map->onFrameChanged = {};
  self_->map->onLoading = {};
  self_->map->onPointer = {};
  self_->map->onPointerLeft = {};
  self_->map->onSelectionChanged = {};
  self_->stationPanel->onSelectionChanged = {};
  self_->linkPanel->onSelectionChanged = {};
  delete takeCentralWidget();
  delete self_->dock;
}

PlanDocument& MainWindow::document() { return self_->document; }
MapView& MainWindow::map() { return *self_->map; }
LinkAnalysis& MainWindow::analysis() { return self_->analysis; }

bool MainWindow::terrainKnown() const { return self_->watch.known(); }

bool MainWindow::showProfile(LinkId link) {
  constexpr int kMomentMs = 150;  // nobody notices
  Self& self = *self_;
  MapSelection chosen;
  chosen.links = {link};
  self.select(chosen);
  self.profileWanted.reset();
  if (!self.watch.waitUntilKnown(kMomentMs)) {
    self.profileWanted = link;
    self.tell(QStringLiteral("The terrain is still being looked through; the profile comes after that"));
    return false;
  }
  const std::string problem = self.profile.show(link);
  if (problem.empty()) return true;
  self.refuseProfile(link, QString::fromStdString(problem));
  return false;
}

// The profile window has a settings dialog of its own.
void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (!self_ || self_->linkModel == nullptr) return;
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    self_->settingsChanged(false);
    self_->watch.askOutdated();
  }
  // The component's windows may end the process, over ground that they refuse to carry.
  if (event->type() == QEvent::ActivationChange && !isActiveWindow() && self_->keepTimer.isActive())
    self_->keepNow();
  if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange) self_->drawCrosses();
}

// Those of the toolkit are dark on dark ground, too.
void MainWindow::Self::drawCrosses() {
  if (auto* cross = dock->findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_closebutton")))
    cross->setIcon(crossIcon(QPalette::WindowText));
}

void MainWindow::Self::refuseProfile(LinkId link, const QString& problem) {
  tell(QStringLiteral("The profile cannot be shown: ") + problem);
  const Plan& plan = document.plan();
  const LinkResult* result = analysis.find(link);
  const bool computed = result != nullptr && result->done;
  QString text = QStringLiteral("The profile cannot be shown: ") + problem;
  if (computed && result->noTerrain) {
    text =
        QStringLiteral("The profile cannot be shown: %1.\n\n%2").arg(noTerrainText(*result, units), problem);
  } else if (computed && result->error.empty() &&
             antennaProblem(plan.stations.at(plan.links.at(link).from),
                            plan.stations.at(plan.links.at(link).to))
                 .empty()) {
    text += QStringLiteral(
        "\n\nFrom station to station the ground is known; the plot reaches a little past both ends.");
  }
  notify("profileRefused", QStringLiteral("Show Profile"), text);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!self_->mayReplaceWork()) {
    event->ignore();
    return;
  }
  self_->storePlace();
  self_->import.reset();
  self_->recovery.discard();
  self_->discarded = true;
  self_->profile.close();
  self_->analysis.pause(true);
  event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); }))
    event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  std::vector<std::string> paths;
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
  event->acceptProposedAction();
  // After the drop has ended: a box would hold up the program that files are dragged from.
  QTimer::singleShot(0, this, [this, paths] { self_->confirm([&] { takeFiles(paths); }); });
}

}  // namespace zel::host
