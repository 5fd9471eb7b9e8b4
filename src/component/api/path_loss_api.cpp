// The public loss of a path: the inputs as the profile takes them, the number as the component's own
// calculation makes it.
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "component/api/model_inputs.h"
#include "component/api/path_context.h"
#include "component/api/path_request.h"
#include "component/api/public_model.h"
#include "component/api/ready_component.h"
#include "component/api/terrain_provenance.h"
#include "foundation/number_text.h"
#include "models/longrice/parameter_error.h"
#include "profile/path/path_geometry.h"
#include "profile/path_loss/free_space_loss.h"
#include "profile/path_loss/modeled_loss.h"
#include "profile/sampling/height_cleanup.h"
#include "profile/sampling/sampler_messages.h"
#include "profile/sampling/terrain_sampling.h"
#include "zel/path_loss.h"

namespace zel {
namespace {

constexpr std::int16_t kFewestSamples = 2;

// The ground from one station to the other, as the component samples it.
struct Leg {
  double distance = 0;         // km
  double azimuth = 0;          // degrees
  std::int16_t points = 0;     // samples, both ends included
  SampleArray<float> raw;      // metres, voids included
  SampleArray<float> cleaned;  // metres, as the model is given them
};

class LossComputation {
 public:
  LossComputation(const PathContext& context, const PathLossRequest& request)
      : context_(context), request_(request), inputs_(context.settings, loss_.notes, loss_.warnings) {}

  PathLoss run() {
    try {
      takeInputs();
      const Leg forward = sampled(start_, end_);
      describePath(forward);
      describeGround(forward);
      takeParameters();
      if (isModelFrequency(frequency_))
        computeModel(forward);
      else
        loss_.warnings.push_back("the frequency of " + generalNumber(loss_.frequencyMhz) +
                                 " MHz is outside 20 to 20000 MHz, where the model is not asked: there is no "
                                 "modeled loss (GetPathLoss gives 0)");
    } catch (const Refusal& refusal) {
      fail(refusal.status, refusal.reason);
    } catch (const longrice::ParameterError& error) {
      fail(kRequestRefused, inWords(error));
    }
    return std::move(loss_);
  }

 private:
  void fail(int status, const std::string& reason) {
    loss_ = {};
    loss_.status = status;
    loss_.error = reason;
  }

  // Where the value came from a setting, the caller can only change it there.
  std::string inWords(const longrice::ParameterError& error) const {
    const Setting* setting = settingBehind(error.parameter());
    return (reversed_ ? "from the end to the start: " : "") +
           (setting == nullptr ? std::string() : inputs_.settingInWords(*setting) + ": ") +
           error.description();
  }

  // Null for what does not come from a setting. A frequency that the model refuses does not get as far as it.
  const Setting* settingBehind(longrice::Parameter parameter) const {
    using longrice::Parameter;
    const auto unlessGiven = [](const std::optional<double>& given, const Setting& setting) {
      return given ? nullptr : &setting;
    };
    const bool isStart = (parameter == Parameter::kTransmitterHeight) != reversed_;
    switch (parameter) {
      case Parameter::kPermittivity:
        return &settings::kItmPermittivity;
      case Parameter::kConductivity:
        return &settings::kItmConductivity;
      case Parameter::kSurfaceRefractivity:
        return &settings::kItmRefractivity;
      case Parameter::kTransmitterHeight:
      case Parameter::kReceiverHeight:
        return isStart ? unlessGiven(request_.fromHeight, settings::kPrfHtL)
                       : unlessGiven(request_.toHeight, settings::kPrfHtR);
      default:
        return nullptr;
    }
  }

