// Where the program keeps and finds its own files.
#pragma once

#include <string>

namespace zel::host {

// ".../terrain-profiler" below $XDG_STATE_HOME or $HOME/.local/state; empty when neither is known.
std::string stateFolder();

// The guide's first page in the tree that the program was started from; empty when there is none.
std::string guideFile();

}  // namespace zel::host
