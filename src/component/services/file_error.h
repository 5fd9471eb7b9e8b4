// What the system says of a file, as a RuntimeError.
#pragma once

#include <string>

#include "foundation/runtime_error.h"

namespace zel {

// 61 no room, 70 no right, 76 no such folder, 75 anything else: "Disk full: cannot write FILE (reason)".
RuntimeError fileError(const std::string& path, int systemError);

}  // namespace zel
