#include "zeltool/terrain/raster_listing.h"

#include <cpl_conv.h>
#include <cpl_string.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string_view>

#include "foundation/text.h"
#include "zeltool/terrain/gdal_session.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostRasters = 1'000'000;
constexpr int kDeepest = 32;                    // folders within folders
constexpr std::size_t kMostInArchive = 10'000;  // entries
constexpr std::string_view kArchive = "/vsizip/", kPacked = "/vsigzip/";

// Endings of files that accompany rasters but hold no heights.
constexpr std::array<std::string_view, 66> kCompanions = {
    ".aux",  ".avl",  ".blw",  ".bpw",  ".bqw",  ".clr",    ".cpg",  ".csv",  ".dbf", ".dmw",  ".doc",
    ".docx", ".gfs",  ".gfw",  ".gif",  ".hdr",  ".htm",    ".html", ".ige",  ".ini", ".j2w",  ".jgw",
    ".jpeg", ".jpg",  ".jpgw", ".json", ".kml",  ".kmz",    ".lock", ".log",  ".lst", ".md",   ".md5",
    ".met",  ".msk",  ".num",  ".ovr",  ".pdf",  ".pgw",    ".prj",  ".py",   ".qix", ".qml",  ".rrd",
    ".sbn",  ".sbx",  ".sch",  ".sh",   ".sha1", ".sha256", ".shp",  ".shx",  ".src", ".stx",  ".swb",
    ".tfw",  ".tifw", ".tmp",  ".txt",  ".url",  ".wld",    ".xls",  ".xlsx", ".xml", ".yaml", ".yml"};

bool isCompanion(std::string_view name) {
  if (name.starts_with(".")) return true;
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos)
    return equalIgnoringCase(name, "README") || equalIgnoringCase(name, "LICENSE");
  const std::string ending = lowerCase(name.substr(dot));
  return std::find(kCompanions.begin(), kCompanions.end(), ending) != kCompanions.end();
}

// What the makers of tiles put beside the heights as rasters of their own: masks of editing, filling, water,
// shadow, how many pictures and how large an error. Read as heights they would be land some metres high.
constexpr std::array<std::string_view, 15> kLayers = {"acm", "am2", "amp", "com", "cov", "edm", "flm", "hem",
                                                      "lsm", "msk", "num", "ql",  "stk", "wam", "wbm"};
constexpr std::array<std::string_view, 2> kHeights = {"dem", "dsm"};

// "Tile_N46E009_HEM.tif" in lower case: what stands before and behind the last underline.
struct LayerName {
  std::string tile;
  std::string layer;
};

LayerName layerName(std::string_view fileName) {
  const std::string stem = lowerCase(fileName.substr(0, fileName.rfind('.')));
  const std::size_t mark = stem.rfind('_');
  if (mark == std::string::npos) return {};
  return {stem.substr(0, mark), stem.substr(mark + 1)};
}

template <std::size_t n>
bool isOneOf(const std::array<std::string_view, n>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// Only where the heights themselves are there: a file that just has such a name is somebody's terrain.
void removeLayersBesideHeights(std::vector<RasterCandidate>& rasters) {
  std::set<std::string> tiles;
  for (const RasterCandidate& raster : rasters)
    if (LayerName name = layerName(raster.name); isOneOf(kHeights, name.layer))
      tiles.insert(std::move(name.tile));
  if (tiles.empty()) return;
  std::erase_if(rasters, [&](const RasterCandidate& raster) {
    const LayerName name = layerName(raster.name);
    return isOneOf(kLayers, name.layer) && tiles.contains(name.tile);
  });
}

bool isArchive(std::string_view name) {
  return name.size() > 4 && equalIgnoringCase(name.substr(name.size() - 4), ".zip");
}

bool isPackedTile(std::string_view name) {
  constexpr std::string_view kEnding = ".hgt.gz";
  return name.size() > kEnding.size() &&
         equalIgnoringCase(name.substr(name.size() - kEnding.size()), kEnding);
}

// The length that the end of a .gz file states for its content, bytes, low byte first; 0 when there is none.
std::uintmax_t statedLength(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::array<unsigned char, 4> bytes{};
  file.seekg(-static_cast<std::streamoff>(bytes.size()), std::ios::end);
  if (!file.read(reinterpret_cast<char*>(bytes.data()), bytes.size())) return 0;
  std::uintmax_t length = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) length = length << 8 | bytes[i];
  return length;
}

