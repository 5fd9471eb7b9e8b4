// The public profile of a path: settings and terrain of the component, exact geometry of the calculation.
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "component/api/path_context.h"
#include "component/api/path_request.h"
#include "component/api/ready_component.h"
#include "component/api/terrain_provenance.h"
#include "foundation/number_text.h"
#include "profile/calculation/exact_profile.h"
#include "profile/path/path_geometry.h"
#include "profile/path_loss/free_space_loss.h"
#include "zel/path_profile.h"

namespace zel {
namespace {

PathVerdict publicVerdict(ClearanceVerdict verdict) {
  switch (verdict) {
    case ClearanceVerdict::kClear:
      return PathVerdict::kClear;
    case ClearanceVerdict::kMarginal:
      return PathVerdict::kMarginal;
    case ClearanceVerdict::kBlocked:
      return PathVerdict::kBlocked;
    case ClearanceVerdict::kUnknown:
      break;
  }
  return PathVerdict::kUnknown;
}

class ProfileComputation {
 public:
  // The terrain is sampled unless another computation between the same stations has left its samples.
  ProfileComputation(const PathContext& context, const PathProfileRequest& request,
                     std::optional<SampleResult>& samples)
      : context_(context),
        request_(request),
        inputs_(context.settings, profile_.notes, profile_.notes),
        samples_(samples) {}

  PathProfile run() {
    try {
      takeInputs();
      layOut();
      sample();
      evaluate();
    } catch (const Refusal& refusal) {
      fail(refusal.status, refusal.reason);
    }
    return std::move(profile_);
  }

 private:
  void fail(int status, const std::string& reason) {
    profile_ = {};
    profile_.status = status;
    profile_.error = reason;
  }

  void takeInputs() {
    start_ = checkedPosition(request_.from, "start");
    end_ = checkedPosition(request_.to, "end");
    profile_.startHeightM = inputs_.antennaHeight(request_.fromHeight, settings::kPrfHtL, "start");
    profile_.endHeightM = inputs_.antennaHeight(request_.toHeight, settings::kPrfHtR, "end");
    profile_.k = inputs_.positive(request_.k, settings::kPrfCrv, "effective-earth factor k", "");
    profile_.frequencyMhz = inputs_.positive(request_.frequencyMhz, settings::kPrfFreq, "frequency", " MHz");
    profile_.wavelengthM = 300 / profile_.frequencyMhz;
  }

  void layOut() {
    const CalculationSettings density = inputs_.density();
    const PathGeometry path = inputs_.laidOut(density, [&] {
      return computePathGeometry(*context_.geodesy, start_, end_, density.pointsPerKm, density.maxPoints);
    });
    if (path.underRange)
      throw Refusal{"the stations are only " + formatNumber(path.distance, "0.000") +
                    " km apart; a profile needs at least 0.2 km"};
    profile_.distanceKm = path.distance;
    profile_.bearingDeg = path.azimuth;
    profile_.points = path.intervals + 1;
    profile_.spacingM = path.spacing * 1000;
    inputs_.noteLimit(density, path.distance, path.intervals, "intervals");
  }

  void sample() {
    SampleRequest request;
    request.from = start_;
    request.to = end_;
    request.count = profile_.points;
    request.method = inputs_.method();
    request.source = inputs_.source();
    if (!samples_) samples_ = context_.terrain->sample(request);
    const SampleResult& terrain = *samples_;
    if (terrain.report.status != kSamplerOk) throw Refusal{terrain.report.reason, terrain.report.status};
    profile_.terrain = terrainProvenance(terrain.report, context_.datum);
    refuseImpossibleHeights(SampleArray<float>(terrain.heights), terrain.positions);
  }