  void takeInputs() {
    start_ = checkedPosition(request_.from, "start");
    end_ = checkedPosition(request_.to, "end");
    heights_ = {inputs_.antennaHeight(request_.fromHeight, settings::kPrfHtL, "start"),
                inputs_.antennaHeight(request_.toHeight, settings::kPrfHtR, "end")};
    frequency_ =
        static_cast<float>(inputs_.positive(request_.frequencyMhz, settings::kPrfFreq, "frequency", " MHz"));
    if (!request_.frequencyMhz && !inputs_.isStored(settings::kPrfFreq))
      loss_.notes.push_back("a host's GetPathLoss takes " +
                            std::string(settings::kPrfFreq.defaultFor(SettingsUser::kWindowless)) +
                            " MHz when no frequency is stored");
    density_ = inputs_.density();
    requireRoomForAPath();
    method_ = inputs_.method();
    source_ = inputs_.source();
    loss_.from = {start_.latitude, start_.longitude};
    loss_.to = {end_.latitude, end_.longitude};
    loss_.startHeightM = heights_[0];
    loss_.endHeightM = heights_[1];
    loss_.frequencyMhz = decimalValue(frequency_);
  }

  void requireRoomForAPath() const {
    if (density_.maxPoints < kFewestSamples)
      throw Refusal{inputs_.settingInWords(settings::kPrfMax) + " is " + std::to_string(density_.maxPoints) +
                    " and leaves the path fewer than 2 points; set 1000 to 5000"};
  }

  // The first leg is the forward one, whose terrain is reported.
  Leg sampled(GeoPoint from, GeoPoint to) {
    Leg leg;
    const PathGeometry path = measurePath(*context_.geodesy, from, to);
    leg.distance = path.distance;
    leg.azimuth = path.azimuth;
    leg.points = inputs_.laidOut(density_, [&] { return modelPoints(density_, leg.distance); });
    // The sampler would say that it was asked for too few.
    if (leg.points < kFewestSamples)
      throw Refusal{"the stations are only " + formatNumber(leg.distance, "0.0000") +
                        " km apart, too near for two samples at " + std::to_string(density_.pointsPerKm) +
                        " points a kilometre (" + nameOf(settings::kPrfPer) +
                        "); move them apart or set more points",
                    kSamplerUnderRange};

    const bool first = sampler_ == nullptr;
    if (first) sampler_ = context_.makeSampler();
    RawSamples samples = sampleTerrain(*sampler_, context_.terrain,
                                       stationToStationRequest(from, to, leg.points, method_, source_));
    const SamplingReport& report = sampler_->report();
    if (samplerMessage(samples.status) != nullptr) throw Refusal{report.reason, samples.status};
    if (first) loss_.terrain = terrainProvenance(report, context_.datum);
    leg.raw = std::move(samples.heights);
    refuseImpossibleHeights(leg.raw, sampler_->positions());
    leg.cleaned = cleanedHeights(leg.raw).heights;
    return leg;
  }

  void describePath(const Leg& leg) {
    loss_.distanceKm = leg.distance;
    loss_.bearingDeg = leg.azimuth;
    loss_.points = leg.points;
    loss_.spacingM = leg.distance / (leg.points - 1) * 1000;
    loss_.modelSpacingM = static_cast<double>(modelSpacing(leg.distance, leg.points));
    loss_.freeSpaceDb = static_cast<double>(FreeSpaceLoss(frequency_, static_cast<float>(leg.distance)));
    inputs_.noteLimit(density_, leg.distance, leg.points, "points");
    loss_.notes.push_back("the samples lie " + formatNumber(loss_.spacingM, "0.0##") +
                          " m apart; the model is told " + formatNumber(loss_.modelSpacingM, "0.0##") +
                          " m, the distance divided by the number of points, and so sees a path of " +
                          formatNumber(loss_.modelSpacingM * (leg.points - 1) / 1000, "0.000") +
                          " km, shorter by one part in " + std::to_string(leg.points));
  }

