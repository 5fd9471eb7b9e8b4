#include "models/ptp/growing_ptp_path.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/number_text.h"
#include "models/ptp/input_limits.h"
#include "models/ptp/knife_edge.h"

namespace zel::ptp {
namespace {

constexpr double kNothing = -std::numeric_limits<double>::infinity();

double number(std::size_t count) { return static_cast<double>(count); }

// The straight line from the transmitter's top to a top over the last sample, in metres and samples.
struct Ray {
  double start;
  double slope;
  double at(std::size_t sample) const { return start + slope * number(sample); }
  double lowest(const HeightBlock& block) const { return std::min(at(block.first), at(block.end - 1)); }
};

// The slope back from a top over the last sample to the obstacle that it sees highest, metres a sample.
double steepestBackwards(const BlockedHeights& heights, std::size_t last, double top) {
  return heights.greatest(
      last, kNothing,
      [last, top](const HeightBlock& block) {
        const double rise = block.top - top;
        return rise / number(last - (rise > 0 ? block.end - 1 : block.first));
      },
      [last, top](std::size_t sample, double height) { return (height - top) / number(last - sample); });
}

// Of an obstacle below the ray: minus the square of its distance from the ray, over the product of its
// distances from the ends, in metres and samples. It grows with nu, and spares a root for each obstacle.
double nearness(double height, double product) { return -(height * height) / product; }

// d1 d2 in samples^2.
double product(std::size_t sample, std::size_t last) { return number(sample) * number(last - sample); }

double greatestProduct(const HeightBlock& block, std::size_t last) {
  const std::size_t middle = std::clamp(last / 2, block.first, block.end - 1);
  return product(middle, last);
}

// The greatest nearness of the obstacles, all of which lie below the ray; `least` when none is nearer.
double greatestNearness(const BlockedHeights& heights, const Ray& ray, std::size_t last, double least) {
  return heights.greatest(
      last, least,
      [&ray, last](const HeightBlock& block) {
        return nearness(std::min(block.top - ray.lowest(block), 0.0), greatestProduct(block, last));
      },
      [&ray, last](std::size_t sample, double height) {
        return nearness(std::min(height - ray.at(sample), 0.0), product(sample, last));
      });
}

// How far the obstacles rise above the ray, metres; 0 when none does.
double greatestRise(const BlockedHeights& heights, const Ray& ray, std::size_t last) {
  return heights.greatest(
      last, 0, [&ray](const HeightBlock& block) { return block.top - ray.lowest(block); },
      [&ray](std::size_t sample, double height) { return height - ray.at(sample); });
}

}  // namespace

GrowingPtpPath::GrowingPtpPath(double spacing, double effectiveRadius, double transmitterTop)
    : spacing_(spacing),
      effectiveRadius_(effectiveRadius),
      transmitterTop_(transmitterTop),
      steepestOnPlane_(kNothing),
      steepestOnGround_(kNothing) {
  requireWithin(limits::kSpacing, spacing);
  requireWithin(limits::kEffectiveRadius, effectiveRadius);
  requireWithin(limits::kTransmitterTop, transmitterTop);
}

void GrowingPtpPath::reserve(std::size_t samples) {
  ground_.reserve(samples);
  plane_.reserve(samples);
}

double GrowingPtpPath::distance() const { return number(samples() - 1) * spacing_; }

void GrowingPtpPath::checkElevations(std::span<const float> elevations) const {
  std::size_t sample = samples();
  for (const float elevation : elevations) {
    ++sample;
    const double height = elevation;
    if (!(height >= limits::kElevation.low && height <= limits::kElevation.high))
      requireWithin(limits::kElevation, height, "elevation of sample " + std::to_string(sample));
  }
  if (sample > 1) requireWithin(limits::kDistance, number(sample - 1) * spacing_);
  if (samples() == 0 && !elevations.empty() && !(transmitterTop_ >= elevations.front()))
    throw ParameterError("the transmitter's antenna stands " + generalNumber(transmitterTop_) +
                         " m above sea level, below its ground at " +
                         generalNumber(static_cast<double>(elevations.front())) + " m");
}

void GrowingPtpPath::append(std::span<const float> elevations) {
  checkElevations(elevations);
  for (const float elevation : elevations) append(static_cast<double>(elevation));
}

void GrowingPtpPath::append(double elevation) {
  const std::size_t sample = samples();
  const double distance = number(sample) * spacing_;
  ground_.append(elevation);
  plane_.append(elevation - 500 * distance * distance / effectiveRadius_);
  if (sample == 0) return;
  addToFit(sample);
  // What was the last sample now lies between the ends.
  if (sample > 1) addObstacle(sample - 1);
}

void GrowingPtpPath::addObstacle(std::size_t sample) {
  steepestOnPlane_ = std::max(steepestOnPlane_, (plane_[sample] - transmitterTop_) / number(sample));
  steepestOnGround_ = std::max(steepestOnGround_, (ground_[sample] - transmitterTop_) / number(sample));
}

// The terms of v1 and v2 that end at a sample, for distances of whole spacings.
void GrowingPtpPath::addToFit(std::size_t sample) {
  const double i = number(sample);
  const double height = ground_[sample];
  const double before = ground_[sample - 1];
  fitSum_ += height + before;
  fitMoment_ += height * (3 * i - 1) + before * (3 * i - 2);
}

double GrowingPtpPath::bullingtonNu(double receiverTop, double wavelength) const {
  const std::size_t last = samples() - 1;
  if (last < 2) return kLeastNu;
  // Of the receiver's top on the plane, where its ground was lowered too.
  const double top = plane_.back() + (receiverTop - ground_.back());
  const Ray ray{transmitterTop_, (top - transmitterTop_) / number(last)};  // slope S_tr
  if (steepestOnPlane_ < ray.slope) {
    // nu = -scale sqrt(-nearness)
    const double scale = std::sqrt(0.002 * number(last) / (wavelength * spacing_));
    const double least = nearness(kLeastNu / scale, 1);
    const double nearest = greatestNearness(plane_, ray, last, least);
    return nearest > least ? std::max(-scale * std::sqrt(-nearest), kLeastNu) : kLeastNu;
  }
  const double receiverSlope = steepestBackwards(plane_, last, top);  // S_rim
  const double slopes = steepestOnPlane_ + receiverSlope;
  // Both rays graze along the direct one.
  if (!(slopes > 0)) return 0;
  // d_b in samples. The rays cross between two obstacles, or over one: rounding may not move it further.
  const double crossing =
      std::clamp((top - transmitterTop_ + receiverSlope * number(last)) / slopes, 1.0, number(last - 1));
  const double height = (steepestOnPlane_ - ray.slope) * crossing;  // above the direct ray, metres
  return height *
         knifeEdgeScale(distance(), crossing * spacing_, (number(last) - crossing) * spacing_, wavelength);
}

EffectiveHeights GrowingPtpPath::effectiveHeights(double receiverTop) const {
  const std::size_t last = samples() - 1;
  const double n = number(last);
  // h_stip and h_srip: the ends of the straight line that fits the ground best.
  double first = (2 * fitSum_ * n - fitMoment_) / (n * n);
  double second = (fitMoment_ - fitSum_ * n) / (n * n);

  // Obstacles above the direct ray, over a flat earth here, push the line down, more so at the end that
  // sees them higher.
  const Ray ray{transmitterTop_, (receiverTop - transmitterTop_) / n};
  const double rise = steepestOnGround_ > ray.slope ? greatestRise(ground_, ray, last) : 0;  // h_obs
  if (rise > 0) {
    const double fromTransmitter = std::max(steepestOnGround_ - ray.slope, 0.0);  // alpha_obt
    const double fromReceiver =
        std::max(steepestBackwards(ground_, last, receiverTop) + ray.slope, 0.0);  // alpha_obr
    const double both = fromTransmitter + fromReceiver;
    first -= rise * (fromTransmitter / both);
    second -= rise * (fromReceiver / both);
  }
  // Nor is the smooth earth above the ground at an end: h_st and h_sr.
  return {transmitterTop_ - std::min(first, ground_[0]), receiverTop - std::min(second, ground_.back())};
}

}  // namespace zel::ptp
