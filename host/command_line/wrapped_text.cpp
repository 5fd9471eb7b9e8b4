#include "command_line/wrapped_text.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace zel::host {
namespace {

constexpr std::size_t kNarrowest = 60;  // columns
constexpr std::size_t kUsual = 100;     // columns

std::size_t columnsOf(std::string_view text) {
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
}

}  // namespace

std::string wrapped(std::string_view text, std::size_t width, std::size_t indent) {
  const std::string newLine = "\n" + std::string(indent, ' ');
  std::string result;
  std::size_t column = indent;
  std::string_view blanks;  // before the word, kept where no line breaks
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find_first_of(" \n"));
    text.remove_prefix(word.size());
    const std::size_t needed = blanks.size() + columnsOf(word);
    if (!word.empty() && column > indent && column + needed > width) {
      result.append(newLine).append(word);
      column = indent + columnsOf(word);
    } else {
      result.append(blanks).append(word);
      column += needed;
    }
    blanks = text.substr(0, text.find_first_not_of(' '));
    text.remove_prefix(blanks.size());
    if (text.empty() || text.front() != '\n') continue;
    text.remove_prefix(1);
    result += newLine;
    column = indent;
    blanks = {};
  }
  return result;
}

std::size_t usableWidth(unsigned terminalColumns, const char* columnsVariable) {
  std::size_t width = terminalColumns;
  if (width == 0 && columnsVariable != nullptr) {
    const std::string_view text = columnsVariable;
    if (std::from_chars(text.data(), text.data() + text.size(), width).ec != std::errc()) width = 0;
  }
  return std::max(width == 0 ? kUsual : width, kNarrowest);
}

std::optional<std::size_t> terminalWidth() {
  if (isatty(STDOUT_FILENO) == 0) return std::nullopt;
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) size.ws_col = 0;
  return usableWidth(size.ws_col, std::getenv("COLUMNS"));
}

}  // namespace zel::host
