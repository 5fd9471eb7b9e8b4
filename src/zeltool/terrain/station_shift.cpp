#include "zeltool/terrain/station_shift.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "zeltool/terrain/longitude.h"

namespace zel {
namespace {

constexpr double kFarthest = 5;               // km between positions that are shifted themselves
constexpr double kTolerance = 0.002;          // metres, a fifth of what is promised
constexpr double kMetresPerDegree = 111'320;  // of latitude, and of longitude on the equator; rounded up

class PathShift {
 public:
  PathShift(const DatumShift& shift, std::span<const GeoPoint> path)
      : shift_(shift), path_(path), result_(path.size()) {}

  // Positions first to last; those two have their shift already.
  void between(std::size_t first, std::size_t last) {
    if (last - first < 2) return;
    const std::size_t middle = first + (last - first) / 2;
    exact(middle);
    const GeoPoint guess = interpolated(first, last, middle);
    if (distance(guess, result_[middle]) < kTolerance) {
      linear(first, middle);
      linear(middle, last);
      return;
    }
    between(first, middle);
    between(middle, last);
  }
  void exact(std::size_t i) { result_[i] = shift_.toNad83(path_[i]); }
  std::vector<GeoPoint> take() { return std::move(result_); }

 private:
  void linear(std::size_t first, std::size_t last) {
    for (std::size_t i = first + 1; i < last; ++i) result_[i] = interpolated(first, last, i);
  }
  GeoPoint offset(std::size_t i) const {
    return {result_[i].latitude - path_[i].latitude,
            longitudeNear(result_[i].longitude, path_[i].longitude) - path_[i].longitude};
  }
  GeoPoint interpolated(std::size_t first, std::size_t last, std::size_t i) const {
    const GeoPoint a = offset(first), b = offset(last);
    const double part = static_cast<double>(i - first) / static_cast<double>(last - first);
    return {path_[i].latitude + a.latitude + part * (b.latitude - a.latitude),
            path_[i].longitude + a.longitude + part * (b.longitude - a.longitude)};
  }
  static double distance(GeoPoint a, GeoPoint b) {
    return std::hypot(a.latitude - b.latitude, (longitudeNear(a.longitude, b.longitude) - b.longitude) *
                                                   std::cos(b.latitude * std::numbers::pi / 180)) *
           kMetresPerDegree;
  }

  const DatumShift& shift_;
  std::span<const GeoPoint> path_;
  std::vector<GeoPoint> result_;
};

}  // namespace

std::vector<GeoPoint> shiftedPath(const DatumShift& shift, std::span<const GeoPoint> path, double length) {
  if (path.empty()) return {};
  PathShift job(shift, path);
  const std::size_t last = path.size() - 1;
  const auto parts = std::clamp<std::size_t>(static_cast<std::size_t>(length / kFarthest) + 1, 1,
                                             std::max<std::size_t>(last, 1));
  job.exact(0);
  for (std::size_t part = 0; part < parts && last > 0; ++part) {
    const std::size_t from = last * part / parts, to = last * (part + 1) / parts;
    job.exact(to);
    job.between(from, to);
  }
  return job.take();
}

}  // namespace zel
