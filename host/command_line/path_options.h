// Options of the commands that do the profile window's work: which path, and what of it to show.
#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "zel/path_view.h"

namespace zel::host {

struct PathOptions {
  std::string from, to;
  std::string expand, markers, units;
  std::optional<double> frequency;
};

// --from and --to, both required.
void addStationOptions(CLI::App& command, std::string& from, std::string& to);
// --expand, --markers, --units and --frequency.
void addViewOptions(CLI::App& command, PathOptions& options);
// Throws UsageError naming the option and the fault.
PathViewRequest viewRequestOf(const PathOptions& options);

// Logical pixels.
struct PictureSize {
  std::int32_t width = 0, height = 0;
};
// "1000x500", from 100x80 to 8000x8000. Throws UsageError naming --size.
PictureSize pictureSize(const std::string& text);

// Whether the text is a number and nothing else.
template <typename Number>
bool readWhole(std::string_view text, Number& number) {
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end;
}

}  // namespace zel::host
