#include "links/input_bytes.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "planning/whole_file.h"

namespace zel::host {
namespace {

constexpr std::size_t kPiece = 256U << 10U;
constexpr int kPatience = 100;  // ms between two looks at whether to stop

LinkFileError cannotRead(const std::string& title, int error) {
  return LinkFileError("cannot read " + title + ": " + systemReason(error) + readAdvice(error));
}

// Eight bytes at a time; no guard against anybody who wants two files to look alike.
class Mixer {
 public:
  void take(const char* bytes, std::size_t count) {
    for (; count >= sizeof(std::uint64_t); bytes += sizeof(std::uint64_t), count -= sizeof(std::uint64_t)) {
      std::uint64_t word = 0;
      std::memcpy(&word, bytes, sizeof word);
      mix(word);
    }
    for (; count > 0; ++bytes, --count) mix(static_cast<unsigned char>(*bytes));
  }
  std::uint64_t value() const { return state_; }

 private:
  void mix(std::uint64_t word) {
    state_ = (state_ ^ word) * 0x9E3779B97F4A7C15U;
    state_ ^= state_ >> 29U;
  }
  std::uint64_t state_ = 0x243F6A8885A308D3U;
};

}  // namespace

LinkFileError::LinkFileError(const std::string& what) : std::runtime_error(what) {}
LinkFileError::~LinkFileError() = default;

InputBytes::InputBytes(const std::string& name) {
  if (name == "-") {
    title_ = "standard input";
    descriptor_ = STDIN_FILENO;
    return;
  }
  title_ = name;
  descriptor_ = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor_ < 0) throw cannotRead(title_, errno);
  owned_ = true;
  struct stat status {};
  if (::fstat(descriptor_, &status) == 0 && S_ISDIR(status.st_mode)) {
    ::close(descriptor_);
    throw cannotRead(title_, EISDIR);
  }
  if (S_ISREG(status.st_mode)) size_ = static_cast<std::uint64_t>(status.st_size);
}

InputBytes::~InputBytes() {
  if (owned_) ::close(descriptor_);
}

std::uint64_t InputBytes::fingerprint() {
  if (!size_) return 0;
  Mixer mixer;
  // Whole words in every piece but the last, whatever the system gives at a time.
  std::string piece(kPiece, '\0');
  off_t at = 0;
  for (;;) {
    std::size_t filled = 0;
    while (filled < piece.size()) {
      const ssize_t count = ::pread(descriptor_, piece.data() + filled, piece.size() - filled, at);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) throw cannotRead(title_, errno);
      if (count == 0) break;
      filled += static_cast<std::size_t>(count);
      at += count;
    }
    mixer.take(piece.data(), filled);
    if (filled < piece.size()) return mixer.value();
  }
}

bool InputBytes::ready() const {
  struct pollfd wanted {
    descriptor_, POLLIN, 0
  };
  return ::poll(&wanted, 1, 0) != 0;
}

bool InputBytes::read(std::string& buffer, const std::function<bool()>& stop) {
  for (;;) {
    if (stop && stop()) return false;
    struct pollfd wanted {
      descriptor_, POLLIN, 0
    };
    const int ready = ::poll(&wanted, 1, kPatience);
    if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
    const std::size_t before = buffer.size();
    buffer.resize(before + kPiece);
    const ssize_t count = ::read(descriptor_, buffer.data() + before, kPiece);
    const int error = errno;
    buffer.resize(before + (count > 0 ? static_cast<std::size_t>(count) : 0));
    if (count > 0) position_ += static_cast<std::uint64_t>(count);
    if (count >= 0) return count > 0;
    if (error != EINTR && error != EAGAIN) throw cannotRead(title_, error);
  }
}

}  // namespace zel::host
