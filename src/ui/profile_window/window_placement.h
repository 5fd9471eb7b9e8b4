// Where a window comes up: the place where it was last, as far as that is on a screen of today's desktop.
#pragma once

#include <string_view>

#include "platform/host_tools.h"

class QWidget;

namespace zel {

// Moves the window to its stored place; without one it stays where the desktop puts it. A place of which no
// screen shows enough to grab the window is brought back onto the nearest. Throws what the placement throws.
void restorePlacement(QWidget& window, std::string_view name, WindowPlacement& placement);
void storePlacement(const QWidget& window, std::string_view name, WindowPlacement& placement);

}  // namespace zel
