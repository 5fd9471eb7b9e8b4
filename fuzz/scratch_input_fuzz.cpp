// The input of the point-to-point program: a scratch file and its companion. Whatever the bytes, either a
// message on one line, or heights and keys that the model computes from, and a result that reads back.
//
// The input is the scratch file up to the first line "PAR", and the companion after it.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/leading_number.h"
#include "foundation/runtime_error.h"
#include "models/ptp/ptp_calculator.h"
#include "models/ptp/vexptp/companion.h"
#include "models/ptp/vexptp/input_text.h"
#include "models/ptp/vexptp/prefix_levels.h"
#include "models/ptp/vexptp/result_text.h"
#include "models/ptp/vexptp/scratch_input.h"

namespace {

using namespace zel::ptp;

void require(bool condition) {
  if (!condition) std::abort();
}

void checkMessage(std::string_view message) {
  require(!message.empty() && message.size() < 400);
  for (const char byte : message) require(byte >= 0x20 && byte < 0x7F);
}

void checkCompanion(const Companion& companion) {
  require(companion.spacing > 0 && std::isfinite(companion.spacing));
  require(!companion.samples || (*companion.samples >= 2 && *companion.samples <= kMostSamples));
  require(companion.model.ground.permittivity >= 1);
  require(companion.model.clutter.category <= ClutterCategory::kDenseUrban);
}

void checkRow(std::string_view line, const PrefixLevel& row) {
  for (const double value : {row.distance, row.diffraction, row.clutter, row.level}) {
    line.remove_prefix(line.find(',') + 1);
    const auto read = zel::fieldNumberText(line.substr(0, line.find(',')));
    require(read && *read == value);
  }
}

void checkRows(const std::vector<PrefixLevel>& rows) {
  constexpr double kNoLoss = PtpCalculator::kNoLoss;
  std::size_t lines = 0;
  writeResult(rows, [&](std::string_view line) {
    if (lines++ > 0) checkRow(line, rows[lines - 2]);
  });
  require(lines == rows.size() + 1);
  for (const PrefixLevel& row : rows) {
    const bool none = row.diffraction == kNoLoss;
    require(none ? row.clutter == kNoLoss && row.level == kNoLoss : row.diffraction >= 0 && row.clutter >= 0);
    require(std::isfinite(row.level) && std::isfinite(row.distance));
  }
}

void checkInput(std::string_view scratch, std::string_view beside) {
  try {
    const Companion companion = parseCompanion(beside);
    checkCompanion(companion);
    const std::vector<float> heights = parseScratchInput(scratch);
    require(heights.size() >= 2 && heights.size() <= kMostSamples);
    Arguments arguments;
    arguments.frequency = 950;
    arguments.erp = 1;
    arguments.receiverHeight = 1.5;
    checkRows(prefixLevels(heights, companion, arguments));
  } catch (const InputError& error) {
    checkMessage(error.what());
  } catch (const zel::RuntimeError& error) {
    checkMessage(error.what());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  constexpr std::string_view kParting = "PAR\n";
  const std::size_t parting = bytes.find(kParting);
  if (parting == std::string_view::npos)
    checkInput(bytes, {});
  else
    checkInput(bytes.substr(0, parting), bytes.substr(parting + kParting.size()));
  return 0;
}
