#include "export/text_file.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <random>

#include "component/services/characters.h"
#include "component/services/file_error.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

// The file that links lead to; it need not exist.
std::string behindLinks(const std::string& path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  fs::path file = path;
  std::error_code none;
  for (int link = 0; fs::is_symlink(fs::symlink_status(file, none)); ++link) {
    if (link == kMostLinks) throw fileError(path, ELOOP);
    file = file.parent_path() / fs::read_symlink(file, none);
  }
  return file.string();
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

// Null, with errno set, when it cannot be opened.
OpenFile openFile(const std::string& path, const char* mode) {
  errno = 0;
  return OpenFile(std::fopen(path.c_str(), mode));
}

// Writes and closes; the system's error, or 0.
int writeAndClose(OpenFile file, std::string_view text) {
  errno = 0;
  const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  const int writeError = written ? 0 : errno;
  const bool closed = std::fclose(file.release()) == 0;
  if (!written) return writeError != 0 ? writeError : EIO;
  if (closed) return 0;
  return errno != 0 ? errno : EIO;
}

// A new file beside another one, gone again unless it takes the other's place.
class FileBeside {
 public:
  explicit FileBeside(const std::string& target) : target_(target) {
    constexpr int kAttempts = 100;
    for (int attempt = 0; attempt < kAttempts && !file_; ++attempt) {
      name_ = freshName();
      file_ = openFile(name_, "wbx");
      if (!file_ && errno != EEXIST) break;
    }
    error_ = file_ ? 0 : errno;
    present_ = error_ == 0;
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;
  ~FileBeside() {
    if (!present_) return;
    file_.reset();
    std::remove(name_.c_str());
  }

  // Why it could not be made; 0 when it was.
  int error() const { return error_; }

  void replaceTarget(std::string_view text) {
    if (const int error = writeAndClose(std::move(file_), text); error != 0) throw fileError(target_, error);
    std::error_code failure;
    const fs::file_status before = fs::status(target_, failure);
    if (fs::exists(before)) fs::permissions(name_, before.permissions(), failure);
    fs::rename(name_, target_, failure);
    if (failure) throw fileError(target_, failure.value());
    present_ = false;
  }

 private:
  // As much of the name as leaves room for the rest of it.
  std::string freshName() const {
    constexpr std::size_t kCharacters = 40;
    constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuv";
    const fs::path path = target_;
    std::string name(firstCharacters(path.filename().string(), kCharacters));
    name += '.';
    std::random_device random;
    for (int i = 0; i < 8; ++i) name += kDigits[random() % kDigits.size()];
    return (path.parent_path() / (name + ".part")).string();
  }

  std::string target_;
  std::string name_;
  OpenFile file_;
  int error_ = 0;
  bool present_ = false;
};

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) throw fileError(path, EIO);
  return content;
}

// Over what is there; the system's error, or 0.
int overwrite(const std::string& path, std::string_view text) {
  OpenFile file = openFile(path, "r+b");
  if (!file) return errno;
  if (const int error = writeAndClose(std::move(file), text); error != 0) return error;
  std::error_code failure;
  fs::resize_file(path, text.size(), failure);
  return failure.value();
}

}  // namespace

TextFile::TextFile(const std::string& path) : target_(path) {
  std::error_code none;
  const fs::file_status status = fs::status(path, none);
  if (fs::is_directory(status)) throw fileError(path, EISDIR);
  const bool exists = fs::exists(status);
  if (exists && !fs::is_regular_file(status)) {
    way_ = Way::kStream;
    return;
  }
  target_ = behindLinks(path);
  if (exists && !openFile(target_, "r+b")) throw fileError(target_, errno);
  const FileBeside probe(target_);
  if (probe.error() == 0) return;
  const bool mayNot = fileError(target_, probe.error()).number() == RuntimeError::permissionDenied().number();
  if (!exists || !mayNot) throw fileError(target_, probe.error());
  way_ = Way::kInPlace;
}

void TextFile::line(std::string_view text) {
  text_ += text;
  text_ += "\r\n";
}

void TextFile::piece(std::string_view text) { text_ += text; }

void TextFile::write() const {
  switch (way_) {
    case Way::kReplace:
      return replace();
    case Way::kInPlace:
      return writeInPlace();
    case Way::kStream:
      OpenFile stream = openFile(target_, "wb");
      const int error = stream ? writeAndClose(std::move(stream), text_) : errno;
      if (error != 0) throw fileError(target_, error);
  }
}

void TextFile::replace() const {
  FileBeside beside(target_);
  if (beside.error() != 0) throw fileError(target_, beside.error());
  beside.replaceTarget(text_);
}

void TextFile::writeInPlace() const {
  const std::string before = contentOf(target_);
  const int error = overwrite(target_, text_);
  if (error == 0) return;
  overwrite(target_, before);
  throw fileError(target_, error);
}

}  // namespace zel
