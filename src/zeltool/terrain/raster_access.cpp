#include "zeltool/terrain/raster_access.h"

#include <cpl_string.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <numbers>
#include <string_view>
#include <vector>

#include "foundation/text.h"
#include "zeltool/terrain/gdal_session.h"
#include "zeltool/terrain/height_units.h"
#include "zeltool/terrain/longitude.h"
#include "zeltool/terrain/virtual_raster.h"

namespace zel {
namespace {

constexpr std::int32_t kMostColumns = 1 << 23;  // a third of an arc-second around the earth is half of that
constexpr std::int64_t kWindow = 512;           // cells that are read at once, each way
// Bytes that a window may make the file's own blocks decode: a raster kept in whole rows has to decode them
// all.
constexpr std::int64_t kCostliestWindow = 512LL << 20;
constexpr std::int64_t kLargestOwnBlock = 256LL
                                          << 20;  // bytes that the file's own format makes one read at once
constexpr double kReach = 2;                      // cells

std::string afterColon(const std::string& text) { return text.empty() ? "" : ": " + text; }

bool isPicture(GDALDataset& dataset) {
  if (dataset.GetRasterCount() < 3) return false;
  for (int band = 1; band <= 3; ++band)
    if (dataset.GetRasterBand(band)->GetRasterDataType() != GDT_Byte) return false;
  return true;
}

bool isPointRaster(GDALDataset& dataset) {
  const char* kind = dataset.GetMetadataItem(GDALMD_AREA_OR_POINT);
  return kind && equalIgnoringCase(kind, GDALMD_AOP_POINT);
}

// The mark for "no data", as the cells hold it.
std::optional<double> noDataOf(GDALRasterBand& band) {
  int has = FALSE;
  switch (band.GetRasterDataType()) {
    case GDT_Int64: {
      const auto value = band.GetNoDataValueAsInt64(&has);
      return has ? std::optional(static_cast<double>(value)) : std::nullopt;
    }
    case GDT_UInt64: {
      const auto value = band.GetNoDataValueAsUInt64(&has);
      return has ? std::optional(static_cast<double>(value)) : std::nullopt;
    }
    default: {
      const double value = band.GetNoDataValue(&has);
      if (!has) return std::nullopt;
      // A cell of 32 bits holds the mark rounded to 32 bits.
      if (band.GetRasterDataType() == GDT_Float32 && std::abs(value) < static_cast<double>(FLT_MAX))
        return static_cast<double>(static_cast<float>(value));
      return value;
    }
  }
}

// The unit of heights that a coordinate system names, for rasters whose band names none.
std::string verticalUnit(const OGRSpatialReference* crs) {
  if (!crs || !crs->IsCompound()) return "";
  const char* name = nullptr;
  crs->GetTargetLinearUnits("COMPD_CS|VERT_CS", &name);
  return name && !equalIgnoringCase(name, "unknown") ? name : "";
}

}  // namespace

GridPlace RasterPlacement::placeOf(GeoPoint position) const {
  if (!transform) return grid.placeOf({position.longitude, position.latitude});
  double x = position.longitude, y = position.latitude;
  transform->fromWgs84({&x, 1}, {&y, 1});
  return grid.placeOf({x, y});
}

GeoPoint RasterPlacement::positionOf(GridPlace place) const {
  GridPoint point = grid.pointOf(place);
  if (transform) transform->toWgs84({&point.x, 1}, {&point.y, 1});
  return {point.y, point.x};
}

double cellDegrees(const RasterPlacement& placement) {
  const double column = 0.5 * (placement.columns() - 1), row = 0.5 * (placement.rows() - 1);
  const GeoPoint a = placement.positionOf({column, row - 0.5}), b = placement.positionOf({column, row + 0.5});
  // Rows of a projection may run along meridians.
  const double along = std::cos(a.latitude * std::numbers::pi / 180);
  return std::hypot(a.latitude - b.latitude, (longitudeNear(a.longitude, b.longitude) - b.longitude) * along);
}

class TransformStore {
 public:
  std::shared_ptr<const CrsTransform> of(const OGRSpatialReference& crs, std::string& problem) {
    char* text = nullptr;
    const char* const options[] = {"FORMAT=WKT2_2019", nullptr};
    crs.exportToWkt(&text, options);
    const std::string key = text ? text : "";
    CPLFree(text);
    if (const auto known = transforms_.find(key); !key.empty() && known != transforms_.end())
      return known->second;
    auto transform = CrsTransform::make(crs, problem);
    if (transform && !key.empty()) transforms_[key] = transform;
    return transform;
  }

