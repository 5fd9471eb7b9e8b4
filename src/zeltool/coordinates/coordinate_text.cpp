#include "zeltool/coordinates/coordinate_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "foundation/text.h"

namespace zel {

namespace {

using ParsedText = Parsed<CoordinateText>;

constexpr std::array<std::string_view, 3> kPartNames{"degrees", "minutes", "seconds"};

struct Mark {
  std::string_view text;
  std::size_t part;  // 0 degrees, 1 minutes, 2 seconds
};

// Longer ones first: two apostrophes are a seconds mark.
constexpr std::array<Mark, 15> kMarks{{{"\xC2\xB0", 0},  // degree sign
                                       {"\xC2\xBA", 0},  // ordinal sign, which keyboards have in its place
                                       {"d", 0},
                                       {"D", 0},
                                       {"''", 2},
                                       {"'", 1},
                                       {"\xE2\x80\xB2", 1},  // prime
                                       {"\xE2\x80\x99", 1},  // right single quotation mark
                                       {"m", 1},
                                       {"M", 1},
                                       {"\"", 2},
                                       {"\xE2\x80\xB3", 2},  // double prime
                                       {"\xE2\x80\x9D", 2},  // right double quotation mark
                                       {"s", 2},
                                       {"S", 2}}};

constexpr std::string_view kMinusSign = "\xE2\x88\x92";

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }

// The character that begins at this byte, for messages.
std::string characterAt(std::string_view text, std::size_t byte) {
  std::size_t end = byte + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) ++end;
  return std::string(text.substr(byte, end - byte));
}

class CoordinateReader {
 public:
  explicit CoordinateReader(std::string_view text) : text_(text) {}

  ParsedText read() {
    skipBlanks();
    if (atEnd()) return bad(TextError::kEmpty, "there is no coordinate", 0);
    if (isHemisphereLetter(peek())) takeLetter();
    skipBlanks();
    takeSign();
    skipBlanks();
    if (const auto problem = readParts()) return *problem;
    skipBlanks();
    if (!atEnd() && isHemisphereLetter(peek())) {
      if (letter_ != 0) return bad(TextError::kTwoSigns, "it has two letters of a hemisphere", at_);
      takeLetter();
    }
    skipBlanks();
    if (!atEnd()) return unreadable();
    if (letter_ != 0 && signed_)
      return bad(TextError::kTwoSigns, "it has a sign and the letter of a hemisphere", signAt_);
    return value();
  }

 private:
  struct Part {
    double value;
    std::size_t at;
    bool fraction;
  };

  bool atEnd() const { return at_ >= text_.size(); }
  char peek() const { return text_[at_]; }
  void skipBlanks() {
    while (!atEnd() && isBlank(peek())) ++at_;
  }

  void takeLetter() {
    letter_ = upperCase(text_.substr(at_, 1)).front();
    ++at_;
  }

  bool takeText(std::string_view expected) {
    if (text_.substr(at_, expected.size()) != expected) return false;
    at_ += expected.size();
    return true;
  }

  void takeSign() {
    signAt_ = at_;
    negative_ = takeText("-") || takeText(kMinusSign);
    signed_ = negative_ || takeText("+");
  }

  bool atNumber() const {
    if (atEnd()) return false;
    return isDigit(peek()) || (peek() == '.' && at_ + 1 < text_.size() && isDigit(text_[at_ + 1]));
  }

  Part takeNumber() {
    Part part{0, at_, false};
    while (!atEnd() && isDigit(peek())) ++at_;
    if (!atEnd() && peek() == '.') {
      part.fraction = true;
      ++at_;
      while (!atEnd() && isDigit(peek())) ++at_;
    }
    const auto result = std::from_chars(text_.data() + part.at, text_.data() + at_, part.value);
    if (result.ec != std::errc()) part.value = std::numeric_limits<double>::infinity();
    return part;
  }

  // Degrees, minutes and seconds with what stands between them.
  std::optional<ParsedText> readParts() {
    if (!atNumber()) return atEnd() ? bad(TextError::kUnreadable, "there is no number", at_) : unreadable();
    for (;;) {
      if (parts_.size() == kPartNames.size())
        return bad(TextError::kTooManyParts, "there is a part after degrees, minutes and seconds", at_);
      parts_.push_back(takeNumber());
      bool another = false;
      if (auto problem = readBetween(another)) return problem;
      if (!another) return std::nullopt;
    }
  }

