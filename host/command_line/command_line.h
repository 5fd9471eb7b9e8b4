// The command line of terrain-profiler.
//
// Exit codes: 0 done, 1 failed (one line on standard error says what, why and what to do), 2 wrong usage.
#pragma once

#include <string>

namespace zel::host {

int runCommandLine(int argc, char** argv);

// The commands, their options and the settings as JSON (command_tree.h), for what is made from it: the man
// page, the completions of the shells.
std::string describedCommandLine();

}  // namespace zel::host