 private:
  std::map<std::string, std::shared_ptr<const CrsTransform>> transforms_;
};

std::shared_ptr<TransformStore> makeTransformStore() { return std::make_shared<TransformStore>(); }

void OpenRaster::Closer::operator()(GDALDataset* dataset) const {
  const GdalSession session;
  GDALClose(dataset);
}

OpenRaster::~OpenRaster() = default;

std::int32_t OpenRaster::columns() const { return band_->GetXSize(); }
std::int32_t OpenRaster::rows() const { return band_->GetYSize(); }

std::unique_ptr<OpenRaster> OpenRaster::open(const std::string& path, std::string& problem) {
  GdalSession session;
  problem = attachmentRefusal(path);
  if (!problem.empty()) return nullptr;
  session.takeError();
  std::unique_ptr<OpenRaster> raster(new OpenRaster);
  raster->dataset_.reset(GDALDataset::Open(path.c_str(),
                                           GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                                           localRasterDrivers(), nullptr, nullptr));
  if (!raster->dataset_) {
    const std::string why = session.takeError(), foreign = foreignFormat(path);
    problem = foreign.empty() ? "it cannot be opened" + afterColon(why)
                              : "its format (" + foreign + ") is not read";
    return nullptr;
  }
  problem = raster->refusal();
  if (problem.empty()) problem = raster->readEncoding();
  if (!problem.empty()) return nullptr;
  return raster;
}

std::string OpenRaster::refusal() const {
  if (dataset_->GetRasterCount() == 0) {
    char** parts = dataset_->GetMetadata("SUBDATASETS");
    return parts && *parts ? "it holds several rasters; save the one of the heights as a file of its own"
                           : "it holds no raster";
  }
  const_cast<OpenRaster*>(this)->band_ = dataset_->GetRasterBand(1);
  const GDALDataType type = band_->GetRasterDataType();
  if (columns() < 1 || rows() < 1 || columns() > kMostColumns || rows() > kMostColumns)
    return "its size of " + std::to_string(columns()) + " x " + std::to_string(rows()) +
           " cells is not credible";
  int blockColumns = 0, blockRows = 0;
  band_->GetBlockSize(&blockColumns, &blockRows);
  if (blockColumns < 1 || blockRows < 1 ||
      std::int64_t{blockColumns} * blockRows > kLargestOwnBlock / std::max(GDALGetDataTypeSizeBytes(type), 1))
    return "its cells come in blocks of " + std::to_string(blockColumns) + " x " + std::to_string(blockRows) +
           ", too large to read; save it in tiles";
  if (std::max<std::int64_t>(blockColumns, kWindow) * std::max<std::int64_t>(blockRows, kWindow) >
      kCostliestWindow / std::max(GDALGetDataTypeSizeBytes(type), 1))
    return "its rows of " + std::to_string(blockColumns) + " cells are too long to read; save it in tiles";
  if (type == GDT_Unknown) return "its cells are of an unknown type";
  if (GDALDataTypeIsComplex(type)) return "its cells are complex numbers, not heights";
  if (band_->GetColorTable() || band_->GetColorInterpretation() == GCI_PaletteIndex)
    return "it is a picture with a palette, not heights";
  if (isPicture(*dataset_)) return "it is a colour picture, not heights";
  return "";
}

std::string OpenRaster::readEncoding() {
  encoding_.noData = noDataOf(*band_);
  encoding_.scale = band_->GetScale();
  encoding_.offset = band_->GetOffset();
  if (!std::isfinite(encoding_.scale) || encoding_.scale == 0 || !std::isfinite(encoding_.offset))
    return "its scale and offset of heights are not usable";
  const char* unit = band_->GetUnitType();
  heightUnit_ = unit ? unit : "";
  if (trimmed(heightUnit_).empty()) heightUnit_ = verticalUnit(dataset_->GetSpatialRef());
  const auto metres = metresPerUnit(heightUnit_);
  encoding_.metresPerUnit = metres.value_or(1);
  if (!metres)
    remark_ = "its heights are in \"" + heightUnit_ + "\", an unknown unit, and are taken as metres";
  return "";
}

std::optional<RasterPlacement> OpenRaster::placement(TransformStore& transforms, std::string& problem) const {
  GdalSession session;
  std::array<double, 6> corners{};
  if (dataset_->GetGeoTransform(corners.data()) != CE_None) {
    problem = "it does not say where it lies";
    return std::nullopt;
  }
  const OGRSpatialReference* crs = dataset_->GetSpatialRef();
  const bool unnamed = !crs || crs->IsEmpty();
  if (!unnamed && !crs->IsGeographic() && !crs->IsProjected()) {
    problem = "its coordinate system has no place on the earth";
    return std::nullopt;
  }
  const bool degrees = unnamed || (crs->IsGeographic() && !crs->IsDerivedGeographic());
  const bool points = isPointRaster(*dataset_);
  std::shared_ptr<const CrsTransform> transform;
  if (!unnamed) {
    transform = transforms.of(*crs, problem);
    if (!transform) return std::nullopt;
  }
  if (degrees) {
    auto grid = GridGeometry::make(corners, columns(), rows(), points, true, problem);
    // A raster in other angular units than degrees goes the long way.
    const bool sameAsWgs84 = grid && (unnamed || transform->isIdentityOver(grid->extent()));
    if (grid && sameAsWgs84) return RasterPlacement{*grid, nullptr, grid->extent(), grid->extent(kReach)};
    if (unnamed) {
      problem = "it names no coordinate system, and " + problem;
      return std::nullopt;
    }
  }
  const auto grid = GridGeometry::make(corners, columns(), rows(), points, false, problem);
  if (!grid) return std::nullopt;
  const auto covered = transform->areaOf(grid->bounds());
  if (!covered) {
    problem = "its extent has no place on the earth" + afterColon(session.takeError());
    return std::nullopt;
  }
  const auto reach = transform->areaOf(grid->bounds(kReach));
  return RasterPlacement{*grid, transform, *covered, reach.value_or(*covered)};
}

std::vector<std::string> OpenRaster::files() const {
  const GdalSession session;
  const CPLStringList list(dataset_->GetFileList());
  return {list.List(), list.List() + list.Count()};
}

HeightBlock OpenRaster::read(const PostWindow& window, std::string& problem) const {
  GdalSession session;
  const std::size_t count = static_cast<std::size_t>(window.columns) * static_cast<std::size_t>(window.rows);
  HeightBlock block{window, std::vector<float>(count)};
  if (hasShortCells() && readShortCells(block)) return block;
  std::vector<double> cells(count);
  if (!readCells(window, cells.data())) {
    problem = "part of it cannot be read" + afterColon(session.takeError());
    readPieces(window, cells.data());
  }
  blankMaskedCells(window, cells.data());
  if (!encoding_.noData) blankMissingCells(window, cells.data());
  const HeightEncoding encoding = encoding_;
  std::transform(cells.begin(), cells.end(), block.heights.begin(),
                 [&encoding](double raw) { return encoding.decode(raw); });
  return block;
}

// Cells of 16 bits whose value alone says what they stand for: most tiles, and their heights come out of a
// table in a fifth of the time.
bool OpenRaster::hasShortCells() const {
  const int mask = band_->GetMaskFlags();
  if (band_->GetRasterDataType() != GDT_Int16 || (mask & (GMF_ALL_VALID | GMF_NODATA)) == 0) return false;
  const GDALDriver* driver = dataset_->GetDriver();
  return encoding_.noData || (driver && std::string_view(driver->GetDescription()) == "SRTMHGT");
}

bool OpenRaster::readShortCells(HeightBlock& block) const {
  const PostWindow& window = block.window;
  std::vector<std::int16_t> cells(block.heights.size());
  if (band_->RasterIO(GF_Read, window.column, window.row, window.columns, window.rows, cells.data(),
                      window.columns, window.rows, GDT_Int16, 0, 0, nullptr) != CE_None)
    return false;
  std::call_once(tableMade_, [this] {
    table_.resize(std::size_t{1} << 16);
    for (int raw = INT16_MIN; raw <= INT16_MAX; ++raw)
      table_[static_cast<std::size_t>(raw - INT16_MIN)] = encoding_.decode(raw);
  });
  std::transform(cells.begin(), cells.end(), block.heights.begin(),
                 [this](std::int16_t raw) { return table_[static_cast<std::size_t>(raw - INT16_MIN)]; });
  return true;
}

bool OpenRaster::readCells(const PostWindow& window, double* cells) const {
  return band_->RasterIO(GF_Read, window.column, window.row, window.columns, window.rows, cells,
                         window.columns, window.rows, GDT_Float64, 0, 0, nullptr) == CE_None;
}

// What the file's own blocks still give, one by one; the rest is void.
void OpenRaster::readPieces(const PostWindow& window, double* cells) const {
  std::fill_n(cells, static_cast<std::size_t>(window.columns) * static_cast<std::size_t>(window.rows), NAN);
  int blockColumns = 1, blockRows = 1;
  band_->GetBlockSize(&blockColumns, &blockRows);
  // Blocks smaller than this cost more than the few cells that they may save.
  const std::int64_t stepColumns = std::max(blockColumns, 16), stepRows = blockRows;
  const std::int64_t endColumn = window.column + window.columns, endRow = window.row + window.rows;
  for (std::int64_t top = window.row; top < endRow; top = (top / stepRows + 1) * stepRows)
    for (std::int64_t left = window.column; left < endColumn; left = (left / stepColumns + 1) * stepColumns) {
      const auto right = std::min((left / stepColumns + 1) * stepColumns, endColumn);
      const auto bottom = std::min((top / stepRows + 1) * stepRows, endRow);
      const int columns = static_cast<int>(right - left), rows = static_cast<int>(bottom - top);
      std::vector<double> piece(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
      if (band_->RasterIO(GF_Read, static_cast<int>(left), static_cast<int>(top), columns, rows, piece.data(),
                          columns, rows, GDT_Float64, 0, 0, nullptr) != CE_None)
        continue;
      for (int row = 0; row < rows; ++row)
        std::copy_n(piece.data() + std::ptrdiff_t{row} * columns, columns,
                    cells + (top - window.row + row) * window.columns + (left - window.column));
    }
}

void OpenRaster::blankMaskedCells(const PostWindow& window, double* cells) const {
  const int flags = band_->GetMaskFlags();
  if ((flags & (GMF_ALL_VALID | GMF_NODATA)) != 0) return;
  const std::size_t count = static_cast<std::size_t>(window.columns) * static_cast<std::size_t>(window.rows);
  std::vector<std::uint8_t> mask(count);
  GDALRasterBand* band = band_->GetMaskBand();
  if (!band || band->RasterIO(GF_Read, window.column, window.row, window.columns, window.rows, mask.data(),
                              window.columns, window.rows, GDT_Byte, 0, 0, nullptr) != CE_None)
    std::fill(mask.begin(), mask.end(), std::uint8_t{0});
  for (std::size_t i = 0; i < count; ++i)
    if (mask[i] == 0) cells[i] = NAN;
}

// A file may leave out cells that were never written. Where it declares no mark for them they read as 0, and
// that would be sea level: they are void.
void OpenRaster::blankMissingCells(const PostWindow& window, double* cells) const {
  const std::string_view driver =
      dataset_->GetDriver() ? std::string_view(dataset_->GetDriver()->GetDescription()) : std::string_view();
  // The library's own answer for a TIFF also calls the holes of a sparse file on disk missing, which hold
  // true zeros.
  if (driver == "GTiff") blankMissingBlocks(window, cells);
  if (driver == "VRT") blankUncovered(window, window, cells);
}

void OpenRaster::blankMissingBlocks(const PostWindow& window, double* cells) const {
  int blockColumns = 1, blockRows = 1;
  band_->GetBlockSize(&blockColumns, &blockRows);
  for (std::int32_t y = window.row / blockRows; y <= (window.row + window.rows - 1) / blockRows; ++y)
    for (std::int32_t x = window.column / blockColumns;
         x <= (window.column + window.columns - 1) / blockColumns; ++x) {
      const std::string offset = "BLOCK_OFFSET_" + std::to_string(x) + "_" + std::to_string(y);
      if (band_->GetMetadataItem(offset.c_str(), "TIFF")) continue;
      const std::int32_t left = std::max(x * blockColumns, window.column),
                         top = std::max(y * blockRows, window.row);
      const std::int64_t right =
          std::min(std::int64_t{x + 1} * blockColumns, std::int64_t{window.column} + window.columns);
      const std::int64_t bottom =
          std::min(std::int64_t{y + 1} * blockRows, std::int64_t{window.row} + window.rows);
      blank(window,
            {left, top, static_cast<std::int32_t>(right - left), static_cast<std::int32_t>(bottom - top)},
            cells);
    }
}

void OpenRaster::blankUncovered(const PostWindow& window, const PostWindow& part, double* cells) const {
  const int status = band_->GetDataCoverageStatus(part.column, part.row, part.columns, part.rows, 0, nullptr);
  const bool empty = (status & GDAL_DATA_COVERAGE_STATUS_EMPTY) != 0;
  const bool data = (status & GDAL_DATA_COVERAGE_STATUS_DATA) != 0;
  if (!empty || (status & GDAL_DATA_COVERAGE_STATUS_UNIMPLEMENTED) != 0) return;
  if (!data) return blank(window, part, cells);
  if (part.columns == 1 && part.rows == 1) return;
  const std::int32_t left = std::max(part.columns / 2, 1), top = std::max(part.rows / 2, 1);
  for (const std::int32_t rowOffset : {0, top})
    for (const std::int32_t columnOffset : {0, left}) {
      const PostWindow quarter{part.column + columnOffset, part.row + rowOffset,
                               columnOffset == 0 ? left : part.columns - left,
                               rowOffset == 0 ? top : part.rows - top};
      if (quarter.columns > 0 && quarter.rows > 0) blankUncovered(window, quarter, cells);
    }
}

void OpenRaster::blank(const PostWindow& window, const PostWindow& part, double* cells) {
  for (std::int32_t row = 0; row < part.rows; ++row)
    std::fill_n(
        cells + std::ptrdiff_t{part.row - window.row + row} * window.columns + (part.column - window.column),
        part.columns, NAN);
}

}  // namespace zel
