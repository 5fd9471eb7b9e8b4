#include "models/longrice/diffraction.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "models/longrice/decibel.h"
#include "models/longrice/parameter_error.h"
#include "models/longrice/terrain_irregularity.h"

namespace zel::longrice {
namespace {

// The scale of the normalised distance x. One publication rounds it to 151.03, Vogler's kilometre form makes
// 150.97; the rounder figure between them differs from either by 0.02 % of the attenuation.
constexpr double kDistanceScale = 151.0;
// dB for each unit of x in the published rounding: 20 log e / 151.03.
constexpr double kAttenuationRate = 0.05751;
constexpr double kGroundTerm = 20;  // C_1(K), dB (6.8)

// |K| for a radius in metres (4.15, 4.16), dimensionless: (k a)^(1/3) and the ground make it.
double groundConstant(double impedance, double cubeRoot) { return 1 / (impedance * cubeRoot); }

// x of a stretch in metres on a sphere of a radius in metres: 151 B(K) (k a)^(1/3) d / a, with B(K) = 1.607 -
// |K| (4.17, 6.2).
double normalisedDistance(double groundConstant, double cubeRoot, double distance, double radius) {
  return (1.607 - groundConstant) * kDistanceScale * cubeRoot * distance / radius;
}

// F where the ground's constant no longer counts.
double farHeightGain(double x) { return 40 * std::log10(x) - 117; }

}  // namespace

double knifeEdgeAttenuation(double v) {
  if (v < 2.4) return 6.02 + (9.11 - 1.27 * v) * v;
  return 12.953 + 20 * std::log10(v);
}

double distanceAttenuation(double x) { return kAttenuationRate * x - decibel(x); }

double heightGain(double x, double k) {
  constexpr double kNear = 200;
  constexpr double kFar = 2000;
  if (x < kNear) {
    const double w = -std::log(k);
    // Far enough out, or over ground that is next to a perfect conductor, the ground's constant does not
    // count.
    if (k < 1e-5 || x * w * w * w > 5495) return x > 1 ? farHeightGain(x) : -117;
    return 2.5e-5 * x * x / k + 20 * std::log10(k) - 15;
  }
  const double gain = distanceAttenuation(x);
  if (x >= kFar) return gain;
  const double w = 0.0134 * x * std::exp(-0.005 * x);
  return (1 - w) * gain + w * farHeightGain(x);
}

Diffraction::Diffraction(const Link& link) : link_(link) {
  const PathTerrain& terrain = link.terrain;
  const double k = link.environment.waveNumber;
  impedance_ = std::abs(link.environment.surfaceImpedance);

  // w (4.11): C keeps low antennas of a given path from being taken for high ones.
  constexpr double kLowAntennas = 10;  // C, m^2
  const double structural = terrain.structuralHeights[0] * terrain.structuralHeights[1];
  const double effective = terrain.effectiveHeights[0] * terrain.effectiveHeights[1];
  heightFactor_ = std::sqrt((effective + kLowAntennas) / (structural + kLowAntennas));
  pathFactor_ = link.horizonDistance + link.horizonAngle / link.environment.effectiveCurvature;

  // A_fo (4.10), from obstacles near the antennas, at the roughness that the smooth-earth horizon distance
  // shows.
  const double roughness = terrainRoughnessOver(link.smoothHorizonDistance, terrain.deltaH);
  clutter_ = std::min(15.0, 5 * std::log10(1 + 4.77e-4 * structural * k * roughness));

  foregroundDistance_ = 0;
  foregroundGain_ = kGroundTerm;
  for (std::size_t j = 0; j < 2; ++j) {
    const double horizon = terrain.horizonDistances[j];
    const double radius = 0.5 * horizon * horizon / terrain.effectiveHeights[j];  // 1 / gamma_j (4.15)
    const double cubeRoot = std::cbrt(k * radius);
    const double constant = groundConstant(impedance_, cubeRoot);
    const double x = normalisedDistance(constant, cubeRoot, horizon, radius);
    foregroundDistance_ += x;
    foregroundGain_ += heightGain(x, constant);
  }
}

double Diffraction::attenuation(double distance) const {
  const double w = roundedEarthWeight(distance);
  return (1 - w) * knifeEdges(distance) + w * roundedEarth(distance) + clutter_;  // (4.9)
}

// A_k (4.12 to 4.14): each horizon an edge, the other's horizon its far end.
double Diffraction::knifeEdges(double distance) const {
  const double beyond = distance - link_.horizonDistance;
  const double theta = link_.angularDistance(distance);
  double sum = 0;
  for (const double horizon : link_.terrain.horizonDistances) {
    const double v =
        theta / 2 *
        std::sqrt(link_.environment.waveNumber / std::numbers::pi * beyond * horizon / (beyond + horizon));
    sum += knifeEdgeAttenuation(v);
  }
  return sum;
}

// A_r (4.18 to 4.20): three spheres, one between the horizons and one before each.
double Diffraction::roundedEarth(double distance) const {
  const double theta = link_.angularDistance(distance);
  const double radius = (distance - link_.horizonDistance) / theta;  // 1 / gamma_0
  const double cubeRoot = std::cbrt(radius * link_.environment.waveNumber);
  const double constant = groundConstant(impedance_, cubeRoot);
  const double x = normalisedDistance(constant, cubeRoot, theta * radius, radius) + foregroundDistance_;
  // Sea at low frequencies and vertical polarization does that too, past horizons that are very near.
  if (!(x > 0))
    throw ParameterError(
        Parameter::kPermittivity,
        "the model's rounded earth has no value for this ground, frequency and polarization "
        "past horizons this near: the ground's constant K is above 1.607; take a higher "
        "frequency, horizontal polarization, or a permittivity further from that of free space");
  return distanceAttenuation(x) - foregroundGain_;
}

// w (4.11): smooth ground diffracts like a sphere, rough ground like edges.
double Diffraction::roundedEarthWeight(double distance) const {
  const double roughness =
      std::min(link_.environment.waveNumber * terrainIrregularityOver(distance, link_.terrain.deltaH),
               1000 * 2 * std::numbers::pi);
  const double q = roughness * (heightFactor_ + pathFactor_ / distance);
  // sqrt(k delta h / 2 pi ...) / 10, with the root of 2 pi taken to the other side.
  constexpr double kScale = 25.1;
  return kScale / (kScale + std::sqrt(q));
}

}  // namespace zel::longrice
