#include "profile/calculation/exact_profile.h"

#include <algorithm>
#include <cmath>

#include "profile/sampling/height_cleanup.h"

namespace zel {
namespace {

bool isPositive(double value) { return std::isfinite(value) && value > 0; }
bool isHeight(double value) { return std::isfinite(value) && value >= 0; }

ExactProfileStatus checkInputs(const ExactProfileRequest& request) {
  if (request.heights.size() < 2) return ExactProfileStatus::kTooFewSamples;
  if (!isPositive(request.distance)) return ExactProfileStatus::kBadDistance;
  if (!isPositive(request.k)) return ExactProfileStatus::kBadEarthFactor;
  if (!isPositive(request.frequency)) return ExactProfileStatus::kBadFrequency;
  if (!isHeight(request.startAntenna) || !isHeight(request.endAntenna))
    return ExactProfileStatus::kBadAntennaHeight;
  return ExactProfileStatus::kOk;
}

// What does not depend on the ground.
std::vector<ExactSample> geometryOf(const ExactProfileRequest& request) {
  const double risePerProduct = 1000.0 / (2.0 * request.k * kMeanEarthRadius);  // m / km^2
  const double wavelength = 300.0 / request.frequency;                          // m
  const double squarePerProduct = wavelength * 1000.0 / request.distance;       // m^2 / km^2
  const std::size_t last = request.heights.size() - 1;
  std::vector<ExactSample> samples(last + 1);
  for (std::size_t i = 0; i <= last; ++i) {
    ExactSample& sample = samples[i];
    // Both distances by the same rule, and their product first, so that swapped ends give the same numbers.
    const double d1 = request.distance * static_cast<double>(i) / static_cast<double>(last);
    const double d2 = request.distance * static_cast<double>(last - i) / static_cast<double>(last);
    const double product = d1 * d2;
    sample.distance = d1;
    sample.rise = product * risePerProduct;
    sample.fresnelRadius = std::sqrt(product * squarePerProduct);
    if (!isMissingHeight(request.heights[i])) sample.ground = request.heights[i];
  }
  return samples;
}

void addClearances(const ExactProfileRequest& request, std::vector<ExactSample>& samples) {
  const double startTop = *samples.front().ground + request.startAntenna;
  const double endTop = *samples.back().ground + request.endAntenna;
  const double last = static_cast<double>(samples.size() - 1);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    ExactSample& sample = samples[i];
    const double along = static_cast<double>(i);
    sample.lineOfSight = (startTop * (last - along) + endTop * along) / last;
    if (sample.ground) sample.clearance = *sample.lineOfSight - *sample.ground - sample.rise;
  }
}

std::optional<WorstObstacle> worstOf(const std::vector<ExactSample>& samples) {
  std::optional<WorstObstacle> worst;
  for (std::size_t i = 1; i + 1 < samples.size(); ++i) {
    const ExactSample& sample = samples[i];
    if (!sample.clearance) continue;
    const double fraction = *sample.clearance / sample.fresnelRadius;
    if (!worst || fraction < worst->fraction)
      worst = WorstObstacle{i, sample.distance, *sample.clearance, fraction};
  }
  return worst;
}

}  // namespace

ClearanceVerdict verdictFor(double fraction) {
  if (fraction >= kClearFraction) return ClearanceVerdict::kClear;
  if (fraction >= 0) return ClearanceVerdict::kMarginal;
  return fraction < 0 ? ClearanceVerdict::kBlocked : ClearanceVerdict::kUnknown;
}

ExactProfile exactProfile(const ExactProfileRequest& request) {
  ExactProfile profile;
  profile.status = checkInputs(request);
  if (profile.status != ExactProfileStatus::kOk) return profile;

  profile.samples = geometryOf(request);
  profile.voids = static_cast<std::int32_t>(std::count_if(profile.samples.begin(), profile.samples.end(),
                                                          [](const ExactSample& s) { return !s.ground; }));
  if (static_cast<std::size_t>(profile.voids) == profile.samples.size()) {
    profile.status = ExactProfileStatus::kAllVoid;
  } else if (!profile.samples.front().ground || !profile.samples.back().ground) {
    profile.status = ExactProfileStatus::kVoidEnd;
  } else {
    addClearances(request, profile.samples);
    profile.worst = worstOf(profile.samples);
    if (profile.worst) profile.verdict = verdictFor(profile.worst->fraction);
    // What lies in a void may be higher; only a path that is blocked by known ground is judged for certain.
    if (profile.voids > 0 && profile.verdict != ClearanceVerdict::kBlocked)
      profile.verdict = ClearanceVerdict::kUnknown;
  }
  return profile;
}

}  // namespace zel
