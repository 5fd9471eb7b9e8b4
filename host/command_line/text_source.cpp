#include "command_line/text_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "command_line/command_error.h"
#include "planning/whole_file.h"

namespace zel::host {
namespace {

[[noreturn]] void cannotRead(const std::string& title, int error) {
  throw CommandFailure("cannot read " + title + ": " + std::strerror(error) + readAdvice(error));
}

}  // namespace

TextSource::TextSource(const std::string& name) {
  if (name == "-") {
    title_ = "standard input";
    descriptor_ = STDIN_FILENO;
    return;
  }
  title_ = name;
  // The system would open the part before a zero byte.
  if (name.find('\0') != std::string::npos) cannotRead(name.substr(0, name.find('\0')), EINVAL);
  descriptor_ = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor_ < 0) cannotRead(title_, errno);
  owned_ = true;
}

TextSource::~TextSource() {
  if (owned_) close(descriptor_);
}

bool TextSource::read(std::string& buffer) {
  constexpr std::size_t kPiece = 1 << 16;
  const std::size_t before = buffer.size();
  buffer.resize(before + kPiece);
  ssize_t count = 0;
  do count = ::read(descriptor_, buffer.data() + before, kPiece);
  while (count < 0 && errno == EINTR);
  const int error = errno;
  buffer.resize(before + (count > 0 ? static_cast<std::size_t>(count) : 0));
  if (count < 0) cannotRead(title_, error);
  return count > 0;
}

std::string wholeText(TextSource& source, std::size_t mostBytes) {
  std::string text;
  while (source.read(text))
    if (text.size() > mostBytes)
      throw CommandFailure("cannot read " + source.title() + ": it is larger than " +
                           std::to_string(mostBytes >> 20) + " MiB");
  return text;
}

// Drops what there is of the line; false when no line feed came.
bool LineReader::skipToLineFeed() {
  std::size_t skipped = 0;
  for (;;) {
    skipped += buffer_.size();
    buffer_.clear();
    if (skipped >= mostSkipped_) {
      endless_ = true;
      return false;
    }
    if (!source_.read(buffer_)) return false;
    const std::size_t lineFeed = buffer_.find('\n');
    if (lineFeed == std::string::npos) continue;
    begin_ = scanned_ = lineFeed + 1;
    return true;
  }
}

bool LineReader::next() {
  line_ = {};
  tooLong_ = false;
  for (;;) {
    const std::size_t lineFeed = buffer_.find('\n', scanned_);
    const std::size_t length = (lineFeed == std::string::npos ? buffer_.size() : lineFeed) - begin_;
    const bool last = lineFeed == std::string::npos && ended_;
    if (last && length == 0) return false;
    if (length > mostBytes_) {
      tooLong_ = true;
      ++number_;
      if (lineFeed != std::string::npos) {
        begin_ = scanned_ = lineFeed + 1;
      } else if (ended_ || !skipToLineFeed()) {
        ended_ = true;
        buffer_.clear();
        begin_ = scanned_ = 0;
      }
      return true;
    }
    if (lineFeed != std::string::npos || last) {
      line_ = std::string_view(buffer_).substr(begin_, length);
      begin_ = scanned_ = begin_ + length + (last ? 0 : 1);
      ++number_;
      return true;
    }
    buffer_.erase(0, begin_);
    begin_ = 0;
    scanned_ = buffer_.size();
    ended_ = !source_.read(buffer_);
  }
}

}  // namespace zel::host
