#include "preferences/field_values.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace zel::host {
namespace {

std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::optional<double> wholeNumber(std::string_view text) {
  text = withoutBlanks(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
    return std::nullopt;
  return value;
}

std::string shortest(double value) {
  char text[40];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr;
  return {text, end};
}

// Twelve digits: 0.29 x 100 is 29, not 28.999999999999996.
double rounded(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.12g", value);
  return std::strtod(text, nullptr);
}

constexpr double kLowestLevel = 0.01, kHighestLevel = 1;  // fraction
constexpr unsigned kColourMask = 0xFFFFFF;

std::optional<unsigned> redGreenBlue(std::string_view shown) {
  shown = withoutBlanks(shown);
  if (!shown.empty() && shown.front() == '#') shown.remove_prefix(1);
  unsigned value = 0;
  const auto [end, failure] = std::from_chars(shown.data(), shown.data() + shown.size(), value, 16);
  if (shown.size() != 6 || failure != std::errc() || end != shown.data() + shown.size()) return std::nullopt;
  return value;
}

// Red and blue change places between the two orders.
unsigned turned(unsigned colour) {
  return (colour & 0xFFU) << 16U | (colour & 0xFF00U) | (colour >> 16U & 0xFFU);
}

double linearPart(unsigned byte) {
  const double part = byte / 255.0;
  return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

}  // namespace

double leadingValue(std::string_view text) {
  text = withoutBlanks(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return std::isfinite(value) ? value : 0;
}

bool sameValue(std::string_view a, std::string_view b) {
  if (withoutBlanks(a) == withoutBlanks(b)) return true;
  const auto first = wholeNumber(a), second = wholeNumber(b);
  return first && second && *first == *second;
}

std::string shownPercent(std::string_view stored) {
  double level = leadingValue(stored);
  while (level > kHighestLevel) level /= 100;
  return shortest(rounded(std::max(level, kLowestLevel) * 100));
}

std::optional<std::string> storedPercent(std::string_view shown) {
  const auto percent = wholeNumber(shown);
  if (!percent || *percent < 1 || *percent > 99 || std::floor(*percent) != *percent) return std::nullopt;
  return shortest(*percent / 100);
}

std::string shownColour(std::string_view stored) {
  const double value = std::clamp(leadingValue(stored), 0.0, double{kColourMask});
  char text[8];
  std::snprintf(text, sizeof text, "#%06x", turned(static_cast<unsigned>(value)));
  return text;
}

std::optional<std::string> storedColour(std::string_view shown) {
  const auto colour = redGreenBlue(shown);
  if (!colour) return std::nullopt;
  return std::to_string(turned(*colour));
}

double contrastWithWhite(std::string_view shown) {
  const unsigned colour = redGreenBlue(shown).value_or(0);
  const double luminance = 0.2126 * linearPart(colour >> 16U & 0xFFU) +
                           0.7152 * linearPart(colour >> 8U & 0xFFU) + 0.0722 * linearPart(colour & 0xFFU);
  return 1.05 / (luminance + 0.05);
}

std::vector<std::string> pathsOf(std::string_view stored) {
  std::vector<std::string> paths;
  while (!stored.empty()) {
    const std::size_t end = std::min(stored.find(';'), stored.size());
    const std::string_view path = withoutBlanks(stored.substr(0, end));
    if (!path.empty()) paths.emplace_back(path);
    stored.remove_prefix(std::min(end + 1, stored.size()));
  }
  return paths;
}

std::string joinedPaths(const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text += (text.empty() ? "" : ";") + path;
  return text;
}

std::string pathProblem(std::string_view path) {
  if (withoutBlanks(path).empty()) return "a path is empty";
  if (path.find(';') != std::string_view::npos)
    return "\"" + std::string(path) + "\" has a \";\" in it, which separates paths where they are stored";
  if (withoutBlanks(path) != path)
    return "\"" + std::string(path) + "\" begins or ends with a blank, which is not stored";
  return {};
}

std::optional<std::string> programFound(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::string_view rest = path == nullptr ? std::string_view() : std::string_view(path);
  while (!rest.empty()) {
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    const std::filesystem::path program = std::filesystem::path(rest.substr(0, colon)) / name;
    if (program.is_absolute() && programProblem(program.string()).empty()) return program.string();
    rest.remove_prefix(std::min(colon + 1, rest.size()));
  }
  return std::nullopt;
}

std::string programProblem(const std::string& path) {
  std::error_code failure;
  if (!std::filesystem::path(path).is_absolute()) return "the whole path is needed, beginning with /";
  const std::filesystem::file_status status = std::filesystem::status(path, failure);
  if (status.type() == std::filesystem::file_type::not_found) return "there is no such file";
  if (status.type() == std::filesystem::file_type::directory) return "this is a folder, not a program";
  if (status.type() == std::filesystem::file_type::none) return failure.message();
  const QFileInfo file(QFile::decodeName(QByteArray::fromStdString(path)));
  if (status.type() != std::filesystem::file_type::regular || !file.isExecutable())
    return "this is not a program that you may run";
  return {};
}

const std::vector<GroundKind>& groundKinds() {
  static const std::vector<GroundKind> kinds{{"Average ground", "15", "0.005"},
                                             {"Poor ground", "4", "0.001"},
                                             {"Good ground", "25", "0.02"},
                                             {"Fresh water", "81", "0.01"},
                                             {"Sea water", "81", "5"}};
  return kinds;
}

}  // namespace zel::host
