#include "models/ptp/vexptp/program.h"

#include <exception>
#include <filesystem>
#include <ostream>

#include "export/text_file.h"
#include "models/ptp/vexptp/arguments.h"
#include "models/ptp/vexptp/companion.h"
#include "models/ptp/vexptp/input_text.h"
#include "models/ptp/vexptp/prefix_levels.h"
#include "models/ptp/vexptp/result_text.h"
#include "models/ptp/vexptp/scratch_input.h"

namespace zel::ptp {
namespace {

constexpr const char* kName = "vexptp.exe";
constexpr const char* kUsage =
    "usage: vexptp.exe SCRATCH RESULT MHZ ERP-KW RECEIVER-M CLUTTER-DB SCRATCH-NAME\n";
constexpr const char* kHelp =
    "Runs the point-to-point model from a transmitter to every sample of a path.\n"
    "\n"
    "  SCRATCH       the path's heights: START, then one height a line, metres above sea level;\n"
    "                SCRATCH.par beside it may have more (see file-formats.md)\n"
    "  RESULT        the file that is written: comma-separated distance, losses and level\n"
    "  MHZ           frequency, 10 to 1000000 MHz\n"
    "  ERP-KW        effective radiated power, kW\n"
    "  RECEIVER-M    receiving antenna, metres above ground\n"
    "  CLUTTER-DB    taken off every level, dB\n"
    "  SCRATCH-NAME  the name of SCRATCH without its folder\n"
    "\n"
    "vexptp.exe --help     this text\n"
    "vexptp.exe --version  the version\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 wrong usage. A failure leaves RESULT as it was.\n";

// A path may contain what would break the line.
std::string onOneLine(std::string text) {
  for (char& byte : text)
    if (static_cast<unsigned char>(byte) < 0x20) byte = '?';
  return text;
}

// What `parse` makes of a file's text; what is wrong with it is told with the file's path.
template <class Parse>
auto parsedFile(const std::string& path, std::size_t mostBytes, const Parse& parse) {
  const std::string text = boundedFile(path, mostBytes);
  try {
    return parse(text);
  } catch (const InputError& error) {
    throw InputError(path + ": " + error.what());
  }
}

Companion companionOf(const std::string& scratchPath, std::size_t samples) {
  const std::string path = scratchPath + ".par";
  std::error_code none;
  const auto status = std::filesystem::status(path, none);
  if (status.type() == std::filesystem::file_type::not_found) return {};
  return parsedFile(path, kMostCompanionBytes, [samples](std::string_view text) {
    Companion companion = parseCompanion(text);
    if (companion.samples.value_or(samples) != samples)
      throw InputError("it says " + std::to_string(*companion.samples) +
                       " samples, and the scratch file has " + std::to_string(samples));
    return companion;
  });
}

void refuseToOverwriteInputs(const Arguments& arguments) {
  for (const std::string& input : {arguments.scratchPath, arguments.scratchPath + ".par"}) {
    std::error_code none;
    if (std::filesystem::equivalent(arguments.resultPath, input, none))
      throw UsageError("the result would take the place of " + input);
  }
}

void run(const Arguments& arguments, std::ostream& messages) {
  refuseToOverwriteInputs(arguments);
  const auto heights = parsedFile(arguments.scratchPath, kMostScratchBytes, parseScratchInput);
  const Companion companion = companionOf(arguments.scratchPath, heights.size());
  for (const std::string& key : companion.unknownKeys)
    messages << kName << ": note: " << onOneLine(arguments.scratchPath) << ".par: " << inQuotes(key)
             << " is no key that is known, and is passed over\n";
  TextFile result(arguments.resultPath);
  writeResult(prefixLevels(heights, companion, arguments),
              [&result](std::string_view line) { result.line(line); });
  result.write();
}

}  // namespace

int runProgram(std::span<const std::string> items, std::ostream& output, std::ostream& messages) {
  const auto fail = [&messages](const std::exception& error, int status) {
    messages << kName << ": " << onOneLine(error.what()) << '\n';
    return status;
  };
  if (items.size() == 1 && items[0] == "--help") {
    output << kUsage << '\n' << kHelp;
    return output.flush() ? 0 : 1;
  }
  if (items.size() == 1 && items[0] == "--version") {
    output << kName << ' ' << ZEL_VERSION << '\n';
    return output.flush() ? 0 : 1;
  }
  try {
    run(readArguments(items), messages);
    return 0;
  } catch (const UsageError& error) {
    const int status = fail(error, 2);
    messages << kUsage;
    return status;
  } catch (const std::exception& error) {
    return fail(error, 1);
  }
}

}  // namespace zel::ptp
