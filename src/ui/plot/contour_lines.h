// Lines of equal value through a grid of numbers, by the sides of its meshes: a straight piece through each
// mesh whose corners lie on both sides of the level, with its ends where the value between two corners would
// meet it. In a saddle the pieces keep the two corners apart that are below the level.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "canvas/canvas_state.h"

namespace zel {

// A square grid: value (column, row) is values[row * side + column].
struct SquareGrid {
  std::span<const double> values;
  std::size_t side = 0;

  double at(std::size_t column, std::size_t row) const { return values[row * side + column]; }
};

// In columns and rows, from 0 to side - 1.
struct ContourPiece {
  CanvasPoint from;
  CanvasPoint to;
};

// A value that is the level exactly counts as above it.
std::vector<ContourPiece> contourLine(const SquareGrid& grid, double level);

// The finest of 1, 2, 5, 10, 20, 50 ... whose multiples from low to high are not more than so many; 1 or
// more, since 0 is a multiple of every step.
double contourStep(double low, double high, int mostLines);

// The multiples of the step from low to high, ends included.
std::vector<double> contourLevels(double low, double high, double step);

}  // namespace zel
