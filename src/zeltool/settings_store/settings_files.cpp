#include "zeltool/settings_store/settings_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <system_error>
#include <thread>

#include "foundation/runtime_error.h"

namespace zel {

namespace {

constexpr std::int64_t kLargestFile = std::int64_t{16} << 20;  // bytes
constexpr std::int64_t kNsPerSecond = 1'000'000'000;

// The system's error as a RuntimeError: the classic text, then what was tried and why it failed.
RuntimeError fileError(int systemError, const std::string& what) {
  const auto classic = [&] {
    switch (systemError) {
      case ENOSPC:
      case EDQUOT:
      case EFBIG:
        return RuntimeError::diskFull();
      case EACCES:
      case EPERM:
      case EROFS:
        return RuntimeError::permissionDenied();
      default:
        return RuntimeError::pathFileAccessError();
    }
  }();
  return {classic.number(),
          classic.description() + ": " + what + " (" + std::generic_category().message(systemError) + ")"};
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return descriptor_; }
  bool valid() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

FileStamp stampFrom(const struct stat& status) {
  return {true, status.st_dev, status.st_ino, status.st_size,
          status.st_mtim.tv_sec * kNsPerSecond + status.st_mtim.tv_nsec};
}

void writeAll(int descriptor, std::string_view text, const std::string& file) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw fileError(errno, "cannot write " + file);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void syncToDisk(int descriptor, const std::string& file) {
  if (::fsync(descriptor) != 0) throw fileError(errno, "cannot write " + file);
}

std::string readAll(int descriptor, const std::string& file) {
  std::string text;
  std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw fileError(errno, "cannot read " + file);
    if (count == 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

// A renamed or new name is on disk only when its folder is.
void syncFolderOf(const std::string& file) {
  const std::string folder = std::filesystem::path(file).parent_path().string();
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some network file systems refuse this; the file itself is on disk all the same.
  if (descriptor.valid()) (void)::fsync(descriptor.get());
}

// A link that a person keeps in the file's place goes on pointing to it.
std::string linkTarget(const std::string& file) {
  std::error_code error;
  if (!std::filesystem::is_symlink(file, error)) return file;
  const auto target = std::filesystem::canonical(file, error);
  return error ? file : target.string();
}

// Later than the old file's time, so that no two states of a file ever share their stamp.
void setLaterTime(int descriptor, const struct stat* old) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  if (old != nullptr && (old->st_mtim.tv_sec > now.tv_sec ||
                         (old->st_mtim.tv_sec == now.tv_sec && old->st_mtim.tv_nsec >= now.tv_nsec))) {
    now = old->st_mtim;
    if (++now.tv_nsec == kNsPerSecond) {
      now.tv_nsec = 0;
      ++now.tv_sec;
    }
  }
  const std::array<timespec, 2> times{now, now};
  (void)::futimens(descriptor, times.data());
}

std::string localTimeStamp() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", &local);
  return text.data();
}

// The name for the nth attempt, counted from 1.
std::string asideName(const std::string& file, const std::string& stamp, int attempt) {
  std::string name = file + ".damaged-" + stamp;
  if (attempt > 1) name.append("-").append(std::to_string(attempt));
  return name;
}

}  // namespace

FileStamp stampOf(const std::string& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) == 0) return stampFrom(status);
  if (errno == ENOENT) return {};
  throw fileError(errno, "cannot read " + file);
}

FileContent readSettingsFile(const std::string& file) {
  // Without waiting: a pipe may stand in the file's place.
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!descriptor.valid()) {
    if (errno == ENOENT) return {FileStamp{}, std::string()};
    if (errno == ENXIO) return {stampOf(file), std::nullopt};  // a socket
    throw fileError(errno, "cannot read " + file);
  }
  struct stat status {};
  if (::fstat(descriptor.get(), &status) != 0) throw fileError(errno, "cannot read " + file);
  const FileStamp stamp = stampFrom(status);
  if (!S_ISREG(status.st_mode) || status.st_size > kLargestFile) return {stamp, std::nullopt};
  return {stamp, readAll(descriptor.get(), file)};
}

