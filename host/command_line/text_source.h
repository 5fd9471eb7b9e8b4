// Files and standard input, read whole or line by line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zel::host {

// An open file, or standard input for the name "-". Every member throws CommandFailure with the name and the
// system's reason when the file cannot be read.
class TextSource {
 public:
  explicit TextSource(const std::string& name);
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;
  ~TextSource();

  // As messages call it: the file's name, or "standard input".
  const std::string& title() const { return title_; }

  // Appends what there is, waiting for the first byte only; false at the end.
  bool read(std::string& buffer);

 private:
  std::string title_;
  int descriptor_ = -1;
  bool owned_ = false;
};

// The whole source. Throws CommandFailure also when it is larger than so many bytes.
std::string wholeText(TextSource& source, std::size_t mostBytes);

// Lines one by one, none of them longer in memory than the bound. A program that writes a line and waits for
// the answer is not kept waiting. A line that goes on and on, as a device's without an end, is the last one.
class LineReader {
 public:
  static constexpr std::size_t kMostSkipped = std::size_t{1} << 30;  // bytes without a line feed

  LineReader(TextSource& source, std::size_t mostBytes, std::size_t mostSkipped = kMostSkipped)
      : source_(source), mostBytes_(mostBytes), mostSkipped_(mostSkipped) {}

  // The next line without its line feed; false behind the last one. A line feed at the very end begins no
  // line.
  bool next();
  std::string_view line() const { return line_; }
  bool tooLong() const { return tooLong_; }       // the line is longer than the bound and was passed over
  bool endless() const { return endless_; }       // and so long that what follows is not read
  std::size_t number() const { return number_; }  // of the line, from 1

 private:
  bool skipToLineFeed();

  TextSource& source_;
  std::size_t mostBytes_;
  std::size_t mostSkipped_;
  std::string buffer_;
  std::size_t begin_ = 0;    // of what has not been given out
  std::size_t scanned_ = 0;  // up to here there is no line feed
  bool ended_ = false;
  std::string_view line_;
  bool tooLong_ = false;
  bool endless_ = false;
  std::size_t number_ = 0;
};

}  // namespace zel::host
