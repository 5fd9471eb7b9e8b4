// The subcommands. Each adds itself to the program and throws CommandFailure or UsageError when it runs into
// trouble.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace zel {
class ProfileControl;
}

namespace zel::host {

// For every option with a value: an empty one, or the next option taken for it, is wrong usage.
inline std::string valueProblem(const std::string& value) {
  if (value.empty()) return "a value is missing";
  if (value.size() > 2 && value.compare(0, 2, "--") == 0)
    return "\"" + value + "\" is an option, not a value";
  return {};
}

// A finite number above 0.
inline std::string positiveNumberProblem(const std::string& text) {
  double value = 0;
  if (CLI::detail::lexical_cast(text, value) && value > 0 && value <= 1e6) return {};
  return "\"" + text + "\" is not a number above 0, at most 1000000";
}

void addExportCommand(CLI::App& program);
void addLinksCommand(CLI::App& program, ProfileControl& component);
void addLongleyRiceCommand(CLI::App& program);
void addLossCommand(CLI::App& program);
void addPictureCommand(CLI::App& program);
void addPrintCommand(CLI::App& program);
void addProfileCommand(CLI::App& program);
void addReportCommand(CLI::App& program, ProfileControl& control);
void addSampleCommand(CLI::App& program);
void addShowCommand(CLI::App& program, ProfileControl& control);
void addTerrainCommand(CLI::App& program);
void addSettingsCommand(CLI::App& program);

}  // namespace zel::host