std::int64_t ticks(const fs::path& path) {
  std::error_code error;
  const auto time = fs::last_write_time(path, error);
  return error ? 0 : static_cast<std::int64_t>(time.time_since_epoch().count());
}

class Walk {
 public:
  void path(const fs::path& path) {
    result_.watched.push_back(watch(path.string()));
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) {
      problem(path, "there is no such file or folder");
    } else if (fs::is_directory(status)) {
      folder(path, 0);
    } else {
      file(path);
    }
  }

  RasterListing take() {
    removeLayersBesideHeights(result_.rasters);
    std::stable_sort(result_.rasters.begin(), result_.rasters.end(),
                     [](const RasterCandidate& a, const RasterCandidate& b) { return a.path < b.path; });
    return std::move(result_);
  }

 private:
  void problem(const fs::path& path, const std::string& why) {
    result_.problems.push_back(path.string() + ": " + why);
  }

  void folder(const fs::path& path, int depth) {
    std::error_code error;
    // Links may lead back to a folder above.
    const fs::path real = fs::canonical(path, error);
    if (error || !seen_.insert(real.string()).second) return;
    if (depth > kDeepest) return problem(path, "its folders are nested too deeply");
    if (fs::exists(path / "hdr.adf", error)) {
      add({path.string(), path.string(), path.filename().string(), 0, ticks(path)});
      return;
    }
    std::vector<fs::directory_entry> entries;
    fs::directory_iterator it(path, error);
    for (; !error && it != fs::directory_iterator(); it.increment(error)) entries.push_back(*it);
    if (error) problem(path, "the folder cannot be read: " + error.message());
    std::sort(entries.begin(), entries.end());
    for (const auto& entry : entries) {
      const std::string name = entry.path().filename().string();
      if (entry.is_directory(error)) {
        if (name.starts_with(".")) continue;
        result_.watched.push_back(watch(entry.path().string()));
        folder(entry.path(), depth + 1);
      } else if (!isCompanion(name)) {
        file(entry.path());
      }
    }
  }

  void file(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
      problem(path, error ? "it cannot be read: " + error.message() : "it is no ordinary file");
      return;
    }
    const std::string name = path.filename().string();
    if (isArchive(name)) return archive(path);
    const std::uintmax_t bytes = fs::file_size(path, error);
    if (bytes == 0 || error) {
      result_.watched.push_back(watch(path.string()));
      return problem(path, error ? "it cannot be read: " + error.message() : "it is empty");
    }
    // What the end states is a claim: the raster library holds the content against it when it is opened.
    if (isPackedTile(name))
      return add({std::string(kPacked) + path.string(), path.string(), name.substr(0, name.size() - 3),
                  statedLength(path), ticks(path)});
    add({path.string(), path.string(), name, bytes, ticks(path)});
  }

  void archive(const fs::path& path) {
    GdalSession session;
    const std::string root = std::string(kArchive) + path.string();
    const std::unique_ptr<VSIDIR, decltype(&VSICloseDir)> listing(VSIOpenDir(root.c_str(), -1, nullptr),
                                                                  &VSICloseDir);
    if (!listing) {
      const std::string why = session.takeError();
      return problem(path, "the archive cannot be read" + (why.empty() ? "" : ": " + why));
    }
    bool found = false;
    std::size_t count = 0;
    while (const VSIDIREntry* entry = VSIGetNextDirEntry(listing.get())) {
      if (++count > kMostInArchive) {
        problem(path, "the archive holds too many files");
        break;
      }
      const std::string inner = entry->pszName;
      const std::string name = fs::path(inner).filename().string();
      if (VSI_ISDIR(entry->nMode) || name.empty() || isCompanion(name) || isArchive(name)) continue;
      found = true;
      add({root + "/" + inner, path.string(), name, static_cast<std::uintmax_t>(entry->nSize), ticks(path)});
    }
    if (!found) problem(path, "the archive holds no raster");
  }

  void add(RasterCandidate raster) {
    if (result_.rasters.size() < kMostRasters) result_.rasters.push_back(std::move(raster));
  }

  RasterListing result_;
  std::set<std::string> seen_;
};

}  // namespace

WatchedPath watch(const std::string& path) {
  std::error_code error;
  const auto status = fs::status(path, error);
  if (error || !fs::exists(status)) return {path, 0, 0};
  const std::uintmax_t bytes = fs::is_regular_file(status) ? fs::file_size(path, error) : 0;
  return {path, ticks(path), error ? 0 : bytes};
}

RasterListing listRasters(const std::string& path) {
  Walk walk;
  walk.path(path);
  return walk.take();
}

}  // namespace zel
