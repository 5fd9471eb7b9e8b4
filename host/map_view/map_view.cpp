#include "map_view/map_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QInputDevice>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QStyleHints>
#include <QTimer>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "map_view/ground_painter.h"
#include "map_view/map_overlays.h"
#include "map_view/map_text.h"
#include "map_view/plan_painter.h"
#include "map_view/plan_places.h"
#include "map_view/terrain_reader.h"
#include "map_view/tile_service.h"

namespace zel::host {

namespace {

constexpr int kRestMs = 200;      // without movement, before the map counts as at rest
constexpr int kResultsMs = 100;   // between two pictures for results alone
constexpr qint64 kSmoothMs = 16;  // for the ground: where it takes longer, a moving map is drawn coarser
constexpr double kLevelsPerNotch = 0.5;
constexpr double kAnglePerNotch = 120;      // eighths of a degree, as QWheelEvent counts
constexpr double kPixelsPerLevel = 160;     // of a touchpad, with Ctrl
constexpr double kKeyPan = 100;             // pixels
constexpr double kKeyMove = 1;              // pixels, of a station
constexpr double kFitMargin = 48;           // pixels around what is shown whole
constexpr double kLegendRoom = 100;         // pixels at the right
constexpr double kScaleSlack = 0.02;        // of the colour scale: heights may lie outside by this much
constexpr double kScaleLeastFilled = 0.55;  // of the colour scale: heights fill less, and it is made narrower
constexpr QSize kSmallest(300, 200);

MapPoint pointOf(QPointF at) { return {at.x(), at.y()}; }

// The smallest extent with all the longitudes: the widest gap between two is left out.
TerrainExtent extentOf(const std::vector<StationPlace>& stations) {
  TerrainExtent extent{90, 0, -90, 0};
  std::vector<double> longitudes;
  for (const StationPlace& place : stations) {
    extent.south = std::min(extent.south, place.map.latitude);
    extent.north = std::max(extent.north, place.map.latitude);
    longitudes.push_back(place.map.longitude);
  }
  std::sort(longitudes.begin(), longitudes.end());
  extent.west = longitudes.front();
  extent.east = longitudes.back();
  double widest = 360 - (extent.east - extent.west);
  for (std::size_t i = 1; i < longitudes.size(); ++i) {
    const double gap = longitudes[i] - longitudes[i - 1];
    if (gap <= widest) continue;
    widest = gap;
    extent.west = longitudes[i];
    extent.east = longitudes[i - 1] + 360;
  }
  return extent;
}

TerrainExtent extentOf(const std::vector<TerrainCoverage>& rasters) {
  TerrainExtent all = rasters.front().extent;
  for (const TerrainCoverage& raster : rasters) {
    TerrainExtent one = raster.extent;
    const double turn = 360 * std::round((all.west + all.east - one.west - one.east) / 720);
    one.west += turn;
    one.east += turn;
    all = {std::min(all.south, one.south), std::min(all.west, one.west), std::max(all.north, one.north),
           std::max(all.east, one.east)};
  }
  all.east = std::min(all.east, all.west + 360);
  return all;
}

// Whether a wheel's event comes from fingers on a touchpad. Some systems give pixels for the notches of a
// mouse's wheel, too.
bool fromTouchpad(const QWheelEvent& event) {
  if (event.pixelDelta().isNull()) return false;
  const bool touchpad =
      event.device() != nullptr && event.device()->type() == QInputDevice::DeviceType::TouchPad;
  const QPoint angle = event.angleDelta();
  const int notch = static_cast<int>(kAnglePerNotch);
  return touchpad || event.phase() != Qt::NoScrollPhase || angle.x() % notch != 0 || angle.y() % notch != 0;
}

template <typename Id>
void toggle(std::vector<Id>& ids, Id id) {
  if (std::erase(ids, id) == 0) ids.push_back(id);
}

template <typename Id, typename Places>
void dropGone(std::vector<Id>& ids, const Places& places) {
  std::erase_if(ids, [&places](Id id) { return !places(id); });
}

}  // namespace

struct MapView::Self {
  explicit Self(MapView& owner);

  // --- What is shown ---
  void invalidate();
  void frameChanged(bool byUser = true);
  void atRest();
  void tileCame();
  void followHeights();
  void takeOptions();
  void coverageCame(const std::vector<TerrainCoverage>& found);
  void showFitted(const TerrainExtent& extent);
  void tellLoading();
  void paint(QPainter& painter);
  void paintTerrain(QPainter& painter, const std::vector<PlacedTile>& placed);
  void paintPanels(QPainter& painter);
  QString terrainLine() const;

