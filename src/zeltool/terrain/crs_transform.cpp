#include "zeltool/terrain/crs_transform.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <cmath>

#include "zeltool/terrain/gdal_session.h"
#include "zeltool/terrain/longitude.h"

namespace zel {
namespace {

constexpr double kSameDegrees = 1e-9;  // 0.1 mm on the ground
constexpr int kEdgePoints = 21;        // taken on each edge of a box whose area is sought
constexpr int kProbes = 5;             // positions each way over an area

}  // namespace

struct CrsTransform::Lease {
  explicit Lease(const CrsTransform& owner) : owner_(owner) {
    {
      const std::lock_guard lock(owner.mutex_);
      if (!owner.idle_.empty()) {
        both = std::move(owner.idle_.back());
        owner.idle_.pop_back();
      }
    }
    if (!both.forward) both = owner.createBoth();
  }
  ~Lease() {
    if (!both.forward) return;
    const std::lock_guard lock(owner_.mutex_);
    owner_.idle_.push_back(std::move(both));
  }
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;

  Both both;

 private:
  const CrsTransform& owner_;
};

CrsTransform::~CrsTransform() {
  const GdalSession session;
  idle_.clear();
}

std::shared_ptr<const CrsTransform> CrsTransform::make(const OGRSpatialReference& crs, std::string& problem) {
  GdalSession session;
  std::shared_ptr<CrsTransform> transform(new CrsTransform);
  transform->wgs84_ = std::make_unique<OGRSpatialReference>();
  transform->wgs84_->SetWellKnownGeogCS("WGS84");
  transform->wgs84_->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  transform->crs_.reset(crs.Clone());
  // Heights stay as the raster states them; only the position is transformed.
  if (transform->crs_->IsCompound()) transform->crs_->StripVertical();
  if (transform->crs_->GetAxesCount() == 3) transform->crs_->DemoteTo2D(nullptr);
  transform->crs_->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  Both first = transform->createBoth();
  if (!first.forward || !first.inverse) {
    const std::string why = session.takeError();
    problem = "its coordinate system cannot be reached from WGS 84" + (why.empty() ? "" : ": " + why);
    return nullptr;
  }
  transform->idle_.push_back(std::move(first));
  return transform;
}

CrsTransform::Transformation CrsTransform::create(bool guessAllowed) const {
  OGRCoordinateTransformationOptions options;
  options.SetBallparkAllowed(guessAllowed);
  return Transformation(OGRCreateCoordinateTransformation(wgs84_.get(), crs_.get(), options));
}

CrsTransform::Both CrsTransform::createBoth() const {
  Both both{create(true), nullptr};
  if (both.forward) both.inverse.reset(both.forward->GetInverse());
  return both;
}

void CrsTransform::run(std::span<double> x, std::span<double> y, bool inverse) const {
  const GdalSession session;
  Lease lease(*this);
  std::vector<int> done(x.size(), FALSE);
  const Transformation& object = inverse ? lease.both.inverse : lease.both.forward;
  if (object) object->Transform(static_cast<int>(x.size()), x.data(), y.data(), nullptr, done.data());
  for (std::size_t i = 0; i < done.size(); ++i)
    if (!done[i]) x[i] = y[i] = INFINITY;
}

void CrsTransform::fromWgs84(std::span<double> x, std::span<double> y) const { run(x, y, false); }

void CrsTransform::toWgs84(std::span<double> x, std::span<double> y) const { run(x, y, true); }

std::optional<GeoExtent> CrsTransform::areaOf(const std::array<double, 4>& box) const {
  const GdalSession session;
  Lease lease(*this);
  const Transformation& back = lease.both.inverse;
  GeoExtent area;
  if (!back || !back->TransformBounds(box[0], box[1], box[2], box[3], &area.west, &area.south, &area.east,
                                      &area.north, kEdgePoints))
    return std::nullopt;
  const auto within = [](double value, double limit) { return std::abs(value) <= limit; };
  // Coordinates that mean nothing can come out as numbers that mean nothing.
  if (!within(area.south, 90.001) || !within(area.north, 90.001) || !within(area.west, 720) ||
      !within(area.east, 720))
    return std::nullopt;
  const double width = area.east < area.west ? area.east + 360 - area.west : area.east - area.west;
  area.west = normalLongitude(area.west);
  area.east = area.west + std::min(width, 360.0);
  if (area.south > area.north) return std::nullopt;
  return area;
}

bool CrsTransform::isIdentityOver(const GeoExtent& area) const {
  const auto differs = [&](OGRCoordinateTransformation& transformation, bool& failed) {
    for (int row = 0; row < kProbes; ++row)
      for (int column = 0; column < kProbes; ++column) {
        const double longitude = area.west + (area.east - area.west) * (column + 0.5) / kProbes;
        const double latitude = area.south + (area.north - area.south) * (row + 0.5) / kProbes;
        double x = longitude, y = latitude;
        if (!transformation.Transform(1, &x, &y)) {
          failed = true;
          return true;
        }
        if (!(std::abs(longitudeNear(x, longitude) - longitude) < kSameDegrees &&
              std::abs(y - latitude) < kSameDegrees))
          return true;
      }
    return false;
  };
  const GdalSession session;
  Lease lease(*this);
  bool failed = false;
  if (!lease.both.forward || !differs(*lease.both.forward, failed)) return true;
  // What remains may be a guess; without leave to guess, the library then offers nothing.
  const Transformation strict = create(false);
  failed = false;
  return !strict || (differs(*strict, failed) && failed);
}

}  // namespace zel