FileStamp replaceSettingsFile(const std::string& name, std::string_view text) {
  const std::string file = linkTarget(name);
  // It would be refused when it is read again.
  if (static_cast<std::int64_t>(text.size()) > kLargestFile) throw fileError(EFBIG, "cannot write " + file);
  // One name for all: the leftover of a killed process is simply written over.
  const std::string fresh = file + ".new";
  struct stat old {};
  const bool exists = ::stat(file.c_str(), &old) == 0;
  (void)::unlink(fresh.c_str());
  const Descriptor descriptor(
      ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
  if (!descriptor.valid()) throw fileError(errno, "cannot write " + fresh);
  try {
    if (exists) (void)::fchmod(descriptor.get(), old.st_mode & 0777U);
    writeAll(descriptor.get(), text, fresh);
    setLaterTime(descriptor.get(), exists ? &old : nullptr);
    syncToDisk(descriptor.get(), fresh);
    if (::rename(fresh.c_str(), file.c_str()) != 0) throw fileError(errno, "cannot replace " + file);
  } catch (...) {
    (void)::unlink(fresh.c_str());
    throw;
  }
  syncFolderOf(file);
  struct stat status {};
  if (::fstat(descriptor.get(), &status) != 0) throw fileError(errno, "cannot read " + file);
  return stampFrom(status);
}

std::string copyAside(const std::string& file, std::string_view text) {
  const std::string stamp = localTimeStamp();
  for (int attempt = 1;; ++attempt) {
    std::string copy = asideName(file, stamp, attempt);
    const Descriptor descriptor(
        ::open(copy.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!descriptor.valid() && errno == EEXIST) continue;
    if (!descriptor.valid()) throw fileError(errno, "cannot write " + copy);
    try {
      writeAll(descriptor.get(), text, copy);
      syncToDisk(descriptor.get(), copy);
    } catch (...) {
      (void)::unlink(copy.c_str());
      throw;
    }
    syncFolderOf(copy);
    return copy;
  }
}

std::string moveAside(const std::string& file) {
  const std::string stamp = localTimeStamp();
  for (int attempt = 1;; ++attempt) {
    std::string target = asideName(file, stamp, attempt);
    if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
      syncFolderOf(target);
      return target;
    }
    if (errno != EEXIST) throw fileError(errno, "cannot move " + file);
  }
}

void makeSettingsFolder(const std::filesystem::path& folder) {
  if (folder.empty())
    throw RuntimeError(
        RuntimeError::pathNotFound().number(),
        RuntimeError::pathNotFound().description() + ": there is no home folder to keep settings in");
  struct stat status {};
  if (::stat(folder.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) return;
    throw fileError(ENOTDIR, "cannot use " + folder.string() + " as a folder");
  }
  if (folder.has_parent_path() && folder.parent_path() != folder) makeSettingsFolder(folder.parent_path());
  if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
    throw fileError(errno, "cannot make the folder " + folder.string());
}

FolderLock::FolderLock(const std::filesystem::path& folder) {
  using namespace std::chrono_literals;
  const std::string file = (folder / ".lock").string();
  descriptor_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
  if (descriptor_ < 0) throw fileError(errno, "cannot write " + file);
  const auto deadline = std::chrono::steady_clock::now() + 10s;
  while (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
    const int reason = errno;
    if (reason == EINTR) continue;
    if (reason == EWOULDBLOCK && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(200us);
      continue;
    }
    ::close(descriptor_);
    if (reason != EWOULDBLOCK) throw fileError(reason, "cannot lock " + file);
    throw RuntimeError(
        RuntimeError::permissionDenied().number(),
        RuntimeError::permissionDenied().description() + ": another process keeps " + file + " locked");
  }
}

FolderLock::~FolderLock() { ::close(descriptor_); }

}  // namespace zel
