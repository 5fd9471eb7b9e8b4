// The command line of terrain-profiler.
//
// Exit codes: 0 done, 1 failed (one line on standard error says what, why and what to do), 2 wrong usage.
#pragma once

namespace zel::host {

int runCommandLine(int argc, char** argv);

}  // namespace zel::host
