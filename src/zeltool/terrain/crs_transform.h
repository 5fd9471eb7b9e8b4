// Positions on WGS 84 into the coordinates of a raster, and back. Serves several threads at once. Cost: 0.4
// us a position, some milliseconds for the first one of a coordinate system.
#pragma once

#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "zeltool/terrain/grid_geometry.h"

class OGRCoordinateTransformation;
class OGRSpatialReference;

namespace zel {

class CrsTransform {
 public:
  // Null, and a reason, when the library knows no way from WGS 84 to the coordinate system.
  static std::shared_ptr<const CrsTransform> make(const OGRSpatialReference& crs, std::string& problem);
  ~CrsTransform();

  // In place: x longitude, y latitude (degrees) to the raster's x, y. A point that has none becomes infinite.
  void fromWgs84(std::span<double> x, std::span<double> y) const;
  void toWgs84(std::span<double> x, std::span<double> y) const;

  // The area that contains a box of the raster's coordinates; nothing when it has no place on the earth.
  std::optional<GeoExtent> areaOf(const std::array<double, 4>& box) const;

  // For a raster in degrees: whether its coordinates are the same as WGS 84's within 1e-9 degree over the
  // area, or differ in nothing better than a guess.
  bool isIdentityOver(const GeoExtent& area) const;

 private:
  using Transformation = std::unique_ptr<OGRCoordinateTransformation>;
  struct Both {
    Transformation forward, inverse;
  };
  struct Lease;

  CrsTransform() = default;
  Transformation create(bool guessAllowed) const;
  Both createBoth() const;
  void run(std::span<double> x, std::span<double> y, bool inverse) const;

  std::unique_ptr<OGRSpatialReference> wgs84_, crs_;
  mutable std::mutex mutex_;
  mutable std::vector<Both>
      idle_;  // an object serves one thread at a time, and making one costs milliseconds
};

}  // namespace zel
