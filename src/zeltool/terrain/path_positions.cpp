#include "zeltool/terrain/path_positions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "zeltool/terrain/longitude.h"

namespace zel {
namespace {

constexpr double kSemiMajorAxis = 6378137;         // metres, WGS 84
constexpr double kFlattening = 1 / 298.257223563;  // dimensionless, WGS 84
constexpr double kMetresPerDegree = 111'320;       // of latitude, and of longitude on the equator; rounded up

constexpr std::size_t kNodes = 8;
constexpr std::size_t kWorthwhile = 32;  // positions; below that exact ones cost no more than a polynomial
constexpr double kTolerance = 1e-4;      // metres, a tenth of what is promised

using Coefficients = std::array<double, kNodes>;

const geod_geodesic& wgs84() {
  static const geod_geodesic figure = [] {
    geod_geodesic g;
    geod_init(&g, kSemiMajorAxis, kFlattening);
    return g;
  }();
  return figure;
}

// Values at the Chebyshev points of -1 to 1 into the coefficients of the polynomial through them.
class NodeBasis {
 public:
  NodeBasis() {
    for (std::size_t i = 0; i < kNodes; ++i)
      points_[i] = std::cos(std::numbers::pi * (static_cast<double>(i) + 0.5) / static_cast<double>(kNodes));
    for (std::size_t i = 0; i < kNodes; ++i) lagrange_[i] = lagrangePolynomial(i);
  }
  double point(std::size_t i) const { return points_[i]; }
  Coefficients polynomial(const Coefficients& values) const {
    Coefficients sum{};
    for (std::size_t i = 0; i < kNodes; ++i)
      for (std::size_t power = 0; power < kNodes; ++power) sum[power] += values[i] * lagrange_[i][power];
    return sum;
  }

 private:
  // 1 at point i, 0 at the others.
  Coefficients lagrangePolynomial(std::size_t i) const {
    Coefficients product{1};
    for (std::size_t j = 0; j < kNodes; ++j) {
      if (j == i) continue;
      const double scale = 1 / (points_[i] - points_[j]);
      for (std::size_t power = kNodes; power-- > 0;)
        product[power] = ((power > 0 ? product[power - 1] : 0) - points_[j] * product[power]) * scale;
    }
    return product;
  }

  Coefficients points_{};
  std::array<Coefficients, kNodes> lagrange_{};
};

double evaluate(const Coefficients& c, double t) {
  double value = c[kNodes - 1];
  for (std::size_t power = kNodes - 1; power-- > 0;) value = value * t + c[power];
  return value;
}

// Upper bound of the distance between two near positions, metres.
double distanceBetween(GeoPoint a, GeoPoint b) {
  const double north = (a.latitude - b.latitude) * kMetresPerDegree;
  const double east =
      (a.longitude - b.longitude) * kMetresPerDegree * std::cos(b.latitude * std::numbers::pi / 180);
  return std::hypot(north, east);
}

}  // namespace

GeodesicPath::GeodesicPath(GeoPoint from, GeoPoint to) : from_(from), to_(to) {
  geod_inverseline(&line_, &wgs84(), from.latitude, from.longitude, to.latitude, to.longitude,
                   GEOD_LATITUDE | GEOD_LONGITUDE | GEOD_DISTANCE_IN);
}

GeoPoint GeodesicPath::unrolled(double metres) const {
  GeoPoint point;
  geod_genposition(&line_, GEOD_LONG_UNROLL, metres, &point.latitude, &point.longitude, nullptr, nullptr,
                   nullptr, nullptr, nullptr, nullptr);
  return point;
}

GeoPoint GeodesicPath::at(double fraction) const {
  GeoPoint point = unrolled(line_.s13 * fraction);
  point.longitude = normalLongitude(point.longitude);
  return point;
}

void GeodesicPath::fill(std::span<GeoPoint> positions) const {
  const std::size_t last = positions.size() - 1;
  if (last > 1) fillStretch(positions, 1, last - 1);
  positions.front() = from_;
  positions[last] = to_;
}

void GeodesicPath::fillExact(std::span<GeoPoint> positions, std::size_t first, std::size_t last) const {
  const double spacing = line_.s13 / static_cast<double>(positions.size() - 1);
  for (std::size_t i = first; i <= last; ++i) {
    positions[i] = unrolled(spacing * static_cast<double>(i));
    positions[i].longitude = normalLongitude(positions[i].longitude);
  }
}

void GeodesicPath::fillStretch(std::span<GeoPoint> positions, std::size_t first, std::size_t last) const {
  if (last - first < kWorthwhile) return fillExact(positions, first, last);
  static const NodeBasis basis;
  const double spacing = line_.s13 / static_cast<double>(positions.size() - 1);
  const double middle = 0.5 * static_cast<double>(first + last);
  const double half = 0.5 * static_cast<double>(last - first);

  // Offsets from the middle keep the polynomials' rounding far below the tolerance.
  const GeoPoint centre = unrolled(spacing * middle);
  Coefficients latitudes, longitudes;
  for (std::size_t i = 0; i < kNodes; ++i) {
    const GeoPoint node = unrolled(spacing * (middle + half * basis.point(i)));
    latitudes[i] = node.latitude - centre.latitude;
    longitudes[i] = node.longitude - centre.longitude;
  }
  const Coefficients latitude = basis.polynomial(latitudes), longitude = basis.polynomial(longitudes);
  const auto between = [&](double t) {
    return GeoPoint{centre.latitude + evaluate(latitude, t), centre.longitude + evaluate(longitude, t)};
  };
  // The error of such a polynomial is greatest at the ends and near its other turning points, one of them the
  // middle.
  const bool good =
      distanceBetween(between(0), centre) < kTolerance &&
      distanceBetween(between(-1), unrolled(spacing * static_cast<double>(first))) < kTolerance &&
      distanceBetween(between(1), unrolled(spacing * static_cast<double>(last))) < kTolerance;
  if (!good) {
    const std::size_t split = first + (last - first) / 2;
    fillStretch(positions, first, split);
    fillStretch(positions, split + 1, last);
    return;
  }
  const double scale = 1 / half;
  for (std::size_t i = first; i <= last; ++i)
    positions[i] = between((static_cast<double>(i) - middle) * scale);

  const double toNormal = normalLongitude(centre.longitude) - centre.longitude;
  const auto [west, east] = std::minmax(positions[first].longitude, positions[last].longitude);
  if (west + toNormal >= -180 && east + toNormal < 180) {
    if (toNormal != 0)
      for (std::size_t i = first; i <= last; ++i) positions[i].longitude += toNormal;
    return;
  }
  for (std::size_t i = first; i <= last; ++i)
    positions[i].longitude = normalLongitude(positions[i].longitude);
}

}  // namespace zel
