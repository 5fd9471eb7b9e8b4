#include "ui/plot/plot_markers.h"

#include <cmath>

#include "profile/real32.h"
#include "ui/plot/plot_drawing.h"

namespace zel {
namespace {

constexpr std::string_view kHeightPattern = "###0.0";
constexpr std::string_view kDistancePattern = "##0.00";
constexpr std::string_view kBelowMousePattern = "###.#";
constexpr std::string_view kOldDatum = "NAD-27";  // whose positions are converted

}  // namespace

PlotMarkers::Side PlotMarkers::side(MarkerSide which) {
  if (which == MarkerSide::kLeft)
    return {state_.leftMarker, view_.leftStroke, view_.leftTexts, readout::kLeftMarker};
  return {state_.rightMarker, view_.rightStroke, view_.rightTexts, readout::kRightMarker};
}

// Without samples there is no ground to read: not before the first drawing, and not after one that failed.
bool PlotMarkers::terrainStands() const {
  return !state_.flags.resample && !state_.flags.loading && !state_.flags.drawing;
}

void PlotMarkers::place(float x) {
  if (!terrainStands()) return;
  const std::optional<PointerPosition> pointer = state_.plotIndex().pointerAt(double{x});
  if (!pointer) return;
  const PointerHeights heights = PlotIndex::heightsAt(*pointer, state_.elevation, state_.curve);
  const Side left = side(MarkerSide::kLeft);
  const Side right = side(MarkerSide::kRight);
  if (left.marker.shown && right.marker.shown) return;

  services_.canvas->setDrawMode(DrawMode::kXorPen);
  if (!left.marker.shown && !right.marker.shown) {
    put(left, x, heights);
  } else if (left.marker.shown) {
    const bool beyond = x >= left.marker.x;
    if (!beyond) handOver(left, right);
    put(beyond ? right : left, x, heights);
  } else {
    const bool before = x <= right.marker.x;
    if (!before) handOver(right, left);
    put(before ? left : right, x, heights);
  }
}

void PlotMarkers::put(Side side, float x, const PointerHeights& heights) {
  side.marker.x = side.marker.keptX = x;
  const Colour colour = erasablePen(readColour(settings_, settings::kColourMarker));
  view_.markerColour = colour;
  services_.canvas->line(double{x}, view_.scale.bottom, double{x}, view_.scale.top, colour);
  side.stroke = {true, false, colour};
  side.marker.shown = true;
  side.marker.groundHeight = toReal32(heights.ground - heights.rise);
  locate(side.marker);
  showPosition(side);
}

// The line stays in the picture where it is.
void PlotMarkers::handOver(Side from, Side to) {
  to.marker = from.marker;
  to.stroke = from.stroke;
  from.stroke = {};
  show(to.labels.latitude, to.texts.latitude, from.texts.latitude);
  show(to.labels.longitude, to.texts.longitude, from.texts.longitude);
  show(to.labels.height, to.texts.height, from.texts.height);
  show(to.labels.distanceToCursor, to.texts.distanceToCursor, from.texts.distanceToCursor);
}

void PlotMarkers::locate(ProfileMarker& marker) const {
  marker.position = services_.geodesy->PointOnPath(state_.inputs.start, state_.inputs.end,
                                                   state_.plotIndex().distanceFromStart(double{marker.x}));
  marker.converted = marker.position;
  if (services_.module->datumText == kOldDatum)
    marker.converted = services_.datumShift->toNad83(marker.position);
}

void PlotMarkers::showPosition(Side side) {
  const ProfileMarker& marker = side.marker;
  show(side.labels.latitude, side.texts.latitude,
       services_.formatter->LatitudeText(marker.position.latitude));
  show(side.labels.longitude, side.texts.longitude,
       services_.formatter->LongitudeText(marker.position.longitude));
  show(side.labels.height, side.texts.height,
       number(double{marker.groundHeight} * state_.inputs.units.height.factor, kHeightPattern));
}

void PlotMarkers::showLabels() {
  for (const MarkerSide which : {MarkerSide::kLeft, MarkerSide::kRight})
    if (side(which).marker.shown) showPosition(side(which));
}

void PlotMarkers::point(float x, float y) {
  if (!terrainStands()) return;
  const PlotIndex index = state_.plotIndex();
  const std::optional<PointerPosition> pointer = index.pointerAt(double{x});
  if (!pointer) return;
  const PointerHeights heights = PlotIndex::heightsAt(*pointer, state_.elevation, state_.curve);
  const double heightFactor = state_.inputs.units.height.factor;

  showNumber(readout::kCursorPosition,
             index.distanceFromStart(double{x}) * state_.inputs.units.distance.factor, kDistancePattern);
  showNumber(readout::kCursorHeight, (heights.ground - heights.rise) * heightFactor, kHeightPattern);
  moveStrobe(x, toReal32(heights.ground));
  showDistance(side(MarkerSide::kLeft), x);
  showDistance(side(MarkerSide::kRight), x);
  showNumber(readout::kBelowMouse, (double{y} - heights.ground) * heightFactor, kBelowMousePattern);
}

void PlotMarkers::moveStrobe(float x, float ground) {
  services_.canvas->setDrawMode(DrawMode::kXorPen);
  services_.canvas->setFillStyle(FillStyle::kSolid);
  const Colour colour = erasablePen(readColour(settings_, settings::kColourStrobe));
  if (view_.strobe.shown) strobeCircle(view_.strobe);
  view_.strobe = {true, x, ground, colour};
  strobeCircle(view_.strobe);
}

void PlotMarkers::strobeCircle(const Strobe& strobe) {
  services_.canvas->setFillColour(strobe.colour);
  services_.canvas->circle(double{strobe.x}, double{strobe.height}, view_.circleRadius);
}

void PlotMarkers::showDistance(Side side, float x) {
  if (!side.marker.shown) return;
  const double distance = std::abs(double{side.marker.x} - double{x});
  show(side.labels.distanceToCursor, side.texts.distanceToCursor,
       number(distance * state_.inputs.units.distance.factor, kDistancePattern));
}

bool PlotMarkers::clear(MarkerSide which) {
  const Side cleared = side(which);
  if (!cleared.marker.shown) return false;
  cleared.marker.shown = false;
  services_.canvas->setDrawMode(DrawMode::kXorPen);
  services_.canvas->setFillStyle(FillStyle::kSolid);
  services_.canvas->setFillColour(kWhite);
  const Colour colour = erasablePen(readColour(settings_, settings::kColourMarker));
  view_.markerColour = colour;
  const MarkerStroke stroke = cleared.stroke;
  // A picture that was made anew since has no line to take away.
  if (stroke.drawn) {
    const double x = double{cleared.marker.x};
    services_.canvas->line(x, view_.scale.bottom, x, view_.scale.top, colour);
  }
  cleared.stroke = {};
  cleared.marker.keptX = 0;
  show(cleared.labels.latitude, cleared.texts.latitude, {});
  show(cleared.labels.longitude, cleared.texts.longitude, {});
  show(cleared.labels.height, cleared.texts.height, {});
  show(cleared.labels.distanceToCursor, cleared.texts.distanceToCursor, {});
  return stroke.drawn && (stroke.covered || stroke.colour != colour);
}

void PlotMarkers::show(std::string_view control, std::string& kept, std::string text) {
  kept = std::move(text);
  services_.readouts->show(control, kept);
}

void PlotMarkers::showNumber(std::string_view control, double value, std::string_view pattern) {
  services_.readouts->show(control, number(value, pattern));
}

std::string PlotMarkers::number(double value, std::string_view pattern) const {
  return formatNumber(value, pattern, services_.numbers);
}

}  // namespace zel
