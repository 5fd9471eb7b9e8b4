#include "models/longrice/troposcatter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "models/longrice/decibel.h"

namespace zel::longrice {
namespace {

constexpr double kLargeGain = 15;  // dB

// H_00 for both antennas with almost no scatter efficiency: where eta is below 1 the gain is between it and
// H_0 at 1 (Technical Note 101, 9.6).
double gainWithoutEfficiency(double r1, double r2) {
  const double first = 1 + std::numbers::sqrt2 / r1;
  const double second = 1 + std::numbers::sqrt2 / r2;
  const double factor = first * second;
  const double sum = r1 + r2;
  return decibel(factor * factor * sum / (sum + 2 * std::numbers::sqrt2));
}

// eta_s: the scatter efficiency where the horizon rays cross at a height in metres (4.67).
double scatterEfficiency(double height, double refractivity) {
  const double atmosphere = 0.031 - 2.32e-3 * refractivity + 5.67e-6 * refractivity * refractivity;
  const double ratio = std::min(1.7, height / 8e3);
  const double cube = ratio * ratio * ratio;
  return height / 1.7556e3 * (1 + atmosphere * std::exp(-cube * cube));
}

// H_0 (4.64), of both antennas.
std::optional<double> pathFrequencyGain(const Link& link, double distance) {
  const PathTerrain& terrain = link.terrain;
  // The horizon rays' angle here is that of the antennas as they are, which may be below the ground's curve
  // (4.61).
  const double theta =
      terrain.horizonAngles[0] + terrain.horizonAngles[1] + link.environment.effectiveCurvature * distance;
  const double r1 = 2 * link.environment.waveNumber * theta * terrain.effectiveHeights[0];
  const double r2 = 2 * link.environment.waveNumber * theta * terrain.effectiveHeights[1];
  constexpr double kUndefined = 0.2;
  if (r1 < kUndefined && r2 < kUndefined) return std::nullopt;

  // The path is looked at from the side of the nearer horizon; s is its asymmetry, q that of the heights.
  const double difference = terrain.horizonDistances[0] - terrain.horizonDistances[1];
  const double offset = std::abs(difference);
  const double heightRatio = difference < 0 ? terrain.effectiveHeights[0] / terrain.effectiveHeights[1]
                                            : terrain.effectiveHeights[1] / terrain.effectiveHeights[0];
  const double asymmetry = (distance - offset) / (distance + offset);
  const double q = std::clamp(heightRatio / asymmetry, 0.1, 10.0);
  const double s = std::max(0.1, asymmetry);
  // z_0: the height at which the horizon rays cross (4.66), metres.
  const double crossing = (distance - offset) * (distance + offset) * theta * 0.25 / distance;

  const double efficiency = scatterEfficiency(crossing, link.environment.surfaceRefractivity);
  const double eta = std::max(efficiency, 1.0);
  double gain = (frequencyGain(r1, eta) + frequencyGain(r2, eta)) / 2;
  // Delta H_0: unequal antennas lose more, at most as much again (Technical Note 101, 9.5).
  gain += std::min(gain, 6 * (0.6 - std::log10(eta)) * std::log10(s) * std::log10(q));
  gain = std::max(gain, 0.0);
  if (efficiency < 1) gain = efficiency * gain + (1 - efficiency) * gainWithoutEfficiency(r1, r2);
  return gain;
}

// The same beside a point farther away, which has the better approximation when both are large.
std::optional<double> steadyFrequencyGain(const Link& link, double distance, std::optional<double> farther) {
  if (farther && *farther > kLargeGain) return farther;
  const std::optional<double> gain = pathFrequencyGain(link, distance);
  return gain && farther && *gain > kLargeGain ? farther : gain;
}

}  // namespace

double scatterDistanceFunction(double thetaD) {
  struct Piece {
    double constant;   // dB
    double linear;     // dB/m
    double logarithm;  // dB a decade
  };
  static constexpr Piece kNear{133.4, 0.332e-3, -10};
  static constexpr Piece kMiddle{104.6, 0.212e-3, -2.5};
  static constexpr Piece kFar{71.8, 0.157e-3, 5};
  const Piece& piece = thetaD <= 10e3 ? kNear : thetaD <= 70e3 ? kMiddle : kFar;
  return piece.constant + piece.linear * thetaD + piece.logarithm * std::log10(thetaD);
}

double frequencyGain(double r, double eta) {
  static constexpr std::array<double, 5> kFourth{25, 80, 177, 395, 705};
  static constexpr std::array<double, 5> kSecond{24, 45, 68, 80, 105};
  const double inverse = 1 / (r * r);
  const auto at = [inverse](std::size_t efficiency) {
    return decibel(1 + (kSecond[efficiency - 1] + kFourth[efficiency - 1] * inverse) * inverse);
  };
  const double clamped = std::clamp(eta, 1.0, 5.0);
  const auto below = static_cast<std::size_t>(clamped);
  const double fraction = clamped - static_cast<double>(below);
  return fraction == 0 ? at(below) : (1 - fraction) * at(below) + fraction * at(below + 1);
}

std::optional<Scatter> troposcatter(const Link& link, double distance,
                                    std::optional<double> fartherFrequencyGain) {
  const std::optional<double> gain = steadyFrequencyGain(link, distance, fartherFrequencyGain);
  if (!gain) return std::nullopt;
  constexpr double kReferenceRefractivity = 301;  // N-units
  constexpr double kRefractivityDistance = 40e3;  // D_0, metres
  const double theta = link.angularDistance(distance);
  const double square = theta * theta;
  const double refraction = -0.1 * (link.environment.surfaceRefractivity - kReferenceRefractivity) *
                            std::exp(-theta * distance / kRefractivityDistance);
  // A_scat (4.63): 47.7 m is the wave number's length.
  return Scatter{decibel(kFrequencyOfUnitWaveNumber * link.environment.waveNumber * square * square) +
                     scatterDistanceFunction(theta * distance) + refraction + *gain,
                 *gain};
}

}  // namespace zel::longrice
