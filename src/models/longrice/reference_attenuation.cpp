#include "models/longrice/reference_attenuation.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "models/longrice/diffraction.h"
#include "models/longrice/line_of_sight.h"
#include "models/longrice/troposcatter.h"

namespace zel::longrice {
namespace {

// X_ae: the distance scale of diffraction, metres (4.2).
double diffractionScale(const Environment& environment) {
  return 1 /
         std::cbrt(environment.waveNumber * environment.effectiveCurvature * environment.effectiveCurvature);
}

// A_ed + m_d d, through the diffraction at two distances well beyond the horizons (4.3 to 4.8).
AttenuationLine diffractionLine(const Link& link) {
  const double scale = diffractionScale(link.environment);
  const double d3 = std::max(link.smoothHorizonDistance, link.horizonDistance + 1.3787 * scale);
  const double d4 = d3 + 2.7574 * scale;
  const Diffraction diffraction(link);
  const double a3 = diffraction.attenuation(d3);
  const double a4 = diffraction.attenuation(d4);
  const double slope = (a4 - a3) / (d4 - d3);
  return {a3 - slope * d3, slope};
}

// A_el + K_1 d + K_2 ln(d / d_Ls).
struct LineOfSightCurve {
  double atHorizon = 0;    // A_2, at the smooth-earth horizon distance, dB
  double horizon = 0;      // d_Ls, metres
  double linear = 0;       // K_1, dB/m
  double logarithmic = 0;  // K_2, dB
  double at(double distance) const {
    return atHorizon + linear * (distance - horizon) + logarithmic * std::log(distance / horizon);
  }
};

// The curve meets the diffraction at d_Ls and the two rays at d_0 and d_1, as far as coefficients of 0 or
// more allow (4.27 to 4.42).
LineOfSightCurve lineOfSightCurve(const Link& link, const AttenuationLine& diffraction) {
  const PathTerrain& terrain = link.terrain;
  const double d2 = link.smoothHorizonDistance;
  const double a2 = diffraction.at(d2);
  LineOfSightCurve curve{a2, d2, 0, 0};

  double d0 = 1.908 * link.environment.waveNumber * terrain.effectiveHeights[0] * terrain.effectiveHeights[1];
  double d1 = 0;
  if (diffraction.atZero >= 0) {
    d0 = std::min(d0, 0.5 * link.horizonDistance);
    d1 = d0 + 0.25 * (link.horizonDistance - d0);
  } else {
    d1 = std::max(-diffraction.atZero / diffraction.slope, 0.25 * link.horizonDistance);
  }
  const double a1 = lineOfSightAttenuation(link, diffraction, d1);

  if (d0 < d1) {
    const double a0 = lineOfSightAttenuation(link, diffraction, d0);
    const double logarithm20 = std::log(d2 / d0);
    curve.logarithmic = std::max(0.0, ((d2 - d0) * (a1 - a0) - (d1 - d0) * (a2 - a0)) /
                                          ((d2 - d0) * std::log(d1 / d0) - (d1 - d0) * logarithm20));
    if (diffraction.atZero >= 0 || curve.logarithmic > 0) {
      curve.linear = (a2 - a0 - curve.logarithmic * logarithm20) / (d2 - d0);
      if (curve.linear >= 0) return curve;
      curve.linear = 0;
      curve.logarithmic = std::max(a2 - a0, 0.0) / logarithm20;
      if (curve.logarithmic == 0) curve.linear = diffraction.slope;
      return curve;
    }
  }
  curve.logarithmic = 0;
  curve.linear = std::max(a2 - a1, 0.0) / (d2 - d1);
  if (curve.linear == 0) curve.linear = diffraction.slope;
  return curve;
}

// The line of scatter, and the distance d_x from which it counts.
struct ScatterLine {
  AttenuationLine line;
  double from = 0;  // metres
};

// A_es + m_s d, through the scatter 200 and 400 km beyond the horizons (4.52 to 4.59). Without a value where
// scatter is not defined: diffraction then goes on.
std::optional<ScatterLine> scatterLine(const Link& link, const AttenuationLine& diffraction) {
  constexpr double kStep = 200e3;  // D_s, metres
  const double d5 = link.horizonDistance + kStep;
  const double d6 = d5 + kStep;
  const std::optional<Scatter> at6 = troposcatter(link, d6);
  if (!at6) return std::nullopt;
  const std::optional<Scatter> at5 = troposcatter(link, d5, at6->frequencyGain);
  if (!at5) return std::nullopt;

  const double slope = (at6->attenuation - at5->attenuation) / kStep;
  const double megahertz = kFrequencyOfUnitWaveNumber * link.environment.waveNumber;
  const double nearest =
      link.horizonDistance + 0.3 * diffractionScale(link.environment) * std::log(megahertz);
  const double crossing = (at5->attenuation - diffraction.atZero - slope * d5) / (diffraction.slope - slope);
  const double from = std::max({link.smoothHorizonDistance, nearest, crossing});
  return ScatterLine{{(diffraction.slope - slope) * from + diffraction.atZero, slope}, from};
}

}  // namespace

ReferenceAttenuation referenceAttenuation(const Link& link, double distance) {
  const AttenuationLine diffraction = diffractionLine(link);
  ReferenceAttenuation result;
  if (distance < link.smoothHorizonDistance) {
    result.method = PropagationMethod::kLineOfSight;
    result.attenuation = lineOfSightCurve(link, diffraction).at(distance);
  } else {
    const std::optional<ScatterLine> scatter = scatterLine(link, diffraction);
    const bool scattered = scatter && distance > scatter->from;
    result.method = scattered ? PropagationMethod::kTroposcatter : PropagationMethod::kDiffraction;
    result.attenuation = scattered ? scatter->line.at(distance) : diffraction.at(distance);
  }
  result.attenuation = std::max(result.attenuation, 0.0);
  return result;
}

ReferenceAttenuation referenceAttenuation(const Link& link) {
  return referenceAttenuation(link, link.terrain.distance);
}

}  // namespace zel::longrice
