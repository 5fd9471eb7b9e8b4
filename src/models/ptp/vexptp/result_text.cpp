#include "models/ptp/vexptp/result_text.h"

#include <array>
#include <charconv>

namespace zel::ptp {
namespace {

// The fewest digits that read back as the same double.
std::string exactNumber(double value) {
  // The longest is a denormal of 1,077 characters.
  std::array<char, 1100> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ptr;
  return {text.data(), end};
}

}  // namespace

void writeResult(std::span<const PrefixLevel> rows, const std::function<void(std::string_view line)>& write) {
  write(kResultTitles);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::string line = std::to_string(i + 1);
    for (const double value : {rows[i].distance, rows[i].diffraction, rows[i].clutter, rows[i].level})
      line += ',' + exactNumber(value);
    write(line);
  }
}

}  // namespace zel::ptp
