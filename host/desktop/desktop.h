// terrain-profiler without a command: the desktop program.
#pragma once

#include <string>

namespace zel {
class ProfileControl;
}

namespace zel::host {

// Shows the window until it is closed; gives the exit status. `file` may be empty. Throws std::runtime_error,
// in a sentence, where no window can be shown.
int runDesktop(ProfileControl& component, const std::string& file);

}  // namespace zel::host
