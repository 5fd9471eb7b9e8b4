#include "profile/calculation/earth_curvature.h"

#include <cmath>

#include "foundation/rounding.h"
#include "profile/calculation/checked_math.h"
#include "profile/real32.h"

namespace zel {
namespace {

// In 32-bit integers, whose overflow limits k although the settings allow more.
std::int32_t squareInInt32(std::int32_t value) {
  std::int32_t square = 0;
  if (__builtin_mul_overflow(value, value, &square)) throw RuntimeError::overflow();
  return square;
}

}  // namespace

std::int32_t effectiveRadius(float k) { return toInt32(double{k} * kInternationalEquatorialRadius / 1000.0); }

SampleArray<float> curvatureRise(float k, std::int32_t samples, double length) {
  const std::int32_t radius = effectiveRadius(k);
  const double radiusSquared = squareInInt32(radius);
  const double cosine = 1.0 - divided(length * length, 2.0 * radiusSquared);
  const double sine = squareRoot(1.0 - cosine * cosine);
  // The angle at the earth's centre under the chord: arccos(cosine).
  const double angle = std::atan(divided(-cosine, sine)) + 2.0 * std::atan(1.0);
  const double chordDistance =
      squareRoot(4.0 * radiusSquared - length * length) * 0.5;  // km, centre to chord
  if (samples < 1) throw RuntimeError::subscriptOutOfRange();
  const double step = angle / samples;

  SampleArray<float> rise(static_cast<std::size_t>(samples));
  const auto values = rise.span();
  for (std::int32_t i = 2; i < samples; ++i) {
    const double aboveChord = radius * std::cos(angle / 2.0 - i * step) - chordDistance;  // km
    values[static_cast<std::size_t>(i - 1)] = toReal32(aboveChord * 1000.0);
  }
  return rise;
}

}  // namespace zel
