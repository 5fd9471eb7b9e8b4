#include "map/height_colours.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "map/round_numbers.h"

namespace zel::host {
namespace {

constexpr double kNarrowestScale = 20;  // metres
constexpr double kMostHeight = 1e6;     // metres, either way: beyond any terrain
constexpr int kStepsOfScale = 10;       // its ends are multiples of about a tenth of it
constexpr double kCutOff = 0.1;         // of a step: a metre below the sea does not begin a step of its own
constexpr double kNearlyWhole = 1e-9;   // of a step: the unit's rounding
constexpr const char* kMetresUnit = " m";
constexpr const char* kFeetUnit = " ft";

double metresPerUnit(bool feet) { return feet ? kMetresPerFoot : 1; }

// CIE L*a*b*, D65.
struct Lab {
  double lightness, a, b;
};

// The lightness rises steadily by itself, and what tells the colours apart besides goes from blue over yellow
// to white: neither needs red and green.
constexpr double kDarkestHeight = 47, kLightestHeight = 98;
struct Tint {
  double a, b;
};
constexpr std::array kTints{Tint{-15, -9}, Tint{-16, 3}, Tint{-12, 15}, Tint{-3, 24},
                            Tint{4, 24},   Tint{3, 13},  Tint{0, 1}};  // evenly, from the lowest height

double xyzPart(double f) { return f > 6.0 / 29 ? f * f * f : 3 * (6.0 / 29) * (6.0 / 29) * (f - 4.0 / 29); }

Rgb component(double linear) {
  const double light = std::clamp(linear, 0.0, 1.0);
  const double coded = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
  return static_cast<Rgb>(std::lround(coded * 255));
}

// IEC 61966-2-1 (sRGB).
Rgb rgbOf(const Lab& lab) {
  const double f = (lab.lightness + 16) / 116;
  const double x = 0.95047 * xyzPart(f + lab.a / 500), y = xyzPart(f), z = 1.08883 * xyzPart(f - lab.b / 200);
  return 0xff000000U | component(3.2404542 * x - 1.5371385 * y - 0.4985314 * z) << 16U |
         component(-0.9692660 * x + 1.8760108 * y + 0.0415560 * z) << 8U |
         component(0.0556434 * x - 0.2040259 * y + 1.0572252 * z);
}

std::array<Rgb, kShades> makeColours() {
  std::array<Rgb, kShades> colours{};
  for (std::size_t i = 0; i < colours.size(); ++i) {
    const double fraction = static_cast<double>(i) / (kShades - 1);
    const double place = fraction * (kTints.size() - 1);
    const std::size_t before = std::min(static_cast<std::size_t>(place), kTints.size() - 2);
    const double part = place - static_cast<double>(before);
    colours[i] = rgbOf({std::lerp(kDarkestHeight, kLightestHeight, fraction),
                        std::lerp(kTints[before].a, kTints[before + 1].a, part),
                        std::lerp(kTints[before].b, kTints[before + 1].b, part)});
  }
  return colours;
}

bool sensible(const HeightScale& scale) {
  return std::isfinite(scale.highest - scale.lowest) && scale.highest > scale.lowest;
}

}  // namespace

HeightScale niceScale(double lowest, double highest, bool feet) {
  if (!std::isfinite(lowest) || !std::isfinite(highest)) return {};
  double low = std::clamp(std::min(lowest, highest), -kMostHeight, kMostHeight);
  double high = std::clamp(std::max(lowest, highest), -kMostHeight, kMostHeight);
  if (high - low < kNarrowestScale) {
    low = (low + high - kNarrowestScale) / 2;
    high = low + kNarrowestScale;
  }
  const double unit = metresPerUnit(feet);
  const double step = roundUp((high - low) / unit / kStepsOfScale).value;
  const double first = std::floor(low / unit / step + kCutOff) * step;
  const double last = std::ceil(high / unit / step - kCutOff) * step;
  return {first * unit, last * unit};
}

const std::array<Rgb, kShades>& heightColours() {
  static const std::array<Rgb, kShades> colours = makeColours();
  return colours;
}

Rgb colourOf(double height, const HeightScale& scale) {
  if (!std::isfinite(height)) return kVoidColour;
  // A scale without a width parts what is below from what is above.
  const double fraction = sensible(scale) ? (height - scale.lowest) / (scale.highest - scale.lowest)
                                          : (height > scale.lowest ? 1.0 : 0.0);
  return heightColours()[static_cast<std::size_t>(
      std::lround(std::clamp(fraction, 0.0, 1.0) * (kShades - 1)))];
}

std::vector<LegendEntry> legendEntries(const HeightScale& scale, bool feet, int most) {
  std::vector<LegendEntry> entries;
  if (!sensible(scale) || most < 1) return entries;
  // Beyond any terrain there are no numbers to write.
  if (std::max(std::abs(scale.lowest), std::abs(scale.highest)) > kMostHeight) return entries;
  const double unit = metresPerUnit(feet);
  const double low = scale.lowest / unit, high = scale.highest / unit;
  RoundNumber step = roundUp((high - low) / most);
  double first = 0, last = 0;
  for (;; step = roundUp(step.value * 1.5)) {  // the next round number after this one
    first = std::ceil(low / step.value - kNearlyWhole);
    last = std::floor(high / step.value + kNearlyWhole);
    if (last - first < most) break;
  }
  const int count = static_cast<int>(last - first) + 1;
  for (int i = 0; i < count; ++i) {
    const double height = (first + i) * step.value + 0.0;  // never -0
    entries.push_back({height * unit, std::clamp((height - low) / (high - low), 0.0, 1.0),
                       groupedNumber(height, step.decimals) + (feet ? kFeetUnit : kMetresUnit)});
  }
  return entries;
}

}  // namespace zel::host
