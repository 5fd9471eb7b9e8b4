// The KML in a KMZ. Nothing is written to a disk, so the names in it do no harm; what is unpacked is counted,
// for what an archive says about its sizes is not to be trusted.
#include <zip.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>

#include "import/formats.h"

namespace zel::host {
namespace {

constexpr std::size_t kMostEntries = 200'000;  // each takes half a kilobyte of memory

struct CloseArchive {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseFile {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;
using File = std::unique_ptr<zip_file_t, CloseFile>;

std::string damaged(zip_error_t& error) {
  std::string text = std::string("the archive is damaged: ") + zip_error_strerror(&error);
  zip_error_fini(&error);
  return text;
}

// Told by their marks before the archive is opened, which takes memory for each.
bool hasTooManyEntries(std::string_view bytes) {
  constexpr std::string_view kEntry = "PK\1\2";
  std::size_t count = 0;
  for (std::size_t at = bytes.find(kEntry); at != std::string_view::npos; at = bytes.find(kEntry, at + 4))
    if (++count > kMostEntries) return true;
  return false;
}

Archive openArchive(std::string_view bytes, std::string& problem) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  zip_t* archive = source != nullptr ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
  if (archive != nullptr) {
    zip_error_fini(&error);
    return Archive(archive);
  }
  if (source != nullptr) zip_source_free(source);
  problem = damaged(error);
  return nullptr;
}

bool endsWithKml(std::string_view name) {
  constexpr std::string_view kExtension = ".kml";
  if (name.size() < kExtension.size()) return false;
  const std::string_view end = name.substr(name.size() - kExtension.size());
  return std::equal(end.begin(), end.end(), kExtension.begin(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

// -1 when there is none.
zip_int64_t findKml(zip_t* archive) {
  const zip_int64_t count = zip_get_num_entries(archive, 0);
  zip_int64_t first = -1;
  for (zip_int64_t i = 0; i < count; ++i) {
    const char* name = zip_get_name(archive, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
    if (name == nullptr || !endsWithKml(name)) continue;
    if (std::string_view(name) == "doc.kml") return i;
    if (first < 0) first = i;
  }
  return first;
}

bool isEncrypted(zip_t* archive, zip_uint64_t index) {
  zip_stat_t entry;
  zip_stat_init(&entry);
  return zip_stat_index(archive, index, 0, &entry) == 0 && (entry.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 &&
         entry.encryption_method != ZIP_EM_NONE;
}

void readWhole(zip_file_t* file, const ImportOptions& options, std::size_t mostBytes, UnpackedKml& result) {
  std::array<char, 1U << 16> buffer{};
  for (;;) {
    if (options.cancelled != nullptr && options.cancelled->load()) {
      result.cancelled = true;
      return;
    }
    const zip_int64_t count = zip_fread(file, buffer.data(), buffer.size());
    if (count == 0) return;
    if (count < 0) {
      result.error = std::string("the archive is damaged: ") + zip_file_strerror(file);
      return;
    }
    if (result.text.size() + static_cast<std::size_t>(count) > mostBytes) {
      result.error = "the KML in it is larger than " + std::to_string(mostBytes >> 20) + " MiB";
      return;
    }
    result.text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

UnpackedKml unpackKmz(std::string_view bytes, const ImportOptions& options, std::size_t mostBytes) {
  UnpackedKml result;
  if (hasTooManyEntries(bytes)) {
    result.error = "there are more than " + std::to_string(kMostEntries) + " files in this archive";
    return result;
  }
  const Archive archive = openArchive(bytes, result.error);
  if (!archive) return result;
  const zip_int64_t found = findKml(archive.get());
  if (found < 0) {
    result.error = "there is no KML in this archive; save a spreadsheet as CSV";
    return result;
  }
  const auto index = static_cast<zip_uint64_t>(found);
  if (isEncrypted(archive.get(), index)) {
    result.error = "the KML in it is encrypted";
    return result;
  }
  const File file(zip_fopen_index(archive.get(), index, 0));
  if (!file) {
    result.error = std::string("the KML in it cannot be unpacked: ") + zip_strerror(archive.get());
    return result;
  }
  readWhole(file.get(), options, mostBytes, result);
  return result;
}

}  // namespace zel::host
