#include "ui/profile_window/panel_inputs.h"

#include <algorithm>

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/rounding.h"
#include "foundation/text.h"
#include "profile/real32.h"

namespace zel {
namespace {

struct Range {
  double low = 0;
  double high = 0;
};

constexpr Range kAntennaHeight{1, 750};          // metres
constexpr Range kFrequency{20, 20000};           // MHz
constexpr Range kFresnelFraction{0.01, 1};       // of the first zone
constexpr Range kCurve{0.5, 1.75};               // k, in its box
constexpr Range kDeferredCurve{0.5, 5};          // k, before a deferred redraw
constexpr Range kDeferredAntennaHeight{0, 750};  // metres

double within(double value, Range range) { return std::max(std::min(value, range.high), range.low); }

TypedState stateOf(double value, Range range, TypedWhen when) {
  if (value > range.high || value <= 0) return TypedState::kClamped;
  if (value >= range.low) return TypedState::kAccepted;
  return when == TypedWhen::kLeaving ? TypedState::kClamped : TypedState::kInMaking;
}

bool isEmpty(std::string_view text) { return trimmed(text).empty(); }

}  // namespace

TypedValue<std::int16_t> typedAntennaHeight(std::string_view text, const DisplayUnit& unit, TypedWhen when) {
  if (isEmpty(text)) return {};
  const double shown = typedNumber(text);
  // Decided on whole metres, so that the text of a limit in feet is itself within it.
  const double metres = shown > 0 ? roundHalfEven(std::min(shown / unit.factor, 1e6)) : shown;
  TypedValue<std::int16_t> typed;
  typed.state =
      shown > 0 && metres == 0 ? stateOf(0.5, kAntennaHeight, when) : stateOf(metres, kAntennaHeight, when);
  if (!typed.hasValue()) return typed;
  typed.value = toInt16(within(metres, kAntennaHeight));
  typed.text = antennaHeightText(typed.value, unit);
  return typed;
}

TypedValue<float> typedFrequency(std::string_view text, TypedWhen when) {
  if (isEmpty(text)) return {};
  const double mhz = typedNumber(text);
  TypedValue<float> typed{stateOf(mhz, kFrequency, when), toReal32(within(mhz, kFrequency)), {}};
  typed.text = frequencyText(typed.value);
  return typed;
}

TypedValue<float> typedFresnelFraction(std::string_view text, TypedWhen when) {
  if (isEmpty(text)) return {};
  const double fraction = typedNumber(text) / 100;
  TypedValue<float> typed{
      stateOf(fraction, kFresnelFraction, when), toReal32(within(fraction, kFresnelFraction)), {}};
  typed.text = percentText(typed.value);
  return typed;
}

TypedValue<float> typedCurve(std::string_view text) {
  if (isEmpty(text)) return {};
  TypedValue<float> typed{TypedState::kClamped, toReal32(within(typedNumber(text), kCurve)), {}};
  typed.text = curveText(typed.value);
  return typed;
}

std::string antennaHeightText(std::int16_t metres, const DisplayUnit& unit) {
  return std::to_string(toInt32(metres * unit.factor));
}

std::string frequencyText(float mhz) { return generalNumber(mhz); }

std::string wavelengthText(float mhz) {
  return mhz > 0 ? formatNumber(300.0F / mhz, "#.###") : std::string();
}

std::string percentText(float fraction) { return formatNumber(fraction * 100.0F, "###"); }

std::string loadedCurveText(float k) { return formatNumber(k, "#.##"); }

std::string curveText(float k) { return formatNumber(k, "#.000"); }

CurvePreset refusedCurvePreset(float k) {
  const std::string text = curveText(k);
  if (text == "1.333") return CurvePreset::k1333;
  return text == "1.000" ? CurvePreset::k1000 : CurvePreset::kCustom;
}

void clampWorkingValues(ProfileInputs& inputs) {
  inputs.k = toReal32(within(double{inputs.k}, kDeferredCurve));
  inputs.frequency = toReal32(within(double{inputs.frequency}, kFrequency));
  inputs.fresnelFraction = toReal32(within(double{inputs.fresnelFraction}, kFresnelFraction));
  for (std::int16_t& height : inputs.antennaHeights)
    height = toInt16(within(static_cast<double>(height), kDeferredAntennaHeight));
}

}  // namespace zel
