// The public profile of a path: settings and terrain of the component, exact geometry of the calculation.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include "component/api/ready_component.h"
#include "component/api/terrain_provenance.h"
#include "foundation/number_text.h"
#include "foundation/rounding.h"
#include "foundation/runtime_error.h"
#include "profile/calculation/exact_profile.h"
#include "profile/path/path_geometry.h"
#include "profile/path_loss/free_space_loss.h"
#include "profile/sampling/height_cleanup.h"
#include "profile/settings/readers.h"
#include "zel/path_profile.h"

namespace zel {
namespace {

constexpr int kRequestRefused = 5;
constexpr double kHighestAntenna = 32767;  // metres; heights are held in 16 bits

// Ends the computation: the request cannot be profiled.
struct Refusal {
  std::string reason;
  int status = kRequestRefused;
};

// The value as the decimal text of a 32-bit float says it, so that a stored "1.333" is 1.333 in 64 bits too.
double decimalValue(float value) { return std::strtod(shortestNumber(value).c_str(), nullptr); }

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
  ProfileComputation(Component& component, const PathProfileRequest& request)
      : component_(component), request_(request), settings_(component.settingsReader()) {}

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

  static GeoPoint checkedPosition(const Position& position, const char* which) {
    if (!(std::abs(position.latitude) <= 90 && std::abs(position.longitude) <= 360))
      throw Refusal{std::string("the ") + which + " is not on the earth: latitude " +
                    std::to_string(position.latitude) + ", longitude " + std::to_string(position.longitude) +
                    "; give degrees"};
    // Longitudes go on past 180 degrees on some maps.
    return {position.latitude, std::remainder(position.longitude, 360.0)};
  }

  static std::string nameOf(const Setting& setting) {
    return std::string(setting.section) + "/" + std::string(setting.key);
  }

  // "from the setting Profile/Prf_Freq", or that nothing is stored there.
  std::string originOf(const Setting& setting) const {
    constexpr std::string_view kNothing = "\x01";  // no stored text
    const bool stored = component_.settings().ReadSetting(component_.host().clientTitle(), setting.section,
                                                          setting.key, kNothing) != kNothing;
    return (stored ? "from the setting " : "the default, since nothing is stored in ") + nameOf(setting);
  }

  // A number of the settings; one that does not fit its type is refused by name.
  template <typename Read>
  auto number(const Setting& setting, Read&& read) const {
    try {
      return read();
    } catch (const RuntimeError& error) {
      if (error.number() != RuntimeError::overflow().number()) throw;
      throw Refusal{"the setting " + nameOf(setting) + " is too large a number: " +
                    settingProblem(setting, settings_.text(setting, SettingsUser::kCalculation))};
    }
  }

  std::int16_t antennaHeight(const std::optional<double>& given, const Setting& setting, const char* which) {
    if (!given) {
      const std::int16_t height =
          number(setting, [&] { return settings_.int16(setting, SettingsUser::kWindow); });
      if (height < 0)
        throw Refusal{"the setting " + nameOf(setting) + " is " + std::to_string(height) +
                      " m; set an antenna height of 1 to 750 m"};
      profile_.notes.push_back("no antenna height is given for the " + std::string(which) + ": " +
                               std::to_string(height) + " m, " + originOf(setting));
      return height;
    }
    if (!(*given >= 0 && *given <= kHighestAntenna))
      throw Refusal{"the antenna height of the " + std::string(which) + " is " + generalNumberOrText(*given) +
                    " m; give 0 to 32767 m above ground"};
    const std::int16_t height = toInt16(*given);
    if (height != *given)
      profile_.notes.push_back("the antenna height of the " + std::string(which) + ", " +
                               generalNumber(*given) + " m, is used as " + std::to_string(height) +
                               " m: heights are whole metres, halves rounded to even");
    return height;
  }

  static std::string generalNumberOrText(double value) {
    return std::isfinite(value) ? generalNumber(value) : std::string("not a number");
  }

  // The given number or the setting's, above 0 and within what 32-bit floats carry through every formula.
  double positive(const std::optional<double>& given, const Setting& setting, const std::string& what,
                  const std::string& unit) {
    constexpr double kHighest = 1e6;
    double value = 0;
    if (given) {
      value = *given;
    } else {
      value = decimalValue(number(setting, [&] { return settings_.real32(setting, SettingsUser::kDialog); }));
      profile_.notes.push_back("the " + what + " is not given: " + generalNumber(value) + unit + ", " +
                               originOf(setting));
    }
    if (!(value > 0 && value <= kHighest))
      throw Refusal{"the " + what + " is " + generalNumberOrText(value) + unit +
                    "; give a number above 0, at most " + generalNumber(kHighest)};
    return value;
  }

