#include "models/ptp/vexptp/arguments.h"

#include <filesystem>

#include "foundation/leading_number.h"
#include "models/ptp/input_limits.h"
#include "models/ptp/vexptp/input_text.h"

namespace zel::ptp {
namespace {

constexpr std::size_t kItems = 7;

// Wider than any transmitter and any ground cover; they keep levels finite.
constexpr InputLimit kErp{"effective radiated power", " kW", 1e-12, 1e12};
constexpr InputLimit kClutter{"clutter", " dB", -1000, 1000};

double number(const std::string& item, const InputLimit& limit) {
  const auto value = fieldNumberText(item);
  if (!value) throw UsageError("the " + std::string(limit.name) + " is not a number: " + inQuotes(item));
  try {
    requireWithin(limit, *value);
  } catch (const ParameterError& error) {
    throw UsageError(error.description());
  }
  return *value;
}

}  // namespace

Arguments readArguments(std::span<const std::string> items) {
  if (items.size() != kItems)
    throw UsageError("the number of items is " + std::to_string(items.size()) + "; it must be " +
                     std::to_string(kItems));
  Arguments read;
  read.scratchPath = items[0];
  read.resultPath = items[1];
  for (const std::string& path : {read.scratchPath, read.resultPath})
    if (path.empty()) throw UsageError("a file's path is empty");
  read.frequency = static_cast<float>(number(items[2], limits::kFrequency));
  read.erp = number(items[3], kErp);
  constexpr InputLimit kReceiver{"receiver's antenna height", limits::kAntennaHeight.unit,
                                 limits::kAntennaHeight.low, limits::kAntennaHeight.high};
  read.receiverHeight = number(items[4], kReceiver);
  read.clutter = number(items[5], kClutter);
  const std::string name = std::filesystem::path(read.scratchPath).filename().string();
  if (items[6] != name)
    throw UsageError("the last item is " + inQuotes(items[6]) + ", and not the scratch file's name " +
                     inQuotes(name));
  return read;
}

}  // namespace zel::ptp
