// The subcommands. Each adds itself to the program and throws CommandFailure or UsageError when it runs into
// trouble.
#pragma once

#include <CLI/CLI.hpp>

namespace zel::host {

void addProfileCommand(CLI::App& program);
void addSampleCommand(CLI::App& program);
void addTerrainCommand(CLI::App& program);
void addSettingsCommand(CLI::App& program);

}  // namespace zel::host
