// A text as the JSON parser runs over it, which leaves behind how far it came. The parser's own count begins
// anew with each text and knows no lines.
#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>

namespace zel::host {

// How much has been read. Behind a number the parser has read one character more.
struct TextProgress {
  std::size_t bytes = 0;
  std::size_t line = 1;
};

class WatchedText {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  // From where `progress` says; it outlives the iterator.
  static WatchedText begin(std::string_view text, TextProgress& progress) {
    return {text.data() + progress.bytes, progress};
  }
  static WatchedText end(std::string_view text, TextProgress& progress) {
    return {text.data() + text.size(), progress};
  }

  reference operator*() const { return *at_; }
  WatchedText& operator++() {
    if (*at_ == '\n') ++progress_->line;
    ++progress_->bytes;
    ++at_;
    return *this;
  }
  WatchedText operator++(int) {
    const WatchedText before = *this;
    ++*this;
    return before;
  }
  friend bool operator==(const WatchedText& a, const WatchedText& b) { return a.at_ == b.at_; }
  friend bool operator!=(const WatchedText& a, const WatchedText& b) { return a.at_ != b.at_; }

 private:
  WatchedText(const char* at, TextProgress& progress) : at_(at), progress_(&progress) {}

  const char* at_;
  TextProgress* progress_;
};

}  // namespace zel::host
