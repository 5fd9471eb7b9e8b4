#include "command_line/passing_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <new>
#include <system_error>

#include "command_line/command_error.h"
#include "command_line/output.h"

namespace zel::host {

PassingFile::PassingFile() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0)
    throw CommandFailure("cannot make a pipe: " + std::generic_category().message(errno));
  readEnd_ = ends[0];
  writeEnd_ = ends[1];
  reader_ = std::thread([this] { readAll(); });
}

PassingFile::~PassingFile() {
  finish();
  close(readEnd_);
}

void PassingFile::send() {
  finish();
  if (readError_ != 0)
    throw CommandFailure("cannot read from a pipe: " + std::generic_category().message(readError_));
  writeFile("-", [this](std::ostream& out) {
    out.write(content_.data(), static_cast<std::streamsize>(content_.size()));
  });
}

void PassingFile::readAll() {
  std::array<char, 65536> piece;
  while (true) {
    const ssize_t size = read(readEnd_, piece.data(), piece.size());
    if (size > 0) append(std::string_view(piece.data(), static_cast<std::size_t>(size)));
    if (size == 0) return;
    if (size < 0 && errno != EINTR) {
      readError_ = errno;
      return;
    }
  }
}

// Without memory the rest is read all the same: the writer waits for its reader.
void PassingFile::append(std::string_view piece) {
  try {
    if (readError_ == 0) content_.append(piece);
  } catch (const std::bad_alloc&) {
    readError_ = ENOMEM;
  }
}

void PassingFile::finish() {
  if (!reader_.joinable()) return;
  close(writeEnd_);
  reader_.join();
}

}  // namespace zel::host
