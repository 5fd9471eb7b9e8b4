#include "command_line/number_list.h"

#include <charconv>
#include <system_error>

namespace zel::host {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Reads on in a text; what it looks at behind the end is a zero byte.
class Scanner {
 public:
  Scanner(std::string_view text, std::size_t at) : text_(text), at_(at) {}

  std::size_t position() const { return at_; }

  void skipBlanks() {
    while (peek() == ' ' || peek() == '\t' || peek() == '\r') ++at_;
  }

  // Passes over blanks and then the character, if it is the next one.
  bool take(char wanted) {
    skipBlanks();
    if (peek() != wanted) return false;
    ++at_;
    return true;
  }

  // A number as JSON writes it. from_chars reads more than that: ".5", "5.", "05", "inf".
  bool number(double& value) {
    skipBlanks();
    const std::size_t digits = peek() == '-' ? 1 : 0;
    std::size_t point = digits;
    while (isDigit(peek(point))) ++point;
    if (point == digits || (peek(digits) == '0' && point > digits + 1)) return false;
    if (peek(point) == '.' && !isDigit(peek(point + 1))) return false;
    const auto [end, error] = std::from_chars(text_.data() + at_, text_.data() + text_.size(), value);
    at_ = static_cast<std::size_t>(end - text_.data());
    return error == std::errc();
  }

 private:
  char peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

  std::string_view text_;
  std::size_t at_;
};

}  // namespace

std::optional<NumberList> takeNumberList(std::string_view text, std::string_view key) {
  const std::string quoted = '"' + std::string(key) + '"';
  const std::size_t found = text.find(quoted);
  if (found == std::string_view::npos) return std::nullopt;
  Scanner scanner(text, found + quoted.size());
  if (!scanner.take(':') || !scanner.take('[')) return std::nullopt;
  const std::size_t begin = scanner.position();
  NumberList list;
  do {
    double value = 0;
    if (!scanner.number(value)) return std::nullopt;
    list.values.push_back(value);
  } while (scanner.take(','));
  if (!scanner.take(']')) return std::nullopt;
  list.rest.assign(text.substr(0, begin)).append("]").append(text.substr(scanner.position()));
  return list;
}

}  // namespace zel::host
