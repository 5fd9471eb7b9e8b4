#include "import/station_list.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "import/formats.h"
#include "import/station_collector.h"
#include "import/text_encoding.h"
#include "import/xml_walk.h"

namespace zel::host {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string reasonOf(int error) { return std::generic_category().message(error); }

bool isCancelled(const ImportOptions& options) {
  return options.cancelled != nullptr && options.cancelled->load();
}

std::string tooLarge() { return "it is larger than " + std::to_string(kLargestImport >> 20) + " MiB"; }

// Why the file cannot be read; empty when `bytes` is all of it. Pipes and devices are told before they are
// opened: opening a pipe that nobody writes to waits.
std::string readFile(const std::string& path, const ImportOptions& options, std::string& bytes) {
  if (path.find('\0') != std::string::npos) return "its name has a zero byte";
  std::error_code error;
  const auto type = std::filesystem::status(path, error).type();
  if (type == std::filesystem::file_type::directory) return "it is a folder";
  if (error && type == std::filesystem::file_type::none) return error.message();
  if (type == std::filesystem::file_type::not_found) return reasonOf(ENOENT);
  if (type != std::filesystem::file_type::regular) return "it is no regular file";
  const auto size = std::filesystem::file_size(path, error);
  if (!error && size > kLargestImport) return tooLarge();
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (!file) return reasonOf(errno);
  if (!error) bytes.reserve(size + 1);
  constexpr std::size_t kPiece = 1U << 20;
  for (;;) {
    if (isCancelled(options)) return "the import was cancelled";
    const std::size_t before = bytes.size();
    bytes.resize(before + kPiece);
    const std::size_t count = std::fread(bytes.data() + before, 1, kPiece, file.get());
    const int reason = errno;
    bytes.resize(before + count);
    if (bytes.size() > kLargestImport) return tooLarge();
    if (count == kPiece) continue;
    return std::ferror(file.get()) != 0 ? reasonOf(reason) : std::string();
  }
}

std::string extensionOf(const std::string& name) {
  const std::size_t dot = name.find_last_of("./");
  if (dot == std::string::npos || name[dot] == '/') return {};
  std::string extension = name.substr(dot + 1);
  for (char& c : extension)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return extension;
}

ImportedStations refused(std::string kind, std::string error) {
  ImportedStations result;
  result.kind = std::move(kind);
  result.error = std::move(error);
  return result;
}

ImportedStations xmlStations(std::string_view text, const std::string& name, const ImportOptions& options) {
  const std::string root = rootElement(text);
  if (root == "kml" || root == "Document" || root == "Placemark" || root == "Folder")
    return kmlStations(text, name, options);
  if (root == "gpx") return gpxStations(text, name, options);
  return refused(
      "", "this is " + (root.empty() ? std::string("damaged XML")
                                     : "XML, but neither KML nor GPX: it begins with <" +
                                           shownText(root).substr(1, shownText(root).size() - 2) + ">"));
}

ImportedStations textStations(std::string_view text, const std::string& name, const ImportOptions& options) {
  const std::string_view content =
      withoutBlanks(text.substr(0, std::min<std::size_t>(text.size(), 1U << 20)));
  const std::string extension = extensionOf(name);
  if (content.empty()) return refused("", "it is empty");
  if (content.front() == '<') return xmlStations(text, name, options);
  const bool json = extension.find("json") != std::string::npos;
  const bool sequence = content.size() > 1 && content[0] == '\x1E' && content[1] == '{';
  if (content.front() == '{' || sequence || json) return geoJsonStations(text, name, options);
  if (extension == "kml" || extension == "gpx" || extension == "kmz")
    return refused("", "this is no " + std::string(extension == "gpx" ? "GPX" : "KML") +
                           ": it does not begin with \"<\"");
  return csvStations(text, name, options);
}

ImportedStations decodedStations(std::string_view bytes, const std::string& name,
                                 const ImportOptions& options) {
  DecodedText decoded;
  decodeText(bytes, decoded);
  if (!decoded.error.empty()) return refused("", decoded.error);
  ImportedStations result = textStations(decoded.text, name, options);
  if (!decoded.note.empty()) result.notes.insert(result.notes.begin(), decoded.note);
  return result;
}

bool isArchive(std::string_view bytes) {
  using namespace std::string_view_literals;
  return bytes.substr(0, 4) == "PK\3\4"sv || bytes.substr(0, 4) == "PK\5\6"sv;
}

ImportedStations archiveStations(std::string_view bytes, const std::string& name,
                                 const ImportOptions& options) {
  const UnpackedKml unpacked = unpackKmz(bytes, options);
  if (unpacked.cancelled) return refused("KMZ", "the import was cancelled");
  if (!unpacked.error.empty()) return refused("KMZ", unpacked.error);
  if (isArchive(unpacked.text)) return refused("KMZ", "the KML in it is an archive again");
  ImportedStations result = decodedStations(unpacked.text, name, options);
  result.kind = "KMZ";
  return result;
}

}  // namespace

ImportedStations importStations(const std::string& path, const ImportOptions& options) {
  std::string bytes;
  if (std::string problem = readFile(path, options, bytes); !problem.empty())
    return refused("", std::move(problem));
  return importStationsFrom(bytes, path, options);
}

ImportedStations importStationsFrom(const std::string& bytes, const std::string& name,
                                    const ImportOptions& options) {
  if (isCancelled(options)) return refused("", "the import was cancelled");
  if (bytes.size() > kLargestImport) return refused("", tooLarge());
  if (bytes.empty()) return refused("", "it is empty");
  return isArchive(bytes) ? archiveStations(bytes, name, options) : decodedStations(bytes, name, options);
}

std::vector<std::string> stationListEndings() {
  std::vector<std::string> endings{".csv", ".tsv", ".txt", ".kml", ".kmz", ".gpx", ".geojson", ".json"};
  endings.insert(endings.end(), kSequenceEndings.begin(), kSequenceEndings.end());
  return endings;
}

std::string importSummary(const ImportedStations& result, std::size_t lines) {
  if (!result.error.empty()) return result.error;
  std::vector<std::string> rows;
  std::string head = counted(result.stations.size(), "station", "stations");
  if (!result.links.empty()) head += " and " + counted(result.links.size(), "link", "links");
  rows.push_back(head + " from " + result.kind);
  for (const std::string& note : result.notes) rows.push_back(note);
  if (result.skipped > 0) {
    rows.push_back(counted(result.skipped, "entry was left out:", "entries were left out:"));
    for (const ImportProblem& problem : result.problems)
      rows.push_back("    " + (problem.line > 0 ? "line " + std::to_string(problem.line) + ": " : "") +
                     problem.text);
  }
  const std::size_t hidden = result.skipped - result.problems.size();
  const bool cut = rows.size() > lines || hidden > 0;
  const std::size_t shown = cut ? std::min(rows.size(), std::max<std::size_t>(lines, 2) - 1) : rows.size();
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) text += (i > 0 ? "\n" : "") + rows[i];
  if (cut) text += "\nand " + std::to_string(rows.size() - shown + hidden) + " more";
  return text;
}

}  // namespace zel::host
