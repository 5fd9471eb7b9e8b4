// The host's application object, and the component bound to it.
#pragma once

#include <memory>

#include "zel/profile_control.h"

namespace zel::host {

inline constexpr const char* kApplicationTitle = "Terrain Profiler";

// Binds the component to this program for as long as the result lives: settings under the title "Terrain
// Profiler", the error log in the user's state folder.
std::unique_ptr<ProfileControl> bindComponent();

// For a command that draws and shows nothing: no display is asked for, also where one is set that cannot be
// reached. Before the first drawing.
void withoutDisplay();

}  // namespace zel::host
