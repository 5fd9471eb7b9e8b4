#include "component/services/error_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr const char* kFileName = "zelErrorLog.txt";

std::string timeStamp(const LocalTime& time) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%02d/%02d/%02d %02d:%02d:%02d", time.month, time.day,
                time.year % 100, time.hour, time.minute, time.second);
  return text.data();
}

class AppendedFile {
 public:
  // Without O_NONBLOCK a pipe under the log's name would hold up the host.
  explicit AppendedFile(const std::filesystem::path& path)
      : descriptor_(
            ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666)) {
    if (descriptor_ < 0) fail();
  }
  AppendedFile(const AppendedFile&) = delete;
  AppendedFile& operator=(const AppendedFile&) = delete;
  ~AppendedFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  // One system call for the whole entry, so that entries of several processes do not mix.
  void append(const std::string& text) {
    ssize_t written = -1;
    do {
      written = ::write(descriptor_, text.data(), text.size());
    } while (written < 0 && errno == EINTR);
    if (written < 0) fail();
    if (static_cast<std::size_t>(written) != text.size()) throw RuntimeError::diskFull();
  }

  void close() {
    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (::close(descriptor) != 0) fail();
  }

 private:
  [[noreturn]] static void fail() { throw std::system_error(errno, std::generic_category()); }

  int descriptor_;
};

}  // namespace

ErrorLog::ErrorLog(std::function<std::string()> folder, Clock& clock, Dialogs& dialogs)
    : folder_(std::move(folder)), clock_(clock), dialogs_(dialogs) {}

void ErrorLog::write(const std::string& message) noexcept {
  try {
    const std::string entry = timeStamp(clock_.now()) + " " + message + "\r\n";
    const std::string folder = folder_();
    // A host without a folder has no log; the working directory is not the place for one.
    if (folder.empty()) throw RuntimeError::pathNotFound();
    AppendedFile file(std::filesystem::path(folder) / kFileName);
    file.append(entry);
    file.close();
  } catch (...) {
    try {
      dialogs_.message({"Unable to write to Error Log!", "", MessageIcon::kCritical, MessageButtons::kOk});
    } catch (...) {
      // A failure to report a failure ends here: logging never fails its caller.
      return;
    }
  }
}

}  // namespace zel
