#include "ui/plot/loss_colours.h"

#include <algorithm>
#include <cmath>

namespace zel {
namespace {

struct Oklab {
  double lightness;
  double a;  // green to red
  double b;  // blue to yellow
};

// The ends, and the point towards which the way between them bends. The lightness of the middle one is their
// mean, so it runs straight.
constexpr Oklab kLowest{0.95, -0.04, 0.11};
constexpr Oklab kBend{0.62, -0.15, -0.015};
constexpr Oklab kHighest{0.29, 0.02, -0.12};

constexpr double kMiddleLightness = 0.62;

double along(double part, double from, double bend, double to) {
  const double rest = 1 - part;
  return rest * rest * from + 2 * rest * part * bend + part * part * to;
}

// IEC 61966-2-1, the transfer function of sRGB.
Colour channel(double linear) {
  const double light = std::clamp(linear, 0.0, 1.0);
  const double encoded = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
  return static_cast<Colour>(std::lround(encoded * 255));
}

// The two matrices of the paper, from Oklab to linear sRGB.
Colour rgb(const Oklab& colour) {
  const auto cube = [](double value) { return value * value * value; };
  const double l = cube(colour.lightness + 0.3963377774 * colour.a + 0.2158037573 * colour.b);
  const double m = cube(colour.lightness - 0.1055613458 * colour.a - 0.0638541728 * colour.b);
  const double s = cube(colour.lightness - 0.0894841775 * colour.a - 1.2914855480 * colour.b);
  const Colour red = channel(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s);
  const Colour green = channel(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s);
  const Colour blue = channel(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s);
  return blue << 16 | green << 8 | red;
}

double onScale(double part) { return part > 0 ? std::min(part, 1.0) : 0; }

Oklab colourAt(double part) {
  return {along(part, kLowest.lightness, kBend.lightness, kHighest.lightness),
          along(part, kLowest.a, kBend.a, kHighest.a), along(part, kLowest.b, kBend.b, kHighest.b)};
}

}  // namespace

Colour lossColour(double part) { return rgb(colourAt(onScale(part))); }

bool isLight(double part) { return colourAt(onScale(part)).lightness > kMiddleLightness; }

}  // namespace zel
