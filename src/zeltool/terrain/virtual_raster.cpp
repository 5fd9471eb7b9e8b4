#include "zeltool/terrain/virtual_raster.h"

#include <cpl_conv.h>
#include <cpl_minixml.h>
#include <cpl_vsi.h>
#include <gdal.h>

#include <cstdlib>
#include <memory>
#include <set>
#include <string_view>
#include <vector>

#include "foundation/text.h"
#include "zeltool/terrain/gdal_session.h"

namespace zel {
namespace {

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

class Inspection {
 public:
  // Empty when the file may be opened.
  std::string refusal(const std::string& path) {
    const std::string name = canonical(path);
    if (open_.count(name) > 0) return "it refers to itself";
    if (!seen_.insert(name).second) return "";
    if (seen_.size() > kMostFiles || open_.size() > kDeepest) return "it refers to too many files";
    VSIStatBufL status;
    if (VSIStatL(path.c_str(), &status) != 0) return "";
    GDALDriverH driver = GDALIdentifyDriverEx(path.c_str(), GDAL_OF_RASTER, localRasterDrivers(), nullptr);
    if (!driver) return "it refers to " + path + ", which is no raster file";
    if (std::string_view(GDALGetDescription(driver)) != "VRT") return "";
    if (static_cast<vsi_l_offset>(status.st_size) > kLargestText) return "its text is too long";
    const std::unique_ptr<CPLXMLNode, XmlCloser> text(CPLParseXMLFile(path.c_str()));
    if (!text) return "its text cannot be read";
    std::vector<Reference> references;
    collectReferences(text.get(), references);
    open_.insert(name);
    std::string reason;
    for (const Reference& reference : references) {
      if (!isPlainPath(reference.path)) {
        reason = "it refers to \"" + reference.path.substr(0, 100) + "\", which is no file on this machine";
        break;
      }
      reason = refusal(reference.relative
                           ? CPLProjectRelativeFilename(CPLGetPath(path.c_str()), reference.path.c_str())
                           : reference.path);
      if (!reason.empty()) break;
    }
    open_.erase(name);
    return reason;
  }

 private:
  static std::string canonical(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
  }

  std::set<std::string> open_, seen_;
};

}  // namespace

std::string virtualRasterRefusal(const std::string& path) { return Inspection().refusal(path); }

}  // namespace zel
