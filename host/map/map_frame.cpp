#include "map/map_frame.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace zel::host {
namespace {

constexpr double kLevelZeroPixels = 256;
constexpr double kFarthestLevel = 0;
constexpr double kMostPixels = 1e6;          // of a frame's side: more is no screen
constexpr double kPointMetresPerPixel = 20;  // where an extent has no size to go by

double radians(double degrees) { return degrees * (std::numbers::pi / 180); }

double closestLevel() {
  static const double level = std::log2(kFarthestMetresPerPixel / kClosestMetresPerPixel);
  return level;
}

double side(double pixels) { return pixels >= 1 ? std::min(pixels, kMostPixels) : 1; }

// From 0 up to 1; the remainder of a tiny negative number rounds to 1. What is not finite gives not-a-number.
double wrapped(double x) {
  const double turn = x - std::floor(x);
  return turn >= 1 ? 0 : turn;
}

double latitudeKept(double latitude) { return std::clamp(latitude, -kMapLatitudeLimit, kMapLatitudeLimit); }

bool finite(const TerrainExtent& extent) {
  return std::isfinite(extent.south) && std::isfinite(extent.west) && std::isfinite(extent.north) &&
         std::isfinite(extent.east);
}

}  // namespace

MapPoint worldOf(Position position) {
  const double x = position.longitude / 360 + 0.5;
  // Exactly on the edge, where rounding would leave the square.
  if (position.latitude >= kMapLatitudeLimit) return {x, 0};
  if (position.latitude <= -kMapLatitudeLimit) return {x, 1};
  return {x, 0.5 - std::atanh(std::sin(radians(position.latitude))) / (2 * std::numbers::pi)};
}

Position positionOfWorld(MapPoint world) {
  const double y = std::clamp(world.y, 0.0, 1.0);
  const double latitude = std::atan(std::sinh((1 - 2 * y) * std::numbers::pi)) * (180 / std::numbers::pi);
  return {latitudeKept(latitude), wrapped(world.x) * 360 - 180};
}

MapFrame::MapFrame(double width, double height) { resize(width, height); }

void MapFrame::resize(double width, double height) {
  width_ = side(width);
  height_ = side(height);
}

Position MapFrame::centre() const { return positionOfWorld({centreX_, centreY_}); }

void MapFrame::setCentre(Position centre) {
  const MapPoint world = worldOf(centre);
  if (!std::isfinite(world.x) || !std::isfinite(world.y)) return;
  centreX_ = wrapped(world.x);
  centreY_ = world.y;
}

void MapFrame::setLevel(double level) {
  if (std::isnan(level)) return;
  level_ = std::clamp(level, kFarthestLevel, closestLevel());
}

double MapFrame::worldPixels() const { return kLevelZeroPixels * std::exp2(level_); }

double MapFrame::metresPerPixel() const {
  return kFarthestMetresPerPixel * std::cos(radians(centre().latitude)) / std::exp2(level_);
}

void MapFrame::setMetresPerPixel(double metres) {
  if (!(metres > 0)) return;
  setLevel(std::log2(kFarthestMetresPerPixel * std::cos(radians(centre().latitude)) / metres));
}

MapPoint MapFrame::pixelOf(Position position) const {
  const MapPoint world = worldOf(position);
  const double turns = world.x - centreX_;
  return {width_ / 2 + (turns - std::floor(turns + 0.5)) * worldPixels(),
          height_ / 2 + (world.y - centreY_) * worldPixels()};
}

Position MapFrame::positionOf(MapPoint pixel) const {
  return positionOfWorld({centreX_ + (pixel.x - width_ / 2) / worldPixels(),
                          centreY_ + (pixel.y - height_ / 2) / worldPixels()});
}

void MapFrame::zoomBy(double levels, MapPoint at) {
  if (!std::isfinite(levels) || !std::isfinite(at.x) || !std::isfinite(at.y)) return;
  const double right = at.x - width_ / 2, down = at.y - height_ / 2;
  const double before = worldPixels();
  setLevel(level_ + levels);
  const double change = 1 / before - 1 / worldPixels();
  moveCentre(right * change, down * change);
}

void MapFrame::panBy(double x, double y) { moveCentre(-x / worldPixels(), -y / worldPixels()); }

void MapFrame::moveCentre(double x, double y) {
  if (!std::isfinite(x) || !std::isfinite(y)) return;
  centreX_ = wrapped(centreX_ + x);
  centreY_ = std::clamp(centreY_ + y, 0.0, 1.0);
}

void MapFrame::fit(const TerrainExtent& extent, double margin) {
  if (!finite(extent)) return;
  const auto [south, north] = std::minmax(extent.south, extent.north);
  const double turn = extent.east < extent.west ? 360 : 0;
  const double degreesWide = std::min(extent.east + turn - extent.west, 360.0);
  const double top = worldOf({north, 0}).y, bottom = worldOf({south, 0}).y;
  const double wide = degreesWide / 360, high = bottom - top;
  centreX_ = wrapped(worldOf({0, extent.west}).x + wide / 2);
  centreY_ = (top + bottom) / 2;

  // A margin leaves at least half of the frame.
  const double edge = margin > 0 ? margin : 0;
  const double across = std::max(width_ - 2 * edge, width_ / 2);
  const double down = std::max(height_ - 2 * edge, height_ / 2);
  if (wide > 0 || high > 0) {
    // Division by zero gives infinity, which is no limit.
    setLevel(std::log2(std::min(across / wide, down / high) / kLevelZeroPixels));
  } else {
    setMetresPerPixel(kPointMetresPerPixel);
  }
}

TerrainExtent MapFrame::extent() const {
  const double halfWide = std::min(width_ / worldPixels(), 1.0) / 2;
  const double halfHigh = height_ / worldPixels() / 2;
  const double west = wrapped(centreX_ - halfWide) * 360 - 180;
  return {positionOfWorld({0, centreY_ + halfHigh}).latitude, west,
          positionOfWorld({0, centreY_ - halfHigh}).latitude, west + halfWide * 720};
}

}  // namespace zel::host
