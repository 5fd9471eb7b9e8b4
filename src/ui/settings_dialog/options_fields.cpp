#include "ui/settings_dialog/options_fields.h"

#include <algorithm>
#include <limits>

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/rounding.h"
#include "foundation/runtime_error.h"
#include "foundation/text.h"
#include "profile/real32.h"

namespace zel {
namespace {

// Stands for a length that no text exceeds.
constexpr std::size_t kNoClamp = std::numeric_limits<std::size_t>::max();

struct BoxRule {
  std::string_view control;
  const Setting* setting = nullptr;  // type and range
  std::size_t freeLength = 0;        // characters up to which typing is left alone
  std::string_view below;
  std::string_view above;
  std::string_view unreadable;  // any other failure: a number too large for the type
};

// The unit of the tower heights stays "meters" whatever the display units, and the differing words for
// elevation and range lines are meant.
constexpr std::string_view kHeights = "Valid Range is 1 to 750 meters.";
constexpr std::string_view kLines = "Valid Range is 0 to 20.";
constexpr std::string_view kPercentages = "Valid Range is 0 to 100.";
constexpr std::string_view kCurves = "Valid Range is 0.01 to 50.0";

constexpr std::array<BoxRule, kOptionsBoxes> kRules{{
    {"tbxLeft", &settings::kPrfHtL, 2, kHeights, kHeights, kHeights},
    {"tbxRight", &settings::kPrfHtR, 2, kHeights, kHeights, kHeights},
    {"tbxEle", &settings::kPrfEle, 1, kLines, "Value above maximum range.", kLines},
    {"tbxRng", &settings::kPrfRng, 1, kLines, "Maximum Value is 20.", kLines},
    {"tbxMax", &settings::kPrfMax, 3, "Minimum Value is 1000.", "Maximum Value is 5000.",
     "Valid Range is 1000 to 5000."},
    {"tbxPer", &settings::kPrfPer, 1, "Minimum Value is 10.", "Maximum Value is 99.",
     "Valid Range is 10 to 99."},
    {"tbxpctFresnel", &settings::kPrfFrez, 2, kPercentages, kPercentages, kPercentages},
    {"tbxCurve", &settings::kPrfCrv, 3, kCurves, kCurves, kCurves},
    {"tbxFreq", &settings::kPrfFreq, kNoClamp, "Minimum value is 20MHz.", "Maximum value is 20GHz.",
     "Valid Range is 20 to 20000."},
}};

const BoxRule& ruleOf(OptionsBox box) { return kRules.at(static_cast<std::size_t>(box)); }

bool isWhole(const BoxRule& rule) { return rule.setting->type == SettingType::kInt16; }

// Throws RuntimeError 6 for what does not fit.
double narrowed(const BoxRule& rule, double value) {
  return isWhole(rule) ? static_cast<double>(toInt16(value)) : static_cast<double>(toReal32(value));
}

// What a person counts as characters of UTF-8 text.
std::size_t characters(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string plainText(const BoxRule& rule, double value) {
  return isWhole(rule) ? std::to_string(toInt16(value)) : shortestNumber(toReal32(value));
}

bool saysReal(std::string_view text, double value) {
  try {
    const std::optional<double> number = wholeNumberText(text);
    return number && double{toReal32(*number)} == value;
  } catch (const RuntimeError&) {
    return false;
  }
}

OptionsEntry entryOf(const BoxRule& rule, double value, std::string_view text) {
  if (!isWhole(rule) && saysReal(text, value)) return {value, std::string(text)};
  return {value, plainText(rule, value)};
}

}  // namespace

std::string_view controlName(OptionsBox box) { return ruleOf(box).control; }

std::optional<OptionsEntry> typedEntry(OptionsBox box, std::string_view text) {
  if (characters(trimmed(text)) <= ruleOf(box).freeLength) return std::nullopt;
  return clampedEntry(box, text);
}

OptionsEntry clampedEntry(OptionsBox box, std::string_view text) {
  const BoxRule& rule = ruleOf(box);
  const SettingRange range = *rule.setting->range;
  const double clamped = std::max(std::min(typedNumber(text), range.high), range.low);
  return entryOf(rule, narrowed(rule, clamped), text);
}

CheckedEntry checkedEntry(OptionsBox box, std::string_view text) {
  const BoxRule& rule = ruleOf(box);
  double value = 0;
  try {
    value = narrowed(rule, leadingNumber(text));
  } catch (const RuntimeError&) {
    return {std::string(rule.unreadable), {}};
  }
  // The limits as the field holds them: 0.01 is no 32-bit real.
  const double low = narrowed(rule, rule.setting->range->low);
  const double high = narrowed(rule, rule.setting->range->high);
  if (value < low) return {std::string(rule.below), {}};
  if (value > high) return {std::string(rule.above), {}};
  return {{}, entryOf(rule, value, text)};
}

void storeEntry(DialogSettings& fields, OptionsBox box, double value) {
  switch (box) {
    case OptionsBox::kLeft:
      fields.startHeight = toInt16(value);
      break;
    case OptionsBox::kRight:
      fields.endHeight = toInt16(value);
      break;
    case OptionsBox::kElevation:
      fields.elevationLines = toInt16(value);
      break;
    case OptionsBox::kRange:
      fields.rangeLines = toInt16(value);
      break;
    case OptionsBox::kMaximum:
      fields.maxPoints = toInt16(value);
      break;
    case OptionsBox::kPerKilometre:
      fields.pointsPerKm = toInt16(value);
      break;
    case OptionsBox::kFresnel:
      fields.fresnelPercent = toInt16(value);
      break;
    case OptionsBox::kCurve:
      fields.k = toReal32(value);
      break;
    case OptionsBox::kFrequency:
      fields.frequency = toReal32(value);
      break;
  }
}

std::string loadedText(const DialogSettings& fields, OptionsBox box) {
  switch (box) {
    case OptionsBox::kLeft:
      return std::to_string(fields.startHeight);
    case OptionsBox::kRight:
      return std::to_string(fields.endHeight);
    case OptionsBox::kElevation:
      return std::to_string(fields.elevationLines);
    case OptionsBox::kRange:
      return std::to_string(fields.rangeLines);
    case OptionsBox::kMaximum:
      return std::to_string(fields.maxPoints);
    case OptionsBox::kPerKilometre:
      return std::to_string(fields.pointsPerKm);
    case OptionsBox::kFresnel:
      return std::to_string(fields.fresnelPercent);
    case OptionsBox::kCurve:
      return formatNumber(fields.k, "0.00");
    case OptionsBox::kFrequency:
      return shortestNumber(fields.frequency);
  }
  return {};
}

std::string wavelengthLabel(float frequency) {
  return frequency > 0 ? formatNumber(300.0F / frequency, "#.###") : std::string();
}

std::string presetCurveText(float k) { return formatNumber(k, "#.##"); }

std::optional<std::size_t> listedSource(std::int16_t code) {
  const auto* const found = std::find(kListedSources.begin(), kListedSources.end(), code);
  if (found == kListedSources.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kListedSources.begin());
}

std::optional<std::int16_t> sourceNamed(const SourceNames& names, std::string_view name) {
  for (std::size_t i = 0; i < names.size(); ++i)
    if (names.at(i) == name) return kListedSources.at(i);
  return std::nullopt;
}

}  // namespace zel