  void takeInputs() {
    start_ = checkedPosition(request_.from, "start");
    end_ = checkedPosition(request_.to, "end");
    profile_.startHeightM = antennaHeight(request_.fromHeight, settings::kPrfHtL, "start");
    profile_.endHeightM = antennaHeight(request_.toHeight, settings::kPrfHtR, "end");
    profile_.k = positive(request_.k, settings::kPrfCrv, "effective-earth factor k", "");
    profile_.frequencyMhz = positive(request_.frequencyMhz, settings::kPrfFreq, "frequency", " MHz");
    profile_.wavelengthM = 300 / profile_.frequencyMhz;
  }

  PathGeometry laidOut(const CalculationSettings& density) const {
    try {
      return computePathGeometry(component_.geodesy(), start_, end_, density.pointsPerKm, density.maxPoints);
    } catch (const RuntimeError& error) {
      throw Refusal{"the path cannot be laid out with " + std::to_string(density.pointsPerKm) +
                    " points a kilometre (" + nameOf(settings::kPrfPer) + ") and at most " +
                    std::to_string(density.maxPoints) + " (" + nameOf(settings::kPrfMax) +
                    "): " + error.description()};
    }
  }

  void layOut() {
    const CalculationSettings density{
        number(settings::kPrfPer,
               [this] { return settings_.int16(settings::kPrfPer, SettingsUser::kCalculation); }),
        number(settings::kPrfMax,
               [this] { return settings_.int16(settings::kPrfMax, SettingsUser::kCalculation); })};
    if (density.pointsPerKm < 1 || density.maxPoints < 1)
      throw Refusal{
          "the settings " + nameOf(settings::kPrfPer) + " and " + nameOf(settings::kPrfMax) +
          " leave the path without points; set 10 to 99 points a kilometre and a maximum of 1000 to 5000"};
    const PathGeometry path = laidOut(density);
    if (path.underRange)
      throw Refusal{"the stations are only " + formatNumber(path.distance, "0.000") +
                    " km apart; a profile needs at least 0.2 km"};
    profile_.distanceKm = path.distance;
    profile_.bearingDeg = path.azimuth;
    profile_.points = path.intervals + 1;
    profile_.spacingM = path.spacing * 1000;
    if (path.intervals == density.maxPoints && density.pointsPerKm * path.distance + 1 > density.maxPoints)
      profile_.notes.push_back("the setting Profile/Prf_Max limits the path to " +
                               std::to_string(path.intervals) + " intervals; at " +
                               std::to_string(density.pointsPerKm) +
                               " points a kilometre (Profile/Prf_Per) there would be more");
  }

  void sample() {
    SampleRequest request;
    request.from = start_;
    request.to = end_;
    request.count = profile_.points;
    request.method = repairedChoice(number(settings::kCalcMethod, [this] {
      return settings_.int32(settings::kCalcMethod, SettingsUser::kWindow);
    }));
    request.source = repairedSource(number(
        settings::kPrfTRes, [this] { return settings_.int16(settings::kPrfTRes, SettingsUser::kWindow); }));
    terrain_ = component_.terrain()->sample(request);
    if (terrain_.report.status != kSamplerOk) throw Refusal{terrain_.report.reason, terrain_.report.status};
    profile_.terrain = terrainProvenance(terrain_.report, component_.state());
    refuseImpossibleHeights();
  }

  // The component halts on such a height; a caller of this function is told instead.
  void refuseImpossibleHeights() const {
    const auto impossible = firstImpossibleHeight(SampleArray<float>(terrain_.heights));
    if (!impossible) return;
    const GeoPoint place = terrain_.positions[static_cast<std::size_t>(impossible->sample - 1)];
    throw Refusal{describe(*impossible, place) + "; choose another path or other terrain"};
  }

  void evaluate() {
    ExactProfileRequest request;
    request.distance = profile_.distanceKm;
    request.heights = terrain_.heights;
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
    for (std::size_t i = 0; i < exact.samples.size(); ++i) addSample(exact.samples[i], terrain_.positions[i]);
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
    double sum = 0;
    int known = 0;
    profile_.minimumM = std::numeric_limits<double>::infinity();
    profile_.maximumM = -profile_.minimumM;
    for (const double ground : profile_.groundM) {
      if (std::isnan(ground)) continue;
      profile_.minimumM = std::min(profile_.minimumM, ground);
      profile_.maximumM = std::max(profile_.maximumM, ground);
      sum += ground;
      ++known;
    }
    profile_.averageM = sum / known;
    profile_.startGroundM = profile_.groundM.front();
    profile_.endGroundM = profile_.groundM.back();
  }

  Component& component_;
  const PathProfileRequest& request_;
  SettingsReader settings_;
  GeoPoint start_, end_;
  SampleResult terrain_;
  PathProfile profile_;
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

PathProfile computePathProfile(const PathProfileRequest& request) {
  return accessing([&](Component& component) { return ProfileComputation(component, request).run(); });
}

}  // namespace zel
