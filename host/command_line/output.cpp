#include "command_line/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "command_line/command_error.h"

namespace zel::host {
namespace {

CommandFailure cannotWrite(const std::string& path, int error) {
  return CommandFailure("cannot write " + path + ": " + std::strerror(error) +
                        "; nothing was changed, name a file in a folder that you may write to");
}

// Through links the file that they name is replaced, not the link; that file need not exist.
std::string behindLinks(const std::string& path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  std::filesystem::path file = path;
  std::error_code none;
  for (int link = 0; std::filesystem::is_symlink(std::filesystem::symlink_status(file, none)); ++link) {
    if (link == kMostLinks) throw cannotWrite(path, ELOOP);
    file = file.parent_path() / std::filesystem::read_symlink(file, none);
  }
  return file.string();
}

// The descriptor of a new file beside the target, closed and removed unless it was renamed into place.
class FileBeside {
 public:
  explicit FileBeside(const std::string& target) : target_(target), name_(target + ".XXXXXX") {
    if (access(target_.c_str(), F_OK) == 0 && access(target_.c_str(), W_OK) != 0)
      throw cannotWrite(target_, errno);
    descriptor_ = mkostemp(name_.data(), O_CLOEXEC);
    if (descriptor_ < 0) throw cannotWrite(target_, errno);
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;
  ~FileBeside() {
    if (descriptor_ >= 0) {
      close(descriptor_);
      unlink(name_.c_str());
    }
  }

  void write(std::string_view content) {
    while (!content.empty()) {
      const ssize_t written = ::write(descriptor_, content.data(), content.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) throw cannotWrite(target_, errno);
      content.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  // The rights of the file that is replaced; of a new one what the user's mask leaves.
  mode_t wantedMode() const {
    struct stat before {};
    if (stat(target_.c_str(), &before) == 0) return before.st_mode & 07777U;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
  }

  void renameIntoPlace() {
    fchmod(descriptor_, wantedMode());
    if (fsync(descriptor_) != 0 || rename(name_.c_str(), target_.c_str()) != 0)
      throw cannotWrite(target_, errno);
    close(descriptor_);
    descriptor_ = -1;
  }

 private:
  std::string target_;
  std::string name_;
  int descriptor_ = -1;
};

}  // namespace

std::string fixed(double value, int decimals) {
  if (std::isnan(value)) return {};
  std::array<char, 400> buffer{};
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
  std::string text(buffer.data(), end.ptr);
  if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
  return text;
}

std::string shortest(double value) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end.ptr};
}

std::string significant(double value, int digits) {
  std::array<char, 64> buffer{};
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, digits);
  return {buffer.data(), end.ptr};
}

void finishStandardOutput() {
  errno = 0;
  std::cout.flush();
  if (std::cout) return;
  const std::string reason = errno == 0 ? std::string() : ": " + std::string(std::strerror(errno));
  std::cout.clear();  // the stream is done with; nothing is reported twice
  throw CommandFailure("cannot write to standard output" + reason + "; see where it is sent to");
}

void writeFile(const std::string& path, const std::function<void(std::ostream&)>& write) {
  if (path == "-") {
    write(std::cout);
    finishStandardOutput();
    return;
  }
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored))
    throw CommandFailure("cannot write " + path + ": it is a folder; name a file");
  std::ostringstream content;
  write(content);
  // A device or a pipe cannot be replaced by a file, and has no content to lose.
  if (std::filesystem::exists(path, ignored) && !std::filesystem::is_regular_file(path, ignored)) {
    std::FILE* device = std::fopen(path.c_str(), "wb");
    const std::string text = content.str();
    const bool written = device != nullptr && std::fwrite(text.data(), 1, text.size(), device) == text.size();
    const bool closed = device != nullptr && std::fclose(device) == 0;
    if (!written || !closed) throw cannotWrite(path, errno);
    return;
  }
  FileBeside beside(behindLinks(path));
  beside.write(content.str());
  beside.renameIntoPlace();
}

void note(std::string_view text) {
  std::string line = "terrain-profiler: ";
  for (const char c : text) {
    if (c == '\r') continue;
    if (c == '\n')
      line += "; ";
    else
      line += c;
  }
  std::cerr << line << '\n';
}

}  // namespace zel::host