  // What follows a number. `another`: it leads to the next number, which begins here.
  std::optional<ParsedText> readBetween(bool& another) {
    const std::size_t numberEnd = at_;
    skipBlanks();
    const std::size_t markAt = at_;
    if (const auto part = takeMark()) {
      if (*part != parts_.size() - 1)
        return bad(TextError::kUnreadable,
                   "the mark of " + std::string(kPartNames[*part]) + " stands behind the " +
                       std::string(kPartNames[parts_.size() - 1]),
                   markAt);
      if (ambiguousSeconds_)
        return bad(TextError::kAmbiguous, "the last S may be seconds or South; write \"S S\" or a sign",
                   markAt);
      skipBlanks();
      another = atNumber();
      return std::nullopt;
    }
    if (!atEnd() && (peek() == '-' || peek() == ':')) {
      const bool afterBlank = at_ > numberEnd;
      const bool isMinus = peek() == '-';
      ++at_;
      if (isMinus && afterBlank && atNumber())
        return bad(TextError::kTwoSigns, "there is a sign within the coordinate", markAt);
      skipBlanks();
      if (!atNumber()) return bad(TextError::kUnreadable, "there is no number behind the separator", markAt);
      another = true;
      return std::nullopt;
    }
    another = at_ > numberEnd && atNumber();
    return std::nullopt;
  }

  std::optional<std::size_t> takeMark() {
    if (!atEnd() && (peek() == 's' || peek() == 'S') && !takesSForSeconds()) return std::nullopt;
    for (const Mark& mark : kMarks) {
      const char c = atEnd() ? '\0' : peek();
      if (!takeText(mark.text)) continue;
      if (c == 'd' || c == 'm') lowerCaseMarks_ = true;
      if (c == 'D' || c == 'M') upperCaseMarks_ = true;
      return mark.part;
    }
    return std::nullopt;
  }

  // Whether the "s" or "S" here is the mark of seconds and not South.
  bool takesSForSeconds() {
    if (parts_.size() != kPartNames.size() || !(lowerCaseMarks_ || upperCaseMarks_)) return false;
    std::size_t next = at_ + 1;
    while (next < text_.size() && isBlank(text_[next])) ++next;
    const bool letterFollows = next < text_.size() && isHemisphereLetter(text_[next]);
    if (letterFollows || letter_ != 0 || signed_) return true;
    if (peek() == 's') return true;
    ambiguousSeconds_ = upperCaseMarks_;
    return upperCaseMarks_;
  }

  ParsedText value() const {
    for (std::size_t i = 0; i + 1 < parts_.size(); ++i)
      if (parts_[i].fraction)
        return bad(TextError::kFraction, "only the last part may have a fraction", parts_[i].at);
    double degrees = 0;
    double unit = 1;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      if (i > 0 && !(parts_[i].value < 60))
        return bad(i == 1 ? TextError::kMinutesRange : TextError::kSecondsRange,
                   "the " + std::string(kPartNames[i]) + " are not below 60", parts_[i].at);
      degrees += parts_[i].value / unit;
      unit *= 60;
    }
    const bool negative = negative_ || letter_ == 'S' || letter_ == 'W';
    CoordinateText coordinate;
    coordinate.degrees = negative && degrees != 0 ? -degrees : degrees;
    if (letter_ != 0) coordinate.axis = letter_ == 'N' || letter_ == 'S' ? Axis::kLatitude : Axis::kLongitude;
    return ParsedText::good(coordinate);
  }

  ParsedText bad(TextError error, std::string what, std::size_t byte) const {
    return ParsedText::bad(error, std::move(what), columnOf(text_, byte));
  }

  ParsedText unreadable() const {
    return bad(TextError::kUnreadable, "\"" + characterAt(text_, at_) + "\" has no meaning here", at_);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::vector<Part> parts_;
  char letter_ = 0;  // of the hemisphere, upper case
  bool signed_ = false;
  bool negative_ = false;
  std::size_t signAt_ = 0;
  bool lowerCaseMarks_ = false;  // d or m
  bool upperCaseMarks_ = false;  // D or M
  bool ambiguousSeconds_ = false;
};

}  // namespace

bool isHemisphereLetter(char c) {
  return std::string_view("NSEWnsew").find(c) != std::string_view::npos && c != '\0';
}

std::size_t columnOf(std::string_view text, std::size_t byte) {
  std::size_t column = 1;
  for (std::size_t i = 0; i < byte && i < text.size(); ++i)
    if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U) ++column;
  return column;
}

Parsed<CoordinateText> parseCoordinate(std::string_view text) { return CoordinateReader(text).read(); }

}  // namespace zel
