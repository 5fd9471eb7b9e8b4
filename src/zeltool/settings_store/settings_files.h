// Settings files on disk: whole replacements that survive a killed process, a lock between processes, and
// failures as RuntimeErrors that name the file.
//
// A replacement costs the writing of the whole file and waits until it is on disk (milliseconds); a stamp
// costs one stat call (about a microsecond).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace zel {

// Tells one state of a file from another. Equal stamps mean equal contents: each replacement gets a later
// time than the one before, however coarse the clock of the file system is.
struct FileStamp {
  bool exists = false;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;        // bytes
  std::int64_t modifiedNs = 0;  // nanoseconds since 1970

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// The current state; `exists` is false when there is no such file. Throws RuntimeError 70 or 75 when that
// cannot be told.
FileStamp stampOf(const std::string& file);

struct FileContent {
  FileStamp stamp;
  // Nothing when something other than a file of a sensible size (at most 16 MiB) stands there.
  std::optional<std::string> text;
};

// An empty text for a file that does not exist. Throws RuntimeError 70 or 75 for one that cannot be read.
FileContent readSettingsFile(const std::string& file);

// Puts a whole new file in the place of the old one: whoever reads meanwhile, or kills the process, finds one
// of the two. Throws RuntimeError 61, 70 or 75, and then the old one still stands. The caller holds the
// folder's lock.
FileStamp replaceSettingsFile(const std::string& file, std::string_view text);

// Keeps the text beside the file, as "<file>.damaged-<yyyymmdd-hhmmss>[-n]", and returns that name.
std::string copyAside(const std::string& file, std::string_view text);
// Moves whatever stands in the file's place to such a name.
std::string moveAside(const std::string& file);

// Makes the folder, for the user alone, with those above it. Throws RuntimeError 61, 70, 75 or 76.
void makeSettingsFolder(const std::filesystem::path& folder);

// One process and thread at a time, for one folder. The system releases it when the process dies. Throws
// RuntimeError 70 when another process keeps the lock for 10 seconds.
class FolderLock {
 public:
  explicit FolderLock(const std::filesystem::path& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int descriptor_ = -1;
};

}  // namespace zel
