#include "zeltool/terrain/gdal_session.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_priv.h>
#include <ogr_srs_api.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <mutex>
#include <string_view>
#include <vector>

namespace zel {
namespace {

constexpr std::size_t kLongestError = 300;  // characters; some drivers quote whole files

// With a folder of thousands of tiles, listing it at every open costs more than the reading.
constexpr const char* kReadDir = "GDAL_DISABLE_READDIR_ON_OPEN";
// A virtual raster's sources must not be shared with another one's: each file here has a lock of its own.
constexpr const char* kSharedSource = "VRT_SHARED_SOURCE";

// Drivers that fetch over a network, that talk to a database, or that render documents rather than read
// cells.
constexpr std::array<std::string_view, 26> kNotLocal = {
    "API_PROXY",     "DAAS",       "DERIVED", "EEDA",   "EEDAI",  "GeoRaster", "GPKG",
    "HTTP",          "MEM",        "MBTiles", "NGW",    "OGCAPI", "PDF",       "PLMosaic",
    "PLSCENES",      "Rasterlite", "RDA",     "STACIT", "STACTA", "TileDB",    "WCS",
    "PostGISRaster", "WMS",        "WMTS",    "ESRIC",  "SQLite"};

void CPL_STDCALL collectError(CPLErr kind, CPLErrorNum, const char* message) {
  if (kind != CE_Failure && kind != CE_Fatal) return;
  std::string text(message, strnlen(message, kLongestError));
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
  *static_cast<std::string*>(CPLGetErrorHandlerUserData()) = std::move(text);
}

void registerOnce() {
  static std::once_flag once;
  std::call_once(once, [] {
    GDALAllRegister();
    OSRSetPROJEnableNetwork(FALSE);
  });
}

bool setForThread(const char* key, const char* value, std::string& previous) {
  const char* before = CPLGetThreadLocalConfigOption(key, nullptr);
  if (before) previous = before;
  CPLSetThreadLocalConfigOption(key, value);
  return before != nullptr;
}

}  // namespace

GdalSession::GdalSession() {
  registerOnce();
  CPLPushErrorHandlerEx(collectError, &error_);
  hadReadDir_ = setForThread(kReadDir, "TRUE", previousReadDir_);
  hadSharedSource_ = setForThread(kSharedSource, "0", previousSharedSource_);
}

GdalSession::~GdalSession() {
  CPLSetThreadLocalConfigOption(kSharedSource, hadSharedSource_ ? previousSharedSource_.c_str() : nullptr);
  CPLSetThreadLocalConfigOption(kReadDir, hadReadDir_ ? previousReadDir_.c_str() : nullptr);
  CPLPopErrorHandler();
}

std::string GdalSession::takeError() {
  std::string text;
  text.swap(error_);
  return text;
}

const char* const* localRasterDrivers() {
  static const std::vector<const char*> names = [] {
    registerOnce();
    std::vector<const char*> list;
    GDALDriverManager* manager = GetGDALDriverManager();
    for (int i = 0; i < manager->GetDriverCount(); ++i) {
      GDALDriver* driver = manager->GetDriver(i);
      const char* name = driver->GetDescription();
      if (!driver->GetMetadataItem(GDAL_DCAP_RASTER)) continue;
      if (std::find(kNotLocal.begin(), kNotLocal.end(), name) == kNotLocal.end()) list.push_back(name);
    }
    list.push_back(nullptr);
    return list;
  }();
  return names.data();
}

}  // namespace zel
