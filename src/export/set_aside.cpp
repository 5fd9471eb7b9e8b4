#include "export/set_aside.h"

#include <cerrno>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>

#include "component/services/file_error.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

// A name beside another one that no file has, as far as chance can tell.
std::string nameBeside(const std::string& path) {
  constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuv";
  std::random_device random;
  std::string name = path + '.';
  for (int i = 0; i < 8; ++i) name += kDigits[random() % kDigits.size()];
  return name + ".part";
}

}  // namespace

SetAside::SetAside(const std::string& path) : path_(path) {
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(path, failure);
  if (!fs::exists(status)) return;
  if (fs::is_directory(status)) throw fileError(path, EISDIR);
  const std::string aside = nameBeside(path);
  fs::rename(path, aside, failure);
  if (failure) throw fileError(path, failure.value());
  aside_ = aside;
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