  void evaluate() {
    ExactProfileRequest request;
    request.distance = profile_.distanceKm;
    request.heights = samples_->heights;
    request.startAntenna = profile_.startHeightM;
    request.endAntenna = profile_.endHeightM;
    request.k = profile_.k;
    request.frequency = profile_.frequencyMhz;
    const ExactProfile exact = exactProfile(request);
    if (exact.status == ExactProfileStatus::kVoidEnd || exact.status == ExactProfileStatus::kAllVoid)
      throw Refusal{"the terrain has no height under " +
                    std::string(exact.status == ExactProfileStatus::kAllVoid ? "the whole path"
                                : exact.samples.front().ground               ? "the end"
                                                                             : "the start") +
                    ", so there is no line of sight; move the station or add terrain"};
    if (exact.status != ExactProfileStatus::kOk)
      throw Refusal{
          "the path cannot be profiled with these inputs; see that heights, k and frequency are in range"};
    makeRoom(exact.samples.size());
    for (std::size_t i = 0; i < exact.samples.size(); ++i)
      addSample(exact.samples[i], samples_->positions[i]);
    addStatistics();
    profile_.freeSpaceDb = static_cast<double>(
        FreeSpaceLoss(static_cast<float>(profile_.frequencyMhz), static_cast<float>(profile_.distanceKm)));
    profile_.verdict = publicVerdict(exact.verdict);
    if (exact.worst)
      profile_.worst = {exact.worst->distance, profile_.positions[exact.worst->sample],
                        profile_.groundM[exact.worst->sample], exact.worst->clearance,
                        exact.worst->fraction * 100};
    if (exact.voids > 0)
      profile_.notes.push_back(std::to_string(exact.voids) +
                               " samples have no height; they are left out of statistics and clearance");
  }

  void makeRoom(std::size_t samples) {
    for (std::vector<double>* list : {&profile_.distancesKm, &profile_.groundM, &profile_.riseM,
                                      &profile_.lineOfSightM, &profile_.fresnel1M, &profile_.clearanceM})
      list->reserve(samples);
    profile_.positions.reserve(samples);
  }

  void addSample(const ExactSample& sample, GeoPoint position) {
    constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
    profile_.distancesKm.push_back(sample.distance);
    profile_.positions.push_back({position.latitude, position.longitude});
    profile_.groundM.push_back(sample.ground.value_or(kNothing));
    profile_.riseM.push_back(sample.rise);
    profile_.lineOfSightM.push_back(sample.lineOfSight.value_or(kNothing));
    profile_.fresnel1M.push_back(sample.fresnelRadius);
    profile_.clearanceM.push_back(sample.clearance.value_or(kNothing));
  }

  void addStatistics() {
    const GroundSummary ground = summaryOf(profile_.groundM);
    profile_.startGroundM = ground.start;
    profile_.endGroundM = ground.end;
    profile_.minimumM = ground.minimum;
    profile_.maximumM = ground.maximum;
    profile_.averageM = ground.average;
  }

  const PathContext& context_;
  const PathProfileRequest& request_;
  PathProfile profile_;
  PathInputs inputs_;
  GeoPoint start_, end_;
  std::optional<SampleResult>& samples_;
};

}  // namespace

const char* verdictText(PathVerdict verdict) {
  switch (verdict) {
    case PathVerdict::kClear:
      return "clear";
    case PathVerdict::kMarginal:
      return "marginal";
    case PathVerdict::kBlocked:
      return "blocked";
    case PathVerdict::kUnknown:
      break;
  }
  return "unknown";
}

PathProfile computePathProfile(const PathContext& context, const PathProfileRequest& request) {
  std::optional<SampleResult> samples;
  return ProfileComputation(context, request, samples).run();
}

std::vector<PathProfile> computePathProfiles(const PathContext& context, const PathProfileRequest& request,
                                             const std::vector<std::optional<double>>& factors) {
  std::optional<SampleResult> samples;
  std::vector<PathProfile> profiles;
  profiles.reserve(factors.size());
  PathProfileRequest each = request;
  for (const std::optional<double>& k : factors) {
    each.k = k;
    profiles.push_back(ProfileComputation(context, each, samples).run());
  }
  return profiles;
}

PathProfile computePathProfile(const PathProfileRequest& request) {
  return accessing(
      [&](Component& component) { return computePathProfile(presentContext(component), request); });
}

}  // namespace zel
