#include "planning/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include "planning/plan_file.h"
#include "planning/utf8_text.h"

namespace zel::host {
namespace {

namespace fs = std::filesystem;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return number_; }
  // The system's error, or 0.
  int close() { return ::close(std::exchange(number_, -1)) == 0 ? 0 : errno; }

 private:
  int number_;
};

PlanFileError cannot(const char* what, const std::string& path, const std::string& reason) {
  return PlanFileError("cannot " + std::string(what) + " " + path + ": " + reason);
}

void checkPath(const char* what, const std::string& path) {
  if (path.empty()) throw PlanFileError("cannot " + std::string(what) + " a file without a name");
  // The system would take the part before it.
  if (path.find('\0') != std::string::npos)
    throw cannot(what, path.substr(0, path.find('\0')), "there is a zero byte in the name");
}

std::string tooLarge(std::size_t mostBytes) {
  constexpr std::size_t kMebibyte = 1U << 20;
  const bool whole = mostBytes >= kMebibyte;
  return "it is larger than " +
         (whole ? std::to_string(mostBytes / kMebibyte) + " MiB" : std::to_string(mostBytes) + " bytes");
}

// Why the path leads to nothing that can be read or replaced as a file; empty when it does.
std::string kindProblem(mode_t mode) {
  if (S_ISREG(mode)) return {};
  return S_ISDIR(mode) ? "it is a folder" : "it is a device or a pipe, not a file";
}

std::string behindAllLinks(const std::string& path) {
  constexpr int kMostLinksFollowed = 40;  // as many as the system follows
  fs::path file = path;
  std::error_code none, failure;
  for (int link = 0; fs::is_symlink(fs::symlink_status(file, none)); ++link) {
    if (link == kMostLinksFollowed) throw cannot("write", path, systemReason(ELOOP));
    const fs::path target = fs::read_symlink(file, failure);
    if (failure) throw cannot("write", path, systemReason(failure.value()));
    file = file.parent_path() / target;
  }
  return file.string();
}

// A name for a file beside: as much of the name as leaves room for the rest of it.
std::string nameBeside(const fs::path& path) {
  constexpr std::size_t kMostBytes = 160, kCharacters = 40;
  constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuv";
  const std::string whole = path.filename().string();
  std::string name(utf8Start(whole, kCharacters).substr(0, kMostBytes));
  name += '.';
  std::random_device random;
  for (int i = 0; i < 8; ++i) name += kDigits[random() % kDigits.size()];
  return (path.parent_path() / (name + ".part")).string();
}

int writeAll(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t size = ::write(file, content.data(), content.size());
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) return errno;
    if (size == 0) return EIO;
    content.remove_prefix(static_cast<std::size_t>(size));
  }
  return 0;
}

// Where a file system has no notion of it, there is nothing to wait for.
int toDisk(int file) { return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP ? 0 : errno; }

// The name in the folder is on the disk, too, if the system can do that.
void folderToDisk(const fs::path& file) {
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.get() >= 0) ::fsync(descriptor.get());
}

struct FileBefore {
  bool exists = false;
  struct stat status {};
};

FileBefore fileBefore(const std::string& target) {
  FileBefore before;
  if (::stat(target.c_str(), &before.status) != 0) {
    if (errno == ENOENT) return before;
    throw cannot("write", target, systemReason(errno));
  }
  before.exists = true;
  if (const std::string problem = kindProblem(before.status.st_mode); !problem.empty())
    throw cannot("write", target, problem);
  // Renaming would get past a file's own protection.
  if (::access(target.c_str(), W_OK) != 0) throw cannot("write", target, systemReason(errno));
  return before;
}

void keepRights(int file, const FileBefore& before) {
  if (!before.exists) return;
  const int ignored = ::fchown(file, static_cast<uid_t>(-1), before.status.st_gid);
  static_cast<void>(ignored);  // a group that is not the user's own cannot be given
  ::fchmod(file, before.status.st_mode & 07777U);
}

// The system's error, or 0.
int writeBeside(const std::string& beside, std::string_view content, const FileBefore& before, mode_t mode) {
  Descriptor file(::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  if (file.get() < 0) return errno;
  int error = writeAll(file.get(), content);
  if (error == 0) keepRights(file.get(), before);
  if (error == 0) error = toDisk(file.get());
  const int closing = file.close();
  return error != 0 ? error : closing;
}

}  // namespace

std::string systemReason(int error) { return std::generic_category().message(error); }

std::string fileState(const std::string& path) {
  struct stat status {};
  if (path.empty() || ::stat(path.c_str(), &status) != 0) return {};
  return std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec) + "/" +
         std::to_string(status.st_size);
}

std::string readWholeFile(const std::string& path, std::size_t mostBytes) {
  checkPath("open", path);
  // Opening a pipe would wait for a writer.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.get() < 0) throw cannot("open", path, systemReason(errno));
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throw cannot("open", path, systemReason(errno));
  if (const std::string problem = kindProblem(status.st_mode); !problem.empty())
    throw cannot("open", path, problem);
  if (static_cast<std::size_t>(status.st_size) > mostBytes) throw cannot("open", path, tooLarge(mostBytes));
  std::string content;
  content.reserve(static_cast<std::size_t>(status.st_size));
  std::array<char, 65536> piece{};
  for (;;) {
    const ssize_t size = ::read(file.get(), piece.data(), piece.size());
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) throw cannot("read", path, systemReason(errno));
    if (size == 0) return content;
    content.append(piece.data(), static_cast<std::size_t>(size));
    if (content.size() > mostBytes) throw cannot("open", path, tooLarge(mostBytes));  // it grows
  }
}

void replaceWholeFile(const std::string& path, std::string_view content, NewFileRights rights) {
  checkPath("write", path);
  const std::string target = behindAllLinks(path);
  if (fs::path(target).filename().empty()) throw cannot("write", path, "it is a folder");
  const FileBefore before = fileBefore(target);
  const std::string beside = nameBeside(target);
  int error = writeBeside(beside, content, before, rights == NewFileRights::kPrivate ? 0600 : 0666);
  if (error == 0 && std::rename(beside.c_str(), target.c_str()) != 0) error = errno;
  if (error == 0) return folderToDisk(target);
  ::unlink(beside.c_str());
  throw cannot("write", target, systemReason(error));
}

const char* readAdvice(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return "; check its name and folder";
    case EISDIR:
      return "; give a file";
    case EACCES:
      return "; its permissions, or those of its folder, must let you read it";
    default:
      return "";
  }
}

}  // namespace zel::host
