// Stations and links on the map.
//
// What a link's stretches are is told by colour and by dash, with a light casing so that they stand out on
// any ground. An obstructed stretch may be a few pixels long, so the link's verdict is told besides: by the
// tint of the whole casing, and by a triangle over its worst obstacle, filled for a blocked link, hollow for
// a marginal one. Where hundreds of links are seen at once they are drawn thin, each from end to end as its
// verdict, and where there are more of them without triangles.
#pragma once

#include <QImage>
#include <QPainter>
#include <array>
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

// By PathVerdict.
using VerdictSet = std::array<bool, 4>;

// A short link of that verdict, as the map draws one, for a legend.
void paintVerdictSample(QPainter& painter, const QRectF& place, PathVerdict verdict);

class PlanPainter {
 public:
  void paint(QPainter& painter, MapText& text, const PlanScene& scene);
  // Of the computed links that were seen in the last picture.
  const VerdictSet& seenVerdicts() const { return seenVerdicts_; }
  // A line that is about to be a link, with its length and bearing.
  void paintRubberBand(QPainter& painter, MapText& text, const MapFrame& frame, Position from, Position to,
                       bool imperial);

 private:
  void paintLinks(QPainter& painter, MapText& text, const PlanScene& scene);
  void paintChosenLink(QPainter& painter, MapText& text, const PlanScene& scene, const LinkPlace& link);
  void paintDraggedLinks(QPainter& painter, MapText& text, const PlanScene& scene);
  void paintObstacles(QPainter& painter, const MapFrame& frame, const std::vector<const LinkPlace*>& links);
  void paintStations(QPainter& painter, MapText& text, const PlanScene& scene);
  void makeSymbols(double pixelRatio);

  VerdictSet seenVerdicts_{};
  double symbolRatio_ = 0;
  QImage plain_, hovered_, chosen_, blocked_, marginal_;
};

inline constexpr double kStationReach = 9;  // pixels from a station's middle that still are on it
inline constexpr double kLinkReach = 6;     // pixels from a link's line

// What is at a pixel: the nearest station, or else the nearest link.
std::optional<StationId> stationAt(PlanPlaces& places, const MapFrame& frame, MapPoint at);
std::optional<LinkId> linkAt(PlanPlaces& places, const MapFrame& frame, MapPoint at);

}  // namespace zel::host
