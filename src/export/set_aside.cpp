#include "export/set_aside.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "component/services/file_beside.h"
#include "component/services/file_error.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

}  // namespace

SetAside::SetAside(const std::string& path) : path_(behindLinks(path)) {
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(path_, failure);
  if (!fs::exists(status)) return;
  if (fs::is_directory(status)) throw fileError(path, EISDIR);
  if (!fs::is_regular_file(status)) throw fileError(path, EINVAL);
  FileBeside aside(path_);
  if (aside.error() != 0) throw fileError(path, aside.error());
  fs::rename(path_, aside.name(), failure);
  if (failure) throw fileError(path, failure.value());
  aside.release();
  aside_ = aside.name();
}

SetAside::~SetAside() {
  if (newKept_) return;
  std::error_code ignored;
  if (aside_.empty()) {
    fs::remove(path_, ignored);
  } else {
    fs::rename(aside_, path_, ignored);
  }
}

void SetAside::keepNew() {
  newKept_ = true;
  std::error_code ignored;
  if (!aside_.empty()) fs::remove(aside_, ignored);
}

}  // namespace zel