  // --- Pointer and keyboard ---
  enum class Drag { kNone, kPending, kPan, kStation, kRectangle, kBand };
  struct Press {
    QPointF at, last;
    Qt::MouseButton button = Qt::NoButton;
    Qt::KeyboardModifiers modifiers;
    std::optional<StationId> station;
    std::optional<LinkId> link;
    MapPoint stationAt;  // where its station was on the map
  };
  void press(QPointF at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
  void beginDrag();
  void dragTo(QPointF at);
  void endDrag(QPointF at);
  void click(MapPoint at, Qt::KeyboardModifiers modifiers);
  void activate(MapPoint at);
  void pickForLink(std::optional<StationId> station);
  void choose(std::optional<StationId> station, std::optional<LinkId> link, bool add);
  void chooseRectangle(const QRectF& rectangle);
  void tellSelection();
  bool escape();
  void dropDrag();
  void tellDragEnded();
  bool moveByKey(int key, double pixels);
  void hover();
  Qt::CursorShape cursorShape() const;
  void showCursor();
  void tellPointer();
  void heightCame(Position position, float height);
  void contextMenu(QPoint global, MapPoint at);
  QString toolTipAt(MapPoint at);
  MapPoint middle() const { return {frame.width() / 2, frame.height() / 2}; }
  MapPoint stationPixel(StationId id) { return frame.pixelOf(places.station(id)->map); }

  MapView& view;
  MapFrame frame;
  MapOptions options;
  MapTool tool = MapTool::kSelect;
  MapSelection selection;
  std::shared_ptr<const TerrainMap> terrain;
  std::vector<TerrainCoverage> coverage;
  std::vector<WorldArea> areas;  // of the same
  bool coverageKnown = false;

  PlanPlaces places;
  PlanPainter planPainter;
  MapText text;
  TileService tiles;
  TerrainReader reader;

  std::optional<TerrainExtent> fitted;  // shown whole, also in another size, until the map is moved
  bool fitTerrainWanted = false;        // as soon as it is known what there is
  bool stale = true;                    // not painted since something changed
  bool moving = false;
  bool slow = false;        // the ground takes too long to be drawn smoothly while the map moves
  bool scaleKnown = false;  // the colour scale was made for this terrain
  QTimer rest, results;
  int toldLoading = 0;
  std::vector<TileId> seenTiles;
  QRectF legendPlace, barPlace;

  std::optional<QPointF> pointer;
  Drag drag = Drag::kNone;
  Press pressed;
  std::optional<DraggedStation> dragged;
  std::optional<StationId> linkStart, hoveredStation;
  std::optional<LinkId> hoveredLink;
  std::optional<Position> heightAsked;  // WGS 84
  bool crosshair = false;
  bool dragTold = false;  // onDragStation was called, and onDragEnded not yet
};

MapView::Self::Self(MapView& owner) : view(owner) {
  rest.setSingleShot(true);
  rest.setInterval(kRestMs);
  QObject::connect(&rest, &QTimer::timeout, &view, [this] { atRest(); });
  results.setSingleShot(true);
  results.setInterval(kResultsMs);
  QObject::connect(&results, &QTimer::timeout, &view, [this] { invalidate(); });
  tiles.onTile = [this] { tileCame(); };
  reader.onCoverage = [this](const std::vector<TerrainCoverage>& found) { coverageCame(found); };
  reader.onHeight = [this](Position position, float height) { heightCame(position, height); };
}

// --- What is shown ---

void MapView::Self::invalidate() {
  stale = true;
  view.update();
}

void MapView::Self::frameChanged(bool byUser) {
  if (byUser) {
    fitted.reset();
    fitTerrainWanted = false;
  }
  moving = true;
  rest.start();
  invalidate();
  if (dragged && pointer) dragTo(*pointer);
  if (drag == Drag::kNone) hover();
  tellPointer();
  if (view.onFrameChanged) view.onFrameChanged();
}

void MapView::Self::atRest() {
  if (drag != Drag::kNone && drag != Drag::kPending) {
    rest.start();
    return;
  }
  moving = false;
  followHeights();
  invalidate();
}

void MapView::Self::tileCame() {
  if (!scaleKnown) followHeights();
  if (!rest.isActive()) rest.start();  // the heights may ask for other colours
  invalidate();
  tellLoading();
}

void MapView::Self::tellLoading() {
  const int waiting = tiles.waiting();
  if (std::exchange(toldLoading, waiting) != waiting && view.onLoading) view.onLoading(waiting);
}

// Not while the map moves: colours that change under way are no help.
void MapView::Self::followHeights() {
  if (options.heightScale) return;
  const HeightRange range = tiles.range(seenTiles);
  if (!range.any) return;
  const HeightScale shown = tiles.scale();
  const double span = shown.highest - shown.lowest;
  const bool beyond =
      range.lowest < shown.lowest - kScaleSlack * span || range.highest > shown.highest + kScaleSlack * span;
  const bool narrow = double{range.highest} - double{range.lowest} < kScaleLeastFilled * span;
  if (scaleKnown && !beyond && !narrow) return;
  tiles.setScale(niceScale(range.lowest, range.highest, options.imperial));
  scaleKnown = scaleKnown || tiles.waiting() == 0;
}

void MapView::Self::takeOptions() {
  tiles.setRelief(options.relief);
  if (options.heightScale) {
    tiles.setScale(*options.heightScale);
  } else {
    scaleKnown = false;
    followHeights();
  }
  invalidate();
}

void MapView::Self::coverageCame(const std::vector<TerrainCoverage>& found) {
  coverage = found;
  coverageKnown = true;
  areas.clear();
  areas.reserve(coverage.size());
  for (const TerrainCoverage& raster : coverage) areas.push_back(worldArea(raster.extent));
  if (fitTerrainWanted && !coverage.empty()) showFitted(extentOf(coverage));
  fitTerrainWanted = false;
  invalidate();
}

void MapView::Self::showFitted(const TerrainExtent& extent) {
  fitTerrainWanted = false;
  fitted = extent;
  // Beside the legend, where there is room for both.
  const double legend =
      options.legend && terrain != nullptr && frame.width() > 4 * kLegendRoom ? kLegendRoom : 0.0;
  MapFrame beside(frame.width() - legend, frame.height());
  beside.fit(extent, std::min(kFitMargin, 0.12 * std::min(frame.width(), frame.height())));
  frame.setLevel(beside.level());
  frame.setCentre(beside.centre());
  frame.panBy(-legend / 2, 0);
  frameChanged(false);
}

QString MapView::Self::terrainLine() const {
  if (terrain == nullptr) return QStringLiteral("No terrain");
  return terrain->source().bundledSample ? QStringLiteral("Bundled sample terrain") : QString();
}

void MapView::Self::paint(QPainter& painter) {
  const double pixelRatio = painter.device()->devicePixelRatioF();
  text.begin(view.font(), pixelRatio);
  painter.setFont(view.font());
  const std::vector<PlacedTile> placed =
      terrain == nullptr ? std::vector<PlacedTile>() : tilesOf(frame, pixelRatio);
  seenTiles = tileIds(placed);
  tiles.keepAsked(seenTiles);
  paintTerrain(painter, placed);
  paintCoverageMarks(painter, frame, areas);
  if (options.coverage) paintCoverage(painter, frame, coverage);
  if (options.graticule) {
    paintGraticule(painter, text, frame, options.angles, {legendPlace, barPlace});
  }
  PlanScene scene{frame,   places,        selection,        hoveredStation, hoveredLink,
                  dragged, options.names, options.imperial, moving,         {}};
  for (const QRectF& panel : {legendPlace, barPlace}) {
    if (!panel.isEmpty()) scene.taken.push_back({panel.left(), panel.top(), panel.width(), panel.height()});
  }
  planPainter.paint(painter, text, scene);
  const StationPlace* start = linkStart ? places.station(*linkStart) : nullptr;
  const bool byKeys = crosshair && view.hasFocus();
  if (start != nullptr && (pointer || byKeys)) {
    const MapPoint end = byKeys ? middle() : pointOf(*pointer);
    planPainter.paintRubberBand(painter, text, frame, start->map, frame.positionOf(end), options.imperial);
  }
  if (drag == Drag::kRectangle) {
    painter.setPen(QPen(QColor(20, 26, 32), 1, Qt::DashLine));
    painter.setBrush(QColor(255, 255, 255, 70));
    painter.drawRect(QRectF(pressed.at, pressed.last).normalized());
    painter.setBrush(Qt::NoBrush);
  }
  paintPanels(painter);
  if (byKeys) {
    paintCrosshair(painter, frame);
    painter.setPen(QPen(view.palette().color(QPalette::Highlight), 2));
    painter.drawRect(QRectF(view.rect()).adjusted(1, 1, -1, -1));
  }
  stale = false;
  tellLoading();
}

void MapView::Self::paintTerrain(QPainter& painter, const std::vector<PlacedTile>& placed) {
  const bool smooth = !moving || !slow;
  QElapsedTimer clock;
  clock.start();
  paintGround(painter, frame, painter.device()->devicePixelRatioF(), tiles, placed, smooth);
  if (smooth) slow = clock.elapsed() > kSmoothMs;
}

void MapView::Self::paintPanels(QPainter& painter) {
  const QRectF legendBefore = legendPlace, barBefore = barPlace;
  legendPlace = {};
  if (options.legend && terrain != nullptr) {
    const TileContents contents = tiles.contents(seenTiles);
    legendPlace = paintLegend(painter, frame,
                              {tiles.scale(), options.imperial, contents.range.any, contents.voids,
                               contents.outside, planPainter.seenVerdicts()});
  }
  barPlace = paintScaleBar(painter, frame, options.scaleBar, options.imperial, terrainLine());
  // The names keep clear of the panels, the next time.
  if (legendPlace != legendBefore || barPlace != barBefore) view.update();
}

// --- Pointer and keyboard ---

void MapView::Self::press(QPointF at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  pressed = {at, at, button, modifiers, stationAt(places, frame, pointOf(at)), {}, {}};
  if (pressed.station) {
    pressed.stationAt = stationPixel(*pressed.station);
  } else {
    pressed.link = linkAt(places, frame, pointOf(at));
  }
  drag = Drag::kPending;
}

void MapView::Self::beginDrag() {
  const bool left = pressed.button == Qt::LeftButton;
  if (left && tool == MapTool::kSelect && pressed.station) {
    drag = Drag::kStation;
    if (std::find(selection.stations.begin(), selection.stations.end(), *pressed.station) ==
        selection.stations.end()) {
      choose(pressed.station, {}, false);
    }
  } else if (left && tool == MapTool::kLink && pressed.station) {
    drag = Drag::kBand;
    linkStart = pressed.station;
  } else if (left && tool == MapTool::kSelect && pressed.modifiers.testFlag(Qt::ShiftModifier)) {
    drag = Drag::kRectangle;
  } else {
    drag = Drag::kPan;
  }
  showCursor();
}

void MapView::Self::dragTo(QPointF at) {
  const QPointF moved = at - std::exchange(pressed.last, at);
  if (drag == Drag::kPan) {
    frame.panBy(moved.x(), moved.y());
    frameChanged();
    return;
  }
  if (drag == Drag::kStation) {
    const QPointF way = at - pressed.at;
    const Position to = frame.positionOf({pressed.stationAt.x + way.x(), pressed.stationAt.y + way.y()});
    dragged = DraggedStation{*pressed.station, to};
    dragTold = true;
    if (view.onDragStation) view.onDragStation(dragged->id, places.inPlan(to));
  }
  invalidate();
}

void MapView::Self::endDrag(QPointF at) {
  const Drag ended = std::exchange(drag, Drag::kNone);
  const std::optional<DraggedStation> moved = std::exchange(dragged, std::nullopt);
  switch (ended) {
    case Drag::kPending:
      if (pressed.button == Qt::LeftButton) click(pointOf(pressed.at), pressed.modifiers);
      break;
    case Drag::kStation:
      if (moved && view.onMoveStation) view.onMoveStation(moved->id, places.inPlan(moved->map));
      break;
    case Drag::kRectangle:
      chooseRectangle(QRectF(pressed.at, at).normalized());
      break;
    case Drag::kBand: {
      const std::optional<StationId> end = stationAt(places, frame, pointOf(at));
      if (end && end != linkStart) {
        pickForLink(end);
      } else {
        linkStart.reset();
      }
      break;
    }
    case Drag::kPan:
    case Drag::kNone:
      break;
  }
  tellDragEnded();
  hover();
  invalidate();
}

void MapView::Self::click(MapPoint at, Qt::KeyboardModifiers modifiers) {
  if (tool == MapTool::kPlaceStation) {
    if (view.onPlaceStation) view.onPlaceStation(places.inPlan(frame.positionOf(at)));
    return;
  }
  const std::optional<StationId> station = stationAt(places, frame, at);
  if (tool == MapTool::kLink) {
    pickForLink(station);
    return;
  }
  const bool add = modifiers.testFlag(Qt::ShiftModifier) || modifiers.testFlag(Qt::ControlModifier);
  choose(station, station ? std::nullopt : linkAt(places, frame, at), add);
}

// What a double click does there.
void MapView::Self::activate(MapPoint at) {
  if (const std::optional<StationId> station = stationAt(places, frame, at)) {
    if (view.onStationActivated) view.onStationActivated(*station);
  } else if (const std::optional<LinkId> link = linkAt(places, frame, at)) {
    if (view.onLinkActivated) view.onLinkActivated(*link);
  } else {
    frame.zoomBy(1, at);
    frameChanged();
  }
}

void MapView::Self::pickForLink(std::optional<StationId> station) {
  if (!station) return;
  const std::optional<StationId> start = std::exchange(linkStart, std::nullopt);
  if (!start) {
    linkStart = station;
  } else if (*start != *station && view.onLinkStations) {
    view.onLinkStations(*start, *station);
  }
  invalidate();
}

void MapView::Self::choose(std::optional<StationId> station, std::optional<LinkId> link, bool add) {
  MapSelection wanted = add ? selection : MapSelection();
  if (station) toggle(wanted.stations, *station);
  if (link) toggle(wanted.links, *link);
  if (wanted == selection) return;
  selection = std::move(wanted);
  tellSelection();
}

void MapView::Self::chooseRectangle(const QRectF& rectangle) {
  MapSelection wanted = selection;
  const std::unordered_set<StationId> known(wanted.stations.begin(), wanted.stations.end());
  for (const StationPlace& place : places.stations()) {
    const MapPoint at = frame.pixelOf(place.map);
    if (rectangle.contains(at.x, at.y) && !known.contains(place.id)) wanted.stations.push_back(place.id);
  }
  if (wanted == selection) return;
  selection = std::move(wanted);
  tellSelection();
}

void MapView::Self::tellSelection() {
  invalidate();
  if (view.onSelectionChanged) view.onSelectionChanged(selection);
}

void MapView::Self::tellDragEnded() {
  if (std::exchange(dragTold, false) && view.onDragEnded) view.onDragEnded();
}

// As if it had never begun.
void MapView::Self::dropDrag() {
  if (std::exchange(drag, Drag::kNone) == Drag::kNone) return;
  const std::optional<DraggedStation> moved = std::exchange(dragged, std::nullopt);
  linkStart.reset();
  // Whoever followed the drag learns that it is where it was.
  const StationPlace* place = moved ? places.station(moved->id) : nullptr;
  if (place != nullptr && view.onDragStation) view.onDragStation(place->id, place->given);
  tellDragEnded();
  showCursor();
  invalidate();
}

// Whether there was a station to be moved.
bool MapView::Self::moveByKey(int key, double pixels) {
  const double x = key == Qt::Key_Left ? -pixels : key == Qt::Key_Right ? pixels : 0;
  const double y = key == Qt::Key_Up ? -pixels : key == Qt::Key_Down ? pixels : 0;
  if ((x == 0 && y == 0) || tool != MapTool::kSelect || drag != Drag::kNone || selection.stations.size() != 1)
    return false;
  const StationPlace* place = places.station(selection.stations.front());
  if (place == nullptr || !view.onMoveStation) return false;
  const MapPoint at = frame.pixelOf(place->map);
  view.onMoveStation(place->id, places.inPlan(frame.positionOf({at.x + x, at.y + y})));
  return true;
}

// Whether something begun was taken back.
bool MapView::Self::escape() {
  if (drag != Drag::kNone && drag != Drag::kPending) {
    dropDrag();
    return true;
  }
  if (linkStart) {
    linkStart.reset();
    invalidate();
    return true;
  }
  if (tool == MapTool::kSelect) return false;
  if (view.onToolDone) view.onToolDone();
  return true;
}

void MapView::Self::hover() {
  std::optional<StationId> station;
  std::optional<LinkId> link;
  if (pointer) {
    station = stationAt(places, frame, pointOf(*pointer));
    if (!station && tool == MapTool::kSelect) link = linkAt(places, frame, pointOf(*pointer));
  }
  if (station != hoveredStation || link != hoveredLink) {
    hoveredStation = station;
    hoveredLink = link;
    invalidate();
  }
  showCursor();
}

Qt::CursorShape MapView::Self::cursorShape() const {
  if (drag == Drag::kPan) return Qt::ClosedHandCursor;
  if (drag == Drag::kStation) return Qt::SizeAllCursor;
  if (tool == MapTool::kPlaceStation || drag == Drag::kRectangle) return Qt::CrossCursor;
  if (hoveredStation || hoveredLink) return Qt::PointingHandCursor;
  return tool == MapTool::kLink ? Qt::CrossCursor : Qt::ArrowCursor;
}

void MapView::Self::showCursor() {
  const Qt::CursorShape shape = cursorShape();
  if (view.cursor().shape() != shape) view.setCursor(shape);
}

// The position at once, its height when it has been read.
void MapView::Self::tellPointer() {
  const bool byKeys = crosshair && view.hasFocus();
  if (!view.onPointer || (!pointer && !byKeys)) return;
  const Position at = frame.positionOf(byKeys ? middle() : pointOf(*pointer));
  heightAsked = at;
  view.onPointer({places.inPlan(at), std::nullopt});
  reader.askHeight(at);
}

void MapView::Self::heightCame(Position position, float height) {
  if (heightAsked == position && view.onPointer) view.onPointer({places.inPlan(position), height});
}

void MapView::Self::contextMenu(QPoint global, MapPoint at) {
  const std::optional<StationId> station = stationAt(places, frame, at);
  const std::optional<LinkId> link = station ? std::nullopt : linkAt(places, frame, at);
  const auto has = [](const auto& ids, const auto& id) {
    return !id || std::find(ids.begin(), ids.end(), *id) != ids.end();
  };
  // The menu is about what is chosen, so what is under it is chosen first.
  if (!has(selection.stations, station) || !has(selection.links, link)) choose(station, link, false);
  if (view.onContextMenu) view.onContextMenu(global, station, link, places.inPlan(frame.positionOf(at)));
}

QString MapView::Self::toolTipAt(MapPoint at) {
  const auto name = [this](StationId id) {
    const StationPlace* place = places.station(id);
    return place != nullptr ? QString::fromStdString(place->name) : QString();
  };
  if (const std::optional<StationId> station = stationAt(places, frame, at)) return name(*station);
  const std::optional<LinkId> id = linkAt(places, frame, at);
  const LinkPlace* link = id ? places.link(*id) : nullptr;
  if (link == nullptr) return {};
  return QStringLiteral("%1 - %2: %3")
      .arg(name(link->from), name(link->to), lineText(link->distanceKm, link->bearingDeg, options.imperial));
}

// --- The widget ---

MapView::MapView(QWidget* parent) : QWidget(parent), self_(std::make_unique<Self>(*this)) {
  setObjectName(QStringLiteral("map"));
  setAccessibleName(QStringLiteral("Map"));
  setAccessibleDescription(QStringLiteral(
      "Terrain with stations and links. Arrow keys move it, plus and minus zoom, Space picks or "
      "places at the cross in the middle, Enter opens what is there. Alt and an arrow key moves the chosen "
      "station by a pixel, with Shift by ten."));
  setToolTip(QStringLiteral(
      "Drag to move the map, turn the wheel to zoom; Alt and an arrow key moves the chosen station"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(kSmallest);
  self_->frame.resize(width(), height());
  self_->tiles.setRelief(self_->options.relief);
}

MapView::~MapView() {
  // Before either waits for its threads: one of them may look through a folder while the others wait for it.
  self_->tiles.end();
  self_->reader.end();
}

void MapView::setPlan(const Plan* plan, const LinkAnalysis* analysis) {
  self_->places.set(plan, analysis);
  planChanged();
}

void MapView::setTerrain(std::shared_ptr<const TerrainMap> terrain) {
  if (terrain == self_->terrain) return;
  self_->terrain = terrain;
  self_->coverage.clear();
  self_->areas.clear();
  self_->coverageKnown = terrain == nullptr;
  self_->scaleKnown = self_->options.heightScale.has_value();
  self_->tiles.setTerrain(terrain);
  self_->reader.setTerrain(std::move(terrain));
  self_->tellPointer();
  self_->invalidate();
  self_->tellLoading();
}

void MapView::planChanged() {
  Self& self = *self_;
  self.places.changed();
  dropGone(self.selection.stations, [&self](StationId id) { return self.places.station(id) != nullptr; });
  dropGone(self.selection.links, [&self](LinkId id) { return self.places.link(id) != nullptr; });
  const auto gone = [&self](const std::optional<StationId>& id) {
    return id && self.places.station(*id) == nullptr;
  };
  if (gone(self.linkStart)) self.linkStart.reset();
  if (gone(self.pressed.station)) {
    self.dragged.reset();
    self.pressed.station.reset();
    if (self.drag == Self::Drag::kStation || self.drag == Self::Drag::kBand) self.drag = Self::Drag::kNone;
    self.tellDragEnded();
  }
  if (self.drag == Self::Drag::kNone) self.hover();
  self.invalidate();
}

void MapView::resultsChanged() {
  self_->places.changed();
  if (!self_->results.isActive()) self_->results.start();
}

void MapView::setOptions(const MapOptions& options) {
  if (options == self_->options) return;
  self_->options = options;
  self_->takeOptions();
}

const MapOptions& MapView::options() const { return self_->options; }

void MapView::setTool(MapTool tool) {
  if (tool == self_->tool) return;
  self_->tool = tool;
  self_->linkStart.reset();
  self_->hover();
  self_->invalidate();
}

MapTool MapView::tool() const { return self_->tool; }

void MapView::setSelection(const MapSelection& selection) {
  if (selection == self_->selection) return;
  self_->selection = selection;
  self_->invalidate();
}

const MapSelection& MapView::selection() const { return self_->selection; }

const MapFrame& MapView::frame() const { return self_->frame; }

void MapView::setFrame(const MapFrame& frame) {
  self_->frame = frame;
  self_->frame.resize(width(), height());
  self_->frameChanged();
}

void MapView::zoomBy(double levels) {
  self_->frame.zoomBy(levels, self_->middle());
  self_->frameChanged();
}

void MapView::panBy(double x, double y) {
  self_->frame.panBy(x, y);
  self_->frameChanged();
}

void MapView::fit(const TerrainExtent& extent) { self_->showFitted(extent); }

void MapView::fitPlan() {
  const std::vector<StationPlace>& stations = self_->places.stations();
  if (stations.empty()) {
    fitTerrain();
  } else {
    self_->showFitted(extentOf(stations));
  }
}

void MapView::fitTerrain() {
  self_->fitTerrainWanted = !self_->coverageKnown;
  if (self_->coverageKnown && !self_->coverage.empty()) self_->showFitted(extentOf(self_->coverage));
}

HeightScale MapView::shownScale() const { return self_->tiles.scale(); }

bool MapView::settled() const {
  return !self_->stale && !self_->moving && !self_->rest.isActive() && !self_->results.isActive() &&
         self_->tiles.waiting() == 0 && !self_->reader.busy();
}

bool MapView::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString words = self_->toolTipAt(pointOf(help->pos()));
    if (words.isEmpty()) {
      QToolTip::hideText();
      event->ignore();
    } else {
      // Names come from anywhere: what looks like markup is shown as it is.
      QToolTip::showText(help->globalPos(),
                         QStringLiteral("<span style='white-space:pre'>%1</span>").arg(words.toHtmlEscaped()),
                         this);
    }
    return true;
  }
  if (event->type() == QEvent::NativeGesture) {
    const auto* gesture = static_cast<QNativeGestureEvent*>(event);
    if (gesture->gestureType() != Qt::ZoomNativeGesture || gesture->value() <= -1)
      return QWidget::event(event);
    self_->frame.zoomBy(std::log2(1 + gesture->value()), pointOf(gesture->position()));
    self_->frameChanged();
    return true;
  }
  return QWidget::event(event);
}

void MapView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  self_->paint(painter);
}

void MapView::resizeEvent(QResizeEvent*) {
  self_->frame.resize(width(), height());
  if (self_->fitted) {
    self_->showFitted(*self_->fitted);
  } else {
    self_->frameChanged(false);
  }
}

void MapView::hideEvent(QHideEvent*) { self_->dropDrag(); }

void MapView::changeEvent(QEvent* event) {
  // The release goes to whatever came up instead.
  if (event->type() == QEvent::ActivationChange && !isActiveWindow()) self_->dropDrag();
  if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) self_->invalidate();
  QWidget::changeEvent(event);
}

