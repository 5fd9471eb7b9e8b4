// Rasters that are damaged in any way: sampling and describing them must end, with heights, voids or a reason
// in words.
//
// The first byte of an input chooses. Even: a small GeoTIFF (tiled, compressed, plain or with a mask, by the
// byte's other bits) with the input's triples of offset and value written over it. One more than a multiple
// of four: a tile of bare posts of the right size, filled with the input. Three more: a file of the input's
// own length under a tile's name. 0xFF: the input itself as a file.
#include <cpl_string.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/terrain.h"
#include "support/temporary_folder.h"
#include "zeltool/terrain/gdal_session.h"
#include "zeltool/terrain/raster_info.h"
#include "zeltool/terrain/terrain_library.h"

namespace {

const zel::test::TemporaryFolder& folder() {
  static const zel::test::TemporaryFolder made;
  return made;
}

std::string smallGeoTiff(const std::vector<const char*>& options, GDALDataType type) {
  const zel::GdalSession session;
  const std::string path = (folder() / "base.tif").string();
  CPLStringList list;
  for (const char* option : options) list.AddString(option);
  GDALDataset* file =
      GetGDALDriverManager()->GetDriverByName("GTiff")->Create(path.c_str(), 64, 48, 1, type, list.List());
  if (!file) std::abort();
  std::array<double, 6> corners{10, 0.01, 0, 51, 0, -0.01};
  file->SetGeoTransform(corners.data());
  OGRSpatialReference crs;
  crs.SetWellKnownGeogCS("WGS84");
  file->SetSpatialRef(&crs);
  file->GetRasterBand(1)->SetNoDataValue(-9999);
  std::vector<float> line(64);
  for (int row = 0; row < 48; ++row) {
    for (int column = 0; column < 64; ++column)
      line[static_cast<std::size_t>(column)] = static_cast<float>(column * row);
    if (file->GetRasterBand(1)->RasterIO(GF_Write, 0, row, 64, 1, line.data(), 64, 1, GDT_Float32, 0, 0,
                                         nullptr) != CE_None)
      std::abort();
  }
  GDALClose(file);
  return zel::test::fileBytes(path);
}

const std::string& base(std::size_t choice) {
  static const std::array<std::string, 4> bases = {
      smallGeoTiff({}, GDT_Int16),
      smallGeoTiff({"TILED=YES", "BLOCKXSIZE=16", "BLOCKYSIZE=16", "COMPRESS=DEFLATE"}, GDT_Int16),
      smallGeoTiff({"COMPRESS=LZW", "PREDICTOR=2"}, GDT_Int32), smallGeoTiff({"BIGTIFF=YES"}, GDT_Float32)};
  return bases[choice % bases.size()];
}

void overwrite(std::string& bytes, const std::uint8_t* data, std::size_t size) {
  for (std::size_t i = 0; i + 3 <= size; i += 3) {
    const std::size_t offset = static_cast<std::size_t>(data[i]) | static_cast<std::size_t>(data[i + 1]) << 8;
    if (offset == 0xFFFF)
      bytes.resize(bytes.size() * data[i + 2] / 256);
    else if (!bytes.empty())
      bytes[offset % bytes.size()] = static_cast<char>(data[i + 2]);
  }
}

constexpr zel::GeoPoint kFrom{50.99, 10.01};

void sample(const std::string& path, zel::GeoPoint to) {
  zel::SourceDefinition definition{3, "", {path}, false};
  const zel::TerrainLibrary library([&](int) { return zel::SourceDefinition(definition); },
                                    std::size_t{8} << 20);
  for (const std::int32_t method : {0, 1}) {
    const zel::SampleResult result = library.sample({kFrom, to, 200, method, 3, true});
    if (result.report.status == zel::kSamplerOk && result.heights.size() != 200) std::abort();
    if (result.report.status != zel::kSamplerOk && result.report.reason.empty()) std::abort();
    for (const float height : result.heights)
      if (!(std::abs(height) <= 12000)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t choice = data[0];
  const std::string rest(reinterpret_cast<const char*>(data + 1), size - 1);
  if (choice % 4 == 1) {
    // A whole tile is large: one corner of it is enough.
    static std::string bytes(std::size_t{1201} * 1201 * 2, '\0');
    for (std::size_t i = 0; i < rest.size(); ++i)
      for (std::size_t row = 0; row < 100; ++row) bytes[(row * 2402 + i * 37) % bytes.size()] = rest[i];
    const std::string path = (folder() / "N50E010.hgt").string();
    zel::test::writeBytes(path, bytes);
    sample(path, {50.95, 10.05});
    return 0;
  }
  const bool tile = choice % 2 == 1 && choice != 0xFF;
  const std::string path = (folder() / (tile ? "S01W180.hgt" : "a.tif")).string();
  std::string bytes = rest;
  if (choice % 2 == 0) {
    bytes = base(choice / 2);
    overwrite(bytes, data + 1, size - 1);
  }
  zel::test::writeBytes(path, bytes);
  sample(path, {50.56, 10.61});
  zel::describeRaster(path);
  return 0;
}
