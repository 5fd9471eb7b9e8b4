// What a person types into the boxes of the control panel, as values.
//
// A value above its maximum, and 0 or below, is brought into the range at once. A positive value below the
// minimum may still be in the making ("2" on the way to "20"): it is left alone until the box is left or the
// typing has stopped. An empty box has no value. Text is read by its leading number, so a text that does not
// begin with one is 0, and a number beyond all ranges is above its maximum.
//
// The limits are the window's own; those of the settings dialog are wider on purpose.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "profile/view_state/profile_view_state.h"

namespace zel {

enum class TypedState : std::uint8_t {
  kEmpty,     // no value
  kInMaking,  // positive, but below the minimum: no value yet
  kAccepted,  // the value is within the range
  kClamped,   // the value was brought into the range; the text is to be rewritten
};

enum class TypedWhen : std::uint8_t {
  kTyping,
  kLeaving,  // nothing is in the making any more: it is brought into the range
};

template <typename Value>
struct TypedValue {
  TypedState state = TypedState::kEmpty;
  Value value{};     // meaningful when accepted or clamped
  std::string text;  // of the box when it was clamped

  bool hasValue() const { return state == TypedState::kAccepted || state == TypedState::kClamped; }
};

// Whole metres above ground, 1 to 750, from a text in display units.
TypedValue<std::int16_t> typedAntennaHeight(std::string_view text, const DisplayUnit& unit, TypedWhen when);
// MHz, 20 to 20000.
TypedValue<float> typedFrequency(std::string_view text, TypedWhen when);
// The part of the first Fresnel zone, 0.01 to 1, from a text in percent.
TypedValue<float> typedFresnelFraction(std::string_view text, TypedWhen when);
// The effective-earth factor k, 0.5 to 1.75, when its box is left. The text is always to be rewritten.
TypedValue<float> typedCurve(std::string_view text);

// Texts of the boxes and of the wavelength.
std::string antennaHeightText(std::int16_t metres, const DisplayUnit& unit);  // whole display units
std::string frequencyText(float mhz);
std::string wavelengthText(float mhz);    // "#.###", metres; empty for a frequency that is not above 0
std::string percentText(float fraction);  // "###"
std::string loadedCurveText(float k);     // "#.##"
std::string curveText(float k);           // "#.000"
// The option that is selected again when a change of the E-Curve was refused: by k as "#.000".
CurvePreset refusedCurvePreset(float k);

// What a click on a preset sets.
inline constexpr float kStandardCurve = 1.33333F;  // not 1.333
inline constexpr float kTrueCurve = 1.0F;

// The working values before a deferred redraw: k to 0.5 to 5, frequency to 20 to 20000 MHz, Fresnel fraction
// to 0.01 to 1, antenna heights to 0 to 750 m. That "None" becomes 1 % here is meant.
void clampWorkingValues(ProfileInputs& inputs);

}  // namespace zel
