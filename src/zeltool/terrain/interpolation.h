// Heights between posts. Pure functions; heights in any one unit, offsets dimensionless, 0 to 1 from a post
// to the next.
#pragma once

#include <algorithm>
#include <array>

namespace zel {

// Over the four posts around: z[row][column] as northWest, northEast, southWest, southEast. Exact on planes;
// between neighbouring squares continuous.
inline double bilinear(double northWest, double northEast, double southWest, double southEast, double x,
                       double y) {
  const double north = northWest + x * (northEast - northWest);
  const double south = southWest + x * (southEast - southWest);
  return north + y * (south - north);
}

// Weights of four posts in a row for a place `t` from the second to the third: cubic convolution with the
// parameter a = -1/2, which reproduces quadratics. R. G. Keys, "Cubic convolution interpolation for digital
// image processing", IEEE Trans. ASSP 29 (1981), equation 15.
inline std::array<double, 4> cubicWeights(double t) {
  const double t2 = t * t, t3 = t2 * t;
  return {-0.5 * t3 + t2 - 0.5 * t, 1.5 * t3 - 2.5 * t2 + 1, -1.5 * t3 + 2 * t2 + 0.5 * t,
          0.5 * t3 - 0.5 * t2};
}

// Over sixteen posts, row by row from the north-west; the place lies x and y from the sixth (second of the
// second row). Limited to the range of the sixteen, because an overshoot would be a hill or a hollow that no
// post shows.
inline double bicubicLimited(const std::array<double, 16>& z, double x, double y) {
  const std::array<double, 4> wx = cubicWeights(x), wy = cubicWeights(y);
  double sum = 0, lowest = z[0], highest = z[0];
  for (std::size_t row = 0; row < 4; ++row) {
    double line = 0;
    for (std::size_t column = 0; column < 4; ++column) {
      const double height = z[row * 4 + column];
      line += wx[column] * height;
      lowest = std::min(lowest, height);
      highest = std::max(highest, height);
    }
    sum += wy[row] * line;
  }
  // A void among the sixteen makes the sum a NaN, and a NaN is kept.
  return sum < lowest ? lowest : sum > highest ? highest : sum;
}

}  // namespace zel
