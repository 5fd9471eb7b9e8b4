// Opening a raster file as terrain, and reading its heights.
//
// Refused with a reason, before anything large is allocated or anything foreign is touched: files that are no
// raster or are damaged, pictures (palettes, three or more bands of bytes), complex numbers, containers of
// several rasters, rasters that are not placed on the earth, absurd sizes, and virtual rasters that refer to
// themselves, to the network or to a database.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "zeltool/terrain/crs_transform.h"
#include "zeltool/terrain/grid_geometry.h"
#include "zeltool/terrain/height_block.h"
#include "zeltool/terrain/height_encoding.h"

class GDALDataset;
class GDALRasterBand;

namespace zel {

// Where a raster lies.
struct RasterPlacement {
  GridGeometry grid;
  std::shared_ptr<const CrsTransform>
      transform;      // null when the grid is in degrees of WGS 84 or the same as those
  GeoExtent covered;  // what it covers
  GeoExtent reach;    // the same with two cells more on each side
  std::int32_t columns() const { return grid.columns(); }
  std::int32_t rows() const { return grid.rows(); }

  GridPlace placeOf(
      GeoPoint position) const;  // infinite where the raster's coordinates have no such position
  GeoPoint positionOf(GridPlace place) const;
};

// Height of a cell in degrees of latitude, about.
double cellDegrees(const RasterPlacement& placement);

// Transformations by coordinate system, so that the tiles of a folder share one. Not for several threads.
class TransformStore;
std::shared_ptr<TransformStore> makeTransformStore();

class OpenRaster {
 public:
  // Null, and a reason, for a file that is not usable. `path` may lie inside an archive ("/vsizip/...").
  static std::unique_ptr<OpenRaster> open(const std::string& path, std::string& problem);
  ~OpenRaster();

  // Nothing, and a reason, when the raster is not placed on the earth.
  std::optional<RasterPlacement> placement(TransformStore& transforms, std::string& problem) const;

  // Cells that cannot be read are voids; `problem` then tells why.
  HeightBlock read(const PostWindow& window, std::string& problem) const;

  // The files that it is made of, its own among them.
  std::vector<std::string> files() const;

  GDALDataset& dataset() const { return *dataset_; }
  GDALRasterBand& band() const { return *band_; }
  const HeightEncoding& encoding() const { return encoding_; }
  const std::string& heightUnit() const { return heightUnit_; }  // as the file names it
  // What is doubtful about a usable raster; empty when nothing is.
  const std::string& remark() const { return remark_; }

  std::int32_t columns() const;
  std::int32_t rows() const;

 private:
  OpenRaster() = default;
  std::string refusal() const;
  std::string readEncoding();
  bool hasShortCells() const;
  bool readShortCells(HeightBlock& block) const;
  bool readCells(const PostWindow& window, double* cells) const;
  void readPieces(const PostWindow& window, double* cells) const;
  void blankMaskedCells(const PostWindow& window, double* cells) const;
  void blankMissingCells(const PostWindow& window, double* cells) const;
  void blankMissingBlocks(const PostWindow& window, double* cells) const;
  void blankUncovered(const PostWindow& window, const PostWindow& part, double* cells) const;
  static void blank(const PostWindow& window, const PostWindow& part, double* cells);

  struct Closer {
    void operator()(GDALDataset* dataset) const;
  };
  std::unique_ptr<GDALDataset, Closer> dataset_;
  GDALRasterBand* band_ = nullptr;
  HeightEncoding encoding_;
  std::string heightUnit_, remark_;
  mutable std::once_flag tableMade_;
  mutable std::vector<float> table_;  // heights of all values of 16 bits, from the least
};

}  // namespace zel