void MapView::mousePressEvent(QMouseEvent* event) {
  const bool ours = event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton;
  if (!ours || self_->drag != Self::Drag::kNone) return;
  self_->crosshair = false;
  self_->pointer = event->position();
  self_->press(event->position(), event->button(), event->modifiers());
  self_->invalidate();
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
  Self& self = *self_;
  self.pointer = event->position();
  const bool far = (event->position() - self.pressed.at).manhattanLength() >=
                   QGuiApplication::styleHints()->startDragDistance();
  if (self.drag == Self::Drag::kPending && far) self.beginDrag();
  if (self.drag == Self::Drag::kNone) {
    self.hover();
    if (self.linkStart) self.invalidate();
  } else if (self.drag != Self::Drag::kPending) {
    self.dragTo(event->position());
  }
  self.tellPointer();
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
  if (self_->drag == Self::Drag::kNone || event->button() != self_->pressed.button) return;
  self_->endDrag(event->position());
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  // A second station on the same spot, or a link begun anew, is not what a double click is for.
  if (self_->tool == MapTool::kPlaceStation) return;
  if (self_->tool == MapTool::kLink) {
    mousePressEvent(event);
    return;
  }
  self_->activate(pointOf(event->position()));
}

void MapView::wheelEvent(QWheelEvent* event) {
  const bool zooms = event->modifiers().testFlag(Qt::ControlModifier);
  if (fromTouchpad(*event) && !zooms) {
    self_->frame.panBy(event->pixelDelta().x(), event->pixelDelta().y());
  } else {
    const double levels = fromTouchpad(*event) ? event->pixelDelta().y() / kPixelsPerLevel
                                               : event->angleDelta().y() / kAnglePerNotch * kLevelsPerNotch;
    if (levels == 0) return;
    self_->frame.zoomBy(levels, pointOf(event->position()));
  }
  self_->pointer = event->position();
  self_->frameChanged();
  event->accept();
}

