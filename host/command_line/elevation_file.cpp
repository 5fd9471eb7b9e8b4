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

// Why a line is not an elevation.
std::string fault(std::string_view line) {
  if (trimmedText(line).empty()) return "it is blank, and elevations follow";
  const std::string quoted = quotedText(line);
  if (line.find('\r') != std::string_view::npos)
    return quoted + " has a carriage return in it; end each line with a line feed";
  if (line.find(';') != std::string_view::npos) return quoted + " has a \";\" in it";
  if (line.find(',') != std::string_view::npos)
    return quoted + " has a \",\" in it; the decimal point is \".\"";
  return quoted + " is not a number";
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
      throw CommandFailure(title + ", line " + std::to_string(elevations.size() + 1) + ": " + fault(line) +
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
