// The delta-Bullington method the plain way, for the tests: its formulas one after the other, each over all
// the samples of the path, with the earth's bulge added to every height and nothing taken from anywhere else
// but J and the spherical earth, which have tests of their own.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "grounds.h"
#include "models/ptp/delta_bullington.h"
#include "models/ptp/knife_edge.h"
#include "models/ptp/spherical_earth.h"

namespace zel::ptp {

// Ends in metres above sea level, kilometres, a_e in km.
struct PlainPath {
  std::vector<double> heights;
  double spacing;
  double transmitter;
  double receiver;
  double radius;

  std::size_t last() const { return heights.size() - 1; }
  double distance() const { return static_cast<double>(last()) * spacing; }
  double near(std::size_t i) const { return static_cast<double>(i) * spacing; }
  double far(std::size_t i) const { return distance() - near(i); }
  double direct(double at) const { return (transmitter * (distance() - at) + receiver * at) / distance(); }
  // Of the samples between the ends.
  template <class Value>
  double greatest(const Value& value) const {
    double found = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < last(); ++i) found = std::max(found, value(i));
    return found;
  }
};

inline double plainBullington(const PlainPath& path, double wavelength) {
  const double d = path.distance();
  double edge = 0;
  if (path.last() > 1) {
    const auto raised = [&](std::size_t i) {
      return path.heights[i] + 500 / path.radius * path.near(i) * path.far(i);
    };
    const auto scale = [&](double at) { return std::sqrt(0.002 * d / (wavelength * at * (d - at))); };
    const double direct = (path.receiver - path.transmitter) / d;
    const double forward =
        path.greatest([&](std::size_t i) { return (raised(i) - path.transmitter) / path.near(i); });
    const double backward =
        path.greatest([&](std::size_t i) { return (raised(i) - path.receiver) / path.far(i); });
    if (forward < direct) {
      edge = knifeEdgeLoss(path.greatest(
          [&](std::size_t i) { return (raised(i) - path.direct(path.near(i))) * scale(path.near(i)); }));
    } else if (forward + backward <= 1e-12) {
      edge = knifeEdgeLoss(0);
    } else {
      const double at = (path.receiver - path.transmitter + backward * d) / (forward + backward);
      edge = knifeEdgeLoss((path.transmitter + forward * at - path.direct(at)) * scale(at));
    }
  }
  return edge + (1 - std::exp(-edge / 6)) * (10 + 0.02 * d);
}

inline EffectiveHeights plainEffectiveHeights(const PlainPath& path) {
  const double d = path.distance();
  double v1 = 0;
  double v2 = 0;
  for (std::size_t i = 1; i <= path.last(); ++i) {
    const double at = path.near(i);
    const double before = path.near(i - 1);
    v1 += (at - before) * (path.heights[i] + path.heights[i - 1]);
    v2 += (at - before) * (path.heights[i] * (2 * at + before) + path.heights[i - 1] * (at + 2 * before));
  }
  double first = (2 * v1 * d - v2) / (d * d);
  double second = (v2 - v1 * d) / (d * d);
  const auto above = [&](std::size_t i) { return path.heights[i] - path.direct(path.near(i)); };
  const double highest = path.greatest(above);
  if (highest > 0) {
    const double forward = path.greatest([&](std::size_t i) { return above(i) / path.near(i); });
    const double backward = path.greatest([&](std::size_t i) { return above(i) / path.far(i); });
    first -= highest * forward / (forward + backward);
    second -= highest * backward / (forward + backward);
  }
  return {path.transmitter - std::min(first, path.heights.front()),
          path.receiver - std::min(second, path.heights.back())};
}

inline DiffractionLoss plainDeltaBullington(const PlainPath& path, const Ground& ground, double frequency) {
  const double wavelength = wavelengthOf(frequency);
  const EffectiveHeights heights = plainEffectiveHeights(path);
  PlainPath smooth = path;
  std::fill(smooth.heights.begin(), smooth.heights.end(), 0.0);
  smooth.transmitter = std::max(heights.transmitter, 0.0);
  smooth.receiver = std::max(heights.receiver, 0.0);
  DiffractionLoss loss;
  loss.bullington = plainBullington(path, wavelength);
  loss.smoothBullington = plainBullington(smooth, wavelength);
  loss.spherical = SphericalEarth(ground, frequency, path.radius)
                       .loss(path.distance(), smooth.transmitter, smooth.receiver);
  loss.total = loss.bullington + std::max(loss.spherical - loss.smoothBullington, 0.0);
  return loss;
}

}  // namespace zel::ptp
