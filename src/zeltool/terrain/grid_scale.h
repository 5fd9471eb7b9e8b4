// Which overview of a raster serves a grid, and how many places of it each cell of the grid takes.
#pragma once

namespace zel {

// Steps of a grid in posts of a raster: the smallest and largest from one cell to the next, along both sides.
struct GridSteps {
  double leastX = 0, mostX = 0, leastY = 0, mostY = 0;
};

struct GridScale {
  int level = 0;                 // 0 is the posts; cells of the level are at most as large as the grid's
  int placesX = 1, placesY = 1;  // evenly over a cell of the grid, so that no cell of the level is left out
};

// `coarsest` is the raster's coarsest level.
GridScale gridScale(const GridSteps& steps, int coarsest);

}  // namespace zel
