#include "planning/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace zel::host {

FileLock::FileLock(std::filesystem::path path, Make make) : path_(std::move(path)) {
  const int fresh = make == Make::kFresh ? O_EXCL : 0;
  file_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | fresh, 0600);
  if (file_ < 0) {
    error_ = errno;
    return;
  }
  if (::flock(file_, LOCK_EX | LOCK_NB) != 0)
    error_ = errno;
  else if (!isStillThere())
    error_ = EEXIST;
  if (error_ != 0) release();
}

FileLock::FileLock(FileLock&& other) noexcept
    : path_(std::move(other.path_)), file_(std::exchange(other.file_, -1)), error_(other.error_) {}

FileLock::~FileLock() { release(); }

// Between making the file and locking it another program may have taken it for a forgotten one.
bool FileLock::isStillThere() const {
  struct stat held {
  }, there{};
  return ::fstat(file_, &held) == 0 && ::stat(path_.c_str(), &there) == 0 && held.st_ino == there.st_ino &&
         held.st_dev == there.st_dev;
}

void FileLock::remove() noexcept {
  if (file_ >= 0) ::unlink(path_.c_str());
  release();
}

void FileLock::release() noexcept {
  if (file_ >= 0) ::close(std::exchange(file_, -1));
}

}  // namespace zel::host
