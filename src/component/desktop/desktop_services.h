// The services of a component in a real process: the desktop, the user's settings, and the tool library.
#pragma once

#include "component/component.h"

namespace zel {

ComponentServices makeDesktopServices();

}  // namespace zel
