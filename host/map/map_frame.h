// The part of the earth that a map shows, and where its places are in pixels: spherical Mercator, so that
// shapes and bearings are right everywhere on it and a row of pixels has one latitude. A value; logical
// pixels, x to the right, y downwards. World square and pixel from position and back: to 1e-9 degrees.
//
// A frame stays usable whatever it is told: sizes are kept from 1 to 1,000,000 pixels, the centre within the
// world square, and a value that is not finite changes nothing. Latitudes beyond the limit are at the edge.
// Source: J. P. Snyder, Map Projections - A Working Manual, USGS Professional Paper 1395 (1987), p. 41 (7-1).
#pragma once

#include "zel/coordinates.h"
#include "zel/terrain_map.h"

namespace zel::host {

struct MapPoint {
  double x = 0, y = 0;  // logical pixels from the left top corner
};

inline constexpr double kMapLatitudeLimit = 85.05112877980659;  // degrees: the square world's edge
inline constexpr double kClosestMetresPerPixel = 0.25,
                        kFarthestMetresPerPixel = 156'543.0339;  // at the equator

class MapFrame {
 public:
  MapFrame() = default;
  MapFrame(double width, double height);

  double width() const { return width_; }
  double height() const { return height_; }
  void resize(double width, double height);  // the centre stays

  Position centre() const;
  void setCentre(Position centre);
  // Of the world square's side: 256 x 2^level pixels.
  double level() const { return level_; }
  void setLevel(double level);    // kept within its limits
  double worldPixels() const;     // the world square's side
  double metresPerPixel() const;  // at the centre
  void setMetresPerPixel(double metres);

  // A place is given at the turn of longitude that is nearest to the centre.
  MapPoint pixelOf(Position position) const;
  Position positionOf(MapPoint pixel) const;
  // The place under `at` stays under it.
  void zoomBy(double levels, MapPoint at);
  void panBy(double x, double y);  // pixels: the map's content moves so far
  // The whole extent with a margin in pixels; an extent without area gets a sensible scale.
  void fit(const TerrainExtent& extent, double margin);
  // What is seen, at most once around.
  TerrainExtent extent() const;

  friend bool operator==(const MapFrame&, const MapFrame&) = default;

 private:
  void moveCentre(double x, double y);  // of the world square

  double width_ = 1, height_ = 1;
  double centreX_ = 0.5, centreY_ = 0.5;  // of the world square, 0 to 1
  double level_ = 2;
};

// Position in the world square, 0 to 1, from the left top (180 W, 85.05 N).
MapPoint worldOf(Position position);
Position positionOfWorld(MapPoint world);

}  // namespace zel::host
