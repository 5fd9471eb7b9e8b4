// A lock between programs.
#pragma once

#include <filesystem>

namespace zel::host {

// On a file that is made for it; the system releases it with the process at the latest, however that ends.
class FileLock {
 public:
  enum class Make { kFresh, kAny };

  // Takes the lock without waiting. With kFresh the file must not be there yet. error() says whether it is
  // held.
  FileLock(std::filesystem::path path, Make make);
  FileLock(FileLock&& other) noexcept;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  FileLock& operator=(FileLock&&) = delete;
  ~FileLock();

  // The system's error, 0 when the lock is held: EWOULDBLOCK another one holds it, EEXIST the file was there,
  // or was taken away in between.
  int error() const { return error_; }
  const std::filesystem::path& path() const { return path_; }
  // Takes the file away and releases the lock. Nothing happens when it is not held.
  void remove() noexcept;

 private:
  bool isStillThere() const;
  void release() noexcept;

  std::filesystem::path path_;
  int file_ = -1;
  int error_ = 0;
};

}  // namespace zel::host
