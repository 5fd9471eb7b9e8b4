#include "component/services/scratch_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "component/services/file_error.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kForTheUserAlone = 0700;

fs::path temporaryFolder() {
  for (const char* name : {"tmp", "TMPDIR"})
    if (const char* value = std::getenv(name); value != nullptr && *value != '\0') return value;
  return "/tmp";
}

// A product's name as that of a folder.
std::string folderName(const std::string& product) {
  std::string name = product;
  std::replace(name.begin(), name.end(), '/', '_');
  if (name.empty() || name == "." || name == "..") return "zelProfiler01";
  return name;
}

// A folder of the user's that is open to nobody else.
bool isTheUsers(const fs::path& folder) {
  struct stat status {};
  if (::lstat(folder.c_str(), &status) != 0) return false;
  return S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

}  // namespace

ScratchFile::ScratchFile(const std::string& product) {
  folder_ = temporaryFolder() / folderName(product);
  if (::mkdir(folder_.c_str(), kForTheUserAlone) != 0 && errno != EEXIST)
    throw fileError(folder_.string(), errno);
  if (!isTheUsers(folder_)) {
    std::string pattern = folder_.string() + "-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) throw fileError(pattern, errno);
    folder_ = pattern;
    folderIsOurs_ = true;
  }
  constexpr int kEnding = 4;
  std::string pattern = (folder_ / "zelXXXXXX.tmp").string();
  const int descriptor = ::mkostemps(pattern.data(), kEnding, O_CLOEXEC);
  if (descriptor < 0) {
    const int error = errno;
    if (folderIsOurs_) ::rmdir(folder_.c_str());
    throw fileError(pattern, error);
  }
  ::close(descriptor);
  path_ = pattern;
}

ScratchFile::~ScratchFile() {
  std::error_code ignored;
  fs::remove(path_, ignored);
  fs::remove(companion(), ignored);
  if (folderIsOurs_) fs::remove(folder_, ignored);
}

}  // namespace zel
