// What the boxes of the settings dialog take: the clamp while a person types, the check when the box is left
// with its messages, and the texts that the dialog shows.
//
// A text is read by its leading number with a point for decimals, so one that does not begin with a number is
// 0. Whole numbers round half to even. Every range comes from the settings table; the lengths and the
// messages are the dialog's own, and differ from box to box on purpose.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "profile/settings/dialog_settings.h"

namespace zel {

enum class OptionsBox : std::uint8_t {
  kLeft,          // tower height at the start, m
  kRight,         // tower height at the end, m
  kElevation,     // number of elevation reference lines
  kRange,         // number of range reference lines
  kMaximum,       // most data points on a path
  kPerKilometre,  // data points, 1/km
  kFresnel,       // part of the first Fresnel zone, %
  kCurve,         // k, dimensionless
  kFrequency,     // MHz
};
inline constexpr std::size_t kOptionsBoxes = 9;
inline constexpr std::array<OptionsBox, kOptionsBoxes> kAllOptionsBoxes{
    OptionsBox::kLeft,    OptionsBox::kRight,   OptionsBox::kElevation,
    OptionsBox::kRange,   OptionsBox::kMaximum, OptionsBox::kPerKilometre,
    OptionsBox::kFresnel, OptionsBox::kCurve,   OptionsBox::kFrequency};

std::string_view controlName(OptionsBox box);  // "tbxPer"

// A value out of a box. Real boxes hold 32-bit reals.
struct OptionsEntry {
  double value = 0;  // in the box's unit
  std::string text;  // that the box is to show from now on
};

// While typing: nothing as long as the text, without the blanks around it, is short enough to be still in the
// making, and always nothing for the frequency. Otherwise the value brought into the range, before it is
// narrowed, so that no number is too large. The text stays as it is where it is the number already: a real
// that were rewritten ("1.00" as "1") would make "1.005" unreachable.
std::optional<OptionsEntry> typedEntry(OptionsBox box, std::string_view text);

// The value brought into the range whatever the length of the text.
OptionsEntry clampedEntry(OptionsBox box, std::string_view text);

// When the box is left: the value, or the message that refuses it.
struct CheckedEntry {
  std::string refusal;  // empty: accepted
  OptionsEntry entry;   // meaningful when accepted
};
CheckedEntry checkedEntry(OptionsBox box, std::string_view text);

// The field behind a box. The value is one of an accepted or clamped entry.
void storeEntry(DialogSettings& fields, OptionsBox box, double value);
// How the box shows its field when the dialog opens: whole numbers plain, k as "0.00", the frequency with the
// fewest digits that read back the same.
std::string loadedText(const DialogSettings& fields, OptionsBox box);

// 300 / frequency as "#.###", metres; empty for a frequency (MHz) that is not above 0.
std::string wavelengthLabel(float frequency);

// What a click on an E-Curve preset sets, and shows as "#.##". They are not the window's: there the standard
// preset is 1.33333.
inline constexpr float kPresetCurveStandard = 1.333F;
inline constexpr float kPresetCurveTrue = 1.0F;
std::string presetCurveText(float k);

// The terrain sources in the order of the list.
inline constexpr std::array<std::int16_t, 5> kListedSources{2, 1, 3, 9, 7};
using SourceNames = std::array<std::string, kListedSources.size()>;
// The place of a code in the list; none for any other code.
std::optional<std::size_t> listedSource(std::int16_t code);
// The code of the first source of that name.
std::optional<std::int16_t> sourceNamed(const SourceNames& names, std::string_view name);

}  // namespace zel