  void describeGround(const Leg& leg) {
    std::vector<double> ground;
    ground.reserve(leg.raw.span().size());
    int missing = 0;
    for (const float height : leg.raw.span()) {
      const bool known = !isMissingHeight(height);
      ground.push_back(known ? static_cast<double>(height) : std::numeric_limits<double>::quiet_NaN());
      missing += known ? 0 : 1;
    }
    if (missing == leg.points)
      throw Refusal{
          "the terrain has no height under the whole path, so there is no ground to compute a loss "
          "over; move the stations or add terrain"};
    const GroundSummary summary = summaryOf(ground);
    loss_.startGroundM = summary.start;
    loss_.endGroundM = summary.end;
    loss_.minimumM = summary.minimum;
    loss_.maximumM = summary.maximum;
    loss_.averageM = summary.average;

    const std::vector<std::string>& ofTerrain = loss_.terrain.warnings;
    loss_.warnings.insert(loss_.warnings.end(), ofTerrain.begin(), ofTerrain.end());
    if (missing > 0)
      loss_.warnings.push_back(std::to_string(missing) + " of " + std::to_string(ground.size()) +
                               " samples have no height and were taken as 0 m above sea level: the modeled "
                               "loss is that of a path through them");
    warnOfEnd(summary.start, "start");
    warnOfEnd(summary.end, "end");
  }

  void warnOfEnd(double ground, const char* which) {
    if (std::isnan(ground))
      loss_.warnings.push_back("the terrain has no height under the " + std::string(which) +
                               ": its antenna was taken to stand at sea level");
  }

  void takeParameters() {
    loss_.model = takeModelInputs(inputs_, SettingsUser::kWindowless, loss_.notes, loss_.warnings);
    parameters_ =
        modelParameters(readItmSettings(inputs_.settings(), SettingsUser::kWindowless), context_.normalTable);
    noteDeviates(parameters_, loss_.model, loss_.notes);
  }

  ModelPath modelPath(const Leg& leg, std::array<std::int16_t, 2> heights) const {
    return {leg.cleaned.span(), modelSpacing(leg.distance, leg.points), heights, frequency_};
  }

  void computeModel(const Leg& forward) {
    const ModelPath path = modelPath(forward, heights_);
    const longrice::Prediction prediction = modelPrediction(path, parameters_);
    loss_.mode = publicMode(prediction.terrain().mode);
    loss_.method = publicMethod(prediction.reference().method);
    loss_.terrainIrregularityM = prediction.terrain().deltaH;
    loss_.effectiveHeightsM = prediction.terrain().effectiveHeights;
    loss_.horizonDistancesM = prediction.terrain().horizonDistances;
    loss_.horizonAnglesRad = prediction.terrain().horizonAngles;
    loss_.referenceAttenuationDb = prediction.reference().attenuation;
    for (std::string& text : prediction.warningTexts()) loss_.warnings.push_back(std::move(text));
    loss_.modeledDb = static_cast<double>(modeledLoss(path, parameters_));
    if (!request_.wantReverse) return;
    reversed_ = true;
    // Sampled anew, as GetPathLoss samples it for the stations the other way round.
    const Leg reverse = sampled(end_, start_);
    loss_.reverseModeledDb =
        static_cast<double>(modeledLoss(modelPath(reverse, {heights_[1], heights_[0]}), parameters_));
  }

  const PathContext& context_;
  const PathLossRequest& request_;
  PathLoss loss_;
  PathInputs inputs_;
  std::unique_ptr<TerrainSampler> sampler_;
  GeoPoint start_, end_;
  std::array<std::int16_t, 2> heights_{};  // metres above ground
  float frequency_ = 0;                    // MHz
  CalculationSettings density_;
  std::int32_t method_ = 0;  // of interpolation, 0 or 1
  std::int16_t source_ = 0;  // of terrain
  ModelParameters parameters_;
  bool reversed_ = false;  // the end is the transmitter now
};

}  // namespace

PathLoss computePathLoss(const PathContext& context, const PathLossRequest& request) {
  return LossComputation(context, request).run();
}

PathLoss computePathLoss(const PathLossRequest& request) {
  return accessing([&](Component& component) { return computePathLoss(presentContext(component), request); });
}

}  // namespace zel
