#include "ui/page/wrap_text.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace zel {
namespace {

constexpr std::string_view kEllipsis = "\u2026";
constexpr std::size_t kFirstProbe = 32;  // bytes

// Whether a character begins at the position, or the text ends.
bool isBoundary(std::string_view text, std::size_t position) {
  return position >= text.size() || (static_cast<unsigned char>(text[position]) & 0xC0U) != 0x80U;
}

std::size_t boundaryFrom(std::string_view text, std::size_t position) {
  while (!isBoundary(text, position)) ++position;
  return std::min(position, text.size());
}

std::size_t boundaryBefore(std::string_view text, std::size_t position) {
  while (position > 0 && !isBoundary(text, position)) --position;
  return position;
}

// Lines end in LF; everything else that controls is a blank.
std::string withPlainBlanks(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool pair = byte == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (pair) continue;
    if (byte == '\r' || byte == '\n') {
      plain += '\n';
    } else {
      plain += byte < 0x20 || byte == 0x7F ? ' ' : text[i];
    }
  }
  return plain;
}

std::string_view without(std::string_view characters, std::string_view text) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

// Gives a text line by line, and looks no further than it has to.
class LineBreaker {
 public:
  LineBreaker(std::string_view text, double width, const TextWidth& widthOf)
      : text_(withPlainBlanks(text)), rest_(without(" \n", text_)), width_(width), widthOf_(widthOf) {
    more_ = !rest_.empty();
    if (more_) takeParagraph();
  }
  LineBreaker(const LineBreaker&) = delete;
  LineBreaker& operator=(const LineBreaker&) = delete;

  std::optional<std::string> next() {
    if (!more_) return std::nullopt;
    const std::size_t length = lineLength();
    std::string line(without(" ", paragraph_.substr(0, length)));
    paragraph_.remove_prefix(length);
    paragraph_.remove_prefix(std::min(paragraph_.find_first_not_of(' '), paragraph_.size()));
    if (paragraph_.empty()) {
      more_ = !rest_.empty();
      if (more_) takeParagraph();
    }
    return line;
  }

 private:
  // The text ends in something else than blanks and line ends, so each line end is followed by a paragraph.
  void takeParagraph() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    paragraph_ = without(" ", rest_.substr(0, end));
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
  }

  bool fits(std::size_t length) const { return widthOf_(paragraph_.substr(0, length)) <= width_; }

  std::size_t lineLength() const {
    const std::size_t longest = fittingLength();
    if (longest == paragraph_.size() || paragraph_[longest] == ' ') return longest;
    const std::size_t blank = paragraph_.rfind(' ', longest);
    return blank == std::string_view::npos ? longest : blank;
  }

  // The longest beginning of the paragraph that is not too wide, but one character at least.
  std::size_t fittingLength() const {
    std::size_t fitting = 0;
    std::size_t tooLong = boundaryFrom(paragraph_, kFirstProbe);
    while (fits(tooLong)) {
      if (tooLong == paragraph_.size()) return tooLong;
      fitting = tooLong;
      tooLong = boundaryFrom(paragraph_, 2 * fitting);
    }
    for (;;) {
      std::size_t middle = boundaryBefore(paragraph_, fitting + (tooLong - fitting) / 2);
      if (middle <= fitting) middle = boundaryFrom(paragraph_, fitting + 1);
      if (middle >= tooLong) break;
      (fits(middle) ? fitting : tooLong) = middle;
    }
    return fitting > 0 ? fitting : boundaryFrom(paragraph_, 1);
  }

  std::string text_;
  std::string_view rest_;       // after this paragraph
  std::string_view paragraph_;  // what is left of it
  double width_;
  const TextWidth& widthOf_;
  bool more_ = false;
};

// Whole words go, or characters of the first one.
std::string withEllipsis(std::string line, double width, const TextWidth& widthOf) {
  while (!line.empty() && !(widthOf(line + std::string(kEllipsis)) <= width)) {
    const std::size_t blank = line.find_last_of(' ');
    line.resize(blank == std::string::npos ? boundaryBefore(line, line.size() - 1) : blank);
  }
  return std::string(without(" ", line)) + std::string(kEllipsis);
}

}  // namespace

std::vector<std::string> WrapTextInColumn(std::string_view text, double width, const TextWidth& widthOf) {
  return fitTextInColumn(text, width, std::numeric_limits<std::size_t>::max(), widthOf).lines;
}

FittedText fitTextInColumn(std::string_view text, double width, std::size_t mostLines,
                           const TextWidth& widthOf) {
  LineBreaker breaker(text, width, widthOf);
  FittedText fitted;
  while (std::optional<std::string> line = breaker.next()) {
    if (fitted.lines.size() == mostLines) {
      fitted.cut = true;
      break;
    }
    fitted.lines.push_back(std::move(*line));
  }
  if (fitted.cut && mostLines > 0)
    fitted.lines.back() = withEllipsis(std::move(fitted.lines.back()), width, widthOf);
  return fitted;
}

}  // namespace zel
