// Heights of a source's rasters painted into a grid, one raster after the other in order of preference; what
// has a height keeps it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "zeltool/terrain/grid_nodes.h"
#include "zeltool/terrain/grid_scale.h"

namespace zel {

// Rows and columns of a grid, the end excluded.
struct GridPart {
  std::size_t top = 0, bottom = 0, left = 0, right = 0;

  std::size_t width() const { return right - left; }
  std::size_t height() const { return bottom - top; }
};

class GridPainter {
 public:
  // `heights` is the grid, row by row.
  GridPainter(const SourceIndex& index, BlockCache& blocks, GridNodes& nodes,
              std::span<const double> latitudes, std::span<const double> longitudes,
              std::span<float> heights);

  // Throws GridCancelled.
  void paint();

 private:
  // Along one side of a grid whose sides run along a raster's.
  struct Side {
    std::vector<double> places;      // in nodes, some for each cell of the grid
    std::vector<std::size_t> first;  // of the nodes that a cell takes, in the window
    std::vector<float> weights;      // `most` for each cell
    std::size_t most = 1;
    std::int64_t low = 0, high = 0;  // nodes
  };

  void paintBand(std::size_t top, std::size_t bottom);
  void paintFile(const RasterFile& file, std::size_t top, std::size_t bottom);
  void paintStraight(const RasterFile& file, const GridPart& part, std::span<const double> columns,
                     std::span<const double> rows);
  void paintAny(const RasterFile& file, const GridPart& part);
  std::vector<GridPart> straightParts(const RasterFile& file, std::size_t top, std::size_t bottom,
                                      std::vector<double>& columns, std::vector<double>& rows);
  bool mayTouch(const GeoExtent& area, std::size_t top, std::size_t bottom) const;
  bool needed(const GridPart& part) const;
  void set(std::size_t row, std::size_t column, float height);
  void closeGaps();

  static Side side(const LevelAxis& axis, std::span<const double> places, std::span<const double> steps,
                   int count);
  void placesOf(const RasterFile& file, const GridPart& part, std::vector<double>& columns,
                std::vector<double>& rows) const;

  const SourceIndex& index_;
  BlockCache& blocks_;
  GridNodes& nodes_;
  const std::span<const double> latitudes_, longitudes_;
  const std::span<float> heights_;
  std::vector<double> latitudeSteps_, longitudeSteps_;  // degrees, of each row and column
  std::vector<std::uint8_t> near_;                      // within a post of a raster, but covered by none
};

}  // namespace zel
