#include "profile/calculation/fresnel_line.h"

#include "profile/calculation/checked_math.h"
#include "profile/real32.h"

namespace zel {

float wavelengthOf(float frequency) { return toReal32(divided(300.0, frequency)); }

SampleArray<float> fresnelLine(const PathGeometry& path, const LineOfSight& line, float wavelength,
                               float fraction, SampleArray<float> heights) {
  if (fraction == 0) return {};
  const double a = divided(double{wavelength} * 1000.0, path.distance);
  const std::int32_t last = path.lastIndex;
  if (heights.size() != last) heights.resize(static_cast<std::size_t>(last));
  heights[path.firstIndex] = line.startTop;
  heights[last] = line.endTop;

  double x = 0;  // km from the start
  for (std::int32_t i = path.firstIndex + 1; i < last; ++i) {
    x += path.spacing;
    const double rest = path.distance - x;
    if (rest <= 0) {
      heights[i] = heights[last - 1];
    } else {
      const double radius = squareRoot(a * x * rest);  // of the first Fresnel zone, metres
      heights[i] = toReal32(line.heightAt(x) - double{fraction} * radius);
    }
  }
  return heights;
}

}  // namespace zel
