#include "command_line/elevation_file.h"

#include <algorithm>

#include "command_line/command_error.h"
#include "command_line/plain_number.h"
#include "command_line/text_source.h"

namespace zel::host {
namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20;

// Without the blank lines at its end.
std::string_view withoutBlankEnd(std::string_view text) {
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

std::string_view withoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.substr(0, kMark.size()) == kMark) text.remove_prefix(kMark.size());
  return text;
}

}  // namespace

std::vector<double> parseElevations(std::string_view text, const std::string& title) {
  text = withoutBlankEnd(withoutByteOrderMark(text));
  if (text.empty()) throw CommandFailure(title + " has no elevations; it needs one in metres a line");
  std::vector<double> elevations;
  elevations.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string_view line = text.substr(begin, end - begin);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const auto elevation = plainNumber(line);
    if (!elevation) {
      const bool blank = trimmedText(line).empty();
      throw CommandFailure(
          title + ", line " + std::to_string(elevations.size() + 1) + ": " +
          (blank ? "it is blank, and elevations follow" : quotedText(line) + " is not a number") +
          "; each line has one elevation in metres");
    }
    elevations.push_back(*elevation);
    begin = end + 1;
  }
  return elevations;
}

std::vector<double> readElevations(const std::string& name) {
  TextSource source(name);
  return parseElevations(wholeText(source, kMostBytes), source.title());
}

}  // namespace zel::host
