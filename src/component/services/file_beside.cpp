#include "component/services/file_beside.h"

#include <cerrno>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>

#include "component/services/characters.h"
#include "component/services/file_error.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

std::string freshName(const fs::path& path) {
  constexpr std::size_t kCharacters = 40;  // of up to four bytes each
  constexpr std::size_t kBytes = 160;      // where the bytes are no text
  constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuv";
  const std::string whole = path.filename().string();
  std::string name(firstCharacters(whole, kCharacters).substr(0, kBytes));
  name += '.';
  std::random_device random;
  for (int i = 0; i < 8; ++i) name += kDigits[random() % kDigits.size()];
  return (path.parent_path() / (name + ".part")).string();
}

}  // namespace

OpenFile openFile(const std::string& path, const char* mode) {
  errno = 0;
  return OpenFile(std::fopen(path.c_str(), mode));
}

std::string behindLinks(const std::string& path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  fs::path file = path;
  std::error_code none, failure;
  for (int link = 0; fs::is_symlink(fs::symlink_status(file, none)); ++link) {
    if (link == kMostLinks) throw fileError(path, ELOOP);
    const fs::path target = fs::read_symlink(file, failure);
    if (failure) throw fileError(path, failure.value());
    file = file.parent_path() / target;
  }
  return file.string();
}

FileBeside::FileBeside(const std::string& path) {
  constexpr int kAttempts = 100;
  for (int attempt = 0; attempt < kAttempts && !file_; ++attempt) {
    name_ = freshName(path);
    file_ = openFile(name_, "wbx");
    if (!file_ && errno != EEXIST) break;
  }
  error_ = file_ ? 0 : errno;
  present_ = error_ == 0;
}

FileBeside::~FileBeside() {
  if (!present_) return;
  file_.reset();
  std::remove(name_.c_str());
}

}  // namespace zel
