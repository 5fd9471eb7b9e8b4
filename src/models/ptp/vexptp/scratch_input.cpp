#include "models/ptp/vexptp/scratch_input.h"

#include <string>

#include "foundation/leading_number.h"
#include "models/ptp/input_limits.h"
#include "models/ptp/vexptp/input_text.h"

namespace zel::ptp {
namespace {

float height(std::string_view line, std::size_t index) {
  const auto value = line.size() <= kLongestLine ? fieldNumberText(line) : std::nullopt;
  if (!value) throw InputError(lineName(index) + " is no height: " + inQuotes(line));
  try {
    requireWithin(limits::kElevation, *value);
  } catch (const ParameterError& error) {
    throw InputError(lineName(index) + " is no height: " + error.description());
  }
  return static_cast<float>(*value);
}

}  // namespace

std::vector<float> parseScratchInput(std::string_view text) {
  const auto lines = linesOf(text);
  if (lines.empty()) throw InputError("it is empty; it must begin with START");
  if (lines[0] != "START") throw InputError("it must begin with START, not with " + inQuotes(lines[0]));
  const std::size_t samples = lines.size() - 1;
  if (samples > kMostSamples)
    throw InputError("it has " + std::to_string(samples) + " heights; it may have " +
                     std::to_string(kMostSamples));
  std::vector<float> heights;
  heights.reserve(samples);
  for (std::size_t i = 1; i < lines.size(); ++i) heights.push_back(height(lines[i], i));
  if (samples < 2)
    throw InputError("it has " + std::string(samples == 0 ? "no height" : "one height") +
                     "; a path has at least two");
  return heights;
}

}  // namespace zel::ptp
