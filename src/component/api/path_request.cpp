#include "component/api/path_request.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/rounding.h"
#include "profile/sampling/height_cleanup.h"

namespace zel {
namespace {

constexpr double kHighestAntenna = 32767;  // metres; heights are held in 16 bits

std::string generalNumberOrText(double value) {
  return std::isfinite(value) ? generalNumber(value) : std::string("not a number");
}

bool isSameNumber(const Setting& setting, double said, double used) {
  if (setting.type != SettingType::kReal32) return said == used;
  return static_cast<float>(said) == static_cast<float>(used);
}

}  // namespace

std::string nameOf(const Setting& setting) {
  return std::string(setting.section) + "/" + std::string(setting.key);
}

double decimalValue(float value) { return std::strtod(shortestNumber(value).c_str(), nullptr); }

GeoPoint checkedPosition(const Position& position, const char* which) {
  if (!(std::abs(position.latitude) <= 90 && std::abs(position.longitude) <= 360))
    throw Refusal{std::string("the ") + which + " is not on the earth: latitude " +
                  std::to_string(position.latitude) + ", longitude " + std::to_string(position.longitude) +
                  "; give degrees"};
  return {position.latitude, std::remainder(position.longitude, 360.0)};
}

std::string PathInputs::originOf(const Setting& setting) const {
  return (isStored(setting) ? "from the setting " : "the default, since nothing is stored in ") +
         nameOf(setting);
}

std::string PathInputs::settingInWords(const Setting& setting) const {
  const std::string text = settings_.text(setting, SettingsUser::kDialog);
  return "the setting " + nameOf(setting) + (wholeNumberText(text) ? "" : " (\"" + text + "\")");
}

void PathInputs::warnUnlessAsStored(const Setting& setting, double used) {
  if (!isStored(setting)) return;
  const std::string text = settings_.text(setting, SettingsUser::kDialog);
  const std::optional<double> said = wholeNumberText(text);
  if (said && isSameNumber(setting, *said, used)) return;
  warnings_.push_back("the setting " + nameOf(setting) + ", \"" + text + "\", is used as " +
                      generalNumber(used) + ": it takes " + settingExpectation(setting));
}

void PathInputs::refuseOverflow(const Setting& setting, const RuntimeError& error) const {
  if (error.number() != RuntimeError::overflow().number()) return;
  throw Refusal{"the setting " + nameOf(setting) + " is too large a number: " +
                settingProblem(setting, settings_.text(setting, SettingsUser::kCalculation))};
}

std::int16_t PathInputs::antennaHeight(const std::optional<double>& given, const Setting& setting,
                                       const char* which) {
  if (!given) {
    const std::int16_t height =
        number(setting, [&] { return settings_.int16(setting, SettingsUser::kWindow); });
    if (height < 0)
      throw Refusal{"the setting " + nameOf(setting) + " is " + std::to_string(height) +
                    " m; set an antenna height of 1 to 750 m"};
    notes_.push_back("no antenna height is given for the " + std::string(which) + ": " +
                     std::to_string(height) + " m, " + originOf(setting));
    return height;
  }
  if (!(*given >= 0 && *given <= kHighestAntenna))
    throw Refusal{"the antenna height of the " + std::string(which) + " is " + generalNumberOrText(*given) +
                  " m; give 0 to 32767 m above ground"};
  const std::int16_t height = toInt16(*given);
  if (height != *given)
    notes_.push_back("the antenna height of the " + std::string(which) + ", " + generalNumber(*given) +
                     " m, is used as " + std::to_string(height) +
                     " m: heights are whole metres, halves rounded to even");
  return height;
}

double PathInputs::positive(const std::optional<double>& given, const Setting& setting,
                            const std::string& what, const std::string& unit) {
  constexpr double kHighest = 1e6;
  double value = 0;
  if (given) {
    value = *given;
  } else {
    value = number(setting, [&] { return decimalValue(settings_.real32(setting, SettingsUser::kDialog)); });
    notes_.push_back("the " + what + " is not given: " + generalNumber(value) + unit + ", " +
                     originOf(setting));
  }
  if (!(value > 0 && value <= kHighest))
    throw Refusal{(given ? std::string() : settingInWords(setting) + ": ") + "the " + what + " is " +
                  generalNumberOrText(value) + (std::isfinite(value) ? unit : "") +
                  "; give a number above 0, at most " + generalNumber(kHighest)};
  return value;
}

CalculationSettings PathInputs::density() {
  const CalculationSettings density{
      number(settings::kPrfPer,
             [this] { return settings_.int16(settings::kPrfPer, SettingsUser::kCalculation); }),
      number(settings::kPrfMax,
             [this] { return settings_.int16(settings::kPrfMax, SettingsUser::kCalculation); })};
  if (density.pointsPerKm < 1 || density.maxPoints < 1)
    throw Refusal{
        "the settings " + nameOf(settings::kPrfPer) + " and " + nameOf(settings::kPrfMax) +
        " leave the path without points; set 10 to 99 points a kilometre and a maximum of 1000 to 5000"};
  return density;
}

std::int32_t PathInputs::method() {
  return number(settings::kCalcMethod, [this] {
    return repairedChoice(settings_.int32(settings::kCalcMethod, SettingsUser::kWindow));
  });
}

std::int16_t PathInputs::source() {
  return number(settings::kPrfTRes, [this] {
    return repairedSource(settings_.int16(settings::kPrfTRes, SettingsUser::kWindow));
  });
}

void PathInputs::refuseLayOut(const CalculationSettings& density, const RuntimeError& error) {
  throw Refusal{"the path cannot be laid out with " + std::to_string(density.pointsPerKm) +
                " points a kilometre (" + nameOf(settings::kPrfPer) + ") and at most " +
                std::to_string(density.maxPoints) + " (" + nameOf(settings::kPrfMax) +
                "): " + error.description()};
}

void PathInputs::noteLimit(const CalculationSettings& density, double distance, std::int32_t count,
                           const char* unit) {
  if (toInt32(density.pointsPerKm * distance + 1) <= density.maxPoints) return;
  notes_.push_back("the setting Profile/Prf_Max limits the path to " + std::to_string(count) + " " + unit +
                   "; at " + std::to_string(density.pointsPerKm) +
                   " points a kilometre (Profile/Prf_Per) there would be more");
}

void refuseImpossibleHeights(const SampleArray<float>& rawHeights, const std::vector<GeoPoint>& positions) {
  const auto impossible = firstImpossibleHeight(rawHeights);
  if (!impossible) return;
  const GeoPoint place = positions[static_cast<std::size_t>(impossible->sample - 1)];
  throw Refusal{describe(*impossible, place) + "; choose another path or other terrain"};
}

GroundSummary summaryOf(std::span<const double> ground) {
  constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
  GroundSummary summary{ground.front(), ground.back(), kNothing, kNothing, kNothing};
  double sum = 0;
  int known = 0;
  for (const double height : ground) {
    if (std::isnan(height)) continue;
    summary.minimum = known == 0 ? height : std::min(summary.minimum, height);
    summary.maximum = known == 0 ? height : std::max(summary.maximum, height);
    sum += height;
    ++known;
  }
  if (known > 0) summary.average = sum / known;
  return summary;
}

}  // namespace zel
