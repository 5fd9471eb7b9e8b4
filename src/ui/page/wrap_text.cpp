#include "ui/page/wrap_text.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

#include "foundation/utf8.h"

namespace zel {
namespace {

constexpr std::string_view kEllipsis = "\u2026";
constexpr std::string_view kPauses = " .,;:";  // what an ellipsis does not follow
constexpr std::size_t kFirstProbe = 32;        // bytes
constexpr std::size_t kLongestOrphan = 32;     // bytes
constexpr double kWidestOrphan = 0.125;        // of the width

// Besides those of one byte. The last three have no width.
constexpr std::string_view kWideBlanks[] = {
    "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007",
    "\u2008", "\u2009", "\u200A", "\u202F", "\u205F", "\u3000", "\u200B", "\u2060", "\uFEFF"};

// Ends of lines and paragraphs, and what turns the direction of a line.
constexpr std::string_view kTurns[] = {"\u2028", "\u2029", "\u202A", "\u202B", "\u202C", "\u202D",
                                       "\u202E", "\u2066", "\u2067", "\u2068", "\u2069"};

bool isLineEnd(char byte) { return byte == '\n' || byte == '\r'; }

// Of a character.
bool isBlankOrLineEnd(std::string_view character) {
  if (isPrintedAsBlank(character) || (character.size() == 1 && isLineEnd(character[0]))) return true;
  return std::find(std::begin(kWideBlanks), std::end(kWideBlanks), character) != std::end(kWideBlanks);
}

// Whether a character begins at the position, or the text ends.
bool isBoundary(std::string_view text, std::size_t position) {
  return position >= text.size() || beginsCharacter(text[position]);
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
  bool pair = false;
  forEachCharacter(text, [&](std::string_view character) {
    if (pair && character != "\n") plain += '\n';  // a CR alone
    pair = character == "\r";
    if (pair) return;
    if (isPrintedAsBlank(character)) {
      plain += ' ';
    } else {
      plain += character;
    }
  });
  if (pair) plain += '\n';
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
      : text_(withPlainBlanks(text)), rest_(withoutBlankEnds(text_)), width_(width), widthOf_(widthOf) {
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
    if (longest == paragraph_.size()) return longest;
    if (paragraph_[longest] == ' ') return leavingNoOrphan(longest);
    const std::size_t blank = paragraph_.rfind(' ', longest);
    return blank == std::string_view::npos ? longest : leavingNoOrphan(blank);
  }

  // Shorter by a word where the paragraph would end in a short one alone.
  std::size_t leavingNoOrphan(std::size_t length) const {
    if (!isOrphan(without(" ", paragraph_.substr(length)))) return length;
    const std::size_t blank = without(" ", paragraph_.substr(0, length)).rfind(' ');
    const bool moves = blank != std::string_view::npos && widthOf_(paragraph_.substr(blank + 1)) <= width_;
    return moves ? blank : length;
  }

  bool isOrphan(std::string_view lastLine) const {
    return lastLine.size() <= kLongestOrphan && lastLine.find(' ') == std::string_view::npos &&
           widthOf_(lastLine) <= width_ * kWidestOrphan;
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
  line.resize(line.find_last_not_of(kPauses) + 1);
  return line + std::string(kEllipsis);
}

}  // namespace

bool isPrintedAsBlank(std::string_view character) {
  if (character.size() == 1) {
    const auto code = static_cast<unsigned char>(character[0]);
    return (code <= ' ' && !isLineEnd(character[0])) || code == 0x7F;
  }
  // U+0080 to U+009F.
  if (character.size() == 2 && character[0] == '\xC2' && static_cast<unsigned char>(character[1]) < 0xA0)
    return true;
  return std::find(std::begin(kTurns), std::end(kTurns), character) != std::end(kTurns);
}

std::string_view withoutBlankEnds(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = boundaryFrom(text, 1);
    if (!isBlankOrLineEnd(text.substr(0, length))) break;
    text.remove_prefix(length);
  }
  while (!text.empty()) {
    const std::size_t last = boundaryBefore(text, text.size() - 1);
    if (!isBlankOrLineEnd(text.substr(last))) break;
    text.remove_suffix(text.size() - last);
  }
  return text;
}

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
