// Heights of one sampling: for each position the file that serves it, the posts around, and the
// interpolation.
//
// A position is served by the first file, in order of preference, that covers it and has a height there.
// Posts beyond a file's edge come from its neighbours, interpolated where those have another grid; where
// nobody has them, an area raster's outer half cell repeats its edge. Posts with no weight are not asked, so
// a sample on a post needs that post alone. Cost: 5 ns a height within one block of a raster in degrees, some
// 100 ns elsewhere.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "zeltool/terrain/block_cache.h"
#include "zeltool/terrain/source_index.h"

namespace zel {

class HeightReader {
 public:
  // `fast` false takes every height the long way, for comparison.
  HeightReader(const SourceIndex& index, BlockCache& cache, bool cubic, bool fast = true);

  // What read() gives for positions that firstOutside() tells of; kVoidHeight unless set.
  void setOutsideHeight(float height) { outsideHeight_ = height; }

  // Heights (metres, kVoidHeight for a void) at positions on WGS 84.
  void read(std::span<const GeoPoint> positions, std::span<float> heights);

  // Of all readings so far:
  std::int32_t voids() const { return voids_; }
  // The first position that lies further than a cell outside every file, or that is no place on the earth.
  std::optional<std::size_t> firstOutside() const { return firstOutside_; }
  // The files that gave heights, in the order in which they were met.
  const std::vector<const RasterFile*>& used() const { return used_; }
  // The files that were asked.
  const std::vector<const RasterFile*>& asked() const { return asked_; }

 private:
  // A part of one block where a height needs that block alone, and no file of higher preference could serve.
  struct Stretch {
    const float* heights = nullptr;  // of the post at column 0, row 0 of the block
    std::ptrdiff_t width = 0;        // posts in a row
    double columnAtZero = 0, columnsPerDegree = 0, rowAtZero = 0, rowsPerDegree = 0;
    double west = 0, east = 0, north = 0, south = 0;  // in posts of the block, exclusive
  };
  enum class Edge { kRepeat, kRefuse };
  struct PostValue {
    bool known = false;  // some file covers the place
    double height = 0;   // metres, NaN for a void
  };

  std::size_t readStretch(std::span<const GeoPoint> positions, std::span<float> heights,
                          std::size_t first) const;
  template <bool kCubic>
  std::size_t runStretch(std::span<const GeoPoint> positions, std::span<float> heights,
                         std::size_t first) const;
  float readOne(std::span<const GeoPoint> positions, std::size_t i, bool& isOutside);
  bool moveStretch(std::span<const GeoPoint> positions, std::size_t i);
  bool openStretch(const RasterFile& file, GeoPoint position, GridPlace place);
  bool stretchHolds(GeoPoint position) const;

  GridPlace placeIn(const RasterFile& file, std::span<const GeoPoint> positions, std::size_t i);
  double interpolate(const RasterFile& file, GridPlace place, Edge edge);
  double fourPosts(const RasterFile& file, GridPlace base, double x, double y, Edge edge);
  double sixteenPosts(const RasterFile& file, GridPlace base, double x, double y);
  PostValue post(const RasterFile& file, std::int64_t column, std::int64_t row);
  PostValue postBeyond(const RasterFile& file, std::int64_t column, std::int64_t row);
  double ownPost(const RasterFile& file, std::int64_t column, std::int64_t row);
  double ownHeight(const RasterFile& file, GridPlace place);
  const HeightBlockPtr& block(const RasterFile& file, std::int32_t column, std::int32_t row);
  const std::vector<const RasterFile*>& candidatesAt(GeoPoint position);

  struct Slot {
    BlockKey key;
    HeightBlockPtr block;
  };
  struct Projected {
    const CrsTransform* transform = nullptr;
    std::vector<double> x, y;
  };

  const SourceIndex& index_;
  BlockCache& cache_;
  const bool cubic_, fast_;
  float outsideHeight_;
  std::int32_t voids_ = 0;
  std::optional<std::size_t> firstOutside_;
  std::vector<const RasterFile*> used_, asked_;

  std::array<Slot, 8> slots_;  // the last blocks, so that most posts need no shared look-up
  std::size_t nextSlot_ = 0;
  int square_ = -1;
  std::vector<const RasterFile*> candidates_;
  int neighbourSquare_ = -1;
  std::vector<const RasterFile*> neighbours_;
  std::vector<Projected> projected_;
  Stretch stretch_;
  const RasterFile* stretchFile_ = nullptr;
  HeightBlockPtr stretchBlock_;
};

}  // namespace zel
