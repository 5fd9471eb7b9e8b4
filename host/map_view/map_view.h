// The map: terrain, stations and links, on which a planner places, drags and chooses.
//
// It changes nothing itself: what the user does comes out as a call, and whoever owns the plan changes it and
// says so by planChanged().
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/link_analysis.h"
#include "map/graticule.h"
#include "map/height_colours.h"
#include "map/map_frame.h"
#include "planning/plan.h"
#include "zel/terrain_map.h"

namespace zel::host {

// What is shown besides the terrain.
struct MapOptions {
  bool relief = true;
  bool graticule = true;
  bool legend = true;
  bool scaleBar = true;
  bool coverage = false;  // outlines of the rasters
  bool names = true;
  bool imperial = false;
  AngleFormat angles = AngleFormat::kDegreesMinutesSeconds;
  std::optional<HeightScale> heightScale;  // without one the scale follows what is seen

  friend bool operator==(const MapOptions&, const MapOptions&) = default;
};

enum class MapTool {
  kSelect,        // click chooses, drag on a station moves it, elsewhere the map
  kPlaceStation,  // click places a station
  kLink,          // click on a station, then on another, links them
};

struct MapSelection {
  std::vector<StationId> stations;
  std::vector<LinkId> links;

  friend bool operator==(const MapSelection&, const MapSelection&) = default;
};

// What is under the pointer.
struct PointerPlace {
  Position position;             // in the plan's datum
  std::optional<float> heightM;  // nothing while it is being read; kTerrainVoid, kTerrainOutside as they are
};

// Pointer: the wheel zooms about the place under it; two fingers on a touchpad pan and pinch; a drag on the
// ground pans, with the middle button anywhere; Shift and a drag on the ground choose stations by rectangle;
// a double click on the ground zooms in. Keyboard: arrows pan (with Shift a tenth as far), + and - zoom, Home
// shows the whole plan, Space does at the cross in the middle what a click there does, Enter what a double
// click does, Escape takes back what is begun. Alt and an arrow moves the one chosen station by a pixel, with
// Shift by ten, each a step of its own.
class MapView : public QWidget {
 public:
  explicit MapView(QWidget* parent = nullptr);
  ~MapView() override;

  // All are kept by reference or shared; the plan and the analysis must outlive the view. Null terrain: a
  // blank map.
  void setPlan(const Plan* plan, const LinkAnalysis* analysis);
  void setTerrain(std::shared_ptr<const TerrainMap> terrain);
  void planChanged();     // stations, links or results are different: draw anew
  void resultsChanged();  // results alone, of which many may come: drawn together, some times a second
  void setOptions(const MapOptions& options);
  const MapOptions& options() const;
  void setTool(MapTool tool);
  MapTool tool() const;
  void setSelection(const MapSelection& selection);  // does not call back
  const MapSelection& selection() const;

  const MapFrame& frame() const;
  void setFrame(const MapFrame& frame);  // its size is the widget's in any case
  void zoomBy(double levels);            // about the middle
  void panBy(double x, double y);
  void fit(const TerrainExtent& extent);
  void fitPlan();     // all stations
  void fitTerrain();  // all rasters
  HeightScale shownScale() const;
  bool settled() const;  // nothing more is on its way to be shown

  // What the user did. Positions are in the plan's datum.
  std::function<void(Position)> onPlaceStation;
  std::function<void(StationId, Position)> onMoveStation;  // once, at the end of a drag; by a key
  std::function<void(StationId, Position)> onDragStation;  // while it is dragged
  std::function<void()> onDragEnded;                       // it is dragged no more, however that came
  std::function<void(StationId)> onStationActivated;       // double click, Enter
  std::function<void(LinkId)> onLinkActivated;
  std::function<void(StationId from, StationId to)> onLinkStations;
  std::function<void(const MapSelection&)> onSelectionChanged;
  std::function<void(const PointerPlace&)> onPointer;
  std::function<void()> onPointerLeft;
  std::function<void()> onFrameChanged;
  std::function<void(QPoint global, std::optional<StationId>, std::optional<LinkId>, Position)> onContextMenu;
  std::function<void(int waiting)> onLoading;  // tiles on their way
  std::function<void()> onToolDone;            // Escape: back to kSelect is wanted

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
