#include "command_line/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>

#include "command_line/command_error.h"
#include "planning/short_number.h"

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
    struct stat replaced {};
    if (stat(target_.c_str(), &replaced) == 0) return replaced.st_mode & 07777U;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
  }

  // Everything is on disk, with the rights that it will have.
  void finish() {
    fchmod(descriptor_, wantedMode());
    if (fsync(descriptor_) != 0) throw cannotWrite(target_, errno);
  }

  void renameIntoPlace() {
    if (rename(name_.c_str(), target_.c_str()) != 0) throw cannotWrite(target_, errno);
    close(descriptor_);
    descriptor_ = -1;
  }

 private:
  std::string target_;
  std::string name_;
  int descriptor_ = -1;
};

std::string contentOf(const FileToWrite& file) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file.path, ignored))
    throw CommandFailure("cannot write " + file.path + ": it is a folder; name a file");
  std::ostringstream content;
  file.write(content);
  return content.str();
}

// Standard output, a device or a pipe: it cannot be replaced by a file, and has no content to lose.
bool isStream(const std::string& path) {
  std::error_code ignored;
  return path == "-" ||
         (std::filesystem::exists(path, ignored) && !std::filesystem::is_regular_file(path, ignored));
}

void send(const std::string& path, const std::string& content) {
  if (path == "-") {
    std::cout << content;
    finishStandardOutput();
    return;
  }
  std::FILE* device = std::fopen(path.c_str(), "wb");
  const bool written =
      device != nullptr && std::fwrite(content.data(), 1, content.size(), device) == content.size();
  const bool closed = device != nullptr && std::fclose(device) == 0;
  if (!written || !closed) throw cannotWrite(path, errno);
}

}  // namespace

std::string fixed(double value, int decimals) {
  return std::isnan(value) ? std::string() : fixedNumber(value, decimals);
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

std::string extensionOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return extension;
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
  writeFiles({{path, write}});
}

void writeFiles(const std::vector<FileToWrite>& files) {
  std::vector<std::string> contents;
  contents.reserve(files.size());
  for (const FileToWrite& file : files) contents.push_back(contentOf(file));
  std::vector<std::unique_ptr<FileBeside>> beside;
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (isStream(files[i].path)) continue;
    beside.push_back(std::make_unique<FileBeside>(behindLinks(files[i].path)));
    beside.back()->write(contents[i]);
    beside.back()->finish();
  }
  // What is sent away cannot be taken back, so everything else is safe by then.
  for (std::size_t i = 0; i < files.size(); ++i)
    if (isStream(files[i].path)) send(files[i].path, contents[i]);
  for (const auto& file : beside) file->renameIntoPlace();
}

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;
  return std::filesystem::equivalent(a, b, ignored) ||
         std::filesystem::weakly_canonical(behindLinks(a), ignored) ==
             std::filesystem::weakly_canonical(behindLinks(b), ignored);
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
