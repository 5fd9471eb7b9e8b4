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

constexpr std::int64_t kBlockCache = 128LL << 20;  // bytes; holds the rows of a window of the widest grids

// Set while a session lasts, for its thread.
constexpr std::array<std::array<const char*, 2>, GdalSession::kOptions> kThreadOptions = {{
    // With a folder of thousands of tiles, listing it at every open costs more than the reading.
    {"GDAL_DISABLE_READDIR_ON_OPEN", "TRUE"},
    // A virtual raster's sources must not be shared with another one's: each file here has a lock of its own.
    {"VRT_SHARED_SOURCE", "0"},
    // No address matches this name: nothing is fetched, whoever asks.
    {"CPL_VSIL_CURL_ALLOWED_FILENAME", "none"},
    // Reading a packed file must not leave a note about it beside it.
    {"CPL_VSIL_GZIP_WRITE_PROPERTIES", "NO"},
}};

// Formats of heights that are read from the file itself and the files that go with it. Everything else stays
// shut: formats that fetch over a network, follow addresses in their text, keep caches beside the file, talk
// to a database, or render documents.
constexpr std::array<std::string_view, 42> kAllowed = {"AAIGrid",
                                                       "ACE2",
                                                       "AIG",
                                                       "BAG",
                                                       "BT",
                                                       "BYN",
                                                       "CTG",
                                                       "DTED",
                                                       "EHdr",
                                                       "ENVI",
                                                       "GRASSASCIIGrid",
                                                       "GS7BG",
                                                       "GSAG",
                                                       "GSBG",
                                                       "GTiff",
                                                       "GTX",
                                                       "GXF",
                                                       "HF2",
                                                       "HFA",
                                                       "IDA",
                                                       "ISG",
                                                       "JP2OpenJPEG",
                                                       "KRO",
                                                       "LAN",
                                                       "netCDF",
                                                       "NGSGEOID",
                                                       "NITF",
                                                       "NWT_GRD",
                                                       "PAux",
                                                       "PCRaster",
                                                       "PNG",
                                                       "ROI_PAC",
                                                       "RRASTER",
                                                       "RST",
                                                       "SAGA",
                                                       "SIGDEM",
                                                       "SRTMHGT",
                                                       "Terragen",
                                                       "USGSDEM",
                                                       "VRT",
                                                       "XYZ",
                                                       "ZMap"};

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
    if (GDALGetCacheMax64() > kBlockCache) GDALSetCacheMax64(kBlockCache);
  });
}

bool isAllowed(std::string_view format) {
  return std::find(kAllowed.begin(), kAllowed.end(), format) != kAllowed.end();
}

}  // namespace

GdalSession::GdalSession() {
  registerOnce();
  CPLPushErrorHandlerEx(collectError, &error_);
  for (std::size_t i = 0; i < kOptions; ++i) {
    if (const char* before = CPLGetThreadLocalConfigOption(kThreadOptions[i][0], nullptr))
      previous_[i] = before;
    CPLSetThreadLocalConfigOption(kThreadOptions[i][0], kThreadOptions[i][1]);
  }
}

GdalSession::~GdalSession() {
  for (std::size_t i = 0; i < kOptions; ++i)
    CPLSetThreadLocalConfigOption(kThreadOptions[i][0], previous_[i] ? previous_[i]->c_str() : nullptr);
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
      const char* name = manager->GetDriver(i)->GetDescription();
      if (isAllowed(name)) list.push_back(name);
    }
    list.push_back(nullptr);
    return list;
  }();
  return names.data();
}

std::string foreignFormat(const std::string& path) {
  GDALOpenInfo file(path.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY);
  GDALDriverManager* manager = GetGDALDriverManager();
  for (int i = 0; i < manager->GetDriverCount(); ++i) {
    GDALDriver* driver = manager->GetDriver(i);
    // The formats are asked by their marks alone; the library's own search would open the file with some.
    if (!driver->GetMetadataItem(GDAL_DCAP_RASTER) || !driver->pfnIdentify || driver->pfnIdentify(&file) <= 0)
      continue;
    return isAllowed(driver->GetDescription()) ? "" : driver->GetDescription();
  }
  return "";
}

}  // namespace zel
