#include "models/longrice/path_terrain.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "models/longrice/input_limits.h"
#include "models/longrice/terrain_irregularity.h"

namespace zel::longrice {
namespace {

// The distance of the horizon over a smooth earth from a height, metres (Algorithm 3.5).
double smoothHorizon(double height, double curvature) { return std::sqrt(2 * height / curvature); }

// The horizon over irregular terrain that nothing else is known of: nearer than over a smooth earth.
double irregularHorizon(double height, double curvature, double deltaH) {
  constexpr double kLeastHeight = 5;  // metres
  return smoothHorizon(height, curvature) *
         std::exp(-0.07 * std::sqrt(deltaH / std::max(height, kLeastHeight)));
}

// How far the ground under an antenna stands above the straight ground that the path has there.
double above(double ground, double line) { return std::max(ground - line, 0.0); }

struct Stretch {
  double from;  // metres from the transmitter
  double to;
};

// The straight line through the samples of a stretch. Its first sample is at or before the stretch's
// beginning and its last at or behind the end; a stretch too short for that is widened.
StraightLine groundLine(const SummedHeights& ground, double spacing, const Stretch& stretch) {
  const auto intervals = static_cast<double>(ground.size() - 1);
  double first = std::trunc(std::max(stretch.from / spacing, 0.0));
  double last = intervals - std::trunc(std::max(intervals - stretch.to / spacing, 0.0));
  if (last <= first) {
    first = std::max(first - 1, 0.0);
    last = intervals - std::max(intervals - (last + 1), 0.0);
  }
  return ground.fit(static_cast<std::size_t>(first), static_cast<std::size_t>(last));
}

constexpr std::size_t kTransmitter = 0;
constexpr std::size_t kReceiver = 1;

// An antenna that nothing lifts above the ground ahead has no horizon to speak of. What the fit's rounding
// makes of a height of 0 is far below the least height.
void requireHeightAboveGround(double effectiveHeight, Parameter parameter, const char* which) {
  constexpr double kLeastHeight = 1e-3;  // metres
  if (effectiveHeight >= kLeastHeight) return;
  throw ParameterError(
      parameter, std::string("the ") + which +
                     "'s antenna stands less than 1 mm above the ground, and the ground there does not "
                     "rise above what lies ahead, so that its effective height is 0; raise the antenna");
}

void requireHeightsAboveGround(const PathTerrain& path) {
  requireHeightAboveGround(path.effectiveHeights[kTransmitter], Parameter::kTransmitterHeight, "transmitter");
  requireHeightAboveGround(path.effectiveHeights[kReceiver], Parameter::kReceiverHeight, "receiver");
}

// What lies this near to an antenna does not count as the path's ground, metres.
double nearGround(double structuralHeight, double horizonDistance) {
  return std::min(15 * structuralHeight, 0.1 * horizonDistance);
}

}  // namespace

GrowingPath::GrowingPath(double spacing, double effectiveCurvature, double transmitterHeight)
    : spacing_(spacing),
      effectiveCurvature_(effectiveCurvature),
      transmitterHeight_(transmitterHeight),
      search_(spacing, effectiveCurvature, transmitterHeight) {
  requireWithin(limits::kSpacing, spacing);
  requireWithin(limits::kTransmitterHeight, transmitterHeight);
}

void GrowingPath::reserve(std::size_t samples) {
  ground_.reserve(samples);
  search_.reserve(samples);
}

void GrowingPath::append(std::span<const double> elevations) {
  const auto isHeight = [](double value) {
    return value >= limits::kElevation.low && value <= limits::kElevation.high;
  };
  const auto wrong = std::find_if_not(elevations.begin(), elevations.end(), isHeight);
  if (wrong != elevations.end()) {
    const auto number = samples() + static_cast<std::size_t>(wrong - elevations.begin()) + 1;
    requireWithin(limits::kElevation, *wrong, "elevation of sample " + std::to_string(number));
  }
  const std::size_t grown = samples() + elevations.size();
  if (grown > 1) requireWithin(limits::kDistance, static_cast<double>(grown - 1) * spacing_);
  // In parts: one sum waits for the other's addition, and the search's work fills the time.
  constexpr std::size_t kPart = 32;
  while (!elevations.empty()) {
    const auto part = elevations.first(std::min(kPart, elevations.size()));
    ground_.append(part);
    search_.append(part);
    elevations = elevations.subspan(part.size());
  }
}

PathTerrain GrowingPath::describe(double receiverHeight) const {
  requireWithin(limits::kReceiverHeight, receiverHeight);
  if (samples() < 2)
    throw ParameterError(Parameter::kElevations,
                         "there are " + std::to_string(samples()) + " elevations; a path has at least 2");
  const Horizons horizons = search_.horizons(receiverHeight);
  PathTerrain path;
  path.distance = static_cast<double>(samples() - 1) * spacing_;
  path.structuralHeights = {transmitterHeight_, receiverHeight};
  path.horizonDistances = {horizons.transmitter.distance, horizons.receiver.distance};
  path.horizonAngles = {horizons.transmitter.angle, horizons.receiver.angle};
  if (horizons.lineOfSight)
    path.mode = PathMode::kLineOfSight;
  else
    path.mode = horizons.transmitter.sample == horizons.receiver.sample ? PathMode::kSingleHorizon
                                                                        : PathMode::kDoubleHorizon;
  path.deltaH = terrainIrregularity(
      ground_.heights(), spacing_,
      nearGround(path.structuralHeights[kTransmitter], path.horizonDistances[kTransmitter]),
      path.distance - nearGround(path.structuralHeights[kReceiver], path.horizonDistances[kReceiver]));
  if (path.mode == PathMode::kLineOfSight)
    describeFreePath(path);
  else
    describeObstructedPath(path);
  return path;
}

// The horizons of a path within sight are those that its terrain would give to longer paths.
void GrowingPath::describeFreePath(PathTerrain& path) const {
  const StraightLine line = groundLine(
      ground_, spacing_,
      {nearGround(path.structuralHeights[kTransmitter], path.horizonDistances[kTransmitter]),
       path.distance - nearGround(path.structuralHeights[kReceiver], path.horizonDistances[kReceiver])});
  const std::size_t last = samples() - 1;
  path.effectiveHeights = {
      path.structuralHeights[kTransmitter] + above(ground_[0], line.at(0)),
      path.structuralHeights[kReceiver] + above(ground_[last], line.at(static_cast<double>(last)))};
  requireHeightsAboveGround(path);
  const auto setHorizonDistances = [this, &path] {
    for (std::size_t j : {kTransmitter, kReceiver})
      path.horizonDistances[j] = irregularHorizon(path.effectiveHeights[j], effectiveCurvature_, path.deltaH);
  };
  setHorizonDistances();
  const double reach = path.horizonDistances[kTransmitter] + path.horizonDistances[kReceiver];
  if (reach <= path.distance) {
    // They do see each other: the effective heights are too low.
    const double ratio = path.distance / reach;
    for (double& height : path.effectiveHeights) height *= ratio * ratio;
    setHorizonDistances();
  }
  for (std::size_t j : {kTransmitter, kReceiver}) {
    const double height = path.effectiveHeights[j];
    const double smooth = smoothHorizon(height, effectiveCurvature_);
    path.horizonAngles[j] =
        (0.65 * path.deltaH * (smooth / path.horizonDistances[j] - 1) - 2 * height) / smooth;
  }
}

// The ground of an obstructed path is what lies between each antenna and its own horizon.
void GrowingPath::describeObstructedPath(PathTerrain& path) const {
  constexpr double kForeground = 0.9;  // of the distance to the horizon
  const double near = nearGround(path.structuralHeights[kTransmitter], path.horizonDistances[kTransmitter]);
  const double far =
      path.distance - nearGround(path.structuralHeights[kReceiver], path.horizonDistances[kReceiver]);
  const StraightLine transmitterGround =
      groundLine(ground_, spacing_, {near, kForeground * path.horizonDistances[kTransmitter]});
  const StraightLine receiverGround =
      groundLine(ground_, spacing_, {path.distance - kForeground * path.horizonDistances[kReceiver], far});
  const std::size_t last = samples() - 1;
  path.effectiveHeights = {
      path.structuralHeights[kTransmitter] + above(ground_[0], transmitterGround.at(0)),
      path.structuralHeights[kReceiver] + above(ground_[last], receiverGround.at(static_cast<double>(last)))};
  requireHeightsAboveGround(path);
}

double meanElevation(std::span<const double> elevations) {
  const std::size_t intervals = elevations.size() - 1;
  const auto tenth = static_cast<std::size_t>(0.1 * static_cast<double>(intervals));
  const std::span<const double> middle = elevations.subspan(tenth, intervals - 2 * tenth + 1);
  return std::accumulate(middle.begin(), middle.end(), 0.0) / static_cast<double>(middle.size());
}

}  // namespace zel::longrice
