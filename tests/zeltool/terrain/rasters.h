// Rasters that tests write for themselves.
#pragma once

#include <cpl_string.h>
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "zeltool/terrain/gdal_session.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel::test {

struct RasterSpec {
  int columns = 100, rows = 100;
  std::array<double, 6> corners{10, 0.01, 0, 51, 0, -0.01};  // degrees; the square from 50 N, 10 E
  GDALDataType type = GDT_Float32;
  std::string crs = "EPSG:4326";  // empty for none
  bool points = false;
  std::optional<double> noData;
  double scale = 1, offset = 0;
  std::string unit;
  int bands = 1;
  std::vector<std::string> options;
  std::string driver = "GTiff";
};

using CellValue = std::function<double(int column, int row)>;

inline void writeRaster(const std::filesystem::path& path, const RasterSpec& spec, const CellValue& value) {
  const GdalSession session;
  GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(spec.driver.c_str());
  ASSERT_NE(driver, nullptr);
  CPLStringList options;
  for (const std::string& option : spec.options) options.AddString(option.c_str());
  GDALDataset* file =
      driver->Create(path.c_str(), spec.columns, spec.rows, spec.bands, spec.type, options.List());
  ASSERT_NE(file, nullptr);
  auto corners = spec.corners;
  file->SetGeoTransform(corners.data());
  if (spec.points) file->SetMetadataItem("AREA_OR_POINT", "Point");
  if (!spec.crs.empty()) {
    OGRSpatialReference crs;
    crs.SetFromUserInput(spec.crs.c_str());
    file->SetSpatialRef(&crs);
  }
  for (int b = 1; b <= spec.bands; ++b) {
    GDALRasterBand* band = file->GetRasterBand(b);
    if (spec.noData) band->SetNoDataValue(*spec.noData);
    if (spec.scale != 1) band->SetScale(spec.scale);
    if (spec.offset != 0) band->SetOffset(spec.offset);
    if (!spec.unit.empty()) band->SetUnitType(spec.unit.c_str());
    std::vector<double> line(static_cast<std::size_t>(spec.columns));
    for (int row = 0; value && row < spec.rows; ++row) {
      for (int column = 0; column < spec.columns; ++column)
        line[static_cast<std::size_t>(column)] = value(column, row);
      ASSERT_EQ(band->RasterIO(GF_Write, 0, row, spec.columns, 1, line.data(), spec.columns, 1, GDT_Float64,
                               0, 0, nullptr),
                CE_None);
    }
  }
  GDALClose(file);
}

// The bytes of a tile of bare posts, row by row from the north-west, high byte first.
inline std::string tileBytes(int columns, int rows, const CellValue& value) {
  std::string bytes(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows) * 2, '\0');
  char* next = bytes.data();  // a tile of 3601 posts each way would take seconds by push_back in tests that
                              // are not optimised
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columns; ++column) {
      const auto height =
          static_cast<std::uint16_t>(static_cast<std::int16_t>(std::lround(value(column, row))));
      *next++ = static_cast<char>(height >> 8);
      *next++ = static_cast<char>(height & 0xFF);
    }
  return bytes;
}

inline void writeTile(const std::filesystem::path& path, const CellValue& value, int columns = 1201,
                      int rows = 1201) {
  writeBytes(path, tileBytes(columns, rows, value));
}

// A library over one source that everybody asks for.
inline TerrainLibrary libraryOf(std::vector<std::string> paths,
                                std::size_t cacheBytes = std::size_t{64} << 20) {
  SourceDefinition definition{3, "1 second", std::move(paths), false};
  return TerrainLibrary([definition](int) { return definition; }, cacheBytes);
}

struct OneHeight {
  float height = 0;  // metres
  SamplingReport report;
};

inline OneHeight heightAt(const TerrainLibrary& library, GeoPoint position, std::int32_t method = 0) {
  OneHeight result;
  result.report = library.heightsAt({&position, 1}, method, 3, {&result.height, 1});
  return result;
}

}  // namespace zel::test
