// Archives in memory.
#pragma once

#include <zip.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace zel::host {

// A zip archive of these names and contents; with a password encrypted.
inline std::string packed(const std::vector<std::pair<std::string, std::string>>& files,
                          const char* password = nullptr) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_t* archive = zip_open_from_source(source, ZIP_TRUNCATE, &error);
  if (archive == nullptr) throw std::runtime_error("no archive");
  zip_source_keep(source);
  for (const auto& [name, content] : files) {
    zip_source_t* file = zip_source_buffer(archive, content.data(), content.size(), 0);
    const zip_int64_t index = zip_file_add(archive, name.c_str(), file, 0);
    if (index < 0) throw std::runtime_error("not packed");
    if (password != nullptr)
      zip_file_set_encryption(archive, static_cast<zip_uint64_t>(index), ZIP_EM_AES_256, password);
  }
  if (zip_close(archive) != 0) throw std::runtime_error("not packed");
  zip_stat_t status;
  zip_stat_init(&status);
  zip_source_stat(source, &status);
  std::string bytes(status.size, '\0');
  zip_source_open(source);
  zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  zip_source_free(source);
  zip_error_fini(&error);
  return bytes;
}

}  // namespace zel::host