void MapView::leaveEvent(QEvent*) {
  self_->pointer.reset();
  self_->heightAsked.reset();
  if (self_->drag == Self::Drag::kNone) self_->hover();
  self_->invalidate();
  if (onPointerLeft) onPointerLeft();
}

void MapView::keyPressEvent(QKeyEvent* event) {
  Self& self = *self_;
  if (event->key() == Qt::Key_Escape) {
    if (!self.escape()) event->ignore();
    return;
  }
  const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
  if (event->modifiers().testFlag(Qt::AltModifier) &&
      self.moveByKey(event->key(), shift ? 10 * kKeyMove : kKeyMove))
    return;
  const double step = shift ? kKeyPan / 10 : kKeyPan;
  if (event->modifiers() & (Qt::AltModifier | Qt::MetaModifier)) {
    event->ignore();
    return;
  }
  self.crosshair = true;
  switch (event->key()) {
    case Qt::Key_Left:
      panBy(step, 0);
      break;
    case Qt::Key_Right:
      panBy(-step, 0);
      break;
    case Qt::Key_Up:
      panBy(0, step);
      break;
    case Qt::Key_Down:
      panBy(0, -step);
      break;
    case Qt::Key_PageUp:
      panBy(0, self.frame.height() * 0.8);
      break;
    case Qt::Key_PageDown:
      panBy(0, -self.frame.height() * 0.8);
      break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      zoomBy(kLevelsPerNotch);
      break;
    case Qt::Key_Minus:
      zoomBy(-kLevelsPerNotch);
      break;
    case Qt::Key_Home:
      fitPlan();
      break;
    case Qt::Key_Space:
      self.click(self.middle(), event->modifiers());
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (self.tool == MapTool::kSelect) {
        self.activate(self.middle());
      } else {
        self.click(self.middle(), event->modifiers());
      }
      break;
    default:
      event->ignore();
      return;
  }
  self.invalidate();
}

void MapView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Mouse) {
    self_->contextMenu(event->globalPos(), pointOf(event->pos()));
    return;
  }
  const MapPoint middle = self_->middle();
  self_->crosshair = true;
  self_->contextMenu(mapToGlobal(QPointF(middle.x, middle.y)).toPoint(), middle);
}

void MapView::focusInEvent(QFocusEvent* event) {
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason) {
    self_->crosshair = true;
    self_->tellPointer();
  } else if (reason == Qt::MouseFocusReason) {
    self_->crosshair = false;
  }
  self_->invalidate();
}

void MapView::focusOutEvent(QFocusEvent*) { self_->invalidate(); }

}  // namespace zel::host
