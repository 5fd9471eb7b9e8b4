// The component's own application object, bound until a host hands over its own.
#pragma once

#include <string>

#include "zel/automation.h"

namespace zel {

inline constexpr const char* kComponentName = "zelProfiler01";

// "zelprofiler" below $XDG_STATE_HOME (an absolute path) or ~/.local/state; empty when there is no home.
std::string ownStateFolder();

// Title and ProductName, the version as Major, Minor and Revision, no help file, and the state folder as
// Path.
DispatchPtr makeOwnApplication();

// "1.2.3"
const char* componentVersion();

}  // namespace zel
