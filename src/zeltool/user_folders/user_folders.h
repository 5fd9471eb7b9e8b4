// The folders that belong to the user.
#pragma once

#include <string>

namespace zel {

// $HOME when it is an absolute path, else the one of the user's account; empty when neither is known.
std::string homeFolder();

// $<variable> when it is an absolute path, else `belowHome` (such as ".config") in the home folder; empty
// without one. For the XDG base folders.
std::string userFolder(const char* variable, const char* belowHome);

}  // namespace zel
