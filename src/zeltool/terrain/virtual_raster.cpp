#include "zeltool/terrain/virtual_raster.h"

#include <cpl_conv.h>
#include <cpl_minixml.h>
#include <cpl_vsi.h>
#include <gdal.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <string_view>
#include <vector>

#include "foundation/text.h"
#include "zeltool/terrain/gdal_session.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr vsi_l_offset kLargestText = 64U << 20;  // bytes
constexpr std::size_t kMostFiles = 100'000;       // named directly and through others
constexpr std::size_t kDeepest = 32;              // virtual rasters within each other

struct XmlCloser {
  void operator()(CPLXMLNode* node) const { CPLDestroyXMLNode(node); }
};

bool isFileReference(const CPLXMLNode& node) {
  return node.eType == CXT_Element && (equalIgnoringCase(node.pszValue, "SourceFilename") ||
                                       equalIgnoringCase(node.pszValue, "SourceDataset"));
}

// Positions cell by cell out of other files, and heights for camera models: a grid of heights has no need of
// them.
bool isPositioning(const CPLXMLNode& node) {
  if (node.eType != CXT_Text) return equalIgnoringCase(node.pszValue, "GeoLocTransformer");
  for (const char* key : {"X_DATASET", "Y_DATASET", "RPC_DEM"})
    if (equalIgnoringCase(node.pszValue, key)) return true;
  return false;
}

bool usesPositioning(const CPLXMLNode* node) {
  for (; node; node = node->psNext)
    if (isPositioning(*node) || usesPositioning(node->psChild)) return true;
  return false;
}

struct Reference {
  std::string path;
  bool relative = false;
};

void collectReferences(const CPLXMLNode* node, std::vector<Reference>& found) {
  for (; node; node = node->psNext) {
    if (isFileReference(*node)) {
      const char* relative = CPLGetXMLValue(node, "relativeToVRT", "0");
      found.push_back({CPLGetXMLValue(node, nullptr, ""), std::string_view(relative) == "1"});
    }
    if (node->psChild) collectReferences(node->psChild, found);
  }
}

// A plain path on this machine: no address, no connection text, no inline document.
bool isPlainPath(std::string_view path) {
  if (path.starts_with("/vsi"))
    return path.starts_with("/vsizip/") && path.find("/vsi", 1) == std::string_view::npos;
  return !path.empty() && path.find(':') == std::string_view::npos &&
         path.find('<') == std::string_view::npos;
}

// Endings that the formats look for beside a file, after its whole name or in place of its own ending.
constexpr std::array<std::string_view, 30> kCompanions = {
    ".aux.xml", ".msk", ".ovr",  ".aux", ".xml",  ".hdr", ".prj",     ".properties", ".wld",  ".tfw",
    ".tifw",    ".pgw", ".pngw", ".j2w", ".jp2w", ".tab", ".clr",     ".stx",        ".rsc",  ".ige",
    ".rrd",     ".rdc", ".ref",  ".gri", ".grd",  ".blw", ".img.xml", ".sgrd",       ".sdat", ".mgrd"};

bool wouldWait(const fs::path& path) {
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

std::string companionRefusal(const std::string& path) {
  constexpr std::string_view kPacked = "/vsigzip/";
  const fs::path file = path.starts_with(kPacked) ? path.substr(kPacked.size()) : path;
  // Archives hold plain files only.
  if (file.string().starts_with("/vsi")) return "";
  const std::string whole = file.string(), bare = (file.parent_path() / file.stem()).string();
  for (const std::string_view ending : kCompanions)
    for (const std::string& base : {whole, bare})
      for (const std::string& name : {base + std::string(ending), base + upperCase(ending)})
        if (name != whole && wouldWait(name))
          return "its companion " + fs::path(name).filename().string() + " is no ordinary file";
  return "";
}

class Inspection {
 public:
  // Empty when the file may be opened.
  std::string refusal(const std::string& path) {
    const std::string name = canonical(path);
    if (open_.count(name) > 0) return "it refers to itself";
    if (!seen_.insert(name).second) return "";
    if (seen_.size() > kMostFiles || open_.size() > kDeepest) return "it refers to too many files";
    std::string reason = companionRefusal(path);
    if (!reason.empty()) return reason;
    open_.insert(name);
    reason = referenceRefusal(path + ".msk");
    GDALDriverH driver = GDALIdentifyDriverEx(path.c_str(), GDAL_OF_RASTER, localRasterDrivers(), nullptr);
    if (reason.empty() && driver && std::string_view(GDALGetDescription(driver)) == "VRT")
      reason = textRefusal(path);
    open_.erase(name);
    return reason;
  }

 private:
  std::string referenceRefusal(const std::string& path) {
    VSIStatBufL status;
    if (VSIStatL(path.c_str(), &status) != 0) return "";
    if (VSI_ISDIR(status.st_mode) ? wouldWait(fs::path(path) / "hdr.adf") : !VSI_ISREG(status.st_mode))
      return "it refers to " + path + ", which is no ordinary file";
    // The raster library opens such files with any of its formats.
    if (const std::string foreign = foreignFormat(path); !foreign.empty())
      return "it refers to " + path + ", whose format (" + foreign + ") is not read";
    if (!GDALIdentifyDriverEx(path.c_str(), GDAL_OF_RASTER, localRasterDrivers(), nullptr))
      return "it refers to " + path + ", which is no raster file";
    return refusal(path);
  }

  std::string textRefusal(const std::string& path) {
    VSIStatBufL status;
    if (VSIStatL(path.c_str(), &status) != 0 || static_cast<vsi_l_offset>(status.st_size) > kLargestText)
      return "its text is too long";
    const std::unique_ptr<CPLXMLNode, XmlCloser> text(CPLParseXMLFile(path.c_str()));
    if (!text) return "its text cannot be read";
    if (usesPositioning(text.get())) return "it takes positions from other files";
    std::vector<Reference> references;
    collectReferences(text.get(), references);
    for (const Reference& reference : references) {
      if (!isPlainPath(reference.path))
        return "it refers to \"" + reference.path.substr(0, 100) + "\", which is no file on this machine";
      std::string reason = referenceRefusal(
          reference.relative ? CPLProjectRelativeFilename(CPLGetPath(path.c_str()), reference.path.c_str())
                             : reference.path);
      if (!reason.empty()) return reason;
    }
    return "";
  }

  static std::string canonical(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
  }

  std::set<std::string> open_, seen_;
};

}  // namespace

std::string attachmentRefusal(const std::string& path) { return Inspection().refusal(path); }

}  // namespace zel
