// Stations and links on the map.
//
// What a link's stretches are is told by colour and by dash, with a light casing so that they stand out on
// any ground. Where hundreds of links are seen at once they are drawn thin and without casing; the dashes
// stay.
#pragma once

#include <QImage>
#include <QPainter>
#include <optional>
#include <vector>

#include "map/label_places.h"
#include "map/link_lines.h"
#include "map/map_frame.h"
#include "map_view/map_text.h"
#include "map_view/map_view.h"
#include "map_view/plan_places.h"

namespace zel::host {

// A station that is being dragged, at the place where the pointer has it. WGS 84.
struct DraggedStation {
  StationId id = 0;
  Position map;
};

struct PlanScene {
  const MapFrame& frame;
  PlanPlaces& places;
  const MapSelection& selection;
  std::optional<StationId> hoveredStation;
  std::optional<LinkId> hoveredLink;
  std::optional<DraggedStation> dragged;
  bool names = true;
  bool imperial = false;
  bool moving = false;          // less is drawn while the map moves
  std::vector<PixelBox> taken;  // panels, where no name is put
};

// "28.7 km, 134.1°"; "17.8 mi, 134.1°".
QString lineText(double distanceKm, double bearingDeg, bool imperial);

class PlanPainter {
 public:
  void paint(QPainter& painter, MapText& text, const PlanScene& scene);
  // A line that is about to be a link, with its length and bearing.
  void paintRubberBand(QPainter& painter, MapText& text, const MapFrame& frame, Position from, Position to,
                       bool imperial);

 private:
  void paintLinks(QPainter& painter, MapText& text, const PlanScene& scene);
  void paintChosenLink(QPainter& painter, MapText& text, const PlanScene& scene, const LinkPlace& link);
  void paintDraggedLinks(QPainter& painter, MapText& text, const PlanScene& scene);
  void paintStations(QPainter& painter, MapText& text, const PlanScene& scene);
  void makeSymbols(double pixelRatio);

  double symbolRatio_ = 0;
  QImage plain_, hovered_, chosen_;
};

inline constexpr double kStationReach = 9;  // pixels from a station's middle that still are on it
inline constexpr double kLinkReach = 6;     // pixels from a link's line

// What is at a pixel: the nearest station, or else the nearest link.
std::optional<StationId> stationAt(PlanPlaces& places, const MapFrame& frame, MapPoint at);
std::optional<LinkId> linkAt(PlanPlaces& places, const MapFrame& frame, MapPoint at);

}  // namespace zel::host
